// formats/vmessage_writer.h - writes a message record as a vMessage 1.1.
#ifndef TAMU_FORMATS_VMESSAGE_WRITER_H_
#define TAMU_FORMATS_VMESSAGE_WRITER_H_

#include <cstdint>
#include <string_view>

#include "core/file.h"
#include "tamu/tamu.h"

namespace tamu {

// Writes one envelope with one mail: the headers, an empty line, and the first part's text as it
// stands, if there is one, with a line end behind it, which a text that was read has already. What
// else the record holds (further parts, temporary files, the MIME version) is not written. The
// identifier is, when `write_luid` is set and there is one. Returns TAMU_OK, always.
[[nodiscard]] TamuResult VMSG_Write(File* file, const ObjectRecord& record,
                                    bool write_luid) noexcept;

// Writes "name:value", or "name;params:value". Returns 0, or 1, after a log line, when memory runs
// out.
std::uint32_t VMSG_WriteLine(File* file, std::string_view name, std::string_view params,
                             std::string_view value) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_VMESSAGE_WRITER_H_
