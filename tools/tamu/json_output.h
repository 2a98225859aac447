// json_output.h - objects as JSON, one object a line; docs/json.md describes it for its users.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_JSON_OUTPUT_H_
#define TAMU_TOOLS_JSON_OUTPUT_H_

#include <string>
#include <string_view>
#include <vector>

#include "object_view.h"

namespace tamu::tool {

// The object's line, line end included. `file` is the name that the user gave.
[[nodiscard]] std::string JSON_Object(const ObjectView& object, std::string_view file);

// The line of an object that is on the device: what belongs to a file ("status", "file", "line") is
// left out, its id stands behind its kind, and `losses` (texts for people) at its end.
[[nodiscard]] std::string JSON_StoredObject(const ObjectView& object, std::string_view id,
                                            const std::vector<std::string>& losses);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_JSON_OUTPUT_H_
