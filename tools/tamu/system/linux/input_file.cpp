#include "system/input_file.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "display_text.h"
#include "platform/linux/descriptor.h"
#include "platform/paths.h"
#include "system/linux/file_copy.h"

namespace tamu::tool {
namespace {

using platform::Descriptor;

// True when opening the descriptor's path again reads the same bytes as reading on would.
bool ReopensAtItsPosition(int descriptor, const struct stat& status, Reading reading) noexcept {
  if (S_ISREG(status.st_mode)) return ::lseek(descriptor, 0, SEEK_CUR) == 0;
  return reading == Reading::kOnce && !S_ISSOCK(status.st_mode);
}

std::uint64_t SizeOf(int descriptor) noexcept {
  struct stat status = {};
  return ::fstat(descriptor, &status) == 0 ? static_cast<std::uint64_t>(status.st_size) : 0;
}

}  // namespace

InputFile::~InputFile() {
  if (temporary_ >= 0) ::close(temporary_);
}

bool InputFile::CopyToTemporary(int descriptor, std::string* problem) {
  temporary_ = MakeNamelessFile();
  if (temporary_ < 0) {
    *problem = Failed("make a temporary file to keep it in");
    return false;
  }
  switch (CopyBytes(descriptor, temporary_, kAllBytes)) {
    case CopyResult::kReadFailed:
      *problem = Failed("read it");
      return false;
    case CopyResult::kWriteFailed:
      *problem = Failed("keep it in a temporary file");
      return false;
    case CopyResult::kDone:
      break;
  }
  path_ = platform::PathFromNative(PathOfDescriptor(temporary_));
  size_ = SizeOf(temporary_);
  return true;
}

bool InputFile::Open(const std::string& argument, Reading reading, std::string* problem) {
  const bool standard_input = argument == "-";
  argument_ = argument;
  shown_ = standard_input ? "standard input" : DISPLAY_FileName(argument);
  path_ = platform::PathFromNative(standard_input ? "/dev/stdin" : argument);
  struct stat status = {};
  const int result =
      standard_input ? ::fstat(STDIN_FILENO, &status) : ::stat(argument.c_str(), &status);
  if (result != 0) {
    *problem = Failed("open it");
    return false;
  }
  if (S_ISDIR(status.st_mode)) {
    *problem = "this is a folder; name the files in it";
    return false;
  }
  if (S_ISREG(status.st_mode)) {
    identity_ = FileIdentity{status.st_dev, status.st_ino};
    size_ = static_cast<std::uint64_t>(status.st_size);
  }
  if (standard_input) {
    return ReopensAtItsPosition(STDIN_FILENO, status, reading) ||
           CopyToTemporary(STDIN_FILENO, problem);
  }
  if (S_ISREG(status.st_mode) || reading == Reading::kOnce) {
    if (::access(argument.c_str(), R_OK) == 0) return true;
    *problem = Failed("open it");
    return false;
  }
  const Descriptor opened(::open(argument.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY));
  if (opened) return CopyToTemporary(opened.get(), problem);
  *problem = Failed("open it");
  return false;
}

}  // namespace tamu::tool
