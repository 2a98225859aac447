// support/pim_device.h - devices with contacts, appointments and tasks, for tests of the object model
// and of what uses it.
//   The contract tests run over every kind in `PimDeviceKinds`.
#ifndef TAMU_TESTS_SUPPORT_PIM_DEVICE_H_
#define TAMU_TESTS_SUPPORT_PIM_DEVICE_H_

#include <cstdint>
#include <memory>
#include <ostream>
#include <vector>

#include "device/pim/application.h"
#include "platform/com_ptr.h"
#include "platform/poom.h"
#include "support/memory_item_store.h"

namespace tamu::testing {

// A device that lives as long as this object.
class PimDevice {
 public:
  PimDevice() = default;
  PimDevice(const PimDevice&) = delete;
  PimDevice& operator=(const PimDevice&) = delete;
  virtual ~PimDevice() = default;

  // A new application that is not logged on; what was stored is there once it is.
  [[nodiscard]] virtual platform::HRESULT CreateApplication(const platform::GUID& iid,
                                                            void** application) = 0;
};

// A device over a store in memory, one at a time.
class MemoryPimDevice final : public PimDevice {
 public:
  MemoryPimDevice() { Current() = store_; }
  ~MemoryPimDevice() override { Current() = nullptr; }

  [[nodiscard]] MemoryItemStore& store() { return *store_; }
  // Applications cannot log on from now on.
  void RemoveStore() { Current() = nullptr; }

  platform::HRESULT CreateApplication(const platform::GUID& iid, void** application) override {
    return device::CreateApplication(&Open, iid, application);
  }

 private:
  static std::shared_ptr<MemoryItemStore>& Current() {
    static std::shared_ptr<MemoryItemStore> current;
    return current;
  }
  static platform::HRESULT Open(std::shared_ptr<device::ItemStore>* store) {
    *store = Current();
    return *store ? platform::hr::kOk : platform::hr::kFail;
  }

  const std::shared_ptr<MemoryItemStore> store_ = std::make_shared<MemoryItemStore>();
};

struct PimDeviceKind {
  const char* name;
  std::unique_ptr<PimDevice> (*make)();

  friend void PrintTo(const PimDeviceKind& kind, std::ostream* out) { *out << kind.name; }
};

inline std::vector<PimDeviceKind>& PimDeviceKinds() {
  static std::vector<PimDeviceKind> kinds{{"Memory", []() -> std::unique_ptr<PimDevice> {
                                             return std::make_unique<MemoryPimDevice>();
                                           }}};
  return kinds;
}

// While it lives, applications that are created by their class work on a device in memory.
class ScopedPimDevice {
 public:
  ScopedPimDevice() { Active() = this; }
  ~ScopedPimDevice() { Active() = nullptr; }
  ScopedPimDevice(const ScopedPimDevice&) = delete;
  ScopedPimDevice& operator=(const ScopedPimDevice&) = delete;

  [[nodiscard]] MemoryPimDevice& device() { return device_; }
  [[nodiscard]] MemoryItemStore& store() { return device_.store(); }

 private:
  static ScopedPimDevice*& Active() {
    static ScopedPimDevice* active = nullptr;
    return active;
  }
  static platform::HRESULT Create(const platform::GUID& class_id, platform::IUnknown*,
                                  std::uint32_t, const platform::GUID& iid, void** object) {
    *object = nullptr;
    if (class_id != platform::CLSID_Application) return platform::hr::kClassNotRegistered;
    return Active()->device_.CreateApplication(iid, object);
  }

  MemoryPimDevice device_;
  platform::ScopedOverride<platform::HRESULT(const platform::GUID&, platform::IUnknown*,
                                             std::uint32_t, const platform::GUID&, void**)>
      create_{platform::CoCreateInstance, &Create};
};

}  // namespace tamu::testing

#endif  // TAMU_TESTS_SUPPORT_PIM_DEVICE_H_
