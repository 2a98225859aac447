#include "platform/rich_ink.h"

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <string_view>

#include "device/ink/ink_control.h"
#include "platform/files.h"
#include "platform/linux/atomic_file.h"
#include "platform/linux/errors.h"
#include "platform/paths.h"

namespace tamu::platform {
namespace {

constexpr std::u16string_view kDocuments = u"Documents";

// The windows of the process. Handles are never used again, so that one that was destroyed is not
// taken for another.
struct Windows {
  std::mutex mutex;
  bool class_known = false;
  WindowHandle last = 0;
  std::map<WindowHandle, std::shared_ptr<device::InkControl>> controls;
};

Windows& AllWindows() {
  static Windows windows;
  return windows;
}

std::shared_ptr<device::InkControl> FindWindowControl(WindowHandle window) {
  Windows& windows = AllWindows();
  const std::lock_guard lock(windows.mutex);
  const auto found = windows.controls.find(window);
  return found == windows.controls.end() ? nullptr : found->second;
}

void RegisterClass() {
  Windows& windows = AllWindows();
  const std::lock_guard lock(windows.mutex);
  windows.class_known = true;
}

// Names of classes are compared without regard to case; this one is ASCII.
bool IsRichInk(const char16_t* class_name) {
  if (class_name == nullptr) return false;
  constexpr std::u16string_view kName = kRichInkClass;
  const auto lower = [](char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
  };
  return std::ranges::equal(std::u16string_view(class_name), kName, {}, lower, lower);
}

WindowHandle MakeWindow(std::uint32_t /*extended_style*/, const char16_t* class_name,
                        const char16_t* /*text*/, std::uint32_t /*style*/, std::int32_t /*x*/,
                        std::int32_t /*y*/, std::int32_t /*width*/, std::int32_t /*height*/,
                        WindowHandle /*parent*/, std::intptr_t /*menu*/, std::intptr_t /*instance*/,
                        void* /*parameter*/) {
  try {
    Windows& windows = AllWindows();
    const std::lock_guard lock(windows.mutex);
    if (!windows.class_known || !IsRichInk(class_name)) {
      return FailWith(kErrorCannotFindWindowClass, WindowHandle{0});
    }
    const WindowHandle window = windows.last + 1;
    windows.controls.emplace(window, std::make_shared<device::InkControl>());
    return windows.last = window;
  } catch (const std::bad_alloc&) {
    return FailWith(kErrorNotEnoughMemory, WindowHandle{0});
  }
}

std::intptr_t Send(WindowHandle window, std::uint32_t message, std::uintptr_t wparam,
                   std::intptr_t lparam) {
  const std::shared_ptr<device::InkControl> control = FindWindowControl(window);
  if (control == nullptr) return FailWith(kErrorInvalidWindowHandle, std::intptr_t{0});
  auto* const stream = reinterpret_cast<EditStream*>(lparam);
  switch (message) {
    case kEmStreamIn:
      return static_cast<std::intptr_t>(control->StreamIn(wparam, stream));
    case kEmStreamOut:
      return static_cast<std::intptr_t>(control->StreamOut(wparam, stream));
    default:
      return 0;
  }
}

std::int32_t Destroy(WindowHandle window) {
  Windows& windows = AllWindows();
  const std::lock_guard lock(windows.mutex);
  return windows.controls.erase(window) != 0 ? 1 : FailWith(kErrorInvalidWindowHandle, 0);
}

std::int32_t SpecialFolder(WindowHandle /*window*/, char16_t* path, std::int32_t folder,
                           std::int32_t create) {
  if (path == nullptr || folder != kCsidlPersonal) return FailWith(kErrorInvalidParameter, 0);
  try {
    std::u16string documents = DeviceFolder();
    if (documents.empty()) return FailWith(kErrorPathNotFound, 0);
    if (!documents.ends_with(kPathSeparator)) documents.push_back(kPathSeparator);
    documents += kDocuments;
    if (documents.size() >= static_cast<std::size_t>(kMaxPath)) {
      return FailWith(kErrorBufferOverflow, 0);
    }
    if (create != 0) {
      const std::uint32_t error = MakeFolders(PathToNative(documents));
      if (error != kErrorSuccess) return FailWith(error, 0);
    }
    std::copy_n(documents.c_str(), documents.size() + 1, path);
    return 1;
  } catch (const std::bad_alloc&) {
    return FailWith(kErrorNotEnoughMemory, 0);
  }
}

}  // namespace

constinit Service<void()> InitRichInkDLL{"InitRichInkDLL", &RegisterClass};
constinit Service<WindowHandle(std::uint32_t, const char16_t*, const char16_t*, std::uint32_t,
                               std::int32_t, std::int32_t, std::int32_t, std::int32_t, WindowHandle,
                               std::intptr_t, std::intptr_t, void*)>
    CreateWindowExW{"CreateWindowExW", &MakeWindow, 0};
constinit Service<std::intptr_t(WindowHandle, std::uint32_t, std::uintptr_t, std::intptr_t)>
    SendMessageW{"SendMessageW", &Send, 0};
constinit Service<std::int32_t(WindowHandle)> DestroyWindow{"DestroyWindow", &Destroy, 0};
constinit Service<std::int32_t(WindowHandle, char16_t*, std::int32_t, std::int32_t)>
    SHGetSpecialFolderPathW{"SHGetSpecialFolderPathW", &SpecialFolder, 0};

}  // namespace tamu::platform
