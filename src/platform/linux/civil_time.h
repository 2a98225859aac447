// platform/linux/civil_time.h - the calendar arithmetic that system times, file times and OLE dates
// share.
//   The proleptic Gregorian calendar throughout, days counted from 1970-01-01.
//   Errors     none: fields are tested first.
#ifndef TAMU_PLATFORM_LINUX_CIVIL_TIME_H_
#define TAMU_PLATFORM_LINUX_CIVIL_TIME_H_

#include <chrono>
#include <cstdint>

#include "platform/time.h"

namespace tamu::platform {

inline constexpr std::int64_t kSecondsPerDay = 86400;

[[nodiscard]] constexpr std::int64_t DayNumber(std::int32_t year, std::uint32_t month,
                                               std::uint32_t day) noexcept {
  return std::chrono::sys_days(std::chrono::year(year) / static_cast<int>(month) /
                               static_cast<int>(day))
      .time_since_epoch()
      .count();
}

// True for a date and a time of day that exist, in these years.
[[nodiscard]] constexpr bool IsSystemTime(const SYSTEMTIME& time, std::uint16_t first_year,
                                          std::uint16_t last_year) noexcept {
  const std::chrono::year_month_day date(
      std::chrono::year(time.wYear), std::chrono::month(time.wMonth), std::chrono::day(time.wDay));
  return time.wYear >= first_year && time.wYear <= last_year && time.wMonth <= 12 &&
         time.wDay <= 31 && date.ok() && time.wHour <= 23 && time.wMinute <= 59 &&
         time.wSecond <= 59 && time.wMilliseconds <= 999;
}

[[nodiscard]] constexpr std::int64_t DayNumber(const SYSTEMTIME& time) noexcept {
  return DayNumber(time.wYear, time.wMonth, time.wDay);
}
[[nodiscard]] constexpr std::int64_t SecondOfDay(const SYSTEMTIME& time) noexcept {
  return time.wHour * 3600 + time.wMinute * 60 + time.wSecond;
}

// The system time of a day (its year between 0 and 65535) and a time of day, without milliseconds.
[[nodiscard]] constexpr SYSTEMTIME MakeSystemTime(std::int64_t day, std::int64_t second) noexcept {
  const std::chrono::sys_days point{std::chrono::days(static_cast<std::int32_t>(day))};
  const std::chrono::year_month_day date(point);
  const std::chrono::weekday weekday(point);
  SYSTEMTIME time{};
  time.wYear = static_cast<std::uint16_t>(static_cast<int>(date.year()));
  time.wMonth = static_cast<std::uint16_t>(static_cast<unsigned>(date.month()));
  time.wDayOfWeek = static_cast<std::uint16_t>(weekday.c_encoding());
  time.wDay = static_cast<std::uint16_t>(static_cast<unsigned>(date.day()));
  time.wHour = static_cast<std::uint16_t>(second / 3600);
  time.wMinute = static_cast<std::uint16_t>(second / 60 % 60);
  time.wSecond = static_cast<std::uint16_t>(second % 60);
  return time;
}

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_LINUX_CIVIL_TIME_H_
