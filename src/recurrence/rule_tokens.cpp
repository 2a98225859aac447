#include "recurrence/rule_tokens.h"

#include <cstddef>
#include <iterator>
#include <limits>

namespace tamu {
namespace {

constexpr char kEndMarker = '$';

constexpr bool IsDigit(char character) noexcept { return character >= '0' && character <= '9'; }

// The character at a place, NUL behind the end: no token holds one.
constexpr char At(std::string_view token, std::size_t place) noexcept {
  return place < token.size() ? token[place] : '\0';
}

constexpr std::uint8_t MarkerAt(std::string_view token, std::size_t place) noexcept {
  return At(token, place) == kEndMarker ? 1 : 0;
}

constexpr std::size_t CountDigits(std::string_view text) noexcept {
  std::size_t count = 0;
  while (count < text.size() && IsDigit(text[count])) ++count;
  return count;
}

// The number that the text begins with, 0 when it begins with no digit.
constexpr std::int32_t ReadDigits(std::string_view text, bool negative = false) noexcept {
  using Limits = std::numeric_limits<std::int32_t>;
  std::int64_t number = 0;
  for (std::size_t i = 0; i < text.size() && IsDigit(text[i]); ++i) {
    number = number * 10 + (negative ? '0' - text[i] : text[i] - '0');
    if (number > Limits::max()) return Limits::max();
    if (number < Limits::min()) return Limits::min();
  }
  return static_cast<std::int32_t>(number);
}

// As atoi, but the same on every machine when the number is too large.
constexpr std::int32_t ReadSigned(std::string_view text) noexcept {
  constexpr std::string_view kSpace = " \t\n\v\f\r";
  while (!text.empty() && kSpace.find(text.front()) != kSpace.npos) text.remove_prefix(1);
  const bool negative = At(text, 0) == '-';
  if (negative || At(text, 0) == '+') text.remove_prefix(1);
  return ReadDigits(text, negative);
}

constexpr bool ReadNothing(std::string_view, ErgTokenValue*) noexcept { return false; }

constexpr bool ReadFrequency(std::string_view token, ErgTokenValue* value) noexcept {
  std::size_t letters = 0;
  while (letters < token.size() && !IsDigit(token[letters])) ++letters;
  for (const ErgKindRow& row : kErgKinds) {
    if (token.substr(0, letters) != row.prefix) continue;
    value->kind = row.kind;
    value->number = ReadDigits(token.substr(letters));
    return true;
  }
  return false;
}

constexpr bool ReadTime(std::string_view token, ErgTokenValue* value) noexcept {
  if ((token.size() != 4 && token.size() != 5) || CountDigits(token.substr(0, 4)) != 4) {
    return false;
  }
  value->number = ReadDigits(token.substr(0, 2));
  value->minute = ReadDigits(token.substr(2, 2));
  value->end_marker = MarkerAt(token, 4);
  return value->number < 24 && value->minute < 60;
}

constexpr bool ReadWeekday(std::string_view token, ErgTokenValue* value) noexcept {
  for (std::size_t i = 0; i < kErgWeekdayNames.size(); ++i) {
    if (token.substr(0, 2) != kErgWeekdayNames[i]) continue;
    value->number = static_cast<std::int32_t>(i + 1);
    value->end_marker = MarkerAt(token, 2);
    return true;
  }
  return false;
}

constexpr bool ReadOccurrence(std::string_view token, ErgTokenValue* value) noexcept {
  const char sign = At(token, 1);
  if (token.size() > 3 || !IsDigit(At(token, 0)) || (sign != '+' && sign != '-')) return false;
  value->number = ReadDigits(token.substr(0, 1), sign == '-');
  value->end_marker = MarkerAt(token, 2);
  return true;
}

constexpr bool ReadDay(std::string_view token, ErgTokenValue* value) noexcept {
  if (token == "LD") {
    value->number = -1;
    return true;
  }
  const std::size_t digits = CountDigits(token);
  if (token.size() > 4 || digits == 0) return false;
  const char sign = At(token, digits);
  const bool is_signed = sign == '-' || sign == '+';
  value->number = ReadDigits(token, sign == '-');
  value->end_marker = MarkerAt(token, digits + (is_signed ? 1 : 0));
  return true;
}

constexpr bool ReadRanged(std::string_view token, std::size_t max_digits, std::int32_t max_value,
                          ErgTokenValue* value) noexcept {
  const std::size_t digits = CountDigits(token);
  if (digits == 0 || digits > max_digits) return false;
  value->number = ReadDigits(token);
  value->end_marker = MarkerAt(token, digits);
  return value->number >= 1 && value->number <= max_value;
}

constexpr bool ReadMonth(std::string_view token, ErgTokenValue* value) noexcept {
  return ReadRanged(token, 4, 12, value);
}

constexpr bool ReadYearDay(std::string_view token, ErgTokenValue* value) noexcept {
  return ReadRanged(token, 6, 366, value);
}

constexpr bool ReadDuration(std::string_view token, ErgTokenValue* value) noexcept {
  if (At(token, 0) != '#') return false;
  value->number = ReadSigned(token.substr(1));
  return true;
}

constexpr bool ReadEndDate(std::string_view token, ErgTokenValue*) noexcept {
  return token.size() >= 15 && token[8] == 'T';
}

struct FormRow {
  ErgForm form;
  bool (*read)(std::string_view token, ErgTokenValue* value) noexcept;
};
constexpr FormRow kForms[] = {
    {ErgForm::kNone, &ReadNothing},
    {ErgForm::kFrequency, &ReadFrequency},
    {ErgForm::kTime, &ReadTime},
    {ErgForm::kWeekday, &ReadWeekday},
    {ErgForm::kOccurrence, &ReadOccurrence},
    {ErgForm::kDay, &ReadDay},
    {ErgForm::kMonth, &ReadMonth},
    {ErgForm::kYearDay, &ReadYearDay},
    {ErgForm::kDuration, &ReadDuration},
    {ErgForm::kEndDate, &ReadEndDate},
};
constexpr bool FormsStandInOrder() {
  for (std::size_t i = 0; i < std::size(kForms); ++i) {
    if (kForms[i].form != static_cast<ErgForm>(i)) return false;
  }
  return std::size(kForms) == static_cast<std::size_t>(ErgForm::kEndDate) + 1;
}
static_assert(FormsStandInOrder());

}  // namespace

bool TOKEN_Read(ErgForm form, std::string_view token, ErgTokenValue* value) noexcept {
  *value = {};
  return kForms[static_cast<std::size_t>(form)].read(token, value);
}

std::string_view TOKEN_Next(std::string_view* text) noexcept {
  std::size_t start = 0;
  while (start < text->size() && (*text)[start] == ' ') ++start;
  std::size_t end = start;
  while (end < text->size() && (*text)[end] != ' ') ++end;
  const std::string_view token = text->substr(start, end - start);
  text->remove_prefix(end);
  return token;
}

}  // namespace tamu
