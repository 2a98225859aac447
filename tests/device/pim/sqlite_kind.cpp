// The contract tests' device over the database.
#include "device/sqlite/sqlite_item_store.h"
#include "platform/com.h"
#include "support/pim_device.h"
#include "support/scratch_folder.h"

namespace tamu::testing {
namespace {

// A device in a folder of its own; applications come by their class, as on every device.
class SqlitePimDevice final : public PimDevice {
 public:
  platform::HRESULT CreateApplication(const platform::GUID& iid, void** application) override {
    return platform::CoCreateInstance(platform::CLSID_Application, nullptr,
                                      platform::kInProcessServer, iid, application);
  }

 private:
  ScratchFolder folder_;
  ScopedEnvironment home_{"TAMU_HOME", folder_.path().string()};
};

[[maybe_unused]] const bool kAdded = [] {
  PimDeviceKinds().push_back({"Sqlite", []() -> std::unique_ptr<PimDevice> {
                                return std::make_unique<SqlitePimDevice>();
                              }});
  return true;
}();

}  // namespace
}  // namespace tamu::testing
