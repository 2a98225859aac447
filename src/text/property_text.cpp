#include "text/property_text.h"

#include <array>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "platform/code_pages.h"
#include "text/charset.h"
#include "text/property.h"
#include "text/quoted_printable.h"
#include "text/string_tools.h"
#include "text/utf8.h"

namespace tamu {
namespace {

constexpr std::string_view kEncodedLineBreak = "=0D=0A";

// The bytes that a raw text stands for; null when memory runs out.
MemPtr<char> DecodeRaw(std::string_view raw, bool quoted_printable) noexcept {
  if (!quoted_printable) return STR_ReplaceAll(raw, kEncodedLineBreak, "\r\n");
  const std::size_t length = QP_Decode(raw, nullptr, 0);
  MemPtr<char> bytes(static_cast<char*>(MEM_Alloc(length + 1)));
  if (bytes) QP_Decode(raw, bytes.get(), length + 1);
  return bytes;
}

void RawToWide(const char* raw, bool quoted_printable, std::uint32_t code_page,
               platform::BStr* result) noexcept {
  const std::string_view text = raw;
  if (!quoted_printable && text.find(kEncodedLineBreak) == std::string_view::npos) {
    return CHARSET_ToWide(code_page, raw, result);
  }
  const MemPtr<char> bytes = DecodeRaw(text, quoted_printable);
  if (bytes) CHARSET_ToWide(code_page, bytes.get(), result);
}

// The code page that a CHARSET parameter's text names, else the input code page.
std::uint32_t CodePageOfParam(const char* param_text) noexcept {
  std::array<char, kParamValueLength + 1> name;
  const std::size_t length = PARAM_GetValue(param_text, name.data(), name.size());
  const std::uint32_t code_page = CHARSET_FromName({name.data(), length});
  return code_page != 0 ? code_page : CHARSET_GetInputCodePage();
}

std::uint32_t InputCodePageOf(const Property& property) noexcept {
  if (property.code_page != 0) return property.code_page;
  if ((property.flags & PROP_CHARSET) == 0) return CHARSET_GetInputCodePage();
  const StringItem* const param = PROP_FindParam(property.params, "CHARSET");
  return param != nullptr ? CodePageOfParam(param->text) : CHARSET_GetInputCodePage();
}

// Drops every backslash and keeps the character after it; one at the end goes too.
void RemoveBackslashes(platform::BStr* text) noexcept {
  const std::u16string_view escaped = text->view();
  if (escaped.find(u'\\') == std::u16string_view::npos) return;
  char16_t* out = text->get();
  for (std::size_t i = 0; i < escaped.size(); ++i) {
    if (escaped[i] == u'\\' && ++i == escaped.size()) break;
    *out++ = escaped[i];
  }
  text->reset(
      platform::SysAllocStringLen(text->get(), static_cast<std::uint32_t>(out - text->get())));
}

// A copy of the value with a backslash before each backslash and semicolon.
platform::BStr AddBackslashes(std::u16string_view value) noexcept {
  const auto needs_backslash = [](char16_t unit) { return unit == u'\\' || unit == u';'; };
  std::size_t length = value.size();
  for (const char16_t unit : value) length += needs_backslash(unit) ? 1U : 0U;
  platform::BStr escaped(platform::SysAllocStringLen(nullptr, static_cast<std::uint32_t>(length)));
  if (escaped.get() == nullptr) return escaped;
  char16_t* out = escaped.get();
  for (const char16_t unit : value) {
    if (needs_backslash(unit)) *out++ = u'\\';
    *out++ = unit;
  }
  return escaped;
}

// Names the character set of a value in its property, unless it is named there. Returns false when
// memory runs out.
bool Announce(const char* name, Property* property) noexcept {
  if ((property->flags & PROP_CHARSET) != 0 ||
      PROP_FindParam(property->params, "CHARSET") != nullptr) {
    return true;
  }
  const std::string_view prefix = "CHARSET=";
  const std::size_t name_size = std::strlen(name) + 1;
  MemPtr<char> param(static_cast<char*>(MEM_Alloc(prefix.size() + name_size)));
  if (!param) return false;
  std::memcpy(param.get(), prefix.data(), prefix.size());
  std::memcpy(param.get() + prefix.size(), name, name_size);
  property->flags |= PROP_CHARSET;
  return PROP_AddParam(property, std::move(param));
}

// Settles the code page a value goes out in, and names it in the property when it is not the one
// that needs no name. Returns false when memory runs out.
bool SettleOutputCodePage(std::u16string_view escaped, Property* property,
                          std::uint32_t* code_page) noexcept {
  *code_page = property->code_page;
  if (*code_page != 0) return true;
  *code_page = kCodePageWindows1252;
  if (platform::IsValidCodePage(kCodePageWindows1252) != 0 && STR_IsAscii(escaped)) return true;
  *code_page = CHARSET_GetOutputCodePage();
  const char* name = CHARSET_GetOutputName();
  if (*code_page == 0 || platform::IsValidCodePage(*code_page) == 0) {
    *code_page = kCodePageUtf8;
    name = "UTF-8";
  }
  return name == nullptr || Announce(name, property);
}

// The value's bytes in a code page, terminated; null when they cannot be had.
MemPtr<char> WideToBytes(std::uint32_t code_page, const platform::BStr& wide) noexcept {
  if (platform::IsValidCodePage(code_page) == 0) {
    const std::size_t size = std::size_t{4} * wide.size() + 1;
    MemPtr<char> bytes(static_cast<char*>(MEM_Alloc(size)));
    const auto length = static_cast<std::int32_t>(wide.size());
    // A surrogate fails the whole conversion; half a text is not stored.
    if (bytes && UTF8_FromWide(wide.c_str(), length, bytes.get(), size) == 0) return nullptr;
    return bytes;
  }
  const std::int32_t size =
      platform::WideCharToMultiByte(code_page, 0, wide.c_str(), -1, nullptr, 0, nullptr, nullptr);
  if (size <= 0) return nullptr;
  MemPtr<char> bytes(static_cast<char*>(MEM_Alloc(static_cast<std::size_t>(size))));
  if (bytes && platform::WideCharToMultiByte(code_page, 0, wide.c_str(), -1, bytes.get(), size,
                                             nullptr, nullptr) == 0) {
    return nullptr;
  }
  return bytes;
}

// Replaces the bytes by their quoted-printable form where that differs, and says so in the
// property. Returns false when memory runs out.
bool EncodeQuotedPrintable(MemPtr<char>* bytes, Property* property) noexcept {
  const std::string_view plain = bytes->get();
  const std::size_t length = QP_Encode(plain, nullptr, 0);
  if (length == 0 || length == plain.size()) return true;
  MemPtr<char> encoded(static_cast<char*>(MEM_Alloc(length + 1)));
  if (!encoded) return false;
  QP_Encode(plain, encoded.get(), length + 1);
  *bytes = std::move(encoded);
  property->flags |= PROP_QP;
  return PROP_AddParam(property, "ENCODING=QUOTED-PRINTABLE");
}

}  // namespace

void PROP_GetWide(Property* property, std::uint32_t index, platform::BStr* result) noexcept {
  result->reset();
  const char* const raw = PROP_GetValue(property, index);
  if (raw == nullptr) return;
  const bool quoted_printable = (property->flags & PROP_QP) != 0 ||
                                PROP_FindParam(property->params, "QUOTED-PRINTABLE") != nullptr;
  const std::uint32_t code_page = InputCodePageOf(*property);
  RawToWide(raw, quoted_printable, code_page, result);
  RemoveBackslashes(result);
  property->code_page = code_page;
}

void TEXT_ToWide(const char* value_text, const char* charset_param_text,
                 const char* encoding_param_text, platform::BStr* result) noexcept {
  result->reset();
  if (value_text == nullptr) return;
  const bool quoted_printable = encoding_param_text != nullptr &&
                                STR_FindNoCase(encoding_param_text, "QUOTED-PRINTABLE") != nullptr;
  const bool names_charset =
      charset_param_text != nullptr && STR_FindNoCase(charset_param_text, "CHARSET") != nullptr;
  RawToWide(value_text, quoted_printable,
            names_charset ? CodePageOfParam(charset_param_text) : CHARSET_GetInputCodePage(),
            result);
}

void PROP_SetWide(const char16_t* wide_value, Property* property, std::uint32_t options,
                  std::uint32_t index) noexcept {
  if (wide_value == nullptr || *wide_value == u'\0' || property == nullptr) return;
  const platform::BStr escaped = AddBackslashes(wide_value);
  if (escaped.get() == nullptr) return;
  PropertyEdit edit(property);
  std::uint32_t code_page = 0;
  if (!SettleOutputCodePage(escaped.view(), property, &code_page)) return;
  MemPtr<char> bytes = WideToBytes(code_page, escaped);
  if (!bytes) return;
  if ((options & kAllowQuotedPrintable) != 0 && !EncodeQuotedPrintable(&bytes, property)) return;
  if (!PROP_SetValue(property, std::move(bytes), index)) return;
  if (code_page != kCodePageWindows1252) property->code_page = code_page;
  edit.Commit();
}

}  // namespace tamu
