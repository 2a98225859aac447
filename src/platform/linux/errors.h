// platform/linux/errors.h - the system's errno values as the platform's error numbers.
//   Errors     none; a value without a counterpart becomes kErrorGenFailure.
#ifndef TAMU_PLATFORM_LINUX_ERRORS_H_
#define TAMU_PLATFORM_LINUX_ERRORS_H_

#include <cstdint>
#include <string>

#include "platform/last_error.h"

namespace tamu::platform {

// The platform's number for an errno value.
[[nodiscard]] std::uint32_t ErrorFromErrno(int number) noexcept;

// The same for a call on `path`: kErrorPathNotFound when it is a folder above it that is missing.
[[nodiscard]] std::uint32_t ErrorForPath(int number, const std::string& path) noexcept;

// Leaves `error` as the last error and gives back the value that means failure.
template <typename Result>
[[nodiscard]] Result FailWith(std::uint32_t error, Result failure) noexcept {
  SetLastError(error);
  return failure;
}

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_LINUX_ERRORS_H_
