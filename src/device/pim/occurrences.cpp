#include "device/pim/occurrences.h"

#include <algorithm>
#include <bit>
#include <chrono>

namespace tamu::device {
namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month;
using std::chrono::year_month_day;
using std::chrono::year_month_day_last;

constexpr std::int64_t kDaysPerWeek = 7;
constexpr std::int64_t kMonthsPerYear = 12;
constexpr std::uint32_t kWholeWeek = 0x7F;
constexpr std::int32_t kLastInstance = 5;

constexpr sys_days kDayZero = std::chrono::year{1899} / std::chrono::December / 30;

constexpr std::int64_t DayNumber(sys_days day) { return (day - kDayZero).count(); }
constexpr sys_days CivilDay(std::int64_t day) { return kDayZero + days{day}; }

static_assert(DayNumber(std::chrono::year{100} / 1 / 1) == kFirstPatternDay);
static_assert(DayNumber(std::chrono::year{9999} / 12 / 31) == kLastPatternDay);

// 0 is Sunday.
constexpr unsigned Weekday(std::int64_t day) {
  return std::chrono::weekday{CivilDay(day)}.c_encoding();
}

// Months since January of the year 0; all of them are after it.
constexpr std::int64_t MonthNumber(std::int64_t day) {
  const year_month_day date{CivilDay(day)};
  return static_cast<int>(date.year()) * kMonthsPerYear + static_cast<unsigned>(date.month()) - 1;
}
constexpr year_month CivilMonth(std::int64_t month) {
  return std::chrono::year{static_cast<int>(month / kMonthsPerYear)} /
         std::chrono::month{static_cast<unsigned>(month % kMonthsPerYear + 1)};
}

constexpr std::uint32_t WeekdayMask(std::int32_t mask) {
  return static_cast<std::uint32_t>(mask) & kWholeWeek;
}

// The mask's bits below this weekday.
constexpr std::uint32_t Below(std::uint32_t mask, unsigned weekday) {
  return mask & ((1U << weekday) - 1);
}

// The place of the mask's set bit with this number, from 0; the mask has so many.
constexpr std::int64_t PlaceOfBit(std::uint32_t mask, std::int64_t number) {
  for (; number > 0; --number) mask &= mask - 1;
  return std::countr_zero(mask);
}

// The mask seen from this weekday, which becomes bit 0.
constexpr std::uint32_t Rotated(std::uint32_t mask, unsigned weekday) {
  return (mask >> weekday | mask << (kDaysPerWeek - weekday)) & kWholeWeek;
}

// Days 1 to -1 of a month, kept within it.
std::int64_t NumberedDay(std::int32_t number, sys_days first, sys_days last) {
  const std::int64_t begin = DayNumber(first);
  const std::int64_t end = DayNumber(last);
  return number > 0 ? std::min(begin + number - 1, end) : std::max(end + number + 1, begin);
}

// Each weekday comes four times in every month at least, so that there is always one.
std::int64_t PositionedDay(std::uint32_t mask, std::int32_t instance, sys_days first,
                           sys_days last) {
  if (instance >= kLastInstance) {
    const std::int64_t week = DayNumber(last) - (kDaysPerWeek - 1);
    return week + std::bit_width(Rotated(mask, Weekday(week))) - 1;
  }
  const std::int64_t week = DayNumber(first);
  const int in_week = std::popcount(mask);
  const int number = instance - 1;
  return week + number / in_week * kDaysPerWeek +
         PlaceOfBit(Rotated(mask, Weekday(week)), number % in_week);
}

}  // namespace

Occurrences::Occurrences(const PatternRule& rule) noexcept : start_day_(rule.start_day) {
  if (start_day_ < kFirstPatternDay || start_day_ > kLastPatternDay) return;
  switch (rule.type) {
    case kPatternDaily:
      if (rule.day_of_week_mask == 0) {
        SetDays(rule);
      } else {
        SetWeeks(rule, 1);
      }
      break;
    case kPatternWeekly:
      SetWeeks(rule, rule.interval);
      break;
    case kPatternMonthlyByDay:
    case kPatternMonthlyByPosition:
    case kPatternYearlyByDay:
    case kPatternYearlyByPosition:
      SetMonths(rule);
      break;
    default:
      break;
  }
}

void Occurrences::SetDays(const PatternRule& rule) noexcept {
  if (rule.interval < 1) return;
  grid_ = Grid::kDays;
  first_ = rule.start_day;
  step_ = rule.interval;
}

void Occurrences::SetWeeks(const PatternRule& rule, std::int32_t interval) noexcept {
  mask_ = WeekdayMask(rule.day_of_week_mask);
  if (interval < 1 || mask_ == 0) return;
  grid_ = Grid::kWeeks;
  step_ = interval;
  const unsigned weekday = Weekday(rule.start_day);
  first_ = std::int64_t{rule.start_day} - weekday;
  skipped_ = std::popcount(Below(mask_, weekday));
}

void Occurrences::SetMonths(const PatternRule& rule) noexcept {
  const bool yearly = rule.type == kPatternYearlyByDay || rule.type == kPatternYearlyByPosition;
  by_position_ = rule.type == kPatternMonthlyByPosition || rule.type == kPatternYearlyByPosition;
  mask_ = WeekdayMask(rule.day_of_week_mask);
  in_month_ = by_position_ ? rule.instance : rule.day_of_month;
  first_ = MonthNumber(rule.start_day);
  if (by_position_ ? in_month_ < 1 || mask_ == 0 : in_month_ == 0) return;
  if (yearly) {
    if (rule.month_of_year < 1 || rule.month_of_year > kMonthsPerYear) return;
    first_ += rule.month_of_year - 1 - first_ % kMonthsPerYear;
    step_ = kMonthsPerYear;
  } else {
    if (rule.interval < 1) return;
    step_ = rule.interval;
  }
  grid_ = Grid::kMonths;
  if (DayInMonth(first_) < rule.start_day) first_ += step_;
}

std::optional<std::int32_t> Occurrences::Next() noexcept {
  const std::optional<std::int32_t> day = At(walked_);
  if (day) ++walked_;
  return day;
}

std::int32_t Occurrences::CountUntil(std::int32_t day) const noexcept {
  if (day < start_day_) return 0;
  const std::int64_t last = std::min(day, kLastPatternDay);
  std::int64_t count = 0;
  switch (grid_) {
    case Grid::kNone:
      break;
    case Grid::kDays:
      count = (last - first_) / step_ + 1;
      break;
    case Grid::kWeeks:
      count = CountWeeksUntil(last);
      break;
    case Grid::kMonths:
      count = CountMonthsUntil(last);
      break;
  }
  return static_cast<std::int32_t>(count);
}

std::int64_t Occurrences::CountWeeksUntil(std::int64_t day) const noexcept {
  const std::int64_t week = (day - first_) / kDaysPerWeek;
  const std::int64_t in_week = std::popcount(mask_);
  const std::int64_t count = week / step_ * in_week - skipped_;
  if (week % step_ != 0) return count + in_week;
  return count + std::popcount(Below(mask_, Weekday(day) + 1));
}

std::int64_t Occurrences::CountMonthsUntil(std::int64_t day) const noexcept {
  const std::int64_t month = MonthNumber(day);
  if (month < first_) return 0;
  const std::int64_t count = (month - first_) / step_ + 1;
  return (month - first_) % step_ == 0 && DayInMonth(month) > day ? count - 1 : count;
}

std::optional<std::int32_t> Occurrences::At(std::int32_t index) const noexcept {
  // Also keeps what is computed below within the range.
  if (index < 0 || index >= Count()) return std::nullopt;
  std::int64_t day = 0;
  switch (grid_) {
    case Grid::kNone:
      break;
    case Grid::kDays:
      day = first_ + index * step_;
      break;
    case Grid::kWeeks:
      day = DayOfWeeks(index);
      break;
    case Grid::kMonths:
      day = DayInMonth(first_ + index * step_);
      break;
  }
  return static_cast<std::int32_t>(day);
}

std::int64_t Occurrences::DayOfWeeks(std::int64_t index) const noexcept {
  const std::int64_t in_week = std::popcount(mask_);
  const std::int64_t number = index + skipped_;
  return first_ + number / in_week * step_ * kDaysPerWeek + PlaceOfBit(mask_, number % in_week);
}

std::int64_t Occurrences::DayInMonth(std::int64_t month) const noexcept {
  const year_month date = CivilMonth(month);
  const sys_days first = date / 1;
  const sys_days last = date / std::chrono::last;
  return by_position_ ? PositionedDay(mask_, in_month_, first, last)
                      : NumberedDay(in_month_, first, last);
}

bool Occurrences::Contains(std::int32_t day) const noexcept {
  if (grid_ == Grid::kNone || day < start_day_) return false;
  return CountUntil(day) != CountUntil(day - 1);
}

bool IsOccurrence(const PatternRule& rule, std::int32_t day) noexcept {
  return Occurrences(rule).Contains(day);
}

std::optional<std::int32_t> LastOfCount(const PatternRule& rule, std::int32_t count) noexcept {
  if (count < 1) return std::nullopt;
  const Occurrences occurrences(rule);
  return occurrences.At(std::min(count, occurrences.Count()) - 1);
}

std::int32_t CountUntil(const PatternRule& rule, std::int32_t end_day) noexcept {
  return Occurrences(rule).CountUntil(end_day);
}

}  // namespace tamu::device
