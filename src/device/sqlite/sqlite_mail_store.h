// device/sqlite/sqlite_mail_store.h - the mail store in the device's database.
#ifndef TAMU_DEVICE_SQLITE_SQLITE_MAIL_STORE_H_
#define TAMU_DEVICE_SQLITE_SQLITE_MAIL_STORE_H_

#include <memory>

#include "device/mail/mail_store.h"
#include "device/sqlite/stores.h"

namespace tamu::device {

// A store over these stores, of which it keeps a reference. Null when memory runs out.
[[nodiscard]] std::unique_ptr<MailStore> MakeSqliteMailStore(
    std::shared_ptr<Stores> stores) noexcept;

// The mail store of the process's device. Fails as OpenStores.
[[nodiscard]] platform::HRESULT OpenMailStore(std::shared_ptr<MailStore>* store) noexcept;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_SQLITE_SQLITE_MAIL_STORE_H_
