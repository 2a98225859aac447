#include "text/quoted_printable.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace tamu {
namespace {

std::string Encoded(std::string_view text) {
  std::string out(QP_Encode(text, nullptr, 0) + 1, '#');
  EXPECT_EQ(QP_Encode(text, out.data(), out.size()), out.size() - 1);
  EXPECT_EQ(out.back(), '\0');
  out.pop_back();
  return out;
}
std::string Decoded(std::string_view text) {
  std::string out(QP_Decode(text, nullptr, 0) + 1, '#');
  EXPECT_EQ(QP_Decode(text, out.data(), out.size()), out.size() - 1);
  EXPECT_EQ(out.back(), '\0');
  out.pop_back();
  return out;
}

TEST(QpEncode, SpecialAndNonAsciiBytesBecomeCodes) {
  EXPECT_EQ(Encoded("M\xC3\xBCller"), "M=C3=BCller");
  EXPECT_EQ(Encoded("a\\;b"), "a=5C=3Bb");
  EXPECT_EQ(Encoded("=:"), "=3D=3A");
  EXPECT_EQ(Encoded("1\r\n2"), "1=0D=0A2");
  EXPECT_EQ(Encoded("\x7F\xFF\x01"), "=7F=FF=01");
}

TEST(QpEncode, SpacesAndTabsStayAlsoAtTheEnd) { EXPECT_EQ(Encoded(" a\tb \t"), " a\tb \t"); }

TEST(QpEncode, EveryOtherPrintableCharacterStays) {
  for (char character = 33; character < 127; ++character) {
    const bool special = std::string_view("=:;\\").find(character) != std::string_view::npos;
    EXPECT_EQ(Encoded(std::string(1, character)).size(), special ? 3U : 1U) << character;
  }
}

TEST(QpEncode, NothingIsWrittenAfterTheFirstCodeThatDoesNotFit) {
  std::string out(8, '#');
  EXPECT_EQ(QP_Encode("ab\xFF"
                      "cd",
                      out.data(), 5),
            7U);
  EXPECT_EQ(out, std::string("ab\0#####", 8));
  EXPECT_EQ(QP_Encode("ab", out.data(), 0), 2U);
}

TEST(QpDecode, CodesOfEitherCase) { EXPECT_EQ(Decoded("=41=4a=4A"), "AJJ"); }

TEST(QpDecode, ACharacterThatIsNoDigitCountsAsMinusOne) {
  EXPECT_EQ(Decoded("=ZZ"), "\xEF");
  EXPECT_EQ(Decoded("=G5"), "\xF5");
  EXPECT_EQ(Decoded("=4Z"), "\x3F");
}

TEST(QpDecode, AnEqualsSignAmongTheLastTwoCharactersIsCopied) {
  EXPECT_EQ(Decoded("a=4"), "a=4");
  EXPECT_EQ(Decoded("a="), "a=");
  EXPECT_EQ(Decoded("=="), "==");
}

TEST(QpDecode, WhatDoesNotFitIsCountedAndNotWritten) {
  std::string out(4, '#');
  EXPECT_EQ(QP_Decode("=41=42=43=44", out.data(), 3), 4U);
  EXPECT_EQ(out, std::string("AB\0#", 4));
}

TEST(QpDecode, UndoesTheEncoding) {
  std::mt19937 random(7);
  for (int round = 0; round < 300; ++round) {
    std::string text(random() % 60, '\0');
    for (char& character : text) character = static_cast<char>(random());
    EXPECT_EQ(Decoded(Encoded(text)), text);
  }
}

}  // namespace
}  // namespace tamu
