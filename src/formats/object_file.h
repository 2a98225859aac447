// formats/object_file.h - an object file from its start: which format its first line begins, and
// its reading.
//   Ownership  the file stays the caller's, open.
//   Errors     results as below.
#ifndef TAMU_FORMATS_OBJECT_FILE_H_
#define TAMU_FORMATS_OBJECT_FILE_H_

#include <array>

#include "core/file.h"
#include "tamu/tamu.h"

namespace tamu {

// The name of an object ("VCARD"), terminated; longer ones are cut.
using ObjectName = std::array<char, 512>;

// The object name of the file's first physical line "BEGIN:name"; "" when it begins no object. Any
// property name that contains "BEGIN" will do. The file stands at its start, before and afterwards.
[[nodiscard]] ObjectName OBJECTFILE_PeekName(File* file) noexcept;

// Reads every object of a file that stands at its start and hands each to `callback` (may be null)
// with `user`. Returns what FORMAT_Read returns, the statuses TAMU_PARSE_OK and TAMU_PARSE_WARNING
// included. Afterwards log lines carry no source line.
[[nodiscard]] TamuResult OBJECTFILE_Read(File* file, ReadCallback callback, void* user) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_OBJECT_FILE_H_
