// formats/object_name.h - the name under which an object is shown.
#ifndef TAMU_FORMATS_OBJECT_NAME_H_
#define TAMU_FORMATS_OBJECT_NAME_H_

#include <string>

#include "tamu/tamu.h"

namespace tamu {

// Composes it: a contact's FN, else prefix, given, additional and family name and suffix of N; an
// event's "summary (location)"; a to-do's or note's summary; a message's "from - subject". Empty
// when there is none. The first conversion of a property settles its code page in the record.
// Throws std::bad_alloc when memory runs out.
[[nodiscard]] std::u16string OBJECT_ComposeName(ObjectKind kind, ObjectRecord* record);

}  // namespace tamu

#endif  // TAMU_FORMATS_OBJECT_NAME_H_
