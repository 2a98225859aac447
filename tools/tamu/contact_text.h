// contact_text.h - what stands below the heading of a contact.
#ifndef TAMU_TOOLS_CONTACT_TEXT_H_
#define TAMU_TOOLS_CONTACT_TEXT_H_

#include "object_view.h"
#include "text_output.h"

namespace tamu::tool {

// Adds the contact's values, each kind under its label. Throws std::bad_alloc when memory runs out.
void TEXT_AddContact(const ObjectView& contact, TextLines* lines);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_CONTACT_TEXT_H_
