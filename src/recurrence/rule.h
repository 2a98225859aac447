// recurrence/rule.h - the tree of a vCalendar 1.0 recurrence rule, between its text and the stores.
//   A rule is a chain of nodes: one frequency with its items, and perhaps a finer one nested in it.
//   Units      intervals count in the kind's own unit (minutes, days, weeks, months, years); times
//              are local hours and minutes; weekdays are 1 (Sunday) to 7 (Saturday).
//   Ownership  nodes come from MEM_New and belong to the root; the root belongs to the caller.
//   Errors     none here; see rule_parser.h and rule_generator.h.
#ifndef TAMU_RECURRENCE_RULE_H_
#define TAMU_RECURRENCE_RULE_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tamu {

// What a node is; 0 is no rule at all.
using ErgKind = std::uint32_t;
inline constexpr ErgKind kErgNone = 0;
inline constexpr ErgKind kErgMinutely = 1;
inline constexpr ErgKind kErgDaily = 2;
inline constexpr ErgKind kErgWeekly = 3;
inline constexpr ErgKind kErgMonthlyByPos = 4;
inline constexpr ErgKind kErgMonthlyByDay = 5;
inline constexpr ErgKind kErgYearlyByMonth = 6;
inline constexpr ErgKind kErgYearlyByDay = 7;

struct ErgKindRow {
  ErgKind kind;
  std::string_view prefix;  // of the frequency in a rule's text
  ErgKind max_nested;       // kinds 1 to this may be nested in it
};
// In the order of the kinds, from 1.
inline constexpr std::array<ErgKindRow, 7> kErgKinds = {{
    {kErgMinutely, "M", kErgNone},
    {kErgDaily, "D", kErgMinutely},
    {kErgWeekly, "W", kErgMinutely},
    {kErgMonthlyByPos, "MP", kErgWeekly},
    {kErgMonthlyByDay, "MD", kErgWeekly},
    {kErgYearlyByMonth, "YM", kErgMonthlyByDay},
    {kErgYearlyByDay, "YD", kErgMonthlyByDay},
}};

// The names of weekdays 1 to 7 in a rule's text.
inline constexpr std::array<std::string_view, 7> kErgWeekdayNames = {"SU", "MO", "TU", "WE",
                                                                     "TH", "FR", "SA"};

// What a rule's text means that gives no count, and the count that is never written.
inline constexpr std::int32_t kErgDefaultDuration = 2;

// In lists below, `end_marker` is 1 for an item with a "$" directly behind it: the last one that is
// to happen, even within an unfinished round.

struct ErgTime {
  std::int32_t hour;
  std::int32_t minute;
  std::uint8_t end_marker;
  ErgTime* next;
};

// A day number, a month, an occurrence, or a weekday of a position group.
struct ErgNumber {
  std::int32_t value;
  std::uint8_t end_marker;
  ErgNumber* next;
};

struct ErgWeekdayEntry {
  std::int32_t weekday;
  std::uint8_t end_marker;
  ErgNumber* more_weekdays;  // that share the times; never filled by the parser
  ErgTime* times;
  ErgWeekdayEntry* next;
};

// "1+ 2- MO FR 0900": occurrences of weekdays, the first of each held here.
struct ErgPositionGroup {
  ErgNumber occurrence;  // negative counts from the end of the month
  ErgNumber weekday;     // 0 when there is none
  ErgTime* times;
  ErgPositionGroup* next;
};

// Nodes. A duration is how often the rule applies: 0 is for ever.

struct ErgMinutely {
  std::int32_t interval;
  std::int32_t duration;
};

struct ErgDaily {
  std::int32_t interval;
  ErgTime* times;
  std::int32_t duration;
  ErgMinutely* nested;
};

struct ErgWeekly {
  std::int32_t interval;
  ErgWeekdayEntry* entries;
  std::int32_t duration;
  ErgMinutely* nested;
};

struct ErgMonthlyByPos {
  std::int32_t interval;
  ErgPositionGroup* groups;
  std::int32_t duration;
  ErgKind nested_kind;
  void* nested;
};

struct ErgMonthlyByDay {
  std::int32_t interval;
  ErgNumber* numbers;  // days of the month; negative counts from its end, -1 is the last day
  std::int32_t duration;
  ErgKind nested_kind;
  void* nested;
};

struct ErgYearlyByMonth {
  std::int32_t interval;
  ErgNumber* numbers;  // months
  std::int32_t duration;
  ErgKind nested_kind;
  void* nested;
};

struct ErgYearlyByDay {
  std::int32_t interval;
  ErgNumber* numbers;  // days of the year
  std::int32_t duration;
  ErgKind nested_kind;
  void* nested;
};

// The longest end date that fits a root.
inline constexpr std::size_t kErgEndDateLength = 19;

// The root. A rule whose bytes are all zero is empty.
struct ErgRule {
  ErgKind kind;
  void* node;                            // its type follows the kind
  char end_date[kErgEndDateLength + 1];  // as it stood in the text, "" when there is none
};

// Frees the tree below the root and leaves the root without one. Kind 0 and unknown kinds own
// nothing.
void ERG_Free(ErgRule* rule) noexcept;

// A node of any kind; the lists that its kind does not have are null.
struct ErgView {
  ErgKind kind = kErgNone;
  std::int32_t interval = 0;
  std::int32_t duration = 0;
  ErgTime* times = nullptr;
  ErgWeekdayEntry* entries = nullptr;
  ErgPositionGroup* groups = nullptr;
  ErgNumber* numbers = nullptr;
  ErgKind nested_kind = kErgNone;
  void* nested = nullptr;
};

// The node as a view: kind 0 when the kind is unknown or there is no node. Never owns anything.
[[nodiscard]] ErgView ERG_View(ErgKind kind, void* node) noexcept;

// What is nested in a node, where its kind allows it; else kind 0. Walks a tree from its root in a
// loop.
[[nodiscard]] ErgView ERG_ViewNested(const ErgView& view) noexcept;

// The end date without terminator, also of a field that is full.
[[nodiscard]] std::string_view ERG_EndDate(const ErgRule& rule) noexcept;

// The text name of a weekday; "" outside 1 to 7.
[[nodiscard]] constexpr std::string_view ERG_WeekdayName(std::int32_t weekday) noexcept {
  return weekday >= 1 && weekday <= 7 ? kErgWeekdayNames[static_cast<std::size_t>(weekday - 1)]
                                      : std::string_view();
}

// True when both rules say the same, node by node and item by item, end dates included.
[[nodiscard]] bool ERG_Equal(const ErgRule& a, const ErgRule& b) noexcept;

}  // namespace tamu

#endif  // TAMU_RECURRENCE_RULE_H_
