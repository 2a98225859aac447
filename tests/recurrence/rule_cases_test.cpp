// The cases of tests/data/recurrence: a rule's text, the tree that it gives, the text that is
// generated from the tree, and the rule in English.
//   A file holds blocks of "key: value" lines, apart by blank lines; "#" begins a comment line. A
//   value in double quotes is taken without them. Keys: name, rule, result (missing: 0), tree, text
//   (missing: the rule itself), words (missing: not looked at), rest (missing: nothing unread).
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "recurrence/rule_support.h"
#include "recurrence/rule_words.h"

namespace tamu {
namespace {

using testing::GeneratedText;
using testing::OwnedRule;
using testing::TreeText;

struct RuleCase {
  std::string file;
  std::map<std::string, std::string> fields;

  [[nodiscard]] std::string Get(const std::string& key, const std::string& otherwise = "") const {
    const auto found = fields.find(key);
    return found == fields.end() ? otherwise : found->second;
  }
};

void PrintTo(const RuleCase& rule_case, std::ostream* out) { *out << rule_case.Get("rule"); }

std::string Unquoted(const std::string& value) {
  const bool quoted = value.size() >= 2 && value.front() == '"' && value.back() == '"';
  return quoted ? value.substr(1, value.size() - 2) : value;
}

void ReadCases(const std::filesystem::path& path, std::vector<RuleCase>* cases) {
  std::ifstream file(path);
  RuleCase current;
  const auto finish = [&] {
    if (!current.fields.empty()) cases->push_back(current);
    current = {path.stem().string(), {}};
  };
  finish();
  for (std::string line; std::getline(file, line);) {
    if (line.empty()) finish();
    if (line.empty() || line.front() == '#') continue;
    const std::size_t colon = line.find(": ");
    current.fields[line.substr(0, colon)] =
        colon == std::string::npos ? "" : Unquoted(line.substr(colon + 2));
  }
  finish();
}

std::vector<RuleCase> AllCases() {
  std::vector<std::filesystem::path> paths;
  for (const auto& entry : std::filesystem::directory_iterator(TAMU_TEST_DATA "/recurrence")) {
    paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  std::vector<RuleCase> cases;
  for (const auto& path : paths) ReadCases(path, &cases);
  return cases;
}

TEST(RuleCaseFiles, HoldCasesWithKnownKeysOnly) {
  const std::vector<RuleCase> cases = AllCases();
  EXPECT_GE(cases.size(), 100U);
  for (const RuleCase& rule_case : cases) {
    EXPECT_FALSE(rule_case.Get("name").empty()) << rule_case.Get("rule");
    for (const auto& [key, value] : rule_case.fields) {
      EXPECT_NE(std::string(" name rule result tree text words rest ").find(" " + key + " "),
                std::string::npos)
          << rule_case.file << ": " << key;
    }
  }
}

void ExpectTextAndWords(const ErgRule& rule, const RuleCase& expected) {
  const std::string words = ERG_Describe(rule);
  EXPECT_FALSE(words.empty());
  EXPECT_EQ(words, expected.Get("words", words));
  if (rule.kind == kErgNone) {
    EXPECT_EQ(GeneratedText(rule, TAMU_GENERAL_FAILURE), "");
    return;
  }
  const std::string generated = GeneratedText(rule);
  EXPECT_EQ(generated, expected.Get("text", expected.Get("rule")));
  OwnedRule again(generated);
  EXPECT_EQ(again.result(), 0U);
  EXPECT_EQ(TreeText(*again), TreeText(rule));
  EXPECT_TRUE(ERG_Equal(*again, rule));
}

// Lets the n-th allocation of a parse fail, for every n.
void ExpectEveryFailureIsTold(const RuleCase& rule_case) {
  const std::size_t before = MEM_LiveBlocks();
  const std::string text = rule_case.Get("rule");
  for (std::uint64_t n = 1;; ++n) {
    OwnedRule failing;
    failing->kind = 99;  // what stood in the root before does not matter
    MEM_FailNth(n);
    const TamuResult result = ERG_Parse(text.c_str(), &*failing);
    const bool struck = MEM_FailureStruck();
    MEM_FailNth(0);
    if (!struck) {
      EXPECT_EQ(std::to_string(result), rule_case.Get("result", "0"));
      return;
    }
    EXPECT_EQ(result, static_cast<TamuResult>(TAMU_OUT_OF_MEMORY)) << n;
    EXPECT_EQ(failing->kind, kErgNone);
    EXPECT_EQ(failing->node, nullptr);
    EXPECT_EQ(MEM_LiveBlocks(), before) << n;
  }
}

TEST(ErgParse, EveryFailingAllocationOfEveryCaseIsToldAndNothingIsLeft) {
  const std::size_t before = MEM_LiveBlocks();
  for (const RuleCase& rule_case : AllCases()) {
    SCOPED_TRACE(rule_case.Get("rule"));
    ExpectEveryFailureIsTold(rule_case);
  }
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

class RuleCases : public ::testing::TestWithParam<RuleCase> {};

TEST_P(RuleCases, TextTreeAndWordsAgree) {
  const std::size_t before = MEM_LiveBlocks();
  const std::string text = GetParam().Get("rule");
  {
    OwnedRule rule(text);
    EXPECT_EQ(std::to_string(rule.result()), GetParam().Get("result", "0"));
    EXPECT_EQ(TreeText(*rule), GetParam().Get("tree", "none"));
    EXPECT_EQ(rule.rest(), GetParam().Get("rest"));
    ExpectTextAndWords(*rule, GetParam());
  }
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

std::string CaseName(const ::testing::TestParamInfo<RuleCase>& row) {
  return row.param.file + "_" + row.param.Get("name");
}
INSTANTIATE_TEST_SUITE_P(Recurrence, RuleCases, ::testing::ValuesIn(AllCases()), CaseName);

}  // namespace
}  // namespace tamu
