#include "system/linux/file_copy.h"

#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "platform/linux/descriptor.h"

namespace tamu::tool {
namespace {

using platform::Uninterrupted;

bool WriteAll(int to, const char* bytes, std::size_t count) noexcept {
  while (count != 0) {
    const ssize_t written = Uninterrupted([&] { return ::write(to, bytes, count); });
    if (written < 0) return false;
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
  return true;
}

}  // namespace

CopyResult CopyBytes(int from, int to, std::uint64_t count) noexcept {
  std::array<char, 16 * 1024> buffer;
  while (count != 0) {
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(count, buffer.size()));
    const ssize_t got = Uninterrupted([&] { return ::read(from, buffer.data(), wanted); });
    if (got < 0) return CopyResult::kReadFailed;
    if (got == 0) break;
    if (!WriteAll(to, buffer.data(), static_cast<std::size_t>(got)))
      return CopyResult::kWriteFailed;
    count -= static_cast<std::uint64_t>(got);
  }
  return CopyResult::kDone;
}

int MakeNamelessFile() {
  const char* const folder = ::getenv("TMPDIR");
  std::string path = folder != nullptr && *folder != '\0' ? folder : "/tmp";
  path += "/tamu-XXXXXX";
  const int descriptor = ::mkostemp(path.data(), O_CLOEXEC);
  if (descriptor >= 0) ::unlink(path.c_str());
  return descriptor;
}

std::string PathOfDescriptor(int descriptor) {
  return "/proc/self/fd/" + std::to_string(descriptor);
}

std::string Failed(const char* what) {
  const char* const reason = std::strerror(errno);
  return std::string("cannot ") + what + ": " + reason;
}

}  // namespace tamu::tool
