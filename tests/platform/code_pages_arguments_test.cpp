// What the three services accept, in which order they refuse, and the seam through which tests
// replace them.
#include <algorithm>
#include <array>
#include <iterator>
#include <limits>

#include "platform/code_pages_support.h"

namespace tamu::platform::testing {
namespace {

std::uint32_t DecodeError(std::uint32_t page, std::uint32_t flags, const char* bytes,
                          std::int32_t byte_count, char16_t* units, std::int32_t unit_count) {
  SetLastError(kUntouched);
  EXPECT_EQ(0, MultiByteToWideChar(page, flags, bytes, byte_count, units, unit_count));
  return GetLastError();
}

std::uint32_t EncodeError(std::uint32_t page, std::uint32_t flags, const char16_t* units,
                          std::int32_t unit_count, char* bytes, std::int32_t byte_count,
                          const char* default_char = nullptr,
                          std::int32_t* used_default = nullptr) {
  SetLastError(kUntouched);
  EXPECT_EQ(0, WideCharToMultiByte(page, flags, units, unit_count, bytes, byte_count, default_char,
                                   used_default));
  return GetLastError();
}

TEST(IsValidCodePage, KnowsThePagesThatConvert) {
  for (const std::uint32_t page : kAllPages) EXPECT_EQ(1, IsValidCodePage(page)) << page;
}

TEST(IsValidCodePage, RefusesAliasesAutodetectionAndWideText) {
  for (const std::uint32_t page :
       {0U, 1U, 2U, 3U, 42U, 437U, 851U, 1200U, 1201U, 1259U, 12000U, 20127U, 20949U, 28600U,
        50932U, 50949U, 54936U, 65002U, std::numeric_limits<std::uint32_t>::max()}) {
    EXPECT_EQ(0, IsValidCodePage(page)) << page;
  }
}

TEST(IsValidCodePage, LeavesTheLastErrorAlone) {
  SetLastError(kUntouched);
  static_cast<void>(IsValidCodePage(50932));
  EXPECT_EQ(kUntouched, GetLastError());
}

TEST(MultiByteToWideChar, RefusesWrongArguments) {
  char16_t units[4] = {};
  for (const std::uint32_t page : kAllPages) {
    EXPECT_EQ(kErrorInvalidParameter, DecodeError(page, 0, nullptr, 1, units, 4)) << page;
    EXPECT_EQ(kErrorInvalidParameter, DecodeError(page, 0, "a", 0, units, 4)) << page;
    EXPECT_EQ(kErrorInvalidParameter, DecodeError(page, 0, "a", 1, nullptr, 4)) << page;
    EXPECT_EQ(kErrorInvalidParameter, DecodeError(page, 0, "a", 1, units, -1)) << page;
  }
}

TEST(MultiByteToWideChar, RefusesToConvertInPlace) {
  alignas(char16_t) char memory[16] = "a";
  EXPECT_EQ(kErrorInvalidParameter,
            DecodeError(1252, 0, memory, -1, reinterpret_cast<char16_t*>(memory), 4));
}

TEST(MultiByteToWideChar, RefusesUnknownPagesBeforeFlags) {
  char16_t units[4] = {};
  for (const std::uint32_t page : {1U, 2U, 3U, 42U, 1200U, 50932U, 50949U, 20949U}) {
    EXPECT_EQ(kErrorInvalidParameter, DecodeError(page, 0x10, "a", 1, units, 4)) << page;
  }
}

TEST(MultiByteToWideChar, KnowsTheFlagsOfEachPage) {
  constexpr std::uint32_t kComposite = 0x2;
  constexpr std::uint32_t kUnknown = 0x10;
  for (const std::uint32_t page : kAllPages) {
    EXPECT_EQ(kErrorInvalidFlags, DecodeError(page, kUnknown, "a", 1, nullptr, 0)) << page;
    EXPECT_EQ(kErrorInvalidFlags, DecodeError(page, kComposite, "a", 1, nullptr, 0)) << page;
  }
  for (const std::uint32_t page : {65000U, 50220U, 50221U, 50222U, 50225U}) {
    EXPECT_EQ(kErrorInvalidFlags, DecodeError(page, kMbErrInvalidChars, "a", 1, nullptr, 0));
    EXPECT_EQ(kErrorInvalidFlags, DecodeError(page, kMbPrecomposed, "a", 1, nullptr, 0));
  }
  EXPECT_EQ(kErrorInvalidFlags, DecodeError(65001, kMbPrecomposed, "a", 1, nullptr, 0));
  EXPECT_EQ(u"a", Decode(65001, "a", kMbErrInvalidChars));
  EXPECT_EQ(u"a", Decode(1252, "a", kMbPrecomposed | kMbErrInvalidChars));
  EXPECT_EQ(u"a", Decode(932, "a", kMbPrecomposed | kMbErrInvalidChars));
}

TEST(MultiByteToWideChar, NegativeCountTakesTheTerminatorAlong) {
  for (const std::uint32_t page : kAllPages) {
    char16_t units[8] = {u'#', u'#', u'#', u'#', u'#'};
    EXPECT_EQ(4, MultiByteToWideChar(page, 0, "abc", -1, units, 8)) << page;
    EXPECT_EQ(std::u16string(u"abc\0#", 5), std::u16string(units, 5)) << page;
    EXPECT_EQ(4, MultiByteToWideChar(page, 0, "abc", -7, nullptr, 0)) << page;
  }
}

TEST(MultiByteToWideChar, ExplicitCountAddsNoTerminator) {
  char16_t units[4] = {u'#', u'#', u'#', u'#'};
  EXPECT_EQ(2, MultiByteToWideChar(1252, 0, "abc", 2, units, 4));
  EXPECT_EQ(u"ab##", std::u16string(units, 4));
}

TEST(MultiByteToWideChar, CountZeroMeasuresWithoutWriting) {
  char16_t unit = u'#';
  EXPECT_EQ(3, MultiByteToWideChar(1252, 0, "abc", 3, &unit, 0));
  EXPECT_EQ(u'#', unit);
}

TEST(WideCharToMultiByte, RefusesWrongArguments) {
  char bytes[4] = {};
  for (const std::uint32_t page : kAllPages) {
    EXPECT_EQ(kErrorInvalidParameter, EncodeError(page, 0, nullptr, 1, bytes, 4)) << page;
    EXPECT_EQ(kErrorInvalidParameter, EncodeError(page, 0, u"a", 0, bytes, 4)) << page;
    EXPECT_EQ(kErrorInvalidParameter, EncodeError(page, 0, u"a", 1, nullptr, 4)) << page;
    EXPECT_EQ(kErrorInvalidParameter, EncodeError(page, 0, u"a", 1, bytes, -1)) << page;
  }
}

TEST(WideCharToMultiByte, RefusesToConvertInPlace) {
  char16_t memory[8] = u"a";
  EXPECT_EQ(kErrorInvalidParameter,
            EncodeError(1252, 0, memory, -1, reinterpret_cast<char*>(memory), 8));
}

TEST(WideCharToMultiByte, RefusesUnknownPagesBeforeFlags) {
  char bytes[4] = {};
  for (const std::uint32_t page : {1U, 2U, 3U, 42U, 1200U, 50932U, 50949U, 20949U}) {
    EXPECT_EQ(kErrorInvalidParameter, EncodeError(page, 0x1, u"a", 1, bytes, 4)) << page;
  }
}

TEST(WideCharToMultiByte, Utf7AndUtf8RefuseDefaultsBeforeFlags) {
  char bytes[4] = {};
  std::int32_t used = -1;
  for (const std::uint32_t page : {65000U, 65001U}) {
    EXPECT_EQ(kErrorInvalidParameter, EncodeError(page, 0x1, u"a", 1, bytes, 4, "?"));
    EXPECT_EQ(kErrorInvalidParameter, EncodeError(page, 0x1, u"a", 1, bytes, 4, nullptr, &used));
    EXPECT_EQ(-1, used);
  }
}

TEST(WideCharToMultiByte, KnowsTheFlagsOfEachPage) {
  for (const std::uint32_t page : kAllPages) {
    EXPECT_EQ(kErrorInvalidFlags, EncodeError(page, 0x1, u"a", 1, nullptr, 0)) << page;
    if (page != 65001) {
      EXPECT_EQ(kErrorInvalidFlags, EncodeError(page, kWcErrInvalidChars, u"a", 1, nullptr, 0));
    }
  }
  for (const std::uint32_t page : {65000U, 65001U, 50220U, 50221U, 50222U, 50225U}) {
    EXPECT_EQ(kErrorInvalidFlags, EncodeError(page, kWcNoBestFitChars, u"a", 1, nullptr, 0));
  }
  EXPECT_EQ("a", Encode(65001, u"a", kWcErrInvalidChars));
  EXPECT_EQ("a", Encode(1252, u"a", kWcNoBestFitChars));
  EXPECT_EQ("a", Encode(52936, u"a", kWcNoBestFitChars));
}

TEST(WideCharToMultiByte, NegativeCountTakesTheTerminatorAlong) {
  for (const std::uint32_t page : kAllPages) {
    char bytes[] = "#######";
    EXPECT_EQ(4, WideCharToMultiByte(page, 0, u"abc", -1, bytes, 7, nullptr, nullptr)) << page;
    EXPECT_EQ(std::string("abc\0#", 5), std::string(bytes, 5)) << page;
    EXPECT_EQ(4, WideCharToMultiByte(page, 0, u"abc", -7, nullptr, 0, nullptr, nullptr)) << page;
  }
}

TEST(WideCharToMultiByte, UsedDefaultIsSetAndClearedByMeasuringToo) {
  std::int32_t used = -1;
  EXPECT_EQ(1, WideCharToMultiByte(1252, 0, u"\x0100", 1, nullptr, 0, nullptr, &used));
  EXPECT_EQ(0, used);
  EXPECT_EQ(1,
            WideCharToMultiByte(1252, kWcNoBestFitChars, u"\x0100", 1, nullptr, 0, nullptr, &used));
  EXPECT_EQ(1, used);
}

TEST(CodePageServices, FailThroughTheSeamWithTheirFailureValue) {
  {
    const ScopedFailure failure(IsValidCodePage);
    EXPECT_EQ(0, IsValidCodePage(1252));
  }
  {
    const ScopedFailure failure(MultiByteToWideChar, 1, kErrorNotEnoughMemory);
    EXPECT_EQ(kErrorNotEnoughMemory, DecodeError(1252, 0, "a", 1, nullptr, 0));
    EXPECT_EQ(1, MultiByteToWideChar(1252, 0, "a", 1, nullptr, 0));
  }
  {
    const ScopedFailure failure(WideCharToMultiByte, 2, kErrorNotEnoughMemory);
    EXPECT_EQ(1, WideCharToMultiByte(1252, 0, u"a", 1, nullptr, 0, nullptr, nullptr));
    EXPECT_EQ(kErrorNotEnoughMemory, EncodeError(1252, 0, u"a", 1, nullptr, 0));
  }
}

TEST(CodePageServices, CanBeReplaced) {
  const ScopedOverride override_valid(
      IsValidCodePage, [](std::uint32_t page) -> std::int32_t { return page == 4711; });
  EXPECT_EQ(1, IsValidCodePage(4711));
  EXPECT_EQ(0, IsValidCodePage(1252));
}

// The default page is asked for with every conversion, by the service that tells the locale.
template <char16_t... kText>
std::int32_t AnswerPage(std::uint32_t, std::uint32_t, char16_t* text, std::int32_t capacity) {
  constexpr char16_t kAnswer[] = {kText..., u'\0'};
  if (capacity < static_cast<std::int32_t>(std::size(kAnswer))) return 0;
  std::copy(std::begin(kAnswer), std::end(kAnswer), text);
  return static_cast<std::int32_t>(std::size(kAnswer));
}

TEST(AnsiCodePage, IsTheLocales) {
  const ScopedOverride locale(GetLocaleInfoW, &AnswerPage<u'9', u'3', u'2'>);
  EXPECT_EQ(u"\x3042", Decode(kCpAcp, "\x82\xA0"));
  EXPECT_EQ("\x82\xA0", Encode(kCpAcp, u"\x3042"));
}

TEST(AnsiCodePage, HasTheFlagsAndRulesOfThePageItStandsFor) {
  const ScopedOverride locale(GetLocaleInfoW, &AnswerPage<u'6', u'5', u'0', u'0', u'1'>);
  std::int32_t used = -1;
  EXPECT_EQ(u"\x20AC", Decode(kCpAcp, "\xE2\x82\xAC"));
  EXPECT_EQ(kErrorInvalidFlags, DecodeError(kCpAcp, kMbPrecomposed, "a", 1, nullptr, 0));
  EXPECT_EQ(kErrorInvalidParameter, EncodeError(kCpAcp, 0, u"a", 1, nullptr, 0, nullptr, &used));
}

TEST(AnsiCodePage, IsWesternWhenTheLocaleNamesNoneThatConverts) {
  {
    const ScopedOverride locale(GetLocaleInfoW, &AnswerPage<u'0'>);
    EXPECT_EQ(u"\x20AC", Decode(kCpAcp, "\x80"));
  }
  {
    const ScopedOverride locale(GetLocaleInfoW, &AnswerPage<u'5', u'0', u'9', u'3', u'2'>);
    EXPECT_EQ(u"\x20AC", Decode(kCpAcp, "\x80"));
  }
  {
    const ScopedFailure locale(GetLocaleInfoW, 1);
    SetLastError(kUntouched);
    char16_t unit = 0;
    EXPECT_EQ(1, MultiByteToWideChar(kCpAcp, 0, "\x80", 1, &unit, 1));
    EXPECT_EQ(u'\x20AC', unit);
    EXPECT_EQ(kUntouched, GetLastError());
  }
}

}  // namespace
}  // namespace tamu::platform::testing
