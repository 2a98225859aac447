// core/low_heap.h - a heap below 4 GiB, so that a reference of four bytes can point into it.
//   Small blocks come from pages of one size class, found again by the block's address, so that
//   they need no header; middle ones are runs of pages in 4 MiB chunks; large ones are mappings of
//   their own. A page or chunk that becomes empty goes back, but for one page of each class.
//
//   Units      bytes; blocks are aligned to 8.
//   Errors     null when no memory below 4 GiB is left.
//   Threads    none.
#ifndef TAMU_CORE_LOW_HEAP_H_
#define TAMU_CORE_LOW_HEAP_H_

#include <cstddef>

namespace tamu {

// A block of `size` bytes (not 0), unset. Under AddressSanitizer its end is a red zone.
[[nodiscard]] void* LOWHEAP_Alloc(std::size_t size) noexcept;

// Gives a block back. Under AddressSanitizer it is poisoned and stays unused for a while; a second
// free is reported.
void LOWHEAP_Free(void* block) noexcept;

// Bytes of address space that are mapped now.
[[nodiscard]] std::size_t LOWHEAP_MappedBytes() noexcept;

}  // namespace tamu

#endif  // TAMU_CORE_LOW_HEAP_H_
