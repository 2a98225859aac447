// device/pim/application.h - the application object, from which all others are reached.
//   It opens its store at `Logon` and lets go of it at `Logoff`; until then, and after that, whatever
//   needs the store fails with kUnexpected, also on items that are still held. Freeing a string,
//   converting times and `get_Application` always work.
//   Cities, time zones and infrared transfer are refused with kNotImplemented.
#ifndef TAMU_DEVICE_PIM_APPLICATION_H_
#define TAMU_DEVICE_PIM_APPLICATION_H_

#include <memory>

#include "device/pim/item_store.h"
#include "platform/poom.h"

namespace tamu::device {

// What the other objects ask of the application beside the platform's interface.
class PimApplication : public platform::IPOutlookApp {
 public:
  // The store of the session, null when not logged on. Borrowed until the next Logoff.
  [[nodiscard]] virtual ItemStore* store() const noexcept = 0;

 protected:
  ~PimApplication() = default;
};

// Opens the store that a session works on; the result of a failure is that of the Logon.
using StoreOpener = platform::HRESULT (*)(std::shared_ptr<ItemStore>* store);

// Makes an application that is not logged on. kNoInterface when it lacks the interface,
// kOutOfMemory.
[[nodiscard]] platform::HRESULT CreateApplication(StoreOpener opener, const platform::GUID& iid,
                                                  void** object) noexcept;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_PIM_APPLICATION_H_
