// device/mail/mail_session.h - the messaging store's objects over a store of mail: session, message
// store, folders, messages, tables and streams.
//   The one message store has the folders that the mail store has. Interface ids are passed over
//   wherever an object is opened: it is its own kind's interface.
//   Ownership  objects share the mail store and keep it as long as one of them lives.
#ifndef TAMU_DEVICE_MAIL_MAIL_SESSION_H_
#define TAMU_DEVICE_MAIL_MAIL_SESSION_H_

#include <memory>

#include "device/mail/mail_store.h"
#include "platform/cemapi.h"

namespace tamu::device {

// Gives the mail store that a session works on; null in a success for a device without one.
using MailStoreOpener = platform::HRESULT (*)(std::shared_ptr<MailStore>* store);

// Opens the mail store and a session over it. The opener's failure, kOutOfMemory.
[[nodiscard]] platform::HRESULT CreateMailSession(MailStoreOpener opener,
                                                  platform::IMAPISession** session) noexcept;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_MAIL_MAIL_SESSION_H_
