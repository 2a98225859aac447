#include "platform/bstr.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

namespace tamu::platform {
namespace {

TEST(SysAllocString, CopiesWithLengthPrefixAndTerminator) {
  const BStr string(SysAllocString(u"abc"));
  std::uint32_t bytes = 0;
  std::memcpy(&bytes, reinterpret_cast<const char*>(string.get()) - 4, sizeof bytes);
  EXPECT_EQ(bytes, 6U);
  EXPECT_EQ(string.size(), 3U);
  EXPECT_EQ(string.view(), u"abc");
  EXPECT_EQ(string.get()[3], 0);
}

TEST(SysAllocString, NullIsNullAndNoFailure) {
  SetLastError(7);
  EXPECT_EQ(SysAllocString(nullptr), nullptr);
  EXPECT_EQ(GetLastError(), 7U);
}

TEST(SysAllocStringLen, KeepsNulsAndCopiesNoMoreThanAsked) {
  const char16_t text[] = {u'a', 0, u'b', u'c'};
  const BStr string(SysAllocStringLen(text, 3));
  EXPECT_EQ(string.view(), std::u16string_view(text, 3));
  EXPECT_EQ(string.get()[3], 0);
}

TEST(SysAllocStringLen, WithoutATextItIsRoomWithATerminator) {
  const BStr string(SysAllocStringLen(nullptr, 5));
  ASSERT_NE(string.get(), nullptr);
  EXPECT_EQ(string.size(), 5U);
  EXPECT_EQ(string.get()[5], 0);
  const BStr empty(SysAllocStringLen(nullptr, 0));
  ASSERT_NE(empty.get(), nullptr);
  EXPECT_TRUE(empty.empty());
}

TEST(SysAllocStringLen, LengthsThatWouldWrapFail) {
  constexpr std::uint32_t kMax = std::numeric_limits<std::uint32_t>::max();
  for (const std::uint32_t length :
       {kMax, kMax / 2, kMax / 2 + 1, kMax / 2 - 1, std::uint32_t{0x7FFFFFFF}}) {
    SetLastError(0);
    EXPECT_EQ(SysAllocStringLen(nullptr, length), nullptr) << length;
    EXPECT_EQ(GetLastError(), kErrorNotEnoughMemory);
  }
}

TEST(SysFreeString, CountsLiveStrings) {
  const std::int64_t before = SysLiveStrings();
  char16_t* first = SysAllocString(u"");
  char16_t* second = SysAllocStringLen(u"xy", 2);
  EXPECT_EQ(SysLiveStrings(), before + 2);
  SysFreeString(first);
  SysFreeString(second);
  SysFreeString(nullptr);
  EXPECT_EQ(SysLiveStrings(), before);
}

TEST(SysStringLen, NullIsEmpty) { EXPECT_EQ(SysStringLen(nullptr), 0U); }

TEST(BStr, FreesOnEveryWay) {
  const std::int64_t before = SysLiveStrings();
  {
    BStr first(SysAllocString(u"first"));
    BStr second(std::move(first));
    EXPECT_EQ(first.get(), nullptr);
    first = std::move(second);
    EXPECT_EQ(first.view(), u"first");
    *first.put() = SysAllocString(u"second");
    EXPECT_EQ(first.view(), u"second");
    second.reset(SysAllocString(u"third"));
    SysFreeString(second.release());
    EXPECT_STREQ(reinterpret_cast<const char*>(second.c_str()), "");
  }
  EXPECT_EQ(SysLiveStrings(), before);
}

}  // namespace
}  // namespace tamu::platform
