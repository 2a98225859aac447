#include "formats/vnote_properties.h"

#include <iterator>

namespace tamu {
namespace {

constexpr VnoteRow kRows[] = {
    {VnoteCode::kDcreated, "DCREATED", &NoteShape::prop_dcreated, false},
    {VnoteCode::kLastModified, "LAST-MODIFIED", &NoteShape::prop_last_modified, false},
    {VnoteCode::kSummary, "SUMMARY", &NoteShape::prop_summary, false},
    {VnoteCode::kBody, "BODY", &NoteShape::prop_body, true},
    {VnoteCode::kCategories, "CATEGORIES", &NoteShape::prop_categories, false},
    {VnoteCode::kClass, "CLASS", &NoteShape::prop_class, false},
};

struct StructureName {
  std::string_view name;
  VnoteCode code;
};
constexpr StructureName kStructureNames[] = {
    {"BEGIN", VnoteCode::kBegin},
    {"END", VnoteCode::kEnd},
    {"VERSION", VnoteCode::kVersion},
    {"X-IRMC-LUID", VnoteCode::kLuid},
};
static_assert(std::size(kRows) + std::size(kStructureNames) == 10, "one name for each code");

}  // namespace

std::span<const VnoteRow> VNOTE_Rows() noexcept { return kRows; }

VnoteCode VNOTE_PropertyCode(std::string_view name) noexcept {
  for (const VnoteRow& row : kRows) {
    if (row.name == name) return row.code;
  }
  for (const StructureName& row : kStructureNames) {
    if (row.name == name) return row.code;
  }
  return VnoteCode::kUnknown;
}

}  // namespace tamu
