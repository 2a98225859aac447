#include "recurrence/rule_parser.h"

#include <array>
#include <cstdint>
#include <iterator>
#include <type_traits>

#include "core/memory.h"
#include "recurrence/rule_tokens.h"

namespace tamu {
namespace {

// What the parser waits for. A token that a state does not take is offered to the state named as
// its `otherwise`, which stands further down: no token is offered to a state twice.
enum class State : std::uint8_t {
  kStart,
  kTimes,
  kEntries,
  kEntryTimes,
  kGroups,
  kGroupOccurrences,
  kGroupWeekdays,
  kGroupTimes,
  kDays,
  kMonths,
  kYearDays,
  kCount,
  kNested,
  kEndDate,
  kMinutely,
  kMinutelyCounted,
  kMinutelyDated,
  kMinutelyFull,
  kDone,
  kError,
};

enum class Action : std::uint8_t {
  kNone,
  kAddNode,
  kAddTime,
  kAddNumber,
  kAddEntry,
  kAddGroup,
  kSetWeekday,
  kAddWeekday,
  kSetDuration,
  kSetEndDate,
};

struct Transition {
  ErgForm form = ErgForm::kNone;
  Action action = Action::kNone;
  State next = State::kError;  // after kAddNode it follows from the kind
};

struct StateRow {
  State state;
  State otherwise;
  std::array<Transition, 3> transitions;
};

using enum State;

constexpr Transition kDate = {ErgForm::kEndDate, Action::kSetEndDate, kDone};
constexpr Transition kNewGroup = {ErgForm::kOccurrence, Action::kAddGroup, kGroupOccurrences};
constexpr Transition kGroupTime = {ErgForm::kTime, Action::kAddTime, kGroupTimes};
constexpr Transition kNewEntry = {ErgForm::kWeekday, Action::kAddEntry, kEntryTimes};

constexpr StateRow kStates[] = {
    {kStart, kError, {{{ErgForm::kFrequency, Action::kAddNode, kError}}}},
    {kTimes, kCount, {{{ErgForm::kTime, Action::kAddTime, kTimes}}}},
    {kEntries, kCount, {{kNewEntry}}},
    {kEntryTimes, kCount, {{{ErgForm::kTime, Action::kAddTime, kEntryTimes}, kNewEntry}}},
    {kGroups, kCount, {{kNewGroup}}},
    {kGroupOccurrences,
     kCount,
     {{{ErgForm::kOccurrence, Action::kAddNumber, kGroupOccurrences},
       {ErgForm::kWeekday, Action::kSetWeekday, kGroupWeekdays},
       kGroupTime}}},
    {kGroupWeekdays,
     kCount,
     {{{ErgForm::kWeekday, Action::kAddWeekday, kGroupWeekdays}, kGroupTime, kNewGroup}}},
    {kGroupTimes, kCount, {{kGroupTime, kNewGroup}}},
    {kDays, kCount, {{{ErgForm::kDay, Action::kAddNumber, kDays}}}},
    {kMonths, kCount, {{{ErgForm::kMonth, Action::kAddNumber, kMonths}}}},
    {kYearDays, kCount, {{{ErgForm::kYearDay, Action::kAddNumber, kYearDays}}}},
    {kCount, kNested, {{{ErgForm::kDuration, Action::kSetDuration, kNested}}}},
    {kNested, kEndDate, {{{ErgForm::kFrequency, Action::kAddNode, kError}}}},
    {kEndDate, kDone, {{kDate}}},
    // A minutely rule alone looks at what stands behind its end date.
    {kMinutely,
     kError,
     {{{ErgForm::kDuration, Action::kSetDuration, kMinutelyCounted},
       {ErgForm::kEndDate, Action::kSetEndDate, kMinutelyDated}}}},
    {kMinutelyCounted, kError, {{{ErgForm::kEndDate, Action::kSetEndDate, kMinutelyFull}}}},
    {kMinutelyDated, kError, {{{ErgForm::kDuration, Action::kSetDuration, kMinutelyFull}}}},
    {kMinutelyFull, kError, {}},
};

constexpr bool StatesLeadOn() {
  for (std::size_t i = 0; i < std::size(kStates); ++i) {
    if (kStates[i].state != static_cast<State>(i)) return false;
    if (kStates[i].otherwise <= kStates[i].state) return false;
  }
  return std::size(kStates) == static_cast<std::size_t>(kDone);
}
static_assert(StatesLeadOn());

// Appends a new, zeroed item at the end of a list that is being built, and moves the end behind it.
template <typename Item>
Item* Append(Item*** end) noexcept {
  Item* const item = MEM_New<Item>().release();
  if (item == nullptr) return nullptr;
  **end = item;
  *end = &item->next;
  return item;
}

class RuleParser {
 public:
  explicit RuleParser(ErgRule* rule) noexcept
      : rule_(rule), nested_kind_(&rule->kind), nested_(&rule->node) {}

  // Reads the text up to where it ends, is ignored, or fails; what follows stays in `*text`.
  TamuResult Read(std::string_view* text) noexcept {
    while (state_ != kDone) {
      std::string_view behind = *text;
      const std::string_view token = TOKEN_Next(&behind);
      if (token.empty()) {
        *text = {};
        if (state_ == kStart) return TAMU_PARSE_ERROR;
        return TAMU_OK;
      }
      const TamuResult result = Take(token);
      if (result != TAMU_OK) return result;
      if (!ignored_) *text = behind;
    }
    return TAMU_OK;
  }

 private:
  TamuResult Take(std::string_view token) noexcept {
    ErgTokenValue value;
    for (State state = state_; state < kDone;) {
      const StateRow& row = kStates[static_cast<std::size_t>(state)];
      for (const Transition& transition : row.transitions) {
        if (transition.form == ErgForm::kNone) break;
        if (!TOKEN_Read(transition.form, token, &value)) continue;
        state_ = transition.next;
        return Act(transition.action, token, value);
      }
      state = row.otherwise;
      if (state == kError) return TAMU_PARSE_ERROR;
    }
    state_ = kDone;
    ignored_ = true;
    return TAMU_OK;
  }

  TamuResult Act(Action action, std::string_view token, const ErgTokenValue& value) noexcept {
    switch (action) {
      case Action::kAddNode:
        if (value.kind > max_nested_) return TAMU_PARSE_ERROR;
        return AllocationResult(AddNode(value));
      case Action::kAddTime:
        return AllocationResult(AddTime(value));
      case Action::kAddNumber:
        return AllocationResult(AddNumber(&numbers_, value));
      case Action::kAddEntry:
        return AllocationResult(AddEntry(value));
      case Action::kAddGroup:
        return AllocationResult(AddGroup(value));
      case Action::kSetWeekday:
        Fill(first_weekday_, value);
        return TAMU_OK;
      case Action::kAddWeekday:
        return AllocationResult(AddNumber(&weekdays_, value));
      case Action::kSetDuration:
        *duration_ = value.number;
        return TAMU_OK;
      case Action::kSetEndDate:
        rule_->end_date[token.copy(rule_->end_date, kErgEndDateLength)] = '\0';
        return TAMU_OK;
      case Action::kNone:
        break;
    }
    return TAMU_PARSE_ERROR;
  }

  static TamuResult AllocationResult(bool done) noexcept {
    if (done) return TAMU_OK;
    return TAMU_OUT_OF_MEMORY;
  }

  static void Fill(ErgNumber* number, const ErgTokenValue& value) noexcept {
    number->value = value.number;
    number->end_marker = value.end_marker;
  }

  bool AddNode(const ErgTokenValue& value) noexcept {
    max_nested_ = kErgKinds[value.kind - 1].max_nested;
    switch (value.kind) {
      case kErgMinutely:
        return AddNodeOf<ErgMinutely>(value, kMinutely);
      case kErgDaily:
        return AddNodeOf<ErgDaily>(value, kTimes);
      case kErgWeekly:
        return AddNodeOf<ErgWeekly>(value, kEntries);
      case kErgMonthlyByPos:
        return AddNodeOf<ErgMonthlyByPos>(value, kGroups);
      case kErgMonthlyByDay:
        return AddNodeOf<ErgMonthlyByDay>(value, kDays);
      case kErgYearlyByMonth:
        return AddNodeOf<ErgYearlyByMonth>(value, kMonths);
      default:
        return AddNodeOf<ErgYearlyByDay>(value, kYearDays);
    }
  }

  template <typename Node>
  bool AddNodeOf(const ErgTokenValue& value, State first) noexcept {
    Node* const node = MEM_New<Node>().release();
    if (node == nullptr) return false;
    node->interval = value.number;
    node->duration = kErgDefaultDuration;
    Hang(node, value.kind);
    duration_ = &node->duration;
    if constexpr (requires { node->times; }) times_ = &node->times;
    if constexpr (requires { node->entries; }) entries_ = &node->entries;
    if constexpr (requires { node->groups; }) groups_ = &node->groups;
    if constexpr (requires { node->numbers; }) numbers_ = &node->numbers;
    if constexpr (requires { node->nested_kind; }) {
      nested_kind_ = &node->nested_kind;
      nested_ = &node->nested;
    } else if constexpr (requires { node->nested; }) {
      nested_minutely_ = &node->nested;
    }
    state_ = first;
    return true;
  }

  // Under daily and weekly nodes a minutely one alone can stand, and its place has that type.
  template <typename Node>
  void Hang(Node* node, ErgKind kind) noexcept {
    if constexpr (std::is_same_v<Node, ErgMinutely>) {
      if (nested_minutely_ != nullptr) {
        *nested_minutely_ = node;
        return;
      }
    }
    *nested_kind_ = kind;
    *nested_ = node;
  }

  bool AddTime(const ErgTokenValue& value) noexcept {
    ErgTime* const time = Append(&times_);
    if (time == nullptr) return false;
    time->hour = value.number;
    time->minute = value.minute;
    time->end_marker = value.end_marker;
    return true;
  }

  static bool AddNumber(ErgNumber*** end, const ErgTokenValue& value) noexcept {
    ErgNumber* const number = Append(end);
    if (number == nullptr) return false;
    Fill(number, value);
    return true;
  }

  bool AddEntry(const ErgTokenValue& value) noexcept {
    ErgWeekdayEntry* const entry = Append(&entries_);
    if (entry == nullptr) return false;
    entry->weekday = value.number;
    entry->end_marker = value.end_marker;
    times_ = &entry->times;
    return true;
  }

  bool AddGroup(const ErgTokenValue& value) noexcept {
    ErgPositionGroup* const group = Append(&groups_);
    if (group == nullptr) return false;
    Fill(&group->occurrence, value);
    numbers_ = &group->occurrence.next;
    first_weekday_ = &group->weekday;
    weekdays_ = &group->weekday.next;
    times_ = &group->times;
    return true;
  }

  ErgRule* rule_;
  State state_ = kStart;
  bool ignored_ = false;
  // Where the next node hangs, and the coarsest kind that it may have.
  ErgKind max_nested_ = kErgYearlyByDay;
  ErgKind* nested_kind_;
  void** nested_;
  ErgMinutely** nested_minutely_ = nullptr;
  // The current node's duration and the ends of the lists that grow.
  std::int32_t* duration_ = nullptr;
  ErgTime** times_ = nullptr;
  ErgNumber** numbers_ = nullptr;
  ErgNumber** weekdays_ = nullptr;
  ErgNumber* first_weekday_ = nullptr;
  ErgWeekdayEntry** entries_ = nullptr;
  ErgPositionGroup** groups_ = nullptr;
};

}  // namespace

TamuResult ERG_Parse(const char* text, ErgRule* rule, std::string_view* rest) noexcept {
  *rule = {};
  std::string_view unread(text != nullptr ? text : "");
  TamuResult result = TAMU_OK;
  if (!unread.empty()) result = RuleParser(rule).Read(&unread);
  if (result != TAMU_OK) {
    ERG_Free(rule);
    *rule = {};
  }
  if (rest != nullptr) {
    while (!unread.empty() && unread.front() == ' ') unread.remove_prefix(1);
    *rest = unread;
  }
  return result;
}

}  // namespace tamu
