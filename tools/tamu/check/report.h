// check/report.h - the findings of a file on their way out.
//   Findings of an object wait for its end, so that they come in the order of the file; memory is
//   bounded by the largest object.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_CHECK_REPORT_H_
#define TAMU_TOOLS_CHECK_REPORT_H_

#include <array>
#include <cstdint>
#include <vector>

#include "check/finding.h"

namespace tamu::tool {

class FindingHandler {
 public:
  // In the order of the lines.
  virtual void TakeFinding(const Finding& finding) = 0;

 protected:
  ~FindingHandler() = default;
};

// How many findings there were, by severity.
using FindingCounts = std::array<std::uint64_t, kSeverities>;

class Report {
 public:
  explicit Report(FindingHandler* handler) noexcept : handler_(handler) {}

  void Add(Finding finding);
  // Hands on what waits.
  void Flush();

  // Where the object begins that findings belong to from now on, 0 between objects.
  [[nodiscard]] std::uint32_t object_line() const noexcept { return object_line_; }
  void SetObjectLine(std::uint32_t line) noexcept { object_line_ = line; }

  [[nodiscard]] const FindingCounts& counts() const noexcept { return counts_; }

 private:
  FindingHandler* handler_;
  std::vector<Finding> waiting_;
  FindingCounts counts_{};
  std::uint32_t object_line_ = 0;
};

// An object for as long as it is walked through.
class ObjectScope {
 public:
  ObjectScope(Report* report, std::uint32_t begin_line) noexcept
      : report_(report), outer_(report->object_line()) {
    report->SetObjectLine(begin_line);
  }
  ~ObjectScope() { report_->SetObjectLine(outer_); }
  ObjectScope(const ObjectScope&) = delete;
  ObjectScope& operator=(const ObjectScope&) = delete;

 private:
  Report* report_;
  std::uint32_t outer_;
};

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_CHECK_REPORT_H_
