// messages.h - what the library notes in its log, in words for people.
//   The library's texts are fixed and terse. One table names each of them and says what happened
//   and what to do.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_MESSAGES_H_
#define TAMU_TOOLS_MESSAGES_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/log.h"

namespace tamu::tool {

enum class MessageKind : std::uint8_t {
  kWarning,     // something was skipped or cut; the object is read all the same
  kLeftOut,     // a warning about content that the object loses, which a summary may count instead
  kHarmless,    // a warning about nothing that is lost
  kError,       // ends the reading
  kIncomplete,  // the error that an object lacks one of its parts
  kUnended,     // the error about the object that was begun last, told at its beginning
  kLine,        // the error about one line, with the line's own number
  kSettings,    // a warning about the device's settings, not about a file
};

struct Message {
  MessageKind kind;
  std::uint32_t line;  // of the file that is read, 0 for none
  std::string text;
  std::string_view advice = {};  // what to do about it, a sentence; "" when there is nothing to say
};

// The message for a log line; none for a line that is of no use to people.
[[nodiscard]] std::optional<Message> MESSAGE_FromLog(const LogLine& line);

// "file:line: warning: text", without the line when there is none.
[[nodiscard]] std::string MESSAGE_Warning(std::string_view file, const Message& message);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_MESSAGES_H_
