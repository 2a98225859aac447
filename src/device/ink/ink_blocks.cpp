#include "device/ink/ink_blocks.h"

#include <algorithm>

#include "device/ink/ink_bytes.h"
#include "device/ink/ink_format.h"

namespace tamu::device {
namespace {

using Bytes = std::span<const std::uint8_t>;

void ReadList(Bytes body, InkBlocks* blocks) {
  if (body.size() < kInkListHeaderSize) {
    blocks->inconsistent = true;
    return;
  }
  const std::uint32_t announced = ReadU32(body, 0);
  const std::size_t room = (body.size() - kInkListHeaderSize) / kInkListEntrySize;
  if (announced > room) blocks->inconsistent = true;
  const std::size_t count = std::min<std::size_t>(announced, room);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t at = kInkListHeaderSize + i * kInkListEntrySize;
    blocks->entries.push_back({ReadU16(body, at), ReadU16(body, at + 4)});
  }
}

void TakeBlock(std::uint16_t type, std::uint16_t id, Bytes body, InkBlocks* blocks) {
  switch (type) {
    case kInkParagraphList:
      return ReadList(body, blocks);
    case kInkParagraph:
      if (body.size() >= kInkParagraphHeaderSize) {
        blocks->paragraphs.push_back({id, body});
      } else {
        blocks->inconsistent = true;
      }
      return;
    case kInkWord:
    case kInkVoiceNote:
    case kInkSound:
    case kInkDrawing:
      blocks->objects = true;
      return;
    default:
      if (type >= kInkFirstShape && type <= kInkLastShape) blocks->objects = true;
      return;
  }
}

// A few zeros, or the byte that fills a document to an even length, may follow the last block.
bool IsPadding(Bytes rest) {
  return rest.size() < kInkBlockHeaderSize &&
         std::ranges::all_of(rest, [](std::uint8_t byte) { return byte == 0 || byte == 3; });
}

}  // namespace

InkBlocks INK_WalkBlocks(std::span<const std::uint8_t> file) {
  InkBlocks blocks;
  Bytes rest = file.subspan(std::min(kInkHeaderSize, file.size()));
  while (rest.size() >= kInkBlockHeaderSize) {
    const std::uint16_t type = ReadU16(rest, 0);
    const std::uint16_t id = ReadU16(rest, 2);
    const std::uint64_t length = ReadU16(rest, 4);
    const std::uint64_t size =
        type == kInkSound ? length | static_cast<std::uint64_t>(id) << 16 : length * 4;
    // No font table is empty: these are zeros that a crash left in the place of the document.
    if (type == kInkFonts && size == 0) break;
    rest = rest.subspan(kInkBlockHeaderSize);
    if (size > rest.size()) {
      TakeBlock(type, id, rest, &blocks);
      blocks.broken = true;
      return blocks;
    }
    TakeBlock(type, id, rest.first(static_cast<std::size_t>(size)), &blocks);
    rest = rest.subspan(static_cast<std::size_t>(size));
  }
  if (!IsPadding(rest)) blocks.broken = true;
  return blocks;
}

}  // namespace tamu::device
