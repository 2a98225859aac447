#include "device/ink/ink_encoder.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <span>
#include <utility>

#include "device/ink/ink_format.h"
#include "device/ink/ink_stream.h"

namespace tamu::device {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Ids of the blocks that stand once; those of paragraphs follow, lines and paragraph in turn.
constexpr std::uint16_t kFontsId = 2;
constexpr std::uint16_t kEmpty1Id = 4;
constexpr std::uint16_t kEmpty2Id = 5;
constexpr std::uint16_t kPageId = 6;
constexpr std::uint16_t kViewId = 7;
constexpr std::uint16_t kListId = 8;
constexpr std::uint16_t kDrawingListId = 9;
constexpr std::uint16_t kFirstLinesId = 0x22;

constexpr std::size_t kMaxWords = 0xFFFF;  // what a block's length counts
constexpr std::size_t kMaxUniqueParagraphs = (0x10000 - kFirstLinesId) / 2;
constexpr std::size_t kMaxListEntries = (kMaxWords * 4 - kInkListHeaderSize) / kInkListEntrySize;

// What a paragraph's stream may hold beside its start, its end and the mark that it goes on.
constexpr std::size_t kMaxStream = 0xFFFF;
constexpr std::size_t kMaxCoded = kMaxStream - std::size(kInkParagraphStart) -
                                  std::size(kInkContinues) - std::size(kInkParagraphEnd);

constexpr std::uint16_t kFontWords[] = {1, 10, 1, 100, 100, 0, 0, 0, 1, 1, 0, 0, 0, 0, 0, 0};
constexpr std::u16string_view kFontName = u"Tahoma";
constexpr std::size_t kFontNameUnits = 32;

// Page: style, size and margins in twips, and numbers that every document has.
constexpr std::uint16_t kPageWords[42] = {
    0x50, 1, 12240, 0, 15840, 0, 0xF0, 0, 1440, 0, 1440, 0, 1440, 0, 1440, 0, 0, 0, 0, 0, 0,
    0,    0, 0x0A,  0, 0,     4, 0,    0, 0,    0, 0x0A, 0, 0,    4, 0,    0, 0, 0, 0, 0, 0};

// View: where the document is scrolled to, and a rectangle.
constexpr std::uint16_t kViewWords[32] = {1,     0, 2,     0,     0, 0,     0, 0, 0, 0, 0x12,
                                          0,     0, 0,     0x3E4, 0, 0x353, 0, 0, 0, 0, 0,
                                          0x402, 0, 0x353, 0,     0, 0,     0, 0, 0, 0};

// Lines as a device measures them, in its own units.
constexpr std::size_t kUnitWidth = 32;
constexpr std::uint8_t kLineAscent = 0x1B;
constexpr std::uint8_t kLineDescent = 6;

class Output {
 public:
  void U8(std::uint8_t value) { bytes_.push_back(value); }
  void U16(std::size_t value) {
    U8(static_cast<std::uint8_t>(value & 0xFF));
    U8(static_cast<std::uint8_t>(value >> 8 & 0xFF));
  }
  void U32(std::size_t value) {
    U16(value & 0xFFFF);
    U16(value >> 16 & 0xFFFF);
  }
  void Words(std::span<const std::uint16_t> words) {
    for (const std::uint16_t word : words) U16(word);
  }
  void Append(std::span<const std::uint8_t> bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
  }
  void Zeros(std::size_t count) { bytes_.insert(bytes_.end(), count, 0); }
  void BlockHeader(InkBlockType type, std::size_t id, std::size_t body_size) {
    U16(type);
    U16(id);
    U16(body_size / 4);
  }

  [[nodiscard]] Bytes& bytes() noexcept { return bytes_; }

 private:
  Bytes bytes_;
};

// A paragraph's share of the list.
struct Entry {
  std::uint16_t characters = 0;  // with the paragraph end
  std::uint16_t id = 0;
};

// The next paragraph of `rest`, and whether another follows it.
struct Paragraph {
  std::u16string_view text;
  bool last = true;
};

Paragraph TakeParagraph(std::u16string_view* rest) {
  const std::size_t end = rest->find_first_of(u"\r\n");
  if (end == std::u16string_view::npos) return {*rest, true};
  const Paragraph paragraph{rest->substr(0, end), false};
  const bool pair = rest->substr(end, 2) == u"\r\n";
  rest->remove_prefix(end + (pair ? 2 : 1));
  return paragraph;
}

constexpr bool IsHigh(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }

// Codes as much of `rest` as one block takes, and takes it away; a pair stays together.
Bytes TakeCoded(std::u16string_view* rest, std::size_t* units) {
  Bytes coded;
  std::size_t count = 0;
  while (count < rest->size()) {
    const std::size_t needed = (IsHigh((*rest)[count]) ? 2 : 1) * kInkLongestUnit;
    if (coded.size() + needed > kMaxCoded) break;
    INK_AppendUnit((*rest)[count++], &coded);
  }
  *units = count;
  rest->remove_prefix(count);
  return coded;
}

class Encoder {
 public:
  explicit Encoder(std::u16string_view text) {
    for (bool more = true; more;) {
      const Paragraph paragraph = TakeParagraph(&text);
      PutParagraph(paragraph.text);
      more = !paragraph.last;
    }
    // Ids that the format cannot count are all the same.
    if (pieces_.size() > kMaxUniqueParagraphs) {
      for (Piece& piece : pieces_) piece.entry.id = kFirstLinesId + 1;
    }
  }

  Bytes Encode() {
    PutHeader();
    PutFixedBlocks();
    PutLists();
    for (Piece& piece : pieces_) {
      PutPiece(piece);
      Bytes().swap(piece.stream);  // a long text is not held twice
    }
    out_.BlockHeader(kInkDrawingList, kDrawingListId, 12);
    out_.U16(kInkDrawingList);
    out_.Zeros(10);
    return std::move(out_.bytes());
  }

 private:
  // What becomes one paragraph block.
  struct Piece {
    Bytes stream;
    Entry entry;
  };

  void PutParagraph(std::u16string_view text) {
    do {
      std::size_t units = 0;
      const Bytes coded = TakeCoded(&text, &units);
      Piece piece;
      const auto append = [&](std::span<const std::uint8_t> bytes) {
        piece.stream.insert(piece.stream.end(), bytes.begin(), bytes.end());
      };
      piece.stream.reserve(coded.size() + 16);
      append(kInkParagraphStart);
      append(coded);
      if (!text.empty()) append(kInkContinues);
      append(kInkParagraphEnd);
      piece.entry.characters = static_cast<std::uint16_t>(units + 1);
      piece.entry.id = static_cast<std::uint16_t>(kFirstLinesId + 1 + 2 * pieces_.size());
      pieces_.push_back(std::move(piece));
    } while (!text.empty());
  }

  void PutHeader() {
    for (const char character : kInkSignature) out_.U8(static_cast<std::uint8_t>(character));
    constexpr std::uint8_t kRest[] = {0x15, 0, 0, 1, 1};
    out_.Append(kRest);
    out_.U16(6);  // version
    out_.U16(0);
    static_assert(kInkSignature.size() + std::size(kRest) + 4 == kInkHeaderSize);
  }

  void PutFixedBlocks() {
    out_.BlockHeader(kInkFonts, kFontsId, sizeof kFontWords + kFontNameUnits * 2);
    out_.Words(kFontWords);
    for (const char16_t unit : kFontName) out_.U16(unit);
    out_.Zeros((kFontNameUnits - kFontName.size()) * 2);
    out_.BlockHeader(kInkEmpty1, kEmpty1Id, 4);
    out_.U32(0);
    out_.BlockHeader(kInkEmpty2, kEmpty2Id, 4);
    out_.U32(0);
    out_.BlockHeader(kInkPage, kPageId, sizeof kPageWords);
    out_.Words(kPageWords);
    out_.BlockHeader(kInkView, kViewId, sizeof kViewWords);
    out_.Words(kViewWords);
  }

  void PutLists() {
    for (std::size_t first = 0; first < pieces_.size(); first += kMaxListEntries) {
      PutList(std::span(pieces_).subspan(first, std::min(kMaxListEntries, pieces_.size() - first)));
    }
  }

  void PutList(std::span<const Piece> pieces) {
    std::size_t characters = 0;
    for (const Piece& piece : pieces) characters += piece.entry.characters;
    out_.BlockHeader(kInkParagraphList, kListId,
                     kInkListHeaderSize + pieces.size() * kInkListEntrySize);
    out_.U32(pieces.size());
    out_.U32(pieces.size());
    out_.U32(characters);
    out_.U32(pieces.size());  // lines
    out_.Zeros(8);
    for (const Piece& piece : pieces) {
      out_.U16(1);  // line
      out_.U16(piece.entry.characters);
      out_.U16(piece.entry.id);
      out_.U16(0);
    }
  }

  void PutPiece(const Piece& piece) {
    const std::size_t lines_id = piece.entry.id - 1U;
    const std::size_t padded = (piece.stream.size() + 1 + 3) / 4 * 4;  // at least one zero follows
    out_.BlockHeader(kInkParagraph, piece.entry.id, kInkParagraphHeaderSize + padded);
    out_.U16(piece.entry.characters);
    out_.U16(piece.stream.size());
    out_.U16(1);  // line
    out_.U16(0);
    out_.U16(lines_id);
    out_.Zeros(kInkParagraphHeaderSize - 10);  // no indents, no bullet, left
    out_.Append(piece.stream);
    out_.Zeros(padded - piece.stream.size());
    out_.BlockHeader(kInkLines, lines_id, 12);
    out_.U16(piece.entry.characters);
    out_.U32(0);
    out_.U16(std::min<std::size_t>(kUnitWidth * (piece.entry.characters - 1U), 0xFFFF));
    out_.U8(kLineAscent);
    out_.U8(kLineDescent);
    out_.U16(0);
  }

  std::vector<Piece> pieces_;
  Output out_;
};

}  // namespace

std::u16string INK_CanonicalText(std::u16string_view text) {
  std::u16string canonical;
  canonical.reserve(text.size());
  for (bool more = true; more;) {
    const Paragraph paragraph = TakeParagraph(&text);
    canonical += paragraph.text;
    more = !paragraph.last;
    if (more) canonical += u"\r\n";
  }
  return canonical;
}

std::vector<std::uint8_t> INK_Encode(std::u16string_view text) { return Encoder(text).Encode(); }

}  // namespace tamu::device
