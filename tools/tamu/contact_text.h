// contact_text.h - a contact, heading and all, as lines for people.
#ifndef TAMU_TOOLS_CONTACT_TEXT_H_
#define TAMU_TOOLS_CONTACT_TEXT_H_

#include "object_view.h"
#include "text_output.h"

namespace tamu::tool {

// Adds the heading and the contact's values, each kind under its label. Throws std::bad_alloc when memory runs out.
void TEXT_AddContact(const ObjectView& contact, TextLines* lines);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_CONTACT_TEXT_H_
