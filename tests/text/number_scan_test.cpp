#include "text/number_scan.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <random>
#include <string>

namespace tamu {
namespace {

constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();

TEST(StrToNumber, ReadsBlanksASignAndDigits) {
  EXPECT_EQ(STR_ToNumber("12"), 12);
  EXPECT_EQ(STR_ToNumber(" \t\n\v\f\r+12x"), 12);
  EXPECT_EQ(STR_ToNumber("-7"), -7);
  EXPECT_EQ(STR_ToNumber("007"), 7);
}

TEST(StrToNumber, WithoutDigitsItIs0) {
  for (const char* text : {"", "x1", "-", "+-1", "- 1", " "}) EXPECT_EQ(STR_ToNumber(text), 0);
}

TEST(StrToNumber, StopsAt32Bits) {
  EXPECT_EQ(STR_ToNumber("2147483647"), kLargest);
  EXPECT_EQ(STR_ToNumber("2147483648"), kLargest);
  EXPECT_EQ(STR_ToNumber("99999999999999999999999"), kLargest);
  EXPECT_EQ(STR_ToNumber("-2147483648"), kSmallest);
  EXPECT_EQ(STR_ToNumber("-99999999999999999999999"), kSmallest);
}

TEST(StrIsNumber, IsDigitsOnlyAndAtLeastOne) {
  EXPECT_TRUE(STR_IsNumber("0"));
  EXPECT_TRUE(STR_IsNumber("0123456789"));
  for (const char* text : {"", "+1", "-1", " 1", "1 ", "1a", "\xB2"}) {
    EXPECT_FALSE(STR_IsNumber(text)) << text;
  }
}

TEST(TextScanNumber, TakesNoMoreThanItsWidthAfterBlanks) {
  TextScan scan("20031231  7 -5+45");
  std::int32_t number = 0;
  for (const std::int32_t expected : {2003, 12, 31, 7, -5, 4, 5}) {
    ASSERT_TRUE(scan.Number(&number, expected == 2003 ? 4 : 2));
    EXPECT_EQ(number, expected);
  }
  EXPECT_FALSE(scan.Number(&number));
  EXPECT_EQ(number, 5);
}

TEST(TextScanNumber, ASignNeedsADigitWithinTheWidth) {
  std::int32_t number = 77;
  for (const char* text : {"-12", "+12", "--1", "x", ""}) {
    TextScan scan(text);
    EXPECT_FALSE(scan.Number(&number, 1)) << text;
  }
  EXPECT_EQ(number, 77);
}

TEST(TextScanWord, EndsAtABlankOrAtItsWidth) {
  TextScan scan(" \tDec 31Jan");
  std::string_view word;
  for (const char* expected : {"Dec", "31J", "an"}) {
    ASSERT_TRUE(scan.Word(&word, 3));
    EXPECT_EQ(word, expected);
  }
  EXPECT_FALSE(scan.Word(&word, 3));
  TextScan blanks(" \n");
  EXPECT_FALSE(blanks.Word(&word));
}

TEST(TextScanCharacter, IsWhateverComesNext) {
  TextScan scan(" T");
  char character = 0;
  ASSERT_TRUE(scan.Character(&character));
  EXPECT_EQ(character, ' ');
  ASSERT_TRUE(scan.Character(&character));
  EXPECT_EQ(character, 'T');
  EXPECT_FALSE(scan.Character(&character));
}

TEST(TextScanLiteral, MustComeNextWithoutBlanks) {
  TextScan scan("- -");
  EXPECT_FALSE(scan.Literal(':'));
  EXPECT_TRUE(scan.Literal('-'));
  EXPECT_FALSE(scan.Literal('-'));
}

// The C library, asked in the "C" locale that test programs start in.
TEST(TextScan, AgreesWithTheCLibrary) {
  std::mt19937 random(7);
  const std::string alphabet = "0123456789 +-T:Z\tx";
  for (int i = 0; i < 20000; ++i) {
    std::string text;
    for (std::size_t length = random() % 20; length != 0; --length) {
      text += alphabet[random() % alphabet.size()];
    }
    int year = -1, month = -1, day = -1;
    char separator = '?';
    const int count = std::sscanf(text.c_str(), "%4d-%2d%2d%c", &year, &month, &day, &separator);
    std::int32_t own_year = -1, own_month = -1, own_day = -1;
    char own_separator = '?';
    TextScan scan(text.c_str());
    int own_count = 0;
    if (scan.Number(&own_year, 4) && ++own_count && scan.Literal('-') &&
        scan.Number(&own_month, 2) && ++own_count && scan.Number(&own_day, 2) && ++own_count &&
        scan.Character(&own_separator)) {
      ++own_count;
    }
    ASSERT_EQ(own_count, std::max(count, 0)) << text;
    ASSERT_EQ(own_year, year) << text;
    ASSERT_EQ(own_month, month) << text;
    ASSERT_EQ(own_day, day) << text;
    ASSERT_EQ(own_separator, separator) << text;
  }
}

}  // namespace
}  // namespace tamu
