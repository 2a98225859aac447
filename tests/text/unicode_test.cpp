#include "text/unicode.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace tamu {
namespace {

constexpr char32_t kLastCodePoint = 0x10FFFF;

// The lines of a data file that are no comments.
std::vector<std::string> DataLines(const std::string& name) {
  std::ifstream file(std::string(TAMU_TEST_DATA) + "/unicode/" + name);
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with('#')) lines.push_back(line);
  }
  return lines;
}

TEST(UnicodeFold, EveryCharacterFoldsAsAnotherImplementationFoldsIt) {
  std::map<char32_t, char32_t> expected;
  for (const std::string& line : DataLines("simple_folding.txt")) {
    std::istringstream fields(line);
    std::uint32_t from = 0;
    std::uint32_t to = 0;
    fields >> std::hex >> from >> to;
    expected[from] = to;
  }
  ASSERT_GT(expected.size(), 1300U);
  for (char32_t code = U'A'; code <= U'Z'; ++code) expected[code] = code + 32;
  for (char32_t code = 0; code <= kLastCodePoint; ++code) {
    const auto found = expected.find(code);
    const char32_t folded = found == expected.end() ? code : found->second;
    ASSERT_EQ(UNICODE_Fold(code), folded) << std::hex << static_cast<std::uint32_t>(code);
  }
}

TEST(UnicodeFold, FoldedCharactersStayAndKeepTheirPlane) {
  for (char32_t code = 0; code <= kLastCodePoint; ++code) {
    const char32_t folded = UNICODE_Fold(code);
    ASSERT_EQ(UNICODE_Fold(folded), folded);
    ASSERT_EQ(folded < 0x10000, code < 0x10000);
  }
}

TEST(UnicodeFold, LettersWithRulesOfTheirOwn) {
  EXPECT_EQ(UNICODE_Fold(U'I'), U'i');
  EXPECT_EQ(UNICODE_Fold(0x130), 0x130U);  // I with dot above
  EXPECT_EQ(UNICODE_Fold(0x131), 0x131U);  // dotless i
  EXPECT_EQ(UNICODE_Fold(0xDF), 0xDFU);    // sharp s
  EXPECT_EQ(UNICODE_Fold(0x1E9E), 0xDFU);
  EXPECT_EQ(UNICODE_Fold(0x3C2), 0x3C3U);  // final sigma
  EXPECT_EQ(UNICODE_Fold(0x3A3), 0x3C3U);
  EXPECT_EQ(UNICODE_Fold(0x212A), U'k');  // Kelvin sign
  EXPECT_EQ(UNICODE_Fold(0x17F), U's');   // long s
  EXPECT_EQ(UNICODE_Fold(0x13A0), 0x13A0U);
  EXPECT_EQ(UNICODE_Fold(0xAB70), 0x13A0U);  // small Cherokee folds to capital
  EXPECT_EQ(UNICODE_Fold(0x10400), 0x10428U);
  EXPECT_EQ(UNICODE_Fold(0xFFFFFFFF), 0xFFFFFFFFU);
  EXPECT_EQ(UNICODE_Fold(0x110041), 0x110041U);
}

TEST(UnicodeFold, TheLocaleDoesNotMatter) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  for (const char* locale : {"tr_TR.UTF-8", "C", "C.UTF-8"}) {
    std::setlocale(LC_ALL, locale);  // when it is there
    EXPECT_EQ(UNICODE_Fold(U'I'), U'i');
    EXPECT_EQ(UNICODE_Fold(0xC4), 0xE4U);
    EXPECT_TRUE(UNICODE_IsPrintable(0xE4));
  }
  std::setlocale(LC_ALL, before.c_str());
}

TEST(UnicodeFoldText, FoldsPairsAndLeavesLoneSurrogates) {
  EXPECT_EQ(UNICODE_FoldText(u""), u"");
  EXPECT_EQ(UNICODE_FoldText(u"Grüße AN Ödön"), u"grüße an ödön");
  EXPECT_EQ(UNICODE_FoldText(u"ΣΊΣΥΦΟΣ"), UNICODE_FoldText(u"Σίσυφος"));
  EXPECT_EQ(UNICODE_FoldText(u"ПРИВЕТ"), u"привет");
  EXPECT_EQ(UNICODE_FoldText(u"A\U00010400\U00010427Z"), u"a\U00010428\U0001044Fz");
  EXPECT_EQ(UNICODE_FoldText(u"\U0001F600"), u"\U0001F600");
  const std::u16string lone = {0xDC00, u'A', 0xD801, u'B', 0xD801, 0xD801, 0xDC00, 0xD801};
  const std::u16string folded = {0xDC00, u'a', 0xD801, u'b', 0xD801, 0xD801, 0xDC28, 0xD801};
  EXPECT_EQ(UNICODE_FoldText(lone), folded);
}

TEST(UnicodeIsPrintable, EveryCharacterIsWhatAnotherImplementationSays) {
  std::size_t checked = 0;
  for (const std::string& line : DataLines("printable.txt")) {
    std::istringstream fields(line);
    std::uint32_t first = 0;
    std::uint32_t last = 0;
    char kind = 0;
    fields >> std::hex >> first >> last >> kind;
    for (std::uint32_t code = first; code <= last; ++code, ++checked) {
      ASSERT_EQ(UNICODE_IsPrintable(code), kind == 'p') << std::hex << code;
    }
  }
  EXPECT_GT(checked, 280000U);
}

TEST(UnicodeIsPrintable, WhatTitlesAreMadeOf) {
  for (const char32_t code : U" aZ0~éЖ漢한€’…\u00A0\u3000\u0301\uFE0F\u200D\u200C\U0001F600") {
    if (code != 0) {
      EXPECT_TRUE(UNICODE_IsPrintable(code)) << std::hex << static_cast<std::uint32_t>(code);
    }
  }
  EXPECT_TRUE(UNICODE_IsPrintable(0xE0067));  // a letter of an emoji flag
  EXPECT_TRUE(UNICODE_IsPrintable(0x600));    // encloses an Arabic number
  EXPECT_TRUE(UNICODE_IsPrintable(0x1FAFF));  // kept for an emoji to come
}

TEST(UnicodeIsPrintable, WhatTitlesLeaveOut) {
  for (const char32_t code : {U'\0', U'\t', U'\n', U'\r', U'\x1F', U'\x7F', U'\x85', U'\x9F'}) {
    EXPECT_FALSE(UNICODE_IsPrintable(code)) << std::hex << static_cast<std::uint32_t>(code);
  }
  for (const std::uint32_t code :
       {0xADU, 0x200BU, 0x200EU, 0x2028U, 0x2029U, 0x202EU, 0x2066U, 0xD800U, 0xDFFFU, 0xE000U,
        0xFEFFU, 0xFFFEU, 0xFFFFU, 0x378U, 0xF0000U, 0x10FFFFU, 0x110000U, 0xFFFFFFFFU}) {
    EXPECT_FALSE(UNICODE_IsPrintable(code)) << std::hex << static_cast<std::uint32_t>(code);
  }
}

}  // namespace
}  // namespace tamu
