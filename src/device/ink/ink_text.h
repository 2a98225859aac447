// device/ink/ink_text.h - plain text as bytes and back.
//   Units      byte strings and UTF-16.
//   Errors     false when the platform cannot convert; std::bad_alloc.
#ifndef TAMU_DEVICE_INK_INK_TEXT_H_
#define TAMU_DEVICE_INK_INK_TEXT_H_

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tamu::device {

// Text in a code page (platform/code_pages.h) as UTF-16; on failure `*text` is empty.
[[nodiscard]] bool INK_FromCodePage(std::uint32_t page, std::span<const std::uint8_t> bytes,
                                    std::u16string* text);

// The way back; characters that the page lacks become its best fit or "?".
[[nodiscard]] bool INK_ToCodePage(std::uint32_t page, std::u16string_view text,
                                  std::vector<std::uint8_t>* bytes);

// UTF-16, least significant byte first; half a unit at the end is dropped.
[[nodiscard]] std::u16string INK_FromUtf16(std::span<const std::uint8_t> bytes);
[[nodiscard]] std::vector<std::uint8_t> INK_ToUtf16(std::u16string_view text);

}  // namespace tamu::device

#endif  // TAMU_DEVICE_INK_INK_TEXT_H_
