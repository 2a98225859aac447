// pimstore/notes.h - notes, which the device keeps as rich-ink documents in the user's documents
// folder, each under its title.
//   Units      titles and paths are UTF-16, terminated.
//   Ownership  records are borrowed.
//   Errors     none are given back: a note that cannot be written is logged.
#ifndef TAMU_PIMSTORE_NOTES_H_
#define TAMU_PIMSTORE_NOTES_H_

#include <array>
#include <cstddef>

#include "platform/files.h"
#include "tamu/tamu.h"

namespace tamu {

// A cleaned title with its terminator.
inline constexpr std::size_t kNoteTitleLength = 260;

// "folder/title.pwi"; "" when the system has no folder for documents.
using NotePath = std::array<char16_t, platform::kMaxPath + kNoteTitleLength + 8>;

// Copies a title without the characters that cannot stand in a file's name: the nine of \/:*?<>|"
// and those that cannot be printed (tab and line feed, too). What does not fit `capacity` units
// with the terminator is cut off, between characters. Does nothing for a null text.
void NOTE_CleanTitle(const char16_t* source, char16_t* dest, std::size_t capacity) noexcept;

// The path of the note with this title (null counts as ""). The folder is made when it is missing.
[[nodiscard]] NotePath NOTE_PathFromTitle(const char16_t* title) noexcept;

// True when there is a note with this title.
[[nodiscard]] bool NOTE_Exists(const char16_t* title) noexcept;

// Writes a note to the file of its title; a note that is there is replaced. After a file that did
// not open the control is left, on purpose.
void pol_PutNote(const NoteShape& record) noexcept;

}  // namespace tamu

#endif  // TAMU_PIMSTORE_NOTES_H_
