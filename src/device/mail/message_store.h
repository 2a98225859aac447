// device/mail/message_store.h - what the message store says of itself, in its own properties and in
// the session's table of stores.
#ifndef TAMU_DEVICE_MAIL_MESSAGE_STORE_H_
#define TAMU_DEVICE_MAIL_MESSAGE_STORE_H_

#include <vector>

#include "device/mail/mail_store.h"

namespace tamu::device {

// Its names, its entry id and those of the folders that it has. Throws std::bad_alloc.
[[nodiscard]] std::vector<MailProperty> MessageStoreProperties(const MailStore& store);

}  // namespace tamu::device

#endif  // TAMU_DEVICE_MAIL_MESSAGE_STORE_H_
