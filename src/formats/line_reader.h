// formats/line_reader.h - the lines of an object file, one property at a time, for every reader.
//   Ownership  the file is the caller's; name, parameters and value are this object's and live
//              until the next line.
//   Errors     see Next. A reader asks ok() first: without memory for the work buffers nothing can
//              be read.
#ifndef TAMU_FORMATS_LINE_READER_H_
#define TAMU_FORMATS_LINE_READER_H_

#include <cstdint>

#include "core/file.h"
#include "core/memory.h"
#include "tamu/tamu.h"
#include "text/tokens.h"

namespace tamu {

// Makes a status that was good a warning; an error stays one.
inline void RESULT_Warn(TamuResult* result) noexcept {
  if (*result == TAMU_PARSE_OK) *result = TAMU_PARSE_WARNING;
}

// Logs that memory ran out for a reader's work buffers and returns TAMU_OUT_OF_MEMORY.
[[nodiscard]] TamuResult RESULT_NoBuffers() noexcept;

class LineReader {
 public:
  explicit LineReader(File* file) noexcept : file_(file) {}

  [[nodiscard]] bool ok() const noexcept { return name_ && params_; }
  [[nodiscard]] File* file() const noexcept { return file_; }

  // Reads a logical line and splits it. Returns false when memory ran out for it. A blank line has
  // an empty name.
  [[nodiscard]] bool Read() noexcept;

  // The same inside an object. Returns false, and makes `*result` a warning, for a line without a
  // property: a blank one, after a log line that names `format` ("vCard"), or one that memory ran
  // out for.
  [[nodiscard]] bool Next(const char* format, TamuResult* result) noexcept;

  // The line as it was split; blanks may be removed in place.
  [[nodiscard]] char* name() const noexcept { return name_.get(); }
  [[nodiscard]] char* params() const noexcept { return params_.get(); }
  [[nodiscard]] char* value() const noexcept { return value_; }
  // True when the physical line held nothing.
  [[nodiscard]] bool blank() const noexcept { return *line_ == '\0'; }
  // The physical line of the file on which the line begins.
  [[nodiscard]] std::uint32_t number() const noexcept { return number_; }

 private:
  File* file_;
  MemPtr<char> name_{static_cast<char*>(MEM_Alloc(kNameSize))};
  MemPtr<char> params_{static_cast<char*>(MEM_Alloc(kParamsSize))};
  MemPtr<char> line_;
  char* value_ = nullptr;
  std::uint32_t number_ = 0;
};

}  // namespace tamu

#endif  // TAMU_FORMATS_LINE_READER_H_
