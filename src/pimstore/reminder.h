// pimstore/reminder.h - the DALARM property and the reminders of tasks and appointments.
//   A reminder outside of the limits below is refused: the item's reminder stays as it was, and a
//   line is logged. Without an alarm the reminder is switched off.
//   Units      local time.
//   Ownership  items and records are borrowed.
#ifndef TAMU_PIMSTORE_REMINDER_H_
#define TAMU_PIMSTORE_REMINDER_H_

#include "platform/poom.h"
#include "tamu/tamu.h"

namespace tamu {

// Not after the day the task is due; on that day it is moved to its midnight; before it at most 45
// whole days before the start.
void ReminderToTask(platform::ITask* item, const Property* alarm) noexcept;

// Not after the start and at most 45 days before it, to the minute.
void ReminderToAppointment(platform::IAppointment* item, const Property* alarm) noexcept;

}  // namespace tamu

#endif  // TAMU_PIMSTORE_REMINDER_H_
