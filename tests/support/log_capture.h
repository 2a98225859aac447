// support/log_capture.h - the log lines that a test's act produces.
#ifndef TAMU_TESTS_SUPPORT_LOG_CAPTURE_H_
#define TAMU_TESTS_SUPPORT_LOG_CAPTURE_H_

#include <string>
#include <vector>

#include "core/log.h"

namespace tamu::testing {

class LogCapture {
 public:
  struct Line {
    LogSeverity severity;
    std::string text;
    std::uint32_t source_line;
  };

  LogCapture() { LOG_SetObserver(&Observe, this); }
  ~LogCapture() { LOG_SetObserver(nullptr, nullptr); }
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  [[nodiscard]] const std::vector<Line>& lines() const { return lines_; }
  // The texts alone.
  [[nodiscard]] std::vector<std::string> texts() const {
    std::vector<std::string> result;
    for (const Line& line : lines_) result.push_back(line.text);
    return result;
  }
  [[nodiscard]] bool Has(const std::string& text) const {
    for (const Line& line : lines_) {
      if (line.text == text) return true;
    }
    return false;
  }
  // The same for error lines alone.
  [[nodiscard]] bool HasError(const std::string& text) const {
    for (const Line& line : lines_) {
      if (line.text == text && line.severity == LogSeverity::kError) return true;
    }
    return false;
  }

 private:
  static void Observe(const LogLine& line, void* user) {
    static_cast<LogCapture*>(user)->lines_.push_back(
        {line.severity, std::string(line.text), line.source_line});
  }
  std::vector<Line> lines_;
};

}  // namespace tamu::testing

#endif  // TAMU_TESTS_SUPPORT_LOG_CAPTURE_H_
