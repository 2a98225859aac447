// The embedded device as one of the kinds that the contract tests run over.
#include "device/mail/mail_session.h"
#include "device/sqlite/sqlite_mail_store.h"
#include "support/mail_device.h"
#include "support/scratch_folder.h"

namespace tamu::testing {
namespace {

// A folder is the device's while it lives. Sessions share what is open in the process, and open the
// file anew when nothing is.
class SqliteMailDevice final : public MailDevice {
 public:
  platform::HRESULT Logon(platform::IMAPISession** session) override {
    return device::CreateMailSession(&device::OpenMailStore, session);
  }

 private:
  ScratchFolder folder_;
  ScopedEnvironment home_{"TAMU_HOME", (folder_.path() / "device").string()};
};

[[maybe_unused]] const bool registered = [] {
  MailDeviceKinds().push_back({"Sqlite", []() -> std::unique_ptr<MailDevice> {
                                 return std::make_unique<SqliteMailDevice>();
                               }});
  return true;
}();

}  // namespace
}  // namespace tamu::testing
