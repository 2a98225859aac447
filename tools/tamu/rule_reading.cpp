#include "rule_reading.h"

#include <new>
#include <string_view>

#include "core/memory.h"
#include "display_text.h"
#include "recurrence/rule_generator.h"
#include "recurrence/rule_parser.h"
#include "recurrence/rule_tokens.h"
#include "recurrence/rule_words.h"
#include "tamu/tamu.h"

namespace tamu::tool {
namespace {

constexpr std::string_view kFrequencies = "M15, D1, W2, MP1, MD1, YM1 or YD1";

std::string_view FirstToken(std::string_view text) noexcept {
  const std::size_t begin = text.find_first_not_of(' ');
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find(' ', begin) - begin);
}

}  // namespace

RuleReading::RuleReading(std::string text) {
  std::string_view rest;
  const TamuResult result = ERG_Parse(text.c_str(), &rule_, &rest);
  if (result == TAMU_OUT_OF_MEMORY) throw std::bad_alloc();
  if (result == TAMU_OK && rule_.kind != kErgNone) {
    rest_ = rest;
    return;
  }
  Explain(text, rest);
}

void RuleReading::Explain(const std::string& text, std::string_view rest) {
  const std::string_view first = FirstToken(text);
  if (first.empty()) {
    problem_ = "it is empty";
    return;
  }
  const std::string token = "'" + DISPLAY_Bytes(FirstToken(rest)) + "'";
  ErgTokenValue value;
  if (rest.size() == std::string_view(text).substr(text.find_first_not_of(' ')).size()) {
    problem_ = token + " is no frequency: a rule begins with one such as " +
               std::string(kFrequencies) + ", in capitals";
  } else if (TOKEN_Read(ErgForm::kFrequency, FirstToken(rest), &value)) {
    problem_ = token + " cannot stand inside the frequency before it: only a finer one can";
  } else {
    problem_ = token + " does not belong there: behind a frequency in minutes stand only a count " +
               "such as #5 and an end date";
  }
}

std::string RuleReading::Words() const { return ERG_Describe(rule_); }

std::string RuleReading::Generated() const {
  MemPtr<char> text;
  if (ERG_GenerateNew(rule_, &text) == TAMU_OUT_OF_MEMORY) throw std::bad_alloc();
  return text ? std::string(text.get()) : std::string();
}

}  // namespace tamu::tool
