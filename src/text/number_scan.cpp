#include "text/number_scan.h"

#include <algorithm>
#include <limits>

namespace tamu {
namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";

constexpr bool IsDigit(char character) noexcept { return character >= '0' && character <= '9'; }

std::string_view WithoutLeadingBlanks(std::string_view text) noexcept {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text;
}

struct ScannedNumber {
  std::int32_t value = 0;
  std::size_t length = 0;  // with the sign; 0 when there is no digit
};

ScannedNumber ScanNumber(std::string_view text) noexcept {
  // One more than the largest, which is the smallest without its sign.
  constexpr std::int64_t kMost = std::int64_t{std::numeric_limits<std::int32_t>::max()} + 1;
  const bool negative = text.starts_with('-');
  const std::size_t first = negative || text.starts_with('+') ? 1 : 0;
  std::size_t end = first;
  std::int64_t value = 0;
  for (; end < text.size() && IsDigit(text[end]); ++end) {
    value = std::min(value * 10 + (text[end] - '0'), kMost);
  }
  if (end == first) return {};
  return {static_cast<std::int32_t>(negative ? -value : std::min(value, kMost - 1)), end};
}

}  // namespace

std::int32_t STR_ToNumber(std::string_view text) noexcept {
  return ScanNumber(WithoutLeadingBlanks(text)).value;
}

bool STR_IsNumber(std::string_view text) noexcept {
  return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

void TextScan::SkipBlanks() noexcept { rest_ = WithoutLeadingBlanks(rest_); }

bool TextScan::Number(std::int32_t* number, std::size_t width) noexcept {
  SkipBlanks();
  const ScannedNumber scanned = ScanNumber(rest_.substr(0, width));
  if (scanned.length == 0) return false;
  rest_.remove_prefix(scanned.length);
  *number = scanned.value;
  return true;
}

bool TextScan::Word(std::string_view* word, std::size_t width) noexcept {
  SkipBlanks();
  const std::string_view found = rest_.substr(0, width);
  const std::size_t length = std::min(found.find_first_of(kBlanks), found.size());
  if (length == 0) return false;
  *word = found.substr(0, length);
  rest_.remove_prefix(length);
  return true;
}

bool TextScan::Character(char* character) noexcept {
  if (rest_.empty()) return false;
  *character = rest_.front();
  rest_.remove_prefix(1);
  return true;
}

bool TextScan::Literal(char expected) noexcept {
  if (!rest_.starts_with(expected)) return false;
  rest_.remove_prefix(1);
  return true;
}

}  // namespace tamu
