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

constexpr auto kBlocksPerPage = [] {
  std::array<std::uint16_t, kClassSizes.size()> counts{};
  for (std::size_t i = 0; i < counts.size(); ++i) {
    counts[i] = static_cast<std::uint16_t>(kPageSize / kClassSizes[i]);
  }
  return counts;
}();

constexpr std::uint16_t kNoPage = 0;  // the page at address 0 is never ours

// One page of a divided chunk: of one class, or the first of a run.
struct Page {
  std::uint32_t free_list = 0;   // blocks that were given back
  std::uint16_t fresh = 0;       // blocks from here on were never used
  std::uint16_t live = 0;        // blocks in use
  std::uint16_t next = kNoPage;  // the class's pages with free blocks, both ways
  std::uint16_t previous = kNoPage;
  std::uint8_t class_number = 0;  // 1 + the class's index; 0 for none
  std::uint8_t run_length = 0;

  [[nodiscard]] unsigned class_index() const noexcept { return class_number - 1U; }
};

struct Heap {
  // The first page of each class that has free blocks.
  std::array<std::uint16_t, kClassSizes.size()> open_pages{};
  std::array<ChunkUse, kChunks> chunk_use{};
  // One bit a page of a divided chunk.
  std::array<std::uint64_t, kChunks> used_pages{};
  // Bytes mapped, at the first chunk of a large mapping.
  std::array<std::uint32_t, kChunks> large_size{};
  std::size_t mapped = 0;
};

constinit Heap g_heap;
constinit std::array<Page, kPages> g_pages{};

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

void OpenPage(std::uint16_t number) noexcept {
  Page& page = g_pages[number];
  std::uint16_t& first = g_heap.open_pages[page.class_index()];
  page.next = first;
  page.previous = kNoPage;
  if (first != kNoPage) g_pages[first].previous = number;
  first = number;
}

void ClosePage(std::uint16_t number) noexcept {
  Page& page = g_pages[number];
  if (page.previous != kNoPage) {
    g_pages[page.previous].next = page.next;
  } else {
    g_heap.open_pages[page.class_index()] = page.next;
  }
  if (page.next != kNoPage) g_pages[page.next].previous = page.previous;
  page.next = page.previous = kNoPage;
}

bool IsFull(const Page& page) noexcept {
  return page.free_list == 0 && page.fresh == kBlocksPerPage[page.class_index()];
}

// A new page of a class, among its open ones; its number, or kNoPage.
std::uint16_t AddPage(unsigned index) noexcept {
  const unsigned number = AllocPages(1);
  if (number == kPages) return kNoPage;
  Page& page = g_pages[number];
  page = Page{};
  page.class_number = static_cast<std::uint8_t>(index + 1);
  OpenPage(static_cast<std::uint16_t>(number));
  return static_cast<std::uint16_t>(number);
}

void* AllocOfClass(unsigned index) noexcept {
  std::uint16_t number = g_heap.open_pages[index];
  if (number == kNoPage) number = AddPage(index);
  if (number == kNoPage) return nullptr;
  Page& page = g_pages[number];
  void* block = nullptr;
  if (page.free_list != 0) {
    block = ToPointer(page.free_list);
    UnpoisonMemory(block, sizeof(FreeBlock));
    page.free_list = static_cast<FreeBlock*>(block)->next;
  } else {
    block = ToPointer(std::uint64_t{number} * kPageSize +
                      std::uint64_t{page.fresh} * kClassSizes[index]);
    ++page.fresh;
  }
  ++page.live;
  if (IsFull(page)) ClosePage(number);
  return block;
}

void* AllocRun(std::size_t size) noexcept {
  const auto pages = static_cast<unsigned>((size + kPageSize - 1) / kPageSize);
  const unsigned first = AllocPages(pages);
  if (first == kPages) return nullptr;
  g_pages[first] = Page{};
  g_pages[first].run_length = static_cast<std::uint8_t>(pages);
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
  PoisonMemory(ToPointer(std::uint64_t{chunk} * kChunkSize), rounded);
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

// Gives a block back to its page, and a page that is empty to the system, unless it is the class's
// only open one: the next block would need it again.
void PushFree(void* block) noexcept {
  const auto number = static_cast<std::uint16_t>(AddressOf(block) / kPageSize);
  Page& page = g_pages[number];
  if (IsFull(page)) OpenPage(number);
  UnpoisonMemory(block, sizeof(FreeBlock));
  static_cast<FreeBlock*>(block)->next = page.free_list;
  page.free_list = static_cast<std::uint32_t>(AddressOf(block));
  PoisonMemory(block, kClassSizes[page.class_index()]);
  if (--page.live != 0 || (page.next == kNoPage && page.previous == kNoPage)) return;
  ClosePage(number);
  page.class_number = 0;
  FreePages(number, 1);
}

// Under AddressSanitizer a block that was given back is used again only after this many others.
constexpr unsigned kQuarantineLength = kAddressSanitizer ? 8192 : 1;
struct Quarantine {
  std::array<void*, kQuarantineLength> blocks{};
  unsigned oldest = 0;
};
[[maybe_unused]] constinit Quarantine g_quarantine;

void FreeOfClass(void* block, const Page& page) noexcept {
  if constexpr (!kAddressSanitizer) {
    PushFree(block);
  } else {
    PoisonMemory(block, kClassSizes[page.class_index()]);
    void* const released = g_quarantine.blocks[g_quarantine.oldest];
    g_quarantine.blocks[g_quarantine.oldest] = block;
    g_quarantine.oldest = (g_quarantine.oldest + 1) % kQuarantineLength;
    if (released != nullptr) PushFree(released);
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
  const auto number = static_cast<unsigned>(AddressOf(block) / kPageSize);
  const unsigned chunk = number / kPagesPerChunk;
  const Page& page = g_pages[number];
  if (g_heap.chunk_use[chunk] == ChunkUse::kLarge) {
    FreeLarge(chunk);
  } else if (page.class_number != 0) {
    FreeOfClass(block, page);
  } else {
    PoisonMemory(block, page.run_length * kPageSize);
    FreePages(number, page.run_length);
  }
}

std::size_t LOWHEAP_MappedBytes() noexcept { return g_heap.mapped; }

}  // namespace tamu
