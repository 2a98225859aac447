// device/ink/ink_stream.h - the coded text of one paragraph of a rich-ink document.
//   ASCII stands as it is, other characters behind one of three leads, commands (font, size, style,
//   paragraph end) from 0xC0 on with parameters of fixed length.
//   Units      streams are bytes, text is UTF-16.
//   Errors     std::bad_alloc.
#ifndef TAMU_DEVICE_INK_INK_STREAM_H_
#define TAMU_DEVICE_INK_INK_STREAM_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tamu::device {

// The first bytes of every paragraph (font 1, 10 points) and the end of one.
inline constexpr std::uint8_t kInkParagraphStart[] = {0xE5, 0x01, 0x00, 0xE6, 0x0A, 0x00};
inline constexpr std::uint8_t kInkParagraphEnd[] = {0xC4, 0x00};

// A paragraph that is too long for one block goes on in the next. Then this stands before its end:
// italic and underline turned off, twice, which changes nothing for any reader, and which no
// program writes that turns on and off what a user does.
inline constexpr std::uint8_t kInkContinues[] = {0xE9, 0x00, 0xEA, 0x00, 0xE9, 0x00, 0xEA, 0x00};

// Appends the code of one UTF-16 unit:
//   U+0020 to U+007F            the byte
//   U+0080 to U+00FF            C1 and the byte
//   tab                         C4 04
//   other units below U+4000    14 bits in two bytes; controls, too, which no device writes
//   U+4000 and above            C0 and the unit's two bytes. The format has no code for them that
//                               is known; a device shows other characters for such text, here it
//                               comes back as it was. kInkWideUnits turns it off: "?" instead.
void INK_AppendUnit(char16_t unit, std::vector<std::uint8_t>* stream);
inline constexpr bool kInkWideUnits = true;
inline constexpr std::size_t kInkLongestUnit = 3;  // bytes

struct InkStream {
  std::size_t size = 0;        // bytes that were read, with the end
  std::size_t characters = 0;  // UTF-16 units that were appended
  bool ended = false;          // by the paragraph end; else by a zero byte or with the bytes
  bool continues = false;      // kInkContinues stood before the end
  bool strange = false;        // holds what the format does not have: text may be wrong here
  bool objects = false;        // ink words or recordings stood among the text
};

// Appends the text of one stream, without its paragraph end. Commands change nothing, those that
// are unknown are passed over, and so are other objects than text. Accepts every code for every
// character. Never reads behind `stream`.
[[nodiscard]] InkStream INK_AppendText(std::span<const std::uint8_t> stream, std::u16string* text);

}  // namespace tamu::device

#endif  // TAMU_DEVICE_INK_INK_STREAM_H_
