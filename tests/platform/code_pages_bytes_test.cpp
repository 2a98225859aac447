// Pages of one and of two bytes a character: undefined codes, strict and best-fit flags, default
// characters.
#include "platform/code_pages_support.h"

namespace tamu::platform::testing {
namespace {

std::uint32_t StrictError(std::uint32_t page, std::string_view bytes) {
  char16_t units[8];
  std::fill(std::begin(units), std::end(units), u'#');
  SetLastError(kUntouched);
  EXPECT_EQ(
      0, MultiByteToWideChar(page, kMbErrInvalidChars, bytes.data(), Size(bytes.size()), units, 8));
  EXPECT_EQ(u"########", std::u16string(units, 8));  // malformed text leaves the buffer alone
  return GetLastError();
}

TEST(SingleByte, UndefinedBytesPassThroughAsControls) {
  EXPECT_EQ(u"\x81\x8D\x8F\x90\x9D", Decode(1252, "\x81\x8D\x8F\x90\x9D"));
  EXPECT_EQ(u"\x90", Decode(1252, "\x90", kMbErrInvalidChars));
  EXPECT_EQ("\x81\x8D\x8F\x90\x9D", Encode(1252, u"\x81\x8D\x8F\x90\x9D"));
}

TEST(SingleByte, PrivateUseDecodesUnlessStrict) {
  EXPECT_EQ(u"\xF8F9\xF8FA\xF8FB", Decode(1253, "\xAA\xD2\xFF"));
  EXPECT_EQ(kErrorNoUnicodeTranslation, StrictError(1253, "a\xAA"));
  EXPECT_EQ(kErrorNoUnicodeTranslation, StrictError(1255, "\xD9"));
  EXPECT_EQ(kErrorNoUnicodeTranslation, StrictError(874, "\xDB"));
}

TEST(SingleByte, KeepsTheirEditions) {
  EXPECT_EQ(u"\x02BD\x02BC", Decode(28597, "\xA1\xA2"));
  EXPECT_EQ(u"\x203E", Decode(28598, "\xAF"));
  EXPECT_EQ(u"\x00AC", Decode(852, "\xAA"));
  EXPECT_EQ(u"\x05BA", Decode(1255, "\xCA"));
}

TEST(SingleByte, CombiningMarksAreNotComposed) {
  EXPECT_EQ(u"A\x0300", Decode(1258, "A\xCC"));
  EXPECT_EQ(u"\x05D6\x05B7", Decode(1255, "\xE6\xC7"));
  EXPECT_EQ("?", Encode(1258, u"\x1EA5"));
}

TEST(SingleByte, BestFitsOnlyWithoutTheFlag) {
  const Encoded loose = EncodeWith(1252,
                                   u"\x0100"
                                   u"A\x3042\x20AC\xFFFD",
                                   0, nullptr);
  EXPECT_EQ("AA?\x80?", loose.bytes);
  EXPECT_TRUE(loose.used_default);
  const Encoded exact = EncodeWith(1252,
                                   u"\x0100"
                                   u"A\x3042\x20AC\xFFFD",
                                   kWcNoBestFitChars, nullptr);
  EXPECT_EQ("?A?\x80?", exact.bytes);
  EXPECT_TRUE(exact.used_default);
  EXPECT_FALSE(EncodeWith(1252, u"\x0100", 0, nullptr).used_default);
}

TEST(SingleByte, EachHalfOfASurrogatePairIsReplaced) {
  EXPECT_EQ("??", Encode(1252, u"\xD83D\xDE00"));
  EXPECT_EQ("??", Encode(932, u"\xD83D\xDE00"));
}

TEST(SingleByte, DefaultCharacterGoesOutAsItIs) {
  const Encoded result = EncodeWith(1252, u"a\x3042z", 0, "\xFE");
  EXPECT_EQ("a\xFEz", result.bytes);
  EXPECT_TRUE(result.used_default);
}

TEST(SevenBit, NationalCharactersReplaceAscii) {
  EXPECT_EQ(u"\x00A4\x203E\x2207", Decode(20105, "\x24\x7E\x7F"));
  EXPECT_EQ(u"\x00A7\x00C4\x00D6\x00DC\x00E4\x00F6\x00FC\x00DF", Decode(20106, "@[\\]{|}~"));
  EXPECT_EQ(u"\x00A4\x00C9\x00C4\x00D6\x00C5\x00DC\x00E9\x00E4\x00F6\x00E5\x00FC",
            Decode(20107, "$@[\\]^`{|}~"));
  EXPECT_EQ(u"\x00A7\x00C6\x00D8\x00C5\x00E6\x00F8\x00E5|", Decode(20108, "#[\\]{|}~"));
}

TEST(SevenBit, EncodesNationalCharactersAndLacksTheReplacedOnes) {
  EXPECT_EQ("Stra~e [\\]", Encode(20106,
                                  u"Stra\x00DF"
                                  u"e \x00C4\x00D6\x00DC"));
  const Encoded brackets = EncodeWith(20106, u"[x]", 0, nullptr);
  EXPECT_EQ("?x?", brackets.bytes);
  EXPECT_TRUE(brackets.used_default);
  EXPECT_EQ("~", Encode(20108, u"|"));
}

TEST(SevenBit, EightBitBytesAreUndefined) {
  for (const std::uint32_t page : {20105U, 20106U, 20107U, 20108U}) {
    EXPECT_EQ(u"a??", Decode(page, "a\x80\xFF"));
    EXPECT_EQ(kErrorNoUnicodeTranslation, StrictError(page, "a\x80"));
    EXPECT_EQ(u"a?", Decode(page, "a?", kMbErrInvalidChars));
  }
}

TEST(DoubleByte, LoneLeadAtTheEndIsTheDefaultUnit) {
  EXPECT_EQ(u"a\x30FB", Decode(932, "a\x82"));
  EXPECT_EQ(u"a?", Decode(936, "a\x82"));
  EXPECT_EQ(u"a?", Decode(51949, "a\xB0"));
}

TEST(DoubleByte, NulAfterALeadSurvives) {
  EXPECT_EQ(std::u16string(u"\x30FB\0A", 3), Decode(932, std::string_view("\x82\0A", 3)));
  EXPECT_EQ(std::u16string(u"?\0A", 3), Decode(936, std::string_view("\x82\0A", 3)));
}

TEST(DoubleByte, UndefinedPairTakesBothBytes) {
  EXPECT_EQ(u"\x30FB", Decode(932, "\x82\x41"));
  EXPECT_EQ(u"?", Decode(936, "\x82\x20"));
  EXPECT_EQ(u"?A", Decode(936,
                          "\x82\xFF"
                          "A"));
}

TEST(DoubleByte, StrictRefusesUndefinedPairsAndSingleBytePrivateUse) {
  EXPECT_EQ(kErrorNoUnicodeTranslation, StrictError(932, "\x82\x41"));
  EXPECT_EQ(kErrorNoUnicodeTranslation, StrictError(932, "\x82"));
  EXPECT_EQ(kErrorNoUnicodeTranslation, StrictError(932, std::string_view("\x82\0", 2)));
  EXPECT_EQ(kErrorNoUnicodeTranslation, StrictError(932, "\xFE"));
  EXPECT_EQ(kErrorNoUnicodeTranslation, StrictError(936, "\xFF"));
  EXPECT_EQ(kErrorNoUnicodeTranslation, StrictError(936, "\x82\x20"));
  EXPECT_EQ(u"\x30FB", Decode(932, "\x81\x45", kMbErrInvalidChars));  // the default unit's own code
  EXPECT_EQ(u"\x80", Decode(932, "\x80", kMbErrInvalidChars));
  EXPECT_EQ(u"\xE000", Decode(932, "\xF0\x40", kMbErrInvalidChars));  // double-byte private use
  EXPECT_EQ(u"?", Decode(936, "?", kMbErrInvalidChars));
}

TEST(DoubleByte, JapaneseLookAlikes) {
  EXPECT_EQ("\x81\x60\x81\x61\x81\x7C", Encode(932, u"\xFF5E\x2225\xFF0D"));
  EXPECT_EQ("?????", Encode(932, u"\x301C\x2212\x2016\x2014\x203E"));
  EXPECT_EQ("\x5C", Encode(932, u"\x00A5"));
  EXPECT_EQ("?", Encode(932, u"\x00A5", kWcNoBestFitChars));
  EXPECT_EQ(u"\\~", Decode(932, "\\~"));
}

TEST(DoubleByte, PreferredCodesAmongDuplicates) {
  EXPECT_EQ(u"\x2252\x2252", Decode(932, "\x81\xE0\x87\x90"));
  EXPECT_EQ("\x81\xE0", Encode(932, u"\x2252"));
  EXPECT_EQ(u"\x7E8A\x7E8A", Decode(932, "\xED\x40\xFA\x5C"));
  EXPECT_EQ("\xFA\x5C", Encode(932, u"\x7E8A"));
  EXPECT_EQ("\xF9\xF9", Encode(950, u"\x2550"));
  EXPECT_EQ(u"\x2550\x2550", Decode(950, "\xA2\xA4\xF9\xF9"));
}

TEST(DoubleByte, EuroOfEachPage) {
  EXPECT_EQ(u"\x20AC", Decode(936, "\x80"));
  EXPECT_EQ("\x80", Encode(936, u"\x20AC"));
  EXPECT_EQ(u"\x80", Decode(949, "\x80"));
}

TEST(DoubleByte, WansungQuirksAreKept) {
  EXPECT_EQ(std::u16string(1, u'\0'), Decode(51949, "\xC9"));
  EXPECT_EQ(u"\xF8EA", Decode(51949, "\xFE"));
  EXPECT_EQ(u"\xAC00", Decode(51949, "\xB0\xA1"));
  EXPECT_EQ("\xB0\xA1", Encode(51949, u"\xAC00"));
}

TEST(DoubleByte, DefaultCharacterMayBeAPair) {
  EXPECT_EQ("a\x81\xACz", Encode(932, u"a\xFFFFz", 0, "\x81\xAC"));
  EXPECT_EQ("a#z", Encode(932, u"a\xFFFFz", 0, "#!"));  // only the first character of a text
}

TEST(DoubleByte, ReplacementPairIsNotSplitByAShortBuffer) {
  char bytes[3] = {'#', '#', '#'};
  std::int32_t used = -1;
  SetLastError(kUntouched);
  EXPECT_EQ(0, WideCharToMultiByte(932, 0, u"a\xFFFF", 2, bytes, 2, "\x81\xAC", &used));
  EXPECT_EQ(kErrorInsufficientBuffer, GetLastError());
  EXPECT_EQ("a##", std::string(bytes, 3));
}

}  // namespace
}  // namespace tamu::platform::testing
