#include "device/pim/pim_fixture.h"

namespace tamu::testing {
namespace {

constexpr int kMonday5January = 5;
constexpr std::int32_t kMonday = 2;
constexpr std::int32_t kWednesday = 8;

class RecurrenceContract : public PimContract {
 protected:
  // Mondays and Wednesdays at 9:00 for 90 minutes, from Monday, 5 January 2004, six times.
  [[nodiscard]] ComPtr<IAppointment> AddSeries() {
    const ComPtr<IAppointment> item =
        AddAppointment(u"Series", Day2004(kMonday5January, 9), Day2004(kMonday5January, 10, 30));
    const ComPtr<IRecurrencePattern> pattern = PatternOf(item);
    EXPECT_EQ(pattern->put_RecurrenceType(platform::kRecursWeekly), hr::kOk);
    EXPECT_EQ(pattern->put_DayOfWeekMask(kMonday | kWednesday), hr::kOk);
    EXPECT_EQ(pattern->put_Occurrences(6), hr::kOk);
    EXPECT_EQ(item->Save(), hr::kOk);
    return item;
  }

  static ComPtr<IRecurrencePattern> PatternOf(const ComPtr<IAppointment>& item) {
    return GotPart(item, &IAppointment::GetRecurrencePattern);
  }
  static ComPtr<IAppointment> Occurrence(const ComPtr<IRecurrencePattern>& pattern, DATE date) {
    ComPtr<IAppointment> occurrence;
    const HRESULT result = pattern->GetOccurrence(date, occurrence.put());
    EXPECT_EQ(result, occurrence ? hr::kOk : hr::kInvalidArgument);
    return occurrence;
  }
  static std::int32_t ExceptionCount(const ComPtr<IAppointment>& item) {
    return Got(GotPart(PatternOf(item), &IRecurrencePattern::get_Exceptions),
               &IExceptions::get_Count);
  }
};
TAMU_OVER_PIM_DEVICES(RecurrenceContract);

TEST_P(RecurrenceContract, GettingThePatternDoesNotMakeTheItemRecur) {
  const ComPtr<IAppointment> item = AddAppointment(u"", Day2004(10, 9), Day2004(10, 10, 30));
  const ComPtr<IRecurrencePattern> pattern = PatternOf(item);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_PatternStartDate), Day2004(10));
  EXPECT_NEAR(Got(pattern, &IRecurrencePattern::get_StartTime), 9.0 / 24, 1e-9);
  EXPECT_NEAR(Got(pattern, &IRecurrencePattern::get_EndTime), 10.5 / 24, 1e-9);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_Duration), 90);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_NoEndDate), kVariantTrue);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_PatternEndDate), kNoDate);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_Interval), 1);
  ASSERT_EQ(pattern->put_Interval(4), hr::kOk);
  EXPECT_EQ(Got(item, &IAppointment::get_IsRecurring), kVariantFalse);
  ASSERT_EQ(item->Save(), hr::kOk);
  EXPECT_EQ(Got(Reopen(item), &IAppointment::get_IsRecurring), kVariantFalse);
  EXPECT_FALSE(Occurrence(pattern, Day2004(10)));
}

TEST_P(RecurrenceContract, PuttingTheTypeMakesTheItemRecur) {
  const ComPtr<IAppointment> item = AddAppointment(u"", Day2004(10, 9), Day2004(10, 10));
  ASSERT_EQ(PatternOf(item)->put_RecurrenceType(platform::kRecursDaily), hr::kOk);
  EXPECT_EQ(Got(item, &IAppointment::get_IsRecurring), kVariantTrue);
  EXPECT_EQ(Got(Reopen(item), &IAppointment::get_IsRecurring), kVariantFalse);
  ASSERT_EQ(item->Save(), hr::kOk);
  const ComPtr<IAppointment> stored = Reopen(item);
  EXPECT_EQ(Got(stored, &IAppointment::get_IsRecurring), kVariantTrue);
  EXPECT_EQ(Got(PatternOf(stored), &IRecurrencePattern::get_RecurrenceType),
            platform::kRecursDaily);
}

TEST_P(RecurrenceContract, TypeResetsTheRuleAndKeepsStartAndEnd) {
  const ComPtr<IAppointment> item = AddSeries();
  const ComPtr<IRecurrencePattern> pattern = PatternOf(item);
  ASSERT_EQ(pattern->put_Interval(2), hr::kOk);
  ASSERT_EQ(pattern->put_DayOfMonth(3), hr::kOk);
  ASSERT_EQ(pattern->put_Instance(4), hr::kOk);
  ASSERT_EQ(pattern->put_MonthOfYear(5), hr::kOk);
  for (const std::int32_t type : {4, 7, -1}) {
    EXPECT_EQ(pattern->put_RecurrenceType(type), hr::kInvalidArgument);
  }
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_Interval), 2);
  ASSERT_EQ(pattern->put_RecurrenceType(platform::kRecursMonthly), hr::kOk);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_Interval), 1);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_DayOfWeekMask), 0);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_DayOfMonth), 0);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_Instance), 0);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_MonthOfYear), 0);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_PatternStartDate), Day2004(kMonday5January));
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_Occurrences), 6);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_NoEndDate), kVariantFalse);
}

TEST_P(RecurrenceContract, EveryPropertyIsKept) {
  const ComPtr<IAppointment> item = AddAppointment(u"", Day2004(10, 9), Day2004(10, 10));
  ComPtr<IRecurrencePattern> pattern = PatternOf(item);
  ASSERT_EQ(pattern->put_RecurrenceType(platform::kRecursYearlyNth), hr::kOk);
  ASSERT_EQ(pattern->put_Interval(2), hr::kOk);
  ASSERT_EQ(pattern->put_DayOfWeekMask(127), hr::kOk);
  ASSERT_EQ(pattern->put_DayOfMonth(-1), hr::kOk);
  ASSERT_EQ(pattern->put_Instance(5), hr::kOk);
  ASSERT_EQ(pattern->put_MonthOfYear(12), hr::kOk);
  ASSERT_EQ(item->Save(), hr::kOk);
  LogonAgain();
  pattern = PatternOf(Open<IAppointment>(1));
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_RecurrenceType), platform::kRecursYearlyNth);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_Interval), 2);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_DayOfWeekMask), 127);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_DayOfMonth), -1);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_Instance), 5);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_MonthOfYear), 12);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_Duration), 60);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_NoEndDate), kVariantTrue);
}

TEST_P(RecurrenceContract, RefusesNumbersThatMeanNothing) {
  const ComPtr<IRecurrencePattern> pattern = PatternOf(AddSeries());
  EXPECT_EQ(pattern->put_Interval(0), hr::kInvalidArgument);
  EXPECT_EQ(pattern->put_DayOfWeekMask(128), hr::kInvalidArgument);
  EXPECT_EQ(pattern->put_DayOfMonth(32), hr::kInvalidArgument);
  EXPECT_EQ(pattern->put_DayOfMonth(-32), hr::kInvalidArgument);
  EXPECT_EQ(pattern->put_Instance(6), hr::kInvalidArgument);
  EXPECT_EQ(pattern->put_MonthOfYear(13), hr::kInvalidArgument);
  EXPECT_EQ(pattern->put_Occurrences(0), hr::kInvalidArgument);
  EXPECT_EQ(pattern->put_Duration(-1), hr::kInvalidArgument);
  EXPECT_EQ(pattern->put_PatternStartDate(kNoDate), hr::kInvalidArgument);
  EXPECT_EQ(pattern->put_PatternEndDate(kNoDate), hr::kInvalidArgument);
}

TEST_P(RecurrenceContract, EndDateIsComputedFromTheCountAtSave) {
  const ComPtr<IAppointment> item = AddSeries();
  // Mondays and Wednesdays 5, 7, 12, 14, 19, 21 January.
  const ComPtr<IRecurrencePattern> pattern = PatternOf(Reopen(item));
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_NoEndDate), kVariantFalse);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_Occurrences), 6);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_PatternEndDate), Day2004(21));
}

TEST_P(RecurrenceContract, CountIsComputedFromTheEndDateThatWasPutLast) {
  const ComPtr<IAppointment> item = AddSeries();
  const ComPtr<IRecurrencePattern> pattern = PatternOf(item);
  ASSERT_EQ(pattern->put_Occurrences(100), hr::kOk);
  ASSERT_EQ(pattern->put_PatternEndDate(Day2004(14)), hr::kOk);
  ASSERT_EQ(item->Save(), hr::kOk);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_Occurrences), 4);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_PatternEndDate), Day2004(14));
  // Another rule keeps the end.
  ASSERT_EQ(pattern->put_Interval(2), hr::kOk);
  ASSERT_EQ(item->Save(), hr::kOk);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_Occurrences), 2);
  ASSERT_EQ(pattern->put_PatternEndDate(Day2004(14)), hr::kOk);
  ASSERT_EQ(pattern->put_Occurrences(3), hr::kOk);
  ASSERT_EQ(item->Save(), hr::kOk);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_PatternEndDate), Day2004(19));
}

TEST_P(RecurrenceContract, NoEndDateTakesTheEndAway) {
  const ComPtr<IAppointment> item = AddSeries();
  const ComPtr<IRecurrencePattern> pattern = PatternOf(item);
  ASSERT_EQ(pattern->put_NoEndDate(1), hr::kOk);
  ASSERT_EQ(item->Save(), hr::kOk);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_PatternEndDate), kNoDate);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_Occurrences), 0);
  EXPECT_TRUE(Occurrence(pattern, Day2004(26)));
  // An end that is not said is none.
  ASSERT_EQ(pattern->put_NoEndDate(kVariantFalse), hr::kOk);
  ASSERT_EQ(item->Save(), hr::kOk);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_NoEndDate), kVariantTrue);
}

TEST_P(RecurrenceContract, StartThatDoesNotFitTheRuleIsKept) {
  const ComPtr<IAppointment> item = AddAppointment(u"", Day2004(6, 9), Day2004(6, 10));
  const ComPtr<IRecurrencePattern> pattern = PatternOf(item);
  ASSERT_EQ(pattern->put_PatternStartDate(Day2004(6, 9)), hr::kOk);
  ASSERT_EQ(pattern->put_RecurrenceType(platform::kRecursWeekly), hr::kOk);
  ASSERT_EQ(pattern->put_DayOfWeekMask(kMonday), hr::kOk);
  ASSERT_EQ(item->Save(), hr::kOk);
  EXPECT_EQ(Got(Reopen(item), &IAppointment::get_Start), Day2004(6, 9));
  EXPECT_FALSE(Occurrence(pattern, Day2004(6)));
  EXPECT_TRUE(Occurrence(pattern, Day2004(12)));
}

TEST_P(RecurrenceContract, PatternAndItemMoveTogether) {
  const ComPtr<IAppointment> item = AddSeries();
  const ComPtr<IRecurrencePattern> pattern = PatternOf(item);
  ASSERT_EQ(pattern->put_PatternStartDate(Day2004(12)), hr::kOk);
  EXPECT_EQ(Got(item, &IAppointment::get_Start), Day2004(12, 9));
  EXPECT_EQ(Got(item, &IAppointment::get_End), Day2004(12, 10, 30));
  ASSERT_EQ(pattern->put_EndTime(Day2004(1, 15)), hr::kOk);
  ASSERT_EQ(pattern->put_StartTime(Day2004(1, 14)), hr::kOk);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_Duration), 60);
  EXPECT_EQ(Got(item, &IAppointment::get_Start), Day2004(12, 14));
  EXPECT_EQ(Got(item, &IAppointment::get_End), Day2004(12, 15));
  ASSERT_EQ(pattern->put_Duration(30), hr::kOk);
  EXPECT_EQ(Got(item, &IAppointment::get_End), Day2004(12, 14, 30));
  ASSERT_EQ(item->put_Start(Day2004(19, 8)), hr::kOk);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_PatternStartDate), Day2004(19));
  EXPECT_NEAR(Got(pattern, &IRecurrencePattern::get_StartTime), 8.0 / 24, 1e-9);
  EXPECT_NEAR(Got(pattern, &IRecurrencePattern::get_EndTime), 8.5 / 24, 1e-9);
}

TEST_P(RecurrenceContract, OccurrencesAreFoundByDayOrByStart) {
  const ComPtr<IAppointment> item = AddSeries();
  const ComPtr<IRecurrencePattern> pattern = PatternOf(item);
  const ComPtr<IAppointment> occurrence = Occurrence(pattern, Day2004(14));
  ASSERT_TRUE(occurrence);
  EXPECT_EQ(Got(occurrence, &IAppointment::get_Start), Day2004(14, 9));
  EXPECT_EQ(Got(occurrence, &IAppointment::get_End), Day2004(14, 10, 30));
  EXPECT_EQ(GotText(occurrence, &IAppointment::get_Subject), u"Series");
  EXPECT_EQ(Got(occurrence, &IAppointment::get_Oid), 1);
  EXPECT_EQ(Got(occurrence, &IAppointment::get_IsRecurring), kVariantTrue);
  EXPECT_TRUE(Occurrence(pattern, Day2004(14, 9)));
  EXPECT_FALSE(Occurrence(pattern, Day2004(14, 9, 1)));
  EXPECT_FALSE(Occurrence(pattern, Day2004(15)));
  EXPECT_FALSE(Occurrence(pattern, Day2004(26)));
  EXPECT_FALSE(Occurrence(pattern, Day2004(kMonday5January - 5)));
  EXPECT_FALSE(Occurrence(pattern, 1e300));
}

TEST_P(RecurrenceContract, DeletedOccurrenceIsStoredAtOnce) {
  const ComPtr<IAppointment> item = AddSeries();
  const ComPtr<IRecurrencePattern> pattern = PatternOf(item);
  ASSERT_EQ(item->put_Subject(Arg(u"not saved")), hr::kOk);
  const ComPtr<IAppointment> occurrence = Occurrence(pattern, Day2004(14, 9));
  ASSERT_EQ(occurrence->Delete(), hr::kOk);
  EXPECT_EQ(occurrence->Delete(), hr::kItemNotFound);
  EXPECT_FALSE(Occurrence(pattern, Day2004(14)));
  EXPECT_EQ(ExceptionCount(item), 1);

  const ComPtr<IAppointment> stored = Reopen(item);
  EXPECT_EQ(GotText(stored, &IAppointment::get_Subject), u"Series");
  const ComPtr<IRecurrencePattern> stored_pattern = PatternOf(stored);
  EXPECT_FALSE(Occurrence(stored_pattern, Day2004(14)));
  EXPECT_TRUE(Occurrence(stored_pattern, Day2004(12)));
  const ComPtr<IExceptions> exceptions =
      GotPart(stored_pattern, &IRecurrencePattern::get_Exceptions);
  ASSERT_EQ(Got(exceptions, &IExceptions::get_Count), 1);
  ComPtr<IException> exception;
  ASSERT_EQ(exceptions->Item(1, exception.put()), hr::kOk);
  EXPECT_EQ(Got(exception, &IException::get_OriginalDate), Day2004(14, 9));
  EXPECT_EQ(Got(exception, &IException::get_Deleted), kVariantTrue);
  ComPtr<IAppointment> none;
  EXPECT_EQ(exception->get_AppointmentItem(none.put()), hr::kFalse);
  EXPECT_FALSE(none);
  EXPECT_EQ(exceptions->Item(0, exception.put()), hr::kInvalidArgument);
  EXPECT_EQ(exceptions->Item(2, exception.put()), hr::kInvalidArgument);

  ASSERT_EQ(item->Save(), hr::kOk);
  EXPECT_EQ(ExceptionCount(Reopen(item)), 1);
  EXPECT_EQ(GotText(Reopen(item), &IAppointment::get_Subject), u"not saved");
}

TEST_P(RecurrenceContract, ExceptionsStandInTheOrderOfTheirDates) {
  const ComPtr<IAppointment> item = AddSeries();
  const ComPtr<IRecurrencePattern> pattern = PatternOf(item);
  for (const int day : {14, 21, 5, 12}) {
    ASSERT_EQ(Occurrence(pattern, Day2004(day))->Delete(), hr::kOk);
  }
  const ComPtr<IExceptions> exceptions =
      GotPart(PatternOf(Reopen(item)), &IRecurrencePattern::get_Exceptions);
  std::int32_t index = 0;
  for (const int day : {5, 12, 14, 21}) {
    ComPtr<IException> exception;
    ASSERT_EQ(exceptions->Item(++index, exception.put()), hr::kOk);
    EXPECT_EQ(Got(exception, &IException::get_OriginalDate), Day2004(day, 9));
  }
  // The end of the series is that of the pattern.
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_Occurrences), 6);
}

TEST_P(RecurrenceContract, OccurrenceOfAnUnsavedSeriesIsDeletedWithItsSave) {
  const ComPtr<IAppointment> item = NewAppointment();
  ASSERT_EQ(item->put_Start(Day2004(10, 9)), hr::kOk);
  const ComPtr<IRecurrencePattern> pattern = PatternOf(item);
  ASSERT_EQ(pattern->put_RecurrenceType(platform::kRecursDaily), hr::kOk);
  ASSERT_EQ(Occurrence(pattern, Day2004(11))->Delete(), hr::kOk);
  ASSERT_EQ(item->Save(), hr::kOk);
  EXPECT_EQ(ExceptionCount(Reopen(item)), 1);
}

TEST_P(RecurrenceContract, AnotherRuleDropsExceptionsThatDoNotBelongToIt) {
  const ComPtr<IAppointment> item = AddSeries();
  const ComPtr<IRecurrencePattern> pattern = PatternOf(item);
  ASSERT_EQ(Occurrence(pattern, Day2004(12))->Delete(), hr::kOk);
  ASSERT_EQ(Occurrence(pattern, Day2004(14))->Delete(), hr::kOk);
  ASSERT_EQ(pattern->put_DayOfWeekMask(kMonday), hr::kOk);
  ASSERT_EQ(item->put_Start(Day2004(5, 11)), hr::kOk);
  ASSERT_EQ(item->Save(), hr::kOk);
  const ComPtr<IExceptions> exceptions =
      GotPart(PatternOf(Reopen(item)), &IRecurrencePattern::get_Exceptions);
  ASSERT_EQ(Got(exceptions, &IExceptions::get_Count), 1);
  ComPtr<IException> exception;
  ASSERT_EQ(exceptions->Item(1, exception.put()), hr::kOk);
  EXPECT_EQ(Got(exception, &IException::get_OriginalDate), Day2004(12, 11));
}

TEST_P(RecurrenceContract, ChangedOccurrencesAreRefused) {
  const ComPtr<IAppointment> item = AddSeries();
  const ComPtr<IAppointment> occurrence = Occurrence(PatternOf(item), Day2004(7));
  EXPECT_EQ(occurrence->Save(), hr::kOk);
  ASSERT_EQ(occurrence->put_Subject(Arg(u"other")), hr::kOk);
  EXPECT_EQ(occurrence->Save(), hr::kNotImplemented);
  EXPECT_EQ(occurrence->ClearRecurrencePattern(), hr::kInvalidArgument);
  EXPECT_EQ(GotText(Reopen(item), &IAppointment::get_Subject), u"Series");
  EXPECT_EQ(ExceptionCount(Reopen(item)), 0);
  ComPtr<IAppointment> copy;
  ASSERT_EQ(occurrence->Copy(copy.put()), hr::kOk);
  EXPECT_EQ(Got(copy, &IAppointment::get_IsRecurring), kVariantFalse);
  EXPECT_EQ(Got(copy, &IAppointment::get_Oid), 0);
}

TEST_P(RecurrenceContract, ClearingEndsTheSeriesAtSave) {
  const ComPtr<IAppointment> item = AddSeries();
  const ComPtr<IRecurrencePattern> pattern = PatternOf(item);
  const ComPtr<IAppointment> occurrence = Occurrence(pattern, Day2004(14));
  ASSERT_EQ(Occurrence(pattern, Day2004(12))->Delete(), hr::kOk);
  ASSERT_EQ(item->ClearRecurrencePattern(), hr::kOk);
  EXPECT_EQ(Got(item, &IAppointment::get_IsRecurring), kVariantFalse);
  EXPECT_EQ(occurrence->Delete(), hr::kItemNotFound);
  EXPECT_EQ(Got(Reopen(item), &IAppointment::get_IsRecurring), kVariantTrue);
  ASSERT_EQ(item->Save(), hr::kOk);
  const ComPtr<IAppointment> stored = Reopen(item);
  EXPECT_EQ(Got(stored, &IAppointment::get_IsRecurring), kVariantFalse);
  EXPECT_EQ(ExceptionCount(stored), 0);
  EXPECT_EQ(Got(stored, &IAppointment::get_Start), Day2004(kMonday5January, 9));
  EXPECT_EQ(Got(PatternOf(stored), &IRecurrencePattern::get_NoEndDate), kVariantTrue);
}

TEST_P(RecurrenceContract, OccurrenceOfADeletedSeriesIsGone) {
  const ComPtr<IAppointment> item = AddSeries();
  const ComPtr<IAppointment> occurrence = Occurrence(PatternOf(item), Day2004(14));
  ASSERT_EQ(Reopen(item)->Delete(), hr::kOk);
  EXPECT_EQ(occurrence->Delete(), hr::kItemNotFound);
  EXPECT_EQ(ExceptionCount(item), 0);
}

TEST_P(RecurrenceContract, TasksHaveNoOccurrencesToGive) {
  const ComPtr<ITask> task = NewTask();
  ASSERT_EQ(task->put_StartDate(Day2004(3)), hr::kOk);
  const ComPtr<IRecurrencePattern> pattern = GotPart(task, &ITask::GetRecurrencePattern);
  ASSERT_EQ(pattern->put_RecurrenceType(platform::kRecursDaily), hr::kOk);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_PatternStartDate), Day2004(3));
  EXPECT_FALSE(Occurrence(pattern, Day2004(3)));
  EXPECT_EQ(pattern->put_StartTime(0.5), hr::kInvalidArgument);
  EXPECT_EQ(pattern->put_EndTime(0.5), hr::kInvalidArgument);
  EXPECT_EQ(pattern->put_Duration(5), hr::kInvalidArgument);
  ASSERT_EQ(pattern->put_PatternEndDate(Day2004(9)), hr::kOk);
  ASSERT_EQ(task->Save(), hr::kOk);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_Occurrences), 7);
  ASSERT_EQ(task->ClearRecurrencePattern(), hr::kOk);
  EXPECT_EQ(Got(task, &ITask::get_IsRecurring), kVariantFalse);
}

}  // namespace
}  // namespace tamu::testing
