// formats/vnote_writer.h - writes a note record as a vNote 1.1.
#ifndef TAMU_FORMATS_VNOTE_WRITER_H_
#define TAMU_FORMATS_VNOTE_WRITER_H_

#include <cstdint>
#include <string_view>

#include "core/file.h"
#include "tamu/tamu.h"

namespace tamu {

// Writes BEGIN, VERSION as the record has it, the properties in the order of VNOTE_Rows, the
// identifier when `write_luid` is set and there is one, and END. Returns TAMU_OK, always.
[[nodiscard]] TamuResult VNOTE_Write(File* file, const ObjectRecord& record,
                                     bool write_luid) noexcept;

// Writes "name:value", or "name;params:value". Returns 0, or 1, after a log line, when memory runs
// out.
std::uint32_t VNOTE_WriteLine(File* file, std::string_view name, std::string_view params,
                              std::string_view value) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_VNOTE_WRITER_H_
