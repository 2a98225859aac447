// text/logical_line.h - physical lines of an object file joined into logical lines.
//   vCard 2.1 and vCalendar 1.0 fold a long line by a line end followed by a blank;
//   quoted-printable breaks one by a trailing "=". Both are undone here, for every line.
//   Units      bytes.
//   Ownership  the caller's, see FileLine.
#ifndef TAMU_TEXT_LOGICAL_LINE_H_
#define TAMU_TEXT_LOGICAL_LINE_H_

#include "core/file.h"
#include "core/memory.h"

namespace tamu {

// Reads the next logical line, without its line end: LF, CR LF, or CR and whatever follows it.
//   - A line end before a space or tab is folding: both become one space.
//   - An "=" before a line end is a soft line break, whatever the property: both vanish. "==" is no
//   such "=".
//   - An "=" that ends the file is dropped. A NUL ends the text where it stands.
// The text ends in two NULs, so that a position one past its end can still be read. Returns "" for
// an empty line and at the end of the file (file->AtEnd() tells them apart), and null, after a log
// line, when memory runs out. The file then stands at the start of the next logical line, and log
// lines carry the number of this one's first line.
[[nodiscard]] MemPtr<char> FileLine(File* file) noexcept;

}  // namespace tamu

#endif  // TAMU_TEXT_LOGICAL_LINE_H_
