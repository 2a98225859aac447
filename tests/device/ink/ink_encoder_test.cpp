#include "device/ink/ink_encoder.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "device/ink/ink_blocks.h"
#include "device/ink/ink_bytes.h"
#include "device/ink/ink_decoder.h"
#include "device/ink/ink_format.h"
#include "device/ink/sha256.h"

namespace tamu::device {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Part(const Bytes& bytes, std::size_t from, std::size_t size) {
  return {bytes.begin() + static_cast<std::ptrdiff_t>(from),
          bytes.begin() + static_cast<std::ptrdiff_t>(from + size)};
}

// The coded stream of the first paragraph, without its start and end.
Bytes CodeOf(std::u16string_view text) {
  const Bytes document = INK_Encode(text);
  const InkBlocks blocks = INK_WalkBlocks(document);
  const auto body = blocks.paragraphs.at(0).body;
  const std::size_t size = ReadU16(body, 2);
  const auto stream = body.subspan(kInkParagraphHeaderSize, size);
  return {stream.begin() + 6, stream.end() - 2};
}

void ExpectSame(std::u16string_view text) {
  const Bytes document = INK_Encode(text);
  const InkText back = INK_Decode(document);
  EXPECT_EQ(back.source, InkSource::kDocument);
  EXPECT_FALSE(back.damaged);
  EXPECT_FALSE(back.objects);
  EXPECT_TRUE(back.text == text) << back.text.size() << " units instead of " << text.size();
}

TEST(Sha256, KnownText) {
  const std::string text = "abc";
  EXPECT_EQ(testing::Sha256({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}),
            "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(InkEncode, ADocumentIsByteForByteWhatADeviceWrites) {
  const Bytes document = INK_Encode(u"Hi\t\u00E9\u0416\u20AC\nB");
  EXPECT_EQ(document.size(), 488U);
  EXPECT_EQ(testing::Sha256(document),
            "c5eec431af0c49bae4f54115886aa0933319c2da44bcc326274e422f854fd22d");
  const Bytes paragraph = {0x41, 0, 0x23, 0, 0x0B, 0, 7, 0, 0x12, 0, 1, 0, 0, 0, 0x22, 0};
  EXPECT_EQ(Part(document, 0x156, 16), paragraph);
  const Bytes stream = {0xE5, 0x01, 0x00, 0xE6, 0x0A, 0x00, 'H',  'i',  0xC4, 0x04,
                        0xC1, 0xE9, 0x96, 0x10, 0xAC, 0x82, 0xC4, 0x00, 0,    0};
  EXPECT_EQ(Part(document, 0x156 + 30, 20), stream);
  const Bytes lines = {0x42, 0, 0x22, 0, 3, 0, 7, 0, 0, 0, 0, 0, 0xC0, 0, 0x1B, 6, 0, 0};
  EXPECT_EQ(Part(document, 0x156 + 50, 18), lines);
}

TEST(InkEncode, AnEmptyTextIsOneEmptyParagraph) {
  const Bytes document = INK_Encode(u"");
  EXPECT_EQ(document.size(), 412U);
  EXPECT_EQ(testing::Sha256(document),
            "9d8e8342ab2c0bb3e2afe0ac8526dc755c2dedfee4a03a6204808535bc739caf");
  ExpectSame(u"");
}

TEST(InkEncode, CharactersAsDevicesWriteThem) {
  struct Pair {
    char16_t unit;
    Bytes code;
  };
  const Pair kPairs[] = {
      {0x0412, {0x92, 0x10}}, {0x0435, {0xB5, 0x10}},       {0x0443, {0x83, 0x11}},
      {0x0451, {0x91, 0x11}}, {0x20AC, {0xAC, 0x82}},       {0x0152, {0x92, 0x05}},
      {0x2019, {0x99, 0x80}}, {0x2014, {0x94, 0x80}},       {0x0163, {0xA3, 0x05}},
      {0x0103, {0x83, 0x04}}, {0x015F, {0x9F, 0x05}},       {0x00A0, {0xC1, 0xA0}},
      {0x00FF, {0xC1, 0xFF}}, {0x0080, {0xC1, 0x80}},       {u'~', {'~'}},
      {0x007F, {0x7F}},       {u'\t', {0xC4, 0x04}},        {0x0100, {0x80, 0x04}},
      {0x3FFF, {0xBF, 0xFF}}, {0x4000, {0xC0, 0x00, 0x40}}, {0xD55C, {0xC0, 0x5C, 0xD5}},
      {0x0001, {0x81, 0x00}}, {0x000B, {0x8B, 0x00}},       {0x0000, {0x80, 0x00}},
  };
  for (const Pair& pair : kPairs) {
    EXPECT_EQ(CodeOf(std::u16string(1, pair.unit)), pair.code) << static_cast<int>(pair.unit);
  }
}

TEST(InkEncode, EveryUnitComesBack) {
  std::u16string all;
  for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit) {
    if (unit != u'\r' && unit != u'\n') all.push_back(static_cast<char16_t>(unit));
  }
  ExpectSame(all);
  // Every unit alone, and where codes could run into each other.
  for (std::uint32_t unit = 0; unit <= 0xFFFF; unit += 7) {
    if (unit == u'\r' || unit == u'\n') continue;
    const auto character = static_cast<char16_t>(unit);
    ExpectSame(std::u16string{u'a', character, u'\r', u'\n', character});
  }
}

TEST(InkEncode, TextsOfManyLanguagesComeBack) {
  ExpectSame(
      u"Grüße\r\n\r\nПривет, мир\r\n日本語のメモ\r\n한국어\r\n\U0001F468\u200D\U0001F469\uFE0F");
  ExpectSame(u"a\r\n");  // an empty paragraph follows
  ExpectSame(u"\r\n\r\n");
  ExpectSame(std::u16string{0xD800, u'x', 0xDC00, 0xDC00, 0xD800});
}

TEST(InkEncode, EveryLineEndEndsAParagraph) {
  for (const std::u16string_view text :
       {u"a\nb\r\nc\rd", u"\r", u"\n", u"\n\r", u"\r\r\n", u"x\n"}) {
    EXPECT_EQ(INK_Decode(INK_Encode(text)).text, INK_CanonicalText(text));
  }
  EXPECT_EQ(INK_CanonicalText(u"a\nb\r\nc\rd\n"), u"a\r\nb\r\nc\r\nd\r\n");
  EXPECT_EQ(INK_CanonicalText(u"\n\r\r\n"), u"\r\n\r\n\r\n");
  EXPECT_EQ(INK_CanonicalText(u"\v\f\u2028\u0085"), u"\v\f\u2028\u0085");
}

TEST(InkEncode, LongParagraphsComeBackInOnePiece) {
  for (const char16_t unit : {u'a', u'é', u'Ж', u'漢'}) {
    ExpectSame(std::u16string(std::size_t{1} << 20, unit));
  }
  ExpectSame(u"before\r\n" + std::u16string(200000, u'x') + u"\r\nafter");
}

TEST(InkEncode, ParagraphsAroundTheLimitComeBack) {
  for (std::size_t size = 65510; size <= 65545; ++size) {
    ExpectSame(std::u16string(size, u'a'));
    ExpectSame(std::u16string(size, u'a') + u"\r\nb");
  }
  const auto pieces = [](std::size_t size) {
    const Bytes document = INK_Encode(std::u16string(size, u'a'));
    return INK_WalkBlocks(document).paragraphs.size();
  };
  EXPECT_EQ(pieces(65517), 1U);
  EXPECT_EQ(pieces(65518), 2U);
}

TEST(InkEncode, PairsAreNotSeparated) {
  std::u16string text = u"a";
  for (int i = 0; i < 40000; ++i) text += u"\U0001F600";
  ExpectSame(text);
  const Bytes document = INK_Encode(text);
  const InkBlocks blocks = INK_WalkBlocks(document);
  EXPECT_GT(blocks.paragraphs.size(), 3U);
  for (const InkParagraphBlock& block : blocks.paragraphs) {
    // Every piece begins with a whole character: "a" or the first half of a pair.
    const auto code = block.body.subspan(kInkParagraphHeaderSize + 6);
    EXPECT_TRUE(code[0] == 'a' || (code[0] == 0xC0 && code[2] == 0xD8));
  }
}

TEST(InkEncode, MoreParagraphsThanIdsComeBack) {
  for (const std::size_t breaks : {32749U, 32750U, 32751U, 32763U, 32764U, 100000U}) {
    std::u16string text;
    for (std::size_t i = 0; i < breaks; ++i) {
      text.push_back(static_cast<char16_t>(u'a' + i % 26));
      text += u"\r\n";
    }
    ExpectSame(text);
  }
}

TEST(InkEncode, IdsAreUniqueAsLongAsTheyLast) {
  const auto first_and_last = [](std::size_t paragraphs) {
    const Bytes document = INK_Encode(std::u16string(paragraphs - 1, u'\n'));
    const InkBlocks blocks = INK_WalkBlocks(document);
    EXPECT_EQ(blocks.paragraphs.size(), paragraphs);
    return std::pair(blocks.paragraphs.front().id, blocks.paragraphs.back().id);
  };
  EXPECT_EQ(first_and_last(32751), std::pair(std::uint16_t{0x23}, std::uint16_t{0xFFFF}));
  EXPECT_EQ(first_and_last(32752), std::pair(std::uint16_t{0x23}, std::uint16_t{0x23}));
}

}  // namespace
}  // namespace tamu::device
