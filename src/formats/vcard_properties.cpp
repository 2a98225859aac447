#include "formats/vcard_properties.h"

#include <iterator>

namespace tamu {
namespace {

// BDAY stands right after NICKNAME here, although its field is the twelfth.
constexpr VcardRow kRows[] = {
    {"N", &ContactShape::prop_n, 5, true},
    {"FN", &ContactShape::prop_fn, 1, false},
    {"NICKNAME", &ContactShape::prop_nickname, 1, false},
    {"BDAY", &ContactShape::prop_bday, 1, false},
    {"ADR", &ContactShape::prop_adr, 7, false},
    {"ORG", &ContactShape::prop_org, 2, false},
    {"TITLE", &ContactShape::prop_title, 1, false},
    {"ROLE", &ContactShape::prop_role, 1, false},
    {"TEL", &ContactShape::prop_tel, 1, false},
    {"URL", &ContactShape::prop_url, 1, false},
    {"EMAIL", &ContactShape::prop_email, 1, false},
    {"NOTE", &ContactShape::prop_note, 1, false},
    {"X-SPOUSE", &ContactShape::prop_spouse, 1, false},
    {"X-ANNIVERSARY", &ContactShape::prop_anniversary, 1, false},
    {"X-CHILDREN", &ContactShape::prop_children, 1, false},
    {"X-ASSISTANT", &ContactShape::prop_assistant, 1, false},
    {"X-CAT", &ContactShape::prop_category, 1, false},
};

struct StructureName {
  std::string_view name;
  VcardLine line;
};
constexpr StructureName kStructureNames[] = {
    {"BEGIN", VcardLine::kBegin},
    {"END", VcardLine::kEnd},
    {"X-IRMC-LUID", VcardLine::kLuid},
    {"VERSION", VcardLine::kVersion},
};

constexpr bool EveryContactFieldHasOneRow() {
  for (std::size_t i = 0; i < std::size(kRows); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (kRows[i].field == kRows[j].field || kRows[i].name == kRows[j].name) return false;
    }
  }
  return std::size(kRows) ==
         (sizeof(ContactShape) - offsetof(ContactShape, prop_n)) / sizeof(Ref<Property>);
}
static_assert(EveryContactFieldHasOneRow());

}  // namespace

std::span<const VcardRow> VCARD_Rows() noexcept { return kRows; }

VcardName VCARD_FindName(std::string_view name) noexcept {
  for (std::uint32_t i = 0; i < std::size(kRows); ++i) {
    if (kRows[i].name == name) return {VcardLine::kProperty, i};
  }
  for (const StructureName& row : kStructureNames) {
    if (row.name == name) return {row.line};
  }
  return {};
}

}  // namespace tamu
