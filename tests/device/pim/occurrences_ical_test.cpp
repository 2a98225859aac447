// Occurrences beside those that libical finds for the same rule in RFC 5545's words.
#include <gtest/gtest.h>
#include <libical/ical.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "device/pim/occurrences_support.h"

namespace tamu::device {
namespace {

using testing::DateText;
using testing::Day;
using testing::Dice;
using testing::RandomRule;

// libical looks no further than 2582.
constexpr std::int32_t kFirstStart = Day(1600, 1, 1);
constexpr std::int32_t kLastStart = Day(2400, 12, 31);
constexpr std::int32_t kLastCompared = Day(2581, 12, 31);
constexpr std::size_t kMostCompared = 60;

std::string ByDay(std::int32_t mask) {
  constexpr const char* kNames[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
  std::string text;
  for (unsigned weekday = 0; weekday < 7; ++weekday) {
    if ((mask >> weekday & 1) == 0) continue;
    text += text.empty() ? ";BYDAY=" : ",";
    text += kNames[weekday];
  }
  return text;
}

// A day that not every month has is the last, or the first, of those that every month has and the
// further ones up to it.
std::string ByMonthDay(std::int32_t number) {
  const std::int32_t distance = std::min(std::abs(number), 31);
  const std::string sign = number < 0 ? "-" : "";
  std::string text = ";BYMONTHDAY=" + sign + std::to_string(std::min(distance, 28));
  for (std::int32_t day = 29; day <= distance; ++day) text += "," + sign + std::to_string(day);
  if (distance > 28) text += number < 0 ? ";BYSETPOS=1" : ";BYSETPOS=-1";
  return text;
}

std::string ByPosition(const PatternRule& rule) {
  return ByDay(rule.day_of_week_mask) +
         ";BYSETPOS=" + std::to_string(rule.instance == 5 ? -1 : rule.instance);
}

std::string RuleText(const PatternRule& rule) {
  const std::string interval = ";WKST=SU;INTERVAL=" + std::to_string(rule.interval);
  const std::string month = ";WKST=SU;BYMONTH=" + std::to_string(rule.month_of_year);
  switch (rule.type) {
    case kPatternDaily:
      if (rule.day_of_week_mask == 0) return "FREQ=DAILY" + interval;
      return "FREQ=DAILY" + ByDay(rule.day_of_week_mask);
    case kPatternWeekly:
      return "FREQ=WEEKLY" + interval + ByDay(rule.day_of_week_mask);
    case kPatternMonthlyByDay:
      return "FREQ=MONTHLY" + interval + ByMonthDay(rule.day_of_month);
    case kPatternMonthlyByPosition:
      return "FREQ=MONTHLY" + interval + ByPosition(rule);
    case kPatternYearlyByDay:
      return "FREQ=YEARLY" + month + ByMonthDay(rule.day_of_month);
    default:
      return "FREQ=YEARLY" + month + ByPosition(rule);
  }
}

struct FreeIterator {
  void operator()(icalrecur_iterator* iterator) const { icalrecur_iterator_free(iterator); }
};
using IteratorPtr = std::unique_ptr<icalrecur_iterator, FreeIterator>;

std::vector<std::string> IcalDays(const std::string& text, std::int32_t start_day) {
  std::string start = DateText(start_day);
  std::erase(start, '-');
  icaltimetype time = icaltime_from_string(start.c_str());
  const IteratorPtr iterator(
      icalrecur_iterator_new(icalrecurrencetype_from_string(text.c_str()), time));
  std::vector<std::string> found;
  if (!iterator) return {"no iterator"};
  while (found.size() < kMostCompared) {
    time = icalrecur_iterator_next(iterator.get());
    if (icaltime_is_null_time(time)) break;
    const std::int32_t day =
        Day(time.year, static_cast<unsigned>(time.month), static_cast<unsigned>(time.day));
    if (day > kLastCompared) break;
    found.push_back(DateText(day));
  }
  return found;
}

std::vector<std::string> OurDays(const PatternRule& rule) {
  Occurrences occurrences(rule);
  std::vector<std::string> found;
  while (found.size() < kMostCompared) {
    const auto day = occurrences.Next();
    if (!day || *day > kLastCompared) break;
    found.push_back(DateText(*day));
  }
  return found;
}

void CompareRandomRules(std::uint32_t seed, int patterns, std::int32_t type) {
  Dice dice(seed);
  for (int pattern = 0; pattern < patterns;) {
    const PatternRule rule = RandomRule(dice, kFirstStart, kLastStart);
    if (rule.type != type) continue;
    ++pattern;
    const std::string text = RuleText(rule);
    const std::vector<std::string> ours = OurDays(rule);
    ASSERT_FALSE(ours.empty()) << text;
    ASSERT_EQ(ours, IcalDays(text, rule.start_day)) << text << " from " << DateText(rule.start_day);
  }
}

constexpr int kPatterns = 1000;

TEST(OccurrencesBesideIcal, DailyPatternsAgree) { CompareRandomRules(1, kPatterns, kPatternDaily); }
TEST(OccurrencesBesideIcal, WeeklyPatternsAgree) {
  CompareRandomRules(2, kPatterns, kPatternWeekly);
}
TEST(OccurrencesBesideIcal, MonthlyPatternsByDayAgree) {
  CompareRandomRules(3, kPatterns, kPatternMonthlyByDay);
}
TEST(OccurrencesBesideIcal, MonthlyPatternsByPositionAgree) {
  CompareRandomRules(4, kPatterns, kPatternMonthlyByPosition);
}
TEST(OccurrencesBesideIcal, YearlyPatternsByDayAgree) {
  CompareRandomRules(5, kPatterns, kPatternYearlyByDay);
}
TEST(OccurrencesBesideIcal, YearlyPatternsByPositionAgree) {
  CompareRandomRules(6, kPatterns, kPatternYearlyByPosition);
}

}  // namespace
}  // namespace tamu::device
