// platform/linux/class_table.h - what stands behind the platform's objects on Linux: a table of
// classes and a mail session, provided by the device that the library is built with.
#ifndef TAMU_PLATFORM_LINUX_CLASS_TABLE_H_
#define TAMU_PLATFORM_LINUX_CLASS_TABLE_H_

#include <span>

#include "platform/cemapi.h"
#include "platform/com.h"

namespace tamu::platform {

struct ClassEntry {
  GUID class_id;
  // Gives a new object's interface with one reference.
  HRESULT (*create)(const GUID& iid, void** object);
};

struct DeviceProvider {
  std::span<const ClassEntry> classes;
  HRESULT (*logon)(IMAPISession** session);
};

// The device of this build; one without stores has no classes and a null `logon`.
[[nodiscard]] const DeviceProvider& ProvidedDevice() noexcept;

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_LINUX_CLASS_TABLE_H_
