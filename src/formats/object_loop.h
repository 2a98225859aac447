// formats/object_loop.h - the objects of a file one after the other, as every reader goes through
// them.
#ifndef TAMU_FORMATS_OBJECT_LOOP_H_
#define TAMU_FORMATS_OBJECT_LOOP_H_

#include "core/file.h"
#include "tamu/tamu.h"

namespace tamu {

// What differs between the formats.
struct ObjectLoop {
  const char* format;       // as log lines name it: "vCard"
  const char* begin_value;  // what has to follow "BEGIN:", blanks aside; null for anything
  // Reads one object from behind its BEGIN line into the shared record. Returns TAMU_PARSE_OK,
  // TAMU_PARSE_WARNING, TAMU_PARSE_ERROR or TAMU_OUT_OF_MEMORY.
  TamuResult (*read_body)(File* file, ReadCallback callback, void* user) noexcept;
  // The kind under which the loop delivers and frees the record; null when the body does both
  // itself.
  ObjectKind (*kind_of)(const ObjectRecord& record) noexcept;
};

// Reads objects until a line begins no further one, which ends the file quietly, or one cannot be
// read. The status of an object is the file's so far: once one had a warning, every later one has
// it too. Returns TAMU_PARSE_OK, TAMU_PARSE_WARNING, TAMU_PARSE_ERROR (no object at all, or one
// that was refused: it and those after it are not delivered) or TAMU_OUT_OF_MEMORY. Nothing is left
// in the shared record.
[[nodiscard]] TamuResult OBJECTS_ReadAll(const ObjectLoop& loop, File* file, ReadCallback callback,
                                         void* user) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_OBJECT_LOOP_H_
