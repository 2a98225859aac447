#include "core/memory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "core/low_heap.h"
#include "core/sanitizer.h"
#include "platform/virtual_memory.h"

namespace tamu {
namespace {

TEST(Memory, NothingIsAllocatedForZeroBytes) { EXPECT_EQ(MEM_Alloc(0), nullptr); }

TEST(Memory, FreeingNullDoesNothing) {
  const std::size_t before = MEM_LiveBlocks();
  MEM_Free(nullptr);
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

TEST(Memory, BlocksOfEverySizeFitAReferenceAndAreCounted) {
  const std::size_t before = MEM_LiveBlocks();
  for (std::size_t size = 1; size < 200000; size += 1 + size / 7) {
    auto* const block = static_cast<char*>(MEM_Alloc(size));
    ASSERT_NE(block, nullptr) << size;
    std::memset(block, 0x5A, size);
    EXPECT_LE(reinterpret_cast<std::uintptr_t>(block) + size, std::uint64_t{1} << 32);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 8, 0U);
    EXPECT_EQ(MEM_LiveBlocks(), before + 1);
    MEM_Free(block);
  }
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

TEST(Memory, ZeroedBlocksAreZeroAlsoWhenReused) {
  for (int round = 0; round < 3; ++round) {
    MemPtr<char> block(static_cast<char*>(MEM_AllocZeroed(100)));
    for (int i = 0; i < 100; ++i) ASSERT_EQ(block.get()[i], 0);
    std::memset(block.get(), 0xFF, 100);
  }
}

TEST(Memory, LiveBlocksNeverOverlap) {
  std::mt19937 random(1);
  struct Block {
    MemPtr<unsigned char> bytes;
    std::size_t size;
    unsigned char mark;
  };
  std::vector<Block> blocks;
  const auto is_intact = [](const Block& block) {
    for (std::size_t i = 0; i < block.size; ++i) {
      if (block.bytes.get()[i] != block.mark) return false;
    }
    return true;
  };
  for (int step = 0; step < 5000; ++step) {
    if (!blocks.empty() && random() % 2 == 0) {
      const std::size_t victim = random() % blocks.size();
      ASSERT_TRUE(is_intact(blocks[victim]));
      std::swap(blocks[victim], blocks.back());
      blocks.pop_back();
      continue;
    }
    const std::size_t size = 1 + random() % (step % 100 == 0 ? 300000 : 600);
    const auto mark = static_cast<unsigned char>(random());
    blocks.push_back(
        {MemPtr<unsigned char>(static_cast<unsigned char*>(MEM_Alloc(size))), size, mark});
    ASSERT_TRUE(blocks.back().bytes);
    std::memset(blocks.back().bytes.get(), mark, size);
  }
  for (const Block& block : blocks) EXPECT_TRUE(is_intact(block));
}

TEST(Memory, TheNthAllocationFailsOnce) {
  MEM_FailNth(2);
  const MemPtr<void> first(MEM_Alloc(8));
  const MemPtr<void> second(MEM_Alloc(8));
  const MemPtr<void> third(MEM_Alloc(8));
  EXPECT_TRUE(first);
  EXPECT_FALSE(second);
  EXPECT_TRUE(third);
  EXPECT_TRUE(MEM_FailureStruck());
  MEM_FailNth(0);
}

TEST(Memory, EveryAllocationAfterTheNthFailsWhenAskedFor) {
  MEM_FailNth(1, true);
  EXPECT_EQ(MEM_Alloc(8), nullptr);
  EXPECT_EQ(MEM_Alloc(8), nullptr);
  MEM_FailNth(0);
  EXPECT_TRUE(MemPtr<void>(MEM_Alloc(8)));
}

TEST(Memory, CopiesOfTextsAreTerminated) {
  const MemPtr<char> copy = MEM_CopyText(std::string_view("contact", 4));
  EXPECT_STREQ(copy.get(), "cont");
}

#if UINTPTR_MAX > UINT32_MAX
TEST(LowHeap, LargeBlocksGoBackToTheSystem) {
  MEM_Free(MEM_Alloc(100000));
  const std::size_t before = LOWHEAP_MappedBytes();
  void* const block = MEM_Alloc(std::size_t{64} * 1024 * 1024);
  ASSERT_NE(block, nullptr);
  EXPECT_GE(LOWHEAP_MappedBytes(), before + std::size_t{64} * 1024 * 1024);
  MEM_Free(block);
  EXPECT_EQ(LOWHEAP_MappedBytes(), before);
}

// What one size of block has used can serve every other.
TEST(LowHeap, PagesOfFreedBlocksServeOtherSizes) {
  constexpr std::size_t kBytes = std::size_t{48} * 1024 * 1024;
  const auto fill_and_free = [](std::size_t size) {
    std::vector<MemPtr<void>> blocks;
    for (std::size_t bytes = 0; bytes < kBytes; bytes += size) blocks.emplace_back(MEM_Alloc(size));
    EXPECT_TRUE(blocks.back());
  };
  const std::size_t before = LOWHEAP_MappedBytes();
  for (const std::size_t size : {16000U, 4000U, 700U, 60000U, 5000000U}) {
    fill_and_free(size);
    // The rest is what a sanitizer keeps back, and a page of each size.
    EXPECT_LT(LOWHEAP_MappedBytes(), before + kBytes * 3) << size;
  }
  if (!kAddressSanitizer) {
    // Each of the four small sizes keeps a page, which may keep a chunk of 4 MiB.
    EXPECT_LE(LOWHEAP_MappedBytes(), before + std::size_t{4} * 4 * 1024 * 1024);
  }
}

void* RefuseToMap(void*, std::size_t, std::uint32_t, std::uint32_t) { return nullptr; }

TEST(LowHeap, WithoutAddressesLeftAllocationFailsAndRecovers) {
  std::vector<MemPtr<void>> blocks;
  {
    const platform::ScopedOverride<void*(void*, std::size_t, std::uint32_t, std::uint32_t)> refuse(
        platform::VirtualAlloc, &RefuseToMap);
    for (int i = 0; i < 100000; ++i) {
      blocks.emplace_back(MEM_Alloc(16000));
      if (!blocks.back()) break;
    }
    EXPECT_FALSE(blocks.back());
    EXPECT_FALSE(MemPtr<void>(MEM_Alloc(std::size_t{8} * 1024 * 1024)));
  }
  EXPECT_TRUE(MemPtr<void>(MEM_Alloc(16000)));
  EXPECT_TRUE(MemPtr<void>(MEM_Alloc(std::size_t{8} * 1024 * 1024)));
}

TEST(LowHeap, ARunCanFillAWholeChunk) {
  const MemPtr<void> block(MEM_Alloc(std::size_t{4} * 1024 * 1024 - 8));
  ASSERT_TRUE(block);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block.get()) % (4 * 1024 * 1024), 0U);
}

TEST(LowHeap, AReasonableDemandIsMetAndAnUnreasonableOneFails) {
  EXPECT_EQ(MEM_Alloc(std::size_t{5} * 1024 * 1024 * 1024), nullptr);
  EXPECT_EQ(MEM_Alloc(SIZE_MAX), nullptr);
  EXPECT_TRUE(MemPtr<void>(MEM_Alloc(std::size_t{200} * 1024 * 1024)));
}
#endif

}  // namespace
}  // namespace tamu
