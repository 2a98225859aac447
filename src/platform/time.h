// platform/time.h - system times, file times, OLE dates, and the device's local time.
//   A system time is broken down (the day of week is ignored on the way in); a file time counts
//   intervals of 100 nanoseconds since 1601-01-01; an OLE date counts days since 30 December 1899,
//   its fraction being the time of day, also of days before that (-1.25 is 29 December, 06:00).
//   Local time follows the zone's rules at the date in question, by the settings at the moment of
//   the call.
//   Ownership  all structures are the caller's.
//   Errors     0, with 87 in GetLastError; results are then left alone.
#ifndef TAMU_PLATFORM_TIME_H_
#define TAMU_PLATFORM_TIME_H_

#include <cstdint>

#include "platform/service.h"

namespace tamu::platform {

struct SYSTEMTIME {
  std::uint16_t wYear;
  std::uint16_t wMonth;      // 1 to 12
  std::uint16_t wDayOfWeek;  // 0 is Sunday
  std::uint16_t wDay;
  std::uint16_t wHour;
  std::uint16_t wMinute;
  std::uint16_t wSecond;
  std::uint16_t wMilliseconds;
};
static_assert(sizeof(SYSTEMTIME) == 16 && alignof(SYSTEMTIME) == 2);

struct FILETIME {
  std::uint32_t dwLowDateTime;
  std::uint32_t dwHighDateTime;
};
static_assert(sizeof(FILETIME) == 8 && alignof(FILETIME) == 4);

// The current time in UTC.
extern Service<void(SYSTEMTIME* time)> GetSystemTime;

// Years 1601 to 30827.
extern Service<std::int32_t(const SYSTEMTIME* time, FILETIME* file_time)> SystemTimeToFileTime;
// File times below 2^63, as for all functions here.
extern Service<std::int32_t(const FILETIME* file_time, SYSTEMTIME* time)> FileTimeToSystemTime;

// From UTC to local time.
extern Service<std::int32_t(const FILETIME* utc, FILETIME* local)> FileTimeToLocalFileTime;
// From local time to UTC. An hour that a change of the clocks repeats is its first occurrence; one
// that it leaves out is taken as if the clocks had not changed yet, which moves it forward.
extern Service<std::int32_t(const FILETIME* local, FILETIME* utc)> LocalFileTimeToFileTime;

// Years 100 to 9999. Milliseconds are left out.
extern Service<std::int32_t(const SYSTEMTIME* time, double* date)> SystemTimeToVariantTime;
// Rounds to whole seconds.
extern Service<std::int32_t(double date, SYSTEMTIME* time)> VariantTimeToSystemTime;

inline constexpr std::uint32_t kLocaleUserDefault = 0x0400;

// The date as the user's locale writes it (LC_ALL, LC_TIME or LANG): date and time, the date alone
// at midnight, the time alone on day 0. `*text` receives a counted string for the caller to free.
// Returns 0, or a negative result with a null text: no date (0x80070057), no memory (0x8007000E).
extern Service<std::int32_t(double date, std::uint32_t locale, std::uint32_t flags,
                            char16_t** text)>
    VarBstrFromDate;

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_TIME_H_
