// calendar_words.h - what the properties of calendars and notes say, in words for people.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_CALENDAR_WORDS_H_
#define TAMU_TOOLS_CALENDAR_WORDS_H_

#include "property_lines.h"

namespace tamu::tool {

// CLASS: "private".
[[nodiscard]] ValueText CALWORDS_Class(const PropertyView& property);
// STATUS: "needs action".
[[nodiscard]] ValueText CALWORDS_Status(const PropertyView& property);
// PRIORITY: "1 (highest)".
[[nodiscard]] ValueText CALWORDS_Priority(const PropertyView& property);
// RRULE: "every 2 weeks on Monday, 10 times"; a text that is no rule as it stands.
[[nodiscard]] ValueText CALWORDS_Rule(const PropertyView& property);
// DALARM: when, how often again, and its text.
[[nodiscard]] ValueText CALWORDS_Alarm(const PropertyView& property);
// ATTENDEE: name and address, and the part that they take.
[[nodiscard]] ValueText CALWORDS_Attendee(const PropertyView& property);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_CALENDAR_WORDS_H_
