// The names of exported files.
#include <array>
#include <string_view>

#include "display_text.h"
#include "pimstore/notes.h"
#include "platform/paths.h"
#include "store/exporter.h"
#include "text/unicode.h"

namespace tamu::tool {
namespace {

// Of a name, without what tells it from others and its ending: file systems take 255 bytes.
constexpr std::size_t kLongestStem = 220;

std::string_view EndingOf(StoredKind kind) noexcept {
  switch (kind) {
    case StoredKind::kContact:
      return ".vcf";
    case StoredKind::kEvent:
    case StoredKind::kTodo:
      return ".vcs";
    case StoredKind::kNote:
      return ".vnt";
    case StoredKind::kMessage:
      break;
  }
  return ".vmg";
}

// A note's title as a part of a file's name.
std::string TitlePart(const std::u16string& title) {
  std::array<char16_t, kNoteTitleLength> cleaned{};
  NOTE_CleanTitle(title.c_str(), cleaned.data(), cleaned.size());
  return DISPLAY_ToUtf8(cleaned.data());
}

void CutUtf8(std::string* text, std::size_t most) {
  if (text->size() <= most) return;
  while (most != 0 && (static_cast<unsigned char>((*text)[most]) & 0xC0U) == 0x80U) --most;
  text->resize(most);
}

}  // namespace

std::string ExportNames::Next(const ObjectId& id) {
  std::string stem(STORED_Words(id.kind).one);
  const std::string part = id.kind == StoredKind::kNote ? TitlePart(id.title) : id.Text();
  if (!part.empty()) stem += "-" + part;
  CutUtf8(&stem, kLongestStem);
  const std::string ending(EndingOf(id.kind));
  // Numbers of items are as long as they are different.
  if (id.kind != StoredKind::kNote && id.kind != StoredKind::kMessage) return stem + ending;
  std::string name = stem + ending;
  for (std::uint64_t copy = 2;
       !given_.insert(UNICODE_FoldText(platform::PathFromNative(name))).second; ++copy) {
    name = stem + "-" + std::to_string(copy) + ending;
  }
  return name;
}

}  // namespace tamu::tool
