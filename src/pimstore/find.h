// pimstore/find.h - looking for the stored object that a record describes.
//   Ownership  records are borrowed for the call.
//   Errors     what cannot be searched is not found.
#ifndef TAMU_PIMSTORE_FIND_H_
#define TAMU_PIMSTORE_FIND_H_

#include <cstdint>

#include "tamu/tamu.h"

namespace tamu {

// Returns 1 when there is an object that matches, else 0; for messages what MAPI_FindMail returns.
// `id_out` (may be null, else at least 9 characters, or room for a note's title or a message's id)
// receives its id, and is left alone without one. Texts are compared exactly:
//   contacts      the five parts of the name; an empty one meets an empty field
//   tasks         the summary, which must not be empty
//   appointments  the start, and the summary or, without one, the description
//   notes         the title, by the file that it names
// Of several matches the first one in the store's order is given. `reserved` has no meaning.
[[nodiscard]] std::uint32_t POL_FindObject(ObjectKind kind, const ObjectRecord* record,
                                           char* id_out, std::uint32_t reserved) noexcept;

}  // namespace tamu

#endif  // TAMU_PIMSTORE_FIND_H_
