#include "device/call_gate.h"
#include "device/pim/guarded.h"
#include "device/pim/item_values.h"
#include "device/pim/pim_objects.h"

namespace tamu::device {
namespace {

using platform::HRESULT;
namespace hr = platform::hr;

class Folder final : public DispatchObject<Folder, platform::IFolder> {
 public:
  Folder(PimApplication* application, ItemKind kind) noexcept : kind_(kind) {
    application->AddRef();
    application_.reset(application);
  }

  [[nodiscard]] bool Implements(const platform::GUID& iid) const noexcept {
    return iid == platform::IID_IDispatch || iid == platform::IID_IFolder;
  }

  HRESULT TAMU_COM_CALL get_Items(platform::IPOutlookItemCollection** items) override {
    TAMU_DEVICE_OUT(items, nullptr);
    TAMU_DEVICE_CALL("IFolder::get_Items");
    if (application_->store() == nullptr) return hr::kUnexpected;
    return MakeCollection(application_.get(), kind_, items);
  }
  HRESULT TAMU_COM_CALL get_DefaultItemType(std::int32_t* type) override {
    TAMU_DEVICE_OUT(type, 0);
    TAMU_DEVICE_CALL("IFolder::get_DefaultItemType");
    *type = static_cast<std::int32_t>(kind_);
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL get_Application(platform::IPOutlookApp** application) override {
    return GetApplication("IFolder::get_Application", application_.get(), application);
  }
  HRESULT TAMU_COM_CALL AddItemToInfraredFolder(std::int32_t, platform::IDispatch*) override {
    TAMU_DEVICE_CALL("IFolder::AddItemToInfraredFolder");
    return hr::kNotImplemented;
  }
  HRESULT TAMU_COM_CALL SendToInfrared() override {
    TAMU_DEVICE_CALL("IFolder::SendToInfrared");
    return hr::kNotImplemented;
  }
  HRESULT TAMU_COM_CALL ReceiveFromInfrared(platform::IPOutlookItemCollection** items) override {
    TAMU_DEVICE_OUT(items, nullptr);
    TAMU_DEVICE_CALL("IFolder::ReceiveFromInfrared");
    return hr::kNotImplemented;
  }

 private:
  platform::ComPtr<PimApplication> application_;
  ItemKind kind_;
};

}  // namespace

HRESULT MakeFolder(PimApplication* application, ItemKind kind, platform::IFolder** out) noexcept {
  return MakeObject<Folder>(out, application, kind);
}

}  // namespace tamu::device
