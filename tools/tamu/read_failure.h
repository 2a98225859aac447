// read_failure.h - why reading a file stopped before its end, in words for people: what, where,
// what was read all the same, and what to do.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_READ_FAILURE_H_
#define TAMU_TOOLS_READ_FAILURE_H_

#include <cstdint>
#include <optional>

#include "core/file.h"
#include "formats/object_file.h"
#include "messages.h"
#include "object_reader.h"

namespace tamu::tool {

// How reading a file ended.
struct FailedReading {
  File* file;  // still open
  ObjectName object_name;
  TamuResult result;
  const Message* error;      // the library's word on it, null when it said none
  bool out_of_memory;        // in the program itself
  std::uint32_t begin_line;  // where the last object begins that was started
};

// The problem, or none when all was read. Looks at what lies behind the last object too, because
// the library ends its reading there without a word.
[[nodiscard]] std::optional<Problem> FAILURE_Explain(const FailedReading& reading,
                                                     ReadOutcome* outcome);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_READ_FAILURE_H_
