#include "platform/services.h"

#include "platform/bstr.h"
#include "platform/cemapi.h"
#include "platform/code_pages.h"
#include "platform/com.h"
#include "platform/files.h"
#include "platform/registry.h"
#include "platform/rich_ink.h"
#include "platform/sockets.h"
#include "platform/time.h"
#include "platform/virtual_memory.h"

namespace tamu::platform {
namespace {

constexpr ServiceBase* kServices[] = {
    &SysAllocString,
    &SysAllocStringLen,  // counted strings
    &IsValidCodePage,
    &MultiByteToWideChar,
    &WideCharToMultiByte,
    &GetLocaleInfoW,  // code pages
    &CreateFileW,
    &ReadFile,
    &WriteFile,
    &SetFilePointerEx,  // files
    &CloseHandle,
    &DeleteFileW,
    &GetTempPathW,
    &GetTempFileNameW,
    &RegOpenKeyExW,
    &RegQueryValueExW,
    &RegSetValueExW,
    &RegCreateKeyExW,  // registry
    &RegCloseKey,      //
    &socket,
    &bind,
    &sendto,
    &closesocket,  // datagrams
    &CoCreateInstance,
    &MAPIInitialize,
    &MAPIUninitialize,
    &MAPILogonEx,
    &MAPIFreeBuffer,
    &FreeProws,  // objects
    &InitRichInkDLL,
    &CreateWindowExW,
    &SendMessageW,
    &DestroyWindow,
    &SHGetSpecialFolderPathW,  // notes
    &VirtualAlloc,
    &VirtualFree,  // pages of memory
    &GetSystemTime,
    &SystemTimeToFileTime,
    &FileTimeToSystemTime,
    &FileTimeToLocalFileTime,
    &LocalFileTimeToFileTime,
    &SystemTimeToVariantTime,
    &VariantTimeToSystemTime,
    &VarBstrFromDate,  // time
};

}  // namespace

std::span<ServiceBase* const> AllServices() noexcept { return kServices; }

ServiceBase* FindService(std::string_view name) noexcept {
  for (ServiceBase* service : kServices) {
    if (name == service->name()) return service;
  }
  return nullptr;
}

}  // namespace tamu::platform
