// platform/linux/atomic_file.h - durable changes of the file system: folders, and files replaced in
// one piece.
//   Errors     the platform's numbers, 0 for success; std::bad_alloc.
#ifndef TAMU_PLATFORM_LINUX_ATOMIC_FILE_H_
#define TAMU_PLATFORM_LINUX_ATOMIC_FILE_H_

#include <cstdint>
#include <string>

namespace tamu::platform {

// Makes a folder, and those above it that are missing, for the user alone. Durable when 0 is
// returned.
[[nodiscard]] std::uint32_t MakeFolders(const std::string& path);

// Puts a file of these bytes in the place of `path`: written beside it, brought to disk, then
// renamed. It keeps the owner and the mode of the file that it replaces; a new one is for the user
// alone. After a failure the old file is there unchanged. Only one process at a time may replace
// the same file.
[[nodiscard]] std::uint32_t ReplaceFile(const std::string& path, const std::string& bytes);

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_LINUX_ATOMIC_FILE_H_
