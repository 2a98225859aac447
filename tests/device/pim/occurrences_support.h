// device/pim/occurrences_support.h - days, rules and their random variety, for the tests of
// occurrences.
#ifndef TAMU_TESTS_DEVICE_PIM_OCCURRENCES_SUPPORT_H_
#define TAMU_TESTS_DEVICE_PIM_OCCURRENCES_SUPPORT_H_

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <ostream>
#include <random>
#include <string>

#include "device/pim/occurrences.h"

namespace tamu::device {

// For the messages of failed tests.
inline void PrintTo(const PatternRule& rule, std::ostream* out) {
  *out << "type " << rule.type << ", interval " << rule.interval << ", mask "
       << rule.day_of_week_mask << ", day " << rule.day_of_month << ", instance " << rule.instance
       << ", month " << rule.month_of_year << ", start " << rule.start_day;
}

namespace testing {

inline constexpr std::int32_t kSunday = 1;
inline constexpr std::int32_t kMonday = 2;
inline constexpr std::int32_t kTuesday = 4;
inline constexpr std::int32_t kWednesday = 8;
inline constexpr std::int32_t kThursday = 16;
inline constexpr std::int32_t kFriday = 32;
inline constexpr std::int32_t kSaturday = 64;
inline constexpr std::int32_t kWorkdays = 62;
inline constexpr std::int32_t kEveryDay = 127;

inline constexpr std::chrono::sys_days kDayZero = std::chrono::year{1899} / 12 / 30;

constexpr std::int32_t Day(int year, unsigned month, unsigned day) {
  const std::chrono::sys_days date =
      std::chrono::year{year} / std::chrono::month{month} / std::chrono::day{day};
  return static_cast<std::int32_t>((date - kDayZero).count());
}

constexpr std::chrono::year_month_day Date(std::int32_t day) {
  return kDayZero + std::chrono::days{day};
}

inline std::string DateText(std::int32_t day) {
  const auto date = Date(day);
  char text[32];
  std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
  return text;
}

// The same numbers in every run.
class Dice {
 public:
  explicit Dice(std::uint32_t seed) : engine_(seed) {}

  std::int32_t Between(std::int32_t least, std::int32_t most) {
    const auto count = static_cast<std::uint32_t>(most - least) + 1;
    return least + static_cast<std::int32_t>(engine_() % count);
  }

  template <typename List>
  auto Of(const List& list) {
    return list[engine_() % std::size(list)];
  }

 private:
  std::mt19937 engine_;
};

// A rule as a user might make it, and that does happen: every type and all of its fields' values,
// with a start between the days.
inline PatternRule RandomRule(Dice& dice, std::int32_t first_start, std::int32_t last_start) {
  constexpr std::int32_t kTypes[] = {kPatternDaily,        kPatternWeekly,
                                     kPatternMonthlyByDay, kPatternMonthlyByPosition,
                                     kPatternYearlyByDay,  kPatternYearlyByPosition};
  PatternRule rule;
  rule.type = dice.Of(kTypes);
  rule.interval = dice.Between(0, 3) == 0 ? dice.Between(1, 60) : dice.Between(1, 4);
  rule.day_of_week_mask = dice.Between(1, kEveryDay);
  if (rule.type == kPatternDaily && dice.Between(0, 1) == 0) rule.day_of_week_mask = 0;
  do {
    rule.day_of_month = dice.Between(0, 2) == 0 ? dice.Between(27, 32) : dice.Between(-33, 32);
  } while (rule.day_of_month == 0);
  rule.instance = dice.Between(1, 5);
  rule.month_of_year = dice.Between(0, 3) == 0 ? 2 : dice.Between(1, 12);
  rule.start_day = dice.Between(first_start, last_start);
  return rule;
}

}  // namespace testing
}  // namespace tamu::device

#endif  // TAMU_TESTS_DEVICE_PIM_OCCURRENCES_SUPPORT_H_
