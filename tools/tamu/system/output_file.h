// system/output_file.h - where a conversion's result goes, so that it is there whole or not at all.
//   A file is written beside the old one and then takes its place and mode; through a symbolic link
//   it is the link's target that is replaced. What is no regular file (a device, a pipe) is written
//   directly. "-" is standard output: it gets the result when all of it is there.
//   Errors     a text for people; std::bad_alloc.
#ifndef TAMU_TOOLS_SYSTEM_OUTPUT_FILE_H_
#define TAMU_TOOLS_SYSTEM_OUTPUT_FILE_H_

#include <cstdint>
#include <optional>
#include <string>

#include "system/input_file.h"
#include "system/process.h"

namespace tamu::tool {

// When what is committed has to survive the machine's death: at once, or, of many files, when their
// folder is brought to disk (system/folder.h).
enum class ToDisk : std::uint8_t { kNow, kLater };

class OutputFile {
 public:
  OutputFile() = default;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;
  // Without Commit, the old file is left as it was.
  ~OutputFile();

  // Looks at what the argument names. Returns false when it cannot be written.
  [[nodiscard]] bool Locate(const std::string& argument, std::string* problem);

  [[nodiscard]] const std::string& shown() const noexcept { return shown_; }
  // Of a regular file that is there.
  [[nodiscard]] const std::optional<FileIdentity>& identity() const noexcept { return identity_; }
  // True when what is written is gone for good at once.
  [[nodiscard]] bool IsDirect() const noexcept { return place_ == Place::kDirect; }
  // True for a regular file with something in it.
  [[nodiscard]] bool HasContent() const noexcept { return identity_.has_value() && size_ != 0; }

  // Makes the file that is written: empty, or, for a regular file, with the first `kept_bytes` of
  // what is there, ended by a line end. Returns false when it cannot be made.
  [[nodiscard]] bool Prepare(std::uint64_t kept_bytes, std::string* problem);
  // What File::Open takes, in mode "a".
  [[nodiscard]] const char16_t* path() const noexcept { return path_.c_str(); }

  // Brings what was written to disk and to its place. Returns false when that fails.
  [[nodiscard]] bool Commit(std::string* problem, ToDisk to_disk = ToDisk::kNow);

 private:
  enum class Place : std::uint8_t { kFile, kDirect, kStandardOutput };

  [[nodiscard]] bool KeepContent(std::uint64_t bytes, std::string* problem);
  [[nodiscard]] bool TakeMode() noexcept;
  [[nodiscard]] bool ReplaceTarget(ToDisk to_disk, std::string* problem);

  Place place_ = Place::kFile;
  std::string shown_;
  std::string target_;  // with links followed
  std::u16string path_;
  std::optional<FileIdentity> identity_;
  std::uint64_t size_ = 0;
  FileUntilDone beside_;
  int descriptor_ = -1;
};

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_SYSTEM_OUTPUT_FILE_H_
