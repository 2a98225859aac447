#include <array>
#include <string_view>
#include <utility>

#include "core/log.h"
#include "core/memory.h"
#include "pimstore/item_access.h"
#include "pimstore/recurrence_map.h"
#include "recurrence/rule.h"
#include "recurrence/rule_generator.h"
#include "text/property.h"

namespace tamu {
namespace {

using platform::IRecurrencePattern;
using Pattern = IRecurrencePattern;

constexpr std::int32_t kUnknownType = -1;
constexpr std::int32_t kLastInstance = 5;  // the store's name for the last one, -1 in a rule
constexpr std::int32_t kWeekdays = 7;

// What a pattern says.
struct PatternFields {
  std::int32_t type = kUnknownType;
  std::int32_t mask = 0;
  std::int32_t occurrences = 0;  // 0 for ever
  std::array<char, kErgEndDateLength + 1> end_date{};
  std::int32_t interval = 1;
  std::int32_t month = 0;
  std::int32_t day = 0;
  std::int32_t instance = 0;
};

void ReadEnd(Pattern* pattern, PatternFields* fields) {
  if (GetValue(pattern, &Pattern::get_NoEndDate, platform::kVariantTrue) != 0) return;
  fields->occurrences = GetValue(pattern, &Pattern::get_Occurrences, 0);
  const DateValue end = GetDate(pattern, &Pattern::get_PatternEndDate);
  if (DATE_IsNone(end)) return;
  if (const MemPtr<char> text = DateBytes(end, DateForm::kUtc)) {
    std::string_view(text.get()).copy(fields->end_date.data(), kErgEndDateLength);
  }
}

PatternFields Read(Pattern* pattern) {
  PatternFields fields;
  fields.type = GetValue(pattern, &Pattern::get_RecurrenceType, kUnknownType);
  ReadEnd(pattern, &fields);
  fields.interval = GetValue(pattern, &Pattern::get_Interval, 1);
  fields.mask = GetValue(pattern, &Pattern::get_DayOfWeekMask, 0);
  const bool yearly =
      fields.type == platform::kRecursYearly || fields.type == platform::kRecursYearlyNth;
  if (yearly) fields.month = GetValue(pattern, &Pattern::get_MonthOfYear, 0);
  if (fields.type == platform::kRecursMonthly || fields.type == platform::kRecursYearly) {
    fields.day = GetValue(pattern, &Pattern::get_DayOfMonth, 0);
  }
  if (fields.type == platform::kRecursMonthlyNth || fields.type == platform::kRecursYearlyNth) {
    fields.instance = GetValue(pattern, &Pattern::get_Instance, 0);
  }
  return fields;
}

// Builds the tree of one pattern. Every node hangs in the tree as soon as it is made, so that it is
// freed with the tree when memory runs out on the way.
class RuleBuilder {
 public:
  explicit RuleBuilder(const PatternFields& fields) noexcept : fields_(fields) {}
  ~RuleBuilder() { ERG_Free(&rule_); }
  RuleBuilder(const RuleBuilder&) = delete;
  RuleBuilder& operator=(const RuleBuilder&) = delete;

  [[nodiscard]] const ErgRule& rule() const noexcept { return rule_; }

  // TAMU_OK or TAMU_OUT_OF_MEMORY. An unknown type builds nothing.
  [[nodiscard]] TamuResult Build() noexcept {
    switch (fields_.type) {
      case platform::kRecursDaily:
        return Result(fields_.mask == 0 ? BuildDaily() : BuildWeekly(1));
      case platform::kRecursWeekly:
        return Result(BuildWeekly(fields_.interval));
      case platform::kRecursMonthly:
        PutEndDate();
        return Result(FillByDay(NewRoot<ErgMonthlyByDay>(kErgMonthlyByDay, fields_.interval)));
      case platform::kRecursMonthlyNth:
        PutEndDate();
        return Result(FillByPos(NewRoot<ErgMonthlyByPos>(kErgMonthlyByPos, fields_.interval)));
      case platform::kRecursYearly:
        return Result(FillByDay(NewInYear<ErgMonthlyByDay>(kErgMonthlyByDay)));
      case platform::kRecursYearlyNth:
        return Result(FillByPos(NewInYear<ErgMonthlyByPos>(kErgMonthlyByPos)));
      default:
        return TAMU_OK;
    }
  }

 private:
  static TamuResult Result(bool built) noexcept {
    return built ? TamuResult{TAMU_OK} : TamuResult{TAMU_OUT_OF_MEMORY};
  }

  void PutEndDate() noexcept {
    static_assert(sizeof rule_.end_date == kErgEndDateLength + 1);
    std::string_view(fields_.end_date.data()).copy(rule_.end_date, kErgEndDateLength);
  }

  template <typename Node>
  Node* NewRoot(ErgKind kind, std::int32_t interval) noexcept {
    Node* const node = MEM_New<Node>().release();
    if (node == nullptr) return nullptr;
    node->interval = interval;
    node->duration = fields_.occurrences;
    rule_.kind = kind;
    rule_.node = node;
    return node;
  }

  // A month's rule, once in the pattern's month of each year. The year counts how often.
  template <typename Node>
  Node* NewInYear(ErgKind kind) noexcept {
    auto* const year = NewRoot<ErgYearlyByMonth>(kErgYearlyByMonth, 1);
    if (year == nullptr || !AddNumber(&year->numbers, fields_.month)) return nullptr;
    Node* const node = MEM_New<Node>().release();
    if (node == nullptr) return nullptr;
    node->interval = 1;
    node->duration = kErgDefaultDuration;
    year->nested_kind = kind;
    year->nested = node;
    return node;
  }

  static bool AddNumber(ErgNumber** end, std::int32_t value) noexcept {
    *end = MEM_New<ErgNumber>().release();
    if (*end == nullptr) return false;
    (*end)->value = value;
    return true;
  }

  [[nodiscard]] bool HasWeekday(std::int32_t weekday) const noexcept {
    return (fields_.mask >> (weekday - 1) & 1) != 0;
  }

  bool BuildDaily() noexcept {
    PutEndDate();
    return NewRoot<ErgDaily>(kErgDaily, fields_.interval) != nullptr;
  }

  bool BuildWeekly(std::int32_t interval) noexcept {
    PutEndDate();
    auto* const node = NewRoot<ErgWeekly>(kErgWeekly, interval);
    if (node == nullptr) return false;
    ErgWeekdayEntry** end = &node->entries;
    for (std::int32_t weekday = 1; weekday <= kWeekdays; ++weekday) {
      if (!HasWeekday(weekday)) continue;
      *end = MEM_New<ErgWeekdayEntry>().release();
      if (*end == nullptr) return false;
      (*end)->weekday = weekday;
      end = &(*end)->next;
    }
    return true;
  }

  bool FillByDay(ErgMonthlyByDay* node) noexcept {
    return node != nullptr && AddNumber(&node->numbers, fields_.day);
  }

  bool FillByPos(ErgMonthlyByPos* node) noexcept {
    if (node == nullptr) return false;
    node->groups = MEM_New<ErgPositionGroup>().release();
    if (node->groups == nullptr) return false;
    node->groups->occurrence.value = fields_.instance >= kLastInstance ? -1 : fields_.instance;
    ErgNumber* last = nullptr;
    for (std::int32_t weekday = 1; weekday <= kWeekdays; ++weekday) {
      if (!HasWeekday(weekday)) continue;
      if (last == nullptr) {
        last = &node->groups->weekday;
        last->value = weekday;
      } else if (AddNumber(&last->next, weekday)) {
        last = last->next;
      } else {
        return false;
      }
    }
    return true;
  }

  const PatternFields& fields_;
  ErgRule rule_{};
};

void LogFailure(TamuResult result, const PatternFields& fields) noexcept {
  LOG_Info("TAMU:  Error creating Extended Recurrence Grammar from pattern (code=%d)", result);
  LOG_Info("       RecurrenceType='%d'", fields.type);
  LOG_Info("       DayOfWeekMask='0x%x'", fields.mask);
  LOG_Info("       Occurrences='%d'", fields.occurrences);
  LOG_Info("       Enddate='%s'", fields.end_date.data());
  LOG_Info("       Interval='%d'", fields.interval);
  LOG_Info("       MonthOfYear='%d'", fields.month);
  LOG_Info("       DayOfMonth='%d'", fields.day);
  LOG_Info("       Instance='%d'", fields.instance);
}

}  // namespace

void RecurrenceFromStore(IRecurrencePattern* pattern, Ref<Property>* chain) noexcept {
  const PatternFields fields = Read(pattern);
  RuleBuilder builder(fields);
  if (const TamuResult result = builder.Build(); result != TAMU_OK) {
    return LogFailure(result, fields);
  }
  MemPtr<char> text;
  if (const TamuResult result = ERG_GenerateNew(builder.rule(), &text); result != TAMU_OK) {
    LOG_Error("TAMU:  ERG_Generate failed (code=%d)", result);
    return;
  }
  PROP_SetValue(PROP_Append(chain), std::move(text), 0);
}

}  // namespace tamu
