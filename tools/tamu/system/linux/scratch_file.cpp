#include "system/scratch_file.h"

#include <unistd.h>

#include "platform/paths.h"
#include "system/linux/file_copy.h"

namespace tamu::tool {

ScratchFile::~ScratchFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

bool ScratchFile::Make(std::string* problem) {
  descriptor_ = MakeNamelessFile();
  if (descriptor_ < 0) {
    *problem = Failed("make a temporary file");
    return false;
  }
  argument_ = PathOfDescriptor(descriptor_);
  path_ = platform::PathFromNative(argument_);
  return true;
}

}  // namespace tamu::tool
