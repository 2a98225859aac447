// store/error_lines.h - the error lines that the library logs while it works on the stores: the only
// word on what its results do not tell.
//   One at a time; whoever observed the log before is not called meanwhile.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_STORE_ERROR_LINES_H_
#define TAMU_TOOLS_STORE_ERROR_LINES_H_

#include <string>
#include <vector>

#include "core/log.h"

namespace tamu::tool {

class ErrorLines {
 public:
  ErrorLines() noexcept { LOG_SetObserver(&Observe, this); }
  ~ErrorLines() { LOG_SetObserver(nullptr, nullptr); }
  ErrorLines(const ErrorLines&) = delete;
  ErrorLines& operator=(const ErrorLines&) = delete;

  // The lines without the library's prefix, at most the first hundred.
  [[nodiscard]] const std::vector<std::string>& lines() const noexcept { return lines_; }
  [[nodiscard]] bool empty() const noexcept { return lines_.empty(); }
  // All of them behind each other, for a message: "a; b", safe to show.
  [[nodiscard]] std::string Text() const;

 private:
  static void Observe(const LogLine& line, void* user);

  std::vector<std::string> lines_;
};

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_ERROR_LINES_H_
