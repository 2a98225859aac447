// device/pim/occurrences.h - the days on which a store's recurrence pattern happens.
//   All of a pattern's days lie on a grid (every n days, the same weekdays of every n weeks, one day
//   of every n months), so that any of them is computed, not walked to; only the end of the series,
//   its times and its exceptions are left to the callers.
//   Units      days are whole days since 30 December 1899, local; weeks begin on Sunday.
//   Range      1 January 100 to 31 December 9999, as the stores' dates have it: no series goes
//              beyond, and one that would start outside never happens.
//   Errors     none: any values can be asked for; a rule that makes no sense never happens.
#ifndef TAMU_DEVICE_PIM_OCCURRENCES_H_
#define TAMU_DEVICE_PIM_OCCURRENCES_H_

#include <cstdint>
#include <optional>

namespace tamu::device {

// The store's numbers of the ways to recur; other numbers never happen. "By position" is the n-th of
// the mask's days in the month, the mask's days counted together: Monday to Friday with instance 1
// is the month's first working day.
enum PatternType : std::int32_t {
  kPatternDaily = 0,
  kPatternWeekly = 1,
  kPatternMonthlyByDay = 2,
  kPatternMonthlyByPosition = 3,
  kPatternYearlyByDay = 5,
  kPatternYearlyByPosition = 6,
};

// The first and the last day that can be an occurrence.
inline constexpr std::int32_t kFirstPatternDay = -657434;
inline constexpr std::int32_t kLastPatternDay = 2958465;

// When something recurs. A field that its type does not use is not looked at. The start day itself
// occurs only when the rule gives it; the rule's days before it do not occur.
struct PatternRule {
  std::int32_t type = kPatternDaily;
  // Days, weeks or months from one occurrence to the next, counted from the start's day, week or
  // month; below 1 never happens. Not used by yearly patterns, nor by daily ones with a mask.
  std::int32_t interval = 1;
  // Sunday 1, Monday 2 to Saturday 64, added; other bits name no day. Used by daily and weekly
  // patterns and by position. A daily pattern with a mask that is not 0 is every day of the mask,
  // of all weeks; everywhere else a mask without a day never happens.
  std::int32_t day_of_week_mask = 0;
  // 1 is the first day, -1 the last; one beyond the month's end is its last day, one before its
  // beginning its first; 0 never happens.
  std::int32_t day_of_month = 0;
  // 1 to 4 from the beginning of the month, 5 and more are the last; below 1 never happens.
  std::int32_t instance = 0;
  // 1 to 12, of yearly patterns; others never happen.
  std::int32_t month_of_year = 0;
  std::int32_t start_day = 0;

  friend bool operator==(const PatternRule&, const PatternRule&) = default;
};

// The occurrences of a rule in their order, to walk along or to look into; every call takes the same
// few steps wherever in the series it looks. Keeps no reference to the rule.
class Occurrences {
 public:
  explicit Occurrences(const PatternRule& rule) noexcept;

  // The next day of the walk, which begins with the first occurrence; nothing behind the last one.
  [[nodiscard]] std::optional<std::int32_t> Next() noexcept;

  // How many there are up to the last possible day; 0 for a rule that never happens.
  [[nodiscard]] std::int32_t Count() const noexcept { return CountUntil(kLastPatternDay); }
  // How many there are up to this day and on it.
  [[nodiscard]] std::int32_t CountUntil(std::int32_t day) const noexcept;
  // The day of the occurrence with this number, from 0; nothing when there is none.
  [[nodiscard]] std::optional<std::int32_t> At(std::int32_t index) const noexcept;
  // True when the day is one of them.
  [[nodiscard]] bool Contains(std::int32_t day) const noexcept;

 private:
  enum class Grid : std::uint8_t { kNone, kDays, kWeeks, kMonths };

  void SetDays(const PatternRule& rule) noexcept;
  void SetWeeks(const PatternRule& rule, std::int32_t interval) noexcept;
  void SetMonths(const PatternRule& rule) noexcept;
  [[nodiscard]] std::int64_t DayOfWeeks(std::int64_t index) const noexcept;
  [[nodiscard]] std::int64_t DayInMonth(std::int64_t month) const noexcept;
  [[nodiscard]] std::int64_t CountWeeksUntil(std::int64_t day) const noexcept;
  [[nodiscard]] std::int64_t CountMonthsUntil(std::int64_t day) const noexcept;

  Grid grid_ = Grid::kNone;
  bool by_position_ = false;
  std::int32_t start_day_ = 0;
  std::uint32_t mask_ = 0;     // Sunday is bit 0
  std::int32_t in_month_ = 0;  // the day of the month, or the instance
  std::int64_t first_ = 0;     // the grid's first day, Sunday or month (since the year 0)
  std::int64_t step_ = 1;      // in days, weeks or months
  std::int64_t skipped_ = 0;   // days of the mask in the first week that lie before the start
  std::int32_t walked_ = 0;
};

// True when the rule happens on this day.
[[nodiscard]] bool IsOccurrence(const PatternRule& rule, std::int32_t day) noexcept;

// The day on which a series of so many occurrences ends, or the last possible one when there are
// fewer; nothing for a count below 1 and for a rule that never happens.
[[nodiscard]] std::optional<std::int32_t> LastOfCount(const PatternRule& rule,
                                                      std::int32_t count) noexcept;

// How many occurrences a series has that ends with this day.
[[nodiscard]] std::int32_t CountUntil(const PatternRule& rule, std::int32_t end_day) noexcept;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_PIM_OCCURRENCES_H_
