#include <gtest/gtest.h>

#include <string>

#include "support/dates.h"
#include "support/log_capture.h"
#include "support/time_zone.h"
#include "text/date.h"

namespace tamu {
namespace {

using testing::Date;
using testing::kBerlinZone;
using testing::kPlusOneZone;
using testing::LogCapture;
using testing::ScopedTimeZone;

class DateFromIso8601 : public ::testing::Test {
 protected:
  // DATE_NONE, and the one line that says so.
  static void ExpectRefused(const std::string& text) {
    const LogCapture log;
    EXPECT_EQ(DATE_FromIso8601(text.c_str()), DATE_NONE) << text;
    ASSERT_EQ(log.lines().size(), 1U) << text;
    EXPECT_EQ(log.lines()[0].text,
              "TAMU:  Error in date '" + text + "' - cannot convert from 8601");
    EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
  }
  static void ExpectRead(const char* text, const DateValue& expected) {
    const LogCapture log;
    EXPECT_EQ(DATE_FromIso8601(text), expected) << text;
    EXPECT_TRUE(log.lines().empty()) << text;
  }

 private:
  ScopedTimeZone zone_{kPlusOneZone};
};

TEST_F(DateFromIso8601, UtcBecomesTheDevicesLocalTime) {
  ExpectRead("20031231T120000Z", Date(2003, 12, 31, 13));
  ExpectRead("20031231T235959Z", Date(2004, 1, 1, 0, 59, 59));
}

TEST_F(DateFromIso8601, WithoutZTheTimeIsLocalAsWritten) {
  ExpectRead("20031231T120000", Date(2003, 12, 31, 12));
}

TEST_F(DateFromIso8601, TheExtendedFormHasDashesInTheDate) {
  ExpectRead("2003-12-31T120000Z", Date(2003, 12, 31, 13));
  ExpectRead("2003-12-31T120000", Date(2003, 12, 31, 12));
  ExpectRead("2003-12-31", Date(2003, 12, 31));
}

TEST_F(DateFromIso8601, ATimeWithColonsStopsBehindItsHourAndHasNoZone) {
  ExpectRead("2003-12-31T12:00:00Z", Date(2003, 12, 31, 12));
  ExpectRead("2003-12-31T23:59:59", Date(2003, 12, 31, 23));
  ExpectRead("20031231T23:59:59Z", Date(2003, 12, 31, 23));
}

TEST_F(DateFromIso8601, ADateAloneIsMidnight) { ExpectRead("20031231", Date(2003, 12, 31)); }

TEST_F(DateFromIso8601, AnEmptyTextIsNoDateAndNotLogged) {
  ExpectRead("", Date(4501, 1, 1));
  ExpectRead(nullptr, DATE_NONE);
}

TEST_F(DateFromIso8601, ANumericZoneIsRefused) { ExpectRefused("20031231T120000+0100"); }

TEST_F(DateFromIso8601, ThreeFieldsOrMoreAreEnough) {
  ExpectRead("19990101", Date(1999, 1, 1));
  ExpectRead("19990101T", Date(1999, 1, 1));
  ExpectRead("19990101T10", Date(1999, 1, 1, 10));
  ExpectRead("19990101T1030", Date(1999, 1, 1, 10, 30));
  ExpectRead("19990101T103000", Date(1999, 1, 1, 10, 30));
  ExpectRead("19990101T103000Z", Date(1999, 1, 1, 11, 30));
  ExpectRefused("1999");
  ExpectRefused("199912");
  ExpectRefused("tomorrow");
}

TEST_F(DateFromIso8601, TheSeparatorIsT) {
  ExpectRefused("19990101 103000");
  ExpectRefused("19990101t103000");
  ExpectRefused("19990101-103000");
  ExpectRefused("19990101 ");
}

TEST_F(DateFromIso8601, TheZoneIsZ) {
  ExpectRefused("19990101T103000X");
  ExpectRefused("19990101T103000z");
  ExpectRefused("19990101T103000 ");
  ExpectRead("19990101T103000Zulu", Date(1999, 1, 1, 11, 30));
}

TEST_F(DateFromIso8601, WhatDoesNotReadEndsTheTextAndCountsAsZero) {
  ExpectRead("19990101T10x000Z", Date(1999, 1, 1, 10));
  ExpectRead("19990101Tx", Date(1999, 1, 1));
}

TEST_F(DateFromIso8601, OnlyTenCharactersAndADashAtTheFifthMakeTheExtendedForm) {
  // Too short for it: the month is read as -1, the day as -3.
  ExpectRead("2003-1-3", kDateInvalid);
  ExpectRefused("2003-1-31");
  // Long enough, but the second dash is missing where the pattern has it.
  ExpectRefused("2003-1231T120000");
  ExpectRead("2003-1-31T", Date(2003, 1, 31));
}

TEST_F(DateFromIso8601, NumbersReadAsTheCLibrarysDo) {
  ExpectRead(" 20031231", Date(2003, 12, 31));
  ExpectRead("2003 1 2", Date(2003, 1, 2));
  ExpectRead("2003 1 2T 3 4 5", Date(2003, 1, 2, 3, 4, 5));
  ExpectRead("2003+1+2", Date(2003, 1, 2));
  ExpectRead("20030102T-0", Date(2003, 1, 2));
  ExpectRead("20030102T-1", kDateInvalid);
  ExpectRead("-9990101", kDateInvalid);
  ExpectRefused("20031- 2");
  ExpectRefused("20031231T1200001Z");
}

TEST_F(DateFromIso8601, ImpossibleFieldsGiveAnInvalidValueWithoutALine) {
  ExpectRead("20031301", kDateInvalid);
  ExpectRead("20030229", kDateInvalid);
  ExpectRead("20031231T240000", kDateInvalid);
  ExpectRead("20031231T235960", kDateInvalid);
  ExpectRead("00991231", kDateInvalid);
}

TEST_F(DateFromIso8601, UtcThatIsImpossibleOrBefore1601IsInvalid) {
  ExpectRead("20031301T000000Z", kDateInvalid);
  ExpectRead("16001231T235959Z", kDateInvalid);
  ExpectRead("16001231T235959", Date(1600, 12, 31, 23, 59, 59));
  ExpectRead("16010101T000000Z", Date(1601, 1, 1, 1));
}

TEST_F(DateFromIso8601, UtcThatIsLocallyTheYear10000IsInvalid) {
  ExpectRead("99991231T225959Z", Date(9999, 12, 31, 23, 59, 59));
  ExpectRead("99991231T230000Z", kDateInvalid);
}

TEST_F(DateFromIso8601, UtcFollowsTheRulesOfItsDate) {
  const ScopedTimeZone zone(kBerlinZone);
  ExpectRead("20030330T005959Z", Date(2003, 3, 30, 1, 59, 59));
  ExpectRead("20030330T010000Z", Date(2003, 3, 30, 3));
  ExpectRead("20031026T003000Z", Date(2003, 10, 26, 2, 30));
  ExpectRead("20031026T013000Z", Date(2003, 10, 26, 2, 30));
}

TEST_F(DateFromIso8601, NothingIsLoggedWhenTheLevelAsksForNothing) {
  const std::int32_t level = LOG_Level();
  LOG_SetLevel(0);
  ExpectRead("nonsense", DATE_NONE);
  LOG_SetLevel(level);
}

TEST_F(DateFromIso8601, AnEndlessTextIsReadToItsEighthFieldAndItsLineIsCut) {
  const std::string text = "20031231T120000" + std::string(100000, '9');
  const LogCapture log;
  EXPECT_EQ(DATE_FromIso8601(text.c_str()), DATE_NONE);
  ASSERT_EQ(log.lines().size(), 1U);
  EXPECT_EQ(log.lines()[0].text.size(), 991U);
}

}  // namespace
}  // namespace tamu
