#include "store/device_session.h"

#include "core/wide.h"
#include "display_text.h"
#include "mailstore/session.h"
#include "platform/paths.h"
#include "store/error_lines.h"
#include "tamu/tamu.h"

namespace tamu::tool {
namespace {

using namespace platform;

// A second session with the object model, beside the library's.
HRESULT LogOn(ComPtr<IPOutlookApp>* application) {
  HRESULT result = CoCreateInstance(CLSID_Application, nullptr, kInProcessServer, IID_IPOutlookApp,
                                    application->put_void());
  if (Succeeded(result)) result = (*application)->Logon(0);
  if (Failed(result)) application->reset();
  return result;
}

std::string FailureText(const ErrorLines& lines) {
  const std::string folder = DISPLAY_FileName(DeviceSession::Folder());
  if (lines.empty()) return "the device in " + folder + " cannot be opened";
  return "the device in " + folder + " cannot be opened: " + lines.Text();
}

}  // namespace

std::string_view MAILBOX_Name(MailBox box) noexcept {
  switch (box) {
    case MailBox::kSent:
      return "sent";
    case MailBox::kOutbox:
      return "outbox";
    case MailBox::kInbox:
      break;
  }
  return "inbox";
}

DeviceSession::~DeviceSession() {
  if (application_) static_cast<void>(application_->Logoff());
  application_.reset();
  if (open_) static_cast<void>(TAMU_Close());
}

bool DeviceSession::Open(std::string* problem) {
  const ErrorLines lines;
  // A failure leaves what was opened before it open.
  open_ = true;
  if (TAMU_Open() == TAMU_OK && Succeeded(LogOn(&application_))) return true;
  *problem = FailureText(lines);
  static_cast<void>(TAMU_Close());
  open_ = false;
  return false;
}

std::string DeviceSession::Folder() { return PathToNative(DeviceFolder()); }

ComPtr<IPOutlookItemCollection> DeviceSession::Items(std::int32_t folder) const {
  ComPtr<IFolder> found;
  ComPtr<IPOutlookItemCollection> items;
  if (Succeeded(application_->GetDefaultFolder(folder, found.put())) && found) {
    static_cast<void>(found->get_Items(items.put()));
  }
  return items;
}

IMAPIFolder* DeviceSession::Folder(MailBox box) noexcept {
  switch (box) {
    case MailBox::kSent:
      return gpSentBoxFolder;
    case MailBox::kOutbox:
      return gpOutBoxFolder;
    case MailBox::kInbox:
      break;
  }
  return gpInBoxFolder;
}

}  // namespace tamu::tool
