// platform/paths.h - paths as the system spells them (bytes on Linux) and as the library takes them
// (UTF-16).
//   The conversion loses nothing: a byte that is not part of valid UTF-8 becomes one of the lone
//   surrogates U+DC80 to U+DCFF and comes back as that byte.
#ifndef TAMU_PLATFORM_PATHS_H_
#define TAMU_PLATFORM_PATHS_H_

#include <string>
#include <string_view>

namespace tamu::platform {

// A path from the command line or the environment as wide text. Throws std::bad_alloc when memory
// runs out.
[[nodiscard]] std::u16string PathFromNative(std::string_view native);

// The path as the system takes it. Throws std::bad_alloc when memory runs out.
[[nodiscard]] std::string PathToNative(std::u16string_view path);

// What stands between the folders of a path: "/" on Linux.
extern const char16_t kPathSeparator;

// The device's folder: $TAMU_HOME, else $XDG_DATA_HOME/tamu, else ~/.local/share/tamu, else (no
// home) empty. It need not exist.
[[nodiscard]] std::u16string DeviceFolder();

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_PATHS_H_
