// platform/rich_ink.h - what notes are made with: the platform's rich-ink control, driven by window
// messages, and the folder that notes lie in.
//   On Linux the control has no window: it takes text and gives documents (src/device/ink).
//   Units      text and paths are UTF-16, streams are bytes.
//   Ownership  a window is its maker's until DestroyWindow.
//   Errors     by result, with the reason in GetLastError; those of a stream in its EditStream.
#ifndef TAMU_PLATFORM_RICH_INK_H_
#define TAMU_PLATFORM_RICH_INK_H_

#include <cstdint>

#include "platform/service.h"

// The convention of functions that the platform calls.
#if defined(_WIN32) && !defined(_WIN64)
#define TAMU_PLATFORM_CALLBACK __stdcall
#else
#define TAMU_PLATFORM_CALLBACK
#endif

namespace tamu::platform {

using WindowHandle = std::intptr_t;  // 0 is none

inline constexpr char16_t kRichInkClass[] = u"RichInk";
inline constexpr std::uint32_t kRichInkStyle = 0x800;
inline constexpr std::int32_t kUseDefault =
    INT32_MIN;  // the position and size that the system chooses

// Messages: wparam is the format, lparam an EditStream.
inline constexpr std::uint32_t kEmStreamIn = 1097;
inline constexpr std::uint32_t kEmStreamOut = 1098;

// Formats: text in the ANSI code page, text in UTF-16, a rich-ink document.
inline constexpr std::uintptr_t kSfText = 1;
inline constexpr std::uintptr_t kSfUnicodeText = 17;
inline constexpr std::uintptr_t kSfPwi = 0x10802;

// Gives or takes up to `size` bytes in `buffer` and says in `*done` how many. Another number than
// `size` is the end of the stream; a nonzero result ends it with this error.
using EditStreamCallback = std::uint32_t(TAMU_PLATFORM_CALLBACK*)(std::uintptr_t cookie,
                                                                  std::uint8_t* buffer,
                                                                  std::int32_t size,
                                                                  std::int32_t* done);

struct EditStream {
  std::uintptr_t cookie;  // the callback's own
  std::uint32_t error;    // how the stream ended: 0, the callback's error, or the control's
  EditStreamCallback callback;
};

// Makes the class "RichInk" known, once in a process; again changes nothing.
extern Service<void()> InitRichInkDLL;

// Makes a window, or 0: a class that is not known (on Linux any but "RichInk") is error 1407. On
// Linux text, style, place, parent, menu and the rest have no meaning.
extern Service<WindowHandle(
    std::uint32_t extended_style, const char16_t* class_name, const char16_t* text,
    std::uint32_t style, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
    WindowHandle parent, std::intptr_t menu, std::intptr_t instance, void* parameter)>
    CreateWindowExW;

// Sends one message and answers what the window answers. The two messages above answer 0 on
// success, else the stream's error:
//   kEmStreamIn   replaces the content by what the callback gives; a terminator at its end is
//                 dropped. After a failure the content is what it was.
//   kEmStreamOut  gives the content to the callback, piece by piece. UTF-16 text ends in a
//                 terminator, text in the code page does not.
// Any other message, and a window that is not there (error 1400), answers 0.
extern Service<std::intptr_t(WindowHandle window, std::uint32_t message, std::uintptr_t wparam,
                             std::intptr_t lparam)>
    SendMessageW;

// Takes a window away. Returns 0 on failure.
extern Service<std::int32_t(WindowHandle window)> DestroyWindow;

inline constexpr std::int32_t kCsidlPersonal = 5;  // the user's documents

// The path of a special folder, without a separator at its end, into kMaxPath units. With `create`
// a folder that is missing is made; without, it need not be there. On Linux kCsidlPersonal is
// "Documents" in the device's folder, and there are no others. Returns 0 on failure: 87 for another
// folder, 3 when there is no device folder, 111 when the path is too long.
extern Service<std::int32_t(WindowHandle window, char16_t* path, std::int32_t folder,
                            std::int32_t create)>
    SHGetSpecialFolderPathW;

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_RICH_INK_H_
