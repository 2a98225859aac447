// display_text.h - text from files and from the system as UTF-8 that is safe to show.
//   What a file holds can carry control sequences and direction overrides; none of them reaches a
//   terminal: they become visible escapes (\x1b, \u202e).
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_DISPLAY_TEXT_H_
#define TAMU_TOOLS_DISPLAY_TEXT_H_

#include <string>
#include <string_view>
#include <vector>

namespace tamu::tool {

// UTF-16 as UTF-8, nothing escaped; a lone surrogate becomes U+FFFD.
[[nodiscard]] std::string DISPLAY_ToUtf8(std::u16string_view text);

// One character a byte, U+0000 to U+00FF, as UTF-8.
[[nodiscard]] std::string DISPLAY_BytesToUtf8(std::string_view bytes);

// Decoded text on one line.
[[nodiscard]] std::string DISPLAY_Line(std::u16string_view text);

// Decoded text line by line: CR LF, LF and CR end lines, a tab is shown as a space. Empty lines at
// the end are left out; empty text has no lines.
[[nodiscard]] std::vector<std::string> DISPLAY_Lines(std::u16string_view text);

// Bytes that are most likely UTF-8 (file names, names in messages); one that is not is shown as
// \xNN.
[[nodiscard]] std::string DISPLAY_Bytes(std::string_view bytes);

// A file's name for messages: DISPLAY_Bytes of it, in quotes when it is empty.
[[nodiscard]] std::string DISPLAY_FileName(std::string_view name);

// Valid JSON with every character that is unsafe to show written as its \uNNNN escape.
[[nodiscard]] std::string DISPLAY_Json(std::string_view json);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_DISPLAY_TEXT_H_
