// device/ink/ink_document.h - rich-ink documents put together by hand, as devices and other
// programs write them and as damage leaves them.
#ifndef TAMU_TESTS_DEVICE_INK_INK_DOCUMENT_H_
#define TAMU_TESTS_DEVICE_INK_INK_DOCUMENT_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tamu::device {

using Bytes = std::vector<std::uint8_t>;

inline Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

inline Bytes AsBytes(std::string_view text) { return {text.begin(), text.end()}; }

inline Bytes U16(std::size_t value) {
  return {static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8)};
}

inline Bytes Padded(Bytes bytes) {
  while (bytes.size() % 4 != 0) bytes.push_back(0);
  return bytes;
}

inline Bytes Block(std::size_t type, std::size_t id, const Bytes& body) {
  return U16(type) + U16(id) + U16(body.size() / 4) + body;
}

inline Bytes Header() { return AsBytes("{\\pwi") + Bytes{0x15, 0, 0, 1, 1, 6, 0, 0, 0}; }

// A font table with so many fonts.
inline Bytes Fonts(std::size_t count) {
  Bytes body = U16(1) + U16(10) + U16(count) + Bytes(10, 0);
  for (std::size_t font = 1; font <= count; ++font) {
    body = body + U16(font) + U16(1) + Bytes(12, 0);
    for (const char letter : std::string("Tahoma"))
      body = body + U16(static_cast<std::uint8_t>(letter));
    body = body + Bytes(64 - 12, 0);
  }
  return Block(0x00, 2, body);
}

// A paragraph block around a stream that ends by itself; `characters` with the paragraph end.
inline Bytes Paragraph(std::size_t id, std::size_t characters, const Bytes& stream,
                       std::size_t marker = 0) {
  return Block(0x41, id,
               Padded(U16(characters) + U16(stream.size()) + U16(1) + U16(marker) + U16(id - 1) +
                      Bytes(14, 0) + stream + Bytes{0}));
}

inline Bytes PlainParagraph(std::size_t id, std::string_view text) {
  return Paragraph(id, text.size() + 1,
                   Bytes{0xE5, 1, 0, 0xE6, 10, 0} + AsBytes(text) + Bytes{0xC4, 0});
}

struct ListEntry {
  std::size_t lines;
  std::size_t id;
};

inline Bytes List(const std::vector<ListEntry>& entries) {
  const Bytes count = U16(entries.size()) + U16(0);
  Bytes body = count + count + Bytes(4, 0) + count + Bytes(8, 0);
  for (const ListEntry& entry : entries) {
    body = body + U16(entry.lines) + U16(1) + U16(entry.id) + U16(0);
  }
  return Block(0x40, 8, body);
}

inline Bytes End() { return Block(0x82, 9, Bytes{0x82, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}); }

}  // namespace tamu::device

#endif  // TAMU_TESTS_DEVICE_INK_INK_DOCUMENT_H_
