#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/dates.h"
#include "support/log_capture.h"
#include "support/time_zone.h"
#include "text/date.h"

namespace tamu {
namespace {

using testing::Date;
using testing::kPlusOneZone;
using testing::LogCapture;
using testing::ScopedTimeZone;
using Lines = std::vector<std::string>;

const DateValue kLastSecond = Date(2003, 12, 31, 23, 59, 59);

class MailDates : public ::testing::Test {
 protected:
  static std::string CannotConvert(const std::string& text) {
    return "TAMU:  Error in date '" + text + "' - cannot convert legacy Date";
  }

 private:
  ScopedTimeZone zone_{kPlusOneZone};
};
using DateFromLegacyText = MailDates;
using DateFromMailText = MailDates;
using DateMailTextToFileTime = MailDates;

TEST_F(DateFromLegacyText, ReadsMonthDayTimeAndYear) {
  EXPECT_EQ(DATE_FromLegacyText("Dec 31 23:59:59 2003"), kLastSecond);
  EXPECT_EQ(DATE_FromLegacyText("Jan 1 0:0:0 2004 and more"), Date(2004, 1, 1));
}

TEST_F(DateFromLegacyText, AnEmptyTextIsNoDateAndNotLogged) {
  const LogCapture log;
  EXPECT_EQ(DATE_FromLegacyText(""), DATE_NONE);
  EXPECT_EQ(DATE_FromLegacyText(nullptr), DATE_NONE);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(DateFromLegacyText, FewerFieldsAreLogged) {
  for (const char* text : {"Dec 31 23:59:59", "Dec 31 23:59 2003", "Dec 31", "Dec", " ",
                           "Dec 31 23 :59:59 2003", "31 Dec 2003 23:59:59"}) {
    const LogCapture log;
    EXPECT_EQ(DATE_FromLegacyText(text), DATE_NONE) << text;
    EXPECT_EQ(log.texts(), Lines{CannotConvert(text)});
  }
}

TEST_F(DateFromLegacyText, AnUnknownMonthIsNamed) {
  const LogCapture log;
  EXPECT_EQ(DATE_FromLegacyText("dec 31 23:59:59 2003"), DATE_NONE);
  EXPECT_EQ(DATE_FromLegacyText("X 31 23:59:59 2003"), DATE_NONE);
  EXPECT_EQ(log.texts(),
            (Lines{"TAMU:  Error in date 'dec 31 23:59:59 2003' - Invalid Month part 'dec' in "
                   "legacy Date",
                   "TAMU:  Error in date 'X 31 23:59:59 2003' - Invalid Month part 'X' in legacy "
                   "Date"}));
}

TEST_F(DateFromLegacyText, AnImpossibleDateIsInvalidAndLogged) {
  const LogCapture log;
  EXPECT_EQ(DATE_FromLegacyText("Feb 30 12:00:00 2003"), kDateInvalid);
  EXPECT_EQ(DATE_FromLegacyText("Dec 31 23:59:59 03"), kDateInvalid);
  EXPECT_EQ(log.texts(),
            (Lines{"TAMU:  Error in date 'Feb 30 12:00:00 2003' - could not set OLE date/time",
                   "TAMU:  Error in date 'Dec 31 23:59:59 03' - could not set OLE date/time"}));
}

TEST_F(DateFromLegacyText, ReadsAsTheCLibraryDoes) {
  EXPECT_EQ(DATE_FromLegacyText("\tDec31 \n23: 59: 59\t2003"), kLastSecond);
  EXPECT_EQ(DATE_FromLegacyText("Dec +31 23:59:59 2003"), kLastSecond);
  EXPECT_EQ(DATE_FromLegacyText("Dec -1 23:59:59 2003"), kDateInvalid);
  EXPECT_EQ(DATE_FromLegacyText("Dec 4294967327 23:59:59 2003"), kDateInvalid);
  EXPECT_EQ(DATE_FromLegacyText("December 31 23:59:59 2003"), DATE_NONE);
}

TEST_F(DateFromMailText, Rfc822ComesFirst) {
  EXPECT_EQ(DATE_FromMailText("Wed, 31 Dec 2003 22:59:59 GMT"), kLastSecond);
  EXPECT_EQ(DATE_FromMailText("Wed, 31 Dec 2003 23:59:59"), kLastSecond);
}

TEST_F(DateFromMailText, ReadsTheLibrarysOwnForm) {
  const LogCapture log;
  EXPECT_EQ(DATE_FromMailText("Wed, Dec 31 23:59:59 2003"), kLastSecond);
  EXPECT_EQ(DATE_FromMailText("Dec 31 23:59:59 2003"), kLastSecond);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(DateFromMailText, TheOwnFormBehindABlankDoesNotRead) {
  const LogCapture log;
  EXPECT_EQ(DATE_FromMailText(" Wed, Dec 31 23:59:59 2003"), DATE_NONE);
  EXPECT_EQ(log.texts(), Lines{CannotConvert(" Wed, Dec 31 23:59:59 2003")});
  EXPECT_EQ(DATE_FromMailText(" Wed, 31 Dec 2003 23:59:59"), kLastSecond);
}

TEST_F(DateFromMailText, WithoutADayNameRfc822IsReadByNeither) {
  const LogCapture log;
  EXPECT_EQ(DATE_FromMailText("31 Dec 2003 23:59:59"), DATE_NONE);
  EXPECT_EQ(log.texts(), Lines{CannotConvert("31 Dec 2003 23:59:59")});
}

TEST_F(DateFromMailText, MonthNamesAreCaseSensitive) {
  const LogCapture log;
  EXPECT_EQ(DATE_FromMailText("Wed, 31 dec 2003 23:59:59"), DATE_NONE);
  EXPECT_EQ(log.texts(), Lines{CannotConvert("31 dec 2003 23:59:59")});
  EXPECT_EQ(DATE_FromMailText("Wed, dec 31 23:59:59 2003"), DATE_NONE);
}

TEST_F(DateFromMailText, FiveCharactersAreTakenForTheDayName) {
  EXPECT_EQ(DATE_FromMailText("Wed,xDec 31 23:59:59 2003"), kLastSecond);
  EXPECT_EQ(DATE_FromMailText("Wed,Dec 31 23:59:59 2003"), DATE_NONE);
}

TEST_F(DateFromMailText, TextThatEndsWithItsDayNameIsNoDate) {
  const LogCapture log;
  for (const char* text : {"", "Wed,", "Wed, "}) EXPECT_EQ(DATE_FromMailText(text), DATE_NONE);
  EXPECT_EQ(DATE_FromMailText(nullptr), DATE_NONE);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(DateMailTextToFileTime, IsTheUtcTimeOfTheDate) {
  for (const char* text : {"Wed, 31 Dec 2003 12:00:00 GMT", "Wed, Dec 31 13:00:00 2003"}) {
    const platform::FILETIME utc = DATE_MailTextToFileTime(text);
    platform::SYSTEMTIME time{};
    ASSERT_NE(platform::FileTimeToSystemTime(&utc, &time), 0);
    EXPECT_EQ(DATE_FromSystemTime(time), Date(2003, 12, 31, 12)) << text;
  }
}

TEST_F(DateMailTextToFileTime, UnreadableTextIsNoDates) {
  EXPECT_EQ(DATE_FromFileTime(DATE_MailTextToFileTime("soon")), DATE_NONE);
  EXPECT_EQ(DATE_FromFileTime(DATE_MailTextToFileTime("")), DATE_NONE);
}

void ClockAtNoon(platform::SYSTEMTIME* time) { *time = {2004, 5, 0, 6, 12, 0, 0, 0}; }

TEST_F(DateMailTextToFileTime, AnInvalidValueIsTheCurrentUtcTimeTakenAsLocal) {
  const platform::ScopedOverride clock(platform::GetSystemTime, &ClockAtNoon);
  const platform::FILETIME utc = DATE_MailTextToFileTime("Mon, 30 Feb 2004 12:00:00");
  EXPECT_EQ(DATE_FromFileTime(utc), Date(2004, 5, 6, 12));
  platform::SYSTEMTIME time{};
  ASSERT_NE(platform::FileTimeToSystemTime(&utc, &time), 0);
  EXPECT_EQ(time.wHour, 11);
}

TEST_F(DateMailTextToFileTime, ADateBefore1601IsZero) {
  const platform::FILETIME utc = DATE_MailTextToFileTime("Mon, 1 Feb 1600 12:00:00");
  EXPECT_EQ(utc.dwLowDateTime, 0U);
  EXPECT_EQ(utc.dwHighDateTime, 0U);
}

}  // namespace
}  // namespace tamu
