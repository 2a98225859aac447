#include "display_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tamu::tool {
namespace {

using Lines = std::vector<std::string>;

TEST(DisplayToUtf8, PairsJoinAndLoneSurrogatesAreReplaced) {
  EXPECT_EQ(DISPLAY_ToUtf8(u"a\u00E4\u20AC\U0001F600"), "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_EQ(DISPLAY_ToUtf8(std::u16string{0xD83D}), "\xEF\xBF\xBD");
  EXPECT_EQ(DISPLAY_ToUtf8(std::u16string{0xDE00, u'x'}), "\xEF\xBF\xBDx");
}

TEST(DisplayBytesToUtf8, EveryByteIsOneCharacter) {
  EXPECT_EQ(DISPLAY_BytesToUtf8("a\x80\xFF"), "a\xC2\x80\xC3\xBF");
}

TEST(DisplayLine, ControlCharactersBecomeVisible) {
  EXPECT_EQ(DISPLAY_Line(u"\x1B[2J\x07\x7F\u009B"), "\\x1b[2J\\x07\\x7f\\x9b");
  EXPECT_EQ(DISPLAY_Line(u"\u202E\u2066\u200F\uFEFF\u2028"), "\\u202e\\u2066\\u200f\\ufeff\\u2028");
  EXPECT_EQ(DISPLAY_Line(u"a\tb"), "a b");
}

TEST(DisplayLine, NoControlCharacterOfUnicodePasses) {
  for (unsigned code = 0; code < 0x300; ++code) {
    const std::string shown = DISPLAY_Line(std::u16string(1, static_cast<char16_t>(code)));
    const bool control = code < 0x20 || (code >= 0x7F && code < 0xA0);
    if (code != '\t') {
      EXPECT_EQ(shown.starts_with("\\x"), control) << code;
    }
    for (const char byte : shown) EXPECT_GE(static_cast<unsigned char>(byte), 0x20U) << code;
  }
}

TEST(DisplayLines, EveryLineEndSplitsAndEmptyEndIsLeftOut) {
  EXPECT_EQ(DISPLAY_Lines(u"a\r\nb\nc\rd"), (Lines{"a", "b", "c", "d"}));
  EXPECT_EQ(DISPLAY_Lines(u"a\n\nb\n\n"), (Lines{"a", "", "b"}));
  EXPECT_EQ(DISPLAY_Lines(u""), Lines{});
}

TEST(DisplayBytes, StrayBytesAreShownByTheirNumber) {
  EXPECT_EQ(DISPLAY_Bytes("caf\xC3\xA9"), "caf\xC3\xA9");
  EXPECT_EQ(DISPLAY_Bytes("caf\xE9\n"), "caf\\xe9\\x0a");
}

TEST(DisplayFileName, EmptyNameIsQuoted) {
  EXPECT_EQ(DISPLAY_FileName(""), "''");
  EXPECT_EQ(DISPLAY_FileName("a b"), "a b");
}

TEST(DisplayJson, OnlyUnsafeCharactersAreEscaped) {
  EXPECT_EQ(DISPLAY_Json("{\"a\":\"\xC3\xA4\x7F\xC2\x9B\xE2\x80\xAE\xF0\x9F\x98\x80\"}"),
            "{\"a\":\"\xC3\xA4\\u007f\\u009b\\u202e\xF0\x9F\x98\x80\"}");
}

}  // namespace
}  // namespace tamu::tool
