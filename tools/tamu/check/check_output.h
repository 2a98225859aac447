// check/check_output.h - findings as lines for people and for programs, and their sum.
//   docs/check.md describes both for their users.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_CHECK_CHECK_OUTPUT_H_
#define TAMU_TOOLS_CHECK_CHECK_OUTPUT_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "check/report.h"

namespace tamu::tool {

// "file:line: severity: text [id]" with its line end. `shown_file` is safe to show.
[[nodiscard]] std::string CHECK_TextLine(const Finding& finding, std::string_view shown_file);

// A JSON object with its line end. `file` is the name that the user gave.
[[nodiscard]] std::string CHECK_JsonLine(const Finding& finding, std::string_view file);

// What a check of files came to.
struct CheckSum {
  std::uint64_t files = 0;
  std::uint64_t with_findings = 0;
  std::uint64_t unreadable = 0;
  FindingCounts counts{};
};

// "3 files, 2 with findings: 1 error, 5 warnings".
[[nodiscard]] std::string CHECK_SumLine(const CheckSum& sum);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_CHECK_CHECK_OUTPUT_H_
