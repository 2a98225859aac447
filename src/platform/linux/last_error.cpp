#include "platform/last_error.h"

#include <errno.h>
#include <stdio.h>
#include <sys/stat.h>

#include <new>

#include "platform/linux/errors.h"

namespace tamu::platform {
namespace {

thread_local std::uint32_t last_error = kErrorSuccess;

struct ErrnoRow {
  int number;
  std::uint32_t error;
};

// Network numbers are the ones that datagram sockets report on the platform.
constexpr ErrnoRow kErrnoRows[] = {
    {0, kErrorSuccess},
    {ENOENT, kErrorFileNotFound},
    {ENOTDIR, kErrorPathNotFound},
    {ELOOP, kErrorPathNotFound},
    {EACCES, kErrorAccessDenied},
    {EPERM, kErrorAccessDenied},
    {EISDIR, kErrorAccessDenied},
    {EBADF, kErrorInvalidHandle},
    {EMFILE, kErrorTooManyOpenFiles},
    {ENFILE, kErrorTooManyOpenFiles},
    {ENOMEM, kErrorNotEnoughMemory},
    {EXDEV, kErrorNotSameDevice},
    {EROFS, kErrorWriteProtect},
    {EIO, kErrorGenFailure},
    {EBUSY, kErrorSharingViolation},
    {ETXTBSY, kErrorSharingViolation},
    {EEXIST, kErrorFileExists},
    {EINVAL, kErrorInvalidParameter},
    {EFAULT, kErrorInvalidParameter},
    {EPIPE, kErrorBrokenPipe},
    {ENOSPC, kErrorDiskFull},
    {EDQUOT, kErrorDiskFull},
    {ESPIPE, kErrorSeekOnDevice},
    {ENOTEMPTY, kErrorDirNotEmpty},
    {ENAMETOOLONG, kErrorFilenameExcedRange},
    {EFBIG, kErrorFileTooLarge},
    {EOVERFLOW, kErrorFileTooLarge},
    {EAGAIN, 10035},
    {ENOTSOCK, 10038},
    {EMSGSIZE, 10040},
    {EPROTONOSUPPORT, 10043},
    {EAFNOSUPPORT, 10047},
    {EADDRINUSE, 10048},
    {EADDRNOTAVAIL, 10049},
    {ENETDOWN, 10050},
    {ENETUNREACH, 10051},
    {ENOBUFS, 10055},
    {ECONNREFUSED, 10061},
    {EHOSTUNREACH, 10065},
};

struct TextRow {
  std::uint32_t error;
  const char* text;
};

constexpr TextRow kTextRows[] = {
    {kErrorSuccess, "Success"},
    {kErrorFileNotFound, "No such file or directory"},
    {kErrorPathNotFound, "A folder of the path does not exist"},
    {kErrorTooManyOpenFiles, "Too many open files"},
    {kErrorAccessDenied, "Permission denied, or not a file"},
    {kErrorInvalidHandle, "The handle is invalid"},
    {kErrorNotEnoughMemory, "Not enough memory"},
    {kErrorNotSameDevice, "Not on the same device"},
    {kErrorWriteProtect, "The file system is read-only"},
    {kErrorGenFailure, "Input or output error"},
    {kErrorSharingViolation, "The file is in use"},
    {kErrorHandleDiskFull, "No space left on the device"},
    {kErrorFileExists, "The file exists"},
    {kErrorInvalidParameter, "Invalid argument"},
    {kErrorBrokenPipe, "The reader of the pipe is gone"},
    {kErrorBufferOverflow, "The path is too long"},
    {kErrorDiskFull, "No space left on the device"},
    {kErrorInsufficientBuffer, "The buffer is too small"},
    {kErrorInvalidName, "The name is not allowed"},
    {kErrorNegativeSeek, "The position lies before the start of the file"},
    {kErrorSeekOnDevice, "The file has no positions"},
    {kErrorDirNotEmpty, "The folder is not empty"},
    {kErrorAlreadyExists, "It exists already"},
    {kErrorFilenameExcedRange, "The file name is too long"},
    {kErrorFileTooLarge, "The file is too large"},
    {kErrorMoreData, "More data is available"},
    {kErrorDirectory, "The folder does not exist"},
    {kErrorInvalidAddress, "The memory address is taken"},
    {kErrorInvalidFlags, "The flags are invalid"},
    {kErrorKeyDeleted, "The registry key was deleted"},
    {kErrorNoUnicodeTranslation, "The text is not valid in its character set"},
    {kErrorInvalidWindowHandle, "There is no such window"},
    {kErrorCannotFindWindowClass, "There is no such window class"},
    {10035, "The operation would have to wait"},
    {10038, "Not a socket"},
    {10040, "The datagram is too long"},
    {10043, "The protocol is not supported"},
    {10047, "The address family is not supported"},
    {10048, "The network address is in use"},
    {10049, "The network address is not available"},
    {10050, "The network is down"},
    {10051, "The network cannot be reached"},
    {10055, "No room in the network buffers"},
    {10061, "The connection was refused"},
    {10065, "The host cannot be reached"},
};

// Everything before the last component, "." when there is only one.
std::string ParentOf(const std::string& path) {
  const std::size_t last = path.find_last_not_of('/');
  if (last == std::string::npos) return path.empty() ? "." : "/";
  const std::size_t slash = path.find_last_of('/', last);
  if (slash == std::string::npos) return ".";
  return path.substr(0, slash + 1);
}

}  // namespace

std::uint32_t GetLastError() noexcept { return last_error; }
void SetLastError(std::uint32_t error) noexcept { last_error = error; }

const char* ErrorText(std::uint32_t error) noexcept {
  for (const TextRow& row : kTextRows) {
    if (row.error == error) return row.text;
  }
  thread_local char unknown[24];
  snprintf(unknown, sizeof unknown, "error %lu", static_cast<unsigned long>(error));
  return unknown;
}

std::uint32_t ErrorFromErrno(int number) noexcept {
  for (const ErrnoRow& row : kErrnoRows) {
    if (row.number == number) return row.error;
  }
  return kErrorGenFailure;
}

std::uint32_t ErrorForPath(int number, const std::string& path) noexcept {
  if (number != ENOENT) return ErrorFromErrno(number);
  if (path.empty()) return kErrorPathNotFound;
  try {
    struct stat status = {};
    const bool parent_exists = ::stat(ParentOf(path).c_str(), &status) == 0;
    return parent_exists ? kErrorFileNotFound : kErrorPathNotFound;
  } catch (const std::bad_alloc&) {
    return kErrorFileNotFound;
  }
}

}  // namespace tamu::platform
