#include "platform/cemapi.h"

#include <cstdint>

#include "platform/linux/class_table.h"
#include "platform/linux/mapi_buffer.h"

namespace tamu::platform {
namespace {

// The store needs no preparation; the count only tells whether calls are paired.
std::uint32_t initialized = 0;

HRESULT Initialize(void*) {
  ++initialized;
  return hr::kOk;
}

void Uninitialize() {
  if (initialized != 0) --initialized;
}

HRESULT LogonEx(std::uintptr_t, char16_t*, char16_t*, std::uint32_t, IMAPISession** session) {
  if (session == nullptr) return hr::kInvalidArgument;
  *session = nullptr;
  if (initialized == 0) return hr::kNotInitialized;
  const auto logon = ProvidedDevice().logon;
  return logon == nullptr ? hr::kLogonFailed : logon(session);
}

std::uint32_t FreeBuffer(void* buffer) {
  FreeMapiBuffer(buffer);
  return 0;
}

// Each row is a block of its own, as is the set.
void FreeRows(SRowSet* rows) {
  if (rows == nullptr) return;
  for (std::uint32_t i = 0; i < rows->cRows; ++i) FreeMapiBuffer(rows->aRow[i].lpProps);
  FreeMapiBuffer(rows);
}

}  // namespace

constinit Service<HRESULT(void*)> MAPIInitialize{"MAPIInitialize", &Initialize, hr::kFail};
constinit Service<void()> MAPIUninitialize{"MAPIUninitialize", &Uninitialize};
constinit Service<HRESULT(std::uintptr_t, char16_t*, char16_t*, std::uint32_t, IMAPISession**)>
    MAPILogonEx{"MAPILogonEx", &LogonEx, hr::kFail};
constinit Service<std::uint32_t(void*)> MAPIFreeBuffer{"MAPIFreeBuffer", &FreeBuffer, 0};
constinit Service<void(SRowSet*)> FreeProws{"FreeProws", &FreeRows};

}  // namespace tamu::platform
