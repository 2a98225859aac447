#include "pimstore/item_access.h"

#include <utility>

#include "platform/code_pages.h"
#include "text/property.h"
#include "text/property_text.h"

namespace tamu {

platform::BStr WideOf(Property* property, std::uint32_t index) noexcept {
  platform::BStr text;
  PROP_GetWide(property, index, &text);
  return text;
}

bool HasText(const Property* property) noexcept {
  const char* const text = PROP_GetValue(property, 0);
  return text != nullptr && *text != '\0';
}

void AppendText(Ref<Property>* chain, const platform::BStr& text, std::uint32_t options) noexcept {
  PROP_SetWide(text.c_str(), PROP_Append(chain), options, 0);
}

void AppendAscii(Ref<Property>* chain, std::string_view text) noexcept {
  PROP_SetValue(PROP_Append(chain), MEM_CopyText(text), 0);
}

void AppendDate(Ref<Property>* chain, const DateValue& date, DateForm form) noexcept {
  DATE_ToProperty(date, PROP_Append(chain), form);
}

void AppendDateIfAny(Ref<Property>* chain, const DateValue& date, DateForm form) noexcept {
  if (!DATE_IsNone(date)) AppendDate(chain, date, form);
}

MemPtr<char> DateBytes(const DateValue& date, DateForm form) noexcept {
  const DateText text = DATE_ToText(date, form);
  if (text.empty()) return nullptr;
  std::array<char, DateText::kCapacity> bytes{};
  for (std::size_t i = 0; i < text.size(); ++i) bytes[i] = static_cast<char>(text.view()[i]);
  return MEM_CopyText({bytes.data(), text.size()});
}

std::array<char, 9> ObjectIdText(std::int32_t oid) noexcept {
  std::array<char, 9> text{};
  auto rest = static_cast<std::uint32_t>(oid);
  for (std::size_t i = text.size() - 1; i-- > 0; rest >>= 4) {
    text[i] = "0123456789abcdef"[rest & 0xF];
  }
  return text;
}

MemPtr<char> AnsiOf(const platform::BStr& text) noexcept {
  const std::int32_t size = platform::WideCharToMultiByte(platform::kCpAcp, 0, text.c_str(), -1,
                                                          nullptr, 0, nullptr, nullptr);
  if (size <= 0) return nullptr;
  MemPtr<char> bytes(static_cast<char*>(MEM_Alloc(static_cast<std::size_t>(size))));
  if (bytes && platform::WideCharToMultiByte(platform::kCpAcp, 0, text.c_str(), -1, bytes.get(),
                                             size, nullptr, nullptr) == 0) {
    return nullptr;
  }
  return bytes;
}

}  // namespace tamu
