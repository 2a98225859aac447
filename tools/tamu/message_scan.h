// message_scan.h - the lines of a vMessage once more, for what its record does not tell.
//   Reads as the library's reader does, line by line, and keeps nothing of a message. The content
//   of a mail is passed over up to END:VBODY.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_MESSAGE_SCAN_H_
#define TAMU_TOOLS_MESSAGE_SCAN_H_

#include <cstdint>
#include <string>

#include "core/file.h"
#include "losses.h"

namespace tamu::tool {

struct MessageParts {
  bool envelope = false;
  bool end = false;
  // The BEGIN of an object that a message does not hold: there reading ends.
  std::string stray;
  std::uint32_t stray_line = 0;  // 0 when there is none
};

// Looks the message through at whose BEGIN line the file stands. `losses` may be null.
MessageParts MESSAGE_Scan(File* file, Losses* losses);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_MESSAGE_SCAN_H_
