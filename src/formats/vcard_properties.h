// formats/vcard_properties.h - the properties of a vCard 2.1, for the reader and the writer.
#ifndef TAMU_FORMATS_VCARD_PROPERTIES_H_
#define TAMU_FORMATS_VCARD_PROPERTIES_H_

#include <cstdint>
#include <span>
#include <string_view>

#include "tamu/tamu.h"

namespace tamu {

// One property that is kept in a chain of the contact record.
struct VcardRow {
  std::string_view name;
  Ref<Property> ContactShape::*field;
  std::uint32_t components;  // kept when reading; further ones are dropped
  bool always_written;       // as an empty line when the contact has none
};

// In the order in which they are written.
[[nodiscard]] std::span<const VcardRow> VCARD_Rows() noexcept;

// What a line of a vCard is, by its property name.
enum class VcardLine : std::uint8_t { kUnknown, kBegin, kEnd, kLuid, kVersion, kProperty };

struct VcardName {
  VcardLine line = VcardLine::kUnknown;
  std::uint32_t row = 0;  // of VCARD_Rows, for kProperty
};

// Looks a name up, whole and case-sensitively.
[[nodiscard]] VcardName VCARD_FindName(std::string_view name) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_VCARD_PROPERTIES_H_
