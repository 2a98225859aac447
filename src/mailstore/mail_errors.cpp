#include "mailstore/mail_errors.h"

#include "core/log.h"
#include "mailstore/session.h"

namespace tamu {
namespace {

using namespace platform;

const char16_t* TextOrNull(const char16_t* text) noexcept { return text ? text : u"NULL"; }

void LogFailure(const char16_t* operation, HRESULT result) noexcept {
  LOG_Error("MAPI:  %S failed with code: 0x%08x", operation, result);
}

void LogExplanation(const char16_t* operation, const MAPIERROR& error) noexcept {
  LOG_Error("MAPI:  %S failed.", operation);
  LOG_Error("       LowLevelError = %lu", error.ulLowLevelError);
  LOG_Error("       Version       = %lu", error.ulVersion);
  LOG_Error("       Message       = %S", TextOrNull(error.lpszError));
  LOG_Error("       Component     = %S", TextOrNull(error.lpszComponent));
  LOG_Error("       Context       = %lu", error.ulContext);
}

template <typename Object>
void LogObjectError(Object* object, const char16_t* operation, HRESULT result) noexcept {
  MAPIERROR* error = nullptr;
  const HRESULT asked = object->GetLastError(result, kMapiUnicode, &error);
  if (Succeeded(asked) && error != nullptr) {
    LogExplanation(operation, *error);
  } else {
    LogFailure(operation, result);
    if (error == nullptr) {
      LOG_Error("MAPI:  GetLastError failed - lpMAPIError is NULL (hr1=0x%08x)", asked);
    } else {
      LOG_Error("MAPI:  GetLastError failed with code: 0x%08x", asked);
    }
  }
  if (error != nullptr) MAPIFreeBuffer(error);
}

}  // namespace

void MAPI_LogError(const char16_t* operation, HRESULT result) noexcept {
  if (gpSession == nullptr) {
    LogFailure(operation, result);
    LOG_Error("MAPI:  Can't call GetLastError failed - gpSession is NULL");
    return;
  }
  MAPIERROR* error = nullptr;
  const HRESULT asked = gpSession->GetLastError(result, kMapiUnicode, &error);
  if (Succeeded(asked) && error != nullptr) {
    LogExplanation(operation, *error);
  } else {
    LogFailure(operation, result);
    if (error == nullptr) {
      LOG_Error("MAPI:  gpSession->GetLastError failed - lpMAPIError is NULL");
    } else {
      LOG_Error("MAPI:  gpSession->GetLastError failed with code: 0x%08x", asked);
    }
  }
  if (error != nullptr) MAPIFreeBuffer(error);
}

void MAPI_LogObjectError(IMAPITable* object, const char16_t* operation, HRESULT result) noexcept {
  LogObjectError(object, operation, result);
}

void MAPI_LogObjectError(IMAPIProp* object, const char16_t* operation, HRESULT result) noexcept {
  LogObjectError(object, operation, result);
}

}  // namespace tamu
