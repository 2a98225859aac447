// platform/linux/registry_store.h - the file `registry.reg` in the device's folder, read and
// replaced as a whole.
//   Reading follows what other programs make of the file. A change is made under a lock on
//   `registry.lock` beside it, which all processes take, and replaces the file in one piece: either
//   version is there, whatever happens meanwhile.
//   Errors     the platform's numbers, 0 for success; std::bad_alloc.
#ifndef TAMU_PLATFORM_LINUX_REGISTRY_STORE_H_
#define TAMU_PLATFORM_LINUX_REGISTRY_STORE_H_

#include <sys/stat.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/linux/registry_file.h"
#include "platform/registry.h"

namespace tamu::platform {

class RegistryStore {
 public:
  // Reads the file when it is not the one that was read last. A file that is not there is an empty
  // registry.
  [[nodiscard]] std::uint32_t Refresh();

  // The registry as Refresh or Change left it; empty after a failure.
  [[nodiscard]] const RegistryFile& file() const noexcept { return file_; }

  // What `edit` makes of the registry: the file's new bytes, or an error.
  struct Edit {
    std::uint32_t error = 0;
    std::string bytes;
  };
  // Reads the registry anew, and replaces it by what `edit` answers; 0 when that is on disk.
  [[nodiscard]] std::uint32_t Change(const std::function<Edit(const RegistryFile& current)>& edit);

  [[nodiscard]] std::vector<RegistryProblem> Problems() const;

 private:
  struct Identity {
    bool exists = false;
    struct stat status = {};

    [[nodiscard]] bool operator==(const Identity& other) const noexcept;
  };

  // Looks up the device's folder; what was read from another one is forgotten.
  void FollowFolder();
  [[nodiscard]] std::uint32_t Load();
  [[nodiscard]] std::uint32_t Forget(std::uint32_t error);
  void Adopt(std::string bytes, const Identity& identity);
  [[nodiscard]] std::uint32_t Replace(const std::string& bytes);

  std::string folder_;
  std::string path_;  // empty without a device folder
  bool loaded_ = false;
  bool may_be_stale_ =
      false;                 // changed so recently that the next change could leave the same times
  std::uint32_t error_ = 0;  // why the file could not be read
  Identity identity_;
  std::string bytes_;
  RegistryFile file_;
};

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_LINUX_REGISTRY_STORE_H_
