// mailstore/session.h - the session with the device's messaging store and its three folders.
//   Ownership  the handles below belong to the session; nobody else releases them.
//   Errors     a store or folder that cannot be had is logged and leaves its handle null.
//   Threads    none.
#ifndef TAMU_MAILSTORE_SESSION_H_
#define TAMU_MAILSTORE_SESSION_H_

#include "platform/cemapi.h"
#include "tamu/tamu.h"

namespace tamu {

// Null while the session is closed.
extern platform::IMAPISession* gpSession;
extern platform::IMAPIFolder* gpInBoxFolder;    // what the store receives into
extern platform::IMAPIFolder* gpSentBoxFolder;  // PR_IPM_SENTMAIL_ENTRYID of the store
extern platform::IMAPIFolder* gpOutBoxFolder;   // PR_IPM_OUTBOX_ENTRYID of the store

// Logs on and opens the folders of the first message store, whether or not it is the default one.
// Returns TAMU_OK, also when the store or a folder cannot be opened; TAMU_GENERAL_PIM_ERROR when
// there is no session. An open session is opened anew and its handles are overwritten, on purpose:
// they are never released.
[[nodiscard]] TamuResult MAPI_Init() noexcept;

// Logs off and releases what is held; the platform's count goes down in every case. Returns TAMU_OK,
// or TAMU_GENERAL_PIM_ERROR when logging off failed.
[[nodiscard]] TamuResult MAPI_DeInit() noexcept;

}  // namespace tamu

#endif  // TAMU_MAILSTORE_SESSION_H_
