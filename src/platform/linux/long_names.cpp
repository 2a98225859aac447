#include "platform/linux/long_names.h"

#include <sys/types.h>
#include <sys/xattr.h>

#include <cstdint>

namespace tamu::platform {
namespace {

constexpr char kAttribute[] = "user.tamu.long-name";
constexpr std::size_t kLongestKept = 4096;
constexpr std::size_t kLongestExtension = 16;  // with its point; a longer one is part of the name
constexpr std::size_t kHashDigits = 16;
constexpr int kLongestCharacter = 4;

// FNV-1a, 64 bits.
std::uint64_t HashOf(std::string_view name) noexcept {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (const char character : name) {
    hash = (hash ^ static_cast<std::uint8_t>(character)) * 0x100000001B3U;
  }
  return hash;
}

std::string_view ExtensionOf(std::string_view name) noexcept {
  const std::size_t point = name.rfind('.');
  if (point == std::string_view::npos || name.size() - point > kLongestExtension) return {};
  return name.substr(point);
}

constexpr bool IsContinuation(char byte) {
  return (static_cast<std::uint8_t>(byte) & 0xC0) == 0x80;
}

// At most `size` bytes from the start, none of the last character alone.
std::string_view WholeCharacters(std::string_view name, std::size_t size) noexcept {
  std::size_t end = size;
  for (int i = 1; i < kLongestCharacter && IsContinuation(name[end]); ++i) --end;
  return name.substr(0, IsContinuation(name[end]) ? size : end);  // not UTF-8: anywhere
}

std::string_view LastPart(std::string_view path) noexcept {
  return path.substr(path.rfind('/') + 1);  // npos + 1 is 0
}

}  // namespace

std::string FittingName(std::string_view name) {
  if (name.size() <= kMaxNameBytes) return std::string(name);
  const std::string_view extension = ExtensionOf(name);
  const std::size_t room = kMaxNameBytes - 1 - kHashDigits - extension.size();
  std::string fitting(WholeCharacters(name, room));
  fitting.push_back('~');
  const std::uint64_t hash = HashOf(name);
  for (int shift = 60; shift >= 0; shift -= 4) {
    fitting.push_back("0123456789abcdef"[hash >> shift & 0xF]);
  }
  fitting += extension;
  return fitting;
}

std::string FittingPath(std::string path) {
  const std::string_view name = LastPart(path);
  if (name.size() > kMaxNameBytes) {
    const std::string fitting = FittingName(name);
    path.replace(path.size() - name.size(), name.size(), fitting);
  }
  return path;
}

void KeepLongName(int descriptor, std::string_view path) noexcept {
  const std::string_view name = LastPart(path);
  if (name.size() <= kMaxNameBytes || name.size() > kLongestKept) return;
  static_cast<void>(::fsetxattr(descriptor, kAttribute, name.data(), name.size(), 0));
}

std::string LongNameOf(const std::string& folder, const std::string& name) {
  char kept[kLongestKept];
  const ssize_t size = ::getxattr((folder + "/" + name).c_str(), kAttribute, kept, sizeof kept);
  if (size <= 0) return name;
  // A file that was renamed or copied is not what it was.
  std::string full(kept, static_cast<std::size_t>(size));
  return full != name && FittingName(full) == name ? full : name;
}

}  // namespace tamu::platform
