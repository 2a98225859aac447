// console.h - standard output and standard error of the program.
//   Output is UTF-8 and buffered. A failed write is remembered and told once, at the end; of a pipe
//   whose reader is gone nothing is told. Messages go to standard error, after the output that was
//   produced before them.
#ifndef TAMU_TOOLS_CONSOLE_H_
#define TAMU_TOOLS_CONSOLE_H_

#include <string_view>

namespace tamu::tool {

inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure = 1;  // the work failed
inline constexpr int kExitUsage = 2;    // the command line is wrong

// Sequences that style output; all empty where there is no terminal to style for.
struct Style {
  std::string_view heading;
  std::string_view faint;
  std::string_view plain;
};

class Console {
 public:
  Console() noexcept;

  [[nodiscard]] const Style& style() const noexcept { return style_; }

  void Print(std::string_view text) noexcept;
  // One line on standard error; the line end is added.
  void Tell(std::string_view line) noexcept;
  // The same, behind "tamu: ".
  void TellError(std::string_view line) noexcept;

  // Brings what was printed to its reader: for output that comes now and then.
  void Flush() noexcept { FlushOutput(); }

  // Ends the program when output cannot be written any more: for loops that nothing else can stop.
  void ExitIfBroken() noexcept;

  // Writes what is buffered and closes standard output. Returns `exit_code`, or kExitFailure after
  // a message when output was lost.
  [[nodiscard]] int Finish(int exit_code) noexcept;

 private:
  void NoteError() noexcept;
  void FlushOutput() noexcept;
  void TellBroken() noexcept;

  Style style_;
  int error_ = 0;  // errno of the first failed write
  bool printed_ = false;
};

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_CONSOLE_H_
