// mailstore/mail_operations.h - finding, adding and modifying single messages.
//   A message lives in the outbox or among the sent items when the record's folder says exactly
//   "OUTBOX" or "SENTBOX", in the inbox otherwise. Its id is the store's entry id in upper-case
//   hexadecimal digits.
//   Ownership  records are borrowed for the call; `id_out` (may be null) takes two characters for
//   each byte of an entry id and a terminator.
//   Errors     results as below; each failure of the store has a log line.
#ifndef TAMU_MAILSTORE_MAIL_OPERATIONS_H_
#define TAMU_MAILSTORE_MAIL_OPERATIONS_H_

#include <cstddef>
#include <cstdint>

#include "platform/cemapi.h"
#include "tamu/tamu.h"

namespace tamu {

// Looks in the record's folder for the first message, in the order of the contents table, with its
// delivery time to the second and exactly its subject. A record without a date stands for the zero
// date, 30 December 1899. Returns 1 when there is one, else 0, also for every failure.
[[nodiscard]] std::uint32_t MAPI_FindMail(const MessageShape* record, char* id_out) noexcept;

// Makes a message in the record's folder. TAMU_OK; TAMU_GENERAL_PIM_ERROR when the folder is not
// open, the message cannot be made, or its id, when it is asked for, cannot be had. A property that
// cannot be set is logged and changes nothing about that.
[[nodiscard]] TamuResult MAPI_AddMail(const MessageShape* record, char* id_out) noexcept;

// Sets the properties of the message with the id anew; its recipients are added once more, on
// purpose. TAMU_OK, also for an id of something else than a message; TAMU_INVALID_ID when it is not
// hexadecimal; TAMU_GENERAL_PIM_ERROR when it cannot be opened.
[[nodiscard]] TamuResult MAPI_ModifyMail(const MessageShape* record, const char* id) noexcept;

// Pairs of hexadecimal digits of either case as bytes; `bytes` takes half the text's length. False,
// with some bytes written, for any other character and for half a pair. A null text has no bytes.
[[nodiscard]] bool FBinFromHex(const char* text, std::uint8_t* bytes) noexcept;

// The bytes as pairs of upper-case digits with a terminator.
void MAPI_EntryIdToHex(const std::uint8_t* bytes, std::size_t count, char* text) noexcept;

}  // namespace tamu

#endif  // TAMU_MAILSTORE_MAIL_OPERATIONS_H_
