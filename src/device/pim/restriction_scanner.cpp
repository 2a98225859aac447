#include "device/pim/restriction_scanner.h"

#include <array>
#include <limits>

#include "device/pim/local_date.h"
#include "platform/time.h"

namespace tamu::device {
namespace {

constexpr bool IsBlank(char16_t unit) noexcept {
  return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n';
}

constexpr char16_t ToUpper(char16_t unit) noexcept {
  return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 0x20) : unit;
}

constexpr bool IsDigit(char16_t unit) noexcept { return unit >= u'0' && unit <= u'9'; }

// The numbers of a date and what stands between them.
class DateScanner {
 public:
  explicit DateScanner(std::u16string_view text) noexcept : text_(text) {}

  [[nodiscard]] bool AtEnd() const noexcept { return position_ == text_.size(); }
  [[nodiscard]] bool Take(char16_t unit) noexcept {
    if (AtEnd() || text_[position_] != unit) return false;
    ++position_;
    return true;
  }
  // Blanks, at least one.
  [[nodiscard]] bool TakeBlanks() noexcept {
    const std::size_t before = position_;
    while (!AtEnd() && IsBlank(text_[position_])) ++position_;
    return position_ != before;
  }
  // A number of at most so many digits.
  [[nodiscard]] bool TakeNumber(std::size_t digits, std::uint16_t* number) noexcept {
    const std::size_t before = position_;
    std::uint16_t value = 0;
    while (!AtEnd() && IsDigit(text_[position_]) && position_ - before < digits) {
      value = static_cast<std::uint16_t>(value * 10 + (text_[position_] - u'0'));
      ++position_;
    }
    *number = value;
    return position_ != before;
  }

 private:
  std::u16string_view text_;
  std::size_t position_ = 0;
};

// month/day/year or year-month-day.
bool TakeDay(DateScanner* scanner, platform::SYSTEMTIME* time) noexcept {
  std::uint16_t first = 0;
  if (!scanner->TakeNumber(4, &first)) return false;
  if (scanner->Take(u'/')) {
    time->wMonth = first;
    return scanner->TakeNumber(2, &time->wDay) && scanner->Take(u'/') &&
           scanner->TakeNumber(4, &time->wYear);
  }
  time->wYear = first;
  return scanner->Take(u'-') && scanner->TakeNumber(2, &time->wMonth) && scanner->Take(u'-') &&
         scanner->TakeNumber(2, &time->wDay);
}

// hour:minute or hour:minute:second.
bool TakeTime(DateScanner* scanner, platform::SYSTEMTIME* time) noexcept {
  if (!scanner->TakeNumber(2, &time->wHour) || !scanner->Take(u':')) return false;
  if (!scanner->TakeNumber(2, &time->wMinute)) return false;
  return !scanner->Take(u':') || scanner->TakeNumber(2, &time->wSecond);
}

}  // namespace

bool EqualWords(std::u16string_view text, std::u16string_view word) noexcept {
  if (text.size() != word.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (ToUpper(text[i]) != ToUpper(word[i])) return false;
  }
  return true;
}

std::optional<std::int32_t> ScanNumber(std::u16string_view text) noexcept {
  const bool negative = !text.empty() && text.front() == u'-';
  if (negative || (!text.empty() && text.front() == u'+')) text.remove_prefix(1);
  constexpr std::size_t kMaxDigits = 10;
  if (text.empty() || text.size() > kMaxDigits) return std::nullopt;
  std::int64_t number = 0;
  for (const char16_t unit : text) {
    if (!IsDigit(unit)) return std::nullopt;
    number = number * 10 + (unit - u'0');
  }
  if (negative) number = -number;
  if (number < std::numeric_limits<std::int32_t>::min() ||
      number > std::numeric_limits<std::int32_t>::max()) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(number);
}

std::optional<bool> ScanFlag(std::u16string_view text) noexcept {
  if (text == u"-1" || text == u"1" || EqualWords(text, u"TRUE")) return true;
  if (text == u"0" || EqualWords(text, u"FALSE")) return false;
  return std::nullopt;
}

std::optional<std::int64_t> ScanDate(std::u16string_view text) noexcept {
  DateScanner scanner(text);
  platform::SYSTEMTIME time{};
  if (!TakeDay(&scanner, &time)) return std::nullopt;
  if (!scanner.AtEnd()) {
    if (!scanner.Take(u'T') && !scanner.TakeBlanks()) return std::nullopt;
    if (!scanner.AtEnd() && !TakeTime(&scanner, &time)) return std::nullopt;
  }
  double date = 0;
  if (!scanner.AtEnd() || !platform::SystemTimeToVariantTime(&time, &date)) return std::nullopt;
  return SecondsOf(date);
}

bool RestrictionScanner::Take(char16_t unit) noexcept {
  if (!IsAt(position_, unit)) return false;
  ++position_;
  return true;
}

bool RestrictionScanner::TakeJoin(bool* is_and) noexcept {
  const std::size_t after = AfterJoin(position_, is_and);
  if (after == 0) return false;
  position_ = after;
  return true;
}

bool RestrictionScanner::TakeName(std::u16string_view* name) noexcept {
  const std::size_t end = text_.find(u']', position_);
  if (end == std::u16string_view::npos) return false;
  *name = text_.substr(position_, end - position_);
  position_ = end + 1;
  return true;
}

bool RestrictionScanner::TakeOperator(Restriction::Operator* op) noexcept {
  using enum Restriction::Operator;
  if (Take(u'=')) {
    *op = kEqual;
  } else if (Take(u'<')) {
    *op = Take(u'>') ? kNotEqual : Take(u'=') ? kLessOrEqual : kLess;
  } else if (Take(u'>')) {
    *op = Take(u'=') ? kGreaterOrEqual : kGreater;
  } else {
    return false;
  }
  return true;
}

bool RestrictionScanner::TakeValue(std::size_t depth, std::u16string_view* value) noexcept {
  if (!Take(u'"')) {
    if (IsAt(position_, u'=') || IsAt(position_, u'<') || IsAt(position_, u'>')) return false;
    std::size_t end = position_;
    while (end < text_.size() && !IsBlank(text_[end]) && (depth == 0 || text_[end] != u')')) ++end;
    *value = text_.substr(position_, end - position_);
    position_ = end;
    return !value->empty();
  }
  const std::size_t begin = position_;
  std::size_t quote = text_.find(u'"', begin);
  while (quote != std::u16string_view::npos && !EndsValue(quote + 1, depth)) {
    quote = text_.find(u'"', quote + 1);
  }
  if (quote == std::u16string_view::npos) return false;
  *value = text_.substr(begin, quote - begin);
  position_ = quote + 1;
  return true;
}

std::size_t RestrictionScanner::AfterBlanks(std::size_t position) const noexcept {
  while (position < text_.size() && IsBlank(text_[position])) ++position;
  return position;
}

std::size_t RestrictionScanner::AfterJoin(std::size_t position, bool* is_and) const noexcept {
  constexpr std::array<std::u16string_view, 2> kWords = {u"OR", u"AND"};
  for (std::size_t i = 0; i < kWords.size(); ++i) {
    const std::size_t after = position + kWords[i].size();
    if (after >= text_.size()) continue;
    if (!EqualWords(text_.substr(position, kWords[i].size()), kWords[i])) continue;
    if (!IsBlank(text_[after]) && text_[after] != u'(' && text_[after] != u'[') continue;
    *is_and = i == 1;
    return after;
  }
  return 0;
}

// What follows a closing quote.
bool RestrictionScanner::EndsValue(std::size_t position, std::size_t depth) const noexcept {
  position = AfterBlanks(position);
  for (; depth > 0 && IsAt(position, u')'); --depth) position = AfterBlanks(position + 1);
  if (position == text_.size()) return true;
  bool is_and = false;
  position = AfterJoin(position, &is_and);
  if (position == 0) return false;
  position = AfterBlanks(position);
  for (std::size_t open = 0; open < Restriction::kMaxDepth && IsAt(position, u'('); ++open) {
    position = AfterBlanks(position + 1);
  }
  return IsAt(position, u'[');
}

}  // namespace tamu::device
