// store/device_session.h - the device's stores, opened for one command.
//   Opens the library's own session and, beside it, what goes beyond the library's ten functions:
//   the object model and the mail folders.
//   Errors     texts for people; std::bad_alloc.
#ifndef TAMU_TOOLS_STORE_DEVICE_SESSION_H_
#define TAMU_TOOLS_STORE_DEVICE_SESSION_H_

#include <cstdint>
#include <string>

#include "platform/cemapi.h"
#include "platform/com_ptr.h"
#include "platform/poom.h"

namespace tamu::tool {

enum class MailBox : std::uint8_t { kInbox, kSent, kOutbox };
inline constexpr MailBox kMailBoxes[] = {MailBox::kInbox, MailBox::kSent, MailBox::kOutbox};

// "inbox", "sent", "outbox".
[[nodiscard]] std::string_view MAILBOX_Name(MailBox box) noexcept;

class DeviceSession {
 public:
  DeviceSession() = default;
  DeviceSession(const DeviceSession&) = delete;
  DeviceSession& operator=(const DeviceSession&) = delete;
  ~DeviceSession();

  // False, with the reason, when the device cannot be used; nothing is open then.
  [[nodiscard]] bool Open(std::string* problem);

  // The device's folder as the system spells it.
  [[nodiscard]] static std::string Folder();

  [[nodiscard]] platform::IPOutlookApp* application() const noexcept { return application_.get(); }
  // The items of a default folder (platform::kContactsFolder, ...); null when they cannot be had.
  [[nodiscard]] platform::ComPtr<platform::IPOutlookItemCollection> Items(
      std::int32_t folder) const;
  // Borrowed; null when the device has no such folder.
  [[nodiscard]] static platform::IMAPIFolder* Folder(MailBox box) noexcept;

 private:
  bool open_ = false;
  platform::ComPtr<platform::IPOutlookApp> application_;
};

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_DEVICE_SESSION_H_
