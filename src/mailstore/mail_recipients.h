// mailstore/mail_recipients.h - a message's recipients as the messaging store takes them.
#ifndef TAMU_MAILSTORE_MAIL_RECIPIENTS_H_
#define TAMU_MAILSTORE_MAIL_RECIPIENTS_H_

#include "core/memory.h"
#include "platform/bstr.h"
#include "platform/cemapi.h"

namespace tamu {

// One row for each piece between the ";" of `to`, then of `cc`: its kind, "SMTP", and the piece as
// it stands but for spaces before it. An empty or blank piece at the end is none, one elsewhere is a
// recipient without an address. The list, its rows and texts are one block; null when memory runs
// out.
[[nodiscard]] MemPtr<platform::ADRLIST> MAIL_MakeRecipients(const platform::BStr& to,
                                                            const platform::BStr& cc) noexcept;

}  // namespace tamu

#endif  // TAMU_MAILSTORE_MAIL_RECIPIENTS_H_
