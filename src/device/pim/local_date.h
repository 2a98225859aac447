// device/pim/local_date.h - sums with the stores' dates.
//   Units      a date is days since 30 December 1899, local; of a negative one the whole part is the
//              day and the fraction counts forward from its midnight (-1.25 is 29 December, 06:00).
//              Days and seconds are counted from 30 December 1899.
//   Range      what lies outside the years 100 to 9999 is taken as the nearest day inside.
#ifndef TAMU_DEVICE_PIM_LOCAL_DATE_H_
#define TAMU_DEVICE_PIM_LOCAL_DATE_H_

#include <cstdint>

#include "platform/com.h"

namespace tamu::device {

inline constexpr std::int32_t kSecondsPerDay = 86400;
inline constexpr std::int32_t kSecondsPerMinute = 60;

// Neither infinite nor not a number.
[[nodiscard]] bool IsDate(platform::DATE date) noexcept;

[[nodiscard]] std::int32_t DayOf(platform::DATE date) noexcept;
// The time of day, as a fraction from 0 to below 1, exactly as the date has it.
[[nodiscard]] double TimeOf(platform::DATE date) noexcept;
// The date of a day and a time of day.
[[nodiscard]] platform::DATE JoinDate(std::int32_t day, double time) noexcept;

// The nearest whole second.
[[nodiscard]] std::int64_t SecondsOf(platform::DATE date) noexcept;
// The time of day to the nearest second.
[[nodiscard]] std::int32_t SecondsOfTime(double time) noexcept;
// The double that the platform's own conversion gives for this second.
[[nodiscard]] platform::DATE DateOfSeconds(std::int64_t seconds) noexcept;

// The whole hour after now, and midnight before it. kFail when the platform does not know the time.
[[nodiscard]] platform::HRESULT NextFullHour(platform::DATE* date) noexcept;
[[nodiscard]] platform::HRESULT Today(platform::DATE* date) noexcept;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_PIM_LOCAL_DATE_H_
