// mailstore/mail_errors.h - log lines about a failed call of the messaging store, with what the
// store itself says about it.
//   Ownership  nothing is kept; the store's error block is freed.
#ifndef TAMU_MAILSTORE_MAIL_ERRORS_H_
#define TAMU_MAILSTORE_MAIL_ERRORS_H_

#include "platform/cemapi.h"

namespace tamu {

// Logs that `operation` failed with `result`, as the open session explains it.
void MAPI_LogError(const char16_t* operation, platform::HRESULT result) noexcept;

// The same as a table, or an object with properties, explains it.
void MAPI_LogObjectError(platform::IMAPITable* object, const char16_t* operation,
                         platform::HRESULT result) noexcept;
void MAPI_LogObjectError(platform::IMAPIProp* object, const char16_t* operation,
                         platform::HRESULT result) noexcept;

}  // namespace tamu

#endif  // TAMU_MAILSTORE_MAIL_ERRORS_H_
