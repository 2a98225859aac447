#include "text/property.h"

#include <cstring>
#include <optional>
#include <utility>

#include "text/string_tools.h"

namespace tamu {
namespace {

MemPtr<StringItem> NewItem() noexcept {
  MemPtr<StringItem> item = MEM_New<StringItem>();
  if (item) item->used = 1;
  return item;
}

// An item with a copy of `text` in the same block, which ITEM_FreeList knows: half the allocations.
MemPtr<StringItem> NewItemWith(std::string_view text) noexcept {
  MemPtr<StringItem> item(
      static_cast<StringItem*>(MEM_Alloc(sizeof(StringItem) + text.size() + 1)));
  if (!item) return item;
  *item = StringItem{};
  item->used = 1;
  item->text = ITEM_OwnText(item.get());
  std::memcpy(ITEM_OwnText(item.get()), text.data(), text.size());
  ITEM_OwnText(item.get())[text.size()] = '\0';
  return item;
}

// The reference at a list's end, which is null.
Ref<StringItem>* EndOf(Ref<StringItem>* first) noexcept {
  Ref<StringItem>* end = first;
  while (*end != nullptr) end = &(*end)->next;
  return end;
}

// Builds a list at its end, so that every item costs the same.
class ListBuilder {
 public:
  explicit ListBuilder(Ref<StringItem>* first) noexcept : end_(first) {
    for (; *end_ != nullptr; end_ = &(*end_)->next) {
      ++count_;
      ++g_list_steps;
    }
  }

  // Returns false for a null item, and does nothing.
  bool Append(MemPtr<StringItem> item) noexcept {
    if (!item) return false;
    *end_ = item.release();
    end_ = &(*end_)->next;
    ++count_;
    return true;
  }

  // Appends `text` as item `index`, behind empty items where memory ran out for earlier ones.
  void AppendAt(std::uint32_t index, std::string_view text) noexcept {
    MemPtr<StringItem> item = NewItemWith(text);
    if (!item) return;
    while (count_ < index) {
      if (!Append(NewItem())) return;
    }
    Append(std::move(item));
  }

 private:
  Ref<StringItem>* end_;
  std::uint32_t count_ = 0;
};

// Takes the text up to the next unescaped ";" from `*rest`, which becomes none behind the last
// piece.
std::string_view TakePiece(std::optional<std::string_view>* rest) noexcept {
  const std::string_view text = **rest;
  std::size_t end = STR_FindEither(text, 0, ';', '\\');
  while (end < text.size() && text[end] == '\\') {
    end = end + 2 < text.size() ? STR_FindEither(text, end + 2, ';', '\\') : text.size();
  }
  if (end == text.size()) {
    rest->reset();
    return text;
  }
  *rest = text.substr(end + 1);
  return text.substr(0, end);
}

// The words that set a flag, wherever they stand in a parameter. Of the encodings the first one
// wins.
struct FlagWord {
  std::string_view word;
  std::uint32_t flag;
};
constexpr FlagWord kCharsetWord = {"CHARSET", PROP_CHARSET};
constexpr FlagWord kEncodingWords[] = {
    {"QUOTED-PRINTABLE", PROP_QP}, {"BASE64", PROP_BASE64}, {"8BIT", PROP_8BIT}};

// True for the characters that one of these words begins with: most parameters hold none of them.
constexpr bool BeginsFlagWord(char upper) noexcept {
  return upper == 'C' || upper == 'Q' || upper == 'B' || upper == '8';
}

constexpr bool EveryFlagWordIsLookedFor() {
  for (const FlagWord& encoding : kEncodingWords) {
    if (!BeginsFlagWord(encoding.word.front())) return false;
  }
  return BeginsFlagWord(kCharsetWord.word.front());
}
static_assert(EveryFlagWordIsLookedFor());

// The flags of the words that stand in a parameter's text.
std::uint32_t FlagsIn(std::string_view text) noexcept {
  std::uint32_t flags = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!BeginsFlagWord(STR_ToUpper(text[i]))) continue;
    const std::string_view rest = text.substr(i);
    if (STR_BeginsNoCase(rest, kCharsetWord.word)) flags |= kCharsetWord.flag;
    for (const FlagWord& encoding : kEncodingWords) {
      if (STR_BeginsNoCase(rest, encoding.word)) flags |= encoding.flag;
    }
  }
  return flags;
}

std::uint32_t KeepFirstEncoding(std::uint32_t flags) noexcept {
  for (const FlagWord& encoding : kEncodingWords) {
    if ((flags & encoding.flag) != 0) return (flags & kCharsetWord.flag) | encoding.flag;
  }
  return flags;
}

}  // namespace

void PROP_SetFromText(const char* value_text, const char* param_text, std::uint32_t max_components,
                      Property* property) noexcept {
  if (value_text == nullptr || param_text == nullptr || max_components == 0 ||
      property == nullptr) {
    return;
  }
  if (*param_text != '\0') {
    ListBuilder params(&property->params);
    std::uint32_t flags = 0;
    for (std::optional<std::string_view> rest(param_text); rest;) {
      const std::string_view param = TakePiece(&rest);
      if (params.Append(NewItemWith(param))) flags |= FlagsIn(param);
    }
    property->flags |= KeepFirstEncoding(flags);
  }
  ListBuilder values(&property->values);
  std::optional<std::string_view> rest(value_text);
  for (std::uint32_t i = 0; rest && i < max_components; ++i) values.AppendAt(i, TakePiece(&rest));
}

bool PROP_SetValue(Property* property, MemPtr<char> text, std::uint32_t index) noexcept {
  if (property == nullptr || !text) return false;
  PropertyEdit edit(property);
  Ref<StringItem>* item = &property->values;
  for (std::uint32_t i = 0;; ++i) {
    if (*item == nullptr) *item = NewItem().release();
    if (*item == nullptr) return false;
    if (i == index) break;
    item = &(*item)->next;
    ++g_list_steps;
  }
  ITEM_FreeText(*item);
  (*item)->text = text.release();
  edit.Commit();
  return true;
}

bool PROP_AddParam(Property* property, std::string_view text) noexcept {
  return property != nullptr && ListBuilder(&property->params).Append(NewItemWith(text));
}

bool PROP_AddParam(Property* property, MemPtr<char> text) noexcept {
  if (property == nullptr || !text) return false;
  MemPtr<StringItem> item = NewItem();
  if (!item) return false;
  item->text = text.release();
  return ListBuilder(&property->params).Append(std::move(item));
}

PropertyEdit::PropertyEdit(Property* property) noexcept
    : property_(property),
      flags_(property->flags),
      params_end_(EndOf(&property->params)),
      values_end_(EndOf(&property->values)) {}

PropertyEdit::~PropertyEdit() {
  if (property_ == nullptr) return;
  property_->flags = flags_;
  ITEM_FreeList(std::exchange(*params_end_, nullptr));
  ITEM_FreeList(std::exchange(*values_end_, nullptr));
}

StringItem* PROP_FindParam(StringItem* first_param, std::string_view upper_needle) noexcept {
  for (StringItem* item = first_param; item != nullptr; item = item->next) {
    if (item->text != nullptr && STR_FindNoCase(item->text, upper_needle) != nullptr) return item;
  }
  return nullptr;
}

const char* PROP_GetValue(const Property* property, std::uint32_t index) noexcept {
  if (property == nullptr) return nullptr;
  const StringItem* item = property->values;
  for (; item != nullptr && index != 0; --index) item = item->next;
  return item != nullptr ? item->text.get() : nullptr;
}

std::size_t PARAM_GetValue(const char* param_text, char* out, std::size_t size) noexcept {
  const char* const equals = std::strchr(param_text, '=');
  std::size_t length = 0;
  if (equals != nullptr) {
    length = std::strcspn(equals + 1, " \t");
    if (length > kParamValueLength) length = kParamValueLength;
    if (length > size - 1) length = size - 1;
    std::memcpy(out, equals + 1, length);
  }
  out[length] = '\0';
  return length;
}

}  // namespace tamu
