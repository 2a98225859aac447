// pimstore/exceptions.h - the EXDATE properties of an event and the deleted occurrences of an
// appointment.
//   Ownership  items and records are borrowed.
//   Errors     an occurrence that does not exist is logged.
#ifndef TAMU_PIMSTORE_EXCEPTIONS_H_
#define TAMU_PIMSTORE_EXCEPTIONS_H_

#include "platform/poom.h"
#include "tamu/tamu.h"
#include "text/date.h"

namespace tamu {

// Deletes the occurrences at these dates, each a component of one of the properties. An item that
// has any is saved first, as only what is saved has occurrences.
void ExceptionsToStore(platform::IAppointment* item, platform::IRecurrencePattern* pattern,
                       const Property* first) noexcept;

// Appends one property with the dates of all deleted occurrences, when there are any.
void ExceptionsFromStore(platform::IRecurrencePattern* pattern, DateForm form,
                         Ref<Property>* chain) noexcept;

}  // namespace tamu

#endif  // TAMU_PIMSTORE_EXCEPTIONS_H_
