#include "store/object_label.h"

#include "display_text.h"
#include "formats/object_name.h"
#include "store/stored_kind.h"

namespace tamu::tool {
namespace {

constexpr std::size_t kMostUnits = 60;

// Names of messages are shown with their headers decoded.
std::u16string NameOf(const DeliveredObject& object) {
  return KIND_IsMessage(object.kind) ? VIEW_Make(object).name
                                     : OBJECT_ComposeName(object.kind, object.record);
}

bool IsTrail(char16_t unit) noexcept { return (unit & 0xFC00) == 0xDC00; }

}  // namespace

std::string LABEL_Name(const DeliveredObject& object) { return DISPLAY_ToUtf8(NameOf(object)); }

std::string LABEL_Object(const DeliveredObject& object) {
  const std::string kind(STORED_Words(STORED_KindOf(object.kind, *object.record)).one);
  std::u16string name = NameOf(object);
  if (name.empty()) return kind + " without a name";
  if (name.size() > kMostUnits) {
    std::size_t end = kMostUnits - 1;
    if (IsTrail(name[end])) --end;
    name.resize(end);
    name += u'\u2026';
  }
  return kind + " \"" + DISPLAY_Line(name) + "\"";
}

std::string LABEL_At(const std::string& file, std::uint32_t line, const std::string& label) {
  return file + ":" + std::to_string(line) + ": " + label;
}

}  // namespace tamu::tool
