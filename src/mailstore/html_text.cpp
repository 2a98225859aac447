#include "mailstore/html_text.h"

#include <algorithm>
#include <cstddef>
#include <new>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "mailstore/html_entities.h"

namespace tamu {
namespace {

constexpr std::u16string_view kLineBreak = u"\r\n";

struct TagRow {
  std::u16string_view name;
  std::size_t compared;  // characters of the tag that are compared with the name
  std::int32_t depth;    // what is added to the depth of BODY
  bool breaks_line;
};
// In this order. Too few characters of table cells and list items are compared for them ever to be
// found.
constexpr TagRow kTags[] = {
    {u"BODY", 4, 1, false}, {u"/BODY", 5, -1, false}, {u"/DIV", 4, 0, true}, {u"/P", 2, 0, true},
    {u"/TD", 2, 0, true},   {u"/LI", 2, 0, true},     {u"BR", 2, 0, true},
};

// Whatever is appended is not longer than what it stands for: "<BR>" or "&x;". So the text fits
// where the HTML would.
constexpr bool BreaksFit() noexcept {
  for (const TagRow& row : kTags) {
    if (row.breaks_line && row.compared + 2 < kLineBreak.size()) return false;
  }
  return true;
}
static_assert(BreaksFit());

constexpr char16_t ToUpper(char16_t unit) noexcept {
  return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - u'a' + u'A') : unit;
}

bool Matches(std::u16string_view tag, const TagRow& row) noexcept {
  tag = tag.substr(0, row.compared);
  if (tag.size() != row.name.size()) return false;
  for (std::size_t i = 0; i < tag.size(); ++i) {
    if (ToUpper(tag[i]) != row.name[i]) return false;
  }
  return true;
}

const TagRow* FindTag(std::u16string_view tag) noexcept {
  for (const TagRow& row : kTags) {
    if (Matches(tag, row)) return &row;
  }
  return nullptr;
}

enum class State : std::uint8_t { kText, kTag, kEntity, kAfterNewline };

// True for the units that mean something in text; they are all among the first 64.
constexpr bool IsMarkup(char16_t unit) noexcept {
  constexpr std::uint64_t kMarkup = 1ULL << u'<' | 1ULL << u'&' | 1ULL << u'\r' | 1ULL << u'\n';
  return unit < 64 && (kMarkup >> unit & 1) != 0;
}

class Converter {
 public:
  // `out` holds as many units as the HTML has.
  Converter(std::u16string_view html, char16_t* out) noexcept : rest_(html), out_(out) {}

  // Returns the end of the text.
  char16_t* Run() noexcept {
    while (!rest_.empty()) {
      switch (state_) {
        case State::kText:
          TakeText();
          break;
        case State::kTag:
          if (TakePiece(u'>')) EndTag();
          break;
        case State::kEntity:
          if (TakePiece(u';')) EndEntity();
          break;
        case State::kAfterNewline:
          Skip(rest_.find_first_not_of(u" \t"));
          state_ = State::kText;
          break;
      }
    }
    return out_;
  }

 private:
  // Up to the next unit that means something, and that unit.
  void TakeText() noexcept {
    std::size_t length = 0;
    while (length < rest_.size() && !IsMarkup(rest_[length])) ++length;
    if (depth_ != 0) out_ = std::copy_n(rest_.data(), length, out_);
    if (length < rest_.size()) TakeMarkup(rest_[length]);
    Skip(length + 1);
  }

  void TakeMarkup(char16_t unit) noexcept {
    if (unit == u'<') state_ = State::kTag;
    if (unit == u'&') state_ = State::kEntity;
    if (unit == u'\n') state_ = State::kAfterNewline;
  }

  // Up to the unit that ends the piece, and that unit; without one everything is dropped.
  bool TakePiece(char16_t end) noexcept {
    const std::size_t length = rest_.find(end);
    piece_ = rest_.substr(0, length);
    Skip(length == std::u16string_view::npos ? length : length + 1);
    state_ = State::kText;
    return length != std::u16string_view::npos;
  }

  void EndTag() noexcept {
    const TagRow* const row = FindTag(piece_);
    if (row == nullptr) return;
    depth_ += row->depth;
    if (row->breaks_line) out_ = std::copy(kLineBreak.begin(), kLineBreak.end(), out_);
  }

  void EndEntity() noexcept {
    const std::optional<char16_t> unit = HTML_DecodeEntity(piece_);
    if (unit) *out_++ = *unit;
  }

  void Skip(std::size_t units) noexcept { rest_.remove_prefix(std::min(units, rest_.size())); }

  State state_ = State::kText;
  std::ptrdiff_t depth_ = 0;  // BODY tags less /BODY tags
  std::u16string_view rest_;
  std::u16string_view piece_;  // a tag or an entity without its ends
  char16_t* out_;
};

}  // namespace

std::int32_t HTML_ToText(const char16_t* html, std::u16string* text_out) noexcept {
  constexpr std::int32_t kDone = 1;
  if (html == nullptr) return kDone;
  const std::u16string_view view = html;
  const std::size_t before = text_out->size();
  try {
    text_out->resize(before + view.size());
  } catch (const std::bad_alloc&) {
    return kDone;
  } catch (const std::length_error&) {
    return kDone;
  }
  const char16_t* const end = Converter(view, text_out->data() + before).Run();
  text_out->resize(static_cast<std::size_t>(end - text_out->data()));
  return kDone;
}

}  // namespace tamu
