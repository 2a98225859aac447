// support/no_device.h - a system without an object model, whatever the build has.
#ifndef TAMU_TESTS_SUPPORT_NO_DEVICE_H_
#define TAMU_TESTS_SUPPORT_NO_DEVICE_H_

#include <cstdint>

#include "platform/com.h"

namespace tamu::testing {

// While it lives, no class is registered.
class ScopedNoDevice {
 private:
  static platform::HRESULT NoClass(const platform::GUID&, platform::IUnknown*, std::uint32_t,
                                   const platform::GUID&, void** object) {
    *object = nullptr;
    return platform::hr::kClassNotRegistered;
  }

  platform::ScopedOverride<platform::HRESULT(const platform::GUID&, platform::IUnknown*,
                                             std::uint32_t, const platform::GUID&, void**)>
      creator_{platform::CoCreateInstance, &NoClass};
};

}  // namespace tamu::testing

#endif  // TAMU_TESTS_SUPPORT_NO_DEVICE_H_
