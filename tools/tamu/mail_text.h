// mail_text.h - texts of mails as they stand in a message, decoded for people: transfer encodings,
// character sets, encoded words (RFC 2045 and 2047).
//   Errors     functions throw std::bad_alloc when memory runs out; malformed input is taken as it
//   stands.
#ifndef TAMU_TOOLS_MAIL_TEXT_H_
#define TAMU_TOOLS_MAIL_TEXT_H_

#include <cstdint>
#include <string>
#include <string_view>

namespace tamu::tool {

// A parameter of a Content-Type header ("charset", "name", in small letters), without its quotes;
// "" when it is not there.
[[nodiscard]] std::string MAIL_Parameter(std::string_view content_type, std::string_view name);

// The code page that a header's charset names; the input code page where it names none that is
// known.
[[nodiscard]] std::uint32_t MAIL_CodePage(std::string_view content_type);

// A header's value: encoded words undone, the rest taken in `code_page`, blanks around it left out.
[[nodiscard]] std::u16string MAIL_DecodeHeader(std::string_view value, std::uint32_t code_page);

// A part's text with its transfer encoding undone.
[[nodiscard]] std::string MAIL_DecodeTransfer(std::string_view text, std::string_view encoding);

// 8-bit text up to its first NUL as wide text.
[[nodiscard]] std::u16string MAIL_ToWide(std::string_view bytes, std::uint32_t code_page);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_MAIL_TEXT_H_
