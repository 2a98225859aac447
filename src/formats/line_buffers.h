// formats/line_buffers.h - the work buffers of a reader: a line, and the name and parameters it is
// split into.
#ifndef TAMU_FORMATS_LINE_BUFFERS_H_
#define TAMU_FORMATS_LINE_BUFFERS_H_

#include "core/memory.h"
#include "text/tokens.h"

namespace tamu {

struct LineBuffers {
  MemPtr<char> name{static_cast<char*>(MEM_Alloc(kNameSize))};
  MemPtr<char> params{static_cast<char*>(MEM_Alloc(kParamsSize))};

  [[nodiscard]] bool ok() const noexcept { return name && params; }
};

}  // namespace tamu

#endif  // TAMU_FORMATS_LINE_BUFFERS_H_
