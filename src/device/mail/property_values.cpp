#include "device/mail/property_values.h"

#include <bit>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <string>

#include "device/mail/no_memory.h"
#include "platform/linux/mapi_buffer.h"

namespace tamu::device {
namespace {

using platform::HRESULT;
using platform::SPropValue;

// --- Fixed sizes ------------------------------------------------------------

std::int64_t NumberOf(const SPropValue& value) noexcept {
  const auto& contents = value.Value;
  switch (platform::PropType(value.ulPropTag)) {
    case platform::kTypeShort:
      return contents.i;
    case platform::kTypeLong:
      return contents.l;
    case platform::kTypeBoolean:
      return contents.b;
    case platform::kTypeFloat:
      return std::bit_cast<std::int32_t>(contents.flt);
    case platform::kTypeDouble:
    case platform::kTypeAppTime:
      return std::bit_cast<std::int64_t>(contents.dbl);
    case platform::kTypeSysTime:
      return static_cast<std::int64_t>(
          static_cast<std::uint64_t>(contents.ft.dwHighDateTime) << 32 | contents.ft.dwLowDateTime);
    default:  // currency and 64 bits
      return contents.li;
  }
}

void PutNumber(std::int64_t number, SPropValue* out) noexcept {
  auto& contents = out->Value;
  switch (platform::PropType(out->ulPropTag)) {
    case platform::kTypeShort:
      contents.i = static_cast<std::int16_t>(number);
      break;
    case platform::kTypeLong:
      contents.l = static_cast<std::int32_t>(number);
      break;
    case platform::kTypeBoolean:
      contents.b = static_cast<std::uint16_t>(number);
      break;
    case platform::kTypeFloat:
      contents.flt = std::bit_cast<float>(static_cast<std::int32_t>(number));
      break;
    case platform::kTypeDouble:
    case platform::kTypeAppTime:
      contents.dbl = std::bit_cast<double>(number);
      break;
    case platform::kTypeSysTime:
      contents.ft.dwLowDateTime = static_cast<std::uint32_t>(number);
      contents.ft.dwHighDateTime =
          static_cast<std::uint32_t>(static_cast<std::uint64_t>(number) >> 32);
      break;
    default:
      contents.li = number;
  }
}

// --- Bytes ------------------------------------------------------------------

// The bytes of a value of the other types; false when the value has none.
bool BytesOf(const SPropValue& value, std::span<const std::uint8_t>* bytes) noexcept {
  const auto& contents = value.Value;
  switch (platform::PropType(value.ulPropTag)) {
    case platform::kTypeString8:
      if (contents.lpszA == nullptr) return false;
      *bytes = {static_cast<const std::uint8_t*>(static_cast<const void*>(contents.lpszA)),
                std::strlen(contents.lpszA)};
      return true;
    case platform::kTypeClsid:
      if (contents.lpguid == nullptr) return false;
      *bytes = {static_cast<const std::uint8_t*>(static_cast<const void*>(contents.lpguid)),
                sizeof(platform::GUID)};
      return true;
    default:
      if (contents.bin.lpb == nullptr && contents.bin.cb != 0) return false;
      *bytes = {contents.bin.lpb, contents.bin.cb};
      return true;
  }
}

// A copy behind which there are zeroed bytes enough to end any text; null when memory runs out.
void* CopyToBlock(const void* bytes, std::size_t size, void* root) noexcept {
  void* const copy = platform::AllocateMapiMore(size + sizeof(char16_t), root);
  if (copy != nullptr && size != 0) std::memcpy(copy, bytes, size);
  return copy;
}

bool PutBytes(const Bytes& bytes, void* root, SPropValue* out) noexcept {
  const bool is_class = platform::PropType(out->ulPropTag) == platform::kTypeClsid;
  void* const copy = is_class ? platform::AllocateMapiMore(sizeof(platform::GUID), root)
                              : CopyToBlock(bytes.data(), bytes.size(), root);
  if (copy == nullptr) return false;
  switch (platform::PropType(out->ulPropTag)) {
    case platform::kTypeString8:
      out->Value.lpszA = static_cast<char*>(copy);
      break;
    case platform::kTypeClsid:
      if (bytes.size() == sizeof(platform::GUID)) std::memcpy(copy, bytes.data(), bytes.size());
      out->Value.lpguid = static_cast<platform::GUID*>(copy);
      break;
    default:
      out->Value.bin = {static_cast<std::uint32_t>(bytes.size()), static_cast<std::uint8_t*>(copy)};
  }
  return true;
}

// --- Cells ------------------------------------------------------------------

bool PutProperty(const MailProperty& property, void* root, SPropValue* out) noexcept {
  out->ulPropTag = property.tag;
  if (const auto* number = std::get_if<std::int64_t>(&property.value)) {
    PutNumber(*number, out);
    return true;
  }
  if (const auto* text = std::get_if<std::u16string>(&property.value)) {
    void* const copy = CopyToBlock(text->data(), text->size() * sizeof(char16_t), root);
    out->Value.lpszW = static_cast<char16_t*>(copy);
    return copy != nullptr;
  }
  return PutBytes(*std::get_if<Bytes>(&property.value), root, out);
}

const MailProperty* FindTag(std::uint32_t tag, std::span<const MailProperty> found) noexcept {
  for (const MailProperty& property : found) {
    if (TagMatches(tag, property.tag)) return &property;
  }
  return nullptr;
}

struct FreeRowSet {
  void operator()(platform::SRowSet* set) const noexcept {
    for (std::uint32_t i = 0; i < set->cRows; ++i) platform::FreeMapiBuffer(set->aRow[i].lpProps);
    platform::FreeMapiBuffer(set);
  }
};

}  // namespace

MailProperty NumberProperty(std::uint32_t tag, std::int64_t number) { return {tag, number}; }

MailProperty TextProperty(std::uint32_t tag, std::u16string_view text) {
  return {tag, std::u16string(text)};
}

HRESULT TagsOf(const platform::SPropTagArray* tags, std::span<const std::uint32_t>* out) noexcept {
  if (tags == nullptr || tags->cValues == 0) return platform::hr::kInvalidArgument;
  *out = {&tags->aulPropTag[0], tags->cValues};
  return platform::hr::kOk;
}

HRESULT CopyValue(const SPropValue& value, MailProperty* property) noexcept {
  return CatchNoMemory([&]() -> HRESULT {
    property->tag = value.ulPropTag;
    switch (KindOfMailType(platform::PropType(value.ulPropTag))) {
      case MailValueKind::kNone:
        return platform::hr::kInvalidType;
      case MailValueKind::kNumber:
        property->value = NumberOf(value);
        return platform::hr::kOk;
      case MailValueKind::kText:
        if (value.Value.lpszW == nullptr) return platform::hr::kInvalidArgument;
        property->value = std::u16string(value.Value.lpszW);
        return platform::hr::kOk;
      case MailValueKind::kBytes:
        break;
    }
    std::span<const std::uint8_t> bytes;
    if (!BytesOf(value, &bytes)) return platform::hr::kInvalidArgument;
    property->value = Bytes(bytes.begin(), bytes.end());
    return platform::hr::kOk;
  });
}

HRESULT MakeValues(std::span<const std::uint32_t> tags, std::span<const MailProperty> found,
                   SPropValue** values) noexcept {
  *values = nullptr;
  auto* const cells =
      static_cast<SPropValue*>(platform::AllocateMapiBuffer(tags.size() * sizeof(SPropValue)));
  if (cells == nullptr) return platform::hr::kOutOfMemory;
  HRESULT result = platform::hr::kOk;
  for (std::size_t i = 0; i < tags.size(); ++i) {
    const MailProperty* const property = FindTag(tags[i], found);
    if (property == nullptr) {
      cells[i].ulPropTag = platform::kTypeError;
      cells[i].Value.err = platform::hr::kNotFound;
      result = platform::hr::kErrorsReturned;
    } else if (!PutProperty(*property, cells, &cells[i])) {
      platform::FreeMapiBuffer(cells);
      return platform::hr::kOutOfMemory;
    }
  }
  *values = cells;
  return result;
}

HRESULT MakeRowSet(std::span<const std::uint32_t> columns, std::span<const MailRow> rows,
                   platform::SRowSet** set) noexcept {
  *set = nullptr;
  const std::size_t size = sizeof(platform::SRowSet) + rows.size() * sizeof(platform::SRow);
  std::unique_ptr<platform::SRowSet, FreeRowSet> made(
      static_cast<platform::SRowSet*>(platform::AllocateMapiBuffer(size)));
  if (made == nullptr) return platform::hr::kOutOfMemory;
  HRESULT result = platform::hr::kOk;
  for (const MailRow& row : rows) {
    platform::SRow& out = made->aRow[made->cRows];
    const HRESULT made_row = MakeValues(columns, row.properties, &out.lpProps);
    if (platform::Failed(made_row)) return made_row;
    if (made_row != platform::hr::kOk) result = made_row;
    out.cValues = static_cast<std::uint32_t>(columns.size());
    ++made->cRows;
  }
  *set = made.release();
  return result;
}

}  // namespace tamu::device
