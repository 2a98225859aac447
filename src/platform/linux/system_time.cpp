// platform/linux/system_time.cpp - the clock, and system times to and from file times.
#include <time.h>

#include <limits>

#include "platform/linux/civil_time.h"
#include "platform/linux/errors.h"
#include "platform/linux/file_ticks.h"
#include "platform/time.h"

namespace tamu::platform {
namespace {

constexpr std::uint16_t kFirstYear = 1601;
constexpr std::uint16_t kLastYear = 30827;
static_assert((DayNumber(kLastYear, 12, 31) - kFileTimeStartDay + 1) * kSecondsPerDay <
              std::numeric_limits<std::int64_t>::max() / kTicksPerSecond);

void GetTime(SYSTEMTIME* time) {
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  const std::int64_t seconds = now.tv_sec;
  std::int64_t day = seconds / kSecondsPerDay;
  if (seconds % kSecondsPerDay < 0) --day;
  *time = MakeSystemTime(day, seconds - day * kSecondsPerDay);
  time->wMilliseconds = static_cast<std::uint16_t>(now.tv_nsec / 1'000'000);
}

std::int32_t ToFileTime(const SYSTEMTIME* time, FILETIME* file_time) {
  if (!IsSystemTime(*time, kFirstYear, kLastYear)) return FailWith(kErrorInvalidParameter, 0);
  const std::int64_t seconds =
      (DayNumber(*time) - kFileTimeStartDay) * kSecondsPerDay + SecondOfDay(*time);
  *file_time = FileTimeOf(seconds * kTicksPerSecond + time->wMilliseconds * kTicksPerMillisecond);
  return 1;
}

std::int32_t FromFileTime(const FILETIME* file_time, SYSTEMTIME* time) {
  const std::int64_t ticks = TicksOf(*file_time);
  if (ticks < 0) return FailWith(kErrorInvalidParameter, 0);
  const std::int64_t seconds = ticks / kTicksPerSecond;
  *time = MakeSystemTime(kFileTimeStartDay + seconds / kSecondsPerDay, seconds % kSecondsPerDay);
  time->wMilliseconds = static_cast<std::uint16_t>(ticks % kTicksPerSecond / kTicksPerMillisecond);
  return 1;
}

}  // namespace

constinit Service<void(SYSTEMTIME*)> GetSystemTime{"GetSystemTime", &GetTime};
constinit Service<std::int32_t(const SYSTEMTIME*, FILETIME*)> SystemTimeToFileTime{
    "SystemTimeToFileTime", &ToFileTime, 0};
constinit Service<std::int32_t(const FILETIME*, SYSTEMTIME*)> FileTimeToSystemTime{
    "FileTimeToSystemTime", &FromFileTime, 0};

}  // namespace tamu::platform
