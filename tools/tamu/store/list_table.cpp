#include "store/list_table.h"

#include <algorithm>

#include "date_words.h"
#include "display_text.h"
#include "mail_text.h"
#include "platform/code_pages.h"

namespace tamu::tool {
namespace {

// So many objects settle the columns.
constexpr std::size_t kMostWaiting = 500;
// What is wider does not widen its column.
constexpr std::size_t kWidestColumn = 40;
constexpr std::string_view kGap = "  ";

struct Range {
  char32_t first;
  char32_t last;
};
// Of two columns: Unicode's East Asian widths W and F, rounded to blocks.
constexpr Range kWide[] = {
    {0x1100, 0x115F},   {0x231A, 0x231B},   {0x2E80, 0x303E},   {0x3041, 0xA4CF},  {0xA960, 0xA97F},
    {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},  {0xFFE0, 0xFFE6},
    {0x1F300, 0x1F64F}, {0x1F680, 0x1F6FF}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};
// Of none: combining marks of the usual blocks, joiners, variation selectors.
constexpr Range kNarrow[] = {{0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD},
                             {0x064B, 0x065F}, {0x200B, 0x200F}, {0x20D0, 0x20FF},
                             {0x3099, 0x309A}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}};

template <std::size_t count>
bool Contains(const Range (&ranges)[count], char32_t character) noexcept {
  return std::any_of(std::begin(ranges), std::end(ranges), [&](const Range& range) {
    return character >= range.first && character <= range.last;
  });
}

std::size_t WidthOf(char32_t character) noexcept {
  if (Contains(kNarrow, character)) return 0;
  return Contains(kWide, character) ? 2 : 1;
}

bool TakesADay(const CatalogueEntry& entry, const DateFields& fields) noexcept {
  const bool midnight = fields.hour == 0 && fields.minute == 0 && fields.second == 0;
  return midnight && (entry.id.kind == StoredKind::kTodo || entry.state == "all day");
}

// The store has headers as they came.
std::u16string Decoded(const CatalogueEntry& entry, const std::u16string& text) {
  if (entry.id.kind != StoredKind::kMessage) return text;
  return MAIL_DecodeHeader(DISPLAY_ToUtf8(text), platform::kCpUtf8);
}

// "2003-12-31 23:59": people need no seconds.
std::string DateColumn(const CatalogueEntry& entry) {
  constexpr std::size_t kMinutesEnd = 16, kTimePlace = 10;
  std::string text = LIST_Date(entry).substr(0, kMinutesEnd);
  if (text.size() > kTimePlace) text[kTimePlace] = ' ';
  return text;
}

}  // namespace

std::string LIST_Date(const CatalogueEntry& entry) {
  DateFields fields;
  if (!entry.when || !DATE_ToFields({*entry.when, true}, &fields)) return {};
  return DATE_Iso(fields, !TakesADay(entry, fields), "");
}

std::u16string LIST_Title(const CatalogueEntry& entry) { return Decoded(entry, entry.title); }

std::u16string LIST_Detail(const CatalogueEntry& entry) { return Decoded(entry, entry.detail); }

std::size_t LIST_Width(std::string_view utf8) noexcept {
  std::size_t width = 0;
  for (std::size_t i = 0; i < utf8.size();) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    char32_t character = length == 1 ? lead : lead & (0x7FU >> length);
    for (std::size_t k = 1; k < length && i + k < utf8.size(); ++k) {
      character = (character << 6U) | (static_cast<unsigned char>(utf8[i + k]) & 0x3FU);
    }
    width += WidthOf(character);
    i += length;
  }
  return width;
}

void ListTable::Add(const CatalogueEntry& entry) {
  // A note's id is its title, which stands in a column of its own.
  const bool is_note = entry.id.kind == StoredKind::kNote;
  Row row = {std::string(STORED_Words(entry.id.kind).one),
             is_note ? "-" : entry.id.Text(),
             DateColumn(entry),
             DISPLAY_Line(LIST_Title(entry)),
             DISPLAY_Line(LIST_Detail(entry)),
             std::string(entry.state),
             std::string(entry.folder)};
  if (settled_) {
    Print(row);
    console_->ExitIfBroken();
    return;
  }
  for (std::size_t i = 0; i < kColumns; ++i) {
    const std::size_t width = LIST_Width(row[i]);
    // An id is never parted from its column: it is copied from it.
    if (width <= kWidestColumn || i == 1) widths_[i] = std::max(widths_[i], width);
  }
  waiting_.push_back(std::move(row));
  if (waiting_.size() == kMostWaiting) Finish();
}

void ListTable::Finish() {
  settled_ = true;
  for (const Row& row : waiting_) Print(row);
  waiting_.clear();
}

void ListTable::Print(const Row& row) {
  std::string line;
  std::size_t place = 0;  // where the next column begins
  std::size_t width = 0;
  for (std::size_t i = 0; i < kColumns; ++i) {
    if (widths_[i] == 0 && row[i].empty()) continue;
    if (!row[i].empty()) {
      if (width < place) line.append(place - width, ' ');
      line += row[i];
      width = std::max(width, place) + LIST_Width(row[i]);
    }
    place = std::max(place + widths_[i], width) + kGap.size();
  }
  console_->Print(line + "\n");
}

}  // namespace tamu::tool
