// system/scratch_file.h - a file for one's own use without a name, in memory where the system
// has such files: it goes with the object, however the program ends.
//   Errors     a text for people; std::bad_alloc.
#ifndef TAMU_TOOLS_SYSTEM_SCRATCH_FILE_H_
#define TAMU_TOOLS_SYSTEM_SCRATCH_FILE_H_

#include <string>

namespace tamu::tool {

class ScratchFile {
 public:
  ScratchFile() = default;
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile();

  [[nodiscard]] bool Make(std::string* problem);
  // What opens it, from its start: for the library, and as an argument names it.
  [[nodiscard]] const char16_t* path() const noexcept { return path_.c_str(); }
  [[nodiscard]] const std::string& argument() const noexcept { return argument_; }

 private:
  int descriptor_ = -1;
  std::string argument_;
  std::u16string path_;
};

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_SYSTEM_SCRATCH_FILE_H_
