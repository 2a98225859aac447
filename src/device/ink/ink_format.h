// device/ink/ink_format.h - the numbers of the rich-ink document format (".pwi").
//   A document is a 14-byte header and a chain of blocks without gaps: type, id and length (16 bits
//   each, least significant byte first), then a body of length * 4 bytes. Text lies in paragraph
//   blocks, each a stream of characters and commands (ink_stream.h); a list block names the
//   paragraphs in their order.
#ifndef TAMU_DEVICE_INK_INK_FORMAT_H_
#define TAMU_DEVICE_INK_INK_FORMAT_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tamu::device {

inline constexpr std::string_view kInkSignature = "{\\pwi";  // all that identifies a document
inline constexpr std::size_t kInkHeaderSize = 14;
inline constexpr std::size_t kInkBlockHeaderSize = 6;

// Block types. Fonts to the drawing list stand in every document, the others hold what is not text.
enum InkBlockType : std::uint16_t {
  kInkFonts = 0x00,
  kInkPage = 0x07,
  kInkView = 0x08,
  kInkEmpty1 = 0x14,
  kInkEmpty2 = 0x15,
  kInkParagraphList = 0x40,
  kInkParagraph = 0x41,
  kInkLines = 0x42,
  kInkWord = 0x43,       // handwriting among text
  kInkVoiceNote = 0x54,  // a recording's name; its sound is the next block
  kInkSound = 0x55,      // its id is the high half of its length, which counts bytes
  kInkFirstShape = 0x66,
  kInkLastShape = 0x6B,
  kInkDrawingList = 0x82,
  kInkDrawing = 0x83,
};

// The list block: numbers of entries, characters and lines, then entries of 8 bytes (lines,
// characters with the paragraph end, id of the paragraph block or 0 for a blank stretch, 0).
inline constexpr std::size_t kInkListHeaderSize = 0x18;
inline constexpr std::size_t kInkListEntrySize = 8;

// The paragraph block: characters with the paragraph end, bytes of the stream, lines, 0, id of the
// line block, layout; then the stream.
inline constexpr std::size_t kInkParagraphHeaderSize = 0x18;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_INK_INK_FORMAT_H_
