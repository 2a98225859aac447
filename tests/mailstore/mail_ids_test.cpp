#include <gtest/gtest.h>

#include <array>
#include <string>

#include "mailstore/mail_operations.h"

namespace tamu {
namespace {

TEST(FBinFromHex, ReadsDigitsOfEitherCase) {
  std::array<std::uint8_t, 4> bytes{};
  ASSERT_TRUE(FBinFromHex("00fFA019", bytes.data()));
  EXPECT_EQ(bytes, (std::array<std::uint8_t, 4>{0x00, 0xFF, 0xA0, 0x19}));
}

TEST(FBinFromHex, NullTextHasNoBytes) { EXPECT_TRUE(FBinFromHex(nullptr, nullptr)); }

TEST(FBinFromHex, OddLengthFails) {
  std::array<std::uint8_t, 4> bytes{};
  EXPECT_FALSE(FBinFromHex("00f", bytes.data()));
}

TEST(FBinFromHex, EveryOtherCharacterFails) {
  std::array<std::uint8_t, 4> bytes{};
  for (const char* const text : {"0g", "g0", "0 ", " 0", "0x10", "-1", "/0", ":0", "@0", "`0"}) {
    EXPECT_FALSE(FBinFromHex(text, bytes.data())) << text;
  }
}

TEST(MAPI_EntryIdToHex, WritesUpperCasePairs) {
  std::array<char, 9> text{};
  const std::array<std::uint8_t, 4> bytes{0x00, 0x0A, 0xFF, 0x9C};
  MAPI_EntryIdToHex(bytes.data(), bytes.size(), text.data());
  EXPECT_STREQ(text.data(), "000AFF9C");
}

TEST(MAPI_EntryIdToHex, NoBytesGiveTheEmptyText) {
  std::array<char, 2> text{'x', 'y'};
  MAPI_EntryIdToHex(nullptr, 0, text.data());
  EXPECT_STREQ(text.data(), "");
}

}  // namespace
}  // namespace tamu
