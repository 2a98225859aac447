// calendar_text.h - an event or a to-do, heading and all, as lines for people.
#ifndef TAMU_TOOLS_CALENDAR_TEXT_H_
#define TAMU_TOOLS_CALENDAR_TEXT_H_

#include "object_view.h"
#include "text_output.h"

namespace tamu::tool {

// Adds the heading and the item's values, each under its label. Throws std::bad_alloc when memory runs out.
void TEXT_AddCalendarItem(const ObjectView& item, TextLines* lines);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_CALENDAR_TEXT_H_
