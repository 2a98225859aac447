#include "text/string_tools.h"

#include <gtest/gtest.h>

#include <array>
#include <clocale>
#include <string>

namespace tamu {
namespace {

TEST(StrFindNoCase, FindsTheNeedleInAnyCaseAndPlace) {
  const char* const text = "Type=Home;encoding=quoted-Printable";
  EXPECT_EQ(STR_FindNoCase(text, "HOME"), text + 5);
  EXPECT_EQ(STR_FindNoCase(text, "QUOTED-PRINTABLE"), text + 19);
  EXPECT_EQ(STR_FindNoCase(text, "TYPE=HOME;"), text);
  EXPECT_EQ(STR_FindNoCase(text, "WORK"), nullptr);
  EXPECT_EQ(STR_FindNoCase("HOM", "HOME"), nullptr);
  EXPECT_EQ(STR_FindNoCase("", "HOME"), nullptr);
}

TEST(StrFindNoCase, OnlyLettersOfAsciiHaveCases) {
  EXPECT_EQ(STR_FindNoCase("\xE4", "\xC4"), nullptr);
  EXPECT_EQ(STR_FindNoCase("[", "{"), nullptr);
}

TEST(StrReplaceAll, EveryOccurrenceIsReplacedFromTheLeft) {
  EXPECT_STREQ(STR_ReplaceAll("a=0D=0Ab=0D=0A", "=0D=0A", "\r\n").get(), "a\r\nb\r\n");
  EXPECT_STREQ(STR_ReplaceAll("aaa", "aa", "b").get(), "ba");
  EXPECT_STREQ(STR_ReplaceAll("x", "y", "zzz").get(), "x");
  EXPECT_STREQ(STR_ReplaceAll("", "y", "zzz").get(), "");
}

TEST(StrReplaceAll, NullWhenMemoryRunsOut) {
  MEM_FailNth(1);
  EXPECT_EQ(STR_ReplaceAll("x", "y", "z"), nullptr);
  MEM_FailNth(0);
}

TEST(StrIsAscii, UnitsUpTo127Are) {
  EXPECT_TRUE(STR_IsAscii(u""));
  EXPECT_TRUE(STR_IsAscii(u"abc\u007F"));
  EXPECT_FALSE(STR_IsAscii(u"ab\u0080"));
}

TEST(HexDigitValue, DigitsOfEitherCase) {
  EXPECT_EQ(HEX_DigitValue('0'), 0);
  EXPECT_EQ(HEX_DigitValue('9'), 9);
  EXPECT_EQ(HEX_DigitValue('a'), 10);
  EXPECT_EQ(HEX_DigitValue('F'), 15);
  for (const char none : {'g', 'G', '/', ':', '@', ' ', '\0', '\xFF'}) {
    EXPECT_EQ(HEX_DigitValue(none), 255) << none;
  }
}

TEST(HexToBytes, PairsOfDigitsBecomeBytes) {
  std::array<std::uint8_t, 4> out{};
  EXPECT_EQ(HEX_ToBytes("0aFf12", out.data(), 2), 4U);
  EXPECT_EQ(out, (std::array<std::uint8_t, 4>{0x0A, 0xFF, 0, 0}));
}

TEST(HexToBytes, TheTextsEndStopsIt) {
  std::array<std::uint8_t, 4> out{};
  EXPECT_EQ(HEX_ToBytes("0a1", out.data(), 4), 2U);
  EXPECT_EQ(out, (std::array<std::uint8_t, 4>{0x0A, 0, 0, 0}));
}

}  // namespace
}  // namespace tamu
