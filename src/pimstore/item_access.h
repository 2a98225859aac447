// pimstore/item_access.h - single properties of store items, and of the records they are mapped to.
//   Units      dates are the store's: days since 30 December 1899, local time.
//   Errors     a property that cannot be read counts as empty, as 0 or as no date; whether one
//              could be written is nobody's concern, as saving the item decides.
#ifndef TAMU_PIMSTORE_ITEM_ACCESS_H_
#define TAMU_PIMSTORE_ITEM_ACCESS_H_

#include <array>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "core/memory.h"
#include "core/records.h"
#include "platform/bstr.h"
#include "platform/poom.h"
#include "text/date.h"

namespace tamu {

template <typename Item, typename Value>
using ItemGetter = platform::HRESULT (TAMU_COM_CALL Item::*)(Value*);
template <typename Item, typename Value>
using ItemPutter = platform::HRESULT (TAMU_COM_CALL Item::*)(Value);

// A text of an item.
template <typename Item>
[[nodiscard]] platform::BStr GetText(Item* item, ItemGetter<Item, platform::BSTR> getter) {
  platform::BStr text;
  if (platform::Failed((item->*getter)(text.put()))) text.reset();
  return text;
}

// A number, date or truth value of an item, or `otherwise` when it cannot be read.
template <typename Item, typename Value>
[[nodiscard]] Value GetValue(Item* item, ItemGetter<Item, Value> getter,
                             std::type_identity_t<Value> otherwise) {
  Value value = otherwise;
  return platform::Failed((item->*getter)(&value)) ? otherwise : value;
}

template <typename Item>
[[nodiscard]] DateValue GetDate(Item* item, ItemGetter<Item, platform::DATE> getter) {
  return {GetValue(item, getter, platform::kNoDate), true};
}

// True for anything but false.
template <typename Item>
[[nodiscard]] bool GetFlag(Item* item, ItemGetter<Item, platform::VARIANT_BOOL> getter) {
  return GetValue(item, getter, platform::kVariantFalse) != platform::kVariantFalse;
}

// The wide text of component `index` of a record's property; empty when there is none.
[[nodiscard]] platform::BStr WideOf(Property* property, std::uint32_t index = 0) noexcept;

// True when the first component of the property has a text.
[[nodiscard]] bool HasText(const Property* property) noexcept;

// Puts the first component when it has a text.
template <typename Item>
void PutTextIfAny(Item* item, ItemPutter<Item, platform::BSTR> putter, Property* property) {
  const platform::BStr text = WideOf(property);
  if (!text.empty()) (item->*putter)(text.get());
}

// Puts the first component as a date when it has a text.
template <typename Item>
void PutDateIfAny(Item* item, ItemPutter<Item, platform::DATE> putter, const Property* property) {
  if (HasText(property)) (item->*putter)(DATE_FromProperty(property).days);
}

// Appends a property to a record's chain with the text as its first component; an empty text makes
// a property without a value. `options` are those of PROP_SetWide.
void AppendText(Ref<Property>* chain, const platform::BStr& text,
                std::uint32_t options = 0) noexcept;
// The same for a text that is ASCII and needs no conversion.
void AppendAscii(Ref<Property>* chain, std::string_view text) noexcept;
// Appends a property with the date's text, whatever date it is.
void AppendDate(Ref<Property>* chain, const DateValue& date, DateForm form) noexcept;
// Appends it unless it is the value for no date.
void AppendDateIfAny(Ref<Property>* chain, const DateValue& date, DateForm form) noexcept;

// The date's text, terminated; null when it has none or memory runs out.
[[nodiscard]] MemPtr<char> DateBytes(const DateValue& date, DateForm form) noexcept;

// An item's id as records and callers have it: eight hexadecimal digits.
[[nodiscard]] std::array<char, 9> ObjectIdText(std::int32_t oid) noexcept;

// The texts in the default ANSI code page; null when memory runs out.
[[nodiscard]] MemPtr<char> AnsiOf(const platform::BStr& text) noexcept;

// Fills the header that contacts and calendar items share.
template <typename Shape>
void FillHeader(Shape* shape, std::uint32_t object_type, std::string_view version,
                std::int32_t oid) noexcept {
  shape->object_type = object_type;
  version.copy(shape->version, sizeof shape->version - 1);
  const std::array<char, 9> id = ObjectIdText(oid);
  std::string_view(id.data()).copy(shape->luid, sizeof shape->luid - 1);
}

inline constexpr std::uint32_t kStoredContact = 1;
inline constexpr std::uint32_t kStoredCalendarItem = 2;

}  // namespace tamu

#endif  // TAMU_PIMSTORE_ITEM_ACCESS_H_
