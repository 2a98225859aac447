#include "recurrence/rule_words.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <new>
#include <string_view>
#include <vector>

namespace tamu {
namespace {

struct FrequencyWords {
  std::string_view unit;
  std::string_view adverb;  // where the interval is not one
};
constexpr std::array<FrequencyWords, kErgKinds.size()> kFrequencies = {{
    {"minute", "minutely"},
    {"day", "daily"},
    {"week", "weekly"},
    {"month", "monthly"},
    {"month", "monthly"},
    {"year", "yearly"},
    {"year", "yearly"},
}};

constexpr std::array<std::string_view, 7> kWeekdays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                       "Thursday", "Friday", "Saturday"};

constexpr std::array<std::string_view, 12> kMonths = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

using Words = std::vector<std::string>;

// "a", "a and b", "a, b and c".
std::string Join(const Words& words) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i != 0) text += i + 1 == words.size() ? " and " : ", ";
    text += words[i];
  }
  return text;
}

std::string_view MarkerWords(std::uint8_t end_marker) {
  return end_marker != 0 ? " (end marker)" : "";
}

// "1st", "2nd", "11th".
std::string Ordinal(std::int64_t number) {
  std::string_view ending = "th";
  if (number % 100 < 11 || number % 100 > 13) {
    if (number % 10 == 1) ending = "st";
    if (number % 10 == 2) ending = "nd";
    if (number % 10 == 3) ending = "rd";
  }
  return std::to_string(number).append(ending);
}

// "2nd", "last", "2nd last".
std::string Place(std::int32_t value) {
  if (value == -1) return "last";
  return value < 0 ? Ordinal(-std::int64_t{value}) + " last" : Ordinal(value);
}

std::string TwoDigits(std::int32_t number) {
  const std::string digits = std::to_string(number);
  return digits.size() < 2 ? "0" + digits : digits;
}

std::string AtTimes(const ErgTime* time) {
  Words words;
  for (; time != nullptr; time = time->next) {
    words.push_back(TwoDigits(time->hour) + ":" + TwoDigits(time->minute));
    words.back() += MarkerWords(time->end_marker);
  }
  return words.empty() ? "" : " at " + Join(words);
}

void AddWeekday(std::int32_t weekday, std::uint8_t end_marker, Words* words) {
  if (ERG_WeekdayName(weekday).empty()) return;
  words->emplace_back(kWeekdays[static_cast<std::size_t>(weekday - 1)]);
  words->back() += MarkerWords(end_marker);
}

// "on Monday and Friday"; where days have times of their own, "on Monday at 09:00 and on Friday".
std::string OnEntries(const ErgWeekdayEntry* entry) {
  bool timed = false;
  for (const ErgWeekdayEntry* any = entry; any != nullptr; any = any->next) {
    timed = timed || any->times != nullptr;
  }
  Words words;
  for (; entry != nullptr; entry = entry->next) {
    Words days;
    AddWeekday(entry->weekday, entry->end_marker, &days);
    for (const ErgNumber* more = entry->more_weekdays; more != nullptr; more = more->next) {
      AddWeekday(more->value, more->end_marker, &days);
    }
    if (!timed) {
      words.insert(words.end(), days.begin(), days.end());
    } else if (!days.empty()) {
      words.push_back("on " + Join(days) + AtTimes(entry->times));
    }
  }
  if (words.empty()) return "";
  return (timed ? " " : " on ") + Join(words);
}

// "on the 1st and last Monday and on the 2nd Friday at 09:00".
std::string OnGroups(const ErgPositionGroup* group) {
  Words words;
  for (; group != nullptr; group = group->next) {
    Words places;
    for (const ErgNumber* place = &group->occurrence; place != nullptr; place = place->next) {
      places.push_back(Place(place->value));
      places.back() += MarkerWords(place->end_marker);
    }
    Words days;
    for (const ErgNumber* day = &group->weekday; day != nullptr; day = day->next) {
      AddWeekday(day->value, day->end_marker, &days);
    }
    words.push_back("on the " + Join(places) + " " +
                    (days.empty() ? "of a weekday that is not given" : Join(days)) +
                    AtTimes(group->times));
  }
  return words.empty() ? "" : " " + Join(words);
}

// "on day 1", "on days 1 and 15", "on day 1 and the last day".
std::string OnDays(const ErgNumber* number) {
  bool counted_from_end = false;
  for (const ErgNumber* any = number; any != nullptr; any = any->next) {
    counted_from_end = counted_from_end || any->value < 0;
  }
  Words words;
  for (; number != nullptr; number = number->next) {
    std::string word = number->value < 0  ? "the " + Place(number->value) + " day"
                       : counted_from_end ? "day " + std::to_string(number->value)
                                          : std::to_string(number->value);
    word += MarkerWords(number->end_marker);
    words.push_back(std::move(word));
  }
  if (words.empty()) return "";
  if (counted_from_end) return " on " + Join(words);
  return (words.size() == 1 ? " on day " : " on days ") + Join(words);
}

std::string InMonths(const ErgNumber* number) {
  Words words;
  for (; number != nullptr; number = number->next) {
    const bool named = number->value >= 1 && number->value <= 12;
    words.push_back(named ? std::string(kMonths[static_cast<std::size_t>(number->value - 1)])
                          : "month " + std::to_string(number->value));
    words.back() += MarkerWords(number->end_marker);
  }
  return words.empty() ? "" : " in " + Join(words);
}

std::string Items(const ErgView& view) {
  switch (view.kind) {
    case kErgDaily:
      return AtTimes(view.times);
    case kErgWeekly:
      return OnEntries(view.entries);
    case kErgMonthlyByPos:
      return OnGroups(view.groups);
    case kErgMonthlyByDay:
      return OnDays(view.numbers);
    case kErgYearlyByMonth:
      return InMonths(view.numbers);
    case kErgYearlyByDay:
      return view.numbers != nullptr ? OnDays(view.numbers) + " of the year" : "";
    default:
      return "";
  }
}

// "every week", "every 2 weeks"; "weekly (interval 0)".
std::string Every(const ErgView& view) {
  const FrequencyWords& words = kFrequencies[view.kind - 1];
  if (view.interval == 1) return "every " + std::string(words.unit);
  const std::string interval = std::to_string(view.interval);
  if (view.interval > 1) return "every " + interval + " " + std::string(words.unit) + "s";
  return std::string(words.adverb) + " (interval " + interval + ")";
}

std::string Times(std::int32_t duration) {
  if (duration == 0) return "forever";
  if (duration == 1) return "once";
  if (duration < 0) return "with a count of " + std::to_string(duration);
  return std::to_string(duration) + " times";
}

// Takes digits off the front of the text; -1 when there are not that many.
int TakeDigits(std::string_view* text, std::size_t count) {
  int number = 0;
  const char* const end = text->data() + (count <= text->size() ? count : 0);
  const std::from_chars_result result = std::from_chars(text->data(), end, number);
  if (result.ec != std::errc() || result.ptr != end || text->front() == '-') return -1;
  text->remove_prefix(count);
  return number;
}

// "31 December 2003", "31 December 2003 23:59 UTC"; in quotes when it is no date.
std::string EndDateWords(std::string_view text) {
  const std::string quoted = '"' + std::string(text) + '"';
  const int year = TakeDigits(&text, 4);
  const int month = TakeDigits(&text, 2);
  const int day = TakeDigits(&text, 2);
  if (!text.starts_with('T')) return quoted;
  text.remove_prefix(1);
  const int hour = TakeDigits(&text, 2);
  const int minute = TakeDigits(&text, 2);
  const int second = TakeDigits(&text, 2);
  const bool utc = text == "Z";
  const bool whole = year >= 0 && month >= 1 && day >= 1 && hour >= 0 && minute >= 0 && second >= 0;
  if (!whole || (!utc && !text.empty()) || hour > 23 || minute > 59 || second > 59) return quoted;
  const std::chrono::year_month_day date(std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day)));
  if (!date.ok()) return quoted;
  std::string words = std::to_string(day) + " ";
  words += kMonths[static_cast<std::size_t>(month - 1)];
  words += " " + std::to_string(year);
  if (hour != 0 || minute != 0 || second != 0) {
    words += " " + TwoDigits(hour) + ":" + TwoDigits(minute);
    if (second != 0) words += ":" + TwoDigits(second);
  }
  return utc ? words + " UTC" : words;
}

std::string Ending(const ErgView& view, std::string_view end_date) {
  if (end_date.empty()) return (view.duration == 0 ? " " : ", ") + Times(view.duration);
  const std::string until = "until " + EndDateWords(end_date);
  if (view.duration == kErgDefaultDuration) return " " + until;
  if (view.duration == 0) return " forever, or " + until;
  return ", " + Times(view.duration) + " or " + until;
}

std::string NestedEnding(const ErgView& view) {
  if (view.duration == kErgDefaultDuration && view.kind != kErgMinutely) return "";
  return Ending(view, {});
}

template <typename Item>
std::int64_t Count(const Item* item) {
  std::int64_t count = 0;
  for (; item != nullptr; item = item->next) ++count;
  return count;
}

// How many dates of one month the items of a monthly rule name.
std::int64_t DatesAMonth(const ErgView& view) {
  std::int64_t dates = Count(view.numbers);
  for (const ErgPositionGroup* group = view.groups; group != nullptr; group = group->next) {
    dates += Count(&group->occurrence) * Count(&group->weekday);
  }
  return dates;
}

// A month's days within a yearly rule's months read as one: "every year in March on day 1".
bool ReadsAsOne(const ErgView& outer, const ErgView& inner) {
  if (outer.kind != kErgYearlyByMonth || outer.numbers == nullptr) return false;
  if (inner.kind != kErgMonthlyByDay && inner.kind != kErgMonthlyByPos) return false;
  const std::int64_t dates = DatesAMonth(inner);
  return dates != 0 && inner.interval == 1 && ERG_ViewNested(inner).kind == kErgNone &&
         (inner.duration == kErgDefaultDuration || inner.duration == dates);
}

std::string DescribeNodes(ErgView view, std::string_view end_date) {
  std::string text;
  for (bool nested = false; view.kind != kErgNone; nested = true) {
    ErgView inner = ERG_ViewNested(view);
    if (nested) text += "; each time ";
    text += Every(view) + Items(view);
    const bool one = ReadsAsOne(view, inner);
    if (one) text += Items(inner);
    text += nested ? NestedEnding(view) : Ending(view, end_date);
    view = one ? ERG_ViewNested(inner) : inner;
  }
  return text;
}

std::string Describe(const ErgRule& rule) {
  const std::string_view end_date = ERG_EndDate(rule);
  const ErgView top = ERG_View(rule.kind, rule.node);
  if (top.kind != kErgNone) return DescribeNodes(top, end_date);
  std::string text = "no repetition";
  if (rule.kind > kErgKinds.size()) {
    text = "a repetition of an unknown kind";
  } else if (rule.kind != kErgNone) {
    text = std::string(kFrequencies[rule.kind - 1].adverb) + ", with nothing more known";
  }
  return end_date.empty() ? text : text + " until " + EndDateWords(end_date);
}

}  // namespace

std::string ERG_Describe(const ErgRule& rule) noexcept {
  try {
    return Describe(rule);
  } catch (const std::bad_alloc&) {
    return {};
  }
}

}  // namespace tamu
