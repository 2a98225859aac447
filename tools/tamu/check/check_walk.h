// check/check_walk.h - where a check has got to in its file: lines, findings, and whether the
// library would still be reading.
//   Lines are read and split by the library's own functions, so that they are what it sees. Reading
//   goes on where the library gives up.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_CHECK_CHECK_WALK_H_
#define TAMU_TOOLS_CHECK_CHECK_WALK_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "check/report.h"
#include "core/file.h"
#include "core/memory.h"
#include "text/tokens.h"

namespace tamu::tool {

// A logical line. Name, parameters and value are as the library splits them; blanks may be removed
// in place.
struct SourceLine {
  File::Place begin;
  MemPtr<char> text;
  std::array<char, kNameSize> name;
  std::array<char, kParamsSize> params;
  char* value = nullptr;
  // Characters before anything was cut.
  std::size_t name_length = 0;
  std::size_t params_length = 0;
  bool has_colon = false;
  // Its bytes in the file; until the next line is read.
  std::string_view raw;

  [[nodiscard]] std::uint32_t number() const noexcept { return begin.line; }
  [[nodiscard]] bool blank() const noexcept { return text.get()[0] == '\0'; }
};

class CheckWalk {
 public:
  CheckWalk(File* file, Report* report) noexcept : file_(file), report_(report) {}

  [[nodiscard]] File* file() const noexcept { return file_; }
  [[nodiscard]] Report* report() const noexcept { return report_; }
  [[nodiscard]] bool AtEnd() const noexcept { return file_->AtEnd(); }

  // Reads a line. Inside of objects its bytes are looked at too.
  void ReadLine();
  [[nodiscard]] SourceLine& line() noexcept { return line_; }
  // The same inside an object of this kind ("card"). Returns false for a blank line, after a
  // finding.
  [[nodiscard]] bool NextLine(std::string_view object_words);

  // The line that the library would tell of: the last one that was read, or the first of a mail's
  // content.
  [[nodiscard]] std::uint32_t number() const noexcept { return number_; }
  void SetNumber(std::uint32_t number) noexcept { number_ = number; }

  void Add(FindingKind kind, std::vector<std::string> arguments = {}) {
    AddAt(number_, kind, std::move(arguments));
  }
  void AddAt(std::uint32_t line, FindingKind kind, std::vector<std::string> arguments = {});

  // Notes that the library reads no further than this line, and says of how many objects. The
  // position is inside of `open_object` ("VCARD"), or between objects.
  void Stop(std::string_view open_object = {});
  [[nodiscard]] bool stopped() const noexcept { return stopped_; }

  // That the file ends inside of an object, told for the innermost one alone.
  void AddMissingEnd(std::string_view object_words, std::uint32_t begin_line,
                     std::string_view end_value);

 private:
  void SplitLine() noexcept;

  File* file_;
  Report* report_;
  SourceLine line_;
  std::uint32_t number_ = 0;
  bool stopped_ = false;
  bool end_told_ = false;
};

// Looks at the bytes of a line: NULs, carriage returns, and what joins it to the next.
void BYTES_Check(CheckWalk* walk);

// How many objects begin behind the file's position, which stays: inside of `open_object`, or
// between objects.
[[nodiscard]] std::uint64_t OBJECTS_CountBehind(File* file, std::string_view open_object);

// A text from the file, safe and short enough to show.
[[nodiscard]] std::string SHOWN_Text(std::string_view bytes);

// The bytes from `place` up to the position, which have just been read, once more. They live until
// the file is read on.
[[nodiscard]] std::string_view FILE_ViewAgain(File* file, const File::Place& place);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_CHECK_CHECK_WALK_H_
