#include "device/pim/item_values.h"

#include <cstdlib>
#include <cstring>

#include "device/call_gate.h"
#include "device/pim/guarded.h"
#include "device/pim/local_date.h"
#include "platform/bstr.h"

namespace tamu::device {

using platform::BSTR;
using platform::CEBLOB;
using platform::DATE;
using platform::HRESULT;
using platform::VARIANT_BOOL;
namespace hr = platform::hr;

HRESULT GiveText(std::u16string_view text, BSTR* out) noexcept {
  *out = nullptr;
  if (text.size() > std::numeric_limits<std::uint32_t>::max()) return hr::kOutOfMemory;
  *out = platform::SysAllocStringLen(text.data(), static_cast<std::uint32_t>(text.size()));
  return *out == nullptr ? hr::kOutOfMemory : hr::kOk;
}

HRESULT GetText(const char* method, ItemState& item, std::size_t property, BSTR* out) noexcept {
  TAMU_DEVICE_OUT(out, nullptr);
  TAMU_DEVICE_CALL(method);
  return GiveText(TextOf(item.record, property), out);
}

HRESULT PutText(const char* method, ItemState& item, std::size_t property,
                const char16_t* text) noexcept {
  TAMU_DEVICE_CALL(method);
  return Guarded([&] {
    TextOf(item.record, property) = std::u16string(ArgumentText(text));
    return hr::kOk;
  });
}

HRESULT GetDate(const char* method, ItemState& item, std::size_t property, DATE* out) noexcept {
  TAMU_DEVICE_OUT(out, platform::kNoDate);
  TAMU_DEVICE_CALL(method);
  *out = DateOf(item.record, property);
  return hr::kOk;
}

HRESULT PutDate(const char* method, ItemState& item, std::size_t property, DATE date) noexcept {
  TAMU_DEVICE_CALL(method);
  if (!IsDate(date)) return hr::kInvalidArgument;
  DateOf(item.record, property) = date;
  return hr::kOk;
}

HRESULT GetNumber(const char* method, ItemState& item, std::size_t property,
                  std::int32_t* out) noexcept {
  TAMU_DEVICE_OUT(out, 0);
  TAMU_DEVICE_CALL(method);
  *out = NumberOf(item.record, property);
  return hr::kOk;
}

HRESULT PutNumber(const char* method, ItemState& item, std::size_t property, std::int32_t number,
                  NumberRange range) noexcept {
  TAMU_DEVICE_CALL(method);
  if (number < range.lowest || number > range.highest) return hr::kInvalidArgument;
  NumberOf(item.record, property) = number;
  return hr::kOk;
}

HRESULT GetFlag(const char* method, ItemState& item, std::size_t property,
                VARIANT_BOOL* out) noexcept {
  TAMU_DEVICE_OUT(out, platform::kVariantFalse);
  TAMU_DEVICE_CALL(method);
  if (NumberOf(item.record, property) != 0) *out = platform::kVariantTrue;
  return hr::kOk;
}

HRESULT PutFlag(const char* method, ItemState& item, std::size_t property,
                VARIANT_BOOL flag) noexcept {
  TAMU_DEVICE_CALL(method);
  NumberOf(item.record, property) = flag ? platform::kVariantTrue : platform::kVariantFalse;
  return hr::kOk;
}

HRESULT GetBytes(const char* method, ItemState& item, std::size_t property, CEBLOB* out) noexcept {
  TAMU_DEVICE_OUT(out, CEBLOB{});
  TAMU_DEVICE_CALL(method);
  const Bytes& bytes = BytesOf(item.record, property);
  if (bytes.empty()) return hr::kOk;
  auto* copy = static_cast<std::uint8_t*>(std::malloc(bytes.size()));
  if (copy == nullptr) return hr::kOutOfMemory;
  std::memcpy(copy, bytes.data(), bytes.size());
  *out = {static_cast<std::uint32_t>(bytes.size()), copy};
  return hr::kOk;
}

HRESULT PutBytes(const char* method, ItemState& item, std::size_t property,
                 const CEBLOB* bytes) noexcept {
  TAMU_DEVICE_CALL(method);
  return Guarded([&] {
    if (bytes != nullptr && bytes->cb != 0 && bytes->lpb == nullptr) return hr::kInvalidArgument;
    Bytes copy;
    if (bytes != nullptr && bytes->cb != 0) copy.assign(bytes->lpb, bytes->lpb + bytes->cb);
    BytesOf(item.record, property).swap(copy);
    return hr::kOk;
  });
}

HRESULT GetApplication(const char* method, PimApplication* application,
                       platform::IPOutlookApp** out) noexcept {
  TAMU_DEVICE_OUT(out, nullptr);
  TAMU_DEVICE_CALL(method);
  application->AddRef();
  *out = application;
  return hr::kOk;
}

HRESULT GetOid(const char* method, const ItemState& item, std::int32_t* out) noexcept {
  TAMU_DEVICE_OUT(out, 0);
  TAMU_DEVICE_CALL(method);
  *out = item.record.oid;
  return hr::kOk;
}

}  // namespace tamu::device
