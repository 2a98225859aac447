#include "text/string_tools.h"

#include <array>
#include <cstring>

namespace tamu {
namespace {

constexpr std::uint8_t kNoDigit = 255;

constexpr auto kDigitValues = [] {
  std::array<std::uint8_t, 256> values{};
  values.fill(kNoDigit);
  for (unsigned i = 0; i < 10; ++i) values['0' + i] = static_cast<std::uint8_t>(i);
  for (unsigned i = 0; i < 6; ++i) {
    values['a' + i] = values['A' + i] = static_cast<std::uint8_t>(10 + i);
  }
  return values;
}();

}  // namespace

const char* STR_FindNoCase(const char* text, std::string_view upper_needle) noexcept {
  for (std::string_view rest = text; rest.size() >= upper_needle.size(); rest.remove_prefix(1)) {
    if (STR_BeginsNoCase(rest, upper_needle)) return rest.data();
    if (rest.empty()) break;
  }
  return nullptr;
}

bool STR_EqualNoCase(std::string_view a, std::string_view b) noexcept {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (STR_ToUpper(a[i]) != STR_ToUpper(b[i])) return false;
  }
  return true;
}

MemPtr<char> STR_ReplaceAll(std::string_view text, std::string_view needle,
                            std::string_view replacement) noexcept {
  std::size_t found = 0;
  for (std::size_t at = text.find(needle); at != std::string_view::npos;
       at = text.find(needle, at + needle.size())) {
    ++found;
  }
  const std::size_t size = text.size() - found * needle.size() + found * replacement.size();
  MemPtr<char> result(static_cast<char*>(MEM_Alloc(size + 1)));
  if (!result) return result;
  char* out = result.get();
  const auto append = [&out](std::string_view piece) {
    std::memcpy(out, piece.data(), piece.size());
    out += piece.size();
  };
  for (; found != 0; --found) {
    const std::size_t at = text.find(needle);
    append(text.substr(0, at));
    append(replacement);
    text.remove_prefix(at + needle.size());
  }
  append(text);
  *out = '\0';
  return result;
}

bool STR_IsAscii(std::u16string_view text) noexcept {
  char16_t all = 0;
  for (const char16_t unit : text) all |= unit;
  return all <= 127;
}

std::uint8_t HEX_DigitValue(char digit) noexcept {
  return kDigitValues[static_cast<unsigned char>(digit)];
}

std::size_t HEX_ToBytes(const char* hex, std::uint8_t* out, std::size_t count) noexcept {
  std::size_t consumed = 0;
  for (; count != 0 && hex[0] != '\0' && hex[1] != '\0'; --count, hex += 2, consumed += 2) {
    *out++ = static_cast<std::uint8_t>(HEX_DigitValue(hex[0]) * 16 + HEX_DigitValue(hex[1]));
  }
  return consumed;
}

}  // namespace tamu
