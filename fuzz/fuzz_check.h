// fuzz/fuzz_check.h - what the fuzz targets share: the check that ends a run, input that is taken
// apart, and the input as a file.
//   Errors     a broken promise prints itself and aborts, which libFuzzer and the replay main both
//   report.
#ifndef TAMU_FUZZ_FUZZ_CHECK_H_
#define TAMU_FUZZ_FUZZ_CHECK_H_

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/memory.h"
#include "platform/bstr.h"

namespace tamu::fuzz {

[[noreturn]] inline void Broken(const char* promise, const char* file, int line) {
  std::fprintf(stderr, "%s:%d: broken: %s\n", file, line, promise);
  std::abort();
}
#define FUZZ_CHECK(condition) \
  (static_cast<bool>(condition) ? (void)0 : ::tamu::fuzz::Broken(#condition, __FILE__, __LINE__))

// Nothing that the library allocated while this lived may be left.
class NothingLeaks {
 public:
  NothingLeaks() : blocks_(MEM_LiveBlocks()), strings_(platform::SysLiveStrings()) {}
  NothingLeaks(const NothingLeaks&) = delete;
  NothingLeaks& operator=(const NothingLeaks&) = delete;
  ~NothingLeaks() {
    FUZZ_CHECK(MEM_LiveBlocks() == blocks_);
    FUZZ_CHECK(platform::SysLiveStrings() == strings_);
  }

 private:
  std::size_t blocks_;
  std::int64_t strings_;
};

// Input taken apart from its start; past the end everything is 0 or empty.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  std::uint8_t Byte() {
    if (rest_.empty()) return 0;
    const auto byte = static_cast<std::uint8_t>(rest_.front());
    rest_.remove_prefix(1);
    return byte;
  }
  // Up to `count` bytes.
  std::string Bytes(std::size_t count) {
    const std::string bytes(rest_.substr(0, count));
    rest_.remove_prefix(bytes.size());
    return bytes;
  }
  // A piece whose length stands in front of it.
  std::string Piece() { return Bytes(Byte()); }
  std::string Rest() { return Bytes(rest_.size()); }

 private:
  std::string_view rest_;
};

// As text for functions that take NUL-terminated text.
inline std::string UpToNul(std::string text) {
  text.resize(std::min(text.size(), text.find('\0')));
  return text;
}

// Bytes as UTF-16, two each, without terminators inside.
inline std::u16string AsWide(const std::string& bytes) {
  std::u16string wide;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto low = static_cast<std::uint8_t>(bytes[i]);
    const auto high = static_cast<std::uint8_t>(bytes[i + 1]);
    const auto unit = static_cast<char16_t>(low | high << 8);
    if (unit != 0) wide.push_back(unit);
  }
  return wide;
}

// A file in memory with a path that the library can open.
class MemoryFile {
 public:
  explicit MemoryFile(std::string_view content = {})
      : descriptor_(::memfd_create("tamu_fuzz", MFD_CLOEXEC)) {
    FUZZ_CHECK(descriptor_ >= 0);
    path_ = u"/proc/self/fd/";
    for (const char digit : std::to_string(descriptor_)) {
      path_.push_back(static_cast<char16_t>(digit));
    }
    while (!content.empty()) {
      const ssize_t written = ::write(descriptor_, content.data(), content.size());
      FUZZ_CHECK(written > 0);
      content.remove_prefix(static_cast<std::size_t>(written));
    }
  }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { ::close(descriptor_); }

  [[nodiscard]] const char16_t* path() const { return path_.c_str(); }

 private:
  int descriptor_;
  std::u16string path_;
};

}  // namespace tamu::fuzz

// The entry of every target; libFuzzer declares it nowhere.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

#endif  // TAMU_FUZZ_FUZZ_CHECK_H_
