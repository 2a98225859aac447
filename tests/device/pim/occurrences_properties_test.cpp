// Occurrences beside the plain meaning of their rules, and their answers beside one another.
#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "device/pim/occurrences.h"
#include "device/pim/occurrences_support.h"

namespace tamu::device {
namespace {

using testing::Date;
using testing::DateText;
using testing::Day;
using testing::Dice;
using testing::RandomRule;

constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

bool IsByPosition(const PatternRule& rule) {
  return rule.type == kPatternMonthlyByPosition || rule.type == kPatternYearlyByPosition;
}
bool IsYearly(const PatternRule& rule) {
  return rule.type == kPatternYearlyByDay || rule.type == kPatternYearlyByPosition;
}

constexpr std::int32_t kSomeSunday = Day(2023, 1, 1);

bool IsOnMask(const PatternRule& rule, std::int32_t day) {
  const std::int32_t weekday = ((day - kSomeSunday) % 7 + 7) % 7;
  return (rule.day_of_week_mask >> weekday & 1) != 0;
}

std::int32_t SundaysAfter(std::int32_t start, std::int32_t day) {
  std::int32_t count = 0;
  for (; day > start; --day) {
    if ((day - kSomeSunday) % 7 == 0) ++count;
  }
  return count;
}

bool IsMonthOf(const PatternRule& rule, std::int32_t day) {
  const auto date = Date(day);
  if (IsYearly(rule)) {
    return date.month() == std::chrono::month{static_cast<unsigned>(rule.month_of_year)};
  }
  const auto start = Date(rule.start_day);
  const auto months = date.year() / date.month() - start.year() / start.month();
  return months.count() % rule.interval == 0;
}

// All days of the month that can be meant are listed and counted.
bool IsDayOfMonth(const PatternRule& rule, std::int32_t day) {
  const auto date = Date(day);
  std::vector<std::int32_t> listed;
  for (std::int32_t other = day - static_cast<std::int32_t>(static_cast<unsigned>(date.day())) + 1;
       Date(other).month() == date.month(); ++other) {
    if (!IsByPosition(rule) || IsOnMask(rule, other)) listed.push_back(other);
  }
  const auto size = static_cast<std::int32_t>(listed.size());
  std::int32_t number = IsByPosition(rule) ? rule.instance : rule.day_of_month;
  if (number < 0) number = number < -size ? 1 : size + 1 + number;
  if (number > size || (IsByPosition(rule) && number == 5)) number = size;
  return listed[static_cast<std::size_t>(number - 1)] == day;
}

// What happens on a day, told by the rule's meaning alone. For rules that do happen.
bool HappensOn(const PatternRule& rule, std::int32_t day) {
  if (day < rule.start_day || day > kLastPatternDay) return false;
  switch (rule.type) {
    case kPatternDaily:
      return rule.day_of_week_mask != 0 ? IsOnMask(rule, day)
                                        : (day - rule.start_day) % rule.interval == 0;
    case kPatternWeekly:
      return SundaysAfter(rule.start_day, day) % rule.interval == 0 && IsOnMask(rule, day);
    default:
      return IsMonthOf(rule, day) && IsDayOfMonth(rule, day);
  }
}

TEST(IsOccurrence, AgreesWithTheWalkAndTheMeaningOnEveryDay) {
  Dice dice(11);
  for (int pattern = 0; pattern < 400; ++pattern) {
    const PatternRule rule = RandomRule(dice, Day(1890, 1, 1), Day(2110, 1, 1));
    Occurrences occurrences(rule);
    auto next = occurrences.Next();
    std::int32_t count = 0;
    for (std::int32_t day = rule.start_day - 40; day < rule.start_day + 800; ++day) {
      const bool happens = HappensOn(rule, day);
      ASSERT_EQ(IsOccurrence(rule, day), happens)
          << ::testing::PrintToString(rule) << DateText(day);
      ASSERT_EQ(next == day, happens) << ::testing::PrintToString(rule) << DateText(day);
      if (happens) {
        next = occurrences.Next();
        ASSERT_EQ(LastOfCount(rule, ++count), day) << ::testing::PrintToString(rule);
      }
      ASSERT_EQ(CountUntil(rule, day), count) << ::testing::PrintToString(rule) << DateText(day);
    }
  }
}

TEST(IsOccurrence, LongIntervalsAgreeWithTheMeaning) {
  Dice dice(12);
  for (int pattern = 0; pattern < 400; ++pattern) {
    PatternRule rule = RandomRule(dice, kFirstPatternDay, Day(2110, 1, 1));
    rule.interval = dice.Between(1, 999);
    Occurrences occurrences(rule);
    const auto first = occurrences.Next();
    const auto second = occurrences.Next();
    ASSERT_TRUE(first && second);
    for (const std::int32_t day :
         {*first - 1, *first, *first + 1, *second - 1, *second, *second + 1}) {
      EXPECT_EQ(IsOccurrence(rule, day), HappensOn(rule, day))
          << ::testing::PrintToString(rule) << DateText(day);
    }
  }
}

TEST(Occurrences, EndWithTheLastDay) {
  Dice dice(13);
  for (int pattern = 0; pattern < 400; ++pattern) {
    const PatternRule rule = RandomRule(dice, Day(9996, 1, 1), kLastPatternDay);
    Occurrences occurrences(rule);
    std::int32_t count = 0;
    std::optional<std::int32_t> last;
    for (std::int32_t day = rule.start_day; day <= kLastPatternDay; ++day) {
      if (!HappensOn(rule, day)) continue;
      last = day;
      ++count;
      ASSERT_EQ(occurrences.Next(), day) << ::testing::PrintToString(rule);
    }
    EXPECT_EQ(occurrences.Next(), std::nullopt) << ::testing::PrintToString(rule);
    EXPECT_EQ(occurrences.Next(), std::nullopt) << ::testing::PrintToString(rule);
    EXPECT_EQ(occurrences.Count(), count) << ::testing::PrintToString(rule);
    EXPECT_EQ(LastOfCount(rule, kMost), last) << ::testing::PrintToString(rule);
  }
}

constexpr std::int32_t kExtremes[] = {
    // A field's own limits, those of the days, and what a field may mean.
    kLeast, kLeast + 1, kMost / 7, kMost - 1, kMost,
    //
    kFirstPatternDay - 1, kFirstPatternDay, kLastPatternDay - 1, kLastPatternDay,
    kLastPatternDay + 1,
    //
    -32, -31, -7, -1, 0, 1, 2, 3, 4, 5, 6, 7, 12, 13, 28, 31, 127, 128, 45000, 1'000'000};

// Under a sanitizer this also shows that nothing overflows.
TEST(Occurrences, AnyValuesKeepTheAnswersInStep) {
  Dice dice(14);
  int happening = 0;
  for (int pattern = 0; pattern < 100'000; ++pattern) {
    const PatternRule rule = {dice.Between(0, 9) == 0 ? dice.Of(kExtremes) : dice.Between(0, 6),
                              dice.Of(kExtremes),
                              dice.Of(kExtremes),
                              dice.Of(kExtremes),
                              dice.Of(kExtremes),
                              dice.Of(kExtremes),
                              dice.Of(kExtremes)};
    SCOPED_TRACE(::testing::PrintToString(rule));
    Occurrences occurrences(rule);
    const std::int32_t count = occurrences.Count();
    ASSERT_GE(count, 0);
    ASSERT_EQ(occurrences.At(count), std::nullopt);
    ASSERT_EQ(occurrences.At(kMost), std::nullopt);
    ASSERT_EQ(occurrences.At(kLeast), std::nullopt);
    ASSERT_EQ(occurrences.Next(), occurrences.At(0));
    ASSERT_EQ(LastOfCount(rule, kMost), occurrences.At(count - 1));
    ASSERT_EQ(CountUntil(rule, kMost), count);
    for (const std::int32_t index : {0, 1, count / 2, count - 1}) {
      const auto day = occurrences.At(index);
      ASSERT_EQ(day.has_value(), index >= 0 && index < count);
      if (!day) continue;
      ++happening;
      ASSERT_GE(*day, rule.start_day);
      ASSERT_LE(*day, kLastPatternDay);
      ASSERT_EQ(CountUntil(rule, *day), index + 1);
      ASSERT_EQ(CountUntil(rule, *day - 1), index);
      ASSERT_TRUE(IsOccurrence(rule, *day));
    }
    const std::int32_t day = dice.Of(kExtremes);
    const std::int32_t until = CountUntil(rule, day);
    ASSERT_TRUE(until >= 0 && until <= count);
    ASSERT_EQ(IsOccurrence(rule, day), until > 0 && occurrences.At(until - 1) == day);
  }
  EXPECT_GT(happening, 10'000);
}

}  // namespace
}  // namespace tamu::device
