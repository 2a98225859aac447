// core/memory.h - the one pair of allocation wrappers for everything that records own.
//   On a 64-bit system blocks lie below 4 GiB, so that a record's four-byte references reach them;
//   on a 32-bit one they come from the C library.
//   Units      bytes.
//   Ownership  who allocates frees; `MemPtr` does so on every path.
//   Errors     null when memory runs out. Nothing is thrown.
//   Threads    none.
#ifndef TAMU_CORE_MEMORY_H_
#define TAMU_CORE_MEMORY_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

namespace tamu {

// A block of `size` bytes, unset; null for 0 bytes and when memory runs out.
[[nodiscard]] void* MEM_Alloc(std::size_t size) noexcept;

// The same, all zero.
[[nodiscard]] void* MEM_AllocZeroed(std::size_t size) noexcept;

// Gives a block back; null does nothing.
void MEM_Free(void* block) noexcept;

// Blocks that are allocated now.
[[nodiscard]] std::size_t MEM_LiveBlocks() noexcept;

// For tests: lets the n-th allocation from now fail (1 is the next), and with `and_after` every
// later one too. 0 ends it.
void MEM_FailNth(std::uint64_t n, bool and_after = false) noexcept;
// True when an armed failure has struck.
[[nodiscard]] bool MEM_FailureStruck() noexcept;

struct MemDeleter {
  void operator()(void* block) const noexcept { MEM_Free(block); }
};
template <typename T>
using MemPtr = std::unique_ptr<T, MemDeleter>;

// A new structure, all zero; null when memory runs out.
template <typename T>
[[nodiscard]] MemPtr<T> MEM_New() noexcept {
  void* const block = MEM_Alloc(sizeof(T));
  if (block != nullptr) std::memset(block, 0, sizeof(T));
  return MemPtr<T>(static_cast<T*>(block));
}

// A NUL-terminated copy of a text; null when memory runs out.
[[nodiscard]] MemPtr<char> MEM_CopyText(std::string_view text) noexcept;

}  // namespace tamu

#endif  // TAMU_CORE_MEMORY_H_
