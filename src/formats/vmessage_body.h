// formats/vmessage_body.h - the mail in a vMessage: its headers and its content.
#ifndef TAMU_FORMATS_VMESSAGE_BODY_H_
#define TAMU_FORMATS_VMESSAGE_BODY_H_

#include "core/file.h"
#include "tamu/tamu.h"

namespace tamu {

// Reads a mail from behind BEGIN:VBODY into the message, up to an END among its headers or to the
// end of its content, which the first empty line begins: that of multipart by VMSG_ReadMultipart,
// any other up to a line that begins with END:VBODY. Values keep their blanks.
// Returns TAMU_PARSE_OK; TAMU_PARSE_WARNING (an unknown or unreadable line, a value that was cut, a
// warning of the content); TAMU_PARSE_ERROR, after a log line, when the file ends among the headers
// or in a content that is kept; or TAMU_OUT_OF_MEMORY.
[[nodiscard]] TamuResult VMSG_ReadBody(File* file, MessageShape* message) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_VMESSAGE_BODY_H_
