#include "platform/linux/temporary_files.h"

#include <errno.h>
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/random.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <new>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/linux/errors.h"
#include "platform/linux/long_names.h"
#include "platform/paths.h"

namespace tamu::platform {
namespace {

constexpr std::size_t kPrefixUnits = 3;

std::uint32_t RandomNumber() {
  std::uint32_t number = 0;
  if (::getrandom(&number, sizeof number, GRND_NONBLOCK) == ssize_t{sizeof number}) return number;
  // Early in a machine's life: names only have to differ, creating them is exclusive.
  static std::uint32_t counter = 0;
  timespec now = {};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::uint32_t>(now.tv_nsec) ^ static_cast<std::uint32_t>(::getpid()) << 16 ^
         (counter += 0x9E3779B9U);
}

// "<folder>/<prefix><number>.tmp" into `path`; the last error says why not.
bool BuildName(std::u16string_view folder, std::u16string_view prefix, std::uint32_t number,
               char16_t* path) {
  char digits[16];
  const int count =
      snprintf(digits, sizeof digits, "%08lx.tmp", static_cast<unsigned long>(number));
  std::u16string name(folder);
  if (!name.ends_with(u'/')) name.push_back(u'/');
  name.append(prefix.substr(0, kPrefixUnits));
  name.append(digits, digits + count);
  if (name.size() >= static_cast<std::size_t>(kMaxPath))
    return FailWith(kErrorBufferOverflow, false);
  std::copy_n(name.c_str(), name.size() + 1, path);
  return true;
}

bool ArgumentsAreValid(const char16_t* folder, const char16_t* prefix,
                       const char16_t* path) noexcept {
  if (folder == nullptr || *folder == 0 || path == nullptr)
    return FailWith(kErrorInvalidParameter, false);
  // A separator would make the name one of another folder.
  if (prefix &&
      std::u16string_view(prefix).substr(0, kPrefixUnits).find(u'/') != std::u16string_view::npos) {
    return FailWith(kErrorInvalidName, false);
  }
  return true;
}

// Makes the file; errno says why not.
bool CreateExclusively(const std::string& native) noexcept {
  int descriptor = -1;
  do {
    descriptor = ::open(native.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
  } while (descriptor < 0 && errno == EINTR);
  if (descriptor < 0) return false;
  ::close(descriptor);
  return true;
}

std::uint32_t TemporaryFolder(std::uint32_t capacity, char16_t* path) {
  try {
    const char* configured = ::getenv("TMPDIR");
    std::u16string folder = PathFromNative(configured && *configured ? configured : "/tmp");
    if (!folder.ends_with(u'/')) folder.push_back(u'/');
    const auto needed = static_cast<std::uint32_t>(folder.size() + 1);
    if (needed > capacity || path == nullptr) return FailWith(kErrorInsufficientBuffer, needed);
    std::copy_n(folder.c_str(), needed, path);
    return needed - 1;
  } catch (const std::bad_alloc&) {
    return FailWith(kErrorNotEnoughMemory, 0U);
  }
}

std::uint32_t TemporaryName(const char16_t* folder, const char16_t* prefix, std::uint32_t unique,
                            char16_t* path) {
  if (unique == 0) return MakeTemporaryFile(folder, prefix, path, &RandomNumber);
  if (!ArgumentsAreValid(folder, prefix, path)) return 0;
  try {
    return BuildName(folder, prefix ? prefix : u"", unique, path) ? unique : 0;
  } catch (const std::bad_alloc&) {
    return FailWith(kErrorNotEnoughMemory, 0U);
  }
}

std::int32_t Delete(const char16_t* path) {
  if (path == nullptr) return FailWith(kErrorPathNotFound, 0);
  try {
    const std::string native = FittingPath(PathToNative(path));
    return ::unlink(native.c_str()) == 0 ? 1 : FailWith(ErrorForPath(errno, native), 0);
  } catch (const std::bad_alloc&) {
    return FailWith(kErrorNotEnoughMemory, 0);
  }
}

}  // namespace

std::uint32_t MakeTemporaryFile(const char16_t* folder, const char16_t* prefix, char16_t* path,
                                std::uint32_t (*next)()) noexcept {
  if (!ArgumentsAreValid(folder, prefix, path)) return 0;
  try {
    for (int attempt = 0; attempt < kTemporaryNameTries; ++attempt) {
      const std::uint32_t number = std::max(next(), 1U);  // 0 would read as failure
      char16_t name[kMaxPath];
      if (!BuildName(folder, prefix ? prefix : u"", number, name)) return 0;
      if (CreateExclusively(PathToNative(name))) {
        std::copy_n(name, std::u16string_view(name).size() + 1, path);
        return number;
      }
      if (errno == ENOENT || errno == ENOTDIR) return FailWith(kErrorDirectory, 0U);
      if (errno != EEXIST) return FailWith(ErrorFromErrno(errno), 0U);
    }
    return FailWith(kErrorFileExists, 0U);
  } catch (const std::bad_alloc&) {
    return FailWith(kErrorNotEnoughMemory, 0U);
  }
}

constinit Service<std::int32_t(const char16_t*)> DeleteFileW{"DeleteFileW", &Delete, 0};
constinit Service<std::uint32_t(std::uint32_t, char16_t*)> GetTempPathW{"GetTempPathW",
                                                                        &TemporaryFolder, 0U};
constinit Service<std::uint32_t(const char16_t*, const char16_t*, std::uint32_t, char16_t*)>
    GetTempFileNameW{"GetTempFileNameW", &TemporaryName, 0U};

}  // namespace tamu::platform
