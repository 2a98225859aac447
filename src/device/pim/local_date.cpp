#include "device/pim/local_date.h"

#include <algorithm>
#include <cmath>

#include "device/pim/occurrences.h"
#include "platform/time.h"

namespace tamu::device {
namespace {

using platform::DATE;
using platform::HRESULT;
namespace hr = platform::hr;

// Now in local time, so many intervals of 100 nanoseconds later.
bool LocalNow(std::uint64_t later, platform::SYSTEMTIME* local) noexcept {
  platform::SYSTEMTIME now{};
  platform::GetSystemTime(&now);
  platform::FILETIME utc{};
  platform::FILETIME moved{};
  if (!platform::SystemTimeToFileTime(&now, &utc)) return false;
  if (!platform::FileTimeToLocalFileTime(&utc, &moved)) return false;
  const std::uint64_t ticks =
      (std::uint64_t{moved.dwHighDateTime} << 32 | moved.dwLowDateTime) + later;
  moved.dwLowDateTime = static_cast<std::uint32_t>(ticks);
  moved.dwHighDateTime = static_cast<std::uint32_t>(ticks >> 32);
  return platform::FileTimeToSystemTime(&moved, local) != 0;
}

HRESULT ToDate(const platform::SYSTEMTIME& time, DATE* date) noexcept {
  return platform::SystemTimeToVariantTime(&time, date) ? hr::kOk : hr::kFail;
}

}  // namespace

bool IsDate(DATE date) noexcept { return std::isfinite(date); }

std::int32_t DayOf(DATE date) noexcept {
  return static_cast<std::int32_t>(
      std::clamp(std::trunc(date), double{kFirstPatternDay}, double{kLastPatternDay}));
}

double TimeOf(DATE date) noexcept { return std::fabs(date - std::trunc(date)); }

DATE JoinDate(std::int32_t day, double time) noexcept { return day < 0 ? day - time : day + time; }

std::int64_t SecondsOf(DATE date) noexcept {
  return std::int64_t{DayOf(date)} * kSecondsPerDay + SecondsOfTime(TimeOf(date));
}

std::int32_t SecondsOfTime(double time) noexcept {
  return static_cast<std::int32_t>(std::lround(time * kSecondsPerDay));
}

DATE DateOfSeconds(std::int64_t seconds) noexcept {
  std::int64_t day = seconds / kSecondsPerDay;
  std::int64_t rest = seconds % kSecondsPerDay;
  if (rest < 0) {
    rest += kSecondsPerDay;
    --day;
  }
  day = std::clamp<std::int64_t>(day, kFirstPatternDay, kLastPatternDay);
  return JoinDate(static_cast<std::int32_t>(day), static_cast<double>(rest) / kSecondsPerDay);
}

HRESULT NextFullHour(DATE* date) noexcept {
  constexpr std::uint64_t kHour = 3600ULL * 10'000'000ULL;
  platform::SYSTEMTIME time{};
  if (!LocalNow(kHour, &time)) return hr::kFail;
  time.wMinute = 0;
  time.wSecond = 0;
  time.wMilliseconds = 0;
  return ToDate(time, date);
}

HRESULT Today(DATE* date) noexcept {
  platform::SYSTEMTIME time{};
  if (!LocalNow(0, &time)) return hr::kFail;
  time.wHour = 0;
  time.wMinute = 0;
  time.wSecond = 0;
  time.wMilliseconds = 0;
  return ToDate(time, date);
}

}  // namespace tamu::device
