#include "card_scan.h"

#include <array>
#include <cstring>

#include "core/memory.h"
#include "display_text.h"
#include "formats/vcard_properties.h"
#include "text/logical_line.h"
#include "text/tokens.h"

namespace tamu::tool {
namespace {

constexpr std::size_t kMostNames = 1000;
constexpr std::size_t kMostNamesShown = 20;

// One line of a card.
struct CardLine {
  std::uint64_t depth;  // 1 for the card's own
  VcardName kind;
  const char* name;
  char* value;
  bool parameters_cut;
};

// The parameter text of a known property was longer than what is kept of it.
bool CutsParameters(const char* line, const char* name, const char* value) noexcept {
  const auto head = static_cast<std::size_t>(value - line);
  return head > std::strlen(name) + 1 + kParamsSize;
}

// Calls `take` with each line from the file's position on, up to the END that matches a BEGIN
// already read. Returns true when there is one.
template <typename Take>
bool ForEachLine(File* file, Take take) {
  std::array<char, kNameSize> name;
  std::array<char, kParamsSize> params;
  for (std::uint64_t depth = 1; !file->AtEnd();) {
    const MemPtr<char> line = FileLine(file);
    if (!line || *line == '\0') continue;
    char* const value = LINE_Split(name.data(), params.data(), line.get());
    const bool cut = CutsParameters(line.get(), name.data(), value);
    const VcardName kind = VCARD_FindName(LINE_TrimLeadingBlanks(name.data()));
    take(CardLine{depth, kind, name.data(), value, cut});
    if (kind.line == VcardLine::kBegin) ++depth;
    if (kind.line == VcardLine::kEnd && --depth == 0) return true;
  }
  return false;
}

bool HasFilledComponentBehind(std::uint32_t limit, char* value) noexcept {
  for (std::uint32_t index = 0;; ++index) {
    const char* const component = STR_NextToken(&value, ";");
    if (component == nullptr) return false;
    if (index >= limit && *component != '\0') return true;
  }
}

void CountLosses(const CardLine& line, CardLosses* losses) {
  if (line.depth != 1) return;
  switch (line.kind.line) {
    case VcardLine::kUnknown:
      losses->unknown.Add(line.name);
      break;
    case VcardLine::kBegin:
      ++losses->nested;
      break;
    case VcardLine::kProperty:
      if (line.parameters_cut) losses->parameters.Add(line.name);
      if (HasFilledComponentBehind(VCARD_Rows()[line.kind.row].components, line.value)) {
        losses->components.Add(line.name);
      }
      break;
    default:
      break;
  }
}

}  // namespace

void NameCounts::Add(const std::string& name) {
  const auto found = counts_.find(name);
  if (found != counts_.end()) {
    ++found->second;
  } else if (counts_.size() < kMostNames) {
    counts_.emplace(name, 1);
  } else {
    ++others_;
  }
}

std::string NameCounts::Text() const {
  std::string text;
  std::size_t shown = 0;
  std::uint64_t hidden = others_;
  for (const auto& [name, count] : counts_) {
    if (shown++ >= kMostNamesShown) {
      hidden += count;
      continue;
    }
    if (!text.empty()) text += ", ";
    text += name.empty() ? "a line without a name" : DISPLAY_Bytes(name);
    if (count > 1) text += " (" + std::to_string(count) + ")";
  }
  if (hidden != 0) text += " and " + std::to_string(hidden) + " of other names";
  return text;
}

CardParts CARD_FindParts(File* file) {
  CardParts parts;
  static_cast<void>(FileLine(file));
  parts.end = ForEachLine(file, [&](const CardLine& line) {
    const bool is_n = line.kind.line == VcardLine::kProperty &&
                      VCARD_Rows()[line.kind.row].field == &ContactShape::prop_n;
    if (line.kind.line == VcardLine::kVersion) parts.version = true;
    if (is_n) parts.n = true;
  });
  return parts;
}

CardLosses CARD_FindLosses(File* file, std::uint64_t end_offset) {
  CardLosses losses;
  while (!file->AtEnd() && file->Tell().offset < end_offset) {
    static_cast<void>(FileLine(file));
    ForEachLine(file, [&](const CardLine& line) { CountLosses(line, &losses); });
  }
  return losses;
}

}  // namespace tamu::tool
