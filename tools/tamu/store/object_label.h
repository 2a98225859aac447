// store/object_label.h - what messages call an object: `contact "Anna Berg"`.
//   Errors     std::bad_alloc.
#ifndef TAMU_TOOLS_STORE_OBJECT_LABEL_H_
#define TAMU_TOOLS_STORE_OBJECT_LABEL_H_

#include <cstdint>
#include <string>

#include "object_view.h"

namespace tamu::tool {

// The name that the object is shown by, UTF-8, not made safe to show; may be empty.
[[nodiscard]] std::string LABEL_Name(const DeliveredObject& object);

// Kind and name, safe to show; a long name is cut.
[[nodiscard]] std::string LABEL_Object(const DeliveredObject& object);

// "file:line: " in front of it, as messages about objects have it; `file` is safe to show.
[[nodiscard]] std::string LABEL_At(const std::string& file, std::uint32_t line,
                                   const std::string& label);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_OBJECT_LABEL_H_
