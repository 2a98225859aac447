#include "messages.h"

#include <gtest/gtest.h>

namespace tamu::tool {
namespace {

std::optional<Message> FromText(std::string_view text, LogSeverity severity = LogSeverity::kError) {
  return MESSAGE_FromLog({severity, 0, text, 7});
}

TEST(MessageFromLog, VaryingPartIsTakenOverAndMadeSafe) {
  const auto message = FromText("TAMU:  Warning - Parser encountered unknown property: 'X-\x1B'",
                                LogSeverity::kInformation);
  ASSERT_TRUE(message);
  EXPECT_EQ(message->kind, MessageKind::kLeftOut);
  EXPECT_EQ(message->line, 7U);
  EXPECT_EQ(message->text, "the property 'X-\\x1b' is not known and was left out");
}

TEST(MessageFromLog, SettingsHaveNoLine) {
  const auto message =
      FromText("TAMU:  Registry input CHARSET 'FOO' not valid, using native codepage");
  ASSERT_TRUE(message);
  EXPECT_EQ(message->kind, MessageKind::kSettings);
  EXPECT_EQ(MESSAGE_Warning("a.vcf", *message),
            "tamu: warning: DefaultInputCharset names the unknown character set 'FOO'; the native "
            "code page is used");
}

TEST(MessageFromLog, TextsThatTheTableLacksAreShownAsTheyAre) {
  const auto warning = FromText("TAMU:  Warning - Something new");
  ASSERT_TRUE(warning);
  EXPECT_EQ(warning->kind, MessageKind::kWarning);
  EXPECT_EQ(MESSAGE_Warning("a.vcf", *warning), "a.vcf:7: warning: Something new");
  const auto error = FromText("TAMU:  Error - Something bad");
  ASSERT_TRUE(error);
  EXPECT_EQ(error->kind, MessageKind::kError);
}

TEST(MessageFromLog, DatesAreShownAsTheyStandAndNotToldTwice) {
  EXPECT_FALSE(FromText("TAMU:  Error in date 'tomorrow' - cannot convert from 8601"));
  EXPECT_FALSE(FromText("TAMU:  Error in date 'x' - Invalid Month part 'y' in legacy Date"));
  EXPECT_FALSE(FromText("TAMU:  Error converting date"));
}

TEST(MessageFromLog, TemporaryFileThatFailsIsAWarningAboutTheContent) {
  const auto named = FromText("TAMU: FILE_TempFilename; FILE error (5)");
  ASSERT_TRUE(named);
  EXPECT_EQ(named->kind, MessageKind::kWarning);
  EXPECT_EQ(named->text,
            "no temporary file could be made (error 5); the attachment's content was left out");
  const auto opened = FromText("TAMU:  Unable to open file '/tmp/x' for writing");
  ASSERT_TRUE(opened);
  EXPECT_EQ(opened->kind, MessageKind::kWarning);
  EXPECT_TRUE(FromText("TAMU:  Unable to remove file (file=/tmp/x)"));
  EXPECT_FALSE(FromText("TAMU:  Error: 0x00000005"));
}

TEST(MessageFromLog, ObjectsWithoutAnEndAreToldOfWhereTheyBegin) {
  for (const char* const text :
       {"TAMU:  Error - vCalendar missing END tag", "TAMU:  Error - vMsg missing BODY section",
        "TAMU:  Error - vBody missing END tag",
        "TAMU:  Error - reached EOF while parsing CONTENT of vMsg"}) {
    const auto message = FromText(text);
    ASSERT_TRUE(message) << text;
    EXPECT_EQ(message->kind, MessageKind::kUnended) << text;
  }
}

TEST(MessageFromLog, InformationForDevelopersIsNotShown) {
  EXPECT_FALSE(FromText("TAMU:  POL_Open()", LogSeverity::kInformation));
  EXPECT_FALSE(
      FromText("TAMU:  Parsing Multipart Content (boundary='b')", LogSeverity::kInformation));
  EXPECT_FALSE(FromText("TAMU:  Unable to put string to file"));
}

}  // namespace
}  // namespace tamu::tool
