#include "recurrence/rule_generator.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "recurrence/rule_support.h"

namespace tamu {
namespace {

using testing::GeneratedText;
using testing::NumberList;
using testing::OwnedRule;

void SetEndDate(ErgRule* rule, const char* text) { std::strcpy(rule->end_date, text); }

TEST(ErgGenerate, WeeklyWithItsDaysAndCount) {
  OwnedRule rule;
  auto* const weekly = rule.Make<ErgWeekly>(kErgWeekly, 1);
  weekly->entries = MEM_New<ErgWeekdayEntry>().release();
  weekly->entries->weekday = 2;
  weekly->entries->next = MEM_New<ErgWeekdayEntry>().release();
  weekly->entries->next->weekday = 6;
  weekly->duration = 10;
  EXPECT_EQ(GeneratedText(*rule), "W1 MO FR #10");
}

TEST(ErgGenerate, WeekdaysChainedToAnEntryStandBeforeItsTimes) {
  OwnedRule rule;
  auto* const weekly = rule.Make<ErgWeekly>(kErgWeekly, 1);
  weekly->entries = MEM_New<ErgWeekdayEntry>().release();
  weekly->entries->weekday = 2;
  weekly->entries->more_weekdays = NumberList({4, 9, 7});
  weekly->entries->more_weekdays->end_marker = 1;
  weekly->entries->times = MEM_New<ErgTime>().release();
  weekly->entries->times->hour = 8;
  EXPECT_EQ(GeneratedText(*rule), "W1 MO WE$ SA 0800");
}

TEST(ErgGenerate, MonthlyByPositionWithAnEndDate) {
  OwnedRule rule;
  auto* const monthly = rule.Make<ErgMonthlyByPos>(kErgMonthlyByPos, 1);
  monthly->groups = MEM_New<ErgPositionGroup>().release();
  monthly->groups->occurrence.value = -1;
  monthly->groups->weekday.value = 6;
  SetEndDate(&*rule, "20031231T000000Z");
  EXPECT_EQ(GeneratedText(*rule), "MP1 1- FR 20031231T000000Z");
}

// Kept on purpose: a rule read with "LD" comes out in the signed form.
TEST(ErgGenerate, TheLastDayIsWrittenInTheSignedForm) {
  EXPECT_EQ(GeneratedText(*OwnedRule("MD1 LD")), "MD1 1-");
}

TEST(ErgGenerate, DailyAtItsTimesForEver) {
  OwnedRule rule("D1 0930 1700 #0");
  EXPECT_EQ(GeneratedText(*rule), "D1 0930 1700 #0");
}

TEST(ErgGenerate, AMinutelyRuleOfTheDefaultCountIsItsHead) {
  OwnedRule rule;
  rule.Make<ErgMinutely>(kErgMinutely, 15);
  EXPECT_EQ(GeneratedText(*rule), "M15");
}

TEST(ErgGenerate, APositionGroupWithoutWeekdayWritesItsOccurrences) {
  OwnedRule rule;
  auto* const monthly = rule.Make<ErgMonthlyByPos>(kErgMonthlyByPos, 1);
  monthly->groups = MEM_New<ErgPositionGroup>().release();
  monthly->groups->occurrence.value = 1;
  monthly->groups->occurrence.next = NumberList({3});
  EXPECT_EQ(GeneratedText(*rule), "MP1 1+ 3+");
}

TEST(ErgGenerate, WithoutATopNodeTheEndDateStandsAloneBehindItsBlank) {
  for (ErgKind kind = kErgMinutely; kind <= kErgYearlyByDay; ++kind) {
    OwnedRule rule;
    rule->kind = kind;
    EXPECT_EQ(GeneratedText(*rule), "");
    SetEndDate(&*rule, "20031231T000000Z");
    EXPECT_EQ(GeneratedText(*rule), " 20031231T000000Z");
  }
}

TEST(ErgGenerate, KindsOutside1To7FailAndEmptyTheText) {
  for (const ErgKind kind : {kErgNone, ErgKind{8}, ErgKind{0xFFFFFFFF}}) {
    ErgRule rule = {};
    rule.kind = kind;
    std::int32_t node = 0;
    rule.node = &node;
    SetEndDate(&rule, "20031231T000000Z");
    char text[4] = "abc";
    EXPECT_EQ(ERG_Generate(rule, text), static_cast<TamuResult>(TAMU_GENERAL_FAILURE));
    EXPECT_STREQ(text, "");
    EXPECT_EQ(ERG_TextSize(rule), 1U);
  }
}

TEST(ErgGenerate, WhatStoodInTheBufferIsGone) {
  OwnedRule rule("D1");
  char text[] = "something longer";
  EXPECT_EQ(ERG_Generate(*rule, text), 0U);
  EXPECT_STREQ(text, "D1");
}

TEST(ErgGenerate, OnlyTheCountOf2IsLeftOut) {
  OwnedRule rule;
  auto* const daily = rule.Make<ErgDaily>(kErgDaily, 1);
  EXPECT_EQ(GeneratedText(*rule), "D1");
  daily->duration = 0;
  EXPECT_EQ(GeneratedText(*rule), "D1 #0");
  daily->duration = 3;
  EXPECT_EQ(GeneratedText(*rule), "D1 #3");
  daily->duration = -2;
  EXPECT_EQ(GeneratedText(*rule), "D1 #-2");
}

TEST(ErgGenerate, DaysOfTheMonthAloneHaveTheirSignBehindThem) {
  for (const ErgKind kind : {kErgMonthlyByDay, kErgYearlyByMonth, kErgYearlyByDay}) {
    OwnedRule rule;
    auto* const node = rule.Make<ErgMonthlyByDay>(kErgMonthlyByDay, 1);
    node->numbers = NumberList({5, -5});
    node->numbers->next->end_marker = 1;
    if (kind != kErgMonthlyByDay) {
      ErgNumber* const numbers = node->numbers;
      node->numbers = nullptr;
      ERG_Free(&*rule);
      if (kind == kErgYearlyByMonth) rule.Make<ErgYearlyByMonth>(kind, 1)->numbers = numbers;
      if (kind == kErgYearlyByDay) rule.Make<ErgYearlyByDay>(kind, 1)->numbers = numbers;
    }
    const std::string text = GeneratedText(*rule);
    EXPECT_EQ(text.substr(3), kind == kErgMonthlyByDay ? " 5 5-$" : " 5 -5$");
  }
}

TEST(ErgGenerate, TheSmallestNumberIsWrittenWhole) {
  OwnedRule rule;
  rule.Make<ErgMonthlyByDay>(kErgMonthlyByDay, INT32_MIN)->numbers = NumberList({INT32_MIN});
  EXPECT_EQ(GeneratedText(*rule), "MD-2147483648 2147483648-");
}

TEST(ErgGenerate, TimesArePaddedToTwoDigits) {
  OwnedRule rule;
  auto* const daily = rule.Make<ErgDaily>(kErgDaily, 1);
  daily->times = MEM_New<ErgTime>().release();
  *daily->times = {5, 7, 1, nullptr};
  EXPECT_EQ(GeneratedText(*rule), "D1 0507$");
  *daily->times = {123, -4, 0, nullptr};
  EXPECT_EQ(GeneratedText(*rule), "D1 123-4");
}

TEST(ErgGenerate, WeekdaysWithoutANameAreSkipped) {
  OwnedRule rule;
  auto* const weekly = rule.Make<ErgWeekly>(kErgWeekly, 1);
  weekly->entries = MEM_New<ErgWeekdayEntry>().release();
  weekly->entries->weekday = 8;
  weekly->entries->end_marker = 1;
  weekly->entries->more_weekdays = NumberList({0, -1, 1});
  EXPECT_EQ(GeneratedText(*rule), "W1 SU");
}

TEST(ErgGenerate, ANestedKindOutsideTheRangeWritesNothing) {
  OwnedRule inner("W1 MO");
  OwnedRule rule;
  auto* const monthly = rule.Make<ErgMonthlyByDay>(kErgMonthlyByDay, 1);
  monthly->nested = inner->node;
  for (const ErgKind kind : {kErgNone, kErgMonthlyByPos, kErgYearlyByDay, ErgKind{8}}) {
    monthly->nested_kind = kind;
    EXPECT_EQ(GeneratedText(*rule), "MD1") << kind;
  }
  monthly->nested_kind = kErgWeekly;
  EXPECT_EQ(GeneratedText(*rule), "MD1 W1 MO");
  monthly->nested_kind = kErgNone;
  monthly->nested = nullptr;
}

TEST(ErgGenerate, AMissingNestedNodeWritesNothing) {
  OwnedRule rule;
  rule.Make<ErgYearlyByMonth>(kErgYearlyByMonth, 1)->nested_kind = kErgWeekly;
  EXPECT_EQ(GeneratedText(*rule), "YM1");
}

TEST(ErgGenerate, AFullEndDateFieldIsNotReadBeyond) {
  OwnedRule rule("D1");
  std::memset(rule->end_date, 'x', sizeof rule->end_date);
  EXPECT_EQ(GeneratedText(*rule), "D1 " + std::string(20, 'x'));
}

TEST(ErgGenerateNew, AllocatesJustTheText) {
  OwnedRule rule("W1 MO FR #10");
  MemPtr<char> text;
  EXPECT_EQ(ERG_GenerateNew(*rule, &text), 0U);
  EXPECT_STREQ(text.get(), "W1 MO FR #10");
}

TEST(ErgGenerateNew, TellsWhenMemoryRunsOut) {
  OwnedRule rule("W1 MO FR #10");
  MemPtr<char> text;
  MEM_FailNth(1);
  EXPECT_EQ(ERG_GenerateNew(*rule, &text), static_cast<TamuResult>(TAMU_OUT_OF_MEMORY));
  MEM_FailNth(0);
  EXPECT_EQ(text, nullptr);
}

TEST(ErgGenerateNew, GivesNoTextForTheEmptyRule) {
  const std::size_t before = MEM_LiveBlocks();
  MemPtr<char> text;
  EXPECT_EQ(ERG_GenerateNew({}, &text), static_cast<TamuResult>(TAMU_GENERAL_FAILURE));
  EXPECT_EQ(text, nullptr);
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

}  // namespace
}  // namespace tamu
