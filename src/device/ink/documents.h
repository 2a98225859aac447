// device/ink/documents.h - the notes in the device's documents folder, by their titles.
//   A note is a rich-ink document whose file name is its title and ".pwi" (capitals, as memory
//   cards have them, also do).
//   Units      titles are UTF-16 without the extension; times are seconds since 1970, UTC.
//   Errors     0, or the platform's error number (platform/last_error.h); nothing is thrown.
#ifndef TAMU_DEVICE_INK_DOCUMENTS_H_
#define TAMU_DEVICE_INK_DOCUMENTS_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "device/ink/ink_decoder.h"

namespace tamu::device {

struct Document {
  // The full title, also where the file system's name had to be shortened; there it is the
  // shortened one when the file lost its extended attributes (by a copy that leaves them out, say)
  // or the file system has none. Either one reads and deletes the note.
  std::u16string title;
  std::u16string path;
  std::uint64_t size = 0;  // bytes
  std::int64_t modified = 0;
};

// All notes, by title without regard to case. No folder means no notes.
[[nodiscard]] std::uint32_t DOCUMENTS_List(std::vector<Document>* documents) noexcept;

// The text of a note. 2 when there is none with this title, 123 for a title that no file can have,
// 223 for a file that cannot be a note by its size. `*text` is empty after a failure.
[[nodiscard]] std::uint32_t DOCUMENTS_Read(std::u16string_view title, InkText* text) noexcept;

// Deletes a note. 2 when there is none, 123 as above.
[[nodiscard]] std::uint32_t DOCUMENTS_Delete(std::u16string_view title) noexcept;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_INK_DOCUMENTS_H_
