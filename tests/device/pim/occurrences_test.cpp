#include "device/pim/occurrences.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "device/pim/occurrences_support.h"

namespace tamu::device {
namespace {

using testing::DateText;
using testing::Day;
using testing::kEveryDay;
using testing::kFriday;
using testing::kMonday;
using testing::kSaturday;
using testing::kSunday;
using testing::kThursday;
using testing::kTuesday;
using testing::kWednesday;
using testing::kWorkdays;

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

PatternRule Daily(std::int32_t interval, std::int32_t start) {
  return {.type = kPatternDaily, .interval = interval, .start_day = start};
}
PatternRule DailyOn(std::int32_t mask, std::int32_t interval, std::int32_t start) {
  return {
      .type = kPatternDaily, .interval = interval, .day_of_week_mask = mask, .start_day = start};
}
PatternRule Weekly(std::int32_t interval, std::int32_t mask, std::int32_t start) {
  return {
      .type = kPatternWeekly, .interval = interval, .day_of_week_mask = mask, .start_day = start};
}
PatternRule MonthlyDay(std::int32_t interval, std::int32_t day, std::int32_t start) {
  return {
      .type = kPatternMonthlyByDay, .interval = interval, .day_of_month = day, .start_day = start};
}
PatternRule MonthlyNth(std::int32_t interval, std::int32_t instance, std::int32_t mask,
                       std::int32_t start) {
  return {.type = kPatternMonthlyByPosition,
          .interval = interval,
          .day_of_week_mask = mask,
          .instance = instance,
          .start_day = start};
}
PatternRule YearlyDay(std::int32_t month, std::int32_t day, std::int32_t start) {
  return {
      .type = kPatternYearlyByDay, .day_of_month = day, .month_of_year = month, .start_day = start};
}
PatternRule YearlyNth(std::int32_t month, std::int32_t instance, std::int32_t mask,
                      std::int32_t start) {
  return {.type = kPatternYearlyByPosition,
          .day_of_week_mask = mask,
          .instance = instance,
          .month_of_year = month,
          .start_day = start};
}
PatternRule WithInterval(PatternRule rule, std::int32_t interval) {
  rule.interval = interval;
  return rule;
}

struct NamedCase {
  const char* name;
  PatternRule rule;
  std::vector<std::string> first;  // the first occurrences
};

void PrintTo(const NamedCase& named, std::ostream* out) { PrintTo(named.rule, out); }

std::string CaseName(const ::testing::TestParamInfo<NamedCase>& info) { return info.param.name; }

class OccurrencesOf : public ::testing::TestWithParam<NamedCase> {};

TEST_P(OccurrencesOf, AreThese) {
  Occurrences occurrences(GetParam().rule);
  std::vector<std::string> found;
  while (found.size() < GetParam().first.size()) {
    const auto day = occurrences.Next();
    if (!day) break;
    found.push_back(DateText(*day));
  }
  EXPECT_EQ(found, GetParam().first);
}

// 1 January 2023 was a Sunday.
INSTANTIATE_TEST_SUITE_P(
    DailyAndWeekly, OccurrencesOf,
    ::testing::Values(NamedCase{"EveryDay",
                                Daily(1, Day(2023, 2, 27)),
                                {"2023-02-27", "2023-02-28", "2023-03-01"}},
                      NamedCase{"EveryThirdDay",
                                Daily(3, Day(2024, 2, 26)),
                                {"2024-02-26", "2024-02-29", "2024-03-03"}},
                      NamedCase{"DaysBeforeDayZero",
                                Daily(2, Day(1899, 12, 27)),
                                {"1899-12-27", "1899-12-29", "1899-12-31", "1900-01-02"}},
                      NamedCase{"EveryWorkday",
                                DailyOn(kWorkdays, 1, Day(2023, 1, 5)),
                                {"2023-01-05", "2023-01-06", "2023-01-09"}},
                      NamedCase{"AMaskOverridesTheDailyInterval",
                                DailyOn(kWorkdays, 9, Day(2023, 1, 7)),
                                {"2023-01-09", "2023-01-10", "2023-01-11"}},
                      NamedCase{"AMaskNeedsNoDailyInterval",
                                DailyOn(kSunday, 0, Day(2023, 1, 1)),
                                {"2023-01-01", "2023-01-08"}},
                      NamedCase{"EveryWeek",
                                Weekly(1, kMonday | kFriday, Day(2023, 1, 4)),
                                {"2023-01-06", "2023-01-09", "2023-01-13"}},
                      NamedCase{"SundayBeginsTheWeek",
                                Weekly(2, kSunday | kMonday, Day(2023, 1, 2)),
                                {"2023-01-02", "2023-01-15", "2023-01-16", "2023-01-29"}},
                      NamedCase{"SaturdayEndsTheWeek",
                                Weekly(2, kSunday | kSaturday, Day(2023, 1, 7)),
                                {"2023-01-07", "2023-01-15", "2023-01-21", "2023-01-29"}},
                      NamedCase{"AFirstWeekWithNothingLeftCountsAsAWeek",
                                Weekly(3, kMonday, Day(2023, 1, 3)),
                                {"2023-01-23", "2023-02-13"}},
                      NamedCase{"WeeksBeforeDayZero",
                                Weekly(1, kSaturday | kThursday, Day(1899, 12, 24)),
                                {"1899-12-28", "1899-12-30", "1900-01-04"}},
                      NamedCase{"BitsBeyondSaturdayNameNoDay",
                                Weekly(1, 0x7FFFFF80 | kTuesday, Day(2023, 1, 1)),
                                {"2023-01-03", "2023-01-10"}},
                      NamedCase{"ANegativeMaskIsItsBits",
                                Weekly(1, -1, Day(2023, 1, 6)),
                                {"2023-01-06", "2023-01-07", "2023-01-08"}}),
    CaseName);

INSTANTIATE_TEST_SUITE_P(
    Monthly, OccurrencesOf,
    ::testing::Values(NamedCase{"ByDay",
                                MonthlyDay(1, 15, Day(2023, 1, 15)),
                                {"2023-01-15", "2023-02-15", "2023-03-15"}},
                      NamedCase{"ByDayThatHasPassed",
                                MonthlyDay(1, 15, Day(2023, 1, 16)),
                                {"2023-02-15", "2023-03-15"}},
                      NamedCase{"ByDayThatHasPassedCountsAsAMonth",
                                MonthlyDay(5, 15, Day(2023, 1, 16)),
                                {"2023-06-15", "2023-11-15", "2024-04-15"}},
                      NamedCase{"ByDayPastTheEnd",
                                MonthlyDay(1, 31, Day(2023, 1, 31)),
                                {"2023-01-31", "2023-02-28", "2023-03-31", "2023-04-30"}},
                      NamedCase{"ByDayPastTheEndOfALeapFebruary",
                                MonthlyDay(12, 30, Day(2023, 2, 28)),
                                {"2023-02-28", "2024-02-29", "2025-02-28"}},
                      NamedCase{"ByDayPastEveryEnd",
                                MonthlyDay(1, kMost, Day(2023, 1, 1)),
                                {"2023-01-31", "2023-02-28"}},
                      NamedCase{"ByLastDay",
                                MonthlyDay(1, -1, Day(2024, 1, 31)),
                                {"2024-01-31", "2024-02-29", "2024-03-31"}},
                      NamedCase{"ByDayBeforeTheLast",
                                MonthlyDay(2, -2, Day(2024, 2, 29)),
                                {"2024-04-29", "2024-06-29"}},
                      NamedCase{"ByDayBeforeTheBeginning",
                                MonthlyDay(1, -30, Day(2023, 1, 1)),
                                {"2023-01-02", "2023-02-01", "2023-03-02", "2023-04-01"}},
                      NamedCase{"ByDayBeforeEveryBeginning",
                                MonthlyDay(1, kLeast, Day(2023, 1, 2)),
                                {"2023-02-01", "2023-03-01"}},
                      NamedCase{"BySecondTuesday",
                                MonthlyNth(1, 2, kTuesday, Day(2023, 1, 1)),
                                {"2023-01-10", "2023-02-14", "2023-03-14"}},
                      NamedCase{"ByFirstWorkday",
                                MonthlyNth(1, 1, kWorkdays, Day(2023, 1, 1)),
                                {"2023-01-02", "2023-02-01", "2023-03-01", "2023-04-03"}},
                      NamedCase{"ByThirdDayOfAWeekend",
                                MonthlyNth(1, 3, kSunday | kSaturday, Day(2023, 1, 1)),
                                {"2023-01-08", "2023-02-11", "2023-03-11", "2023-04-08"}},
                      NamedCase{"ByFourthDay",
                                MonthlyNth(1, 4, kEveryDay, Day(2023, 1, 5)),
                                {"2023-02-04", "2023-03-04"}},
                      NamedCase{"ByLastFriday",
                                MonthlyNth(1, 5, kFriday, Day(2023, 1, 1)),
                                {"2023-01-27", "2023-02-24", "2023-03-31"}},
                      NamedCase{"ByLastWorkday",
                                MonthlyNth(1, 5, kWorkdays, Day(2023, 4, 29)),
                                {"2023-05-31", "2023-06-30", "2023-07-31"}},
                      NamedCase{"ByAnyHigherInstanceAsTheLast",
                                MonthlyNth(2, kMost, kEveryDay, Day(2023, 1, 1)),
                                {"2023-01-31", "2023-03-31"}},
                      NamedCase{"ByPositionThatHasPassed",
                                MonthlyNth(2, 1, kSunday, Day(2023, 1, 2)),
                                {"2023-03-05", "2023-05-07"}}),
    CaseName);

INSTANTIATE_TEST_SUITE_P(
    Yearly, OccurrencesOf,
    ::testing::Values(
        NamedCase{"ByDay", YearlyDay(7, 4, Day(2023, 7, 4)), {"2023-07-04", "2024-07-04"}},
        NamedCase{
            "ByDayOfALaterMonth", YearlyDay(12, 24, Day(2023, 7, 4)), {"2023-12-24", "2024-12-24"}},
        NamedCase{"ByDayOfAnEarlierMonth",
                  YearlyDay(1, 24, Day(2023, 7, 4)),
                  {"2024-01-24", "2025-01-24"}},
        NamedCase{"ByDayIgnoresTheInterval",
                  WithInterval(YearlyDay(7, 4, Day(2023, 7, 5)), 0),
                  {"2024-07-04", "2025-07-04"}},
        NamedCase{"ByLeapDay",
                  YearlyDay(2, 29, Day(2023, 3, 1)),
                  {"2024-02-29", "2025-02-28", "2026-02-28", "2027-02-28", "2028-02-29"}},
        NamedCase{"ByLeapDayOfACentury",
                  YearlyDay(2, 29, Day(2099, 1, 1)),
                  {"2099-02-28", "2100-02-28", "2101-02-28"}},
        NamedCase{
            "ByLastDayOfFebruary", YearlyDay(2, -1, Day(1999, 1, 1)), {"1999-02-28", "2000-02-29"}},
        NamedCase{"ByFourthThursday",
                  YearlyNth(11, 4, kThursday, Day(2023, 1, 1)),
                  {"2023-11-23", "2024-11-28"}},
        NamedCase{"ByLastMonday",
                  YearlyNth(5, 5, kMonday, Day(2023, 5, 30)),
                  {"2024-05-27", "2025-05-26"}},
        NamedCase{"ByPositionIgnoresTheInterval",
                  WithInterval(YearlyNth(5, 1, kWednesday, Day(2023, 1, 1)), 4),
                  {"2023-05-03", "2024-05-01"}}),
    CaseName);

class OccurrencesNever : public ::testing::TestWithParam<NamedCase> {};

TEST_P(OccurrencesNever, Happen) {
  const PatternRule& rule = GetParam().rule;
  EXPECT_EQ(Occurrences(rule).Next(), std::nullopt);
  EXPECT_EQ(Occurrences(rule).Count(), 0);
  EXPECT_EQ(LastOfCount(rule, 1), std::nullopt);
  EXPECT_EQ(CountUntil(rule, kMost), 0);
  EXPECT_FALSE(IsOccurrence(rule, rule.start_day));
}

constexpr std::int32_t kStart = Day(2023, 1, 1);

INSTANTIATE_TEST_SUITE_P(
    Rules, OccurrencesNever,
    ::testing::Values(NamedCase{"OfDailyIntervalZero", Daily(0, kStart), {}},
                      NamedCase{"OfNegativeDailyInterval", Daily(-1, kStart), {}},
                      NamedCase{"OfDailyMaskWithoutADay", DailyOn(128, 1, kStart), {}},
                      NamedCase{"OfWeeklyIntervalZero", Weekly(0, kSunday, kStart), {}},
                      NamedCase{"OfEmptyWeeklyMask", Weekly(1, 0, kStart), {}},
                      NamedCase{"OfWeeklyMaskWithoutADay", Weekly(1, 256, kStart), {}},
                      NamedCase{"OfMonthlyIntervalZero", MonthlyDay(0, 1, kStart), {}},
                      NamedCase{"OfNegativeMonthlyInterval", MonthlyNth(-2, 1, 1, kStart), {}},
                      NamedCase{"OfDayZero", MonthlyDay(1, 0, kStart), {}},
                      NamedCase{"OfInstanceZero", MonthlyNth(1, 0, kSunday, kStart), {}},
                      NamedCase{"OfNegativeInstance", MonthlyNth(1, -1, kSunday, kStart), {}},
                      NamedCase{"OfEmptyPositionMask", MonthlyNth(1, 1, 0, kStart), {}},
                      NamedCase{"OfMonthZero", YearlyDay(0, 1, kStart), {}},
                      NamedCase{"OfMonthThirteen", YearlyNth(13, 1, kSunday, kStart), {}},
                      NamedCase{"OfYearlyDayZero", YearlyDay(1, 0, kStart), {}},
                      NamedCase{"OfUnknownType", PatternRule{.type = 4, .start_day = kStart}, {}},
                      NamedCase{"OfNoType", PatternRule{.type = -1, .start_day = kStart}, {}},
                      NamedCase{"OfStartBeforeTheFirstDay", Daily(1, kFirstPatternDay - 1), {}},
                      NamedCase{"OfStartBehindTheLastDay", Daily(1, kLastPatternDay + 1), {}}),
    CaseName);

TEST(Occurrences, BeginWithTheFirstDay) {
  EXPECT_EQ(Occurrences(Daily(1, kFirstPatternDay)).Next(), kFirstPatternDay);
  EXPECT_EQ(DateText(*Occurrences(Weekly(1, kSunday, kFirstPatternDay)).Next()), "0100-01-03");
  EXPECT_EQ(Occurrences(MonthlyDay(1, 1, kFirstPatternDay)).Next(), kFirstPatternDay);
  EXPECT_EQ(Occurrences(YearlyDay(1, 1, kFirstPatternDay)).Next(), kFirstPatternDay);
}

TEST(Occurrences, MillionsAreCounted) {
  const PatternRule rule = Daily(1, kFirstPatternDay);
  EXPECT_EQ(Occurrences(rule).Count(), kLastPatternDay - kFirstPatternDay + 1);
  EXPECT_EQ(LastOfCount(rule, 3'000'000), kFirstPatternDay + 2'999'999);
  EXPECT_EQ(LastOfCount(rule, 4'000'000), kLastPatternDay);
}

// Were they walked to, this would take days.
TEST(Occurrences, DistantDaysTakeNoLonger) {
  const PatternRule rules[] = {Daily(1, kFirstPatternDay), Weekly(1, kEveryDay, kFirstPatternDay),
                               MonthlyDay(1, 31, kFirstPatternDay),
                               YearlyNth(12, 5, kEveryDay, kFirstPatternDay)};
  for (int round = 0; round < 50'000; ++round) {
    for (const PatternRule& rule : rules) {
      ASSERT_TRUE(IsOccurrence(rule, kLastPatternDay));
      ASSERT_EQ(LastOfCount(rule, CountUntil(rule, kLastPatternDay)), kLastPatternDay);
    }
  }
}

TEST(LastOfCount, NothingForCountsBelowOne) {
  EXPECT_EQ(LastOfCount(Daily(1, kStart), 0), std::nullopt);
  EXPECT_EQ(LastOfCount(Daily(1, kStart), -1), std::nullopt);
  EXPECT_EQ(LastOfCount(Daily(1, kStart), kLeast), std::nullopt);
}

TEST(LastOfCount, AStartThatDoesNotFitIsNotCounted) {
  EXPECT_EQ(LastOfCount(Weekly(1, kMonday, Day(2023, 1, 3)), 2), Day(2023, 1, 16));
}

TEST(CountUntil, TheEndIsIncluded) {
  const PatternRule rule = Weekly(1, kMonday, Day(2023, 1, 3));
  EXPECT_EQ(CountUntil(rule, Day(2023, 1, 8)), 0);
  EXPECT_EQ(CountUntil(rule, Day(2023, 1, 9)), 1);
  EXPECT_EQ(CountUntil(rule, Day(2023, 1, 15)), 1);
  EXPECT_EQ(CountUntil(rule, Day(2023, 1, 16)), 2);
}

TEST(CountUntil, NothingBeforeTheStart) {
  EXPECT_EQ(CountUntil(Daily(1, kStart), kStart - 1), 0);
  EXPECT_EQ(CountUntil(Daily(1, kStart), kLeast), 0);
}

}  // namespace
}  // namespace tamu::device
