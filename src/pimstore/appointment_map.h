// pimstore/appointment_map.h - event records and stored appointments, one made of the other.
//   Ownership  items and records are borrowed.
//   Errors     none: what the store refuses stays as it was, what memory runs out for is missing;
//              reminders, rules and exceptions that cannot be kept are logged.
#ifndef TAMU_PIMSTORE_APPOINTMENT_MAP_H_
#define TAMU_PIMSTORE_APPOINTMENT_MAP_H_

#include "platform/poom.h"
#include "tamu/tamu.h"

namespace tamu {

// Puts a record into an item, which the caller saves; one whose rule has exceptions is saved before
// they are made. What the record does not have stays as it is, but recurrence, attendees and
// reminder are then taken from the item, and it no longer lasts all day.
void AppointmentToStore(platform::IAppointment* item, const EventShape& record) noexcept;

// Fills an empty record with an item. The priority is always "0", and a busy one NEEDS ACTION, both
// on purpose. Times are in UTC, those of an item that lasts all day as they are on the clock.
void AppointmentFromStore(platform::IAppointment* item, EventShape* record) noexcept;

}  // namespace tamu

#endif  // TAMU_PIMSTORE_APPOINTMENT_MAP_H_
