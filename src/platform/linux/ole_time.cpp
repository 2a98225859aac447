// platform/linux/ole_time.cpp - system times to and from OLE dates.
//   The day is the number without its fraction and the time of day is the fraction without its
//   sign, so that the dates before day 0 do not grow with time: -1.25 is later than -1.0.
#include <cmath>

#include "platform/linux/civil_time.h"
#include "platform/linux/errors.h"
#include "platform/time.h"

namespace tamu::platform {
namespace {

constexpr std::uint16_t kFirstYear = 100;
constexpr std::uint16_t kLastYear = 9999;
constexpr std::int64_t kDayZero = DayNumber(1899, 12, 30);
constexpr std::int64_t kFirstDay = DayNumber(kFirstYear, 1, 1) - kDayZero;
constexpr std::int64_t kLastDay = DayNumber(kLastYear, 12, 31) - kDayZero;
static_assert(kFirstDay == -657434 && kLastDay == 2958465);

std::int32_t ToVariantTime(const SYSTEMTIME* time, double* date) {
  if (!IsSystemTime(*time, kFirstYear, kLastYear)) return FailWith(kErrorInvalidParameter, 0);
  const auto day = static_cast<double>(DayNumber(*time) - kDayZero);
  const double fraction =
      static_cast<double>(SecondOfDay(*time)) / static_cast<double>(kSecondsPerDay);
  *date = day < 0 ? day - fraction : day + fraction;
  return 1;
}

std::int32_t FromVariantTime(double date, SYSTEMTIME* time) {
  // Also refuses what is not a number.
  if (!(date > static_cast<double>(kFirstDay - 1) && date < static_cast<double>(kLastDay + 1))) {
    return FailWith(kErrorInvalidParameter, 0);
  }
  const double whole = std::trunc(date);
  const double fraction = std::abs(date - whole);
  auto day = static_cast<std::int64_t>(whole);
  auto second =
      static_cast<std::int64_t>(std::floor(fraction * static_cast<double>(kSecondsPerDay) + 0.5));
  if (second == kSecondsPerDay) {
    second = 0;
    ++day;
  }
  if (day > kLastDay) return FailWith(kErrorInvalidParameter, 0);
  *time = MakeSystemTime(kDayZero + day, second);
  return 1;
}

}  // namespace

constinit Service<std::int32_t(const SYSTEMTIME*, double*)> SystemTimeToVariantTime{
    "SystemTimeToVariantTime", &ToVariantTime, 0};
constinit Service<std::int32_t(double, SYSTEMTIME*)> VariantTimeToSystemTime{
    "VariantTimeToSystemTime", &FromVariantTime, 0};

}  // namespace tamu::platform
