#include "system/document_move.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include <cstring>

#include "platform/linux/descriptor.h"
#include "platform/linux/long_names.h"
#include "platform/paths.h"

namespace tamu::tool {
namespace {

// 0, or -1 with errno; EEXIST when there is such a file.
int MoveToFreeName(const char* from, const char* to) noexcept {
  const int result = ::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE);
  if (result == 0 || (errno != EINVAL && errno != ENOSYS)) return result;
  // A file system without that: two programs at once may still collide.
  if (::access(to, F_OK) == 0) {
    errno = EEXIST;
    return -1;
  }
  return ::rename(from, to);
}

Moved Failed(std::string* problem) {
  *problem = std::strerror(errno);
  return Moved::kFailed;
}

}  // namespace

Moved DOCUMENT_Move(const std::u16string& from, const std::u16string& to, bool replace,
                    std::string* problem) {
  const std::string source = platform::FittingPath(platform::PathToNative(from));
  const std::string full_target = platform::PathToNative(to);
  const std::string target = platform::FittingPath(full_target);
  platform::Descriptor file(platform::Uninterrupted(
      [&] { return ::open(source.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW); }));
  if (!file) return Failed(problem);
  platform::KeepLongName(file.get(), full_target);
  if (::fsync(file.get()) != 0 || !file.Close()) return Failed(problem);
  const int result = replace ? ::rename(source.c_str(), target.c_str())
                             : MoveToFreeName(source.c_str(), target.c_str());
  if (result == 0) return Moved::kDone;
  return errno == EEXIST ? Moved::kExists : Failed(problem);
}

}  // namespace tamu::tool
