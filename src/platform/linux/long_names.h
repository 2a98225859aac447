// platform/linux/long_names.h - file names that are longer than Linux takes.
//   A name of the platform has up to 259 UTF-16 units, which may be three times as many bytes; a
//   name here has at most 255 bytes. A longer one is shortened, always in the same way, so that
//   the file is found by its full name; and the full name is kept with the file.
//   Units      bytes (UTF-8).
//   Errors     std::bad_alloc.
#ifndef TAMU_PLATFORM_LINUX_LONG_NAMES_H_
#define TAMU_PLATFORM_LINUX_LONG_NAMES_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace tamu::platform {

inline constexpr std::size_t kMaxNameBytes = 255;

// A name (no separators) as the file system takes it: as it is, or, when it is too long, its
// beginning up to a whole character, "~", 16 hexadecimal digits that are computed from the whole
// name, and its extension.
[[nodiscard]] std::string FittingName(std::string_view name);

// The path with its last part fitting; folders are left as they are.
[[nodiscard]] std::string FittingPath(std::string path);

// Keeps the full last part of `path` with the file that was opened by FittingPath(path), in its
// extended attribute "user.tamu.long-name". Nothing happens for a name that fits, or on a file
// system without such attributes (there only the short name is known).
void KeepLongName(int descriptor, std::string_view path) noexcept;

// The full name of the file `name` in `folder`: what was kept, when it belongs to this name, else
// `name`.
[[nodiscard]] std::string LongNameOf(const std::string& folder, const std::string& name);

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_LINUX_LONG_NAMES_H_
