#include "device/ink/ink_decoder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "device/ink/ink_document.h"
#include "device/ink/ink_encoder.h"
#include "device/ink/ink_stream.h"
#include "platform/code_pages.h"
#include "platform/test_folder.h"

namespace tamu::device {
namespace {

const Bytes kStart = {0xE5, 1, 0, 0xE6, 10, 0};
const Bytes kEnd = {0xC4, 0};

InkText DecodeStream(std::size_t characters, const Bytes& stream) {
  return INK_Decode(Header() + Fonts(1) + List({{1, 0x23}}) + Paragraph(0x23, characters, stream) +
                    End());
}

void ExpectText(const InkText& result, std::u16string_view text) {
  EXPECT_EQ(result.text, text);
  EXPECT_FALSE(result.damaged);
  EXPECT_EQ(result.source, InkSource::kDocument);
}

TEST(InkDecode, FontsAndFormattingLeaveTheText) {
  const Bytes stream = Bytes{0xE5, 2, 0, 0xE6, 14, 0, 0xE7, 4, 0, 0xE8, 7, 0} + AsBytes("bold") +
                       Bytes{0xE8, 4, 0, 0xE9, 1, 0xEA, 1} + AsBytes(" it") +
                       Bytes{0xE9, 0, 0xEA, 0, 0xEB, 1, 0xEB, 0, 0xEC, 1, 0xEC, 0} + AsBytes("!") +
                       kEnd;
  const InkText result =
      INK_Decode(Header() + Fonts(3) + List({{1, 0x23}}) + Paragraph(0x23, 9, stream) + End());
  ExpectText(result, u"bold it!");
}

TEST(InkDecode, DocumentsOfTheWordProcessorAreAlike) {
  const Bytes first = kStart + AsBytes("one") + kEnd;
  const Bytes last = kStart + AsBytes("two") + Bytes{0xE5, 1, 0, 0xE6, 0, 0} + kEnd;
  ExpectText(
      INK_Decode(Header() + Fonts(2) + List({{1, 0x23}, {1, 0x25}}) +
                 Paragraph(0x23, 4, first, 0xFFFF) + Paragraph(0x25, 4, last, 0xFFFF) + End()),
      u"one\r\ntwo");
}

TEST(InkDecode, EveryCodeOfACharacterIsRead) {
  // 14-bit codes below U+0100, codes that look like commands, Latin-1 codes of ASCII.
  const Bytes stream =
      kStart + Bytes{0xA9, 0x03, 0x84, 0xC4, 0x80, 0xE5, 0xC1, 0x41, 0xC1, 0x00, 0xC0, 0x41, 0x00} +
      kEnd;
  ExpectText(DecodeStream(7, stream), std::u16string{0xE9, 0x3104, 0x3940, u'A', 0, u'A'});
}

TEST(InkDecode, TheListGivesTheOrder) {
  const Bytes blocks =
      PlainParagraph(0x99, "c") + PlainParagraph(0x23, "b") + PlainParagraph(0x50, "a");
  ExpectText(
      INK_Decode(Header() + Fonts(1) + List({{1, 0x50}, {1, 0x23}, {1, 0x99}}) + blocks + End()),
      u"a\r\nb\r\nc");
  // Also from behind.
  ExpectText(
      INK_Decode(Header() + Fonts(1) + blocks + List({{1, 0x50}, {1, 0x23}, {1, 0x99}}) + End()),
      u"a\r\nb\r\nc");
}

TEST(InkDecode, IdsThatRepeatMeanTheOrderOfTheFile) {
  ExpectText(INK_Decode(Header() + Fonts(1) + List({{1, 0x23}, {1, 0x23}, {1, 0x23}}) +
                        PlainParagraph(0x23, "a") + PlainParagraph(0x23, "b") +
                        PlainParagraph(0x23, "c") + End()),
             u"a\r\nb\r\nc");
}

TEST(InkDecode, BlankStretchesAreEmptyLines) {
  ExpectText(INK_Decode(Header() + Fonts(1) + List({{1, 0x23}, {2, 0}, {1, 0x25}, {0, 0}}) +
                        PlainParagraph(0x23, "a") + PlainParagraph(0x25, "b") + End()),
             u"a\r\n\r\n\r\nb");
  ExpectText(INK_Decode(Header() + Fonts(1) + List({{3, 0}}) + End()), u"\r\n\r\n");
}

TEST(InkDecode, BlankStretchesDoNotFillTheMemory) {
  const std::vector<ListEntry> entries(16000, ListEntry{0xFFFF, 0});
  const InkText result =
      INK_Decode(Header() + Fonts(1) + List(entries) + PlainParagraph(0x23, "a") + End());
  EXPECT_LE(result.text.size(), 10000U);
  EXPECT_TRUE(result.text.ends_with(u"\na"));
}

TEST(InkDecode, AListThatNamesOthersThanThereAreIsNotFollowed) {
  const Bytes blocks = PlainParagraph(0x23, "a") + PlainParagraph(0x25, "b");
  for (const std::vector<ListEntry>& entries :
       {std::vector<ListEntry>{{1, 0x25}, {1, 0x77}}, std::vector<ListEntry>{{1, 0x25}, {1, 0x25}},
        std::vector<ListEntry>{{1, 0x23}, {1, 0x25}, {1, 0x27}}, std::vector<ListEntry>{}}) {
    const InkText result = INK_Decode(Header() + Fonts(1) + List(entries) + blocks + End());
    EXPECT_EQ(result.text, u"a\r\nb");
  }
  const InkText without = INK_Decode(Header() + Fonts(1) + blocks + End());
  EXPECT_EQ(without.text, u"a\r\nb");
  EXPECT_TRUE(without.damaged);
}

TEST(InkDecode, WhatTheListForgotComesLast) {
  const InkText result = INK_Decode(Header() + Fonts(1) + List({{1, 0x25}}) +
                                    PlainParagraph(0x23, "a") + PlainParagraph(0x25, "b") + End());
  EXPECT_EQ(result.text, u"b\r\na");
  EXPECT_TRUE(result.damaged);
}

TEST(InkDecode, RecordingsAndDrawingsArePassedOver) {
  // The recording's length is counted in bytes, its high half stands in the place of the id; inside
  // stands what looks like a paragraph.
  const Bytes inner = PlainParagraph(0x27, "noise");
  const Bytes sound = inner + Bytes(0x10000 + 3 - inner.size(), 0x41);
  const Bytes blocks = Block(0x54, 0x31, Bytes(0x430, 0)) + U16(0x55) + U16(1) + U16(3) + sound;
  const InkText recording =
      INK_Decode(Header() + Fonts(1) + List({{1, 0x23}, {1, 0x25}}) +
                 Paragraph(0x23, 3, kStart + AsBytes("a") + Bytes{0xC5, 0x31, 0} + kEnd) + blocks +
                 PlainParagraph(0x25, "b") + End());
  ExpectText(recording, u"a\r\nb");
  EXPECT_TRUE(recording.objects);

  const InkText drawing =
      INK_Decode(Header() + Fonts(1) + List({{1, 0x23}}) + PlainParagraph(0x23, "a") +
                 Block(0x67, 0x40, Bytes(16, 7)) + Block(0x83, 0x41, Bytes(28, 0)) + End());
  ExpectText(drawing, u"a");
  EXPECT_TRUE(drawing.objects);

  const InkText word = DecodeStream(
      4, kStart + AsBytes("x") + Bytes{0xC2, 0x33, 0, 0xC3, 9, 0} + AsBytes("y") + kEnd);
  ExpectText(word, u"xy");
  EXPECT_TRUE(word.objects);
}

TEST(InkDecode, WhatIsNotUnderstoodIsPassedOverAndSaid) {
  struct Case {
    Bytes inside;
    std::u16string text;
  };
  const Case kCases[] = {
      {{0xD3}, u"ab"},                          // no such command
      {{0xC4, 0x19, 'x', 'y'}, u"ab"},          // controls with more behind them
      {{0xC4, 0x1B, 1, 2, 3, 4, 5, 6}, u"ab"},  //
      {{0xC4, 0x07}, u"ab"},                    //
      {{0x0A}, u"ab"},                          // controls do not stand alone
  };
  for (const Case& one : kCases) {
    const InkText result =
        DecodeStream(3, kStart + AsBytes("a") + one.inside + AsBytes("b") + kEnd);
    EXPECT_EQ(result.text, one.text);
    EXPECT_TRUE(result.damaged);
  }
  ExpectText(
      DecodeStream(3, kStart + AsBytes("a") + Bytes{0xEF, 'x', 'y', 'z'} + AsBytes("b") + kEnd),
      u"ab");
  ExpectText(DecodeStream(
                 3, kStart + AsBytes("a") + Bytes{0xF1, 1, 2, 3, 4, 5, 6, 7} + AsBytes("b") + kEnd),
             u"ab");
}

TEST(InkDecode, AWrongNumberOfCharactersIsSaid) {
  EXPECT_TRUE(DecodeStream(9, kStart + AsBytes("abc") + kEnd).damaged);
  EXPECT_EQ(DecodeStream(9, kStart + AsBytes("abc") + kEnd).text, u"abc");
}

TEST(InkDecode, AWrongStreamLengthDoesNotCutTheText) {
  Bytes paragraph = PlainParagraph(0x23, "whole");
  paragraph[6 + 2] = 8;  // of 13
  const InkText result = INK_Decode(Header() + Fonts(1) + List({{1, 0x23}}) + paragraph + End());
  EXPECT_EQ(result.text, u"whole");
  EXPECT_TRUE(result.damaged);
}

TEST(InkDecode, StylesAreNoContinuation) {
  // What a paragraph that goes on ends with, inside the text or not in one piece.
  const Bytes mark(std::begin(kInkContinues), std::end(kInkContinues));
  const Bytes inside = kStart + AsBytes("a") + mark + AsBytes("b") + kEnd;
  const Bytes half = kStart + AsBytes("c") + Bytes{0xEA, 0, 0xE9, 0, 0xEA, 0} + kEnd;
  const Bytes code = kStart + Bytes{0x80} + mark + kEnd;  // its first byte belongs to a character
  ExpectText(INK_Decode(Header() + Fonts(1) + List({{1, 0x23}, {1, 0x25}, {1, 0x27}}) +
                        Paragraph(0x23, 3, inside) + Paragraph(0x25, 2, half) +
                        PlainParagraph(0x27, "d") + End()),
             u"ab\r\nc\r\nd");
  const InkText shifted = INK_Decode(Header() + Fonts(1) + List({{1, 0x23}, {1, 0x25}}) +
                                     Paragraph(0x23, 2, code) + PlainParagraph(0x25, "d") + End());
  EXPECT_NE(shifted.text.find(u"\r\nd"), std::u16string::npos);
}

TEST(InkDecode, AContinuationThatIsMissingIsSaid) {
  const Bytes mark(std::begin(kInkContinues), std::end(kInkContinues));
  const InkText result = DecodeStream(2, kStart + AsBytes("a") + mark + kEnd);
  EXPECT_EQ(result.text, u"a");
  EXPECT_TRUE(result.damaged);
}

TEST(InkDecode, ADocumentThatIsCutGivesWhatIsThere) {
  const std::u16string text = u"first\r\nsecond\r\nthird";
  const Bytes document = INK_Encode(text);
  std::size_t longest = 0;
  for (std::size_t size = 5; size < document.size(); ++size) {
    // In a block without a byte to spare.
    const Bytes cut(document.begin(), document.begin() + static_cast<std::ptrdiff_t>(size));
    const InkText result = INK_Decode(cut);
    EXPECT_TRUE(text.starts_with(result.text)) << size;
    EXPECT_GE(result.text.size() + 3, longest) << size;  // what was there once stays there
    longest = std::max(longest, result.text.size());
    EXPECT_TRUE(result.damaged || result.text == text) << size;
  }
  EXPECT_EQ(longest, text.size());
}

TEST(InkDecode, ABrokenChainIsRescued) {
  const std::u16string text = u"first\r\nsecond\r\nthird \u4E2D";
  const Bytes document = INK_Encode(text);
  for (const std::size_t at : {14U + 4U, 14U + 5U, 0x96U}) {
    Bytes broken = document;
    broken[at] = static_cast<std::uint8_t>(broken[at] + 1);
    const InkText result = INK_Decode(broken);
    EXPECT_EQ(result.text, text) << at;
  }
  // The length of the first paragraph's block.
  const Bytes start(std::begin(kInkParagraphStart), std::end(kInkParagraphStart));
  const auto stream = std::search(document.begin(), document.end(), start.begin(), start.end());
  Bytes broken = document;
  broken[static_cast<std::size_t>(stream - document.begin()) - 0x18 - 2] = 0x77;
  const InkText result = INK_Decode(broken);
  EXPECT_EQ(result.text, text);
  EXPECT_TRUE(result.damaged);
}

TEST(InkDecode, ZerosAfterACrashAreSaid) {
  Bytes document = INK_Encode(u"first\r\nsecond");
  std::fill(document.begin() + 0x140, document.end(), std::uint8_t{0});
  EXPECT_TRUE(INK_Decode(document).damaged);
  const InkText zeros = INK_Decode(Bytes(512, 0));
  EXPECT_TRUE(zeros.damaged);
  EXPECT_EQ(zeros.text, u"");
  EXPECT_TRUE(INK_Decode(AsBytes("{\\pwi")).damaged);
  EXPECT_TRUE(INK_Decode(Header()).damaged);
}

TEST(InkDecode, AnyDamageIsSurvived) {
  std::mt19937 random(5489);
  const Bytes document = INK_Encode(u"Grüße\r\nПривет\r\n日本語\r\n" + std::u16string(300, u'x'));
  for (int round = 0; round < 20000; ++round) {
    Bytes broken = document;
    for (std::uint32_t changes = random() % 4 + 1; changes > 0; --changes) {
      broken[5 + random() % (broken.size() - 5)] = static_cast<std::uint8_t>(random());
    }
    broken.resize(broken.size() - (round % 3 == 0 ? random() % broken.size() / 2 : 0));
    broken.shrink_to_fit();
    const InkText result = INK_Decode(broken);
    ASSERT_LE(result.text.size(), broken.size() + 20000);
  }
}

TEST(InkDecode, PlainTextIsInTheDevicesCodePage) {
  const platform::TestDevice device;
  platform::WriteBytes(device.registry(),
                       "Windows Registry Editor Version 5.00\r\n\r\n"
                       "[HKEY_LOCAL_MACHINE\\Software\\Velmora\\BTConfig\\General]\r\n"
                       "\"AnsiCodePage\"=dword:000004e3\r\n");
  char16_t expected[] = {0, 0};
  const char bytes[] = "\xCF\xF0";
  ASSERT_EQ(platform::MultiByteToWideChar(platform::kCpAcp, 0, bytes, 2, expected, 2), 2);
  const InkText result = INK_Decode(AsBytes(std::string("one\r\n\xCF\xF0") + std::string(2, '\0')));
  EXPECT_EQ(result.text, u"one\r\n" + std::u16string(expected, 2));
  EXPECT_EQ(result.source, InkSource::kPlainText);
  EXPECT_FALSE(result.damaged);
}

TEST(InkDecode, PlainTextInItsForms) {
  struct Case {
    Bytes file;
    std::u16string text;
  };
  const Case kCases[] = {
      {{}, u""},
      {AsBytes("abc\x03"), u"abc"},                // filled to an even length
      {AsBytes("ab\x03"), u"ab\x03"},              // not by the filling
      {AsBytes("abc\x03") + Bytes{0, 0}, u"abc"},  //
      {{0xFF, 0xFE, 0x2D, 0x4E, 'a', 0}, u"\u4E2Da"},
      {{0xFF, 0xFE, 'a', 0, 0, 0}, u"a"},
      {{'a', 0, 'b', 0, 0x16, 0x04}, u"ab\u0416"},  // without a mark
      {{0xEF, 0xBB, 0xBF, 0xC3, 0xA9}, u"\u00E9"},
      {AsBytes("{\\pw"), u"{\\pw"},
  };
  for (const Case& one : kCases) {
    const InkText result = INK_Decode(one.file);
    EXPECT_EQ(result.text, one.text);
    EXPECT_EQ(result.source, InkSource::kPlainText);
    EXPECT_FALSE(result.damaged);
  }
}

TEST(InkDecode, ATextThatCannotBeConvertedIsSaid) {
  const platform::ScopedFailure failure(platform::MultiByteToWideChar);
  const InkText result = INK_Decode(AsBytes("abc"));
  EXPECT_TRUE(result.damaged);
  EXPECT_EQ(result.text, u"");
}

TEST(InkDecode, OtherFormatsAreLeftAlone) {
  for (const std::string_view file : {"{\\rtf1 text}", "{\\pwd1 text}"}) {
    const InkText result = INK_Decode(AsBytes(file));
    EXPECT_EQ(result.source, InkSource::kOtherFormat);
    EXPECT_EQ(result.text, u"");
  }
}

}  // namespace
}  // namespace tamu::device
