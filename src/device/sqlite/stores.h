// device/sqlite/stores.h - the database of the process's device, shared by all who use it: the
// object model, the messaging store and batches see each other's changes at once.
//   Ownership  opened by the first user, closed with the last one. Statements that a user keeps must
//              die before its reference.
#ifndef TAMU_DEVICE_SQLITE_STORES_H_
#define TAMU_DEVICE_SQLITE_STORES_H_

#include <memory>

#include "device/sqlite/database.h"

namespace tamu::device {

class Stores {
 public:
  explicit Stores(std::unique_ptr<Database> database) noexcept : database_(std::move(database)) {}

  [[nodiscard]] Database& database() noexcept { return *database_; }

 private:
  std::unique_ptr<Database> database_;
};

// The stores of platform::DeviceFolder(), which are opened when nobody in this process has them
// open. Fails as Database::Open.
[[nodiscard]] platform::HRESULT OpenStores(std::shared_ptr<Stores>* stores) noexcept;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_SQLITE_STORES_H_
