#include "core/low_heap.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>

#include "core/sanitizer.h"
#include "platform/virtual_memory.h"

namespace tamu {
namespace {

constexpr std::size_t kPageSize = platform::kPageGranularity;  // 64 KiB, the unit of size classes
constexpr std::size_t kChunkSize = std::size_t{4} * 1024 * 1024;  // the unit of mapping
constexpr unsigned kPagesPerChunk = kChunkSize / kPageSize;
constexpr unsigned kChunks = 1024;  // of 4 MiB: all addresses below 4 GiB
constexpr unsigned kPages = kChunks * kPagesPerChunk;
static_assert(kPagesPerChunk == 64, "a chunk's pages are the bits of one word");

// Chunks are looked for upwards from here: above programs at fixed addresses, below
// AddressSanitizer's shadow.
constexpr unsigned kFirstChunk = 0x60000000U / kChunkSize;
constexpr unsigned kLowestChunk = 0x10000000U / kChunkSize;

constexpr std::size_t kRedZone = kAddressSanitizer ? 8 : 0;

// Class sizes: steps of 8 up to 128, then four to a doubling.
constexpr std::array<std::uint16_t, 44> kClassSizes = {
    8,    16,   24,   32,   40,   48,   56,   64,   72,   80,   88,   96,    104,   112,  120,
    128,  160,  192,  224,  256,  320,  384,  448,  512,  640,  768,  896,   1024,  1280, 1536,
    1792, 2048, 2560, 3072, 3584, 4096, 5120, 6144, 7168, 8192, 9216, 10240, 12800, 16384};
constexpr std::size_t kLargestClass = kClassSizes.back();

// Class by size in units of 8 bytes, up to 1 KiB.
constexpr auto kClassOfSmallSize = [] {
  std::array<std::uint8_t, 129> table{};
  for (unsigned units = 0, index = 0; units < table.size(); ++units) {
    while (kClassSizes[index] < units * 8) ++index;
    table[units] = static_cast<std::uint8_t>(index);
  }
  return table;
}();

unsigned ClassOf(std::size_t size) noexcept {
  if (size <= 1024) return kClassOfSmallSize[(size + 7) / 8];
  unsigned index = kClassOfSmallSize[128];
  while (kClassSizes[index] < size) ++index;
  return index;
}

enum class ChunkUse : std::uint8_t { kUnmapped, kDivided, kLarge };

struct FreeBlock {
  std::uint32_t next;
};

// The free blocks of one size: a list of blocks that were given back, then what is left of the
// newest page.
struct SizeClass {
  std::uint32_t free_list = 0;
  std::uint32_t fresh = 0;
  std::uint32_t fresh_end = 0;
};

struct Heap {
  std::array<SizeClass, kClassSizes.size()> classes{};
  std::array<ChunkUse, kChunks> chunk_use{};
  std::array<std::uint64_t, kChunks> used_pages{};  // one bit a page of a divided chunk
  std::array<std::uint32_t, kChunks>
      large_size{};  // bytes mapped, at the first chunk of a kLarge mapping
  std::array<std::uint8_t, kPages> page_class{};  // class + 1 of a page, 0 when it has none
  std::array<std::uint8_t, kPages> run_length{};  // pages of the run that begins here
  std::size_t mapped = 0;
};

constinit Heap g_heap;

std::uintptr_t AddressOf(const void* block) noexcept {
  return reinterpret_cast<std::uintptr_t>(block);
}

void* ToPointer(std::uint64_t address) noexcept {
  return reinterpret_cast<void*>(static_cast<std::uintptr_t>(address));
}

// Maps `size` bytes at a chunk's address, from `first` to before `last`; the chunk's number, or
// kChunks.
unsigned MapBetween(unsigned first, unsigned last, std::size_t size) noexcept {
  const auto chunks = static_cast<unsigned>((size + kChunkSize - 1) / kChunkSize);
  for (unsigned chunk = first; chunk + chunks <= last; ++chunk) {
    bool taken = false;
    for (unsigned i = 0; i < chunks && !taken; ++i) {
      taken = g_heap.chunk_use[chunk + i] != ChunkUse::kUnmapped;
    }
    if (taken) continue;
    void* wanted = ToPointer(std::uint64_t{chunk} * kChunkSize);
    void* got =
        platform::VirtualAlloc(wanted, size, platform::kMemReserveCommit, platform::kPageReadWrite);
    if (got == wanted) {
      g_heap.mapped += size;
      return chunk;
    }
    if (got != nullptr) platform::VirtualFree(got, size, platform::kMemRelease);
  }
  return kChunks;
}

unsigned Map(std::size_t size) noexcept {
  const unsigned chunk = MapBetween(kFirstChunk, kChunks, size);
  return chunk != kChunks ? chunk : MapBetween(kLowestChunk, kFirstChunk, size);
}

// The first of `count` free pages in a row inside the word, or 64.
unsigned FindRun(std::uint64_t used, unsigned count) noexcept {
  std::uint64_t starts = ~used;
  for (unsigned have = 1; have < count && starts != 0;) {
    const unsigned step = have < count - have ? have : count - have;
    starts &= starts >> step;
    have += step;
  }
  if (starts == 0) return kPagesPerChunk;
  return static_cast<unsigned>(std::countr_zero(starts));
}

std::uint64_t RunMask(unsigned first, unsigned count) noexcept {
  const std::uint64_t ones =
      count == kPagesPerChunk ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
  return ones << first;
}

// `count` pages in a row: their first one's number, or kPages.
unsigned AllocPages(unsigned count) noexcept {
  for (unsigned i = 0; i < kChunks; ++i) {
    const unsigned chunk = (kFirstChunk + i) % kChunks;
    if (g_heap.chunk_use[chunk] != ChunkUse::kDivided) continue;
    const unsigned first = FindRun(g_heap.used_pages[chunk], count);
    if (first == kPagesPerChunk) continue;
    g_heap.used_pages[chunk] |= RunMask(first, count);
    return chunk * kPagesPerChunk + first;
  }
  const unsigned chunk = Map(kChunkSize);
  if (chunk == kChunks) return kPages;
  PoisonMemory(ToPointer(std::uint64_t{chunk} * kChunkSize), kChunkSize);
  g_heap.chunk_use[chunk] = ChunkUse::kDivided;
  g_heap.used_pages[chunk] = RunMask(0, count);
  return chunk * kPagesPerChunk;
}

void FreePages(unsigned first_page, unsigned count) noexcept {
  const unsigned chunk = first_page / kPagesPerChunk;
  g_heap.used_pages[chunk] &= ~RunMask(first_page % kPagesPerChunk, count);
  if (g_heap.used_pages[chunk] != 0) return;
  void* const address = ToPointer(std::uint64_t{chunk} * kChunkSize);
  UnpoisonMemory(address, kChunkSize);
  platform::VirtualFree(address, kChunkSize, platform::kMemRelease);
  g_heap.chunk_use[chunk] = ChunkUse::kUnmapped;
  g_heap.mapped -= kChunkSize;
}

void* AllocOfClass(unsigned index) noexcept {
  SizeClass& size_class = g_heap.classes[index];
  if (size_class.free_list != 0) {
    auto* block = static_cast<FreeBlock*>(ToPointer(size_class.free_list));
    UnpoisonMemory(block, sizeof(FreeBlock));
    size_class.free_list = block->next;
    return block;
  }
  const std::uint32_t size = kClassSizes[index];
  if (size_class.fresh_end - size_class.fresh < size) {
    const unsigned page = AllocPages(1);
    if (page == kPages) return nullptr;
    g_heap.page_class[page] = static_cast<std::uint8_t>(index + 1);
    size_class.fresh = static_cast<std::uint32_t>(page * kPageSize);
    // Modulo 2^32, as the page may be the last one below 4 GiB.
    size_class.fresh_end = static_cast<std::uint32_t>(size_class.fresh + kPageSize / size * size);
  }
  void* const block = ToPointer(size_class.fresh);
  size_class.fresh += size;
  return block;
}

void* AllocRun(std::size_t size) noexcept {
  const auto pages = static_cast<unsigned>((size + kPageSize - 1) / kPageSize);
  const unsigned first = AllocPages(pages);
  if (first == kPages) return nullptr;
  g_heap.run_length[first] = static_cast<std::uint8_t>(pages);
  return ToPointer(std::uint64_t{first} * kPageSize);
}

void* AllocLarge(std::size_t size) noexcept {
  if (size > UINT32_MAX - kPageSize) return nullptr;
  const std::size_t rounded = (size + kPageSize - 1) / kPageSize * kPageSize;
  const unsigned chunk = Map(rounded);
  if (chunk == kChunks) return nullptr;
  for (unsigned i = 0; i * kChunkSize < rounded; ++i)
    g_heap.chunk_use[chunk + i] = ChunkUse::kLarge;
  g_heap.large_size[chunk] = static_cast<std::uint32_t>(rounded);
  return ToPointer(std::uint64_t{chunk} * kChunkSize);
}

void FreeLarge(unsigned chunk) noexcept {
  const std::size_t size = g_heap.large_size[chunk];
  void* const address = ToPointer(std::uint64_t{chunk} * kChunkSize);
  UnpoisonMemory(address, size);
  platform::VirtualFree(address, size, platform::kMemRelease);
  for (unsigned i = 0; i * kChunkSize < size; ++i)
    g_heap.chunk_use[chunk + i] = ChunkUse::kUnmapped;
  g_heap.mapped -= size;
}

void PushFree(void* block, unsigned index) noexcept {
  SizeClass& size_class = g_heap.classes[index];
  UnpoisonMemory(block, sizeof(FreeBlock));
  static_cast<FreeBlock*>(block)->next = size_class.free_list;
  size_class.free_list = static_cast<std::uint32_t>(AddressOf(block));
  PoisonMemory(block, kClassSizes[index]);
}

// Under AddressSanitizer a block that was given back is used again only after this many others.
constexpr unsigned kQuarantineLength = kAddressSanitizer ? 8192 : 1;
struct Quarantine {
  std::array<void*, kQuarantineLength> blocks{};
  unsigned oldest = 0;
};
[[maybe_unused]] constinit Quarantine g_quarantine;

void FreeOfClass(void* block, unsigned index) noexcept {
  if constexpr (!kAddressSanitizer) {
    PushFree(block, index);
  } else {
    PoisonMemory(block, kClassSizes[index]);
    void* const released = g_quarantine.blocks[g_quarantine.oldest];
    g_quarantine.blocks[g_quarantine.oldest] = block;
    g_quarantine.oldest = (g_quarantine.oldest + 1) % kQuarantineLength;
    if (released != nullptr) {
      PushFree(released, g_heap.page_class[AddressOf(released) / kPageSize] - 1U);
    }
  }
}

}  // namespace

void* LOWHEAP_Alloc(std::size_t size) noexcept {
  if (size > UINT32_MAX - kRedZone) return nullptr;
  const std::size_t padded = size + kRedZone;
  void* block = nullptr;
  if (padded <= kLargestClass) {
    block = AllocOfClass(ClassOf(padded));
  } else if (padded <= kChunkSize) {
    block = AllocRun(padded);
  } else {
    block = AllocLarge(padded);
  }
  if (block != nullptr) UnpoisonMemory(block, size);
  return block;
}

void LOWHEAP_Free(void* block) noexcept {
  if (MemoryIsPoisoned(block)) std::abort();  // freed twice, or never allocated
  const auto page = static_cast<unsigned>(AddressOf(block) / kPageSize);
  const unsigned chunk = page / kPagesPerChunk;
  if (g_heap.page_class[page] != 0) {
    FreeOfClass(block, g_heap.page_class[page] - 1U);
  } else if (g_heap.chunk_use[chunk] == ChunkUse::kLarge) {
    FreeLarge(chunk);
  } else {
    const unsigned pages = g_heap.run_length[page];
    PoisonMemory(block, pages * kPageSize);
    FreePages(page, pages);
  }
}

std::size_t LOWHEAP_MappedBytes() noexcept { return g_heap.mapped; }

}  // namespace tamu
