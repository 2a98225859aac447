// What rules say in English where no text gives the tree; the others are tests/data/recurrence's.
#include "recurrence/rule_words.h"

#include <gtest/gtest.h>

#include "recurrence/rule_support.h"

namespace tamu {
namespace {

using testing::NumberList;
using testing::OwnedRule;

TEST(ErgDescribe, AnEmptyRuleDoesNotRepeat) { EXPECT_EQ(ERG_Describe(ErgRule{}), "no repetition"); }

TEST(ErgDescribe, AnUnknownKindIsCalledUnknown) {
  const ErgRule rule = {8, nullptr, "20031231T000000"};
  EXPECT_EQ(ERG_Describe(rule), "a repetition of an unknown kind until 31 December 2003");
}

TEST(ErgDescribe, ARootWithoutNodeSaysItsKindOnly) {
  const ErgRule rule = {kErgWeekly, nullptr, ""};
  EXPECT_EQ(ERG_Describe(rule), "weekly, with nothing more known");
}

TEST(ErgDescribe, WeekdaysThatShareTimesStandTogether) {
  OwnedRule rule("W1 MO 0900 FR #0");
  rule.As<ErgWeekly>(kErgWeekly)->entries->more_weekdays = NumberList({3, 9});
  EXPECT_EQ(ERG_Describe(*rule), "every week on Monday and Tuesday at 09:00 and on Friday forever");
}

TEST(ErgDescribe, WeekdaysWithoutANameAreLeftOut) {
  OwnedRule rule("W1 MO FR #0");
  rule.As<ErgWeekly>(kErgWeekly)->entries->weekday = 8;
  EXPECT_EQ(ERG_Describe(*rule), "every week on Friday forever");
  rule.As<ErgWeekly>(kErgWeekly)->entries->next->weekday = 0;
  EXPECT_EQ(ERG_Describe(*rule), "every week forever");
}

TEST(ErgDescribe, MonthsWithoutANameAreNumbers) {
  OwnedRule rule("YM1 6 #0");
  rule.As<ErgYearlyByMonth>(kErgYearlyByMonth)->numbers->value = 13;
  EXPECT_EQ(ERG_Describe(*rule), "every year in month 13 forever");
}

TEST(ErgDescribe, NegativeIntervalsAreNamedAsTheyAre) {
  OwnedRule rule("D1 #0");
  rule.As<ErgDaily>(kErgDaily)->interval = -1;
  EXPECT_EQ(ERG_Describe(*rule), "daily (interval -1) forever");
}

TEST(ErgDescribe, OrdinalsOfAllEndings) {
  OwnedRule rule("MP1 1+ MO #0");
  ErgPositionGroup* const group = rule.As<ErgMonthlyByPos>(kErgMonthlyByPos)->groups;
  group->occurrence.next = NumberList({2, 3, 4, 11, 12, 13, 21, 112, 0, -1, -2, -3, INT32_MIN});
  EXPECT_EQ(ERG_Describe(*rule),
            "every month on the 1st, 2nd, 3rd, 4th, 11th, 12th, 13th, 21st, 112th, 0th, last, "
            "2nd last, 3rd last and 2147483648th last Monday forever");
}

TEST(ErgDescribe, AMonthsDaysJoinAYearlyRuleOnlyWhenTheyMeanOneMonthEachYear) {
  const auto words = [](const char* text) { return ERG_Describe(*OwnedRule(text)); };
  EXPECT_EQ(words("YM1 3 #0 MD1 1 15"), "every year in March on days 1 and 15 forever");
  EXPECT_EQ(words("YM1 3 #0 MD1 1 #1"), "every year in March on day 1 forever");
  EXPECT_EQ(words("YM1 3 #0 MP1 1+ MO TU #2"),
            "every year in March on the 1st Monday and Tuesday forever");
  EXPECT_EQ(words("YM1 3 #0 MP1 1+ 2+ MO TU #4"),
            "every year in March on the 1st and 2nd Monday and Tuesday forever");
  EXPECT_EQ(words("YM1 3 #0 MD1 1 #0"),
            "every year in March forever; each time every month on day 1 forever");
  EXPECT_EQ(words("YM1 #0 MD1 1"), "every year forever; each time every month on day 1");
  EXPECT_EQ(words("YM1 3 #0 MD1"), "every year in March forever; each time every month");
  EXPECT_EQ(words("YM1 3 #0 MD1 1 D1 #3"),
            "every year in March forever; each time every month on day 1; each time every day, 3 "
            "times");
  EXPECT_EQ(words("YM1 3 #0 W1 MO"), "every year in March forever; each time every week on Monday");
}

TEST(ErgDescribe, CountsAndEndDatesTogether) {
  const auto words = [](const char* text) { return ERG_Describe(*OwnedRule(text)); };
  EXPECT_EQ(words("D1 #10 20031231T000000"), "every day, 10 times or until 31 December 2003");
  EXPECT_EQ(words("D1 #0 20031231T000000"), "every day forever, or until 31 December 2003");
  EXPECT_EQ(words("D1 20031231T093005"), "every day until 31 December 2003 09:30:05");
  EXPECT_EQ(words("D1 20031231T000000Z"), "every day until 31 December 2003 UTC");
  EXPECT_EQ(words("D1 20031231T0000-1"), "every day until \"20031231T0000-1\"");
}

}  // namespace
}  // namespace tamu
