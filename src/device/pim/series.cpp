#include "device/pim/series.h"

#include <algorithm>

#include "device/pim/local_date.h"

namespace tamu::device {

PatternRule RuleOf(const RecurrenceRecord& pattern) noexcept {
  return {.type = pattern.type,
          .interval = pattern.interval,
          .day_of_week_mask = pattern.day_of_week_mask,
          .day_of_month = pattern.day_of_month,
          .instance = pattern.instance,
          .month_of_year = pattern.month_of_year,
          .start_day = DayOf(pattern.pattern_start)};
}

void CompleteEnd(RecurrenceRecord* pattern, PutEnd put) noexcept {
  const bool has_date = pattern->pattern_end != platform::kNoDate;
  if (!has_date && pattern->occurrences < 1) pattern->no_end = true;
  if (pattern->no_end) {
    pattern->occurrences = 0;
    pattern->pattern_end = platform::kNoDate;
    return;
  }
  const PatternRule rule = RuleOf(*pattern);
  if (put == PutEnd::kCount || !has_date) {
    const std::optional<std::int32_t> last = LastOfCount(rule, pattern->occurrences);
    pattern->pattern_end = last ? static_cast<double>(*last) : platform::kNoDate;
  } else {
    pattern->occurrences = CountUntil(rule, DayOf(pattern->pattern_end));
  }
}

bool HappensOn(const RecurrenceRecord& pattern, std::int32_t day) noexcept {
  if (!pattern.no_end && day > DayOf(pattern.pattern_end)) return false;
  return IsOccurrence(RuleOf(pattern), day);
}

std::optional<std::int32_t> NextAfter(const RecurrenceRecord& pattern, std::int32_t day) noexcept {
  const Occurrences occurrences(RuleOf(pattern));
  const std::optional<std::int32_t> next = occurrences.At(occurrences.CountUntil(day));
  if (next && !pattern.no_end && *next > DayOf(pattern.pattern_end)) return std::nullopt;
  return next;
}

const ExceptionRecord* ExceptionOn(const ItemRecord& item, std::int32_t day) noexcept {
  const auto found = std::find_if(
      item.exceptions.begin(), item.exceptions.end(),
      [day](const ExceptionRecord& exception) { return DayOf(exception.original_start) == day; });
  return found == item.exceptions.end() ? nullptr : &*found;
}

void DropStrayExceptions(ItemRecord* item) noexcept {
  if (!item->recurrence) {
    item->exceptions.clear();
    return;
  }
  const RecurrenceRecord& pattern = *item->recurrence;
  std::erase_if(item->exceptions, [&pattern](const ExceptionRecord& exception) {
    return !HappensOn(pattern, DayOf(exception.original_start));
  });
  for (ExceptionRecord& exception : item->exceptions) {
    exception.original_start = JoinDate(DayOf(exception.original_start), pattern.start_time);
  }
}

void SetException(ItemRecord* item, const ExceptionRecord& exception) {
  const std::int32_t day = DayOf(exception.original_start);
  const auto place = std::find_if(
      item->exceptions.begin(), item->exceptions.end(),
      [day](const ExceptionRecord& other) { return DayOf(other.original_start) >= day; });
  if (place != item->exceptions.end() && DayOf(place->original_start) == day) {
    *place = exception;
  } else {
    item->exceptions.insert(place, exception);
  }
}

}  // namespace tamu::device
