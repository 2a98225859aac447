// formats/vcard_writer.h - writes a contact record as a vCard 2.1.
#ifndef TAMU_FORMATS_VCARD_WRITER_H_
#define TAMU_FORMATS_VCARD_WRITER_H_

#include "core/file.h"
#include "tamu/tamu.h"

namespace tamu {

// Writes BEGIN, VERSION as the record has it, the properties in the order of VCARD_Rows, the
// identifier when `with_luid` is set and there is one, and END. Returns TAMU_OK, always: a failed
// write stays with the file.
[[nodiscard]] TamuResult VCARD_Write(File* file, const ObjectRecord& record,
                                     bool with_luid) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_VCARD_WRITER_H_
