// device/ink/ink_blocks.h - the chain of blocks of a rich-ink document, and its paragraph list.
//   Ownership  bodies are parts of the file that was given.
//   Errors     std::bad_alloc. No length in the file is trusted.
#ifndef TAMU_DEVICE_INK_INK_BLOCKS_H_
#define TAMU_DEVICE_INK_INK_BLOCKS_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tamu::device {

struct InkParagraphBlock {
  std::uint16_t id = 0;
  std::span<const std::uint8_t> body;
};

struct InkListEntry {
  std::uint16_t lines = 0;
  std::uint16_t id = 0;  // 0: a blank stretch of `lines` lines
};

struct InkBlocks {
  std::vector<InkParagraphBlock> paragraphs;  // in the order of the file
  std::vector<InkListEntry> entries;          // of all lists together
  bool broken = false;  // the chain does not end with the file: what follows was not understood
  bool inconsistent = false;  // a list or a paragraph is shorter than it says
  bool objects = false;       // drawings, handwriting or recordings
};

// Walks the chain behind the file's header. The last block may be cut.
[[nodiscard]] InkBlocks INK_WalkBlocks(std::span<const std::uint8_t> file);

}  // namespace tamu::device

#endif  // TAMU_DEVICE_INK_INK_BLOCKS_H_
