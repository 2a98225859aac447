// Reading and writing of recurrence rules, beside floors: looking for the blanks of the same texts
// for both, and the allocations that a tree of the same rule needs for reading.
#include <benchmark/benchmark.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "core/memory.h"
#include "recurrence/rule.h"
#include "recurrence/rule_generator.h"
#include "recurrence/rule_parser.h"
#include "recurrence/rule_words.h"

namespace tamu {
namespace {

// What devices write, and one rule of every kind.
constexpr std::array<const char*, 12> kRules = {
    "W1 MO #0",
    "D1 #10",
    "MD1 15 #0",
    "YM1 6 #0 MD1 12",
    "W2 TU FR 20031231T235959Z",
    "MP1 2+ TU #0",
    "YD1 100 #4",
    "M15 #8",
    "W1 MO TU 0900 FR 1700 #10 M30",
    "MP1 1+ 2- MO 1+ FR 20031231T000000Z",
    "D2 0600 1200$ 1500 #3",
    "YM1 6 12 #5 MP1 1+ MO 1- FR",
};

void SetRates(benchmark::State& state) {
  std::size_t bytes = 0;
  for (const char* const rule : kRules) bytes += std::strlen(rule);
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
  state.counters["rules/s"] = benchmark::Counter(
      static_cast<double>(state.iterations()) * kRules.size(), benchmark::Counter::kIsRate);
}

// The trees of all rules, for what works on trees.
class Trees {
 public:
  Trees() noexcept {
    for (std::size_t i = 0; i < kRules.size(); ++i) ok_ &= ERG_Parse(kRules[i], &trees_[i]) == 0;
  }
  ~Trees() {
    for (ErgRule& tree : trees_) ERG_Free(&tree);
  }
  Trees(const Trees&) = delete;
  Trees& operator=(const Trees&) = delete;
  [[nodiscard]] bool ok() const { return ok_; }
  [[nodiscard]] const std::array<ErgRule, kRules.size()>& all() const { return trees_; }

 private:
  std::array<ErgRule, kRules.size()> trees_{};
  bool ok_ = true;
};

void BM_RecurrenceFloorBlanks(benchmark::State& state) {
  for (auto _ : state) {
    for (const char* rule : kRules) {
      std::size_t tokens = 0;
      for (; rule != nullptr; ++tokens) {
        rule = std::strchr(rule, ' ');
        if (rule != nullptr) ++rule;
      }
      benchmark::DoNotOptimize(tokens);
    }
  }
  SetRates(state);
}
BENCHMARK(BM_RecurrenceFloorBlanks);

// A block of the usual size for every token but counts and end dates, allocated and freed.
void BM_RecurrenceFloorMemory(benchmark::State& state) {
  std::size_t blocks = 0;
  for (const char* const rule : kRules) {
    ErgRule tree;
    const std::size_t before = MEM_LiveBlocks();
    if (ERG_Parse(rule, &tree) != TAMU_OK) return state.SkipWithError("parsing failed");
    blocks += MEM_LiveBlocks() - before;
    ERG_Free(&tree);
  }
  std::vector<MemPtr<ErgNumber>> list(blocks);
  for (auto _ : state) {
    for (auto& block : list) block = MEM_New<ErgNumber>();
    for (auto& block : list) block.reset();
  }
  SetRates(state);
}
BENCHMARK(BM_RecurrenceFloorMemory);

void BM_RecurrenceParse(benchmark::State& state) {
  for (auto _ : state) {
    for (const char* const rule : kRules) {
      ErgRule tree;
      if (ERG_Parse(rule, &tree) != TAMU_OK) return state.SkipWithError("parsing failed");
      benchmark::DoNotOptimize(tree.node);
      ERG_Free(&tree);
    }
  }
  SetRates(state);
}
BENCHMARK(BM_RecurrenceParse);

void BM_RecurrenceGenerate(benchmark::State& state) {
  const Trees trees;
  if (!trees.ok()) return state.SkipWithError("parsing failed");
  std::array<char, 128> text;
  for (auto _ : state) {
    for (const ErgRule& tree : trees.all()) {
      if (ERG_TextSize(tree) > text.size()) return state.SkipWithError("a rule is too long");
      benchmark::DoNotOptimize(ERG_Generate(tree, text.data()));
    }
  }
  SetRates(state);
}
BENCHMARK(BM_RecurrenceGenerate);

void BM_RecurrenceDescribe(benchmark::State& state) {
  const Trees trees;
  if (!trees.ok()) return state.SkipWithError("parsing failed");
  for (auto _ : state) {
    for (const ErgRule& tree : trees.all()) benchmark::DoNotOptimize(ERG_Describe(tree));
  }
  SetRates(state);
}
BENCHMARK(BM_RecurrenceDescribe);

}  // namespace
}  // namespace tamu
