#include "device/pim/application.h"

#include "device/call_gate.h"
#include "device/pim/guarded.h"
#include "device/pim/item_values.h"
#include "device/pim/pim_objects.h"
#include "platform/bstr.h"
#include "platform/time.h"

namespace tamu::device {
namespace {

using platform::BSTR;
using platform::DATE;
using platform::HRESULT;
using platform::IDispatch;
using platform::VARIANT_BOOL;
namespace hr = platform::hr;

constexpr std::u16string_view kVersion = u"1.0";

// Numbers of the platform for what is not offered.
constexpr std::int32_t kCityItem = 102;
constexpr std::int32_t kCitiesFolder = 101;
constexpr std::int32_t kInfraredFolder = 102;

class Application final : public DispatchObject<Application, PimApplication> {
 public:
  explicit Application(StoreOpener opener) noexcept : opener_(opener) {}

  [[nodiscard]] bool Implements(const platform::GUID& iid) const noexcept {
    return iid == platform::IID_IDispatch || iid == platform::IID_IPOutlookApp;
  }

  [[nodiscard]] ItemStore* store() const noexcept override { return store_.get(); }

  HRESULT TAMU_COM_CALL Logon(std::int32_t) override {
    TAMU_DEVICE_CALL("IPOutlookApp::Logon");
    if (store_) return hr::kFalse;
    std::shared_ptr<ItemStore> store;
    TAMU_DEVICE_TRY(opener_(&store));
    if (!store) return hr::kFail;
    store_ = std::move(store);
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL Logoff() override {
    TAMU_DEVICE_CALL("IPOutlookApp::Logoff");
    if (!store_) return hr::kUnexpected;
    store_.reset();
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL get_Version(BSTR* version) override {
    TAMU_DEVICE_OUT(version, nullptr);
    TAMU_DEVICE_CALL("IPOutlookApp::get_Version");
    if (!store_) return hr::kUnexpected;
    return GiveText(kVersion, version);
  }
  HRESULT TAMU_COM_CALL GetDefaultFolder(std::int32_t folder, platform::IFolder** out) override {
    TAMU_DEVICE_OUT(out, nullptr);
    TAMU_DEVICE_CALL("IPOutlookApp::GetDefaultFolder");
    if (!store_) return hr::kUnexpected;
    switch (folder) {
      case platform::kCalendarFolder:
        return MakeFolder(this, ItemKind::kAppointment, out);
      case platform::kContactsFolder:
        return MakeFolder(this, ItemKind::kContact, out);
      case platform::kTasksFolder:
        return MakeFolder(this, ItemKind::kTask, out);
      case kCitiesFolder:
      case kInfraredFolder:
        return hr::kNotImplemented;
      default:
        return hr::kInvalidArgument;
    }
  }
  HRESULT TAMU_COM_CALL CreateItem(std::int32_t type, IDispatch** item) override {
    TAMU_DEVICE_OUT(item, nullptr);
    TAMU_DEVICE_CALL("IPOutlookApp::CreateItem");
    if (!store_) return hr::kUnexpected;
    for (const ItemKind kind : kItemKinds) {
      if (static_cast<std::int32_t>(kind) == type) return NewItem(this, kind, item);
    }
    return type == kCityItem ? hr::kNotImplemented : hr::kInvalidArgument;
  }
  HRESULT TAMU_COM_CALL GetItemFromOid(std::int32_t oid, IDispatch** item) override {
    TAMU_DEVICE_OUT(item, nullptr);
    TAMU_DEVICE_CALL("IPOutlookApp::GetItemFromOid");
    if (!store_) return hr::kUnexpected;
    if (oid == 0) return hr::kInvalidArgument;
    return Guarded([&] {
      ItemRecord record;
      TAMU_DEVICE_TRY(store_->Load(oid, &record));
      return OpenItem(this, std::move(record), item);
    });
  }

  HRESULT TAMU_COM_CALL get_HomeCity(IDispatch** city) override {
    return RefuseObject("IPOutlookApp::get_HomeCity", city);
  }
  HRESULT TAMU_COM_CALL put_HomeCity(IDispatch*) override {
    return Refuse("IPOutlookApp::put_HomeCity");
  }
  HRESULT TAMU_COM_CALL get_VisitingCity(IDispatch** city) override {
    return RefuseObject("IPOutlookApp::get_VisitingCity", city);
  }
  HRESULT TAMU_COM_CALL put_VisitingCity(IDispatch*) override {
    return Refuse("IPOutlookApp::put_VisitingCity");
  }
  HRESULT TAMU_COM_CALL get_CurrentCityIndex(std::int32_t* index) override {
    TAMU_DEVICE_OUT(index, 0);
    return Refuse("IPOutlookApp::get_CurrentCityIndex");
  }
  HRESULT TAMU_COM_CALL put_CurrentCityIndex(std::int32_t) override {
    return Refuse("IPOutlookApp::put_CurrentCityIndex");
  }
  HRESULT TAMU_COM_CALL ReceiveFromInfrared() override {
    return Refuse("IPOutlookApp::ReceiveFromInfrared");
  }
  HRESULT TAMU_COM_CALL get_OutlookCompatible(VARIANT_BOOL* compatible) override {
    TAMU_DEVICE_OUT(compatible, platform::kVariantFalse);
    TAMU_DEVICE_CALL("IPOutlookApp::get_OutlookCompatible");
    if (!store_) return hr::kUnexpected;
    *compatible = platform::kVariantTrue;
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL GetTimeZoneFromIndex(std::int32_t, IDispatch** zone) override {
    return RefuseObject("IPOutlookApp::GetTimeZoneFromIndex", zone);
  }
  HRESULT TAMU_COM_CALL GetTimeZoneInformationFromIndex(std::int32_t, void*) override {
    return Refuse("IPOutlookApp::GetTimeZoneInformationFromIndex");
  }

  HRESULT TAMU_COM_CALL get_Application(IPOutlookApp** application) override {
    return GetApplication("IPOutlookApp::get_Application", this, application);
  }
  HRESULT TAMU_COM_CALL SysFreeString(BSTR string) override {
    TAMU_DEVICE_CALL("IPOutlookApp::SysFreeString");
    platform::SysFreeString(string);
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL VariantTimeToSystemTime(DATE date, platform::SYSTEMTIME* time) override {
    TAMU_DEVICE_OUT(time, platform::SYSTEMTIME{});
    TAMU_DEVICE_CALL("IPOutlookApp::VariantTimeToSystemTime");
    return platform::VariantTimeToSystemTime(date, time) ? hr::kOk : hr::kInvalidArgument;
  }
  HRESULT TAMU_COM_CALL SystemTimeToVariantTime(platform::SYSTEMTIME* time, DATE* date) override {
    TAMU_DEVICE_OUT(date, platform::kNoDate);
    TAMU_DEVICE_CALL("IPOutlookApp::SystemTimeToVariantTime");
    if (time == nullptr) return hr::kPointer;
    return platform::SystemTimeToVariantTime(time, date) ? hr::kOk : hr::kInvalidArgument;
  }

 private:
  [[nodiscard]] HRESULT Refuse(const char* method) const {
    TAMU_DEVICE_CALL(method);
    return store_ ? hr::kNotImplemented : hr::kUnexpected;
  }
  [[nodiscard]] HRESULT RefuseObject(const char* method, IDispatch** out) const {
    TAMU_DEVICE_OUT(out, nullptr);
    return Refuse(method);
  }

  StoreOpener opener_;
  std::shared_ptr<ItemStore> store_;
};

}  // namespace

HRESULT CreateApplication(StoreOpener opener, const platform::GUID& iid, void** object) noexcept {
  if (object == nullptr) return hr::kPointer;
  *object = nullptr;
  platform::ComPtr<PimApplication> application;
  TAMU_DEVICE_TRY(MakeObject<Application>(application.put(), opener));
  return application->QueryInterface(iid, object);
}

}  // namespace tamu::device
