// platform/test_folder.h - folders, environment variables and privileges that a test has for
// itself.
#ifndef TAMU_TESTS_PLATFORM_TEST_FOLDER_H_
#define TAMU_TESTS_PLATFORM_TEST_FOLDER_H_

#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "platform/paths.h"

namespace tamu::platform {

// A new, empty folder that goes with everything in it.
class TestFolder {
 public:
  TestFolder() {
    char name[] = "/tmp/tamu_test_XXXXXX";
    if (::mkdtemp(name) == nullptr) ::abort();
    path_ = name;
  }
  ~TestFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] std::string operator/(std::string_view name) const {
    return path_ + "/" + std::string(name);
  }
  [[nodiscard]] std::u16string Wide(std::string_view name) const {
    return PathFromNative(*this / name);
  }

 private:
  std::string path_;
};

inline void WriteBytes(const std::string& path, std::string_view bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

inline std::string ReadBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// Sets one variable, or unsets it, and puts back what was there.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value) : name_(name) {
    if (const char* before = ::getenv(name)) before_ = before;
    Put(value);
  }
  ~ScopedVariable() { Put(before_ ? before_->c_str() : nullptr); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  void Put(const char* value) {
    static_cast<void>(value ? ::setenv(name_, value, 1) : ::unsetenv(name_));
  }

  const char* name_;
  std::optional<std::string> before_;
};

// A device folder of the test's own.
class TestDevice : public TestFolder {
 public:
  TestDevice() : home_("TAMU_HOME", path().c_str()) {}
  [[nodiscard]] std::string registry() const { return *this / "registry.reg"; }

 private:
  ScopedVariable home_;
};

// Root may do everything: runs as somebody else for a while, so that permissions count.
class WithoutPrivileges {
 public:
  WithoutPrivileges() : user_(::geteuid()) {
    if (user_ == 0 && ::seteuid(65534) != 0) ::abort();
  }
  ~WithoutPrivileges() {
    if (user_ == 0 && ::seteuid(0) != 0) ::abort();
  }
  WithoutPrivileges(const WithoutPrivileges&) = delete;
  WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;

 private:
  uid_t user_;
};

}  // namespace tamu::platform

#endif  // TAMU_TESTS_PLATFORM_TEST_FOLDER_H_
