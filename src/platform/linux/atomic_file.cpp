#include "platform/linux/atomic_file.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/descriptor.h"
#include "platform/linux/errors.h"

namespace tamu::platform {
namespace {

// The folder that holds `path`.
std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  return slash == std::string::npos ? "." : path.substr(0, slash + 1);
}

// Brings a folder's names to disk; file systems that cannot are as durable as they are.
std::uint32_t SyncFolder(const std::string& folder) {
  const Descriptor opened(
      Uninterrupted([&] { return ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
  if (!opened) return ErrorFromErrno(errno);
  if (Uninterrupted([&] { return ::fsync(opened.get()); }) == 0) return kErrorSuccess;
  return errno == EINVAL || errno == ENOTSUP || errno == EROFS ? kErrorSuccess
                                                               : ErrorFromErrno(errno);
}

bool WriteAll(int descriptor, const std::string& bytes) noexcept {
  for (std::size_t written = 0; written < bytes.size();) {
    const ssize_t count = Uninterrupted(
        [&] { return ::write(descriptor, bytes.data() + written, bytes.size() - written); });
    if (count < 0) return false;
    written += static_cast<std::size_t>(count);
  }
  return true;
}

// The new file's content and mode, down to the disk; errno says why not.
bool WriteFileDurably(const std::string& path, const std::string& bytes,
                      const struct stat* replaced) {
  Descriptor file(Uninterrupted([&] {
    return ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
  }));
  if (!file) return false;
  if (replaced) {
    // Giving a file away takes privileges; without them it stays the user's.
    if (::fchown(file.get(), replaced->st_uid, replaced->st_gid) != 0 && errno != EPERM)
      return false;
    if (::fchmod(file.get(), replaced->st_mode & 0777) != 0) return false;
  }
  if (!WriteAll(file.get(), bytes)) return false;
  if (Uninterrupted([&] { return ::fsync(file.get()); }) != 0) return false;
  return file.Close();
}

}  // namespace

std::uint32_t MakeFolders(const std::string& path) {
  struct stat status = {};
  if (::stat(path.c_str(), &status) == 0)
    return S_ISDIR(status.st_mode) ? kErrorSuccess : kErrorPathNotFound;
  for (std::size_t end = 0; end < path.size();) {
    end = path.find('/', end + 1);
    if (end == std::string::npos) end = path.size();
    const std::string folder = path.substr(0, end);
    if (::mkdir(folder.c_str(), 0700) == 0) {
      if (const std::uint32_t error = SyncFolder(FolderOf(folder))) return error;
    } else if (const int number = errno; number != EEXIST && ::stat(folder.c_str(), &status) != 0) {
      return ErrorFromErrno(number);  // why it was not made, not that it is not there
    }
  }
  return kErrorSuccess;
}

std::uint32_t ReplaceFile(const std::string& path, const std::string& bytes) {
  struct stat replaced = {};
  const bool exists = ::stat(path.c_str(), &replaced) == 0;
  const std::string beside = path + ".new";
  ::unlink(beside.c_str());  // what a process that died has left
  if (!WriteFileDurably(beside, bytes, exists ? &replaced : nullptr) ||
      ::rename(beside.c_str(), path.c_str()) != 0) {
    const int number = errno;
    ::unlink(beside.c_str());
    return ErrorForPath(number, path);
  }
  return SyncFolder(FolderOf(path));
}

}  // namespace tamu::platform
