// support/mail_device.h - devices with mail, for tests of the messaging store and of what uses it.
//   The contract tests run over every kind in `MailDeviceKinds`.
#ifndef TAMU_TESTS_SUPPORT_MAIL_DEVICE_H_
#define TAMU_TESTS_SUPPORT_MAIL_DEVICE_H_

#include <cstdint>
#include <memory>
#include <ostream>
#include <vector>

#include "device/mail/mail_session.h"
#include "platform/cemapi.h"
#include "support/memory_mail_store.h"

namespace tamu::testing {

// A device that lives as long as this object.
class MailDevice {
 public:
  MailDevice() = default;
  MailDevice(const MailDevice&) = delete;
  MailDevice& operator=(const MailDevice&) = delete;
  virtual ~MailDevice() = default;

  // A new session; what an earlier one stored is there.
  [[nodiscard]] virtual platform::HRESULT Logon(platform::IMAPISession** session) = 0;
};

// A device over a store in memory, one at a time.
class MemoryMailDevice final : public MailDevice {
 public:
  MemoryMailDevice() { Current() = store_; }
  ~MemoryMailDevice() override { Current() = nullptr; }

  [[nodiscard]] MemoryMailStore& store() { return *store_; }
  // Sessions from now on find no message store at all.
  void RemoveStore() { Current() = nullptr; }

  platform::HRESULT Logon(platform::IMAPISession** session) override {
    return device::CreateMailSession(&Open, session);
  }

 private:
  static std::shared_ptr<MemoryMailStore>& Current() {
    static std::shared_ptr<MemoryMailStore> current;
    return current;
  }
  static platform::HRESULT Open(std::shared_ptr<device::MailStore>* store) {
    *store = Current();
    return platform::hr::kOk;
  }

  const std::shared_ptr<MemoryMailStore> store_ = std::make_shared<MemoryMailStore>();
};

struct MailDeviceKind {
  const char* name;
  std::unique_ptr<MailDevice> (*make)();

  friend void PrintTo(const MailDeviceKind& kind, std::ostream* out) { *out << kind.name; }
};

inline std::vector<MailDeviceKind>& MailDeviceKinds() {
  static std::vector<MailDeviceKind> kinds{{"Memory", []() -> std::unique_ptr<MailDevice> {
                                              return std::make_unique<MemoryMailDevice>();
                                            }}};
  return kinds;
}

// While it lives, logging on gives sessions of a device in memory.
class ScopedMailDevice {
 public:
  ScopedMailDevice() { Active() = this; }
  ~ScopedMailDevice() { Active() = nullptr; }
  ScopedMailDevice(const ScopedMailDevice&) = delete;
  ScopedMailDevice& operator=(const ScopedMailDevice&) = delete;

  [[nodiscard]] MemoryMailDevice& device() { return device_; }
  [[nodiscard]] MemoryMailStore& store() { return device_.store(); }

 private:
  static ScopedMailDevice*& Active() {
    static ScopedMailDevice* active = nullptr;
    return active;
  }
  static platform::HRESULT Logon(std::uintptr_t, char16_t*, char16_t*, std::uint32_t,
                                 platform::IMAPISession** session) {
    return Active()->device_.Logon(session);
  }

  MemoryMailDevice device_;
  platform::ScopedOverride<platform::HRESULT(std::uintptr_t, char16_t*, char16_t*, std::uint32_t,
                                             platform::IMAPISession**)>
      logon_{platform::MAPILogonEx, &Logon};
};

}  // namespace tamu::testing

#endif  // TAMU_TESTS_SUPPORT_MAIL_DEVICE_H_
