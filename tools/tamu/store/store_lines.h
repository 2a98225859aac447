// store/store_lines.h - what the library logged while it stored an object, in words for people: what
// failed though the result is a success, and what was left out because the file has it wrong.
//   Errors     std::bad_alloc.
#ifndef TAMU_TOOLS_STORE_STORE_LINES_H_
#define TAMU_TOOLS_STORE_STORE_LINES_H_

#include <string>
#include <vector>

#include "store/error_lines.h"

namespace tamu::tool {

struct StoreLines {
  std::string failure;               // of the device, several behind each other; "" for none
  std::vector<std::string> remarks;  // about the object, each once
};

[[nodiscard]] StoreLines STORELINES_From(const ErrorLines& lines);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_STORE_LINES_H_
