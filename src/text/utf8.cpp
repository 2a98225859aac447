#include "text/utf8.h"

#include <cstring>
#include <string>

namespace tamu {
namespace {

// How many bytes a unit takes; the threshold of three is 0x1000, not 0x800, on purpose.
unsigned EncodedLength(char16_t unit) noexcept {
  if (unit <= 0x7F) return 1;
  return (unit & 0xF000) != 0 ? 3 : 2;
}

void Encode(char16_t unit, unsigned length, unsigned char (&code)[3]) noexcept {
  switch (length) {
    case 1:
      code[0] = static_cast<unsigned char>(unit);
      break;
    case 2:
      code[0] = static_cast<unsigned char>(0xC0 | unit >> 6);
      code[1] = static_cast<unsigned char>(0x80 | (unit & 0x3F));
      break;
    default:
      code[0] = static_cast<unsigned char>(0xE0 | unit >> 12);
      code[1] = static_cast<unsigned char>(0x80 | (unit >> 6 & 0x3F));
      code[2] = static_cast<unsigned char>(0x80 | (unit & 0x3F));
  }
}

}  // namespace

std::size_t UTF8_FromWide(const char16_t* text, std::int32_t length, char* out,
                          std::size_t out_size) noexcept {
  if (text == nullptr || out == nullptr || out_size == 0) return 0;
  const std::size_t units =
      length < 0 ? std::char_traits<char16_t>::length(text) : static_cast<std::size_t>(length);
  if (units == 0) return 0;
  std::memset(out, 0, out_size);
  std::size_t count = 1;  // counts the terminator from the start
  for (std::size_t i = 0; i < units && count < out_size; ++i) {
    if (text[i] >= 0xD800 && text[i] <= 0xDFFF) return 0;
    unsigned char code[3];
    const unsigned code_length = EncodedLength(text[i]);
    Encode(text[i], code_length, code);
    for (unsigned j = 0; j < code_length && count < out_size; ++j) {
      out[count - 1] = static_cast<char>(code[j]);
      ++count;
    }
  }
  return count;
}

std::size_t UTF8_ToWide(const char* bytes, std::int32_t length, char16_t* out,
                        std::size_t out_size) noexcept {
  if (bytes == nullptr || out == nullptr || out_size == 0) return 0;
  const std::size_t size = length < 0 ? std::strlen(bytes) : static_cast<std::size_t>(length);
  std::memset(out, 0, out_size * sizeof(char16_t));
  const auto byte_at = [&](std::size_t i) -> unsigned {
    return i < size ? static_cast<unsigned char>(bytes[i]) : 0U;
  };
  std::size_t written = 0;
  for (std::size_t i = 0; i < size && written < out_size;) {
    const unsigned lead = byte_at(i);
    if (lead < 0x80) {
      out[written++] = static_cast<char16_t>(lead);
      i += 1;
    } else if (lead >= 0xE0) {
      out[written++] = static_cast<char16_t>((lead & 0x0F) << 12 | (byte_at(i + 1) & 0x3F) << 6 |
                                             (byte_at(i + 2) & 0x3F));
      i += 3;
    } else if (lead >= 0xC0) {
      out[written++] = static_cast<char16_t>((lead & 0x1F) << 6 | (byte_at(i + 1) & 0x3F));
      i += 2;
    } else {
      break;
    }
  }
  return written;
}

}  // namespace tamu
