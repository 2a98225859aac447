#include "device/pim/pim_fixture.h"
#include "platform/time.h"

namespace tamu::testing {
namespace {

using TaskContract = PimContract;
TAMU_OVER_PIM_DEVICES(TaskContract);

// It is 15 March 2004, 23:30 UTC.
void LateInMarch(platform::SYSTEMTIME* time) { *time = {2004, 3, 1, 15, 23, 30, 0, 0}; }
constexpr int kMarch15 = 31 + 29 + 15;

TEST_P(TaskContract, NewOneHasNoDates) {
  const ComPtr<ITask> task = NewTask();
  EXPECT_EQ(Got(task, &ITask::get_StartDate), kNoDate);
  EXPECT_EQ(Got(task, &ITask::get_DueDate), kNoDate);
  EXPECT_EQ(Got(task, &ITask::get_DateCompleted), kNoDate);
  EXPECT_EQ(Got(task, &ITask::get_ReminderTime), kNoDate);
  EXPECT_EQ(Got(task, &ITask::get_Importance), platform::kImportanceNormal);
  EXPECT_EQ(Got(task, &ITask::get_Sensitivity), platform::kSensitivityNormal);
  EXPECT_EQ(Got(task, &ITask::get_ReminderSet), kVariantFalse);
  EXPECT_EQ(Got(task, &ITask::get_Complete), kVariantFalse);
  EXPECT_EQ(Got(task, &ITask::get_TeamTask), kVariantFalse);
  EXPECT_EQ(Got(task, &ITask::get_IsRecurring), kVariantFalse);
}

TEST_P(TaskContract, EveryPropertyIsKept) {
  const ComPtr<ITask> task = NewTask();
  EXPECT_EQ(task->put_Subject(Arg(u"s")), hr::kOk);
  EXPECT_EQ(task->put_Categories(Arg(u"c, d")), hr::kOk);
  EXPECT_EQ(task->put_StartDate(Day2004(1)), hr::kOk);
  EXPECT_EQ(task->put_DueDate(Day2004(2)), hr::kOk);
  EXPECT_EQ(task->put_Importance(platform::kImportanceHigh), hr::kOk);
  EXPECT_EQ(task->put_Sensitivity(platform::kSensitivityPrivate), hr::kOk);
  EXPECT_EQ(task->put_TeamTask(1), hr::kOk);
  EXPECT_EQ(task->put_Body(Arg(u"b")), hr::kOk);
  EXPECT_EQ(task->put_ReminderSet(kVariantTrue), hr::kOk);
  EXPECT_EQ(task->put_ReminderSoundFile(Arg(u"\\ding.wav")), hr::kOk);
  EXPECT_EQ(task->put_ReminderTime(Day2004(1, 8)), hr::kOk);
  EXPECT_EQ(task->put_ReminderOptions(platform::kReminderDialog), hr::kOk);
  ASSERT_EQ(task->Save(), hr::kOk);
  LogonAgain();
  const ComPtr<ITask> stored = Open<ITask>(1);
  EXPECT_EQ(GotText(stored, &ITask::get_Subject), u"s");
  EXPECT_EQ(GotText(stored, &ITask::get_Categories), u"c, d");
  EXPECT_EQ(Got(stored, &ITask::get_StartDate), Day2004(1));
  EXPECT_EQ(Got(stored, &ITask::get_DueDate), Day2004(2));
  EXPECT_EQ(Got(stored, &ITask::get_Importance), platform::kImportanceHigh);
  EXPECT_EQ(Got(stored, &ITask::get_Sensitivity), platform::kSensitivityPrivate);
  EXPECT_EQ(Got(stored, &ITask::get_TeamTask), kVariantTrue);
  EXPECT_EQ(GotText(stored, &ITask::get_Body), u"b");
  EXPECT_EQ(Got(stored, &ITask::get_ReminderSet), kVariantTrue);
  EXPECT_EQ(GotText(stored, &ITask::get_ReminderSoundFile), u"\\ding.wav");
  EXPECT_EQ(Got(stored, &ITask::get_ReminderTime), Day2004(1, 8));
  EXPECT_EQ(Got(stored, &ITask::get_ReminderOptions), platform::kReminderDialog);
}

TEST_P(TaskContract, CompletingStampsTheLocalDay) {
  const platform::ScopedOverride<void(platform::SYSTEMTIME*)> now(platform::GetSystemTime,
                                                                  &LateInMarch);
  const ScopedTimeZone zone(kPlusOneZone);
  const ComPtr<ITask> task = NewTask();
  ASSERT_EQ(task->put_Complete(1), hr::kOk);
  EXPECT_EQ(Got(task, &ITask::get_Complete), kVariantTrue);
  EXPECT_EQ(Got(task, &ITask::get_DateCompleted), Day2004(kMarch15 + 1));
  ASSERT_EQ(task->Save(), hr::kOk);
  EXPECT_EQ(Got(Reopen(task), &ITask::get_DateCompleted), Day2004(kMarch15 + 1));
  ASSERT_EQ(task->put_Complete(kVariantFalse), hr::kOk);
  EXPECT_EQ(Got(task, &ITask::get_Complete), kVariantFalse);
  EXPECT_EQ(Got(task, &ITask::get_DateCompleted), kNoDate);
}

TEST_P(TaskContract, CompletingWithoutATimeChangesNothing) {
  const ComPtr<ITask> task = NewTask();
  const platform::ScopedFailure failure(platform::SystemTimeToFileTime);
  EXPECT_EQ(task->put_Complete(kVariantTrue), hr::kFail);
  EXPECT_EQ(Got(task, &ITask::get_Complete), kVariantFalse);
}

TEST_P(TaskContract, RefusesNumbersThatMeanNothing) {
  const ComPtr<ITask> task = NewTask();
  EXPECT_EQ(task->put_Importance(3), hr::kInvalidArgument);
  EXPECT_EQ(task->put_Importance(-1), hr::kInvalidArgument);
  EXPECT_EQ(task->put_Sensitivity(4), hr::kInvalidArgument);
  EXPECT_EQ(Got(task, &ITask::get_Importance), platform::kImportanceNormal);
}

TEST_P(TaskContract, IsNoAppointment) {
  const ComPtr<ITask> task = NewTask();
  void* other = this;
  EXPECT_EQ(task->QueryInterface(platform::IID_IAppointment, &other), hr::kNoInterface);
  EXPECT_EQ(other, nullptr);
}

TEST_P(TaskContract, SkippingMovesToTheNextOccurrence) {
  const ComPtr<ITask> task = NewTask();
  EXPECT_EQ(task->SkipRecurrence(), hr::kInvalidArgument);
  ASSERT_EQ(task->put_StartDate(Day2004(5)), hr::kOk);
  ASSERT_EQ(task->put_DueDate(Day2004(7)), hr::kOk);
  ComPtr<IRecurrencePattern> pattern = GotPart(task, &ITask::GetRecurrencePattern);
  ASSERT_EQ(pattern->put_RecurrenceType(platform::kRecursDaily), hr::kOk);
  ASSERT_EQ(pattern->put_Interval(3), hr::kOk);
  ASSERT_EQ(pattern->put_Occurrences(2), hr::kOk);
  ASSERT_EQ(task->SkipRecurrence(), hr::kOk);
  EXPECT_EQ(Got(task, &ITask::get_StartDate), Day2004(8));
  EXPECT_EQ(Got(task, &ITask::get_DueDate), Day2004(10));
  ASSERT_EQ(task->Save(), hr::kOk);
  const ComPtr<ITask> stored = Reopen(task);
  EXPECT_EQ(Got(stored, &ITask::get_StartDate), Day2004(8));
  EXPECT_EQ(stored->SkipRecurrence(), hr::kFalse);
  EXPECT_EQ(Got(stored, &ITask::get_StartDate), Day2004(8));
}

TEST_P(TaskContract, CopyKeepsThePattern) {
  const ComPtr<ITask> task = NewTask();
  ASSERT_EQ(task->put_DueDate(Day2004(7)), hr::kOk);
  ComPtr<IRecurrencePattern> pattern = GotPart(task, &ITask::GetRecurrencePattern);
  ASSERT_EQ(pattern->put_RecurrenceType(platform::kRecursWeekly), hr::kOk);
  ASSERT_EQ(pattern->put_DayOfWeekMask(8), hr::kOk);
  ComPtr<ITask> copy;
  ASSERT_EQ(task->Copy(copy.put()), hr::kOk);
  EXPECT_EQ(Got(copy, &ITask::get_IsRecurring), kVariantTrue);
  pattern = GotPart(copy, &ITask::GetRecurrencePattern);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_DayOfWeekMask), 8);
  EXPECT_EQ(Got(pattern, &IRecurrencePattern::get_PatternStartDate), Day2004(7));
}

}  // namespace
}  // namespace tamu::testing
