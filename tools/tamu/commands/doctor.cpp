// The command "doctor".
#include <nlohmann/json.hpp>

#include "commands.h"
#include "display_text.h"
#include "store/health_report.h"

namespace tamu::tool {
namespace {

constexpr std::size_t kSubjectColumn = 11;
constexpr std::size_t kStateColumn = 9;

std::string Padded(std::string_view text, std::size_t width) {
  std::string padded(text);
  if (padded.size() < width) padded.append(width - padded.size(), ' ');
  return padded;
}

void PrintText(const HealthLine& line, Console* console) {
  console->Print(Padded(line.subject, kSubjectColumn) +
                 Padded(line.problem ? "problem" : "ok", kStateColumn) + line.text + "\n");
  if (line.advice.empty()) return;
  console->Print(std::string(kSubjectColumn + kStateColumn, ' ') + line.advice + "\n");
}

void PrintJson(const HealthLine& line, Console* console) {
  nlohmann::ordered_json json;
  json["subject"] = line.subject;
  json["state"] = line.problem ? "problem" : "ok";
  json["text"] = line.text;
  json["advice"] = line.advice;
  console->Print(DISPLAY_Json(json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace)) +
                 "\n");
}

}  // namespace

int COMMAND_Doctor(bool json, Console* console) {
  bool healthy = true;
  for (const HealthLine& line : HEALTH_Report()) {
    json ? PrintJson(line, console) : PrintText(line, console);
    healthy = healthy && !line.problem;
  }
  return healthy ? kExitSuccess : kExitFailure;
}

}  // namespace tamu::tool
