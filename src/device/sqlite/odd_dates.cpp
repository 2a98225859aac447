#include "device/sqlite/odd_dates.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace tamu::device {
namespace {

constexpr std::size_t kDigits = 16;

bool IsOdd(double date) noexcept { return std::isnan(date) || (date == 0 && std::signbit(date)); }

}  // namespace

double ToColumn(double date, std::string_view column, std::string* odd_dates) {
  if (!IsOdd(date)) return date;
  odd_dates->append(column).push_back('=');
  const auto bits = std::bit_cast<std::uint64_t>(date);
  for (std::size_t i = 0; i < kDigits; ++i) {
    odd_dates->push_back("0123456789ABCDEF"[bits >> (60 - 4 * i) & 15]);
  }
  odd_dates->push_back(';');
  return 0;
}

double FromColumn(double held, std::string_view column, std::string_view odd_dates) noexcept {
  for (std::string_view rest = odd_dates; !rest.empty();) {
    const std::size_t end = rest.find(';');
    const std::string_view note = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    if (note.size() != column.size() + 1 + kDigits || !note.starts_with(column) ||
        note[column.size()] != '=') {
      continue;
    }
    std::uint64_t bits = 0;
    const char* const last = note.data() + note.size();
    const auto parsed = std::from_chars(last - kDigits, last, bits, 16);
    if (parsed.ec == std::errc() && parsed.ptr == last) return std::bit_cast<double>(bits);
  }
  return held;
}

}  // namespace tamu::device
