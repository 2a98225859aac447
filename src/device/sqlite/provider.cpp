// The device that stands behind the platform's objects on Linux.
#include "device/mail/mail_session.h"
#include "device/sqlite/sqlite_mail_store.h"
#include "platform/linux/class_table.h"

namespace tamu::platform {
namespace {

HRESULT Logon(IMAPISession** session) {
  return device::CreateMailSession(&device::OpenMailStore, session);
}

}  // namespace

const DeviceProvider& ProvidedDevice() noexcept {
  static constexpr DeviceProvider kDevice{{}, &Logon};
  return kDevice;
}

}  // namespace tamu::platform
