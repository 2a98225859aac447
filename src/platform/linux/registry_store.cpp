#include "platform/linux/registry_store.h"

#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/file.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "platform/linux/atomic_file.h"
#include "platform/linux/descriptor.h"
#include "platform/linux/errors.h"
#include "platform/paths.h"

namespace tamu::platform {
namespace {

constexpr off_t kMaxFileBytes = off_t{64} << 20;
// File systems keep times as coarsely as two seconds: within them a change may not show.
constexpr std::int64_t kCoarsestTime = 2;

bool SameTime(const timespec& a, const timespec& b) noexcept {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

bool ChangedJustNow(const struct stat& status) noexcept {
  timespec now = {};
  ::clock_gettime(CLOCK_REALTIME, &now);
  return std::max(status.st_mtim.tv_sec, status.st_ctim.tv_sec) + kCoarsestTime >= now.tv_sec;
}

// Reads up to the end; a file that grows past the bound meanwhile is an error.
std::uint32_t ReadToEnd(int descriptor, std::string& bytes) {
  char buffer[16384];
  for (;;) {
    const ssize_t count = Uninterrupted([&] { return ::read(descriptor, buffer, sizeof buffer); });
    if (count < 0) return ErrorFromErrno(errno);
    if (count == 0) return kErrorSuccess;
    bytes.append(buffer, static_cast<std::size_t>(count));
    if (bytes.size() > static_cast<std::size_t>(kMaxFileBytes)) return kErrorFileTooLarge;
  }
}

}  // namespace

bool RegistryStore::Identity::operator==(const Identity& other) const noexcept {
  if (!exists || !other.exists) return exists == other.exists;
  return status.st_dev == other.status.st_dev && status.st_ino == other.status.st_ino &&
         status.st_size == other.status.st_size && SameTime(status.st_mtim, other.status.st_mtim) &&
         SameTime(status.st_ctim, other.status.st_ctim);
}

void RegistryStore::FollowFolder() {
  std::string folder = PathToNative(DeviceFolder());
  if (folder == folder_) return;
  std::string path = folder.empty() ? std::string() : folder + "/registry.reg";
  static_cast<void>(Forget(kErrorSuccess));
  folder_ = std::move(folder);
  path_ = std::move(path);
}

std::uint32_t RegistryStore::Forget(std::uint32_t error) {
  loaded_ = false;
  error_ = error;
  bytes_.clear();
  file_ = RegistryFile();
  return error;
}

void RegistryStore::Adopt(std::string bytes, const Identity& identity) {
  if (!loaded_ || bytes != bytes_) {
    loaded_ = false;
    file_ = RegistryFile(bytes);
    bytes_ = std::move(bytes);
  }
  identity_ = identity;
  may_be_stale_ = identity.exists && ChangedJustNow(identity.status);
  error_ = kErrorSuccess;
  loaded_ = true;
}

std::uint32_t RegistryStore::Refresh() {
  FollowFolder();
  if (path_.empty()) return kErrorSuccess;
  if (loaded_ && !may_be_stale_) {
    Identity now;
    now.exists = ::stat(path_.c_str(), &now.status) == 0;
    if (now == identity_) return kErrorSuccess;
  }
  return Load();
}

std::uint32_t RegistryStore::Load() {
  // A pipe of that name must not hold the caller up; it is refused below like every other thing
  // that is no file.
  const Descriptor file(
      Uninterrupted([&] { return ::open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
  if (!file) {
    if (errno != ENOENT && errno != ENOTDIR) return Forget(ErrorFromErrno(errno));
    Adopt({}, Identity{});
    return kErrorSuccess;
  }
  Identity identity;
  identity.exists = true;
  if (::fstat(file.get(), &identity.status) != 0) return Forget(ErrorFromErrno(errno));
  if (!S_ISREG(identity.status.st_mode)) return Forget(kErrorAccessDenied);
  std::string bytes;
  if (const std::uint32_t error = ReadToEnd(file.get(), bytes)) return Forget(error);
  Adopt(std::move(bytes), identity);
  return kErrorSuccess;
}

std::uint32_t RegistryStore::Change(const std::function<Edit(const RegistryFile&)>& edit) {
  FollowFolder();
  if (path_.empty()) return kErrorPathNotFound;
  if (const std::uint32_t error = MakeFolders(folder_)) return error;
  const std::string lock_path = folder_ + "/registry.lock";
  const Descriptor lock(
      Uninterrupted([&] { return ::open(lock_path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600); }));
  if (!lock) return ErrorForPath(errno, lock_path);
  if (Uninterrupted([&] { return ::flock(lock.get(), LOCK_EX); }) != 0)
    return ErrorFromErrno(errno);

  if (const std::uint32_t error = Load()) return error;
  Edit result = edit(file_);
  if (result.error != 0) return result.error;
  if (const std::uint32_t error = Replace(result.bytes)) return error;
  loaded_ = false;  // the change is made: what may go wrong in reading it is the next reader's
  return kErrorSuccess;
}

std::uint32_t RegistryStore::Replace(const std::string& bytes) {
  // A link stays one: what it points to is replaced.
  const std::unique_ptr<char, decltype(&::free)> resolved(::realpath(path_.c_str(), nullptr),
                                                          &::free);
  return ReplaceFile(resolved ? std::string(resolved.get()) : path_, bytes);
}

std::vector<RegistryProblem> RegistryStore::Problems() const {
  std::vector<RegistryProblem> problems;
  if (error_ != kErrorSuccess)
    problems.push_back({path_, 0, std::string("not read: ") + ErrorText(error_)});
  for (const RegistryFileProblem& problem : file_.problems())
    problems.push_back({path_, problem.line, problem.reason});
  return problems;
}

}  // namespace tamu::platform
