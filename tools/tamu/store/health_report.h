// store/health_report.h - what of the device works, and what to do about what does not.
//   Looking opens the device, which makes what is missing, and closes it again.
//   Errors     in the report; std::bad_alloc.
#ifndef TAMU_TOOLS_STORE_HEALTH_REPORT_H_
#define TAMU_TOOLS_STORE_HEALTH_REPORT_H_

#include <string>
#include <string_view>
#include <vector>

namespace tamu::tool {

// One thing that was looked at. Texts are safe to show.
struct HealthLine {
  std::string_view subject;  // "folder", "database"
  bool problem = false;
  std::string text;    // what was found
  std::string advice;  // of a problem: what to do, a sentence
};

[[nodiscard]] std::vector<HealthLine> HEALTH_Report();

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_HEALTH_REPORT_H_
