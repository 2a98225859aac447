#include "pimstore/task_map.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "pimstore/calendar_fields.h"
#include "pimstore/reminder.h"
#include "text/number_scan.h"

namespace tamu {
namespace {

using platform::BStr;
using platform::ITask;

// The decimal number that a text begins with, 0 without one.
std::int32_t NumberOf(const BStr& text) noexcept {
  std::array<char, 64> ascii{};
  const std::size_t length = std::min<std::size_t>(text.size(), ascii.size() - 1);
  for (std::size_t i = 0; i < length; ++i) {
    ascii[i] = text.view()[i] < 0x80 ? static_cast<char>(text.view()[i]) : '?';
  }
  return STR_ToNumber({ascii.data(), length});
}

// A date without an own due date becomes the due date, too, unless the task has one.
void PutDates(ITask* item, const ToDoShape& record) {
  PutDateIfAny(item, &ITask::put_StartDate, record.prop_dtstart);
  if (HasText(record.prop_dtstart) && !HasText(record.prop_due)) {
    platform::DATE due = 0;
    if (platform::Succeeded(item->get_DueDate(&due)) && due == platform::kNoDate) {
      PutDateIfAny(item, &ITask::put_DueDate, record.prop_dtstart);
    }
  }
  PutDateIfAny(item, &ITask::put_DueDate, record.prop_due);
}

// Priorities 0 to 2 are the store's own importances; all others are normal.
void PutImportance(ITask* item, Property* property) {
  const BStr text = WideOf(property);
  if (text.empty()) return;
  const std::int32_t number = NumberOf(text);
  const bool known = number == platform::kImportanceLow || number == platform::kImportanceHigh;
  item->put_Importance(known ? number : platform::kImportanceNormal);
}

void PutComplete(ITask* item, Property* property) {
  const BStr text = WideOf(property);
  if (!text.empty()) item->put_Complete(text.view() == u"COMPLETED" ? 1 : 0);
}

void AppendImportance(ITask* item, Ref<Property>* chain) {
  std::array<char, 12> digits{};
  const std::int32_t importance =
      GetValue(item, &ITask::get_Importance, platform::kImportanceNormal);
  const char* const end =
      std::to_chars(digits.data(), digits.data() + digits.size(), importance).ptr;
  AppendAscii(chain, {digits.data(), static_cast<std::size_t>(end - digits.data())});
}

}  // namespace

void TaskToStore(ITask* item, const ToDoShape& record) noexcept {
  PutTextIfAny(item, &ITask::put_Subject, record.prop_summary);
  PutTextIfAny(item, &ITask::put_Categories, record.prop_categories);
  PutDates(item, record);
  PutImportance(item, record.prop_priority);
  PutComplete(item, record.prop_status);
  PutClass(item, record.prop_class);
  PutTextIfAny(item, &ITask::put_Body, record.prop_description);
  const Property* start = HasText(record.prop_dtstart) ? record.prop_dtstart : record.prop_due;
  PutRecurrence(item, record.prop_rrule, HasText(start) ? start : nullptr);
  if (GetFlag(item, &ITask::get_IsRecurring)) item->Save();
  ReminderToTask(item, record.prop_dalarm);
}

void TaskFromStore(ITask* item, ToDoShape* record) noexcept {
  constexpr DateForm kForm = DateForm::kLocal;
  FillCalendarHeader(item, COMPONENT_TODO, record);
  AppendText(&record->prop_categories, GetText(item, &ITask::get_Categories));
  const bool complete = GetFlag(item, &ITask::get_Complete);
  if (complete) {
    AppendDateIfAny(&record->prop_completed, GetDate(item, &ITask::get_DateCompleted), kForm);
  }
  AppendDescription(item, &record->prop_description);
  AppendDateIfAny(&record->prop_due, GetDate(item, &ITask::get_DueDate), kForm);
  AppendImportance(item, &record->prop_priority);
  AppendDateIfAny(&record->prop_dtstart, GetDate(item, &ITask::get_StartDate), kForm);
  AppendAscii(&record->prop_status, complete ? "COMPLETED" : "NEEDS ACTION");
  AppendText(&record->prop_summary, GetText(item, &ITask::get_Subject), kAllowQuotedPrintable);
  AppendClass(item, &record->prop_class);
  if (GetFlag(item, &ITask::get_ReminderSet)) {
    AppendDateIfAny(&record->prop_dalarm, GetDate(item, &ITask::get_ReminderTime), kForm);
  }
  if (const auto pattern = PatternOf(item)) {
    RecurrenceFromStore(pattern.get(), &record->prop_rrule);
  }
}

}  // namespace tamu
