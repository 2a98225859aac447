// device/sqlite/stored_text.h - text as the database keeps it: UTF-8 that any tool can read.
//   What UTF-8 or the database cannot hold is escaped: a NUL, a lone surrogate, and the escape
//   character itself (U+001B) become U+001B and four hexadecimal digits in upper case (U+0000 is
//   ESC "0000", U+001B is ESC "001B"). All other text is kept as it is; nothing is normalised.
//   Units      UTF-16 units and bytes.
//   Errors     std::bad_alloc.
#ifndef TAMU_DEVICE_SQLITE_STORED_TEXT_H_
#define TAMU_DEVICE_SQLITE_STORED_TEXT_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tamu::device {

// Replaces `*stored`, whose memory is used again.
void ToStoredText(std::u16string_view text, std::string* stored);

// The text again. What no ToStoredText has written is read as well as it can be: bytes that are not
// UTF-8 become U+FFFD, an escape character without its digits stays one.
[[nodiscard]] std::u16string FromStoredText(std::string_view stored);

// Bytes as hexadecimal digits, which every database keeps as text; a character that is no digit
// ends them.
void ToStoredBytes(const std::vector<std::uint8_t>& bytes, std::string* stored);
[[nodiscard]] std::vector<std::uint8_t> FromStoredBytes(std::string_view stored);

}  // namespace tamu::device

#endif  // TAMU_DEVICE_SQLITE_STORED_TEXT_H_
