// platform/last_error.h - the calling thread's last error, in the platform's own numbers.
//   A platform function that fails says so by its result and leaves the reason here; one that
//   succeeds leaves the value alone.
#ifndef TAMU_PLATFORM_LAST_ERROR_H_
#define TAMU_PLATFORM_LAST_ERROR_H_

#include <cstdint>

namespace tamu::platform {

inline constexpr std::uint32_t kErrorSuccess = 0;
inline constexpr std::uint32_t kErrorFileNotFound = 2;
inline constexpr std::uint32_t kErrorPathNotFound = 3;
inline constexpr std::uint32_t kErrorTooManyOpenFiles = 4;
inline constexpr std::uint32_t kErrorAccessDenied = 5;
inline constexpr std::uint32_t kErrorInvalidHandle = 6;
inline constexpr std::uint32_t kErrorNotEnoughMemory = 8;
inline constexpr std::uint32_t kErrorNotSameDevice = 17;
inline constexpr std::uint32_t kErrorWriteProtect = 19;
inline constexpr std::uint32_t kErrorGenFailure = 31;
inline constexpr std::uint32_t kErrorSharingViolation = 32;
inline constexpr std::uint32_t kErrorHandleDiskFull = 39;
inline constexpr std::uint32_t kErrorFileExists = 80;
inline constexpr std::uint32_t kErrorInvalidParameter = 87;
inline constexpr std::uint32_t kErrorBrokenPipe = 109;
inline constexpr std::uint32_t kErrorBufferOverflow = 111;
inline constexpr std::uint32_t kErrorDiskFull = 112;
inline constexpr std::uint32_t kErrorInsufficientBuffer = 122;
inline constexpr std::uint32_t kErrorInvalidName = 123;
inline constexpr std::uint32_t kErrorNegativeSeek = 131;
inline constexpr std::uint32_t kErrorSeekOnDevice = 132;
inline constexpr std::uint32_t kErrorDirNotEmpty = 145;
inline constexpr std::uint32_t kErrorAlreadyExists = 183;
inline constexpr std::uint32_t kErrorFilenameExcedRange = 206;
inline constexpr std::uint32_t kErrorFileTooLarge = 223;
inline constexpr std::uint32_t kErrorMoreData = 234;
inline constexpr std::uint32_t kErrorDirectory = 267;
inline constexpr std::uint32_t kErrorInvalidAddress = 487;
inline constexpr std::uint32_t kErrorInvalidFlags = 1004;
inline constexpr std::uint32_t kErrorKeyDeleted = 1018;
inline constexpr std::uint32_t kErrorNoUnicodeTranslation = 1113;
inline constexpr std::uint32_t kErrorInvalidWindowHandle = 1400;
inline constexpr std::uint32_t kErrorCannotFindWindowClass = 1407;

[[nodiscard]] std::uint32_t GetLastError() noexcept;
void SetLastError(std::uint32_t error) noexcept;

// What an error number means, for people: "No such file or directory", or "error 1234" for one
// without a text. The text is static, or lives until the thread's next call.
[[nodiscard]] const char* ErrorText(std::uint32_t error) noexcept;

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_LAST_ERROR_H_
