#include "check/report.h"

#include <algorithm>
#include <utility>

namespace tamu::tool {

void Report::Add(Finding finding) {
  finding.object_line = object_line_;
  ++counts_[static_cast<std::size_t>(FINDING_Row(finding.kind).severity)];
  waiting_.push_back(std::move(finding));
}

void Report::Flush() {
  const auto by_line = [](const Finding& a, const Finding& b) { return a.line < b.line; };
  std::stable_sort(waiting_.begin(), waiting_.end(), by_line);
  for (const Finding& finding : waiting_) handler_->TakeFinding(finding);
  waiting_.clear();
}

}  // namespace tamu::tool
