#include "recurrence/rule_parser.h"

#include <gtest/gtest.h>

#include <string>

#include "recurrence/rule_support.h"

namespace tamu {
namespace {

using testing::GeneratedText;
using testing::OwnedRule;
using testing::TreeText;

constexpr TamuResult kError = TAMU_PARSE_ERROR;

TEST(ErgParse, AnEmptyTextIsTheEmptyRule) {
  OwnedRule rule("");
  EXPECT_EQ(rule.result(), 0U);
  EXPECT_EQ(rule->kind, kErgNone);
  EXPECT_EQ(rule->node, nullptr);
  EXPECT_STREQ(rule->end_date, "");
}

TEST(ErgParse, ANullTextIsTheEmptyRule) {
  ErgRule rule;
  std::string_view rest = "unset";
  EXPECT_EQ(ERG_Parse(nullptr, &rule, &rest), 0U);
  EXPECT_EQ(rule.kind, kErgNone);
  EXPECT_EQ(rule.node, nullptr);
  EXPECT_EQ(rest, "");
}

TEST(ErgParse, BlanksAloneAreAnError) { EXPECT_EQ(OwnedRule("   ").result(), kError); }

TEST(ErgParse, AWeeklyRuleNeedsNoWeekdays) {
  OwnedRule rule("W2");
  const auto* const weekly = rule.As<ErgWeekly>(kErgWeekly);
  EXPECT_EQ(weekly->interval, 2);
  EXPECT_EQ(weekly->entries, nullptr);
  EXPECT_EQ(weekly->duration, 2);
  EXPECT_EQ(weekly->nested, nullptr);
}

TEST(ErgParse, TimesBelongToTheWeekdayBeforeThem) {
  OwnedRule rule("W1 MO TU 0900 FR #10");
  const auto* const weekly = rule.As<ErgWeekly>(kErgWeekly);
  const ErgWeekdayEntry* const monday = weekly->entries;
  const ErgWeekdayEntry* const tuesday = monday->next;
  const ErgWeekdayEntry* const friday = tuesday->next;
  EXPECT_EQ(monday->weekday, 2);
  EXPECT_EQ(monday->times, nullptr);
  EXPECT_EQ(monday->more_weekdays, nullptr);
  EXPECT_EQ(tuesday->weekday, 3);
  EXPECT_EQ(tuesday->times->hour, 9);
  EXPECT_EQ(tuesday->times->minute, 0);
  EXPECT_EQ(tuesday->times->next, nullptr);
  EXPECT_EQ(friday->weekday, 6);
  EXPECT_EQ(friday->times, nullptr);
  EXPECT_EQ(friday->next, nullptr);
  EXPECT_EQ(weekly->duration, 10);
}

TEST(ErgParse, AnOccurrenceBehindWeekdaysBeginsAGroup) {
  OwnedRule rule("MP1 1+ 2- MO 1+ FR 20031231T000000Z");
  const auto* const monthly = rule.As<ErgMonthlyByPos>(kErgMonthlyByPos);
  const ErgPositionGroup* const first = monthly->groups;
  EXPECT_EQ(first->occurrence.value, 1);
  EXPECT_EQ(first->occurrence.next->value, -2);
  EXPECT_EQ(first->occurrence.next->next, nullptr);
  EXPECT_EQ(first->weekday.value, 2);
  EXPECT_EQ(first->weekday.next, nullptr);
  const ErgPositionGroup* const second = first->next;
  EXPECT_EQ(second->occurrence.value, 1);
  EXPECT_EQ(second->weekday.value, 6);
  EXPECT_EQ(second->next, nullptr);
  EXPECT_EQ(monthly->duration, 2);
  EXPECT_STREQ(rule->end_date, "20031231T000000Z");
}

TEST(ErgParse, TheLastDayOfTheMonthIsMinusOne) {
  OwnedRule rule("MD1 1 15 LD");
  const auto* const monthly = rule.As<ErgMonthlyByDay>(kErgMonthlyByDay);
  EXPECT_EQ(monthly->numbers->value, 1);
  EXPECT_EQ(monthly->numbers->next->value, 15);
  EXPECT_EQ(monthly->numbers->next->next->value, -1);
  EXPECT_EQ(monthly->numbers->next->next->next, nullptr);
  EXPECT_EQ(monthly->duration, 2);
}

TEST(ErgParse, ACountOfZeroIsKept) {
  OwnedRule rule("YM1 6 12 #0");
  const auto* const yearly = rule.As<ErgYearlyByMonth>(kErgYearlyByMonth);
  EXPECT_EQ(yearly->numbers->value, 6);
  EXPECT_EQ(yearly->numbers->next->value, 12);
  EXPECT_EQ(yearly->duration, 0);
}

TEST(ErgParse, AMinutelyRuleNestsInADailyOne) {
  OwnedRule rule("D1 #5 M30");
  const auto* const daily = rule.As<ErgDaily>(kErgDaily);
  EXPECT_EQ(daily->duration, 5);
  EXPECT_EQ(daily->nested->interval, 30);
  EXPECT_EQ(daily->nested->duration, 2);
}

TEST(ErgParse, NestedNodesAreStoredWithTheirKind) {
  OwnedRule rule("YD1 100 MD1 5 W1 MO");
  const auto* const yearly = rule.As<ErgYearlyByDay>(kErgYearlyByDay);
  ASSERT_EQ(yearly->nested_kind, kErgMonthlyByDay);
  const auto* const monthly = static_cast<const ErgMonthlyByDay*>(yearly->nested);
  ASSERT_EQ(monthly->nested_kind, kErgWeekly);
  EXPECT_EQ(static_cast<const ErgWeekly*>(monthly->nested)->entries->weekday, 2);
}

TEST(ErgParse, WithoutANestedRuleTheNestedKindIsZero) {
  OwnedRule rule("MP1 1+ MO");
  EXPECT_EQ(rule.As<ErgMonthlyByPos>(kErgMonthlyByPos)->nested_kind, kErgNone);
  EXPECT_EQ(rule.As<ErgMonthlyByPos>(kErgMonthlyByPos)->nested, nullptr);
}

TEST(ErgParse, Minute60IsNoTimeAndEndsTheParse) {
  OwnedRule rule("D1 1260");
  EXPECT_EQ(rule.result(), 0U);
  EXPECT_EQ(rule.As<ErgDaily>(kErgDaily)->times, nullptr);
  EXPECT_EQ(rule.rest(), "1260");
}

TEST(ErgParse, AnOccurrenceHasOneDigit) {
  OwnedRule rule("MP1 10+ MO");
  EXPECT_EQ(rule.result(), 0U);
  EXPECT_EQ(rule.As<ErgMonthlyByPos>(kErgMonthlyByPos)->groups, nullptr);
}

TEST(ErgParse, AStrayTokenInAMinutelyRuleIsAnErrorAlsoWhenItIsNested) {
  EXPECT_EQ(OwnedRule("D1 M15 W1").result(), kError);
  EXPECT_EQ(OwnedRule("M15 junk").result(), kError);
}

TEST(ErgParse, PrefixesAreUpperCase) { EXPECT_EQ(OwnedRule("d1").result(), kError); }

TEST(ErgParse, LettersBehindADayAreIgnored) {
  OwnedRule rule("MD1 15X");
  EXPECT_EQ(rule.As<ErgMonthlyByDay>(kErgMonthlyByDay)->numbers->value, 15);
  EXPECT_EQ(rule.rest(), "");
}

// Kept on purpose: devices write rules with extensions that others do not know.
TEST(ErgParse, TrailingTextIsIgnoredButNotInMinutelyRules) {
  EXPECT_EQ(TreeText(*OwnedRule("D1 1200 junk")), "daily every 1 at 12:0 duration 2");
  EXPECT_EQ(TreeText(*OwnedRule("W1 MO junk #3")), "weekly every 1 [2] duration 2");
  EXPECT_EQ(OwnedRule("M5 junk").result(), kError);
}

TEST(ErgParse, TimesNeedDigitsInAllFourPlaces) {
  for (const char* const text :
       {"D1 +900", "D1 9 00", "D1 a900", "D1 0a00", "D1 09a0", "D1 090a"}) {
    OwnedRule rule(text);
    EXPECT_EQ(rule.As<ErgDaily>(kErgDaily)->times, nullptr) << text;
  }
}

TEST(ErgParse, CharactersBehindMonthsDaysAndYearDaysAreIgnored) {
  EXPECT_EQ(TreeText(*OwnedRule("YM1 6+ 7x$")), "yearly-by-month every 1 on 6 7 duration 2");
  EXPECT_EQ(TreeText(*OwnedRule("MD1 6x 7x$")), "monthly-by-day every 1 on 6 7 duration 2");
  EXPECT_EQ(TreeText(*OwnedRule("YD1 6- 70x$")), "yearly-by-day every 1 on 6 70 duration 2");
}

TEST(ErgParse, LastDayWithAMarkerIsNoDay) {
  OwnedRule rule("MD1 LD$");
  EXPECT_EQ(rule.As<ErgMonthlyByDay>(kErgMonthlyByDay)->numbers, nullptr);
}

TEST(ErgParse, AWeekdayBehindTimesOfAGroupEndsTheParse) {
  OwnedRule rule("MP1 1+ MO 0900 TU 2+ WE");
  const ErgPositionGroup* const group = rule.As<ErgMonthlyByPos>(kErgMonthlyByPos)->groups;
  EXPECT_EQ(group->weekday.next, nullptr);
  EXPECT_EQ(group->next, nullptr);
  EXPECT_EQ(rule.rest(), "TU 2+ WE");
}

TEST(ErgParse, CountsReadLikeAtoi) {
  const auto count = [](const std::string& token) {
    return OwnedRule("D1 " + token).As<ErgDaily>(kErgDaily)->duration;
  };
  EXPECT_EQ(count("#007"), 7);
  EXPECT_EQ(count("#-7"), -7);
  EXPECT_EQ(count("#+7"), 7);
  EXPECT_EQ(count("#\t7x"), 7);
  EXPECT_EQ(count("#"), 0);
  EXPECT_EQ(count("#x7"), 0);
  EXPECT_EQ(count("#+-7"), 0);
}

TEST(ErgParse, NestedKindsAreFinerOnes) {
  const char* const kPrefixes[] = {"M1", "D1", "W1", "MP1", "MD1", "YM1", "YD1"};
  const int kFinest[] = {0, 1, 1, 3, 3, 5, 5};
  for (int outer = 1; outer < 7; ++outer) {
    for (int inner = 0; inner < 7; ++inner) {
      const std::string text = std::string(kPrefixes[outer]) + " " + kPrefixes[inner];
      EXPECT_EQ(OwnedRule(text).result(), inner < kFinest[outer] ? 0U : kError) << text;
    }
  }
}

TEST(ErgParse, AnEndDateIsCutToItsField) {
  ErgRule rule;
  const std::string text = "D1 20031231T235959" + std::string(100000, 'Z');
  EXPECT_EQ(ERG_Parse(text.c_str(), &rule), 0U);
  EXPECT_STREQ(rule.end_date, "20031231T235959ZZZZ");
  ERG_Free(&rule);
}

TEST(ErgParse, AFailureFreesTheTreeAndEmptiesTheRoot) {
  const std::size_t before = MEM_LiveBlocks();
  ErgRule rule;
  EXPECT_EQ(ERG_Parse("YM1 6 12 MP1 1+ 2- MO TU 0900 W1 MO 1000 M5 20031231T000000 x", &rule),
            kError);
  EXPECT_EQ(MEM_LiveBlocks(), before);
  EXPECT_EQ(rule.kind, kErgNone);
  EXPECT_EQ(rule.node, nullptr);
  EXPECT_STREQ(rule.end_date, "");
}

TEST(ErgParse, TheRestIsAPartOfTheText) {
  const std::string text = "W1 MO   junk  #3 ";
  ErgRule rule;
  std::string_view rest;
  ASSERT_EQ(ERG_Parse(text.c_str(), &rule, &rest), 0U);
  EXPECT_EQ(rest.data(), text.data() + 8);
  EXPECT_EQ(rest, "junk  #3 ");
  ERG_Free(&rule);
}

TEST(ErgParse, ListsAreAppendedWithoutWalkingThem) {
  std::string text = "MD1";
  for (int i = 0; i < 200000; ++i) text += " 15";
  OwnedRule rule(text);
  EXPECT_EQ(rule.result(), 0U);
  EXPECT_EQ(GeneratedText(*rule), text);
}

}  // namespace
}  // namespace tamu
