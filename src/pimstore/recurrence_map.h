// pimstore/recurrence_map.h - the RRULE property and the store's recurrence pattern.
//   The two know different things: the store has one kind of pattern at a time and an end, the rule
//   a tree of frequencies. What a pattern cannot say is sent as a single item.
//   Ownership  patterns and records are borrowed.
//   Errors     what cannot be translated is logged.
#ifndef TAMU_PIMSTORE_RECURRENCE_MAP_H_
#define TAMU_PIMSTORE_RECURRENCE_MAP_H_

#include <cstdint>

#include "platform/poom.h"
#include "tamu/tamu.h"

namespace tamu {

enum class RuleTranslation : std::uint8_t {
  kDone,
  kUnreadable,      // the text is no rule; the pattern is as it was
  kNotExpressible,  // the pattern is as it was
};

// Puts the first rule of a vCalendar 1.0 rule's text. A rule by minutes has no pattern: it is done
// without a put. Days of the year count February with 28 days, on purpose.
[[nodiscard]] RuleTranslation RecurrenceToStore(platform::IRecurrencePattern* pattern,
                                                const char* rule_text) noexcept;

// Appends the pattern's rule. Yearly rules have no end date; a pattern of another kind has no rule.
void RecurrenceFromStore(platform::IRecurrencePattern* pattern, Ref<Property>* chain) noexcept;

}  // namespace tamu

#endif  // TAMU_PIMSTORE_RECURRENCE_MAP_H_
