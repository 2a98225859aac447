#include "card_scan.h"

#include <cstdint>

#include "formats/vcard_properties.h"
#include "object_scan.h"
#include "text/tokens.h"

namespace tamu::tool {
namespace {

bool HasFilledComponentBehind(std::uint32_t limit, char* value) noexcept {
  for (std::uint32_t index = 0;; ++index) {
    const char* const component = STR_NextToken(&value, ";");
    if (component == nullptr) return false;
    if (index >= limit && *component != '\0') return true;
  }
}

// A line of the card's own.
void CountLosses(const VcardName& kind, ScanLine* line, Losses* losses) {
  switch (kind.line) {
    case VcardLine::kUnknown:
      losses->unknown.Add(line->name());
      break;
    case VcardLine::kBegin:
      ++losses->nested;
      break;
    case VcardLine::kProperty:
      if (line->cut()) losses->parameters.Add(line->name());
      if (HasFilledComponentBehind(VCARD_Rows()[kind.row].components, line->value())) {
        losses->components.Add(line->name());
      }
      break;
    default:
      break;
  }
}

}  // namespace

CardParts CARD_Scan(File* file, Losses* losses) {
  ScanLine begin;
  if (!begin.Read(file)) return {};
  return CARD_ScanBody(file, losses);
}

CardParts CARD_ScanBody(File* file, Losses* losses) {
  CardParts parts;
  ScanLine line;
  for (std::uint64_t depth = 1; !parts.end && line.Read(file);) {
    if (line.blank()) continue;
    const VcardName kind = VCARD_FindName(LINE_TrimLeadingBlanks(line.name()));
    if (depth == 1 && losses != nullptr) CountLosses(kind, &line, losses);
    if (kind.line == VcardLine::kBegin) ++depth;
    if (kind.line == VcardLine::kEnd && --depth == 0) parts.end = true;
    if (kind.line == VcardLine::kVersion) parts.version = true;
    const bool is_n =
        kind.line == VcardLine::kProperty && VCARD_Rows()[kind.row].field == &ContactShape::prop_n;
    if (is_n) parts.n = true;
  }
  return parts;
}

}  // namespace tamu::tool
