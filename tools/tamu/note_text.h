// note_text.h - a note, heading and all, as lines for people.
#ifndef TAMU_TOOLS_NOTE_TEXT_H_
#define TAMU_TOOLS_NOTE_TEXT_H_

#include "object_view.h"
#include "text_output.h"

namespace tamu::tool {

// Adds the heading and the note's values, each under its label. Throws std::bad_alloc when memory runs out.
void TEXT_AddNote(const ObjectView& note, TextLines* lines);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_NOTE_TEXT_H_
