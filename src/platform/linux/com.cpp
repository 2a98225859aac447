#include "platform/com.h"

#include "platform/linux/class_table.h"

namespace tamu::platform {
namespace {

HRESULT CreateInstance(const GUID& class_id, IUnknown* outer, std::uint32_t, const GUID& iid,
                       void** object) {
  if (object == nullptr) return hr::kPointer;
  *object = nullptr;
  if (outer != nullptr) return hr::kNoAggregation;
  for (const ClassEntry& entry : ProvidedDevice().classes) {
    if (entry.class_id == class_id) return entry.create(iid, object);
  }
  return hr::kClassNotRegistered;
}

}  // namespace

constinit Service<HRESULT(const GUID&, IUnknown*, std::uint32_t, const GUID&, void**)>
    CoCreateInstance{"CoCreateInstance", &CreateInstance, hr::kFail};

}  // namespace tamu::platform
