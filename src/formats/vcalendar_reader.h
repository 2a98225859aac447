// formats/vcalendar_reader.h - reads vCalendar 1.0 files into event and to-do records.
//   Values are kept raw, with their parameters and all their components; names are case-sensitive,
//   blanks in them do not count.
//   Ownership  the shared record's, see shared_record.h.
//   Errors     the results below, with a log line each.
#ifndef TAMU_FORMATS_VCALENDAR_READER_H_
#define TAMU_FORMATS_VCALENDAR_READER_H_

#include <cstdint>

#include "core/file.h"
#include "tamu/tamu.h"

namespace tamu {

// Reads every calendar from the file's position on, and calls `callback` (may be null) with each
// event and to-do when it ends, its calendar's status so far, and `user`. Returns TAMU_PARSE_OK,
// TAMU_PARSE_WARNING, TAMU_PARSE_ERROR (no BEGIN, or a calendar that cannot be read on: what was
// delivered before stays delivered) or TAMU_OUT_OF_MEMORY.
[[nodiscard]] TamuResult VCAL_Read(File* file, ReadCallback callback, void* user) noexcept;

// Reads one calendar from behind its BEGIN line to its END, delivering its components. VERSION and
// an identifier at this level belong to the next component alone. One message, that VERSION is
// missing, stands for every way in which a calendar is incomplete: no VERSION, no component, no
// END.
[[nodiscard]] TamuResult VCAL_ReadCalendar(File* file, ObjectRecord* record, ReadCallback callback,
                                           void* user) noexcept;

// What follows a component's BEGIN. (The record's own `component` has the numbers the other way
// round.)
enum class VcalComponent : std::uint8_t { kToDo = 1, kEvent = 2 };

// Reads one component from behind its BEGIN line to its END into the record, whose `component` is
// set there. Nested objects are skipped. A missing mandatory property is a warning, a missing END
// an error.
[[nodiscard]] TamuResult VCAL_ReadComponent(File* file, ObjectRecord* record,
                                            VcalComponent component) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_VCALENDAR_READER_H_
