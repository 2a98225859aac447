// date_words.h - the dates of object files, for people ("Wed 31 Dec 2003 23:59") and as ISO 8601.
//   Dates are read as the library reads them: local time as it is written, and the local time of an
//   instant that is given in UTC or with a zone.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_DATE_WORDS_H_
#define TAMU_TOOLS_DATE_WORDS_H_

#include <optional>
#include <string>
#include <string_view>

#include "text/date_value.h"

namespace tamu::tool {

struct DateReading {
  DateFields local;
  std::optional<DateFields> utc;  // of an instant, as far as it is known
  bool has_time = true;
  // The text says just this: no zone, no part that the library passes over.
  bool plain = false;
};

// A date of a calendar, a note or a card; none when the library does not read the text as one.
[[nodiscard]] std::optional<DateReading> DATE_ReadIso(std::string_view text);
// The date of a mail's header.
[[nodiscard]] std::optional<DateReading> DATE_ReadMail(std::string_view text);

// "Wed 31 Dec 2003".
[[nodiscard]] std::string DATE_Day(const DateFields& fields);
// "23:59", with seconds when there are any.
[[nodiscard]] std::string DATE_Time(const DateFields& fields);
// The local date, with the time when it has one.
[[nodiscard]] std::string DATE_Words(const DateReading& date);

// "2003-12-31", "2003-12-31T23:59:59", and the same with a "Z" behind it.
[[nodiscard]] std::string DATE_Iso(const DateFields& fields, bool has_time, std::string_view zone);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_DATE_WORDS_H_
