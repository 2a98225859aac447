#include "text/charset.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/code_pages.h"
#include "support/charset_setup.h"
#include "support/log_capture.h"

namespace tamu {
namespace {

using testing::LogCapture;

TEST(CharsetNames, AreFoundInAnyCaseAndWhole) {
  EXPECT_EQ(CHARSET_FromName("UTF-8"), 65001U);
  EXPECT_EQ(CHARSET_FromName("utf-8"), 65001U);
  EXPECT_EQ(CHARSET_FromName("Shift-JIS"), 932U);
  EXPECT_EQ(CHARSET_FromName("UTF-8 "), 0U);
  EXPECT_EQ(CHARSET_FromName("\"UTF-8\""), 0U);
  EXPECT_EQ(CHARSET_FromName("UTF"), 0U);
  EXPECT_EQ(CHARSET_FromName(""), 0U);
}

// A row is not found by the name or page that a row above it has. Kept on purpose.
TEST(CharsetNames, TheFirstRowShadowsLaterOnes) {
  EXPECT_EQ(CHARSET_FromName("ISO-8859-1"), 1252U);
  EXPECT_EQ(CHARSET_FromName("ISO-2022-JP"), 50220U);
  EXPECT_STREQ(CHARSET_ToName(1252), "US-ASCII");
  EXPECT_STREQ(CHARSET_ToName(932), "SHIFT-JIS");
  EXPECT_STREQ(CHARSET_ToName(51932), "X-EUC");
  EXPECT_STREQ(CHARSET_ToName(50220), "ISO-2022-JP");
  EXPECT_STREQ(CHARSET_ToName(50222), "ISO-2022-JP");
  EXPECT_STREQ(CHARSET_ToName(28591), "ISO-8859-1");
}

TEST(CharsetNames, EveryNameHasItsCodePage) {
  const std::pair<const char*, std::uint32_t> rows[] = {{"UTF-8", 65001},
                                                        {"US-ASCII", 1252},
                                                        {"SHIFT-JIS", 932},
                                                        {"SJIS", 932},
                                                        {"BIG5", 950},
                                                        {"UTF-7", 65000},
                                                        {"DIN_66003", 20106},
                                                        {"NS_4551-1", 20108},
                                                        {"SEN_850200_B", 20107},
                                                        {"_AUTODETECT", 50932},
                                                        {"_AUTODETECT_KR", 50949},
                                                        {"CSISO2022JP", 50221},
                                                        {"EUC-KR", 51949},
                                                        {"GB2312", 936},
                                                        {"HZ-GB-2312", 52936},
                                                        {"IBM852", 852},
                                                        {"IBM866", 866},
                                                        {"IRV", 20105},
                                                        {"ISO-2022-JP", 50220},
                                                        {"ISO-2022-KR", 50225},
                                                        {"ISO-8859-1", 1252},
                                                        {"ISO-8859-2", 28592},
                                                        {"ISO-8859-3", 28593},
                                                        {"ISO-8859-4", 28594},
                                                        {"ISO-8859-5", 28595},
                                                        {"ISO-8859-6", 28596},
                                                        {"ISO-8859-7", 28597},
                                                        {"ISO-8859-8", 28598},
                                                        {"ISO-8859-9", 28599},
                                                        {"ISO-8859-15", 28605},
                                                        {"KOI8-R", 20866},
                                                        {"KS_C_5601", 949},
                                                        {"WINDOWS-1250", 1250},
                                                        {"WINDOWS-1251", 1251},
                                                        {"WINDOWS-1252", 1252},
                                                        {"WINDOWS-1253", 1253},
                                                        {"WINDOWS-1254", 1254},
                                                        {"WINDOWS-1255", 1255},
                                                        {"WINDOWS-1256", 1256},
                                                        {"WINDOWS-1257", 1257},
                                                        {"WINDOWS-1258", 1258},
                                                        {"WINDOWS-874", 874},
                                                        {"X-EUC", 51932},
                                                        {"EUC-JP", 51932}};
  for (const auto& [name, page] : rows) EXPECT_EQ(CHARSET_FromName(name), page) << name;
}

TEST(CharsetNames, UnknownPagesHaveNoName) {
  EXPECT_EQ(CHARSET_ToName(0), nullptr);
  EXPECT_EQ(CHARSET_ToName(437), nullptr);
}

class CharsetDefaults : public testing::CharsetSetup {};

TEST_F(CharsetDefaults, WithoutRegistryValuesInputIs1252AndOutputUtf8) {
  EXPECT_EQ(CHARSET_GetInputCodePage(), 1252U);
  EXPECT_EQ(CHARSET_GetOutputCodePage(), 65001U);
  EXPECT_STREQ(CHARSET_GetOutputName(), "UTF-8");
}

TEST_F(CharsetDefaults, RegistryValuesAreNames) {
  Configure("koi8-r", "SJIS");
  EXPECT_EQ(CHARSET_GetInputCodePage(), 20866U);
  EXPECT_EQ(CHARSET_GetOutputCodePage(), 932U);
  EXPECT_STREQ(CHARSET_GetOutputName(), "SHIFT-JIS");
}

TEST_F(CharsetDefaults, Output1252HasNoName) {
  Configure("", "WINDOWS-1252");
  EXPECT_EQ(CHARSET_GetOutputCodePage(), 1252U);
  EXPECT_EQ(CHARSET_GetOutputName(), nullptr);
}

TEST_F(CharsetDefaults, NativeIsTheLocalesCodePageWithoutALogLine) {
  Configure("NATIVE", "NATIVE", "\"AnsiCodePage\"=dword:000004e3\r\n");
  const LogCapture log;
  EXPECT_EQ(CHARSET_GetInputCodePage(), 1251U);
  EXPECT_EQ(CHARSET_GetOutputCodePage(), 1251U);
  EXPECT_STREQ(CHARSET_GetOutputName(), "WINDOWS-1251");
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(CharsetDefaults, NativeInLowerCaseIsLoggedAsInvalidAndNativeAllTheSame) {
  Configure("native", "native", "\"AnsiCodePage\"=\"1251\"\r\n");
  const LogCapture log;
  EXPECT_EQ(CHARSET_GetInputCodePage(), 1251U);
  EXPECT_EQ(CHARSET_GetOutputCodePage(), 1251U);
  EXPECT_EQ(log.texts(),
            (std::vector<std::string>{
                "TAMU:  Registry input CHARSET 'native' not valid, using native codepage",
                "TAMU:  Registry output CHARSET 'native' not valid, using native codepage"}));
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
}

TEST_F(CharsetDefaults, AreSettledOnceForTheProcess) {
  Configure("FOO", "");
  const LogCapture log;
  EXPECT_EQ(CHARSET_GetInputCodePage(), 1252U);
  EXPECT_EQ(CHARSET_GetInputCodePage(), 1252U);
  EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(CharsetDefaults, ALocaleThatDoesNotAnswerGivesCodePage0) {
  const platform::ScopedFailure failure(platform::GetLocaleInfoW);
  EXPECT_EQ(CHARSET_GetNativeCodePage(), 0U);
  EXPECT_EQ(CHARSET_GetNativeCodePage(), 0U);
}

TEST_F(CharsetDefaults, ANativeCodePage0IsSettledLikeAnyOther) {
  Configure("NATIVE", "FOO");
  const platform::ScopedOverride<std::int32_t(std::uint32_t, std::uint32_t, char16_t*,
                                              std::int32_t)>
      silent(
          platform::GetLocaleInfoW,
          [](std::uint32_t, std::uint32_t, char16_t*, std::int32_t) -> std::int32_t { return 0; });
  const LogCapture log;
  EXPECT_EQ(CHARSET_GetInputCodePage(), 0U);
  EXPECT_EQ(CHARSET_GetOutputCodePage(), 0U);
  EXPECT_EQ(CHARSET_GetOutputCodePage(), 0U);
  EXPECT_EQ(log.lines().size(), 1U);
}

}  // namespace
}  // namespace tamu
