// formats/vcalendar_writer.h - writes an event or to-do record as a vCalendar 1.0.
#ifndef TAMU_FORMATS_VCALENDAR_WRITER_H_
#define TAMU_FORMATS_VCALENDAR_WRITER_H_

#include <cstdint>
#include <string_view>

#include "core/file.h"
#include "tamu/tamu.h"

namespace tamu {

// Writes a calendar with the one component that the record is, or with none when it is neither
// event nor to-do: VERSION as the record has it, the component's properties in their order
// (VCAL_WrittenRows), the identifier when `write_luid` is set and there is one, and for an event
// whether it takes all day. Returns TAMU_OK, always.
[[nodiscard]] TamuResult VCAL_Write(File* file, const ObjectRecord& record,
                                    bool write_luid) noexcept;

// Writes "name:value", or "name;params:value". Returns 0, or 1, after a log line, when memory runs
// out.
std::uint32_t VCAL_WriteLine(File* file, std::string_view name, std::string_view params,
                             std::string_view value) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_VCALENDAR_WRITER_H_
