// platform/linux/code_pages/japanese_codes.h - JIS codes of the characters of code page 932.
//   A JIS code is row * 256 + cell, both 21 to 7E; 0 stands for "none".
#ifndef TAMU_PLATFORM_LINUX_CODE_PAGES_JAPANESE_CODES_H_
#define TAMU_PLATFORM_LINUX_CODE_PAGES_JAPANESE_CODES_H_

#include <cstdint>

#include "platform/linux/code_pages/tables.h"

namespace tamu::platform::code_pages {

// Half-width katakana: bytes A1 to DF of code page 932, U+FF61 to U+FF9F.
[[nodiscard]] constexpr bool IsKatakanaByte(std::uint16_t code) noexcept {
  return code >= 0xA1 && code <= 0xDF;
}

// The unit of a character by row and cell, both 21 to 7E; code page 932's default unit where there
// is none.
[[nodiscard]] char16_t UnitFromJis(std::uint8_t row, std::uint8_t cell) noexcept;

// The JIS code of a double-byte code of page 932, or 0 when it lies outside of the 94 rows (the
// user-defined area). Codes of the area FA40 to FC4B are replaced by the same characters' codes in
// rows 13 and 89 to 92.
[[nodiscard]] std::uint16_t JisFromCode932(std::uint16_t code) noexcept;

// The full-width katakana or punctuation of a half-width one, given as its byte A1 to DF.
[[nodiscard]] std::uint16_t FullWidthJis(std::uint16_t katakana_byte) noexcept;

}  // namespace tamu::platform::code_pages

#endif  // TAMU_PLATFORM_LINUX_CODE_PAGES_JAPANESE_CODES_H_
