#include "text/date_value.h"

#include <cmath>
#include <limits>

namespace tamu {
namespace {

constexpr double kMinutesPerDay = 24 * 60;
constexpr double kSecondsPerDay = kMinutesPerDay * 60;

// A field as a system time holds it; what does not fit becomes a number that no field can be.
constexpr std::uint16_t Narrow(std::int32_t field) noexcept {
  constexpr std::uint16_t kImpossible = std::numeric_limits<std::uint16_t>::max();
  return field >= 0 && field < kImpossible ? static_cast<std::uint16_t>(field) : kImpossible;
}

constexpr platform::SYSTEMTIME SystemTimeOf(const DateFields& fields) noexcept {
  return {Narrow(fields.year),   Narrow(fields.month),  0, Narrow(fields.day), Narrow(fields.hour),
          Narrow(fields.minute), Narrow(fields.second), 0};
}

// Days before day 0 count backwards with their time of day forwards, so sums are made of days that
// count evenly.
double ToLinear(double days) noexcept {
  const double whole = std::trunc(days);
  return whole + std::abs(days - whole);
}
double FromLinear(double linear) noexcept {
  const double whole = std::floor(linear);
  return whole < 0 ? whole - (linear - whole) : linear;
}

}  // namespace

DateValue DATE_FromFields(const DateFields& fields) noexcept {
  return DATE_FromSystemTime(SystemTimeOf(fields));
}

bool DATE_ToFields(const DateValue& date, DateFields* fields) noexcept {
  platform::SYSTEMTIME time{};
  if (!DATE_ToSystemTime(date, &time)) return false;
  *fields = {time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond};
  return true;
}

DateValue DATE_FromSystemTime(const platform::SYSTEMTIME& time) noexcept {
  double days = 0;
  if (platform::SystemTimeToVariantTime(&time, &days) == 0) return kDateInvalid;
  return {days, true};
}

bool DATE_ToSystemTime(const DateValue& date, platform::SYSTEMTIME* time) noexcept {
  return date.valid && platform::VariantTimeToSystemTime(date.days, time) != 0;
}

DateValue DATE_FromFileTime(const platform::FILETIME& utc) noexcept {
  platform::FILETIME local{};
  platform::SYSTEMTIME time{};
  if (platform::FileTimeToLocalFileTime(&utc, &local) == 0 ||
      platform::FileTimeToSystemTime(&local, &time) == 0) {
    return kDateInvalid;
  }
  return DATE_FromSystemTime(time);
}

DateValue DATE_FromUtc(const DateFields& utc) noexcept {
  const platform::SYSTEMTIME time = SystemTimeOf(utc);
  platform::FILETIME instant{};
  if (platform::SystemTimeToFileTime(&time, &instant) == 0) return kDateInvalid;
  return DATE_FromFileTime(instant);
}

bool DATE_ToFileTime(const DateValue& date, platform::FILETIME* utc) noexcept {
  platform::SYSTEMTIME time{};
  platform::FILETIME local{};
  return DATE_ToSystemTime(date, &time) && platform::SystemTimeToFileTime(&time, &local) != 0 &&
         platform::LocalFileTimeToFileTime(&local, utc) != 0;
}

DateValue DATE_AddMinutes(const DateValue& date, std::int32_t minutes) noexcept {
  const DateValue sum{FromLinear(ToLinear(date.days) + minutes / kMinutesPerDay), date.valid};
  platform::SYSTEMTIME time{};
  if (!DATE_ToSystemTime(sum, &time)) return kDateInvalid;
  return DATE_FromSystemTime(time);  // rounds the sum to the second that it stands for
}

std::int64_t DATE_SecondsBetween(const DateValue& from, const DateValue& to) noexcept {
  return std::llround((ToLinear(to.days) - ToLinear(from.days)) * kSecondsPerDay);
}

}  // namespace tamu
