// mailstore/mail_folder.h - what the operations on messages share: a record's folder, and its texts
// as wide text.
#ifndef TAMU_MAILSTORE_MAIL_FOLDER_H_
#define TAMU_MAILSTORE_MAIL_FOLDER_H_

#include "platform/bstr.h"
#include "platform/cemapi.h"
#include "tamu/tamu.h"

namespace tamu {

// The folder that the record names, borrowed from the session; null when it is not open.
[[nodiscard]] platform::IMAPIFolder* MAIL_FolderOf(const MessageShape& record) noexcept;

// A header's text in the system's code page as wide text of at most 2048 units; empty when memory
// runs out.
void MAIL_HeaderToWide(const char* text, platform::BStr* wide) noexcept;

// The same without a limit.
void MAIL_TextToWide(const char* text, platform::BStr* wide) noexcept;

}  // namespace tamu

#endif  // TAMU_MAILSTORE_MAIL_FOLDER_H_
