// text/string_tools.h - searching and replacing in 8-bit text, hexadecimal digits.
//   Case is folded for the letters A to Z alone, in every locale.
//   Units      bytes. Ownership: texts are borrowed; results that are new texts are the caller's.
#ifndef TAMU_TEXT_STRING_TOOLS_H_
#define TAMU_TEXT_STRING_TOOLS_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/memory.h"

namespace tamu {

[[nodiscard]] constexpr char STR_ToUpper(char character) noexcept {
  return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A')
                                              : character;
}

// True when the text begins with `upper`, given in upper case, in any case.
[[nodiscard]] constexpr bool STR_BeginsNoCase(std::string_view text,
                                              std::string_view upper) noexcept {
  if (text.size() < upper.size()) return false;
  for (std::size_t i = 0; i < upper.size(); ++i) {
    if (STR_ToUpper(text[i]) != upper[i]) return false;
  }
  return true;
}

// The first place where `upper_needle`, given in upper case, stands in the text in any case, or
// null.
[[nodiscard]] const char* STR_FindNoCase(const char* text, std::string_view upper_needle) noexcept;

// True when the texts are equal but for the case of letters.
[[nodiscard]] bool STR_EqualNoCase(std::string_view a, std::string_view b) noexcept;

// A new text with every occurrence of `needle` (not empty) replaced; null when memory runs out.
[[nodiscard]] MemPtr<char> STR_ReplaceAll(std::string_view text, std::string_view needle,
                                          std::string_view replacement) noexcept;

// True when no unit is above 127.
[[nodiscard]] bool STR_IsAscii(std::u16string_view text) noexcept;

// 0 to 15 for a hexadecimal digit of either case, 255 for anything else.
[[nodiscard]] std::uint8_t HEX_DigitValue(char digit) noexcept;

// Turns pairs of digits into at most `count` bytes. A character that is no digit counts as -1 in
// high * 16 + low, modulo 256. Stops before a pair that the terminator cuts. Returns the characters
// consumed, two a byte.
std::size_t HEX_ToBytes(const char* hex, std::uint8_t* out, std::size_t count) noexcept;

}  // namespace tamu

#endif  // TAMU_TEXT_STRING_TOOLS_H_
