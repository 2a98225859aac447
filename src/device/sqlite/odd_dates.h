// device/sqlite/odd_dates.h - dates that a column of numbers would change: a NaN is NULL to the
// database and a negative zero loses its sign.
//   Their columns hold 0, and the text column "odd_dates" of the row their bits: "COLUMN=" and 16
//   hexadecimal digits, then ";", for each.
#ifndef TAMU_DEVICE_SQLITE_ODD_DATES_H_
#define TAMU_DEVICE_SQLITE_ODD_DATES_H_

#include <string>
#include <string_view>

namespace tamu::device {

// What the column holds of a date; an odd one is noted. Throws std::bad_alloc when memory runs out.
[[nodiscard]] double ToColumn(double date, std::string_view column, std::string* odd_dates);

// The date again.
[[nodiscard]] double FromColumn(double held, std::string_view column,
                                std::string_view odd_dates) noexcept;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_SQLITE_ODD_DATES_H_
