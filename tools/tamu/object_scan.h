// object_scan.h - the lines of calendars and notes once more, for what their records do not tell.
//   Reads as the library's readers do, line by line, and keeps nothing of an object.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_OBJECT_SCAN_H_
#define TAMU_TOOLS_OBJECT_SCAN_H_

#include <array>
#include <cstdint>

#include "core/file.h"
#include "core/memory.h"
#include "losses.h"
#include "text/tokens.h"

namespace tamu::tool {

// A logical line, split.
class ScanLine {
 public:
  // Returns false at the end of the file.
  [[nodiscard]] bool Read(File* file) noexcept;

  // Blanks may be removed in place.
  [[nodiscard]] char* name() noexcept { return name_.data(); }
  [[nodiscard]] char* value() noexcept { return value_; }
  // True for a line that holds nothing, or that there is no memory for.
  [[nodiscard]] bool blank() const noexcept { return blank_; }
  // The parameters are longer than what is kept of them.
  [[nodiscard]] bool cut() const noexcept { return cut_; }
  // The physical line of the file on which it begins.
  [[nodiscard]] std::uint32_t number() const noexcept { return number_; }

 private:
  std::array<char, kNameSize> name_{};
  std::array<char, kParamsSize> params_{};
  MemPtr<char> line_;
  char* value_ = nullptr;
  bool blank_ = true;
  bool cut_ = false;
  std::uint32_t number_ = 0;
};

// Which of the lines that a calendar needs it has.
struct CalendarParts {
  std::uint32_t begin_line = 0;
  bool version = false;
  bool component = false;
  bool end = false;
};
// Looks the calendar through at whose BEGIN line the file stands. `losses` may be null.
CalendarParts CALENDAR_Scan(File* file, Losses* losses);

// Moves to behind the END line of a calendar whose components have been read.
void CALENDAR_SkipEnd(File* file) noexcept;

struct NoteParts {
  bool version = false;
  bool end = false;
};
NoteParts NOTE_Scan(File* file, Losses* losses);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_OBJECT_SCAN_H_
