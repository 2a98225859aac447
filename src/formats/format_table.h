// formats/format_table.h - which reader takes a file and which writer a record.
#ifndef TAMU_FORMATS_FORMAT_TABLE_H_
#define TAMU_FORMATS_FORMAT_TABLE_H_

#include <string_view>

#include "core/file.h"
#include "tamu/tamu.h"

namespace tamu {

// Reads every object of a file by the reader of the object name behind its first BEGIN ("VCARD").
// The file stands at its start. Returns the reader's result, or TAMU_NO_VALID_OBJECT for an unknown
// name.
[[nodiscard]] TamuResult FORMAT_Read(std::string_view object_name, File* file,
                                     ReadCallback callback, void* user) noexcept;

// Writes a record by the writer of its kind, with its identifier. Returns the writer's result, or
// TAMU_UNSUPPORTED_TYPE, with nothing written, for an unknown kind.
[[nodiscard]] TamuResult FORMAT_Write(ObjectKind kind, File* file,
                                      const ObjectRecord& record) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_FORMAT_TABLE_H_
