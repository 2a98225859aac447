// formats/property_emitter.h - lines of an object file: what every writer puts its properties out
// with.
//   Values are written as the record holds them, already encoded. Lines end as the file's mode
//   says. There is no folding by width: a line is only broken after an encoded line feed.
//   Errors     results as below; a line that memory runs out for is left out.
#ifndef TAMU_FORMATS_PROPERTY_EMITTER_H_
#define TAMU_FORMATS_PROPERTY_EMITTER_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/file.h"
#include "tamu/tamu.h"

namespace tamu {

// Writes "name:value", or "name;params:value" when there are parameters. Returns 0, or 1, after a
// log line that names the format ("vCard"), when memory runs out.
std::uint32_t VOBJ_PutLine(File* file, std::string_view name, std::string_view params,
                           std::string_view value, const char* format = "vCard") noexcept;

// Writes one line for each node of a chain; for an empty chain "name:" when `emit_empty` is set.
// Returns 0.
std::uint32_t VOBJ_PutProperty(File* file, std::string_view name, const Property* first_node,
                               bool emit_empty) noexcept;

// Builds the text of one property: name, ";" and each parameter that has a text, ":", and the
// components joined by ";". At most `size` bytes with the terminator are written to `out`; null
// only measures. Returns the text's length + 1.
std::size_t VOBJ_FormatProperty(std::string_view name, const Property& node, char* out,
                                std::size_t size) noexcept;

// Writes a property's text, a physical line for each "=0A" in it that something follows, with an
// "=" behind it as soft line break. `qp` says whether the value is quoted-printable and changes
// nothing. An empty text writes nothing. Returns 0, or 1, after a log line, when the last line
// cannot be written.
std::uint32_t VOBJ_PutQpText(File* file, std::string_view text, bool qp) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_PROPERTY_EMITTER_H_
