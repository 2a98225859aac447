// store/recognition.h - what the device finds an object by again.
//   Contacts by the five parts of their name, to-dos by subject, events by start and subject (text
//   where they have no subject), notes by the title as their file has it, messages by folder, date
//   and subject.
//   Errors     std::bad_alloc.
#ifndef TAMU_TOOLS_STORE_RECOGNITION_H_
#define TAMU_TOOLS_STORE_RECOGNITION_H_

#include <optional>
#include <string>

#include "tamu/tamu.h"

namespace tamu::tool {

// A text that two objects of one kind share exactly when the device takes one for the other. None,
// with what is missing ("it has no SUMMARY"), for an object that it would take for any other one
// that lacks the same, or never finds. Settles code pages in the record; dates that cannot be read
// are logged.
[[nodiscard]] std::optional<std::u16string> RECOGNITION_Key(ObjectKind kind, ObjectRecord* record,
                                                            std::string* missing);

// A note's title as its file has it: without characters that names of files cannot have.
[[nodiscard]] std::u16string NOTE_StoredTitle(NoteShape* note);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_RECOGNITION_H_
