// formats/vmessage_reader.h - reads vMessage 1.1 files into message records.
//   Header texts are kept as they stand, cut to their fields; the mail's content is
//   vmessage_content.h's. The cards in a message are read for their syntax and dropped.
//   Ownership  the shared record's, see shared_record.h.
//   Errors     the results below, with a log line where one is named.
#ifndef TAMU_FORMATS_VMESSAGE_READER_H_
#define TAMU_FORMATS_VMESSAGE_READER_H_

#include "core/file.h"
#include "tamu/tamu.h"

namespace tamu {

// Reads every message from the file's position on, and calls `callback` (may be null) with each,
// the kind that its folder says ("OUTBOX", "SENTBOX", anything else is the inbox), the file's
// status so far and `user`. Returns TAMU_PARSE_OK, TAMU_PARSE_WARNING, TAMU_PARSE_ERROR (no BEGIN,
// or a message that VMSG_ReadMessage refuses: it and those after it are not delivered) or
// TAMU_OUT_OF_MEMORY.
[[nodiscard]] TamuResult VMSG_Read(File* file, ReadCallback callback, void* user) noexcept;

// Reads one message from behind its BEGIN line to its END. A card in it clears the fields that lie
// where a contact has its own: identifier, version, status, type and folder count only when they
// follow it. Returns TAMU_PARSE_OK; TAMU_PARSE_WARNING (a blank or unreadable line, an unknown
// property, a value that was cut, a warning of the envelope); TAMU_PARSE_ERROR: after a log line a
// VERSION above 1.1, without one an unknown BEGIN, no envelope or no END; or TAMU_OUT_OF_MEMORY.
[[nodiscard]] TamuResult VMSG_ReadMessage(File* file, MessageShape* message) noexcept;

// Reads an envelope from behind BEGIN:VENV to its END, with the envelopes nested in it and the
// first mail among them; further mails and unknown lines are passed over. Returns TAMU_PARSE_OK;
// TAMU_PARSE_WARNING (a blank or unreadable line, a warning of the mail); TAMU_PARSE_ERROR: the
// mail's, or, after a log line, when there is none or the file ends; or TAMU_OUT_OF_MEMORY.
[[nodiscard]] TamuResult VMSG_ReadEnvelope(File* file, MessageShape* message) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_VMESSAGE_READER_H_
