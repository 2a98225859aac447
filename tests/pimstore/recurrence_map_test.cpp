#include "pimstore/recurrence_map.h"

#include <gtest/gtest.h>

#include "pimstore/store_session.h"

namespace tamu {
namespace {

using platform::ComPtr;
using platform::IAppointment;
using platform::IRecurrencePattern;
using testing::CallWatch;
using testing::Date;
using testing::Lines;
using testing::LogCapture;
using P = IRecurrencePattern;
using Strings = std::vector<std::string>;

class RecurrenceTest : public testing::SessionTest {
 protected:
  RecurrenceTest() {
    Put(item_, &IAppointment::put_Start, Date(2003, 4, 2, 10).days);
    EXPECT_EQ(item_->GetRecurrencePattern(pattern_.put()), platform::hr::kOk);
  }
  ~RecurrenceTest() override { PROP_Free(chain_); }

  // A fresh pattern.
  void Reset() { ASSERT_EQ(item_->ClearRecurrencePattern(), platform::hr::kOk); }

  RuleTranslation ToStore(const char* rule) { return RecurrenceToStore(pattern_.get(), rule); }
  // What the pattern says as a rule's text; "none" without one.
  std::string FromStore() {
    PROP_Free(std::exchange(chain_, nullptr));
    RecurrenceFromStore(pattern_.get(), &chain_);
    const Strings lines = Lines(chain_);
    EXPECT_LE(lines.size(), 1U);
    return lines.empty() ? "none" : lines[0].substr(1);
  }
  // "type interval mask day instance month".
  std::string Fields() {
    std::string text;
    for (const auto getter : {&P::get_RecurrenceType, &P::get_Interval, &P::get_DayOfWeekMask,
                              &P::get_DayOfMonth, &P::get_Instance, &P::get_MonthOfYear}) {
      if (!text.empty()) text += ' ';
      text += std::to_string(Get(pattern_, getter));
    }
    return text;
  }
  void PutField(ItemPutter<P, std::int32_t> putter, std::int32_t value) {
    Put(pattern_, putter, value);
  }

  ComPtr<IAppointment> item_ = New<IAppointment>();
  ComPtr<IRecurrencePattern> pattern_;
  Ref<Property> chain_ = nullptr;

 private:
  // Items live no longer than the session.
  void TearDown() override {
    pattern_.reset();
    item_.reset();
  }
};
using RecurrenceToStoreTest = RecurrenceTest;
using RecurrenceFromStoreTest = RecurrenceTest;

TEST_F(RecurrenceToStoreTest, EveryKindHasItsFields) {
  const std::pair<const char*, const char*> rules[] = {
      {"D2 #0", "0 2 0 0 0 0"},
      {"D1 0900 1700 #0", "0 1 0 0 0 0"},
      {"W1 MO FR #0", "1 1 34 0 0 0"},
      {"W3 SU SA #0", "1 3 65 0 0 0"},
      {"MP1 1- FR #0", "3 1 32 0 5 0"},
      {"MP1 2+ TU TH #0", "3 1 20 0 2 0"},
      {"MP2 5+ MO 1+ TU #0", "3 2 2 0 5 0"},
      {"MP1 4- MO #0", "3 1 2 0 2 0"},
      {"MP1 5- MO #0", "3 1 2 0 1 0"},
      {"MP1 2+ #0", "3 1 0 0 2 0"},
      {"MD1 15 20 #0", "2 1 0 15 0 0"},
      {"MD6 LD #0", "2 6 0 -1 0 0"},
      {"MD1 2- #0", "2 1 0 -2 0 0"},
      {"YM1 6 7 #0 MD1 9 10", "5 1 0 9 0 6"},
      {"YM5 11 #0 MP1 4+ TH", "6 1 16 0 4 11"},
      {"YD1 1 #0", "5 1 0 1 0 1"},
      {"YD1 31 #0", "5 1 0 31 0 1"},
      {"YD1 365 #0", "5 1 0 31 0 12"},
      {"YD1 334 #0", "5 1 0 30 0 11"},
      {"YD1 335 #0", "5 1 0 1 0 12"},
  };
  for (const auto& [rule, fields] : rules) {
    Reset();
    EXPECT_EQ(ToStore(rule), RuleTranslation::kDone) << rule;
    EXPECT_EQ(Fields(), fields) << rule;
    EXPECT_NE(Get(pattern_, &P::get_NoEndDate), 0) << rule;
  }
}

TEST_F(RecurrenceToStoreTest, TheLastFridayIsInstance5WithMask32) {
  ToStore("MP1 1- FR");
  EXPECT_EQ(Get(pattern_, &P::get_RecurrenceType), platform::kRecursMonthlyNth);
  EXPECT_EQ(Get(pattern_, &P::get_Instance), 5);
  EXPECT_EQ(Get(pattern_, &P::get_DayOfWeekMask), 32);
}

TEST_F(RecurrenceToStoreTest, FebruaryAlwaysHas28DaysKeptOnPurpose) {
  ToStore("YD1 60");
  EXPECT_EQ(Get(pattern_, &P::get_MonthOfYear), 3);
  EXPECT_EQ(Get(pattern_, &P::get_DayOfMonth), 1);
}

TEST_F(RecurrenceToStoreTest, TheTypeIsPutFirstAndTheEndLast) {
  const std::pair<const char*, Strings> rules[] = {
      {"D1 #0", {"put_RecurrenceType", "put_Interval", "put_NoEndDate"}},
      {"W1 MO #3", {"put_RecurrenceType", "put_Interval", "put_DayOfWeekMask", "put_Occurrences"}},
      {"MP1 1+ MO 20031231T000000",
       {"put_RecurrenceType", "put_Interval", "put_Instance", "put_DayOfWeekMask",
        "put_PatternEndDate"}},
      {"MD1 1", {"put_RecurrenceType", "put_Interval", "put_DayOfMonth", "put_Occurrences"}},
      {"YM1 6 MP1 1+ MO",
       {"put_RecurrenceType", "put_DayOfWeekMask", "put_Instance", "put_MonthOfYear",
        "put_Occurrences"}},
      {"YM1 6 MD1 9",
       {"put_RecurrenceType", "put_MonthOfYear", "put_DayOfMonth", "put_Occurrences"}},
      {"YD1 366", {"put_RecurrenceType", "put_MonthOfYear", "put_DayOfMonth", "put_Occurrences"}},
  };
  for (const auto& [rule, calls] : rules) {
    Reset();
    const CallWatch watch;
    ToStore(rule);
    EXPECT_EQ(watch.Only({"put_"}), calls) << rule;
    EXPECT_EQ(watch.calls().size(), calls.size()) << rule;
  }
}

TEST_F(RecurrenceToStoreTest, TheEndIsForEverACountOrADate) {
  ToStore("D1 #0 20031231T000000");
  EXPECT_NE(Get(pattern_, &P::get_NoEndDate), 0);
  Reset();
  ToStore("D1 #7");
  EXPECT_EQ(Get(pattern_, &P::get_NoEndDate), 0);
  EXPECT_EQ(Get(pattern_, &P::get_Occurrences), 7);
  Reset();
  ToStore("D1");
  EXPECT_EQ(Get(pattern_, &P::get_Occurrences), 2) << "what a rule without a count means";
  Reset();
  ToStore("D1 #7 20031231T000000");
  EXPECT_EQ(Get(pattern_, &P::get_NoEndDate), 0);
  EXPECT_EQ(Get(pattern_, &P::get_PatternEndDate), Date(2003, 12, 31).days);
  Reset();
  ToStore("D1 20031230T230000Z");
  EXPECT_EQ(Get(pattern_, &P::get_PatternEndDate), Date(2003, 12, 31).days);
}

TEST_F(RecurrenceToStoreTest, TheCountIsThatOfTheFirstRule) {
  ToStore("YM1 6 #5 MD1 9 #7");
  EXPECT_EQ(Get(pattern_, &P::get_Occurrences), 5);
}

TEST_F(RecurrenceToStoreTest, WhatThePatternCannotSayIsLoggedInTwoLines) {
  for (const char* rule : {"W1 #0", "MP1 #0", "MD1 #0", "YM1 6 #0", "YM1 #0 MD1 9", "YM1 6 #0 MD1",
                           "YM1 6 #0 MP1", "YM1 6 #0 W1 MO", "YM1 6 #0 D1", "YD1 #0"}) {
    const LogCapture log;
    const CallWatch watch;
    EXPECT_EQ(ToStore(rule), RuleTranslation::kNotExpressible) << rule;
    EXPECT_EQ(watch.calls(), Strings{}) << rule;
    ASSERT_EQ(log.texts(),
              (Strings{"TAMU:  The Extended Rule Grammar could not be translated to an",
                       "       Outlook Recurrence pattern. Item will be sent as One-time."}))
        << rule;
    EXPECT_EQ(log.lines()[0].severity, LogSeverity::kInformation);
    EXPECT_EQ(log.lines()[1].severity, LogSeverity::kInformation);
  }
}

TEST_F(RecurrenceToStoreTest, ATextThatIsNoRuleIsLoggedAndChangesNothing) {
  const LogCapture log;
  const CallWatch watch;
  EXPECT_EQ(ToStore("every day"), RuleTranslation::kUnreadable);
  EXPECT_EQ(watch.calls(), Strings{});
  ASSERT_EQ(log.texts(), Strings{"TAMU:  ERG_Parse failed (code=19)"});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
}

TEST_F(RecurrenceToStoreTest, ARuleByMinutesLeavesThePatternAlone) {
  const LogCapture log;
  const CallWatch watch;
  EXPECT_EQ(ToStore("M15 #4"), RuleTranslation::kDone);
  EXPECT_EQ(watch.calls(), Strings{});
  EXPECT_EQ(log.texts(), Strings{});
}

TEST_F(RecurrenceFromStoreTest, EveryTypeHasItsRule) {
  struct Row {
    std::int32_t type, interval, mask, day, instance, month;
    const char* rule;
  };
  const Row rows[] = {
      {platform::kRecursDaily, 3, 0, 0, 0, 0, "D3 #0"},
      {platform::kRecursDaily, 3, 62, 0, 0, 0, "W1 MO TU WE TH FR #0"},
      {platform::kRecursWeekly, 2, 65, 0, 0, 0, "W2 SU SA #0"},
      {platform::kRecursMonthly, 1, 0, 15, 0, 0, "MD1 15 #0"},
      {platform::kRecursMonthly, 6, 0, -1, 0, 0, "MD6 1- #0"},
      {platform::kRecursMonthlyNth, 1, 32, 0, 5, 0, "MP1 1- FR #0"},
      {platform::kRecursMonthlyNth, 2, 20, 0, 2, 0, "MP2 2+ TU TH #0"},
      {platform::kRecursYearly, 9, 0, 9, 0, 6, "YM1 6 #0 MD1 9"},
      {platform::kRecursYearlyNth, 9, 16, 0, 4, 11, "YM1 11 #0 MP1 4+ TH"},
      {platform::kRecursYearlyNth, 9, 3, 0, 5, 1, "YM1 1 #0 MP1 1- SU MO"},
  };
  for (const Row& row : rows) {
    Reset();
    PutField(&P::put_RecurrenceType, row.type);
    PutField(&P::put_Interval, row.interval);
    PutField(&P::put_DayOfWeekMask, row.mask);
    PutField(&P::put_DayOfMonth, row.day);
    PutField(&P::put_Instance, row.instance);
    PutField(&P::put_MonthOfYear, row.month);
    Put(pattern_, &P::put_NoEndDate, platform::kVariantTrue);
    const LogCapture log;
    EXPECT_EQ(FromStore(), row.rule);
    EXPECT_EQ(log.texts(), Strings{});
  }
}

TEST_F(RecurrenceFromStoreTest, AnEndIsWrittenAsCountAndDateInUtc) {
  PutField(&P::put_RecurrenceType, platform::kRecursDaily);
  PutField(&P::put_Occurrences, 5);
  ASSERT_EQ(item_->Save(), platform::hr::kOk);
  EXPECT_EQ(FromStore(), "D1 #5 20030405T230000Z");
}

TEST_F(RecurrenceFromStoreTest, ACountOf2IsNotWritten) {
  PutField(&P::put_RecurrenceType, platform::kRecursDaily);
  PutField(&P::put_Occurrences, 2);
  ASSERT_EQ(item_->Save(), platform::hr::kOk);
  EXPECT_EQ(FromStore(), "D1 20030402T230000Z");
}

TEST_F(RecurrenceFromStoreTest, AYearlyRuleHasACountAndNoEndDate) {
  PutField(&P::put_RecurrenceType, platform::kRecursYearly);
  PutField(&P::put_MonthOfYear, 4);
  PutField(&P::put_DayOfMonth, 2);
  PutField(&P::put_Occurrences, 3);
  ASSERT_EQ(item_->Save(), platform::hr::kOk);
  EXPECT_EQ(FromStore(), "YM1 4 #3 MD1 2");
}

TEST_F(RecurrenceFromStoreTest, RulesComeBackAsTheyWere) {
  for (const char* rule :
       {"D1 #0", "D12 #0", "W1 MO #0", "W52 SU MO TU WE TH FR SA #0", "MD1 31 #0", "MD1 1- #0",
        "MP1 1+ SU #0", "MP3 1- SA #0", "YM1 2 #0 MD1 29", "YM1 12 #0 MP1 1- MO"}) {
    Reset();
    ASSERT_EQ(ToStore(rule), RuleTranslation::kDone);
    EXPECT_EQ(FromStore(), rule);
  }
}

TEST_F(RecurrenceFromStoreTest, ATypeThatCannotBeReadHasNoRule) {
  PutField(&P::put_RecurrenceType, platform::kRecursDaily);
  const LogCapture log;
  const CallWatch watch(std::string("IRecurrencePattern::get_RecurrenceType"));
  EXPECT_EQ(FromStore(), "none");
  ASSERT_EQ(log.texts(), Strings{"TAMU:  ERG_Generate failed (code=1)"});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
}

TEST_F(RecurrenceFromStoreTest, ARuleThatCannotBeBuiltIsToldFieldByField) {
  for (const auto& [type, nodes] : {std::pair{platform::kRecursDaily, 1U},
                                    {platform::kRecursWeekly, 3U},
                                    {platform::kRecursMonthly, 2U},
                                    {platform::kRecursMonthlyNth, 3U},
                                    {platform::kRecursYearly, 4U},
                                    {platform::kRecursYearlyNth, 5U}}) {
    Reset();
    PutField(&P::put_RecurrenceType, type);
    PutField(&P::put_DayOfWeekMask, type == platform::kRecursDaily ? 0 : 34);
    PutField(&P::put_DayOfMonth, 9);
    PutField(&P::put_MonthOfYear, 6);
    PutField(&P::put_Instance, 3);
    Put(pattern_, &P::put_NoEndDate, platform::kVariantTrue);
    const bool by_day = type == platform::kRecursMonthly || type == platform::kRecursYearly;
    const bool nth = type == platform::kRecursMonthlyNth || type == platform::kRecursYearlyNth;
    const bool yearly = type >= platform::kRecursYearly;
    for (std::uint64_t n = 1; n <= nodes; ++n) {
      const LogCapture log;
      MEM_FailNth(n);
      const std::string rule = FromStore();
      EXPECT_TRUE(MEM_FailureStruck());
      MEM_FailNth(0);
      EXPECT_EQ(rule, "none");
      EXPECT_EQ(log.texts(),
                (Strings{"TAMU:  Error creating Extended Recurrence Grammar from pattern (code=11)",
                         "       RecurrenceType='" + std::to_string(type) + "'",
                         type == platform::kRecursDaily ? "       DayOfWeekMask='0x0'"
                                                        : "       DayOfWeekMask='0x22'",
                         "       Occurrences='0'", "       Enddate=''", "       Interval='1'",
                         yearly ? "       MonthOfYear='6'" : "       MonthOfYear='0'",
                         by_day ? "       DayOfMonth='9'" : "       DayOfMonth='0'",
                         nth ? "       Instance='3'" : "       Instance='0'"}))
          << type << ' ' << n;
      for (const LogCapture::Line& line : log.lines()) {
        EXPECT_EQ(line.severity, LogSeverity::kInformation);
      }
    }
  }
}

TEST_F(RecurrenceFromStoreTest, WithoutMemoryForItsTextThereIsNoRule) {
  PutField(&P::put_RecurrenceType, platform::kRecursDaily);
  Put(pattern_, &P::put_NoEndDate, platform::kVariantTrue);
  const LogCapture log;
  MEM_FailNth(2);
  EXPECT_EQ(FromStore(), "none");
  MEM_FailNth(0);
  EXPECT_EQ(log.texts(), Strings{"TAMU:  ERG_Generate failed (code=11)"});
}

}  // namespace
}  // namespace tamu
