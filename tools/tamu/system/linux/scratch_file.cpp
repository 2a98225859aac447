#include "system/scratch_file.h"

#include <sys/mman.h>
#include <unistd.h>

#include "platform/paths.h"
#include "system/linux/file_copy.h"

namespace tamu::tool {

ScratchFile::~ScratchFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

bool ScratchFile::Make(std::string* problem) {
  // In memory: a file system may bring every file to disk that is emptied and written again.
  descriptor_ = ::memfd_create("tamu", MFD_CLOEXEC);
  if (descriptor_ < 0) descriptor_ = MakeNamelessFile();
  if (descriptor_ < 0) {
    *problem = Failed("make a temporary file");
    return false;
  }
  argument_ = PathOfDescriptor(descriptor_);
  path_ = platform::PathFromNative(argument_);
  return true;
}

}  // namespace tamu::tool
