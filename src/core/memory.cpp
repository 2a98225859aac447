#include "core/memory.h"

#include <cstdlib>
#include <cstring>

#include "core/low_heap.h"

namespace tamu {
namespace {

constexpr bool kNeedsLowAddresses = sizeof(void*) > sizeof(std::uint32_t);

struct MemoryState {
  std::size_t live_blocks = 0;
  std::uint64_t fail_in = 0;
  bool fail_after = false;
  bool struck = false;
};
constinit MemoryState g_memory;

bool MustFail() noexcept {
  if (g_memory.fail_in == 0) return g_memory.struck && g_memory.fail_after;
  if (--g_memory.fail_in != 0) return false;
  g_memory.struck = true;
  return true;
}

}  // namespace

void* MEM_Alloc(std::size_t size) noexcept {
  if (size == 0 || MustFail()) return nullptr;
  void* const block = kNeedsLowAddresses ? LOWHEAP_Alloc(size) : std::malloc(size);
  if (block != nullptr) ++g_memory.live_blocks;
  return block;
}

void* MEM_AllocZeroed(std::size_t size) noexcept {
  void* const block = MEM_Alloc(size);
  if (block != nullptr) std::memset(block, 0, size);
  return block;
}

void MEM_Free(void* block) noexcept {
  if (block == nullptr) return;
  --g_memory.live_blocks;
  if constexpr (kNeedsLowAddresses) {
    LOWHEAP_Free(block);
  } else {
    std::free(block);
  }
}

std::size_t MEM_LiveBlocks() noexcept { return g_memory.live_blocks; }

void MEM_FailNth(std::uint64_t n, bool and_after) noexcept {
  g_memory.fail_in = n;
  g_memory.fail_after = and_after;
  g_memory.struck = false;
}

bool MEM_FailureStruck() noexcept { return g_memory.struck; }

MemPtr<char> MEM_CopyText(std::string_view text) noexcept {
  MemPtr<char> copy(static_cast<char*>(MEM_Alloc(text.size() + 1)));
  if (copy) {
    if (!text.empty()) std::memcpy(copy.get(), text.data(), text.size());
    copy.get()[text.size()] = '\0';
  }
  return copy;
}

}  // namespace tamu
