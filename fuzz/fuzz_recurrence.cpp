// Recurrence rules: what is measured is what is written; a rule that was read, written and read
// again is the same, unless its end date is no date and reads as something else; a failed
// allocation is told and leaves nothing behind.
#include <cstring>
#include <vector>

#include "fuzz_check.h"
#include "recurrence/rule.h"
#include "recurrence/rule_generator.h"
#include "recurrence/rule_parser.h"
#include "recurrence/rule_words.h"

namespace tamu::fuzz {
namespace {

// Eight digits begin no other token that rules have.
bool EndDateHasTheShapeOfADate(const ErgRule& rule) {
  const std::string_view date = ERG_EndDate(rule);
  if (date.empty()) return true;
  return date.size() >= 15 && date.find_first_not_of("0123456789") == 8 && date[8] == 'T';
}

std::string Generated(const ErgRule& rule) {
  const std::size_t size = ERG_TextSize(rule);
  std::vector<char> buffer(size, '#');
  const TamuResult result = ERG_Generate(rule, buffer.data());
  FUZZ_CHECK(result == (rule.kind == kErgNone ? TamuResult{1} : TamuResult{0}));
  FUZZ_CHECK(std::strlen(buffer.data()) + 1 == size);
  return buffer.data();
}

void CheckRest(const std::string& text, TamuResult result, std::string_view rest) {
  FUZZ_CHECK(rest.size() <= text.size());
  FUZZ_CHECK(rest.empty() || text.compare(text.size() - rest.size(), rest.npos, rest) == 0);
  FUZZ_CHECK(rest.empty() || rest.front() != ' ');
  if (result != TAMU_OK || rest.empty()) return;
  // What was ignored makes no difference.
  ErgRule whole;
  ErgRule shorter;
  FUZZ_CHECK(ERG_Parse(text.c_str(), &whole) == TAMU_OK);
  FUZZ_CHECK(ERG_Parse(text.substr(0, text.size() - rest.size()).c_str(), &shorter) == TAMU_OK);
  FUZZ_CHECK(ERG_Equal(whole, shorter));
  ERG_Free(&whole);
  ERG_Free(&shorter);
}

void CheckRoundTrip(const ErgRule& rule) {
  const std::string text = Generated(rule);
  FUZZ_CHECK(!ERG_Describe(rule).empty());
  if (!EndDateHasTheShapeOfADate(rule)) return;
  ErgRule again;
  std::string_view rest;
  FUZZ_CHECK(ERG_Parse(text.c_str(), &again, &rest) == TAMU_OK);
  FUZZ_CHECK(rest.empty());
  FUZZ_CHECK(ERG_Equal(rule, again));
  FUZZ_CHECK(Generated(again) == text);
  ERG_Free(&again);
}

void CheckFailingAllocation(const std::string& text, std::uint64_t n, TamuResult expected) {
  ErgRule rule;
  MEM_FailNth(n);
  const TamuResult result = ERG_Parse(text.c_str(), &rule);
  const bool struck = MEM_FailureStruck();
  MEM_FailNth(0);
  FUZZ_CHECK(result == (struck ? TamuResult{TAMU_OUT_OF_MEMORY} : expected));
  ERG_Free(&rule);
}

}  // namespace
}  // namespace tamu::fuzz

// The first byte says which allocation fails, the rest is the rule.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tamu;
  using namespace tamu::fuzz;
  const NothingLeaks leaks;
  Input input(data, size);
  const std::uint64_t fail_in = input.Byte() % 32 + 1U;
  const std::string text = UpToNul(input.Rest());

  ErgRule rule;
  std::string_view rest;
  const TamuResult result = ERG_Parse(text.c_str(), &rule, &rest);
  FUZZ_CHECK(result == TAMU_OK || result == TAMU_PARSE_ERROR);
  FUZZ_CHECK((rule.kind == kErgNone) == (rule.node == nullptr));
  CheckRest(text, result, rest);
  if (rule.kind != kErgNone) CheckRoundTrip(rule);
  ERG_Free(&rule);
  CheckFailingAllocation(text, fail_in, result);
  return 0;
}
