// json_output.h - objects as JSON, one object a line; docs/json.md describes it for its users.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_JSON_OUTPUT_H_
#define TAMU_TOOLS_JSON_OUTPUT_H_

#include <string>
#include <string_view>

#include "object_view.h"

namespace tamu::tool {

// The object's line, line end included. `file` is the name that the user gave.
[[nodiscard]] std::string JSON_Object(const ObjectView& object, std::string_view file);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_JSON_OUTPUT_H_
