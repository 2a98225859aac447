// The command "rrule".
#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "commands.h"
#include "display_text.h"
#include "recurrence/rule_tokens.h"
#include "rule_json.h"
#include "rule_reading.h"

namespace tamu::tool {
namespace {

// True for a text that only makes sense inside a rule.
bool IsPieceOfRule(const std::string& text) {
  // Words that begin like a weekday ("FREQ=DAILY") have the form of one.
  constexpr std::size_t kLongestPiece = 16;
  if (text.find('=') != std::string::npos || text.size() > kLongestPiece) return false;
  constexpr ErgForm kPieces[] = {ErgForm::kTime,     ErgForm::kWeekday, ErgForm::kOccurrence,
                                 ErgForm::kDay,      ErgForm::kMonth,   ErgForm::kYearDay,
                                 ErgForm::kDuration, ErgForm::kEndDate};
  return std::any_of(std::begin(kPieces), std::end(kPieces), [&](ErgForm form) {
    ErgTokenValue value;
    return TOKEN_Read(form, text, &value);
  });
}

// Over several lines, safe to show.
std::string Pretty(const nlohmann::ordered_json& json) {
  constexpr int kIndent = 2;
  std::istringstream lines(json.dump(kIndent));
  std::string text;
  for (std::string line; std::getline(lines, line);) text += "  " + DISPLAY_Json(line) + "\n";
  return text;
}

// Returns false when the text is no rule.
bool ShowRule(const std::string& text, const RuleOptions& options, Console* console) {
  const RuleReading reading(text);
  if (!reading.problem().empty()) {
    const bool split = options.rules.size() > 1 && IsPieceOfRule(text);
    console->TellError("'" + DISPLAY_Bytes(text) + "' is no rule: " + reading.problem() +
                       (split ? ". A rule with blanks has to stand in quotes" : ""));
    return false;
  }
  const nlohmann::ordered_json json = RULE_Json(reading);
  if (options.json) {
    nlohmann::ordered_json line;
    line["rule"] = DISPLAY_BytesToUtf8(text);
    line.update(json);
    console->Print(DISPLAY_Json(line.dump()) + "\n");
    return true;
  }
  const Style& style = console->style();
  std::string shown = std::string(style.heading) + DISPLAY_Bytes(text) + std::string(style.plain);
  shown += "\n  In words      " + DISPLAY_Bytes(reading.Words());
  shown += "\n  Written as    " + DISPLAY_Bytes(reading.Generated());
  if (!reading.ignored().empty()) {
    shown += "\n  Ignored       " + DISPLAY_Bytes(reading.ignored());
  }
  console->Print(shown + "\n" + Pretty(json["tree"]) + "\n");
  return true;
}

}  // namespace

int COMMAND_Rule(const RuleOptions& options, Console* console) {
  bool all_read = true;
  for (const std::string& rule : options.rules) {
    if (!ShowRule(rule, options, console)) all_read = false;
  }
  return all_read ? kExitSuccess : kExitFailure;
}

}  // namespace tamu::tool
