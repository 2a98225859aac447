// system/input_file.h - a file that the user named, made ready for the library's file layer.
//   "-" is standard input. Input that the layer cannot open by a path (a socket, a file that is
//   already read half), or that has to be read twice and cannot be, is copied to a temporary file
//   that has no name any more.
//   Errors     a text for people; std::bad_alloc.
#ifndef TAMU_TOOLS_SYSTEM_INPUT_FILE_H_
#define TAMU_TOOLS_SYSTEM_INPUT_FILE_H_

#include <cstdint>
#include <optional>
#include <string>

namespace tamu::tool {

// What makes a regular file the one it is, whatever it is called.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t number = 0;
  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

enum class Reading : std::uint8_t { kOnce, kTwice };

class InputFile {
 public:
  InputFile() = default;
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile();

  // Returns false, with the reason in `*problem`, when there is nothing to read from.
  [[nodiscard]] bool Open(const std::string& argument, Reading reading, std::string* problem);

  // What File::Open takes; valid while the object lives.
  [[nodiscard]] const char16_t* path() const noexcept { return path_.c_str(); }
  // What people know it by: the argument, safe to show, or "standard input".
  [[nodiscard]] const std::string& shown() const noexcept { return shown_; }
  // The argument itself.
  [[nodiscard]] const std::string& argument() const noexcept { return argument_; }
  // Of a regular file.
  [[nodiscard]] const std::optional<FileIdentity>& identity() const noexcept { return identity_; }
  // Bytes of a regular file or of the copy, 0 otherwise.
  [[nodiscard]] std::uint64_t size() const noexcept { return size_; }

 private:
  [[nodiscard]] bool CopyToTemporary(int descriptor, std::string* problem);

  std::string argument_;
  std::string shown_;
  std::u16string path_;
  std::optional<FileIdentity> identity_;
  std::uint64_t size_ = 0;
  int temporary_ = -1;
};

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_SYSTEM_INPUT_FILE_H_
