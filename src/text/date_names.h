// text/date_names.h - the names of days and months in dates, English and case-sensitive.
#ifndef TAMU_TEXT_DATE_NAMES_H_
#define TAMU_TEXT_DATE_NAMES_H_

#include <cstdint>
#include <string_view>

namespace tamu {

inline constexpr std::string_view kDayNames[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
inline constexpr std::string_view kMonthNames[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// 1 to 12 for a month's name, 0 for anything else.
[[nodiscard]] constexpr std::int32_t MonthOfName(std::string_view name) noexcept {
  std::int32_t month = 0;
  for (const std::string_view known : kMonthNames) {
    ++month;
    if (known == name) return month;
  }
  return 0;
}

}  // namespace tamu

#endif  // TAMU_TEXT_DATE_NAMES_H_
