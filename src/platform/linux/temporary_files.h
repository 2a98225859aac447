// platform/linux/temporary_files.h - the making of temporary names, apart from where their numbers
// come from.
//   Units      path lengths are UTF-16 units.
//   Errors     0, with the reason in GetLastError.
#ifndef TAMU_PLATFORM_LINUX_TEMPORARY_FILES_H_
#define TAMU_PLATFORM_LINUX_TEMPORARY_FILES_H_

#include <cstdint>

namespace tamu::platform {

// How many taken names are passed over before the search for a free one is given up.
inline constexpr int kTemporaryNameTries = 128;

// GetTempFileNameW with `unique` 0, its numbers taken from `next`.
[[nodiscard]] std::uint32_t MakeTemporaryFile(const char16_t* folder, const char16_t* prefix,
                                              char16_t* path, std::uint32_t (*next)()) noexcept;

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_LINUX_TEMPORARY_FILES_H_
