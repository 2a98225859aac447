#include "platform/linux/mapi_buffer.h"

#include <cstdlib>
#include <limits>
#include <utility>

namespace tamu::platform {
namespace {

// Stands before each block: roots and their blocks are one list.
struct alignas(std::max_align_t) Header {
  Header* next;
};

std::int64_t live_buffers = 0;

void* BehindHeader(Header* header) noexcept { return header + 1; }
Header* HeaderOf(void* block) noexcept { return static_cast<Header*>(block) - 1; }

Header* Allocate(std::size_t size) noexcept {
  if (size > std::numeric_limits<std::size_t>::max() - sizeof(Header)) return nullptr;
  return static_cast<Header*>(std::calloc(1, sizeof(Header) + size));
}

}  // namespace

void* AllocateMapiBuffer(std::size_t size) noexcept {
  Header* const root = Allocate(size);
  if (root == nullptr) return nullptr;
  ++live_buffers;
  return BehindHeader(root);
}

void* AllocateMapiMore(std::size_t size, void* root) noexcept {
  Header* const more = Allocate(size);
  if (more == nullptr) return nullptr;
  more->next = std::exchange(HeaderOf(root)->next, more);
  return BehindHeader(more);
}

void FreeMapiBuffer(void* root) noexcept {
  if (root == nullptr) return;
  --live_buffers;
  for (Header* header = HeaderOf(root); header != nullptr;) {
    std::free(std::exchange(header, header->next));
  }
}

std::int64_t LiveMapiBuffers() noexcept { return live_buffers; }

}  // namespace tamu::platform
