// formats/vnote_reader.h - reads vNote 1.1 files into note records.
//   Values are kept raw, with their parameters and all their components; names are case-sensitive,
//   blanks in them do not count.
//   Ownership  the shared record's, see shared_record.h.
//   Errors     the results below, with a log line each.
#ifndef TAMU_FORMATS_VNOTE_READER_H_
#define TAMU_FORMATS_VNOTE_READER_H_

#include "core/file.h"
#include "tamu/tamu.h"

namespace tamu {

// Reads every note from the file's position on, and calls `callback` (may be null) with each, the
// file's status so far and `user`. Returns TAMU_PARSE_OK, TAMU_PARSE_WARNING, TAMU_PARSE_ERROR (no
// BEGIN, or a note that VNOTE_ReadBody refuses: it and those after it are not delivered) or
// TAMU_OUT_OF_MEMORY.
[[nodiscard]] TamuResult VNOTE_Read(File* file, ReadCallback callback, void* user) noexcept;

// Reads one note from behind its BEGIN line to its END into the shared record, which the caller
// frees, whatever the result. Nested objects are skipped; VERSION inside them counts as seen.
// Returns TAMU_PARSE_OK; TAMU_PARSE_WARNING (a blank or unreadable line, an unknown property);
// TAMU_PARSE_ERROR (a VERSION above 1.1, or no VERSION or END); or TAMU_OUT_OF_MEMORY.
[[nodiscard]] TamuResult VNOTE_ReadBody(File* file) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_VNOTE_READER_H_
