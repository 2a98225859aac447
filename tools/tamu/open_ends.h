// open_ends.h - texts of a record that would join the line they are written on with the next one.
//   A line that ends in "=" goes on in the next, so that a text which does would swallow it, the
//   END of its object even. Texts come to end so where they were cut, or lost what stood behind.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_OPEN_ENDS_H_
#define TAMU_TOOLS_OPEN_ENDS_H_

#include "tamu/tamu.h"

namespace tamu::tool {

// Puts a blank behind every such "=" of what is written; where the field has no room for it, the
// "=" goes. Contents of mails are left alone: the line that ends one is found behind any line.
// Returns true when there was one.
bool OPENENDS_Close(ObjectKind kind, ObjectRecord* record);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_OPEN_ENDS_H_
