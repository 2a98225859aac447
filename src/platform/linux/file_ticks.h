// platform/linux/file_ticks.h - a file time as one number.
#ifndef TAMU_PLATFORM_LINUX_FILE_TICKS_H_
#define TAMU_PLATFORM_LINUX_FILE_TICKS_H_

#include <cstdint>

#include "platform/linux/civil_time.h"
#include "platform/time.h"

namespace tamu::platform {

inline constexpr std::int64_t kTicksPerSecond = 10'000'000;
inline constexpr std::int64_t kTicksPerMillisecond = kTicksPerSecond / 1000;
// From the file time's start to the system clock's.
inline constexpr std::int64_t kFileTimeStartDay = DayNumber(1601, 1, 1);
static_assert(kFileTimeStartDay == -134774);

// Negative for a file time of 2^63 and more, which none of the functions takes.
[[nodiscard]] constexpr std::int64_t TicksOf(const FILETIME& time) noexcept {
  return static_cast<std::int64_t>(std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime);
}

[[nodiscard]] constexpr FILETIME FileTimeOf(std::int64_t ticks) noexcept {
  const auto bits = static_cast<std::uint64_t>(ticks);
  return {static_cast<std::uint32_t>(bits), static_cast<std::uint32_t>(bits >> 32)};
}

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_LINUX_FILE_TICKS_H_
