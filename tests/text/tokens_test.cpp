#include "text/tokens.h"

#include <gtest/gtest.h>

#include <string>

namespace tamu {
namespace {

// A line as FileLine gives it, with two terminators, and what it is split into.
struct Split {
  explicit Split(const std::string& text) : line(text + std::string(2, '\0')) {
    value = LINE_Split(name, params, line.data());
  }
  std::string line;
  char name[kNameSize];
  char params[kParamsSize];
  const char* value;
};

TEST(LineSplit, NameParametersAndValue) {
  const Split split("TEL;HOME:123");
  EXPECT_STREQ(split.name, "TEL");
  EXPECT_STREQ(split.params, "HOME");
  EXPECT_STREQ(split.value, "123");
}

TEST(LineSplit, ParametersKeepTheirSeparators) {
  const Split split("ADR;TYPE=HOME;ENCODING=QUOTED-PRINTABLE:;;x:y;z");
  EXPECT_STREQ(split.params, "TYPE=HOME;ENCODING=QUOTED-PRINTABLE");
  EXPECT_STREQ(split.value, ";;x:y;z");
}

TEST(LineSplit, WithoutParametersTheirTextIsEmpty) {
  const Split split("N:a;b");
  EXPECT_STREQ(split.name, "N");
  EXPECT_STREQ(split.params, "");
  EXPECT_STREQ(split.value, "a;b");
}

TEST(LineSplit, WithoutAColonTheValueLiesPastTheEndAndIsEmpty) {
  const Split split("TEL");
  EXPECT_STREQ(split.name, "TEL");
  EXPECT_EQ(split.value, split.line.data() + 4);
  EXPECT_STREQ(split.value, "");
  const Split with_params("TEL;HOME");
  EXPECT_STREQ(with_params.params, "HOME");
  EXPECT_EQ(with_params.value, with_params.line.data() + 9);
}

TEST(LineSplit, LongNamesAndParametersAreCutAndTheValueIsFound) {
  const Split split(std::string(100, 'N') + ";" + std::string(200, 'P') + ":value");
  EXPECT_EQ(split.name, std::string(51, 'N'));
  EXPECT_EQ(split.params, std::string(127, 'P'));
  EXPECT_STREQ(split.value, "value");
}

TEST(LineSplit, AnEscapedSemicolonEndsNoName) {
  const Split split("A\\;B;C:d");
  EXPECT_STREQ(split.name, "A\\;B");
  EXPECT_STREQ(split.params, "C");
}

std::string Stripped(std::string text) { return LINE_StripBlanks(text.data()); }

TEST(LineStripBlanks, EverySpaceAndTabGoes) {
  EXPECT_EQ(Stripped("X - IRMC\t-\tLUID "), "X-IRMC-LUID");
  EXPECT_EQ(Stripped(" \t"), "");
  EXPECT_EQ(Stripped(""), "");
}

TEST(LineTrimLeadingBlanks, OnlyTheFirstOnesGo) {
  std::string text = " \tD T ";
  EXPECT_STREQ(LINE_TrimLeadingBlanks(text.data()), "D T ");
}

TEST(LineCopyToken, EscapePairsAreCopiedWholeAndEndNothing) {
  char out[20];
  const char* const text = R"(a\;b\\;c)";
  const char* const end = LINE_CopyToken(out, sizeof out, text, ";");
  EXPECT_STREQ(out, R"(a\;b\\)");
  EXPECT_EQ(end, text + 6);
}

TEST(LineCopyToken, ABackslashBeforeAnythingElseIsOrdinary) {
  char out[20];
  const char* const text = R"(a\:b)";
  EXPECT_EQ(LINE_CopyToken(out, sizeof out, text, ":"), text + 2);
  EXPECT_STREQ(out, "a\\");
}

TEST(LineCopyToken, WhatDoesNotFitIsSkippedUpToTheDelimiter) {
  char out[4];
  const char* const text = "abcdef:x";
  EXPECT_EQ(LINE_CopyToken(out, sizeof out, text, ":"), text + 6);
  EXPECT_STREQ(out, "abc");
}

TEST(StrCopyUnescaped, EscapePairsLoseTheirBackslash) {
  char out[20];
  const char* const text = R"(a\;b\\c\nd:e)";
  EXPECT_EQ(STR_CopyUnescaped(out, sizeof out, text, ":"), text + 10);
  EXPECT_STREQ(out, R"(a;b\c\nd)");
}

TEST(StrCopyUnescaped, WithoutDelimitersAllIsCopied) {
  char out[20];
  STR_CopyUnescaped(out, sizeof out, "a;b:c", "");
  EXPECT_STREQ(out, "a;b:c");
}

TEST(StrCopyBounded, ShortTextsArePaddedWithZeros) {
  char out[6] = {'#', '#', '#', '#', '#', '#'};
  STR_CopyBounded(out, "ab", 4);
  EXPECT_EQ(std::string(out, 6), std::string("ab\0\0\0#", 6));
}

TEST(StrCopyBounded, LongTextsAreCutAndTerminated) {
  char out[6] = {'#', '#', '#', '#', '#', '#'};
  STR_CopyBounded(out, "abcdef", 4);
  EXPECT_EQ(std::string(out, 6), std::string("abcd\0#", 6));
}

TEST(StrCopyField, AFullFieldHasNoTerminator) {
  char field[3];
  STR_CopyField(field, "abcdef");
  EXPECT_EQ(std::string(field, 3), "abc");
  STR_CopyField(field, "x");
  EXPECT_EQ(std::string(field, 3), std::string("x\0\0", 3));
}

TEST(StrNextToken, TokensAreCutAtUnescapedSeparators) {
  std::string text = R"(a;b\;c;;d)";
  char* cursor = text.data();
  EXPECT_STREQ(STR_NextToken(&cursor, ";"), "a");
  EXPECT_STREQ(STR_NextToken(&cursor, ";"), R"(b\;c)");
  EXPECT_STREQ(STR_NextToken(&cursor, ";"), "");
  EXPECT_STREQ(STR_NextToken(&cursor, ";"), "d");
  EXPECT_EQ(cursor, nullptr);
  EXPECT_EQ(STR_NextToken(&cursor, ";"), nullptr);
}

TEST(StrNextToken, ABackslashTakesAnyCharacterAlongButTheTerminator) {
  std::string text = "a\\x;b\\";
  char* cursor = text.data();
  EXPECT_STREQ(STR_NextToken(&cursor, ";"), "a\\x");
  EXPECT_STREQ(STR_NextToken(&cursor, ";"), "b\\");
  EXPECT_EQ(cursor, nullptr);
}

}  // namespace
}  // namespace tamu
