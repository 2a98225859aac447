// system/process.h - what the program asks of the system about its own process.
#ifndef TAMU_TOOLS_SYSTEM_PROCESS_H_
#define TAMU_TOOLS_SYSTEM_PROCESS_H_

#include <cstdio>
#include <string>

namespace tamu::tool {

// Called once, first: a pipe without a reader, and a file at the size that the user may write, become
// errors of writing instead of the end.
void PROCESS_Prepare() noexcept;

// The number that no other process has while this one runs.
[[nodiscard]] std::string PROCESS_Number();

[[nodiscard]] bool PROCESS_IsTerminal(std::FILE* stream) noexcept;

// A file that goes with the program when the user or the system ends it (Ctrl-C, a hangup, a
// shutdown). One at a time; the signals wait while one of these functions works.
class FileUntilDone {
 public:
  FileUntilDone() noexcept = default;
  FileUntilDone(const FileUntilDone&) = delete;
  FileUntilDone& operator=(const FileUntilDone&) = delete;
  // Deletes the file unless Keep was called.
  ~FileUntilDone();

  // Makes a new, empty file in `folder` that only the user can read and write. Returns its
  // descriptor, which is the caller's, or -1 with the reason in errno.
  [[nodiscard]] int Make(const std::string& folder);
  [[nodiscard]] const std::string& path() const noexcept { return path_; }
  // The file stays: it has its final name.
  void Keep() noexcept;

 private:
  std::string path_;
};

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_SYSTEM_PROCESS_H_
