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

TEST(MessageFromLog, InformationForDevelopersIsNotShown) {
  EXPECT_FALSE(FromText("TAMU:  POL_Open()", LogSeverity::kInformation));
  EXPECT_FALSE(FromText("TAMU:  Unable to put string to file"));
}

}  // namespace
}  // namespace tamu::tool
