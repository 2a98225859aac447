// formats/vmessage_content.h - the content of a mail in a vMessage: physical lines up to a marker.
//   Content is kept as it stands: nothing of its transfer encoding is undone but soft line breaks,
//   and those whatever the encoding is. It is read once, forwards, so that a pipe will do, and
//   takes memory for what is kept and for the longest line.
//   Ownership  what is kept is the part's: a text, or a temporary file.
#ifndef TAMU_FORMATS_VMESSAGE_CONTENT_H_
#define TAMU_FORMATS_VMESSAGE_CONTENT_H_

#include <string_view>

#include "core/file.h"
#include "tamu/tamu.h"

namespace tamu {

// Reads one physical line: up to the next line feed or the end of the file, cut at its first
// carriage return or NUL. There is no unfolding. `*line` lives until the file is read on. Returns
// false when memory runs out.
[[nodiscard]] bool VMSG_ReadRawLine(File* file, std::string_view* line) noexcept;

// Reads lines up to and with the first that begins with `marker`.
//   - Without `keep` they are skipped.
//   - When the part's content type names a file ("name=" anywhere in it) they go to a new temporary
//   file, each with a line end. One that cannot be made loses the content, which is a warning, and
//   so is one that cannot be written in full.
//   - Otherwise they become the part's text, each with a line feed behind it; a line that ends in
//   "=" loses it and is joined to the next.
// What the part held before is replaced. `*last` (may be null) is set to true when the line with
// the marker holds nothing else but "--". Returns TAMU_PARSE_OK; TAMU_PARSE_WARNING;
// TAMU_PARSE_ERROR, after a log line, when the file ends before the marker's line does; or
// TAMU_OUT_OF_MEMORY.
[[nodiscard]] TamuResult VMSG_ReadContent(File* file, BodyPart* part, std::string_view marker,
                                          bool* last, bool keep) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_VMESSAGE_CONTENT_H_
