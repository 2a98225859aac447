// object_reader.h - reads an object file for a command: objects, warnings, and what went wrong.
//   Objects are handed on one by one; memory is bounded by the largest of them.
//   Errors     in the result; what a handler throws ends the handing on, and counts as memory that
//   ran out.
#ifndef TAMU_TOOLS_OBJECT_READER_H_
#define TAMU_TOOLS_OBJECT_READER_H_

#include <cstdint>
#include <optional>
#include <string>

#include "core/file.h"
#include "messages.h"
#include "object_view.h"
#include "system/input_file.h"

namespace tamu::tool {

class ObjectHandler {
 public:
  // What the library logs meanwhile counts as said about the file, unless the handler observes the
  // log itself.
  virtual void TakeObject(const DeliveredObject& object) = 0;
  // In the file's order, those about an object behind the object.
  virtual void TakeWarning(const Message& warning) = 0;
  // Asked behind each object: true when nothing more is wanted.
  [[nodiscard]] virtual bool WantsEnd() { return false; }

 protected:
  ~ObjectHandler() = default;
};

// Why not all of a file was read.
struct Problem {
  std::uint32_t line = 0;  // 0: it has no place in the file
  std::string text;
};

// What stands behind the last object.
enum class RestOfFile : std::uint8_t { kNothing, kBlankLines, kText };

struct ReadOutcome {
  std::uint64_t objects = 0;  // handed on
  ObjectKind kind = KIND_CONTACT;
  File::Place end;  // behind the last of them, the start when there is none
  RestOfFile rest = RestOfFile::kNothing;
  std::optional<Message> rest_warning;  // about a rest without objects; handed on already
  std::optional<Problem> problem;
  bool ended = false;  // because the handler wanted it; of what follows nothing is known then
};

// Reads all objects of a file.
[[nodiscard]] ReadOutcome READ_Objects(const InputFile& input, ObjectHandler& handler);

// The number of objects that begin at or behind a place between objects: events and to-dos of
// calendars, objects as a whole otherwise. None when the file cannot be read a second time.
[[nodiscard]] std::optional<std::uint64_t> READ_CountFrom(const InputFile& input,
                                                          const File::Place& place);

// "file:line: text", as errors are told.
[[nodiscard]] std::string PROBLEM_Text(const std::string& file, const Problem& problem);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_OBJECT_READER_H_
