// pimstore/session.h - the session with the device's stores, and the operations on single objects.
//   Ownership  records are borrowed for the call.
//   Errors     results as below.
#ifndef TAMU_PIMSTORE_SESSION_H_
#define TAMU_PIMSTORE_SESSION_H_

#include <cstdint>

#include "tamu/tamu.h"

namespace tamu {

// Starts the session. Returns TAMU_OK, or TAMU_GENERAL_PIM_ERROR when the system has no object
// store.
[[nodiscard]] TamuResult POL_Open() noexcept;

// Ends the session. Returns TAMU_OK.
[[nodiscard]] TamuResult POL_Close() noexcept;

// Adds a record; `id_out` (may be null) receives the new id, or "". See TAMU_AddObject for the
// results.
[[nodiscard]] TamuResult POL_AddObject(ObjectKind kind, const ObjectRecord* record,
                                       char* id_out) noexcept;

// Replaces the object with the id by the record. See TAMU_ModifyObject for the results.
[[nodiscard]] TamuResult POL_ModifyObject(ObjectKind kind, const char* id,
                                          const ObjectRecord* record) noexcept;

// Fills `record_out` with the object that has the id. See TAMU_GetObjectById for the results.
[[nodiscard]] TamuResult POL_GetObjectById(ObjectKind kind, const char* id,
                                           ObjectRecord* record_out) noexcept;

// Looks for an object that matches the record. Returns 1 when there is one, else 0.
[[nodiscard]] std::uint32_t POL_FindObject(ObjectKind kind, const ObjectRecord* record,
                                           char* id_out, std::uint32_t reserved) noexcept;

}  // namespace tamu

#endif  // TAMU_PIMSTORE_SESSION_H_
