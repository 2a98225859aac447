// Code pages with escape sequences and shifts, and the Japanese page that is computed from another
// one's table.
#include <array>

#include "platform/code_pages_support.h"

namespace tamu::platform::testing {
namespace {

constexpr std::uint32_t kJapanese[] = {50220, 50221, 50222};

TEST(Iso2022Japanese, DecodesEveryEscapeSequence) {
  for (const std::uint32_t page : kJapanese) {
    EXPECT_EQ(u"\x6771x", Decode(page, "\x1B$BEl\x1B(Bx"));
    EXPECT_EQ(u"\x6771x", Decode(page, "\x1B$@El\x1B(Jx"));
    EXPECT_EQ(u"\x6771x", Decode(page, "\x1B$(DEl\x1B(Hx"));
    EXPECT_EQ(u"\x6771x", Decode(page, "\x1B&@\x1B$BEl\x1B(Bx"));
    EXPECT_EQ(u"\xFF71z", Decode(page, "\x1B(I1\x1B(Bz"));
    EXPECT_EQ(u"\\~", Decode(page, "\x1B(J\\~"));
  }
}

TEST(Iso2022Japanese, DecodesKatakanaHoweverItIsWritten) {
  for (const std::uint32_t page : kJapanese) {
    EXPECT_EQ(u"a\xFF71z", Decode(page,
                                  "a\x0E"
                                  "1\x0Fz"));
    EXPECT_EQ(u"a\xFF71z", Decode(page, "a\xB1z"));
    EXPECT_EQ(u"\xFF71", Decode(page, "\x1B$B*1\x1B(B"));
    EXPECT_EQ(u"\x6771\xFF71\x6771", Decode(page,
                                            "\x1B$BEl\x0E"
                                            "1\x0F"
                                            "El\x1B(B"));
  }
}

TEST(Iso2022Japanese, CountsOfTheTwoSetsOf94) {
  int kanji = 0;
  int katakana = 0;
  for (char row = 0x21; row < 0x7F; ++row) {
    for (char cell = 0x21; cell < 0x7F; ++cell) {
      const char bytes[] = {0x1B, '$', 'B', row, cell};
      const bool is_middle_dot = row == 0x21 && cell == 0x26;
      char16_t unit = 0;
      ASSERT_EQ(1, MultiByteToWideChar(50220, 0, bytes, 5, &unit, 1));
      if (unit == 0x30FB && !is_middle_dot) continue;
      ++(row == 0x2A ? katakana : kanji);
    }
  }
  EXPECT_EQ(7336, kanji);
  EXPECT_EQ(63, katakana);
}

TEST(Iso2022Japanese, EncodesBackToAsciiAtTheEnd) {
  for (const std::uint32_t page : kJapanese) {
    EXPECT_EQ("a\x1B$BElEl\x1B(Bz", Encode(page, u"a\x6771\x6771z"));
    EXPECT_EQ("\x1B$BEl\x1B(B", Encode(page, u"\x6771"));
    EXPECT_EQ("plain", Encode(page, u"plain"));
  }
}

TEST(Iso2022Japanese, PagesDifferInHalfWidthKatakana) {
  EXPECT_EQ("\x1B$B%\"\x1B(B", Encode(50220, u"\xFF71"));
  EXPECT_EQ("\x1B(I1\x1B(B", Encode(50221, u"\xFF71"));
  EXPECT_EQ(
      "\x0E"
      "1\x0F",
      Encode(50222, u"\xFF71"));
  EXPECT_EQ(
      "\x1B$BEl\x0E"
      "1\x0F"
      "El\x1B(Bz",
      Encode(50222, u"\x6771\xFF71\x6771z"));
  EXPECT_EQ("\x1B$BEl\x1B(I1\x1B$BEl\x1B(Bz", Encode(50221, u"\x6771\xFF71\x6771z"));
}

TEST(Iso2022Japanese, FullWidthOfAllKatakana) {
  // U+FF61 to U+FF9F
  constexpr std::u16string_view kFullWidth =
      u"\u3002\u300C\u300D\u3001\u30FB\u30F2\u30A1\u30A3\u30A5\u30A7\u30A9\u30E3\u30E5\u30E7\u30C3"
      u"\u30FC"
      u"\u30A2\u30A4\u30A6\u30A8\u30AA\u30AB\u30AD\u30AF\u30B1\u30B3\u30B5\u30B7\u30B9\u30BB\u30BD"
      u"\u30BF"
      u"\u30C1\u30C4\u30C6\u30C8\u30CA\u30CB\u30CC\u30CD\u30CE\u30CF\u30D2\u30D5\u30D8\u30DB\u30DE"
      u"\u30DF"
      u"\u30E0\u30E1\u30E2\u30E4\u30E6\u30E8\u30E9\u30EA\u30EB\u30EC\u30ED\u30EF\u30F3\u309B\u309C";
  std::u16string half_width;
  for (char16_t unit = 0xFF61; unit <= 0xFF9F; ++unit) half_width += unit;
  EXPECT_EQ(kFullWidth, Decode(50220, Encode(50220, half_width)));
  EXPECT_EQ(half_width, Decode(50221, Encode(50221, half_width)));
  EXPECT_EQ(half_width, Decode(50222, Encode(50222, half_width)));
}

TEST(Iso2022Japanese, MakersCharactersGoToTheirJisRows) {
  EXPECT_EQ("\x1B$B|q\x1B(B", Encode(50220, u"\x2170"));
  EXPECT_EQ("\x1B$By!\x1B(B", Encode(50220, u"\x7E8A"));
  EXPECT_EQ("\x1B$B-j\x1B(B", Encode(50220, u"\x3231"));
}

TEST(Iso2022Japanese, UnmappedUnitsAreReplacedInAscii) {
  const Encoded result = EncodeWith(50220, u"\x6771\xE000\x6771", 0, nullptr);
  EXPECT_EQ("\x1B$BEl\x1B(B?\x1B$BEl\x1B(B", result.bytes);
  EXPECT_TRUE(result.used_default);
  EXPECT_EQ("#", Encode(50220, u"\xD83D", 0, "#"));
}

TEST(Iso2022Japanese, BrokenTextIsKeptAsFarAsItGoes) {
  EXPECT_EQ(u"a\x1B", Decode(50220, "a\x1B"));
  EXPECT_EQ(u"a\x1B$", Decode(50220, "a\x1B$"));
  EXPECT_EQ(u"\x1B(Zx", Decode(50220, "\x1B(Zx"));
  EXPECT_EQ(u"\x30FB", Decode(50220, "\x1B$BE"));
  EXPECT_EQ(u"\x30FBx", Decode(50220, "\x1B$BE\x1B(Bx"));
  EXPECT_EQ(u"\x6771\r\n\x6771", Decode(50220, "\x1B$BEl\r\nEl"));
  EXPECT_EQ(u"\x30FB\n", Decode(50220, "\x1B$BE\n"));
  EXPECT_EQ(std::u16string(u"\x30FB\0", 2), Decode(50220, std::string_view("\x1B$BE\0", 5)));
  EXPECT_EQ(u"\x30FB\x30FB", Decode(50220, "\x80\xFE"));
}

TEST(Iso2022Korean, DecodesWithAndWithoutDesignator) {
  EXPECT_EQ(u"\xAC00 z", Decode(50225,
                                "\x1B$)C\x0E"
                                "0!\x0F z"));
  EXPECT_EQ(u"\xAC00z", Decode(50225,
                               "\x0E"
                               "0!\x0Fz"));
}

TEST(Iso2022Korean, BlanksAndControlsPassInsideShiftOut) {
  EXPECT_EQ(u"\xAC00 \t\r\n\xAC00", Decode(50225,
                                           "\x0E"
                                           "0! \t\r\n0!\x0F"));
}

TEST(Iso2022Korean, DesignatorOnlyBeforeTheFirstKoreanCharacter) {
  EXPECT_EQ("plain", Encode(50225, u"plain"));
  EXPECT_EQ(
      "a\x1B$)C\x0E"
      "0!\x0Fz\x0E"
      "0!\x0F",
      Encode(50225, u"a\xAC00z\xAC00"));
}

TEST(Iso2022Korean, HasOnlyTheWansungPart) {
  const Encoded result = EncodeWith(50225, u"\xAC02\x0080", 0, nullptr);  // A1A1 to FEFE lack it
  EXPECT_EQ("??", result.bytes);
  EXPECT_TRUE(result.used_default);
}

TEST(Iso2022Korean, BrokenTextIsKeptAsFarAsItGoes) {
  EXPECT_EQ(u"?", Decode(50225,
                         "\x0E"
                         "0"));
  EXPECT_EQ(u"?x", Decode(50225,
                          "\x0E"
                          "0\x0Fx"));
  EXPECT_EQ(u"\x1B$)", Decode(50225, "\x1B$)"));
  EXPECT_EQ(u"??", Decode(50225, "\xB0\xA1"));
}

TEST(Hz, DecodesEscapes) {
  EXPECT_EQ(u"a\x4E2D~z", Decode(52936, "a~{VP~}~~z"));
  EXPECT_EQ(u"ab", Decode(52936, "a~\nb"));
  EXPECT_EQ(u"\x4E2D\n\x4E2D", Decode(52936, "~{VP\nVP~}"));
  EXPECT_EQ(u"\x3000", Decode(52936, "~{! ~}"));
}

TEST(Hz, EncodesClosedRuns) {
  EXPECT_EQ("a", Encode(52936, u"a"));
  EXPECT_EQ("~{VP~}", Encode(52936, u"\x4E2D"));
  EXPECT_EQ("~{VP~}~~", Encode(52936, u"\x4E2D~"));
  EXPECT_EQ("~{VPVP~}a\n", Encode(52936,
                                  u"\x4E2D\x4E2D"
                                  u"a\n"));
}

TEST(Hz, LacksWhatIsNotInThe94Rows) {
  const Encoded result = EncodeWith(52936, u"\x4E2D\x4E02\x20AC", 0, nullptr);
  EXPECT_EQ("~{VP~}??", result.bytes);
  EXPECT_TRUE(result.used_default);
  EXPECT_EQ("a", Encode(52936, u"\x00AA"));
  EXPECT_EQ("?", Encode(52936, u"\x00AA", kWcNoBestFitChars));
}

TEST(Hz, BrokenTextIsKeptAndRefusedWhenStrict) {
  static constexpr std::pair<std::string_view, std::u16string_view> kRows[] = {
      {"a~", u"a~"},     {"~x", u"~x"},    {"~{V", u"?"},
      {"~{V\n", u"?\n"}, {"~{~!~}", u"?"}, {"\xD6\xD0", u"??"},
  };
  for (const auto& [bytes, units] : kRows) {
    EXPECT_EQ(units, Decode(52936, bytes)) << bytes;
    EXPECT_EQ(u"", Decode(52936, bytes, kMbErrInvalidChars)) << bytes;
    EXPECT_EQ(kErrorNoUnicodeTranslation, GetLastError()) << bytes;
  }
  EXPECT_EQ(u"\x4E2D~", Decode(52936, "~{VP~}~~", kMbErrInvalidChars));
}

TEST(EucJapanese, DecodesPairsAndKatakana) {
  EXPECT_EQ(u"a\x6771\xFF71\\", Decode(51932, "a\xC5\xEC\x8E\xB1\\", kMbErrInvalidChars));
  EXPECT_EQ(u"\x30FB", Decode(51932, "\xA1\xA6", kMbErrInvalidChars));
  EXPECT_EQ(u"\x80", Decode(51932, "\x80", kMbErrInvalidChars));
  EXPECT_EQ(u"\xF8F0\xF8F3", Decode(51932, "\xA0\xFF"));
}

TEST(EucJapanese, EncodesPairsAndKatakana) {
  EXPECT_EQ("a\xC5\xEC\x8E\xB1\\", Encode(51932, u"a\x6771\xFF71\\"));
  EXPECT_EQ("\xF9\xA1", Encode(51932, u"\x7E8A"));
  EXPECT_EQ("\xAD\xEA", Encode(51932, u"\x3231"));
  EXPECT_EQ("??", Encode(51932, u"\xE000\xF8F1"));
  EXPECT_EQ("\\", Encode(51932, u"\x00A5"));
  EXPECT_EQ("?", Encode(51932, u"\x00A5", kWcNoBestFitChars));
}

TEST(EucJapanese, MalformedTextIsTheDefaultUnit) {
  static constexpr std::pair<std::string_view, std::u16string_view> kRows[] = {
      {"\xC5", u"\x30FB"},
      {"\xC5"
       "A",
       u"\x30FB"},
      {"\x8E"
       "A",
       u"\x30FB"},
      {"\x8E\xE0", u"\x30FB"},
      {"\x81", u"\x30FB"},
      {"\x8F\xB0\xA1"
       "A",
       u"\x30FB"
       u"A"},
      {"\x8F\xB0", u"\x30FB\x30FB"},
  };
  for (const auto& [bytes, units] : kRows) {
    EXPECT_EQ(units, Decode(51932, bytes));
    EXPECT_EQ(u"", Decode(51932, bytes, kMbErrInvalidChars));
    EXPECT_EQ(kErrorNoUnicodeTranslation, GetLastError());
  }
  EXPECT_EQ(std::u16string(u"\x30FB\0", 2), Decode(51932, std::string_view("\xC5\0", 2)));
}

// What lies behind the count must not be looked at, even where it would complete a character.
TEST(DerivedPages, TextEndsAtItsCount) {
  struct Row {
    std::uint32_t page;
    std::string_view whole;
    std::size_t count;
    std::u16string_view units;
  };
  static constexpr Row kRows[] = {
      {932, "\x82\xA0", 1, u"\x30FB"},
      {51932, "\xC5\xEC", 1, u"\x30FB"},
      {51932, "\x8F\xB0\xA1", 2, u"\x30FB\x30FB"},
      {50220, "\x1B$BEl", 4, u"\x30FB"},
      {50220, "\x1B$B", 2, u"\x1B$"},
      {50225,
       "\x0E"
       "0!",
       2, u"?"},
      {50225, "\x1B$)C", 3, u"\x1B$)"},
      {52936, "~{VP", 3, u"?"},
      {52936, "~~", 1, u"~"},
      {65000, "+-", 1, u""},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(row.units, Decode(row.page, row.whole.substr(0, row.count))) << row.page;
  }
}

// Units that the page and its table's page share, exactly, come back; katakana of 50220 apart.
struct DerivedRow {
  std::uint32_t page;
  std::uint32_t table_page;
  int units;
};

TEST(DerivedPages, ShareTheirTablesCharacters) {
  static constexpr DerivedRow kRows[] = {
      {50220, 932, 7516}, {50221, 932, 7516}, {50222, 932, 7516},
      {50225, 949, 8541}, {52936, 936, 8305}, {51932, 932, 7519},
  };
  for (const DerivedRow& row : kRows) {
    int units = 0;
    for (int number = 1; number <= 0xFFFF; ++number) {
      const char16_t unit = static_cast<char16_t>(number);
      std::int32_t replaced = 0;
      static_cast<void>(WideCharToMultiByte(row.table_page, kWcNoBestFitChars, &unit, 1, nullptr, 0,
                                            nullptr, &replaced));
      if (replaced != 0) continue;
      std::array<char, 16> bytes{};
      const std::int32_t count =
          WideCharToMultiByte(row.page, 0, &unit, 1, bytes.data(), 16, nullptr, &replaced);
      if (replaced != 0) continue;
      ++units;
      const bool is_shift = unit == 0x0E || unit == 0x0F;
      if (row.page == 50220 && unit >= 0xFF61 && unit <= 0xFF9F) continue;
      if (row.page != 51932 && row.page != 52936 && is_shift) continue;
      std::array<char16_t, 4> back{};
      ASSERT_EQ(1, MultiByteToWideChar(row.page, 0, bytes.data(), count, back.data(), 4))
          << row.page << " " << number;
      ASSERT_EQ(unit, back[0]) << row.page;
    }
    EXPECT_EQ(row.units, units) << row.page;
  }
}

}  // namespace
}  // namespace tamu::platform::testing
