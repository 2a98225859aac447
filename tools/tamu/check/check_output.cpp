#include "check/check_output.h"

#include <nlohmann/json.hpp>

#include "display_text.h"
#include "platform/paths.h"

namespace tamu::tool {
namespace {

std::string Count(std::uint64_t count, std::string_view word) {
  return std::to_string(count) + " " + std::string(word) + (count == 1 ? "" : "s");
}

}  // namespace

std::string CHECK_TextLine(const Finding& finding, std::string_view shown_file) {
  const FindingRow& row = FINDING_Row(finding.kind);
  return std::string(shown_file) + ":" + std::to_string(finding.line) + ": " +
         std::string(SEVERITY_Word(row.severity)) + ": " + FINDING_Text(finding) + " [" +
         std::string(row.id) + "]\n";
}

std::string CHECK_JsonLine(const Finding& finding, std::string_view file) {
  const FindingRow& row = FINDING_Row(finding.kind);
  nlohmann::ordered_json json;
  // Bytes of the name that are not UTF-8 become U+FFFD.
  json["file"] = DISPLAY_ToUtf8(platform::PathFromNative(file));
  json["line"] = finding.line;
  json["severity"] = SEVERITY_Word(row.severity);
  json["id"] = row.id;
  json["text"] = FINDING_Text(finding);
  json["objectLine"] =
      finding.object_line != 0 ? nlohmann::ordered_json(finding.object_line) : nullptr;
  return DISPLAY_Json(json.dump()) + "\n";
}

std::string CHECK_SumLine(const CheckSum& sum) {
  std::string text = Count(sum.files, "file") + ", ";
  if (sum.with_findings == 0) {
    text += "no findings";
  } else {
    text += (sum.files == 1 ? "" : std::to_string(sum.with_findings) + " ") + "with findings: ";
    std::string counts;
    for (std::size_t i = 0; i < kSeverities; ++i) {
      if (sum.counts[i] == 0) continue;
      counts += (counts.empty() ? "" : ", ") +
                Count(sum.counts[i], SEVERITY_Word(static_cast<Severity>(i)));
    }
    text += counts;
  }
  if (sum.unreadable != 0) text += "; " + std::to_string(sum.unreadable) + " not read";
  return text;
}

}  // namespace tamu::tool
