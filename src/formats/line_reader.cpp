#include "formats/line_reader.h"

#include "core/log.h"
#include "text/logical_line.h"

namespace tamu {

TamuResult RESULT_NoBuffers() noexcept {
  LOG_Error("TAMU:  Error - Memory allocation error");
  return TAMU_OUT_OF_MEMORY;
}

bool LineReader::Read() noexcept {
  number_ = file_->Tell().line;
  line_ = FileLine(file_);
  if (!line_) return false;
  value_ = LINE_Split(name_.get(), params_.get(), line_.get());
  return true;
}

bool LineReader::Next(const char* format, TamuResult* result) noexcept {
  if (!Read()) {
    RESULT_Warn(result);
    return false;
  }
  if (!blank()) return true;
  LOG_Error("TAMU:  Warning - Parser encounted a blank line in %s", format);
  RESULT_Warn(result);
  return false;
}

}  // namespace tamu
