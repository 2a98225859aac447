#include <gtest/gtest.h>

#include "core/memory.h"
#include "core/sanitizer.h"

namespace tamu {
namespace {

#ifdef TAMU_ADDRESS_SANITIZER
TEST(LowHeapDeathTest, WritingPastABlockIsReported) {
  EXPECT_DEATH(
      {
        auto* const block = static_cast<volatile char*>(MEM_Alloc(24));
        block[24] = 1;
      },
      "AddressSanitizer");
}

TEST(LowHeapDeathTest, WritingPastALargeBlockIsReported) {
  EXPECT_DEATH(
      {
        auto* const block = static_cast<volatile char*>(MEM_Alloc(5000000));
        block[5000000] = 1;
      },
      "AddressSanitizer");
}

TEST(LowHeapDeathTest, UsingAFreedBlockIsReported) {
  EXPECT_DEATH(
      {
        auto* const block = static_cast<volatile char*>(MEM_Alloc(24));
        MEM_Free(const_cast<char*>(block));
        block[0] = 1;
      },
      "AddressSanitizer");
}

TEST(LowHeapDeathTest, FreeingTwiceIsReported) {
  EXPECT_DEATH(
      {
        void* const block = MEM_Alloc(24);
        MEM_Free(block);
        MEM_Free(block);
      },
      "");
}
#endif

}  // namespace
}  // namespace tamu
