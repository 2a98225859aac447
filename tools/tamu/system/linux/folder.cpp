#include "system/folder.h"

#include <errno.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstring>

#include "platform/linux/descriptor.h"
#include "system/process.h"

namespace tamu::tool {

bool FOLDER_TakesFiles(const std::string& folder, std::string* reason) {
  FileUntilDone trial;
  const int descriptor = trial.Make(folder);
  if (descriptor < 0) {
    *reason = std::strerror(errno);
    return false;
  }
  ::close(descriptor);
  return true;
}

bool FOLDER_BringToDisk(const std::string& folder, std::string* reason) {
  const platform::Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  // One call for all files of its file system, instead of one for each of them.
  if (opened && ::syncfs(opened.get()) == 0) return true;
  *reason = std::strerror(errno);
  return false;
}

}  // namespace tamu::tool
