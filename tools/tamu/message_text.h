// message_text.h - a message, heading and all, as lines for people.
#ifndef TAMU_TOOLS_MESSAGE_TEXT_H_
#define TAMU_TOOLS_MESSAGE_TEXT_H_

#include "object_view.h"
#include "text_output.h"

namespace tamu::tool {

// Adds the heading and the message's values, each under its label. Throws std::bad_alloc when memory runs out.
void TEXT_AddMessage(const ObjectView& message, TextLines* lines);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_MESSAGE_TEXT_H_
