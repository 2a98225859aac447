#include "platform/files.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <new>
#include <string>

#include "platform/linux/errors.h"
#include "platform/linux/long_names.h"
#include "platform/linux/pipe_signal.h"
#include "platform/paths.h"

namespace tamu::platform {
namespace {

static_assert(sizeof(off_t) == 8, "files beyond 2 GiB need 64-bit positions");

// A handle is the descriptor; this bit marks one whose writes may raise SIGPIPE.
constexpr FileHandle kPipeBit = FileHandle{1} << 30;
// The system's own bound for one read or write.
constexpr std::uint32_t kMaxTransfer = 0x7FFFF000;

int DescriptorOf(FileHandle file) noexcept {
  return file < 0 || file > (kPipeBit | (kPipeBit - 1)) ? -1 : static_cast<int>(file & ~kPipeBit);
}

bool IsPipe(FileHandle file) noexcept { return (file & kPipeBit) != 0; }

// The flags of open(2), or -1 for arguments that mean nothing.
int OpenFlags(std::uint32_t access, std::uint32_t disposition) noexcept {
  const bool append = (access & kFileAppendData) != 0;
  const bool write = append || (access & kGenericWrite) != 0;
  const bool read = (access & kGenericRead) != 0;
  if (!read && !write) return -1;
  int flags = O_CLOEXEC | O_NOCTTY | (append ? O_APPEND : 0);
  flags |= read && write ? O_RDWR : write ? O_WRONLY : O_RDONLY;
  switch (disposition) {
    case kCreateNew:
      return flags | O_CREAT | O_EXCL;
    case kCreateAlways:
      return flags | O_CREAT | O_TRUNC;
    case kOpenExisting:
      return flags;
    case kOpenAlways:
      return flags | O_CREAT;
    default:
      return -1;
  }
}

// Takes over a descriptor that was just opened: folders open for reading, but are no files.
FileHandle HandleOf(int descriptor) noexcept {
  struct stat status = {};
  const int result = ::fstat(descriptor, &status);
  const int number = errno;
  if (result != 0 || S_ISDIR(status.st_mode)) {
    ::close(descriptor);
    return FailWith(result != 0 ? ErrorFromErrno(number) : kErrorAccessDenied, kInvalidHandle);
  }
  return static_cast<FileHandle>(descriptor) | (S_ISFIFO(status.st_mode) ? kPipeBit : 0);
}

FileHandle OpenFile(const char16_t* path, std::uint32_t access, std::uint32_t /*share*/,
                    void* /*security*/, std::uint32_t disposition, std::uint32_t /*attributes*/,
                    FileHandle /*template_file*/) {
  if (path == nullptr) return FailWith(kErrorPathNotFound, kInvalidHandle);
  const int flags = OpenFlags(access, disposition);
  if (flags < 0) return FailWith(kErrorInvalidParameter, kInvalidHandle);
  try {
    const std::string full = PathToNative(path);
    const std::string native = FittingPath(full);
    int descriptor = -1;
    do {
      descriptor = ::open(native.c_str(), flags, 0666);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0) return FailWith(ErrorForPath(errno, native), kInvalidHandle);
    const FileHandle file = HandleOf(descriptor);
    if (file != kInvalidHandle && (flags & O_CREAT) != 0) KeepLongName(descriptor, full);
    return file;
  } catch (const std::bad_alloc&) {
    return FailWith(kErrorNotEnoughMemory, kInvalidHandle);
  }
}

std::int32_t ReadSome(FileHandle file, void* buffer, std::uint32_t size, std::uint32_t* done,
                      void* /*overlapped*/) {
  if (done) *done = 0;
  ssize_t count = 0;
  do {
    count = ::read(DescriptorOf(file), buffer, std::min(size, kMaxTransfer));
  } while (count < 0 && errno == EINTR);
  if (count < 0) return FailWith(ErrorFromErrno(errno), 0);
  if (done) *done = static_cast<std::uint32_t>(count);
  return 1;
}

std::int32_t WriteAll(FileHandle file, const void* buffer, std::uint32_t size, std::uint32_t* done,
                      void* /*overlapped*/) {
  const auto* bytes = static_cast<const char*>(buffer);
  const PipeSignalBlock block(IsPipe(file));
  std::uint32_t written = 0;
  std::uint32_t error = kErrorSuccess;
  do {
    const ssize_t count =
        ::write(DescriptorOf(file), bytes + written, std::min(size - written, kMaxTransfer));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) {
      error = ErrorFromErrno(errno);
    } else if (count == 0 && size > 0) {
      error = kErrorDiskFull;  // a device that takes nothing and gives no reason
    } else {
      written += static_cast<std::uint32_t>(count);
    }
  } while (written < size && error == kErrorSuccess);
  if (done) *done = written;
  return error == kErrorSuccess ? 1 : FailWith(error, 0);
}

std::int32_t Seek(FileHandle file, std::int64_t distance, std::int64_t* position,
                  std::uint32_t method) {
  static_assert(kFileBegin == SEEK_SET && kFileCurrent == SEEK_CUR && kFileEnd == SEEK_END);
  if (method > kFileEnd) return FailWith(kErrorInvalidParameter, 0);
  const off_t reached = ::lseek(DescriptorOf(file), distance, static_cast<int>(method));
  if (reached < 0) {
    return FailWith(errno == EINVAL ? kErrorNegativeSeek : ErrorFromErrno(errno), 0);
  }
  if (position) *position = reached;
  return 1;
}

std::int32_t Close(FileHandle handle) {
  // After EINTR the descriptor is gone: closing it again could hit somebody else's.
  if (::close(DescriptorOf(handle)) == 0 || errno == EINTR) return 1;
  return FailWith(ErrorFromErrno(errno), 0);
}

}  // namespace

constinit Service<FileHandle(const char16_t*, std::uint32_t, std::uint32_t, void*, std::uint32_t,
                             std::uint32_t, FileHandle)>
    CreateFileW{"CreateFileW", &OpenFile, kInvalidHandle};
constinit Service<std::int32_t(FileHandle, void*, std::uint32_t, std::uint32_t*, void*)> ReadFile{
    "ReadFile", &ReadSome, 0};
constinit Service<std::int32_t(FileHandle, const void*, std::uint32_t, std::uint32_t*, void*)>
    WriteFile{"WriteFile", &WriteAll, 0};
constinit Service<std::int32_t(FileHandle, std::int64_t, std::int64_t*, std::uint32_t)>
    SetFilePointerEx{"SetFilePointerEx", &Seek, 0};
constinit Service<std::int32_t(FileHandle)> CloseHandle{"CloseHandle", &Close, 0};

}  // namespace tamu::platform
