#include "mailstore/html_entities.h"

#include <gtest/gtest.h>

#include <string>

namespace tamu {
namespace {

constexpr std::u16string_view kDigits = u"0123456789";

TEST(HtmlDecodeEntity, KnowsNamesFromEveryPartOfTheTable) {
  EXPECT_EQ(HTML_DecodeEntity(u"quot"), u'"');
  EXPECT_EQ(HTML_DecodeEntity(u"amp"), u'&');
  EXPECT_EQ(HTML_DecodeEntity(u"lt"), u'<');
  EXPECT_EQ(HTML_DecodeEntity(u"gt"), u'>');
  EXPECT_EQ(HTML_DecodeEntity(u"nbsp"), 160);
  EXPECT_EQ(HTML_DecodeEntity(u"euro"), 8364);
  EXPECT_EQ(HTML_DecodeEntity(u"diams"), 9830);
  EXPECT_EQ(HTML_DecodeEntity(u"AElig"), 198);
  EXPECT_EQ(HTML_DecodeEntity(u"zwnj"), 8204);
  EXPECT_EQ(HTML_DecodeEntity(u"thetasym"), 977);
  EXPECT_EQ(HTML_DecodeEntity(u"there4"), 8756);
}

TEST(HtmlDecodeEntity, NamesAreCaseSensitive) {
  EXPECT_EQ(HTML_DecodeEntity(u"Eacute"), 201);
  EXPECT_EQ(HTML_DecodeEntity(u"eacute"), 233);
  EXPECT_EQ(HTML_DecodeEntity(u"EACUTE"), u' ');
  EXPECT_EQ(HTML_DecodeEntity(u"Dagger"), 8225);
  EXPECT_EQ(HTML_DecodeEntity(u"dagger"), 8224);
}

TEST(HtmlDecodeEntity, LangAndRangAreTheAnglesOfHtml4) {
  EXPECT_EQ(HTML_DecodeEntity(u"lang"), 9001);
  EXPECT_EQ(HTML_DecodeEntity(u"rang"), 9002);
}

TEST(HtmlDecodeEntity, TheSixNamesThatAreMissingAreSpaces) {
  for (const char16_t* name : {u"cong", u"lowast", u"minus", u"radic", u"sum", u"uArr"}) {
    EXPECT_EQ(HTML_DecodeEntity(name), u' ');
  }
}

TEST(HtmlDecodeEntity, UnknownNamesAreSpaces) {
  for (const char16_t* name : {u"x", u"am", u"ampe", u" amp", u"amp ", u"thetasymb", u"zzzzzzzz",
                               u"Eacut\u00E9", u"\u0100amp", u"nothing like a name"}) {
    EXPECT_EQ(HTML_DecodeEntity(name), u' ');
  }
  EXPECT_EQ(HTML_DecodeEntity(std::u16string_view(u"\0amp", 4)), u' ');
  EXPECT_EQ(HTML_DecodeEntity(std::u16string_view(u"amp\0", 4)), u' ');
}

TEST(HtmlDecodeEntity, AnEmptyNameIsNothing) { EXPECT_EQ(HTML_DecodeEntity(u""), std::nullopt); }

TEST(HtmlDecodeEntity, ReadsDecimalAndHexadecimalNumbers) {
  EXPECT_EQ(HTML_DecodeEntity(u"#65"), u'A');
  EXPECT_EQ(HTML_DecodeEntity(u"#x41"), u'A');
  EXPECT_EQ(HTML_DecodeEntity(u"#x20aC"), 0x20AC);
  EXPECT_EQ(HTML_DecodeEntity(u"#8364"), 8364);
}

TEST(HtmlDecodeEntity, ALargeXIsNoHexadecimalNumber) {
  EXPECT_EQ(HTML_DecodeEntity(u"#X41"), u'\0');
}

TEST(HtmlDecodeEntity, DecimalNumbersAreReadAsFarAsTheyGo) {
  EXPECT_EQ(HTML_DecodeEntity(u"#65x"), u'A');
  EXPECT_EQ(HTML_DecodeEntity(u"# \t65"), u'A');
  EXPECT_EQ(HTML_DecodeEntity(u"#+65"), u'A');
  EXPECT_EQ(HTML_DecodeEntity(u"#-1"), 0xFFFF);
  EXPECT_EQ(HTML_DecodeEntity(u"#0"), u'\0');
  EXPECT_EQ(HTML_DecodeEntity(u"#junk"), u'\0');
}

TEST(HtmlDecodeEntity, UnreadableHexadecimalIsASpace) {
  for (const char16_t* name : {u"#x", u"#xg", u"#x-", u"#x 0Xg", u"#xx"}) {
    EXPECT_EQ(HTML_DecodeEntity(name), u' ');
  }
  EXPECT_EQ(HTML_DecodeEntity(u"#x0"), u'\0');
}

TEST(HtmlDecodeEntity, ANumberSignAloneIsASpace) {
  EXPECT_EQ(HTML_DecodeEntity(u"#"), u' ');
  EXPECT_EQ(HTML_DecodeEntity(u"##"), u' ');
}

TEST(HtmlDecodeEntity, NumberSignsAndXsAreSkippedWhereverTheyStand) {
  EXPECT_EQ(HTML_DecodeEntity(u"##6#5"), u'A');
  EXPECT_EQ(HTML_DecodeEntity(u"#x4x1#"), u'A');
  EXPECT_EQ(HTML_DecodeEntity(u"#x0x41"), u'A');
  EXPECT_EQ(HTML_DecodeEntity(u"#x0X41"), u'A');
  EXPECT_EQ(HTML_DecodeEntity(u"#6x5"), 6);
}

TEST(HtmlDecodeEntity, NumbersStopAt32BitsAndTheLow16Count) {
  EXPECT_EQ(HTML_DecodeEntity(u"#65601"), u'A');
  EXPECT_EQ(HTML_DecodeEntity(u"#65536"), u'\0');
  EXPECT_EQ(HTML_DecodeEntity(u"#2147483647"), 0xFFFF);
  EXPECT_EQ(HTML_DecodeEntity(u"#2147483713"), 0xFFFF);  // 2^31 + 65
  EXPECT_EQ(HTML_DecodeEntity(u"#-2147483649"), 0);
  EXPECT_EQ(HTML_DecodeEntity(u"#x10041"), u'A');
  EXPECT_EQ(HTML_DecodeEntity(u"#x100000041"), 0xFFFF);
  std::u16string endless = u"#";
  for (int i = 0; i < 10000; ++i) endless += kDigits;
  EXPECT_EQ(HTML_DecodeEntity(endless), 0xFFFF);
}

}  // namespace
}  // namespace tamu
