// system/linux/file_copy.h - bytes from one descriptor to another, and files without a name.
#ifndef TAMU_TOOLS_SYSTEM_LINUX_FILE_COPY_H_
#define TAMU_TOOLS_SYSTEM_LINUX_FILE_COPY_H_

#include <cstdint>
#include <string>

namespace tamu::tool {

inline constexpr std::uint64_t kAllBytes = UINT64_MAX;

enum class CopyResult : std::uint8_t { kDone, kReadFailed, kWriteFailed };

// Copies up to `count` bytes from the positions of both. errno says why it failed.
[[nodiscard]] CopyResult CopyBytes(int from, int to, std::uint64_t count) noexcept;

// A new file in the temporary folder whose name is already gone. Returns its descriptor, or -1 with
// the reason in errno.
[[nodiscard]] int MakeNamelessFile();

// A path that opens what the descriptor has open, from its start.
[[nodiscard]] std::string PathOfDescriptor(int descriptor);

// "cannot <what>: <reason of errno>".
[[nodiscard]] std::string Failed(const char* what);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_SYSTEM_LINUX_FILE_COPY_H_
