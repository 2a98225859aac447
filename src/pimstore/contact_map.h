// pimstore/contact_map.h - contact records and stored contacts, one made of the other.
//   The store has a fixed set of fields (three addresses, eleven telephone numbers, three e-mail
//   addresses) where a vCard has lists with types: which entry lands in which field, and which
//   types a field is given on the way back, differ on purpose.
//   Ownership  items and records are borrowed.
//   Errors     none: what the store refuses stays as it was, what memory runs out for is missing.
#ifndef TAMU_PIMSTORE_CONTACT_MAP_H_
#define TAMU_PIMSTORE_CONTACT_MAP_H_

#include "platform/poom.h"
#include "tamu/tamu.h"

namespace tamu {

// Puts a record into an item, which the caller saves. The name to file under and the five parts of
// the name are always put, so that they are cleared where the record has none; of an address that
// is there all fields; everything else only where the record has it. Nickname and role have no
// field.
void ContactToStore(platform::IContact* item, const ContactShape& record) noexcept;

// Fills an empty record with an item.
void ContactFromStore(platform::IContact* item, ContactShape* record) noexcept;

}  // namespace tamu

#endif  // TAMU_PIMSTORE_CONTACT_MAP_H_
