#include "pimstore/reminder.h"

#include <cmath>

#include "core/log.h"
#include "pimstore/item_access.h"

namespace tamu {
namespace {

using platform::IAppointment;
using platform::ITask;

constexpr std::int64_t kSecondsPerMinute = 60;
constexpr std::int64_t kMinutesPerDay = 24 * 60;
constexpr std::int64_t kSecondsPerDay = kMinutesPerDay * kSecondsPerMinute;
constexpr std::int64_t kMostDays = 45;

void LogTooLate() noexcept { LOG_Error("TAMU:  Reminder date/time is after the DUE date."); }
void LogTooEarly() noexcept {
  LOG_Error("TAMU:  DALARM 'Reminder date/time' is more than 45 days before the START date.");
}

void LogMoved(const DateValue& midnight) noexcept {
  platform::BStr text;
  platform::VarBstrFromDate(midnight.days, platform::kLocaleUserDefault, 0, text.put());
  LOG_Info("TAMU:  Reminder date/time adjusted to midnight  - %S", text.c_str());
}

template <typename Item>
void SwitchOn(Item* item) {
  item->put_ReminderSet(platform::kVariantTrue);
  const std::int32_t options = GetValue(item, &Item::get_ReminderOptions, 0);
  item->put_ReminderOptions(options | platform::kReminderDialog);
}

DateValue MidnightOf(const DateValue& date) noexcept { return {std::trunc(date.days), date.valid}; }

}  // namespace

void ReminderToTask(ITask* item, const Property* alarm) noexcept {
  if (!HasText(alarm)) {
    item->put_ReminderSet(platform::kVariantFalse);
    return;
  }
  DateValue reminder = DATE_FromProperty(alarm);
  const DateValue day = MidnightOf(reminder);
  const DateValue due_day = MidnightOf(GetDate(item, &ITask::get_DueDate));
  const DateValue start = GetDate(item, &ITask::get_StartDate);
  // What cannot be read is later than any date.
  if (day.days > due_day.days || !reminder.valid || DATE_IsNone(reminder)) return LogTooLate();
  if (day == due_day) {
    reminder = day;
    LogMoved(reminder);
  } else if (DATE_SecondsBetween(reminder, start) / kSecondsPerDay > kMostDays) {
    return LogTooEarly();
  }
  item->put_ReminderTime(reminder.days);
  SwitchOn(item);
}

void ReminderToAppointment(IAppointment* item, const Property* alarm) noexcept {
  if (!HasText(alarm)) {
    item->put_ReminderSet(platform::kVariantFalse);
    return;
  }
  const DateValue reminder = DATE_FromProperty(alarm);
  const DateValue start = GetDate(item, &IAppointment::get_Start);
  const std::int64_t seconds = DATE_SecondsBetween(reminder, start);
  if (seconds < 0 || !reminder.valid || DATE_IsNone(reminder)) return LogTooLate();
  const std::int64_t minutes = seconds / kSecondsPerMinute;
  if (minutes > kMostDays * kMinutesPerDay) return LogTooEarly();
  item->put_ReminderMinutesBeforeStart(static_cast<std::int32_t>(minutes));
  SwitchOn(item);
}

}  // namespace tamu
