// pimstore/session.h - the session with the device's stores, and the operations on single objects.
//   One session a process, between POL_Open and POL_Close. Contacts, tasks and appointments are
//   kept by the object model, messages by the mail store, notes as files.
//   Ids        of contacts and calendar items: the store's number in hexadecimal digits, eight of
//              them on the way out; of notes: the title, in the ANSI code page; of messages:
//              mailstore/mail_operations.h.
//   Ownership  records and ids are borrowed for the call.
//   Errors     results as below; those of the mail store are given back as they are.
//   Threads    none.
#ifndef TAMU_PIMSTORE_SESSION_H_
#define TAMU_PIMSTORE_SESSION_H_

#include <cstdint>

#include "platform/poom.h"
#include "tamu/tamu.h"

namespace tamu {

// Not 0: POL_Open has nothing to do when it finds a session. Nothing in the library sets it.
extern std::uint32_t g_pol_already_open;

// The open session's object model, or null.
[[nodiscard]] platform::IPOutlookApp* POL_Application() noexcept;

// Starts the session. Opens the mail store and the notes' control again when there is one already.
// Returns TAMU_OK; TAMU_GENERAL_PIM_ERROR, after a log line and with nothing held, when the system
// has no object model or does not let it log on; the mail store's code, with the session left open.
[[nodiscard]] TamuResult POL_Open() noexcept;

// Ends the session, and closes the mail store in any case. Returns TAMU_OK.
[[nodiscard]] TamuResult POL_Close() noexcept;

// Adds a record; `id_out` (may be null, else at least 9 characters) receives the id of a contact or
// calendar item, "" for every other kind, on purpose, and on failure.
// Returns TAMU_OK, also for a note that could not be written; TAMU_UNSUPPORTED_TYPE for a kind
// above 5; TAMU_PIM_NOT_OPENED; TAMU_MISSING_FIELD for a note without a title;
// TAMU_GENERAL_PIM_ERROR when the item could not be made or saved.
[[nodiscard]] TamuResult POL_AddObject(ObjectKind kind, const ObjectRecord* record,
                                       char* id_out) noexcept;

// Puts the record into the object with the id. What a record does not have stays as it was, see the
// maps. A note moves to the file of its new title.
// Returns TAMU_OK; TAMU_INVALID_ID for no id, or one (but a note's) that begins with no hexadecimal
// number; then as POL_AddObject, and TAMU_OBJECT_NOT_FOUND when no item of this kind has the id. A
// task's record for an appointment, and the other way round, changes nothing, and is TAMU_OK when
// the item can be saved.
[[nodiscard]] TamuResult POL_ModifyObject(ObjectKind kind, const char* id,
                                          const ObjectRecord* record) noexcept;

// Fills the empty record with the contact or calendar item that has the id.
// Returns TAMU_OK, TAMU_INVALID_ID, TAMU_PIM_NOT_OPENED, TAMU_OBJECT_NOT_FOUND, or
// TAMU_UNSUPPORTED_TYPE for every other kind.
[[nodiscard]] TamuResult POL_GetObjectById(ObjectKind kind, const char* id,
                                           ObjectRecord* record_out) noexcept;

}  // namespace tamu

#endif  // TAMU_PIMSTORE_SESSION_H_
