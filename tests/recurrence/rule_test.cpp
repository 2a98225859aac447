#include "recurrence/rule.h"

#include <gtest/gtest.h>

#include <string>

#include "recurrence/rule_support.h"

namespace tamu {
namespace {

using testing::NumberList;
using testing::OwnedRule;

TEST(ErgFree, EveryListOfEveryKindIsFreed) {
  const std::size_t before = MEM_LiveBlocks();
  for (const char* const text :
       {"M5 #3", "D1 0900 1000 #3 M5", "W1 MO 0900 1000 TU 1100 #3 M5",
        "MP1 1+ 2- 3+ MO TU WE 0900 1000 4+ FR #3 D1 0900 M5", "MD1 1 2 3 #3 W1 MO 0900 M5",
        "YM1 1 2 3 #3 MP1 1+ 2+ MO TU 0900 W1 MO M5", "YD1 1 2 3 #3 MD1 1 2 D1 0900 M5"}) {
    ErgRule rule;
    ASSERT_EQ(ERG_Parse(text, &rule), 0U) << text;
    EXPECT_GT(MEM_LiveBlocks(), before);
    ERG_Free(&rule);
    EXPECT_EQ(MEM_LiveBlocks(), before) << text;
  }
}

TEST(ErgFree, WeekdaysChainedToAnEntryAreFreed) {
  const std::size_t before = MEM_LiveBlocks();
  {
    OwnedRule rule("W1 MO");
    rule.As<ErgWeekly>(kErgWeekly)->entries->more_weekdays = NumberList({1, 2, 3});
  }
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

TEST(ErgFree, NoKindAndUnknownKindsFreeNothing) {
  std::int32_t node = 5;
  for (const ErgKind kind : {kErgNone, ErgKind{8}, ErgKind{0x80000000}}) {
    ErgRule rule = {kind, &node, ""};
    ERG_Free(&rule);
    EXPECT_EQ(rule.node, &node);
  }
}

TEST(ErgFree, ARootWithoutNodeIsFreedToo) {
  ErgRule rule = {kErgWeekly, nullptr, ""};
  ERG_Free(&rule);
  EXPECT_EQ(rule.kind, kErgNone);
}

TEST(ErgFree, FreeingTwiceIsHarmless) {
  const std::size_t before = MEM_LiveBlocks();
  ErgRule rule;
  ASSERT_EQ(ERG_Parse("W1 MO", &rule), 0U);
  ERG_Free(&rule);
  ERG_Free(&rule);
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

TEST(ErgFree, LongListsNeedNoStack) {
  std::string text = "YD1";
  for (int i = 0; i < 300000; ++i) text += " 1";
  OwnedRule rule(text);
  EXPECT_EQ(rule.result(), 0U);
}

TEST(ErgEqual, RulesOfOneTextAreEqual) {
  for (const char* const text :
       {"", "M5", "D1 0900 M5", "W1 MO 0900", "MP1 1+ MO 20031231T000000", "YD1 5 MD1 1"}) {
    EXPECT_TRUE(ERG_Equal(*OwnedRule(text), *OwnedRule(text))) << text;
  }
}

TEST(ErgEqual, EveryDifferenceCounts) {
  const char* const kPairs[][2] = {
      {"M5", ""},
      {"M5", "D5"},
      {"M5", "M6"},
      {"M5", "M5 #3"},
      {"M5", "M5 20031231T000000"},
      {"M5 20031231T000000", "M5 20031231T000001"},
      {"D1 0900", "D1"},
      {"D1 0900", "D1 0901"},
      {"D1 0900", "D1 1000"},
      {"D1 0900", "D1 0900$"},
      {"D1 0900", "D1 0900 1000"},
      {"D1", "D1 M5"},
      {"D1 M5", "D1 M6"},
      {"W1 MO", "W1 TU"},
      {"W1 MO", "W1 MO$"},
      {"W1 MO", "W1 MO TU"},
      {"W1 MO", "W1 MO 0900"},
      {"MP1 1+ MO", "MP1 1- MO"},
      {"MP1 1+ MO", "MP1 1+$ MO"},
      {"MP1 1+ MO", "MP1 1+ 2+ MO"},
      {"MP1 1+ MO", "MP1 1+ TU"},
      {"MP1 1+ MO", "MP1 1+ MO TU"},
      {"MP1 1+ MO", "MP1 1+ MO 0900"},
      {"MP1 1+ MO", "MP1 1+ MO 1+ MO"},
      {"MD1 1", "MP1 1+"},
      {"MD1 1", "MD1 2"},
      {"YM1 6 MD1 1", "YM1 6 MP1"},
      {"YM1 6 MD1 1 W1 MO", "YM1 6 MD1 1 W1 TU"},
  };
  for (const auto& [left, right] : kPairs) {
    EXPECT_FALSE(ERG_Equal(*OwnedRule(left), *OwnedRule(right))) << left << " and " << right;
    EXPECT_FALSE(ERG_Equal(*OwnedRule(right), *OwnedRule(left))) << right << " and " << left;
  }
}

TEST(ErgEqual, WeekdaysChainedToAnEntryCount) {
  OwnedRule with("W1 MO");
  with.As<ErgWeekly>(kErgWeekly)->entries->more_weekdays = NumberList({3});
  EXPECT_FALSE(ERG_Equal(*with, *OwnedRule("W1 MO")));
}

}  // namespace
}  // namespace tamu
