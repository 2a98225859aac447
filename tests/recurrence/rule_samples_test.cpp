// Every rule of a collection of rules from the field: TAMU_SAMPLES names the folder of samples, in
// which rrules.tsv holds a rule in the first column of each line but the first.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "recurrence/rule_support.h"
#include "recurrence/rule_words.h"

namespace tamu {
namespace {

using testing::GeneratedText;
using testing::OwnedRule;
using testing::TreeText;

TEST(RuleSamples, EveryRuleThatReadsIsGeneratedSoThatItReadsTheSame) {
  const char* const samples = std::getenv("TAMU_SAMPLES");
  if (samples == nullptr) GTEST_SKIP() << "TAMU_SAMPLES names no folder of samples";
  const std::size_t before = MEM_LiveBlocks();
  std::ifstream file(std::filesystem::path(samples) / "rrules.tsv");
  std::string line;
  ASSERT_TRUE(std::getline(file, line)) << "no rrules.tsv in " << samples;
  std::size_t read = 0;
  std::size_t refused = 0;
  while (std::getline(file, line)) {
    const std::string text = line.substr(0, line.find('\t'));
    SCOPED_TRACE(text);
    OwnedRule rule(text);
    if (rule.result() != TAMU_OK) {
      EXPECT_EQ(rule.result(), static_cast<TamuResult>(TAMU_PARSE_ERROR));
      ++refused;
      continue;
    }
    ++read;
    OwnedRule again(GeneratedText(*rule));
    EXPECT_EQ(TreeText(*again), TreeText(*rule));
    EXPECT_FALSE(ERG_Describe(*rule).empty());
  }
  EXPECT_GT(read, 0U);
  RecordProperty("read", static_cast<int>(read));
  RecordProperty("refused", static_cast<int>(refused));
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

}  // namespace
}  // namespace tamu
