#include "device/sqlite/stored_text.h"

#include <gtest/gtest.h>

#include <string>

namespace tamu::device {
namespace {

std::string Stored(std::u16string_view text) {
  std::string stored = "left over";
  ToStoredText(text, &stored);
  return stored;
}

TEST(StoredText, PlainTextIsPlainUtf8) {
  EXPECT_EQ(Stored(u""), "");
  EXPECT_EQ(Stored(u"O'Brien; \"x\" %_[]\r\n\t"), "O'Brien; \"x\" %_[]\r\n\t");
  EXPECT_EQ(Stored(u"Ma\u00DF \u20AC \U0001F600"), "Ma\xC3\x9F \xE2\x82\xAC \xF0\x9F\x98\x80");
}

TEST(StoredText, NulLoneSurrogatesAndTheEscapeItselfAreEscaped) {
  EXPECT_EQ(Stored(std::u16string_view(u"a\0b", 3)),
            "a\x1B"
            "0000b");
  EXPECT_EQ(Stored(u"\x001B"),
            "\x1B"
            "001B");
  const char16_t low_then_high[] = {0xDC01, 0xD83D, u'x'};
  EXPECT_EQ(Stored({low_then_high, 3}),
            "\x1B"
            "DC01\x1B"
            "D83Dx");
}

TEST(StoredText, EveryUnitSurvivesAloneAndBetweenOthers) {
  for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
    const std::u16string alone(1, static_cast<char16_t>(unit));
    ASSERT_EQ(FromStoredText(Stored(alone)), alone) << unit;
    const std::u16string between = u"0" + alone + u"0000";
    ASSERT_EQ(FromStoredText(Stored(between)), between) << unit;
    ASSERT_EQ(Stored(between).find('\0'), std::string::npos) << unit;
  }
}

TEST(StoredText, EveryPairOfUnusualUnitsSurvives) {
  const char16_t units[] = {0,      0x1B,   u'0',   u'D',   0xD7FF, 0xD800, 0xDBFF, 0xDC00, 0xDFFF,
                            0xE000, 0xFFFD, 0xFFFE, 0xFFFF, 0x7F,   0x80,   0x7FF,  0x800};
  for (const char16_t first : units) {
    for (const char16_t second : units) {
      for (const char16_t third : units) {
        const std::u16string text = {first, second, third};
        ASSERT_EQ(FromStoredText(Stored(text)), text);
      }
    }
  }
}

TEST(StoredText, ForeignBytesAreReadAsWellAsTheyCanBe) {
  EXPECT_EQ(FromStoredText("a\xFF\xC3z"), u"a\uFFFD\uFFFDz");
  EXPECT_EQ(FromStoredText("\xC0\x80\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(FromStoredText("\xF0\x9F\x98"), u"\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(FromStoredText("\x1B"), u"\x001B");
  EXPECT_EQ(FromStoredText("\x1B"
                           "00G0"),
            u"\x001B"
            u"00G0");
}

TEST(StoredBytes, EveryByteSurvives) {
  std::vector<std::uint8_t> bytes;
  for (unsigned i = 0; i < 256; ++i) bytes.push_back(static_cast<std::uint8_t>(i));
  std::string stored;
  ToStoredBytes(bytes, &stored);
  EXPECT_EQ(stored.substr(0, 6), "000102");
  EXPECT_EQ(FromStoredBytes(stored), bytes);
  EXPECT_EQ(FromStoredBytes("0"), std::vector<std::uint8_t>());
  EXPECT_EQ(FromStoredBytes("FFxx00"), std::vector<std::uint8_t>{0xFF});
}

}  // namespace
}  // namespace tamu::device
