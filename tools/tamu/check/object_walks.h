// check/object_walks.h - calendars and messages, which hold other objects.
//   Each function walks from behind the BEGIN line, which is the walk's current one, to the END; to
//   the file's end without one.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_CHECK_OBJECT_WALKS_H_
#define TAMU_TOOLS_CHECK_OBJECT_WALKS_H_

#include "check/check_walk.h"
#include "formats/vmessage_headers.h"
#include "tamu/tamu.h"

namespace tamu::tool {

void CALENDAR_Walk(CheckWalk* walk);

void MESSAGE_Walk(CheckWalk* walk);

// The mail of a message, with its content. Returns false when lines of it may follow that nobody
// reads: where a part's header ends the reading of the parts.
[[nodiscard]] bool MAIL_Walk(CheckWalk* walk, MessageShape* message);

// A line that is kept in a message, a mail or a part: what of it is lost.
void HEADER_Check(CheckWalk* walk, const VmsgRow& row);

// Keeps a header's value where the library keeps it, in the message or the part. One that was there
// is a finding.
void HEADER_Keep(CheckWalk* walk, const VmsgRow& row, MessageShape* message, BodyPart* part);

// Passes over an object that is not read.
void SKIP_Walk(CheckWalk* walk);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_CHECK_OBJECT_WALKS_H_
