// pimstore/attendees.h - the ATTENDEE properties of an event and the recipients of an appointment.
//   Ownership  items and records are borrowed.
//   Errors     an attendee that cannot be added or read is left out.
#ifndef TAMU_PIMSTORE_ATTENDEES_H_
#define TAMU_PIMSTORE_ATTENDEES_H_

#include "platform/poom.h"
#include "tamu/tamu.h"

namespace tamu {

// Replaces the item's recipients by the attendees. "Name <address>" has a name and an address (the
// blank before the "<" stays part of the name, on purpose); any other text is both.
void AttendeesToStore(platform::IAppointment* item, Property* first) noexcept;

// Appends one attendee for each recipient: the name alone when it is the address, too, else "name
// <address>".
void AttendeesFromStore(platform::IAppointment* item, Ref<Property>* chain) noexcept;

}  // namespace tamu

#endif  // TAMU_PIMSTORE_ATTENDEES_H_
