// The device that stands behind the platform's objects on Linux.
#include "device/mail/mail_session.h"
#include "device/pim/application.h"
#include "device/sqlite/sqlite_item_store.h"
#include "device/sqlite/sqlite_mail_store.h"
#include "platform/linux/class_table.h"

namespace tamu::platform {
namespace {

HRESULT CreateApplication(const GUID& iid, void** object) {
  return device::CreateApplication(&device::OpenItemStore, iid, object);
}

HRESULT Logon(IMAPISession** session) {
  return device::CreateMailSession(&device::OpenMailStore, session);
}

constexpr ClassEntry kClasses[] = {
    {CLSID_Application, &CreateApplication},
};

}  // namespace

const DeviceProvider& ProvidedDevice() noexcept {
  static constexpr DeviceProvider kDevice{kClasses, &Logon};
  return kDevice;
}

}  // namespace tamu::platform
