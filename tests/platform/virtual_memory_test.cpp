#include "platform/virtual_memory.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tamu::platform {
namespace {

void* Allocate(void* address, std::size_t size) {
  return VirtualAlloc(address, size, kMemReserveCommit, kPageReadWrite);
}

TEST(VirtualAlloc, AnywhereIsZeroedWritableAndAligned) {
  constexpr std::size_t kSize = 4 * kPageGranularity;
  auto* memory = static_cast<unsigned char*>(Allocate(nullptr, kSize));
  ASSERT_NE(memory, nullptr);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory) % kPageGranularity, 0U);
  EXPECT_TRUE(std::all_of(memory, memory + kSize, [](unsigned char byte) { return byte == 0; }));
  std::fill_n(memory, kSize, static_cast<unsigned char>(0xA5));
  EXPECT_TRUE(VirtualFree(memory, kSize, kMemRelease));
}

TEST(VirtualAlloc, AtAFreeAddressItIsExactlyThere) {
  void* wanted = Allocate(nullptr, kPageGranularity);
  ASSERT_NE(wanted, nullptr);
  ASSERT_TRUE(VirtualFree(wanted, kPageGranularity, kMemRelease));
  EXPECT_EQ(Allocate(wanted, kPageGranularity), wanted);
  EXPECT_TRUE(VirtualFree(wanted, kPageGranularity, kMemRelease));
}

TEST(VirtualAlloc, ATakenAddressIsRefusedAndLeftAlone) {
  auto* taken = static_cast<unsigned char*>(Allocate(nullptr, kPageGranularity));
  ASSERT_NE(taken, nullptr);
  *taken = 42;
  EXPECT_EQ(Allocate(taken, kPageGranularity), nullptr);
  EXPECT_EQ(GetLastError(), kErrorInvalidAddress);
  EXPECT_EQ(*taken, 42);
  EXPECT_TRUE(VirtualFree(taken, kPageGranularity, kMemRelease));
}

TEST(VirtualAlloc, WrongSizesAddressesAndFlagsAreRefused) {
  EXPECT_EQ(Allocate(nullptr, 0), nullptr);
  EXPECT_EQ(GetLastError(), kErrorInvalidParameter);
  EXPECT_EQ(Allocate(nullptr, 4096), nullptr);
  EXPECT_EQ(Allocate(reinterpret_cast<void*>(std::uintptr_t{0x60001000}), kPageGranularity),
            nullptr);
  EXPECT_EQ(VirtualAlloc(nullptr, kPageGranularity, 0, kPageReadWrite), nullptr);
  EXPECT_EQ(VirtualAlloc(nullptr, kPageGranularity, kMemReserveCommit, 0), nullptr);
  EXPECT_FALSE(VirtualFree(nullptr, kPageGranularity, kMemRelease));
}

TEST(VirtualAlloc, MoreThanThereIsFails) {
  constexpr std::size_t kMost = ~std::size_t{0} / kPageGranularity * kPageGranularity;
  SetLastError(0);
  EXPECT_EQ(Allocate(nullptr, kMost), nullptr);
  EXPECT_EQ(GetLastError(), kErrorNotEnoughMemory);
}

}  // namespace
}  // namespace tamu::platform
