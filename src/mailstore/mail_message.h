// mailstore/mail_message.h - a record's fields as the properties of a stored message.
#ifndef TAMU_MAILSTORE_MAIL_MESSAGE_H_
#define TAMU_MAILSTORE_MAIL_MESSAGE_H_

#include "platform/cemapi.h"
#include "tamu/tamu.h"

namespace tamu {

// Sets subject, delivery time, body, flags, sender and recipients, in this order; fields that are
// empty are left as they are, flags and recipients are always written. Each failure is logged and
// does not keep the others from being set. Returns the result of adding the recipients,
// kOutOfMemory when there is no memory for their list.
platform::HRESULT MAPI_SetMessageProps(platform::IMessage* message,
                                       const MessageShape& record) noexcept;

}  // namespace tamu

#endif  // TAMU_MAILSTORE_MAIL_MESSAGE_H_
