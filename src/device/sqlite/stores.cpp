#include "device/sqlite/stores.h"

#include <unistd.h>

#include <new>
#include <string>
#include <utility>

#include "device/sqlite/failure.h"
#include "platform/paths.h"

namespace tamu::device {
namespace {

// What is open: of which folder, and by which process. A child that inherits a connection must not
// use it.
struct Shared {
  std::weak_ptr<Stores> stores;
  std::string folder;
  pid_t process = 0;
};

Shared& TheShared() {
  static Shared shared;
  return shared;
}

}  // namespace

platform::HRESULT OpenStores(std::shared_ptr<Stores>* stores) noexcept {
  stores->reset();
  try {
    Shared& shared = TheShared();
    std::string folder = platform::PathToNative(platform::DeviceFolder());
    if (std::shared_ptr<Stores> open = shared.stores.lock();
        open != nullptr && shared.folder == folder && shared.process == ::getpid()) {
      *stores = std::move(open);
      return platform::hr::kOk;
    }
    std::unique_ptr<Database> database;
    const platform::HRESULT result = Database::Open(folder, &database);
    if (platform::Failed(result)) return result;
    auto opened = std::make_shared<Stores>(std::move(database));
    shared = {opened, std::move(folder), ::getpid()};
    *stores = std::move(opened);
    return platform::hr::kOk;
  } catch (const std::bad_alloc&) {
    return LogFailure(OutOfMemoryFailure(), std::string());
  }
}

}  // namespace tamu::device
