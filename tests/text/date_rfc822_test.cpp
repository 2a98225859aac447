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
using testing::kUtcZone;
using testing::LogCapture;
using testing::ScopedTimeZone;

// On a device in UTC, whose local times are easy to follow.
class DateFromRfc822 : public ::testing::Test {
 protected:
  static void ExpectRead(const std::string& text, const DateValue& expected) {
    DateValue date;
    EXPECT_TRUE(DATE_FromRfc822(text.c_str(), &date)) << text;
    EXPECT_EQ(date, expected) << text;
  }
  static void ExpectRefused(const std::string& text) {
    const LogCapture log;
    DateValue date;
    EXPECT_FALSE(DATE_FromRfc822(text.c_str(), &date)) << text;
    EXPECT_EQ(date, DATE_NONE) << text;
    EXPECT_TRUE(log.lines().empty()) << text;
  }
  // Noon of the last day of 2003 in a zone, as UTC.
  static void ExpectZone(const std::string& zone, const DateValue& expected) {
    ExpectRead("Wed, 31 Dec 2003 12:00:00 " + zone, expected);
  }
  static DateValue At(std::int32_t hour, std::int32_t minute = 0, std::int32_t day = 31) {
    return Date(2003, 12, day, hour, minute);
  }

 private:
  ScopedTimeZone zone_{kUtcZone};
};

TEST_F(DateFromRfc822, ANumericZoneIsTakenAway) {
  ExpectRead("Wed, 31 Dec 2003 23:59:59 +0100", Date(2003, 12, 31, 22, 59, 59));
  ExpectRead("Wed, 31 Dec 2003 23:59:59 -0500", Date(2004, 1, 1, 4, 59, 59));
}

TEST_F(DateFromRfc822, ANamedZoneIsTakenAway) {
  ExpectRead("Wed, 31 Dec 2003 23:59:59 EST", Date(2004, 1, 1, 4, 59, 59));
}

TEST_F(DateFromRfc822, TheResultIsTheDevicesLocalTime) {
  const ScopedTimeZone zone(kBerlinZone);
  ExpectRead("Wed, 31 Dec 2003 23:59:59 +0100", Date(2003, 12, 31, 23, 59, 59));
  ExpectRead("Wed, 31 Dec 2003 23:59:59 -0500", Date(2004, 1, 1, 5, 59, 59));
  ExpectRead("Tue, 1 Jul 2003 12:00:00 GMT", Date(2003, 7, 1, 14));
}

TEST_F(DateFromRfc822, WithoutAZoneTheTimeIsLocalAsWritten) {
  const ScopedTimeZone zone(kPlusOneZone);
  ExpectRead("Wed, 31 Dec 2003 23:59:59", Date(2003, 12, 31, 23, 59, 59));
  ExpectRead("Wed, 31 Dec 2003 23:59:59  ", Date(2003, 12, 31, 23, 59, 59));
}

TEST_F(DateFromRfc822, AZoneOfOffset0IsUtcAndConvertedToo) {
  const ScopedTimeZone zone(kPlusOneZone);
  for (const char* name : {"UT", "GMT", "Z", "+0000", "-0000"}) ExpectZone(name, At(13));
}

TEST_F(DateFromRfc822, YearsOfTwoDigitsAre1980To2079) {
  ExpectRead("Wed, 31 Dec 03 23:59:59", Date(2003, 12, 31, 23, 59, 59));
  ExpectRead("Wed, 31 Dec 79 00:00:00", Date(2079, 12, 31));
  ExpectRead("Wed, 31 Dec 80 00:00:00", Date(1980, 12, 31));
  ExpectRead("Wed, 31 Dec 3 00:00:00", kDateInvalid);
  ExpectRead("Wed, 31 Dec 003 00:00:00", kDateInvalid);
  ExpectRead("Wed, 31 Dec 103 00:00:00", Date(103, 12, 31));
}

TEST_F(DateFromRfc822, WithoutADayNameItFails) {
  ExpectRefused("31 Dec 2003 23:59:59");
  ExpectRefused("31 Dec 2003 23:59:59 +0100");
}

TEST_F(DateFromRfc822, ADayInTheNamesPlaceNeedsASecondDay) {
  ExpectRead("7 31 Dec 2003 23:59:59", Date(2003, 12, 31, 23, 59, 59));
  ExpectRefused("32 31 Dec 2003 23:59:59");
  ExpectRefused("Wed 31 Dec 2003 23:59:59");
}

TEST_F(DateFromRfc822, TheDayNameIsWhateverHasAComma) {
  ExpectRead("x,y 31 Dec 2003 23:59:59", Date(2003, 12, 31, 23, 59, 59));
  ExpectRead(", 31 Dec 2003 23:59:59", Date(2003, 12, 31, 23, 59, 59));
  ExpectRefused("Wed,31 Dec 2003 23:59:59");
}

TEST_F(DateFromRfc822, MonthNamesAreCaseSensitive) {
  ExpectRefused("Wed, 31 dec 2003 23:59:59");
  ExpectRefused("Wed, 31 DEC 2003 23:59:59");
  ExpectRefused("Wed, 31 December 2003 23:59:59");
  for (std::int32_t month = 1; month <= 12; ++month) {
    const char* const names[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                 "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    ExpectRead(std::string("x, 5 ") + names[month - 1] + " 2003 00:00:00", Date(2003, month, 5));
  }
}

TEST_F(DateFromRfc822, TheLibrarysOwnFormFails) { ExpectRefused("Wed, Dec 31 23:59:59 2003"); }

TEST_F(DateFromRfc822, NumbersHaveTheirLimits) {
  for (const char* text :
       {"Wed, 0 Dec 2003 00:00:00", "Wed, 32 Dec 2003 00:00:00", "Wed, 31 Dec 2003 24:00:00",
        "Wed, 31 Dec 2003 00:60:00", "Wed, 31 Dec 2003 00:00:60", "Wed, +1 Dec 2003 00:00:00",
        "Wed, 1a Dec 2003 00:00:00", "Wed, 31 Dec -2003 00:00:00", "Wed, 31 Dec 2003 00:-1:00",
        "Wed, 31 Dec 2003 :00:00", "Wed, 31 Dec 2003 00::00", "Wed, 31 Dec 2003 0x0:00:00"}) {
    ExpectRefused(text);
  }
  ExpectRead("Wed, 00031 Dec 02003 0023:059:0", Date(2003, 12, 31, 23, 59));
}

TEST_F(DateFromRfc822, TheSecondsAreRequired) {
  for (const char* text :
       {"", "   ", "Wed,", "Wed, 31", "Wed, 31 Dec", "Wed, 31 Dec 2003", "Wed, 31 Dec 2003 23",
        "Wed, 31 Dec 2003 23:59", "Wed, 31 Dec 2003 23:59:", "Wed, 31 Dec 2003 23:59 GMT"}) {
    ExpectRefused(text);
  }
  DateValue date;
  EXPECT_FALSE(DATE_FromRfc822(nullptr, &date));
  EXPECT_EQ(date, DATE_NONE);
}

TEST_F(DateFromRfc822, OnlySpacesAreBlanks) {
  ExpectRead("   Wed,   31   Dec   2003   23:  59:  59   GMT", Date(2003, 12, 31, 23, 59, 59));
  ExpectRefused("\tWed,\t31 Dec 2003 23:59:59");
  ExpectRefused("Wed, 31\tDec 2003 23:59:59");
  ExpectRefused("Wed, 31 Dec 2003 23 :59:59");
  ExpectRefused("Wed, 31 Dec 2003 23:59:59\r\n");
}

TEST_F(DateFromRfc822, TextBehindTheZoneIsIgnored) {
  ExpectZone("GMT (Greenwich, 1) anything", At(12));
  ExpectZone("+0100 (CET)", At(11));
}

TEST_F(DateFromRfc822, TheNamedZones) {
  ExpectZone("UT", At(12));
  ExpectZone("EST", At(17));
  ExpectZone("EDT", At(16));
  ExpectZone("CST", At(18));
  ExpectZone("CDT", At(17));
  ExpectZone("MST", At(19));
  ExpectZone("MDT", At(18));
  ExpectZone("PST", At(20));
  ExpectZone("PDT", At(19));
}

TEST_F(DateFromRfc822, OneLetterZonesHaveTheSignsThatRfc822Prints) {
  ExpectZone("A", At(13));
  ExpectZone("I", At(21));
  ExpectZone("K", At(22));
  ExpectZone("L", At(23));
  ExpectZone("M", Date(2004, 1, 1));
  ExpectZone("N", At(11));
  ExpectZone("Y", At(0));
  for (char letter = 'A'; letter <= 'Y'; ++letter) {
    if (letter == 'J') continue;
    const std::int32_t offset = letter < 'J'   ? -(letter - 'A' + 1)
                                : letter < 'N' ? -(letter - 'A')
                                               : letter - 'N' + 1;
    ExpectZone(std::string(1, letter), DATE_AddMinutes(At(12), -60 * offset));
  }
}

TEST_F(DateFromRfc822, AnyOtherSingleCharacterIsUtc) {
  for (const char* zone : {"J", "a", "z", "?", "1", "+"}) ExpectZone(zone, At(12));
}

TEST_F(DateFromRfc822, WhatIsNoZoneFails) {
  for (const char* zone : {"gmt", "CET", "UTC", "+100", "+01:00", "(CET)x", "AA"}) {
    ExpectRefused(std::string("Wed, 31 Dec 2003 12:00:00 ") + zone);
  }
}

TEST_F(DateFromRfc822, AHalfHourWithHoursKeepsItsSign) {
  ExpectZone("+0530", At(6, 30));
  ExpectZone("-0330", At(15, 30));
}

TEST_F(DateFromRfc822, AZoneOfMinutesAloneIsAddedWhateverItsSign) {
  ExpectZone("-0030", At(12, 30));
  ExpectZone("+0030", At(12, 30));
}

TEST_F(DateFromRfc822, ANumericZoneReadsItsDigitsAsAtoiDoes) {
  ExpectZone("x0100", At(11));
  ExpectZone("+1x30", At(10, 30));
  ExpectZone("+x130", At(12, 30));
  ExpectZone("+-130", At(13, 30));
  ExpectZone("--130", At(10, 30));
  ExpectZone("ABCDE", At(12));
  ExpectZone("+9999", DATE_AddMinutes(At(12), -(99 * 60 + 99)));
}

TEST_F(DateFromRfc822, AnImpossibleDayReadsAsAnInvalidValue) {
  ExpectRead("Mon, 30 Feb 2004 12:00:00", kDateInvalid);
  ExpectRead("Mon, 30 Feb 2004 12:00:00 GMT", kDateInvalid);
  ExpectRead("Mon, 30 Feb 2004 12:00:00 +0100", kDateInvalid);
  ExpectRead("Mon, 1 Feb 99999 12:00:00", kDateInvalid);
  ExpectRead("Mon, 1 Feb 99999999999999999999 12:00:00", kDateInvalid);
}

TEST_F(DateFromRfc822, AZoneBefore1601IsInvalid) {
  ExpectRead("Mon, 1 Feb 1600 12:00:00", Date(1600, 2, 1, 12));
  ExpectRead("Mon, 1 Feb 1600 12:00:00 GMT", kDateInvalid);
  ExpectRead("Mon, 1 Jan 1601 00:30:00 +0100", kDateInvalid);
}

}  // namespace
}  // namespace tamu
