// device/sqlite/sqlite_item_store.h - the item store in the device's database.
#ifndef TAMU_DEVICE_SQLITE_SQLITE_ITEM_STORE_H_
#define TAMU_DEVICE_SQLITE_SQLITE_ITEM_STORE_H_

#include <memory>

#include "device/pim/item_store.h"
#include "device/sqlite/stores.h"

namespace tamu::device {

// A store over these stores, of which it keeps a reference. Null when memory runs out.
[[nodiscard]] std::unique_ptr<ItemStore> MakeSqliteItemStore(
    std::shared_ptr<Stores> stores) noexcept;

// The item store of the process's device. Fails as OpenStores.
[[nodiscard]] platform::HRESULT OpenItemStore(std::shared_ptr<ItemStore>* store) noexcept;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_SQLITE_SQLITE_ITEM_STORE_H_
