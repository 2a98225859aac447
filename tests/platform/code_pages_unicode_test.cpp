// UTF-8 with all kinds of malformed text, and UTF-7.
#include <array>
#include <cstdio>

#include "platform/code_pages_support.h"

namespace tamu::platform::testing {
namespace {

struct MalformedRow {
  std::string_view bytes;
  std::u16string_view units;
};

TEST(Utf8, MalformedSequencesBecomeReplacementUnits) {
  static constexpr MalformedRow kRows[] = {
      {"\x80", u"\xFFFD"},
      {"\xBF", u"\xFFFD"},
      {"\xC0", u"\xFFFD"},
      {"\xFE", u"\xFFFD"},
      {"\xFF", u"\xFFFD"},
      {"\xE2", u"\xFFFD"},
      {"\xE2\x82", u"\xFFFD"},
      {"\xF0\x9F", u"\xFFFD"},
      {"\xF0\x9F\x98", u"\xFFFD"},
      {"\xC0\x80", u"\xFFFD\xFFFD"},
      {"\xC1\xBF", u"\xFFFD\xFFFD"},
      {"\xC2\x41",
       u"\xFFFD"
       u"A"},
      {"\xE2\x82\x41",
       u"\xFFFD"
       u"A"},
      {"\xE2\x28\xA1", u"\xFFFD(\xFFFD"},
      {"\xF0\x9F\x98\x41",
       u"\xFFFD"
       u"A"},
      {"\xE0\x80\x80", u"\xFFFD\xFFFD"},
      {"\xE0\x9F\xBF", u"\xFFFD\xFFFD"},
      {"\xED\xA0\x80", u"\xFFFD\xFFFD"},
      {"\xED\xA0\xBD\xED\xB8\x80", u"\xFFFD\xFFFD\xFFFD\xFFFD"},
      {"\xF0\x80\x80\x80", u"\xFFFD\xFFFD\xFFFD"},
      {"\xF0\x8F\xBF\xBF", u"\xFFFD\xFFFD\xFFFD"},
      {"\xF4\x90\x80\x80", u"\xFFFD\xFFFD\xFFFD"},
      {"\xF5\x80\x80\x80", u"\xFFFD\xFFFD\xFFFD\xFFFD"},
      {"\xF8\x88\x80\x80\x80", u"\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD"},
      // A tail that is cut off loses nothing of what follows it.
      {"\xE2\x41",
       u"\xFFFD"
       u"A"},
      {"\x41\xE4\x42",
       u"A\xFFFD"
       u"B"},
      {"\xF0\x41\x42",
       u"\xFFFD"
       u"AB"},
      {"\xF0\x9F\x42",
       u"\xFFFD"
       u"B"},
  };
  for (const MalformedRow& row : kRows) {
    EXPECT_EQ(row.units, Decode(65001, row.bytes)) << ::testing::PrintToString(row.bytes);
    SetLastError(kUntouched);
    EXPECT_EQ(u"", Decode(65001, row.bytes, kMbErrInvalidChars));
    EXPECT_EQ(kErrorNoUnicodeTranslation, GetLastError());
  }
}

// What lies behind the count must not be looked at, even where it would complete a character.
TEST(Utf8, TextEndsAtItsCount) {
  static constexpr std::string_view kWhole[] = {"\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"};
  for (const std::string_view whole : kWhole) {
    for (std::size_t count = 1; count < whole.size(); ++count) {
      EXPECT_EQ(u"\xFFFD", Decode(65001, whole.substr(0, count)));
    }
  }
  EXPECT_EQ("\xEF\xBF\xBD", Encode(65001, std::u16string_view(u"\xD83D\xDE00", 1)));
}

TEST(Utf8, KeepsNoncharactersAndByteOrderMarks) {
  EXPECT_EQ(u"\xFFFE\xFFFF\xFEFF", Decode(65001, "\xEF\xBF\xBE\xEF\xBF\xBF\xEF\xBB\xBF"));
}

TEST(Utf8, BordersOfEveryLength) {
  static constexpr MalformedRow kRows[] = {
      {"\x7F", u"\x7F"},
      {"\xC2\x80", u"\x80"},
      {"\xDF\xBF", u"\x07FF"},
      {"\xE0\xA0\x80", u"\x0800"},
      {"\xED\x9F\xBF", u"\xD7FF"},
      {"\xEE\x80\x80", u"\xE000"},
      {"\xF0\x90\x80\x80", u"\xD800\xDC00"},
      {"\xF0\x9F\x98\x80", u"\xD83D\xDE00"},
      {"\xF4\x8F\xBF\xBF", u"\xDBFF\xDFFF"},
  };
  for (const MalformedRow& row : kRows) {
    EXPECT_EQ(row.units, Decode(65001, row.bytes, kMbErrInvalidChars));
    EXPECT_EQ(row.bytes, Encode(65001, row.units, kWcErrInvalidChars));
  }
}

TEST(Utf8, EveryUnitThatIsNoSurrogateRoundTrips) {
  int wrong = 0;
  for (int unit = 0; unit <= 0xFFFF; ++unit) {
    const char16_t text = static_cast<char16_t>(unit);
    std::array<char, 4> bytes{};
    char16_t back = 0;
    const std::int32_t count =
        WideCharToMultiByte(65001, 0, &text, 1, bytes.data(), 4, nullptr, nullptr);
    const std::int32_t units = MultiByteToWideChar(65001, 0, bytes.data(), count, &back, 1);
    const char16_t expected = unit >= 0xD800 && unit < 0xE000 ? u'\xFFFD' : text;
    if (units != 1 || back != expected) ++wrong;
  }
  EXPECT_EQ(0, wrong);
}

TEST(Utf8, LoneSurrogatesBecomeReplacementsOrFail) {
  EXPECT_EQ("\xEF\xBF\xBD", Encode(65001, u"\xD800"));
  EXPECT_EQ("a\xEF\xBF\xBD\xEF\xBF\xBDz", Encode(65001, u"a\xDC00\xD800z"));
  EXPECT_EQ("\xEF\xBF\xBD\xF0\x90\x80\x80", Encode(65001, u"\xD800\xD800\xDC00"));
  EXPECT_EQ("", Encode(65001, u"\xD800", kWcErrInvalidChars));
  EXPECT_EQ(kErrorNoUnicodeTranslation, GetLastError());
}

TEST(Utf8, StrictWritesAllTheSame) {
  char16_t units[4] = {u'#', u'#', u'#', u'#'};
  SetLastError(kUntouched);
  EXPECT_EQ(0, MultiByteToWideChar(65001, kMbErrInvalidChars, "a\xFFz", 3, units, 4));
  EXPECT_EQ(kErrorNoUnicodeTranslation, GetLastError());
  EXPECT_EQ(u"a\xFFFDz#", std::u16string(units, 4));
}

TEST(Utf8, ShortBufferOutranksMalformedText) {
  char16_t units[2] = {};
  SetLastError(kUntouched);
  EXPECT_EQ(0, MultiByteToWideChar(65001, kMbErrInvalidChars, "a\xFFz", 3, units, 2));
  EXPECT_EQ(kErrorInsufficientBuffer, GetLastError());
  EXPECT_EQ(u"a\xFFFD", std::u16string(units, 2));
}

TEST(Utf8, PairThatDoesNotFitIsNotBegun) {
  char16_t units[4] = {u'#', u'#', u'#', u'#'};
  SetLastError(kUntouched);
  EXPECT_EQ(0, MultiByteToWideChar(65001, 0, "ab\xF0\x9F\x98\x80", 6, units, 3));
  EXPECT_EQ(kErrorInsufficientBuffer, GetLastError());
  EXPECT_EQ(u"ab##", std::u16string(units, 4));
}

TEST(Utf8, CharacterThatDoesNotFitIsNotBegun) {
  char bytes[4] = {'#', '#', '#', '#'};
  SetLastError(kUntouched);
  EXPECT_EQ(0, WideCharToMultiByte(65001, 0,
                                   u"a\x20AC"
                                   u"b",
                                   3, bytes, 3, nullptr, nullptr));
  EXPECT_EQ(kErrorInsufficientBuffer, GetLastError());
  EXPECT_EQ("a###", std::string(bytes, 4));
}

TEST(Utf8, LongAsciiAroundOtherCharacters) {
  std::string bytes;
  std::u16string units;
  for (std::size_t length = 0; length < 40; ++length) {
    bytes.append(length, 'x').append("\xC3\xA4");
    units.append(length, u'x').append(u"\x00E4");
  }
  EXPECT_EQ(units, Decode(65001, bytes));
  EXPECT_EQ(bytes, Encode(65001, units));
}

TEST(Utf7, EncodesEverythingThatIsOptional) {
  EXPECT_EQ("+T2BZfVQX-", Encode(65000, u"\x4F60\x597D\x5417"));
  EXPECT_EQ("+-", Encode(65000, u"+"));
  EXPECT_EQ("+ACE-", Encode(65000, u"!"));
  EXPECT_EQ(" +AH4- ", Encode(65000, u" ~ "));
  EXPECT_EQ("'(),-./:?\t\r\n", Encode(65000, u"'(),-./:?\t\r\n"));
  EXPECT_EQ(std::string("a\0b", 3), Encode(65000, std::u16string_view(u"a\0b", 3)));
}

TEST(Utf7, AlwaysClosesARun) {
  EXPECT_EQ("+JnI-a+JnI-", Encode(65000,
                                  u"\x2672"
                                  u"a\x2672"));
  EXPECT_EQ("+JnI--+JnI-", Encode(65000, u"\x2672-\x2672"));
  EXPECT_EQ("+JnI-+-+JnI-", Encode(65000, u"\x2672+\x2672"));
  EXPECT_EQ("+JnIAISZy-", Encode(65000, u"\x2672!\x2672"));
}

TEST(Utf7, SurrogatesAreUnitsLikeOthers) {
  EXPECT_EQ("+2AE-", Encode(65000, u"\xD801"));
  EXPECT_EQ("+2D3eAA-", Encode(65000, u"\xD83D\xDE00"));
  EXPECT_EQ(u"\xD801", Decode(65000, "+2AE-"));
  EXPECT_EQ(u"\xD83D\xDE00", Decode(65000, "+2D3eAA-"));
}

TEST(Utf7, EveryUnitRoundTrips) {
  int wrong = 0;
  for (int unit = 0; unit <= 0xFFFF; ++unit) {
    const std::u16string text = {u'\x2672', static_cast<char16_t>(unit), u'a'};
    std::array<char, 16> bytes{};
    std::array<char16_t, 4> back{};
    const std::int32_t count =
        WideCharToMultiByte(65000, 0, text.data(), 3, bytes.data(), 16, nullptr, nullptr);
    const std::int32_t units = MultiByteToWideChar(65000, 0, bytes.data(), count, back.data(), 4);
    if (units != 3 || text != std::u16string_view(back.data(), 3)) ++wrong;
  }
  EXPECT_EQ(0, wrong);
}

TEST(Utf7, DropsBitsThatMakeNoUnit) {
  EXPECT_EQ(u"hello", Decode(65000, "+T-+T-+T-hello"));
  EXPECT_EQ(u"hello", Decode(65000, "+T2-+T2-+T2-hello"));
  EXPECT_EQ(u"\x4F60\x4F60hello", Decode(65000, "+T2B-+T2BZ-hello"));
  EXPECT_EQ(u"\x4F60", Decode(65000, "+T2BZ"));
}

TEST(Utf7, RunEndsAtAnyOtherCharacter) {
  EXPECT_EQ(u"!", Decode(65000, "+!"));
  EXPECT_EQ(u"\x4F60!", Decode(65000, "+T2A!"));
  EXPECT_EQ(std::u16string(u"\x4F60\0", 2), Decode(65000, std::string_view("+T2A\0", 5)));
  EXPECT_EQ(u"+-", Decode(65000, "+--"));
}

TEST(Utf7, EightBitBytesPassThrough) {
  EXPECT_EQ(u"\x4F60\x82\xFE", Decode(65000, "+T2BZ-\x82\xFE"));
  EXPECT_EQ(u"\xFF\x0400", Decode(65000, "+B\xFF+AAA"));  // bits that outlive the run
}

TEST(Utf7, NothingIsARightResult) {
  char16_t unit = u'#';
  SetLastError(kUntouched);
  EXPECT_EQ(0, MultiByteToWideChar(65000, 0, "+", 1, &unit, 1));
  EXPECT_EQ(kUntouched, GetLastError());
  EXPECT_EQ(u'#', unit);
}

TEST(Utf7, ShortBuffersHoldWhatFits) {
  struct Row {
    std::u16string_view units;
    std::int32_t capacity;
    std::string_view bytes;
  };
  static constexpr Row kRows[] = {
      {u"hello", 2, "he"},          {u"\x4F60\x0001", 1, "+"},
      {u"\x4F60\x0001", 2, "+T"},   {u"\x4F60\x0001", 3, "+T2"},
      {u"\x4F60\x0001", 4, "+T2A"}, {u"\x4F60\x597D\x5417", 9, "+T2BZfVQX"},
      {u"\x4F60", 4, "+T2"},        {u"+", 1, "+"},
  };
  for (const Row& row : kRows) {
    std::array<char, 16> bytes{};
    bytes.fill('#');
    SetLastError(kUntouched);
    EXPECT_EQ(0, WideCharToMultiByte(65000, 0, row.units.data(), Size(row.units.size()),
                                     bytes.data(), row.capacity, nullptr, nullptr));
    EXPECT_EQ(kErrorInsufficientBuffer, GetLastError());
    EXPECT_EQ(row.bytes, std::string_view(bytes.data(), row.bytes.size()));
    EXPECT_EQ('#', bytes[row.bytes.size()]);
  }
}

}  // namespace
}  // namespace tamu::platform::testing
