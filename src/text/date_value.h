// text/date_value.h - the PIM stores' date value, and what is computed with it.
//   Units      days since 30 December 1899 as an OLE date has them (platform/time.h), years 100 to
//   9999, whole seconds; local time unless a function says otherwise.
//   Errors     a value that cannot be built is invalid. Its days are those of DATE_NONE, so that
//   whoever stores them without asking stores no date.
#ifndef TAMU_TEXT_DATE_VALUE_H_
#define TAMU_TEXT_DATE_VALUE_H_

#include <cstdint>

#include "platform/time.h"

namespace tamu {

// The stores' value for no date: 1 January 4501, 00:00.
inline constexpr double kDateNoneDays = 949998.0;

struct DateValue {
  double days = 0;  // 30 December 1899, 00:00
  bool valid = true;

  friend bool operator==(const DateValue&, const DateValue&) = default;
};

inline constexpr DateValue DATE_NONE{kDateNoneDays, true};
inline constexpr DateValue kDateInvalid{kDateNoneDays, false};

// True for the value that stands for no date.
[[nodiscard]] constexpr bool DATE_IsNone(const DateValue& date) noexcept {
  return date == DATE_NONE;
}

struct DateFields {
  std::int32_t year = 0;
  std::int32_t month = 0;  // 1 to 12
  std::int32_t day = 0;
  std::int32_t hour = 0;
  std::int32_t minute = 0;
  std::int32_t second = 0;

  friend bool operator==(const DateFields&, const DateFields&) = default;
};

// The value of these fields; invalid for an impossible date or time (year below 100, hour 24,
// second 60, 30 February).
[[nodiscard]] DateValue DATE_FromFields(const DateFields& fields) noexcept;
// Reads the fields back, rounded to whole seconds. False, with the fields left alone, for an
// invalid value and for days outside of the years 100 to 9999.
[[nodiscard]] bool DATE_ToFields(const DateValue& date, DateFields* fields) noexcept;

// The same with a system time; its milliseconds are left out, and 0 on the way back.
[[nodiscard]] DateValue DATE_FromSystemTime(const platform::SYSTEMTIME& time) noexcept;
[[nodiscard]] bool DATE_ToSystemTime(const DateValue& date, platform::SYSTEMTIME* time) noexcept;

// The local time of an instant given as a UTC file time.
[[nodiscard]] DateValue DATE_FromFileTime(const platform::FILETIME& utc) noexcept;
// The local time of an instant given by its fields in UTC; invalid for impossible fields and for
// years before 1601.
[[nodiscard]] DateValue DATE_FromUtc(const DateFields& utc) noexcept;
// The UTC file time of a local time; false when there is none (years before 1601).
[[nodiscard]] bool DATE_ToFileTime(const DateValue& date, platform::FILETIME* utc) noexcept;

// The value so many minutes later, or earlier when negative; an invalid value stays invalid.
[[nodiscard]] DateValue DATE_AddMinutes(const DateValue& date, std::int32_t minutes) noexcept;

// Seconds from one value to another, negative when it is earlier. Counted by the clock's face:
// changes of the clocks are not looked at.
[[nodiscard]] std::int64_t DATE_SecondsBetween(const DateValue& from, const DateValue& to) noexcept;

}  // namespace tamu

#endif  // TAMU_TEXT_DATE_VALUE_H_
