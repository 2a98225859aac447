#include "platform/time.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "support/time_zone.h"

namespace tamu::platform {

bool operator==(const SYSTEMTIME& a, const SYSTEMTIME& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}
void PrintTo(const SYSTEMTIME& t, std::ostream* out) {
  *out << t.wYear << '-' << t.wMonth << '-' << t.wDay << " (" << t.wDayOfWeek << ") " << t.wHour
       << ':' << t.wMinute << ':' << t.wSecond << '.' << t.wMilliseconds;
}

namespace {

using testing::kBerlinZone;
using testing::kMinusFiveZone;
using testing::kPlusOneZone;
using testing::kUtcZone;
using testing::ScopedTimeZone;

SYSTEMTIME Time(unsigned year, unsigned month, unsigned day, unsigned hour = 0, unsigned minute = 0,
                unsigned second = 0, unsigned milliseconds = 0, unsigned day_of_week = 0) {
  const auto narrow = [](unsigned field) { return static_cast<std::uint16_t>(field); };
  return {narrow(year), narrow(month),  narrow(day_of_week), narrow(day),
          narrow(hour), narrow(minute), narrow(second),      narrow(milliseconds)};
}

std::uint64_t Number(const FILETIME& time) {
  return std::uint64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
}
FILETIME FileTime(std::uint64_t number) {
  return {static_cast<std::uint32_t>(number), static_cast<std::uint32_t>(number >> 32)};
}

FILETIME ToFile(const SYSTEMTIME& time) {
  FILETIME result{};
  EXPECT_NE(SystemTimeToFileTime(&time, &result), 0);
  return result;
}
SYSTEMTIME FromFile(const FILETIME& time) {
  SYSTEMTIME result{};
  EXPECT_NE(FileTimeToSystemTime(&time, &result), 0);
  result.wDayOfWeek = 0;
  return result;
}
// Local time of a UTC time, and the way back.
SYSTEMTIME LocalOf(const SYSTEMTIME& utc) {
  const FILETIME file = ToFile(utc);
  FILETIME local{};
  EXPECT_NE(FileTimeToLocalFileTime(&file, &local), 0);
  return FromFile(local);
}
SYSTEMTIME UtcOf(const SYSTEMTIME& local) {
  const FILETIME file = ToFile(local);
  FILETIME utc{};
  EXPECT_NE(LocalFileTimeToFileTime(&file, &utc), 0);
  return FromFile(utc);
}

double ToVariant(const SYSTEMTIME& time) {
  double date = 0;
  EXPECT_NE(SystemTimeToVariantTime(&time, &date), 0);
  return date;
}
SYSTEMTIME FromVariant(double date) {
  SYSTEMTIME result{};
  EXPECT_NE(VariantTimeToSystemTime(date, &result), 0) << date;
  return result;
}

// Fields that make no time whatever the years are.
const SYSTEMTIME kImpossible[] = {
    Time(2003, 0, 1),
    Time(2003, 13, 1),
    Time(2003, 1, 0),
    Time(2003, 1, 32),
    Time(2003, 4, 31),
    Time(2003, 2, 29),
    Time(1900, 2, 29),
    Time(2003, 1, 1, 24),
    Time(2003, 1, 1, 0, 60),
    Time(2003, 1, 1, 0, 0, 60),
    Time(2003, 1, 1, 0, 0, 0, 1000),
    Time(2003, 257, 1),
    Time(2003, 1, 257),
    Time(65535, 1, 1),
};

TEST(SystemTimeToFileTime, CountsFrom1601) {
  EXPECT_EQ(Number(ToFile(Time(1601, 1, 1))), 0U);
  EXPECT_EQ(Number(ToFile(Time(1970, 1, 1))), 116444736000000000U);
  EXPECT_EQ(Number(ToFile(Time(2003, 12, 31, 23, 59, 59, 999))), 127173887999990000U);
}

TEST(SystemTimeToFileTime, IgnoresTheDayOfWeek) {
  EXPECT_EQ(Number(ToFile(Time(2003, 12, 31, 0, 0, 0, 0, 9999))),
            Number(ToFile(Time(2003, 12, 31, 0, 0, 0, 0, 3))));
}

TEST(SystemTimeToFileTime, ImpossibleFieldsFailAndLeaveTheResultAlone) {
  for (const SYSTEMTIME& time : kImpossible) {
    FILETIME result = FileTime(77);
    SetLastError(0);
    EXPECT_EQ(SystemTimeToFileTime(&time, &result), 0) << ::testing::PrintToString(time);
    EXPECT_EQ(GetLastError(), kErrorInvalidParameter);
    EXPECT_EQ(Number(result), 77U);
  }
}

TEST(SystemTimeToFileTime, TakesTheYears1601To30827) {
  FILETIME result{};
  const SYSTEMTIME before = Time(1600, 12, 31, 23, 59, 59);
  const SYSTEMTIME behind = Time(30828, 1, 1);
  EXPECT_EQ(SystemTimeToFileTime(&before, &result), 0);
  EXPECT_EQ(SystemTimeToFileTime(&behind, &result), 0);
  EXPECT_EQ(FromFile(ToFile(Time(30827, 12, 31, 23, 59, 59, 999))),
            Time(30827, 12, 31, 23, 59, 59, 999));
}

TEST(FileTimeToSystemTime, GivesEveryFieldBack) {
  SYSTEMTIME result{};
  const FILETIME file = FileTime(127173887999990000U);
  EXPECT_NE(FileTimeToSystemTime(&file, &result), 0);
  EXPECT_EQ(result, Time(2003, 12, 31, 23, 59, 59, 999, 3));
}

TEST(FileTimeToSystemTime, FailsFromTwoToThe63rd) {
  SYSTEMTIME result = Time(1, 2, 3);
  FILETIME file = FileTime(std::uint64_t{1} << 63);
  EXPECT_EQ(FileTimeToSystemTime(&file, &result), 0);
  EXPECT_EQ(result, Time(1, 2, 3));
  file = FileTime((std::uint64_t{1} << 63) - 1);
  EXPECT_NE(FileTimeToSystemTime(&file, &result), 0);
  EXPECT_EQ(result.wYear, 30828);
}

TEST(GetSystemTime, IsTheClocksTimeInUtc) {
  const ScopedTimeZone zone(kPlusOneZone);
  const auto now = [] { return std::chrono::system_clock::now().time_since_epoch(); };
  using std::chrono::milliseconds;
  const auto before = std::chrono::duration_cast<milliseconds>(now()).count();
  SYSTEMTIME time{};
  GetSystemTime(&time);
  const auto after = std::chrono::duration_cast<milliseconds>(now()).count();
  const auto seen = static_cast<std::int64_t>(Number(ToFile(time)) / 10000) - 11644473600000;
  EXPECT_LE(before, seen);
  EXPECT_LE(seen, after);
}

TEST(GetSystemTime, ACallThatIsMadeToFailDoesNothing) {
  const ScopedFailure failure(GetSystemTime);
  SYSTEMTIME time = Time(1, 2, 3);
  GetSystemTime(&time);
  EXPECT_EQ(time, Time(1, 2, 3));
  GetSystemTime(&time);
  EXPECT_GE(time.wYear, 2003);
}

TEST(LocalTime, IsUtcPlusTheZonesOffset) {
  const ScopedTimeZone zone(kPlusOneZone);
  EXPECT_EQ(LocalOf(Time(2003, 12, 31, 12, 0, 0, 7)), Time(2003, 12, 31, 13, 0, 0, 7));
  EXPECT_EQ(UtcOf(Time(2003, 12, 31, 23, 59, 59, 7)), Time(2003, 12, 31, 22, 59, 59, 7));
}

TEST(LocalTime, FollowsTzFromOneCallToTheNext) {
  const SYSTEMTIME noon = Time(2003, 12, 31, 12);
  const ScopedTimeZone first(kPlusOneZone);
  EXPECT_EQ(LocalOf(noon), Time(2003, 12, 31, 13));
  const ScopedTimeZone second(kMinusFiveZone);
  EXPECT_EQ(LocalOf(noon), Time(2003, 12, 31, 7));
  EXPECT_EQ(UtcOf(noon), Time(2003, 12, 31, 17));
  const ScopedTimeZone third(kUtcZone);
  EXPECT_EQ(LocalOf(noon), noon);
  EXPECT_EQ(UtcOf(noon), noon);
}

TEST(LocalTime, FollowsTheRulesAtTheDateNotTodays) {
  const ScopedTimeZone zone(kBerlinZone);
  EXPECT_EQ(LocalOf(Time(2003, 1, 15, 12)), Time(2003, 1, 15, 13));
  EXPECT_EQ(LocalOf(Time(2003, 7, 15, 12)), Time(2003, 7, 15, 14));
  EXPECT_EQ(UtcOf(Time(2003, 1, 15, 12)), Time(2003, 1, 15, 11));
  EXPECT_EQ(UtcOf(Time(2003, 7, 15, 12)), Time(2003, 7, 15, 10));
}

TEST(LocalTime, TheRulesHoldIn1601AndIn9999) {
  const ScopedTimeZone zone(kBerlinZone);
  EXPECT_EQ(UtcOf(Time(9999, 7, 15, 12)), Time(9999, 7, 15, 10));
  EXPECT_EQ(UtcOf(Time(9999, 12, 31, 23, 59, 59)), Time(9999, 12, 31, 22, 59, 59));
  EXPECT_EQ(UtcOf(Time(1601, 1, 1, 1)), Time(1601, 1, 1));
  EXPECT_EQ(LocalOf(Time(1601, 1, 1)), Time(1601, 1, 1, 1));
}

TEST(LocalTime, EveryInstantOfTheChangesIsItsLocalTime) {
  const ScopedTimeZone zone(kBerlinZone);
  EXPECT_EQ(LocalOf(Time(2003, 3, 30, 0, 59, 59)), Time(2003, 3, 30, 1, 59, 59));
  EXPECT_EQ(LocalOf(Time(2003, 3, 30, 1)), Time(2003, 3, 30, 3));
  EXPECT_EQ(LocalOf(Time(2003, 10, 26, 0, 30)), Time(2003, 10, 26, 2, 30));
  EXPECT_EQ(LocalOf(Time(2003, 10, 26, 1, 30)), Time(2003, 10, 26, 2, 30));
}

TEST(LocalTime, ARepeatedHourIsItsFirstOccurrence) {
  const ScopedTimeZone zone(kBerlinZone);
  EXPECT_EQ(UtcOf(Time(2003, 10, 26, 1, 59, 59)), Time(2003, 10, 25, 23, 59, 59));
  EXPECT_EQ(UtcOf(Time(2003, 10, 26, 2)), Time(2003, 10, 26, 0));
  EXPECT_EQ(UtcOf(Time(2003, 10, 26, 2, 59, 59)), Time(2003, 10, 26, 0, 59, 59));
  EXPECT_EQ(UtcOf(Time(2003, 10, 26, 3)), Time(2003, 10, 26, 2));
}

TEST(LocalTime, AnHourThatIsLeftOutMovesForward) {
  const ScopedTimeZone zone(kBerlinZone);
  EXPECT_EQ(UtcOf(Time(2003, 3, 30, 1, 59, 59)), Time(2003, 3, 30, 0, 59, 59));
  EXPECT_EQ(UtcOf(Time(2003, 3, 30, 2)), Time(2003, 3, 30, 1));
  EXPECT_EQ(LocalOf(UtcOf(Time(2003, 3, 30, 2, 30))), Time(2003, 3, 30, 3, 30));
  EXPECT_EQ(UtcOf(Time(2003, 3, 30, 3)), Time(2003, 3, 30, 1));
}

TEST(LocalTime, TheHoursAroundAChangeDoNotDependOnWhatWasAskedBefore) {
  const ScopedTimeZone zone(kBerlinZone);
  (void)LocalOf(Time(2003, 7, 15, 12));
  const SYSTEMTIME after_summer = UtcOf(Time(2003, 10, 26, 2, 30));
  (void)LocalOf(Time(2003, 1, 15, 12));
  EXPECT_EQ(UtcOf(Time(2003, 10, 26, 2, 30)), after_summer);
}

TEST(LocalTime, OffsetsOfSecondsAreKept) {
  const ScopedTimeZone zone("ODD-0:53:28");
  EXPECT_EQ(LocalOf(Time(1890, 1, 1)), Time(1890, 1, 1, 0, 53, 28));
  EXPECT_EQ(UtcOf(Time(1890, 1, 1, 0, 53, 28)), Time(1890, 1, 1));
}

TEST(LocalTime, ChangesAcrossTheDateLineAreFollowed) {
  // 12 hours in one night, which no summer time has: a day before and a day after still differ.
  const ScopedTimeZone zone("AAA12BBB0,M3.5.0,M10.5.0");
  EXPECT_EQ(UtcOf(Time(2003, 3, 30, 1, 59)), Time(2003, 3, 30, 13, 59));
  EXPECT_EQ(UtcOf(Time(2003, 3, 30, 14)), Time(2003, 3, 30, 14));
  EXPECT_EQ(UtcOf(Time(2003, 10, 26, 1, 59)), Time(2003, 10, 26, 1, 59));
}

TEST(LocalTime, WhatIsBefore1601FailsAndLeavesTheResultAlone) {
  const FILETIME start = FileTime(10);
  FILETIME result = FileTime(77);
  {
    const ScopedTimeZone zone(kPlusOneZone);
    SetLastError(0);
    EXPECT_EQ(LocalFileTimeToFileTime(&start, &result), 0);
    EXPECT_EQ(GetLastError(), kErrorInvalidParameter);
  }
  const ScopedTimeZone zone(kMinusFiveZone);
  EXPECT_EQ(FileTimeToLocalFileTime(&start, &result), 0);
  EXPECT_EQ(Number(result), 77U);
}

TEST(LocalTime, FileTimesFromTwoToThe63rdFail) {
  FILETIME result = FileTime(77);
  for (const std::uint64_t number : {std::uint64_t{1} << 63, ~std::uint64_t{0}}) {
    const FILETIME time = FileTime(number);
    EXPECT_EQ(FileTimeToLocalFileTime(&time, &result), 0);
    EXPECT_EQ(LocalFileTimeToFileTime(&time, &result), 0);
  }
  const FILETIME last = FileTime((std::uint64_t{1} << 63) - 1);
  const ScopedTimeZone zone(kPlusOneZone);
  EXPECT_EQ(FileTimeToLocalFileTime(&last, &result), 0);
  EXPECT_EQ(Number(result), 77U);
  EXPECT_NE(LocalFileTimeToFileTime(&last, &result), 0);
}

TEST(LocalTime, ThereAndBackIsTheSameOutsideOfRepeatedHours) {
  std::mt19937_64 random(1);
  for (const char* rule : {kBerlinZone, testing::kNewYorkZone, "LHST-10:30LHDT-11,M10.1.0,M4.1.0",
                           "IST-5:30", "NZST-12NZDT,M9.5.0,M4.1.0/3", "XXX11"}) {
    const ScopedTimeZone zone(rule);
    int different = 0;
    for (int i = 0; i < 2000; ++i) {
      // Years 1602 to 9999.
      const FILETIME utc = FileTime(random() % 2650467743999000000U + 315360000000000U);
      FILETIME local{};
      FILETIME again{};
      ASSERT_NE(FileTimeToLocalFileTime(&utc, &local), 0);
      ASSERT_NE(LocalFileTimeToFileTime(&local, &again), 0);
      if (Number(again) == Number(utc)) continue;
      ++different;
      // The second occurrence: the same local time, and an hour or half of it earlier.
      FILETIME same{};
      ASSERT_NE(FileTimeToLocalFileTime(&again, &same), 0);
      EXPECT_EQ(Number(same), Number(local));
      EXPECT_LT(Number(again), Number(utc));
    }
    EXPECT_LT(different, 10) << rule;
  }
}

TEST(SystemTimeToVariantTime, CountsDaysFromTheEndOf1899) {
  EXPECT_EQ(ToVariant(Time(1899, 12, 30)), 0.0);
  EXPECT_EQ(ToVariant(Time(1900, 1, 1)), 2.0);
  EXPECT_EQ(ToVariant(Time(2003, 12, 31, 18)), 37986.75);
  EXPECT_EQ(ToVariant(Time(4501, 1, 1)), 949998.0);
  EXPECT_EQ(ToVariant(Time(100, 1, 1)), -657434.0);
  EXPECT_EQ(ToVariant(Time(9999, 12, 31)), 2958465.0);
}

TEST(SystemTimeToVariantTime, TheTimeOfDayGrowsAwayFromZero) {
  EXPECT_EQ(ToVariant(Time(1899, 12, 30, 6)), 0.25);
  EXPECT_EQ(ToVariant(Time(1899, 12, 29)), -1.0);
  EXPECT_EQ(ToVariant(Time(1899, 12, 29, 6)), -1.25);
}

TEST(SystemTimeToVariantTime, LeavesMillisecondsOut) {
  EXPECT_EQ(ToVariant(Time(2003, 12, 31, 18, 0, 0, 999)), 37986.75);
}

TEST(SystemTimeToVariantTime, ImpossibleFieldsAndYearsFailAndLeaveTheResultAlone) {
  double date = 77;
  for (const SYSTEMTIME& time : kImpossible) {
    SetLastError(0);
    EXPECT_EQ(SystemTimeToVariantTime(&time, &date), 0) << ::testing::PrintToString(time);
    EXPECT_EQ(GetLastError(), kErrorInvalidParameter);
  }
  for (const SYSTEMTIME& time : {Time(99, 12, 31), Time(0, 1, 1), Time(10000, 1, 1)}) {
    EXPECT_EQ(SystemTimeToVariantTime(&time, &date), 0) << ::testing::PrintToString(time);
  }
  EXPECT_EQ(date, 77);
}

TEST(VariantTimeToSystemTime, GivesEveryFieldBack) {
  EXPECT_EQ(FromVariant(37986.75), Time(2003, 12, 31, 18, 0, 0, 0, 3));
  EXPECT_EQ(FromVariant(0), Time(1899, 12, 30, 0, 0, 0, 0, 6));
  EXPECT_EQ(FromVariant(-1.25), Time(1899, 12, 29, 6, 0, 0, 0, 5));
  EXPECT_EQ(FromVariant(-0.25), Time(1899, 12, 30, 6, 0, 0, 0, 6));
}

TEST(VariantTimeToSystemTime, RoundsToTheSecondAlsoIntoTheNextDay) {
  EXPECT_EQ(FromVariant(37986 + 0.6 / 86400), Time(2003, 12, 31, 0, 0, 1, 0, 3));
  EXPECT_EQ(FromVariant(37986 + 0.4 / 86400), Time(2003, 12, 31, 0, 0, 0, 0, 3));
  EXPECT_EQ(FromVariant(37987 - 0.4 / 86400), Time(2004, 1, 1, 0, 0, 0, 0, 4));
  EXPECT_EQ(FromVariant(-1.9999999), Time(1899, 12, 30, 0, 0, 0, 0, 6));
}

TEST(VariantTimeToSystemTime, OutsideOfTheYears100To9999ItFails) {
  SYSTEMTIME time = Time(1, 2, 3);
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double date : {-657435.0, 2958466.0, 2958466.0 - 0.4 / 86400, 1e300, -1e300, infinity,
                            -infinity, std::nan("")}) {
    SetLastError(0);
    EXPECT_EQ(VariantTimeToSystemTime(date, &time), 0) << date;
    EXPECT_EQ(GetLastError(), kErrorInvalidParameter);
  }
  EXPECT_EQ(time, Time(1, 2, 3));
  EXPECT_EQ(FromVariant(-657434.75), Time(100, 1, 1, 18, 0, 0, 0, 5));
  EXPECT_EQ(FromVariant(2958465.75), Time(9999, 12, 31, 18, 0, 0, 0, 5));
}

TEST(VariantTimeToSystemTime, EveryDayComesBackAtItsFirstAndItsLastSecond) {
  for (std::int32_t day = -657434; day <= 2958465; day += 61) {
    for (const double fraction : {0.0, 86399.0 / 86400}) {
      const double date = day < 0 ? day - fraction : day + fraction;
      EXPECT_EQ(ToVariant(FromVariant(date)), date);
    }
  }
}

TEST(VariantTimeToSystemTime, EverySecondOfADayComesBack) {
  for (unsigned second = 0; second < 86400; second += 7) {
    for (const unsigned year : {1850U, 2003U, 9999U}) {
      const SYSTEMTIME time = Time(year, 12, 31, second / 3600, second / 60 % 60, second % 60);
      SYSTEMTIME again = FromVariant(ToVariant(time));
      again.wDayOfWeek = 0;
      EXPECT_EQ(again, time);
    }
  }
}

}  // namespace
}  // namespace tamu::platform
