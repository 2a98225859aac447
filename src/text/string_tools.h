// text/string_tools.h - searching and replacing in 8-bit text, hexadecimal digits.
//   Case is folded for the letters A to Z alone, in every locale.
//   Units      bytes.
//   Ownership  texts are borrowed; results that are new texts are the caller's.
#ifndef TAMU_TEXT_STRING_TOOLS_H_
#define TAMU_TEXT_STRING_TOOLS_H_

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
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

// The position of the first character that is `a` or `b`, from `from` on, or the text's size. Eight
// bytes at a time: nearly every byte of a file passes here.
[[nodiscard]] inline std::size_t STR_FindEither(std::string_view text, std::size_t from, char a,
                                                char b) noexcept {
  constexpr std::uint64_t kOnes = 0x0101010101010101U;
  constexpr std::uint64_t kHighBits = 0x8080808080808080U;
  // Not 0 when one of the word's bytes is.
  const auto has_zero = [](std::uint64_t word) { return (word - kOnes) & ~word & kHighBits; };
  const std::uint64_t all_a = kOnes * static_cast<unsigned char>(a);
  const std::uint64_t all_b = kOnes * static_cast<unsigned char>(b);
  for (; from + sizeof(std::uint64_t) <= text.size(); from += sizeof(std::uint64_t)) {
    std::uint64_t word;
    std::memcpy(&word, text.data() + from, sizeof word);
    const std::uint64_t found = has_zero(word ^ all_a) | has_zero(word ^ all_b);
    if (found == 0) continue;
    // The lowest bit is exact; those above it may not be.
    if constexpr (std::endian::native == std::endian::little) {
      return from + static_cast<std::size_t>(std::countr_zero(found)) / 8;
    }
    break;
  }
  while (from < text.size() && text[from] != a && text[from] != b) ++from;
  return from;
}

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
