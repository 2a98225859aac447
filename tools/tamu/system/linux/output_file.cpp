#include "system/output_file.h"

#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

#include "display_text.h"
#include "platform/linux/descriptor.h"
#include "platform/paths.h"
#include "system/linux/file_copy.h"

namespace tamu::tool {
namespace {

using platform::Descriptor;
using platform::Uninterrupted;

constexpr int kMaxLinks = 40;  // as many as the system follows itself

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.find_last_of('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

// What a link says, "" when the path is no link.
std::string LinkText(const std::string& path) {
  std::string text(PATH_MAX, '\0');
  const ssize_t length = ::readlink(path.c_str(), text.data(), text.size());
  text.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
  return text;
}

// The path with links in its last component followed, also to a target that is not there yet.
std::string FollowLinks(std::string path) {
  for (int links = 0; links < kMaxLinks; ++links) {
    const std::string text = LinkText(path);
    if (text.empty()) break;
    path = text.front() == '/' ? text : FolderOf(path) + "/" + text;
  }
  return path;
}

// The mode that a new file would get.
mode_t NewFileMode() noexcept {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

bool EndsInLineFeed(int descriptor) noexcept {
  char last = '\n';
  if (::lseek(descriptor, -1, SEEK_END) < 0) return true;  // it is empty
  return ::read(descriptor, &last, 1) != 1 || last == '\n';
}

void SyncFolder(const std::string& folder) noexcept {
  // The new content is on disk; a folder that cannot be synced at worst still names the old one.
  const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened) static_cast<void>(::fsync(opened.get()));
}

}  // namespace

OutputFile::~OutputFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

bool OutputFile::Locate(const std::string& argument, std::string* problem) {
  const bool standard_output = argument == "-";
  shown_ = standard_output ? "standard output" : DISPLAY_FileName(argument);
  struct stat status = {};
  const int result =
      standard_output ? ::fstat(STDOUT_FILENO, &status) : ::stat(argument.c_str(), &status);
  if (result != 0 && (standard_output || errno != ENOENT)) {
    *problem = Failed("write it");
    return false;
  }
  if (result == 0 && S_ISDIR(status.st_mode)) {
    *problem = "this is a folder; name a file in it";
    return false;
  }
  const bool regular = result == 0 && S_ISREG(status.st_mode);
  if (regular) {
    identity_ = FileIdentity{status.st_dev, status.st_ino};
    size_ = static_cast<std::uint64_t>(status.st_size);
  }
  place_ = standard_output           ? Place::kStandardOutput
           : result == 0 && !regular ? Place::kDirect
                                     : Place::kFile;
  target_ = place_ == Place::kFile ? FollowLinks(argument) : argument;
  if (result == 0 && !standard_output && ::access(argument.c_str(), W_OK) != 0) {
    *problem = Failed("write it");
    return false;
  }
  return true;
}

bool OutputFile::Prepare(std::uint64_t kept_bytes, std::string* problem) {
  if (place_ == Place::kDirect) {
    path_ = platform::PathFromNative(target_);
    return true;
  }
  if (place_ == Place::kStandardOutput) {
    descriptor_ = MakeNamelessFile();
    if (descriptor_ >= 0) {
      path_ = platform::PathFromNative(PathOfDescriptor(descriptor_));
      return true;
    }
    *problem = Failed("make a temporary file");
    return false;
  }
  descriptor_ = beside_.Make(FolderOf(target_));
  if (descriptor_ < 0) {
    *problem = Failed("make a file in its folder");
    return false;
  }
  path_ = platform::PathFromNative(beside_.path());
  return kept_bytes == 0 || KeepContent(kept_bytes, problem);
}

bool OutputFile::KeepContent(std::uint64_t bytes, std::string* problem) {
  const Descriptor old(::open(target_.c_str(), O_RDONLY | O_CLOEXEC));
  bool copied = old && CopyBytes(old.get(), descriptor_, bytes) == CopyResult::kDone;
  if (copied && !EndsInLineFeed(descriptor_)) {
    copied = ::write(descriptor_, "\r\n", 2) == 2;
  }
  if (!copied) *problem = Failed("copy what it holds");
  return copied;
}

bool OutputFile::TakeMode() noexcept {
  struct stat old = {};
  if (!identity_ || ::stat(target_.c_str(), &old) != 0) {
    return ::fchmod(descriptor_, NewFileMode()) == 0;
  }
  // Giving a file away takes privileges; without them it stays the user's.
  if (::fchown(descriptor_, old.st_uid, old.st_gid) != 0 && errno != EPERM) return false;
  return ::fchmod(descriptor_, old.st_mode & 0777) == 0;
}

bool OutputFile::ReplaceTarget(ToDisk to_disk, std::string* problem) {
  const bool now = to_disk == ToDisk::kNow;
  if (!TakeMode() || (now && Uninterrupted([&] { return ::fsync(descriptor_); }) != 0)) {
    *problem = Failed("bring it to disk");
    return false;
  }
  if (::rename(beside_.path().c_str(), target_.c_str()) != 0) {
    *problem = Failed("put it in its place");
    return false;
  }
  beside_.Keep();
  if (now) SyncFolder(FolderOf(target_));
  return true;
}

bool OutputFile::Commit(std::string* problem, ToDisk to_disk) {
  switch (place_) {
    case Place::kDirect:
      return true;
    case Place::kFile:
      return ReplaceTarget(to_disk, problem);
    case Place::kStandardOutput:
      break;
  }
  if (::lseek(descriptor_, 0, SEEK_SET) == 0 &&
      CopyBytes(descriptor_, STDOUT_FILENO, kAllBytes) == CopyResult::kDone) {
    return true;
  }
  // A reader that has seen enough needs no message.
  *problem = errno == EPIPE ? "" : Failed("write it");
  return false;
}

}  // namespace tamu::tool
