// formats/vcard_reader.h - reads vCard 2.1 files into contact records.
//   Values are kept raw, with their parameters; names are case-sensitive.
//   Ownership  the shared record's, see shared_record.h.
//   Errors     the results below, with a log line each.
#ifndef TAMU_FORMATS_VCARD_READER_H_
#define TAMU_FORMATS_VCARD_READER_H_

#include "core/file.h"
#include "tamu/tamu.h"

namespace tamu {

// Reads every card from the file's position on, and calls `callback` (may be null) with each, its
// status and `user`. The status is the file's so far: once a card had a warning, every later one
// has it too. What follows the last card ends the reading without a word. Returns TAMU_PARSE_OK,
// TAMU_PARSE_WARNING, TAMU_PARSE_ERROR (no BEGIN, or a card that VCARD_ReadOne refuses: it and
// those after it are not delivered) or TAMU_OUT_OF_MEMORY.
[[nodiscard]] TamuResult VCARD_ReadObjects(File* file, ReadCallback callback, void* user) noexcept;

// Reads the lines behind a BEGIN line, up to the END line that matches it, into the shared record,
// which the caller has cleared and frees, whatever the result. Objects nested in the card are
// skipped; VERSION and N inside them count as seen. Returns TAMU_PARSE_OK; TAMU_PARSE_WARNING (a
// blank or unreadable line, an unknown property); TAMU_PARSE_ERROR (a VERSION above 2.1, or no
// VERSION, N or END); or TAMU_OUT_OF_MEMORY.
[[nodiscard]] TamuResult VCARD_ReadOne(File* file) noexcept;

// The same into another contact: for a card that stands in something else.
[[nodiscard]] TamuResult VCARD_ReadOne(File* file, ContactShape* contact) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_VCARD_READER_H_
