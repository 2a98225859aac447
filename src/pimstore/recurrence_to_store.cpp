#include <array>

#include "core/log.h"
#include "pimstore/recurrence_map.h"
#include "recurrence/rule.h"
#include "recurrence/rule_parser.h"
#include "text/date.h"

namespace tamu {
namespace {

using platform::IRecurrencePattern;

// A parsed rule that frees itself.
class ParsedRule {
 public:
  ParsedRule() noexcept = default;
  ~ParsedRule() { ERG_Free(&rule_); }
  ParsedRule(const ParsedRule&) = delete;
  ParsedRule& operator=(const ParsedRule&) = delete;
  [[nodiscard]] ErgRule* get() noexcept { return &rule_; }

 private:
  ErgRule rule_{};
};

std::int32_t WeekdayBit(std::int32_t weekday) noexcept {
  return weekday >= 1 && weekday <= 7 ? 1 << (weekday - 1) : 0;
}

std::int32_t MaskOf(const ErgNumber* weekdays) noexcept {
  std::int32_t mask = 0;
  for (; weekdays != nullptr; weekdays = weekdays->next) mask |= WeekdayBit(weekdays->value);
  return mask;
}

std::int32_t MaskOf(const ErgWeekdayEntry* entry) noexcept {
  std::int32_t mask = 0;
  for (; entry != nullptr; entry = entry->next) {
    mask |= WeekdayBit(entry->weekday) | MaskOf(entry->more_weekdays);
  }
  return mask;
}

// The store counts the occurrences of a weekday in a month from 1 to 5, the last; a rule also
// backwards from -1.
std::int32_t InstanceOf(std::int32_t occurrence) noexcept {
  if (occurrence >= 1 && occurrence <= 5) return occurrence;
  if (occurrence >= -5 && occurrence <= -1) return occurrence + 6;
  return 0;
}

struct MonthDay {
  std::int32_t month;
  std::int32_t day;
};

// The day of a year whose February has 28 days; what is past November is in December.
MonthDay MonthDayOf(std::int32_t day_of_year) noexcept {
  constexpr std::array<std::int32_t, 11> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30};
  MonthDay result{1, day_of_year};
  for (const std::int32_t days : kDays) {
    if (result.day <= days) break;
    result.day -= days;
    ++result.month;
  }
  return result;
}

void PutPosition(IRecurrencePattern* pattern, const ErgPositionGroup& group) {
  pattern->put_Instance(InstanceOf(group.occurrence.value));
  pattern->put_DayOfWeekMask(MaskOf(&group.weekday));
}

bool PutYearlyByMonth(IRecurrencePattern* pattern, const ErgView& rule) {
  const ErgView nested = ERG_ViewNested(rule);
  if (rule.numbers == nullptr) return false;
  if (nested.kind == kErgMonthlyByPos && nested.groups != nullptr) {
    pattern->put_RecurrenceType(platform::kRecursYearlyNth);
    pattern->put_DayOfWeekMask(MaskOf(&nested.groups->weekday));
    pattern->put_Instance(InstanceOf(nested.groups->occurrence.value));
    pattern->put_MonthOfYear(rule.numbers->value);
    return true;
  }
  if (nested.kind == kErgMonthlyByDay && nested.numbers != nullptr) {
    pattern->put_RecurrenceType(platform::kRecursYearly);
    pattern->put_MonthOfYear(rule.numbers->value);
    pattern->put_DayOfMonth(nested.numbers->value);
    return true;
  }
  return false;
}

bool PutYearlyByDay(IRecurrencePattern* pattern, const ErgView& rule) {
  if (rule.numbers == nullptr) return false;
  const MonthDay day = MonthDayOf(rule.numbers->value);
  pattern->put_RecurrenceType(platform::kRecursYearly);
  pattern->put_MonthOfYear(day.month);
  pattern->put_DayOfMonth(day.day);
  return true;
}

void PutTypeAndInterval(IRecurrencePattern* pattern, std::int32_t type, const ErgView& rule) {
  pattern->put_RecurrenceType(type);
  pattern->put_Interval(rule.interval);
}

// False, with nothing put, when the store has no pattern for the rule.
bool PutRule(IRecurrencePattern* pattern, const ErgView& rule) {
  switch (rule.kind) {
    case kErgDaily:
      PutTypeAndInterval(pattern, platform::kRecursDaily, rule);
      return true;
    case kErgWeekly:
      if (rule.entries == nullptr) return false;
      PutTypeAndInterval(pattern, platform::kRecursWeekly, rule);
      pattern->put_DayOfWeekMask(MaskOf(rule.entries));
      return true;
    case kErgMonthlyByPos:
      if (rule.groups == nullptr) return false;
      PutTypeAndInterval(pattern, platform::kRecursMonthlyNth, rule);
      PutPosition(pattern, *rule.groups);
      return true;
    case kErgMonthlyByDay:
      if (rule.numbers == nullptr) return false;
      PutTypeAndInterval(pattern, platform::kRecursMonthly, rule);
      pattern->put_DayOfMonth(rule.numbers->value);
      return true;
    case kErgYearlyByMonth:
      return PutYearlyByMonth(pattern, rule);
    case kErgYearlyByDay:
      return PutYearlyByDay(pattern, rule);
    default:
      return true;
  }
}

// Minutes, and no rule at all, leave the pattern alone.
bool HasPattern(ErgKind kind) noexcept { return kind >= kErgDaily && kind <= kErgYearlyByDay; }

void PutEnd(IRecurrencePattern* pattern, std::int32_t duration, const ErgRule& rule) {
  const std::string_view end_date = ERG_EndDate(rule);
  if (duration == 0) {
    pattern->put_NoEndDate(platform::kVariantTrue);
  } else if (end_date.empty()) {
    pattern->put_Occurrences(duration);
  } else {
    std::array<char, kErgEndDateLength + 1> text{};
    end_date.copy(text.data(), text.size() - 1);
    pattern->put_PatternEndDate(DATE_FromIso8601(text.data()).days);
  }
}

}  // namespace

RuleTranslation RecurrenceToStore(IRecurrencePattern* pattern, const char* rule_text) noexcept {
  ParsedRule rule;
  const TamuResult result = ERG_Parse(rule_text, rule.get());
  if (result != TAMU_OK) {
    LOG_Error("TAMU:  ERG_Parse failed (code=%d)", result);
    return RuleTranslation::kUnreadable;
  }
  const ErgView first = ERG_View(rule.get()->kind, rule.get()->node);
  if (!PutRule(pattern, first)) {
    LOG_Info("TAMU:  The Extended Rule Grammar could not be translated to an");
    LOG_Info("       Outlook Recurrence pattern. Item will be sent as One-time.");
    return RuleTranslation::kNotExpressible;
  }
  if (HasPattern(first.kind)) PutEnd(pattern, first.duration, *rule.get());
  return RuleTranslation::kDone;
}

}  // namespace tamu
