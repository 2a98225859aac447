#include "system/folder.h"

#include <errno.h>
#include <unistd.h>

#include <cstring>

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

}  // namespace tamu::tool
