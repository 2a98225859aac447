// support/dates.h - date values in tests.
#ifndef TAMU_TESTS_SUPPORT_DATES_H_
#define TAMU_TESTS_SUPPORT_DATES_H_

#include <ostream>

#include "text/date_value.h"

namespace tamu {

// For the messages of failed tests.
inline void PrintTo(const DateValue& date, std::ostream* out) {
  DateFields fields;
  if (!date.valid) {
    *out << "invalid";
  } else if (DATE_ToFields(date, &fields)) {
    *out << fields.year << '-' << fields.month << '-' << fields.day << ' ' << fields.hour << ':'
         << fields.minute << ':' << fields.second;
  } else {
    *out << date.days << " days";
  }
}

namespace testing {

inline DateValue Date(std::int32_t year, std::int32_t month, std::int32_t day,
                      std::int32_t hour = 0, std::int32_t minute = 0, std::int32_t second = 0) {
  return DATE_FromFields({year, month, day, hour, minute, second});
}

}  // namespace testing
}  // namespace tamu

#endif  // TAMU_TESTS_SUPPORT_DATES_H_
