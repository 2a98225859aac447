// platform/linux/registry_file.h - the registry as the text of one export file: parsed, looked up,
// edited.
//   Text in, text out; no file is touched here. What cannot be understood is passed over, reported,
//   and kept as it is by every edit, as are comments, blank lines, encoding and line ends.
//   Units      offsets are UTF-16 units of the text; lines count from 1.
//   Errors     std::bad_alloc only.
#ifndef TAMU_PLATFORM_LINUX_REGISTRY_FILE_H_
#define TAMU_PLATFORM_LINUX_REGISTRY_FILE_H_

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/registry_value_text.h"

namespace tamu::platform {

// A key by its root (an index, see registry_names.h) and the names below it.
struct RegistryKeyPath {
  std::size_t root = 0;
  std::vector<std::u16string> segments;
};

struct RegistryFileProblem {
  std::uint32_t line = 0;
  std::string reason;
};

// Damaged lines that are reported one by one; the rest is one report.
inline constexpr std::size_t kMaxRegistryProblems = 1000;

class RegistryFile {
 public:
  // An empty registry.
  RegistryFile() : RegistryFile(std::string_view{}) {}
  // A file's bytes: UTF-8 with or without byte order mark, or UTF-16 with one.
  explicit RegistryFile(std::string_view bytes);

  [[nodiscard]] bool HasKey(const RegistryKeyPath& path) const { return Find(path) != kNone; }
  // A key's value, or null when the key or the value is not there.
  [[nodiscard]] const RegistryData* FindValue(const RegistryKeyPath& path,
                                              std::u16string_view name) const;

  // The file's bytes with the key added.
  [[nodiscard]] std::string WithKey(const RegistryKeyPath& path) const;
  // The file's bytes with the value changed where it stands, or else added to its key, which is
  // made when missing.
  [[nodiscard]] std::string WithValue(const RegistryKeyPath& path, std::u16string_view name,
                                      const RegistryData& data) const;

  [[nodiscard]] const std::vector<RegistryFileProblem>& problems() const noexcept {
    return problems_;
  }

 private:
  enum class Encoding { kUtf8, kUtf8Mark, kUtf16Little, kUtf16Big };
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  struct Value {
    RegistryData data;
    std::size_t begin = 0;  // the entry in the text
    std::size_t end = 0;
  };
  struct Node {
    std::u16string name;
    std::map<std::u16string, std::size_t> children;  // by folded name
    std::map<std::u16string, Value> values;          // by folded name
    std::size_t insert_at = kNone;  // where the key's last section takes another value
  };

  void Decode(std::string_view bytes);
  [[nodiscard]] std::string Encode(std::u16string_view text) const;
  void ParseText();
  [[nodiscard]] std::size_t ParseLine(std::size_t begin, std::size_t& current);
  [[nodiscard]] std::size_t ParseHeader(std::size_t begin);
  void ParseSection(std::size_t bracket, std::size_t& current);
  [[nodiscard]] std::size_t ParseValue(std::size_t begin, std::size_t current);
  void Report(const char* reason);

  [[nodiscard]] std::size_t Find(const RegistryKeyPath& path) const;
  [[nodiscard]] std::size_t Make(const RegistryKeyPath& path);
  void Remove(const RegistryKeyPath& path);
  [[nodiscard]] std::u16string NewSection(const RegistryKeyPath& path) const;

  Encoding encoding_ = Encoding::kUtf8;
  std::u16string text_;
  std::string tail_;  // half a UTF-16 unit at the end of a damaged file
  std::u16string newline_ = u"\n";
  std::uint32_t line_ = 1;
  std::vector<Node> nodes_;  // the roots come first
  std::vector<RegistryFileProblem> problems_;
};

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_LINUX_REGISTRY_FILE_H_
