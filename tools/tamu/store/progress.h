// store/progress.h - how far long work on a file is, on standard error when that is a terminal.
//   Nothing is shown of work that takes less than about a second; the line is wiped before anything
//   else is written and at the end.
//   Errors     std::bad_alloc.
#ifndef TAMU_TOOLS_STORE_PROGRESS_H_
#define TAMU_TOOLS_STORE_PROGRESS_H_

#include <chrono>
#include <cstdint>
#include <string>

namespace tamu::tool {

struct ProgressState {
  std::string file;  // safe to show
  std::uint64_t objects = 0;
  std::uint64_t offset = 0;  // bytes of the file that are done
  std::uint64_t size = 0;    // of the file, 0 when it is not known
};

// "contacts.vcf  42% [########------------] 12345 objects, 5300/s", at most 79 columns wide; the
// rate is that of all objects since `seconds` ago.
[[nodiscard]] std::string PROGRESS_Line(const ProgressState& state, std::uint64_t all_objects,
                                        double seconds);

class Progress {
 public:
  // Nothing is shown before `silence` has passed.
  explicit Progress(std::chrono::milliseconds silence = std::chrono::milliseconds(1000));
  ~Progress() { Hide(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Shows the state when it is time to.
  void Update(const ProgressState& state);
  // Wipes the line: something else is about to be written.
  void Hide() noexcept;

 private:
  using Clock = std::chrono::steady_clock;

  bool terminal_;
  bool shown_ = false;
  std::uint64_t all_objects_ = 0;
  Clock::time_point start_;
  Clock::time_point next_;
};

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_PROGRESS_H_
