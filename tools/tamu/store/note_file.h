// store/note_file.h - notes written so that each is there as a whole or not at all.
//   The library writes a note under a passing title; it is read back, and takes its place when it
//   came out right. So neither a full disk nor the program's sudden end damages a note.
//   Errors     texts for people; std::bad_alloc.
#ifndef TAMU_TOOLS_STORE_NOTE_FILE_H_
#define TAMU_TOOLS_STORE_NOTE_FILE_H_

#include <cstdint>
#include <string>

#include "tamu/tamu.h"

namespace tamu::tool {

enum class NoteTarget : std::uint8_t { kNew, kReplaced };

// Writes the note under its title. kNew: none may have it. False, with the reason, when there is
// nothing of it then and what was there still is.
[[nodiscard]] bool NOTEFILE_Write(ObjectRecord* record, NoteTarget target, std::string* problem);

// Deletes a note.
[[nodiscard]] bool NOTEFILE_Delete(const std::u16string& title, std::string* problem);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_NOTE_FILE_H_
