// formats/vnote_properties.h - the properties of a vNote 1.1, for the reader and the writer.
#ifndef TAMU_FORMATS_VNOTE_PROPERTIES_H_
#define TAMU_FORMATS_VNOTE_PROPERTIES_H_

#include <cstdint>
#include <span>
#include <string_view>

#include "tamu/tamu.h"

namespace tamu {

// What a line is, by its property name.
enum class VnoteCode : std::uint8_t {
  kUnknown = 0,
  kBegin = 1,
  kLuid = 2,
  kVersion = 3,
  kDcreated = 4,
  kLastModified = 5,
  kSummary = 6,
  kBody = 7,
  kCategories = 8,
  kClass = 9,
  kEnd = 10,
};

// One property that is kept in a chain of the note record.
struct VnoteRow {
  VnoteCode code;
  std::string_view name;
  Ref<Property> NoteShape::*field;
  bool always_written;  // as an empty line when the note has none
};

// In the order in which they are written.
[[nodiscard]] std::span<const VnoteRow> VNOTE_Rows() noexcept;

// The code of a name, whole and case-sensitive; kUnknown for any other.
[[nodiscard]] VnoteCode VNOTE_PropertyCode(std::string_view name) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_VNOTE_PROPERTIES_H_
