// pimstore/plain_device.h - a device whose collections have no index, over one that has: what other
// platforms offer. It notes the restrictions that it is asked with.
#ifndef TAMU_TESTS_PIMSTORE_PLAIN_DEVICE_H_
#define TAMU_TESTS_PIMSTORE_PLAIN_DEVICE_H_

#include <string>
#include <utility>
#include <vector>

#include "device/com_object.h"
#include "platform/com_ptr.h"
#include "platform/poom.h"

namespace tamu::testing {

inline std::vector<std::u16string>& Restrictions() {
  static std::vector<std::u16string> restrictions;
  return restrictions;
}

#define TAMU_REFUSED(name, ...)                                \
  platform::HRESULT TAMU_COM_CALL name(__VA_ARGS__) override { \
    return platform::hr::kNotImplemented;                      \
  }

class PlainCollection final
    : public device::DispatchObject<PlainCollection, platform::IPOutlookItemCollection> {
 public:
  explicit PlainCollection(platform::ComPtr<platform::IPOutlookItemCollection> items)
      : items_(std::move(items)) {}
  [[nodiscard]] bool Implements(const platform::GUID& iid) const noexcept {
    return iid == platform::IID_IPOutlookItemCollection;
  }
  platform::HRESULT TAMU_COM_CALL get_Count(std::int32_t* count) override {
    return items_->get_Count(count);
  }
  platform::HRESULT TAMU_COM_CALL Find(platform::BSTR restriction,
                                       platform::IDispatch** item) override {
    Restrictions().emplace_back(restriction);
    return items_->Find(restriction, item);
  }
  platform::HRESULT TAMU_COM_CALL FindNext(platform::IDispatch** item) override {
    return items_->FindNext(item);
  }
  platform::HRESULT TAMU_COM_CALL Item(std::int32_t index, platform::IDispatch** item) override {
    return items_->Item(index, item);
  }
  TAMU_REFUSED(Add, platform::IDispatch**)
  TAMU_REFUSED(Remove, std::int32_t)
  TAMU_REFUSED(Restrict, platform::BSTR, platform::IPOutlookItemCollection**)
  TAMU_REFUSED(Sort, platform::BSTR, platform::VARIANT_BOOL)
  TAMU_REFUSED(get_IncludeRecurrences, platform::VARIANT_BOOL*)
  TAMU_REFUSED(put_IncludeRecurrences, platform::VARIANT_BOOL)
  TAMU_REFUSED(get__NewEnum, platform::IUnknown**)
  TAMU_REFUSED(get_Application, platform::IPOutlookApp**)

 private:
  platform::ComPtr<platform::IPOutlookItemCollection> items_;
};

class PlainFolder final : public device::DispatchObject<PlainFolder, platform::IFolder> {
 public:
  explicit PlainFolder(platform::ComPtr<platform::IFolder> folder) : folder_(std::move(folder)) {}
  [[nodiscard]] bool Implements(const platform::GUID& iid) const noexcept {
    return iid == platform::IID_IFolder;
  }
  platform::HRESULT TAMU_COM_CALL get_Items(platform::IPOutlookItemCollection** items) override {
    platform::ComPtr<platform::IPOutlookItemCollection> real;
    const platform::HRESULT result = folder_->get_Items(real.put());
    *items = platform::Failed(result) ? nullptr : new PlainCollection(std::move(real));
    return result;
  }
  TAMU_REFUSED(get_DefaultItemType, std::int32_t*)
  TAMU_REFUSED(get_Application, platform::IPOutlookApp**)
  TAMU_REFUSED(AddItemToInfraredFolder, std::int32_t, platform::IDispatch*)
  TAMU_REFUSED(SendToInfrared)
  TAMU_REFUSED(ReceiveFromInfrared, platform::IPOutlookItemCollection**)

 private:
  platform::ComPtr<platform::IFolder> folder_;
};

class PlainApplication final
    : public device::DispatchObject<PlainApplication, platform::IPOutlookApp> {
 public:
  explicit PlainApplication(platform::ComPtr<platform::IPOutlookApp> application)
      : application_(std::move(application)) {}
  [[nodiscard]] bool Implements(const platform::GUID& iid) const noexcept {
    return iid == platform::IID_IPOutlookApp;
  }
  platform::HRESULT TAMU_COM_CALL Logon(std::int32_t window) override {
    return application_->Logon(window);
  }
  platform::HRESULT TAMU_COM_CALL Logoff() override { return application_->Logoff(); }
  platform::HRESULT TAMU_COM_CALL GetDefaultFolder(std::int32_t folder,
                                                   platform::IFolder** out) override {
    platform::ComPtr<platform::IFolder> real;
    const platform::HRESULT result = application_->GetDefaultFolder(folder, real.put());
    *out = platform::Failed(result) ? nullptr : new PlainFolder(std::move(real));
    return result;
  }
  platform::HRESULT TAMU_COM_CALL CreateItem(std::int32_t type,
                                             platform::IDispatch** item) override {
    return application_->CreateItem(type, item);
  }
  platform::HRESULT TAMU_COM_CALL GetItemFromOid(std::int32_t oid,
                                                 platform::IDispatch** item) override {
    return application_->GetItemFromOid(oid, item);
  }
  TAMU_REFUSED(get_Version, platform::BSTR*)
  TAMU_REFUSED(get_HomeCity, platform::IDispatch**)
  TAMU_REFUSED(put_HomeCity, platform::IDispatch*)
  TAMU_REFUSED(get_VisitingCity, platform::IDispatch**)
  TAMU_REFUSED(put_VisitingCity, platform::IDispatch*)
  TAMU_REFUSED(get_CurrentCityIndex, std::int32_t*)
  TAMU_REFUSED(put_CurrentCityIndex, std::int32_t)
  TAMU_REFUSED(ReceiveFromInfrared)
  TAMU_REFUSED(get_OutlookCompatible, platform::VARIANT_BOOL*)
  TAMU_REFUSED(GetTimeZoneFromIndex, std::int32_t, platform::IDispatch**)
  TAMU_REFUSED(GetTimeZoneInformationFromIndex, std::int32_t, void*)
  TAMU_REFUSED(get_Application, platform::IPOutlookApp**)
  TAMU_REFUSED(SysFreeString, platform::BSTR)
  TAMU_REFUSED(VariantTimeToSystemTime, platform::DATE, platform::SYSTEMTIME*)
  TAMU_REFUSED(SystemTimeToVariantTime, platform::SYSTEMTIME*, platform::DATE*)

 private:
  platform::ComPtr<platform::IPOutlookApp> application_;
};

#undef TAMU_REFUSED

}  // namespace tamu::testing

#endif  // TAMU_TESTS_PIMSTORE_PLAIN_DEVICE_H_
