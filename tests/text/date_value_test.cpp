#include "text/date_value.h"

#include <gtest/gtest.h>

#include <limits>

#include "support/dates.h"
#include "support/time_zone.h"

namespace tamu {
namespace {

using testing::Date;
using testing::kBerlinZone;
using testing::kPlusOneZone;
using testing::ScopedTimeZone;

DateFields FieldsOf(const DateValue& date) {
  DateFields fields;
  EXPECT_TRUE(DATE_ToFields(date, &fields));
  return fields;
}

TEST(DateValue, StartsAtTheZeroDate) {
  EXPECT_EQ(DateValue(), Date(1899, 12, 30));
  EXPECT_FALSE(DATE_IsNone(DateValue()));
}

TEST(DateNone, IsTheFirstOfJanuary4501) {
  EXPECT_EQ(DATE_NONE, Date(4501, 1, 1));
  EXPECT_EQ(DATE_NONE.days, 949998.0);
  EXPECT_TRUE(DATE_NONE.valid);
  EXPECT_TRUE(DATE_IsNone(Date(4501, 1, 1)));
}

TEST(DateNone, IsWhatAnInvalidValueIsStoredAs) {
  EXPECT_EQ(kDateInvalid.days, DATE_NONE.days);
  EXPECT_FALSE(DATE_IsNone(kDateInvalid));
}

TEST(DateFromFields, TakesTheYears100To9999) {
  EXPECT_EQ(Date(100, 1, 1), (DateValue{-657434.0, true}));
  EXPECT_EQ(FieldsOf(Date(9999, 12, 31, 23, 59, 59)), (DateFields{9999, 12, 31, 23, 59, 59}));
  for (const std::int32_t year :
       {99, 0, -1, 10000, 65536 + 2003, -65536 + 2003, std::numeric_limits<std::int32_t>::max(),
        std::numeric_limits<std::int32_t>::min()}) {
    EXPECT_EQ(Date(year, 1, 1), kDateInvalid) << year;
  }
}

TEST(DateFromFields, ImpossibleFieldsAreInvalid) {
  for (const DateFields& fields :
       {DateFields{2003, 0, 1}, DateFields{2003, 13, 1}, DateFields{2003, -1, 1},
        DateFields{2003, 1, 0}, DateFields{2003, 2, 29}, DateFields{2003, 4, 31},
        DateFields{2003, 1, -1}, DateFields{2003, 1, 1, 24}, DateFields{2003, 1, 1, -1},
        DateFields{2003, 1, 1, 0, 60}, DateFields{2003, 1, 1, 0, 0, 60},
        DateFields{2003, 1, 1, 0, 0, -1}, DateFields{2003, 65537, 1}}) {
    EXPECT_EQ(DATE_FromFields(fields), kDateInvalid);
  }
  EXPECT_TRUE(Date(2004, 2, 29).valid);
}

TEST(DateToFields, LeavesTheFieldsAloneWithoutADate) {
  DateFields fields{1, 2, 3, 4, 5, 6};
  EXPECT_FALSE(DATE_ToFields(kDateInvalid, &fields));
  EXPECT_FALSE(DATE_ToFields({1e9, true}, &fields));
  EXPECT_EQ(fields, (DateFields{1, 2, 3, 4, 5, 6}));
}

TEST(DateFromUtc, IsTheLocalTimeOfTheInstant) {
  const ScopedTimeZone zone(kBerlinZone);
  EXPECT_EQ(DATE_FromUtc({2003, 12, 31, 12, 0, 0}), Date(2003, 12, 31, 13));
  EXPECT_EQ(DATE_FromUtc({2003, 7, 1, 12, 0, 0}), Date(2003, 7, 1, 14));
}

TEST(DateFromUtc, IsInvalidBefore1601ForImpossibleFieldsAndBehind9999) {
  const ScopedTimeZone zone(kPlusOneZone);
  EXPECT_EQ(DATE_FromUtc({1600, 12, 31, 23, 59, 59}), kDateInvalid);
  EXPECT_EQ(DATE_FromUtc({2003, 2, 29, 0, 0, 0}), kDateInvalid);
  EXPECT_EQ(DATE_FromUtc({9999, 12, 31, 23, 30, 0}), kDateInvalid);
  EXPECT_EQ(DATE_FromUtc({1601, 1, 1, 0, 0, 0}), Date(1601, 1, 1, 1));
}

TEST(DateFromFileTime, LeavesPartsOfASecondOut) {
  const ScopedTimeZone zone(kPlusOneZone);
  const platform::SYSTEMTIME time{2003, 12, 0, 31, 12, 0, 0, 999};
  platform::FILETIME file{};
  ASSERT_NE(platform::SystemTimeToFileTime(&time, &file), 0);
  EXPECT_EQ(DATE_FromFileTime(file), Date(2003, 12, 31, 13));
  EXPECT_EQ(DATE_FromFileTime({0, 0x80000000U}), kDateInvalid);
}

TEST(DateToFileTime, IsTheWayBack) {
  const ScopedTimeZone zone(kBerlinZone);
  for (const DateValue& date :
       {Date(2003, 12, 31, 23, 59, 59), Date(2003, 7, 1), Date(9999, 1, 1)}) {
    platform::FILETIME utc{};
    ASSERT_TRUE(DATE_ToFileTime(date, &utc));
    EXPECT_EQ(DATE_FromFileTime(utc), date);
  }
  platform::FILETIME utc{};
  EXPECT_FALSE(DATE_ToFileTime(Date(1600, 1, 1), &utc));
  EXPECT_FALSE(DATE_ToFileTime(Date(1601, 1, 1), &utc));  // in UTC that is still 1600
  EXPECT_FALSE(DATE_ToFileTime(kDateInvalid, &utc));
}

TEST(DateAddMinutes, GoesBothWays) {
  EXPECT_EQ(DATE_AddMinutes(Date(2003, 12, 31, 23, 59, 59), 1), Date(2004, 1, 1, 0, 0, 59));
  EXPECT_EQ(DATE_AddMinutes(Date(2004, 1, 1), -1), Date(2003, 12, 31, 23, 59));
  EXPECT_EQ(DATE_AddMinutes(Date(2004, 1, 1), 0), Date(2004, 1, 1));
}

TEST(DateAddMinutes, CrossesTheZeroDate) {
  EXPECT_EQ(DATE_AddMinutes(Date(1899, 12, 30, 0, 30), -60), Date(1899, 12, 29, 23, 30));
  EXPECT_EQ(DATE_AddMinutes(Date(1899, 12, 29, 23, 30), 60), Date(1899, 12, 30, 0, 30));
  EXPECT_EQ(DATE_AddMinutes(Date(1899, 12, 28, 6), 24 * 60), Date(1899, 12, 29, 6));
}

TEST(DateAddMinutes, TheSumIsTheValueOfItsFields) {
  // Exactly, so that dates that are shifted compare equal to dates that are read.
  for (std::int32_t minute = 0; minute < 24 * 60; minute += 7) {
    for (const std::int32_t year : {1601, 1890, 2003, 9990}) {
      EXPECT_EQ(DATE_AddMinutes(Date(year, 5, 7, 1, 2, 3), minute - 60),
                Date(year, 5, (62 + minute - 60) / 1440 + 7, (62 + minute - 60) / 60 % 24,
                     (62 + minute - 60) % 60, 3))
          << year << ' ' << minute;
    }
  }
}

TEST(DateAddMinutes, InvalidStaysInvalidAndTheYearsEnd) {
  EXPECT_EQ(DATE_AddMinutes(kDateInvalid, 5), kDateInvalid);
  EXPECT_EQ(DATE_AddMinutes(Date(9999, 12, 31, 23, 59), 1), kDateInvalid);
  EXPECT_EQ(DATE_AddMinutes(Date(100, 1, 1), -1), kDateInvalid);
}

TEST(DateSecondsBetween, CountsForwardAndBackward) {
  EXPECT_EQ(DATE_SecondsBetween(Date(2003, 1, 1), Date(2003, 1, 2, 0, 0, 1)), 86401);
  EXPECT_EQ(DATE_SecondsBetween(Date(2003, 1, 2), Date(2003, 1, 1, 23, 59, 59)), -1);
}

TEST(DateSecondsBetween, DaysBeforeDay0CountEvenly) {
  EXPECT_EQ(DATE_SecondsBetween(Date(1899, 12, 29, 18), Date(1899, 12, 30, 6)), 12 * 3600);
  EXPECT_EQ(DATE_SecondsBetween(Date(1899, 12, 28, 1), Date(1899, 12, 28, 2)), 3600);
}

TEST(DateValue, EveryServiceThatFailsMakesItInvalid) {
  const platform::SYSTEMTIME time{2003, 12, 0, 31, 12, 0, 0, 0};
  platform::FILETIME file{};
  ASSERT_NE(platform::SystemTimeToFileTime(&time, &file), 0);
  for (platform::ServiceBase* service :
       {static_cast<platform::ServiceBase*>(&platform::FileTimeToLocalFileTime),
        static_cast<platform::ServiceBase*>(&platform::FileTimeToSystemTime),
        static_cast<platform::ServiceBase*>(&platform::SystemTimeToVariantTime)}) {
    const platform::ScopedFailure failure(*service);
    EXPECT_EQ(DATE_FromFileTime(file), kDateInvalid) << service->name();
  }
}

}  // namespace
}  // namespace tamu
