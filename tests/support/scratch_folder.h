// support/scratch_folder.h - a folder of its own for a test, and files in it.
#ifndef TAMU_TESTS_SUPPORT_SCRATCH_FOLDER_H_
#define TAMU_TESTS_SUPPORT_SCRATCH_FOLDER_H_

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace tamu::testing {

class ScratchFolder {
 public:
  ScratchFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "tamu-test-XXXXXX").string();
    path_ = mkdtemp(name.data());
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  [[nodiscard]] std::u16string Wide(const std::string& name) const {
    return (path_ / name).u16string();
  }

  // Writes a file and returns its wide path.
  std::u16string Put(const std::string& name, const std::string& content) const {
    std::ofstream(path_ / name, std::ios::binary) << content;
    return Wide(name);
  }
  [[nodiscard]] std::string Get(const std::string& name) const {
    std::ifstream file(path_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  [[nodiscard]] std::size_t FileCount() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path_),
                                                  std::filesystem::directory_iterator()));
  }

 private:
  std::filesystem::path path_;
};

// Sets an environment variable while it lives.
class ScopedEnvironment {
 public:
  ScopedEnvironment(const char* name, const std::string& value) : name_(name) {
    if (const char* before = getenv(name)) before_ = before, was_set_ = true;
    setenv(name, value.c_str(), 1);
  }
  ~ScopedEnvironment() {
    if (was_set_) {
      setenv(name_.c_str(), before_.c_str(), 1);
    } else {
      unsetenv(name_.c_str());
    }
  }
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

 private:
  std::string name_;
  std::string before_;
  bool was_set_ = false;
};

}  // namespace tamu::testing

#endif  // TAMU_TESTS_SUPPORT_SCRATCH_FOLDER_H_
