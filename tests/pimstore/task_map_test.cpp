#include "pimstore/task_map.h"

#include <gtest/gtest.h>

#include "pimstore/store_session.h"

namespace tamu {
namespace {

using platform::ComPtr;
using platform::ITask;
using testing::CallWatch;
using testing::Date;
using testing::Line;
using testing::LogCapture;
using testing::ToDo;
using T = ToDoShape;
using Strings = std::vector<std::string>;

constexpr const char* kTooLate = "TAMU:  Reminder date/time is after the DUE date.";
constexpr const char* kTooEarly =
    "TAMU:  DALARM 'Reminder date/time' is more than 45 days before the START date.";

class TaskTest : public testing::SessionTest {
 protected:
  static ComPtr<ITask> Filled(ToDo& todo) {
    ComPtr<ITask> item = New<ITask>();
    TaskToStore(item.get(), todo.shape());
    return item;
  }
  static std::int32_t ImportanceOf(const char* priority) {
    ToDo todo;
    todo.With(&T::prop_priority, priority);
    return Get(Filled(todo), &ITask::get_Importance);
  }
  static std::int32_t SensitivityOf(const char* text) {
    ToDo todo;
    todo.With(&T::prop_class, text);
    return Get(Filled(todo), &ITask::get_Sensitivity);
  }
};
using TaskToStoreTest = TaskTest;
using TaskFromStoreTest = TaskTest;

TEST_F(TaskToStoreTest, TheFieldsArePutInOneFixedOrder) {
  ToDo todo;
  todo.With(&T::prop_dalarm, "20030401T090000")
      .With(&T::prop_rrule, "D1 #3")
      .With(&T::prop_description, "Text")
      .With(&T::prop_class, "PUBLIC")
      .With(&T::prop_status, "COMPLETED")
      .With(&T::prop_priority, "2")
      .With(&T::prop_due, "20030405")
      .With(&T::prop_dtstart, "20030402")
      .With(&T::prop_categories, "Work")
      .With(&T::prop_summary, "Task");
  const ComPtr<ITask> item = New<ITask>();
  const CallWatch watch;
  TaskToStore(item.get(), todo.shape());
  EXPECT_EQ(
      watch.Only({"put_", "Save", "Clear", "GetRecurrencePattern"}),
      (Strings{"put_Subject", "put_Categories", "put_StartDate", "put_DueDate", "put_Importance",
               "put_Complete", "put_Sensitivity", "put_Body", "GetRecurrencePattern",
               "put_PatternStartDate", "put_RecurrenceType", "put_Interval", "put_Occurrences",
               "Save", "put_ReminderTime", "put_ReminderSet", "put_ReminderOptions"}));
}

TEST_F(TaskToStoreTest, AnEmptyRecordEndsRecurrenceAndReminderAlone) {
  ToDo todo;
  const ComPtr<ITask> item = New<ITask>();
  const CallWatch watch;
  TaskToStore(item.get(), todo.shape());
  EXPECT_EQ(watch.calls(), (Strings{"ITask::ClearRecurrencePattern", "ITask::get_IsRecurring",
                                    "ITask::put_ReminderSet"}));
}

TEST_F(TaskToStoreTest, EmptyPropertiesKeepWhatIsStored) {
  ToDo full;
  full.With(&T::prop_summary, "Task")
      .With(&T::prop_dtstart, "20030402")
      .With(&T::prop_due, "20030403")
      .With(&T::prop_status, "COMPLETED")
      .With(&T::prop_class, "PRIVATE")
      .With(&T::prop_priority, "2");
  const ComPtr<ITask> item = Filled(full);
  ToDo empty;
  for (const auto field : {&T::prop_summary, &T::prop_dtstart, &T::prop_due, &T::prop_status,
                           &T::prop_class, &T::prop_priority}) {
    empty.With(field, "");
  }
  TaskToStore(item.get(), empty.shape());
  EXPECT_EQ(Text(item, &ITask::get_Subject), u"Task");
  EXPECT_EQ(Get(item, &ITask::get_StartDate), Date(2003, 4, 2).days);
  EXPECT_EQ(Get(item, &ITask::get_DueDate), Date(2003, 4, 3).days);
  EXPECT_NE(Get(item, &ITask::get_Complete), 0);
  EXPECT_EQ(Get(item, &ITask::get_Sensitivity), platform::kSensitivityPrivate);
  EXPECT_EQ(Get(item, &ITask::get_Importance), platform::kImportanceHigh);
}

TEST_F(TaskToStoreTest, AStartWithoutADueDateIsTheDueDateToo) {
  ToDo todo;
  todo.With(&T::prop_dtstart, "20030402");
  EXPECT_EQ(Get(Filled(todo), &ITask::get_DueDate), Date(2003, 4, 2).days);
}

TEST_F(TaskToStoreTest, AStoredDueDateIsKept) {
  const ComPtr<ITask> item = New<ITask>();
  Put(item, &ITask::put_DueDate, Date(2003, 5, 1).days);
  ToDo todo;
  todo.With(&T::prop_dtstart, "20030402");
  TaskToStore(item.get(), todo.shape());
  EXPECT_EQ(Get(item, &ITask::get_DueDate), Date(2003, 5, 1).days);
}

TEST_F(TaskToStoreTest, TheRecordsDueDateWins) {
  ToDo todo;
  todo.With(&T::prop_dtstart, "20030402").With(&T::prop_due, "20030501");
  EXPECT_EQ(Get(Filled(todo), &ITask::get_DueDate), Date(2003, 5, 1).days);
}

TEST_F(TaskToStoreTest, PrioritiesAreImportances) {
  EXPECT_EQ(ImportanceOf("0"), 0);
  EXPECT_EQ(ImportanceOf("1"), 1);
  EXPECT_EQ(ImportanceOf("2"), 2);
  for (const char* other : {"3", "9", "-1", "12", "99999999999"}) {
    EXPECT_EQ(ImportanceOf(other), 1) << other;
  }
  EXPECT_EQ(ImportanceOf("high"), 0) << "reads as 0";
  EXPECT_EQ(ImportanceOf(" 2x"), 2);
}

TEST_F(TaskToStoreTest, Priority3ReadsBackAs1) {
  ToDo todo;
  todo.With(&T::prop_priority, "3");
  ToDo back;
  TaskFromStore(Filled(todo).get(), &back.shape());
  EXPECT_EQ(Line(back->prop_priority), ":1");
}

TEST_F(TaskToStoreTest, OnlyCompletedInCapitalsCompletes) {
  for (const char* status : {"COMPLETED", "completed", "NEEDS ACTION", "COMPLETED "}) {
    ToDo todo;
    todo.With(&T::prop_status, status).With(&T::prop_completed, "20010101");
    const ComPtr<ITask> item = Filled(todo);
    EXPECT_EQ(Get(item, &ITask::get_Complete) != 0, std::string(status) == "COMPLETED") << status;
    EXPECT_NE(Get(item, &ITask::get_DateCompleted), Date(2001, 1, 1).days);
  }
}

TEST_F(TaskToStoreTest, PrivateAndConfidentialAreSensitive) {
  EXPECT_EQ(SensitivityOf("PRIVATE"), 2);
  EXPECT_EQ(SensitivityOf("CONFIDENTIAL"), 2);
  EXPECT_EQ(SensitivityOf("PUBLIC"), 0);
  EXPECT_EQ(SensitivityOf("private"), 0);
}

TEST_F(TaskToStoreTest, ARuleBeginsWithTheStartOrElseTheDueDate) {
  for (const bool has_start : {true, false}) {
    ToDo todo;
    todo.With(&T::prop_dtstart, has_start ? "20030402" : "")
        .With(&T::prop_due, "20030405")
        .With(&T::prop_rrule, "D1 #0");
    const ComPtr<ITask> item = Filled(todo);
    ComPtr<platform::IRecurrencePattern> pattern;
    ASSERT_EQ(item->GetRecurrencePattern(pattern.put()), platform::hr::kOk);
    EXPECT_EQ(Get(pattern, &platform::IRecurrencePattern::get_PatternStartDate),
              Date(2003, 4, has_start ? 2 : 5).days);
  }
}

TEST_F(TaskToStoreTest, ARuleWithoutAnyDateLeavesThePatternsStart) {
  ToDo todo;
  todo.With(&T::prop_rrule, "D1 #0");
  const ComPtr<ITask> item = New<ITask>();
  const CallWatch watch;
  TaskToStore(item.get(), todo.shape());
  EXPECT_EQ(watch.Only({"PatternStartDate"}), Strings{});
  EXPECT_EQ(watch.Only({"put_RecurrenceType"}), Strings{"put_RecurrenceType"});
}

TEST_F(TaskToStoreTest, WithoutARuleTheRecurrenceIsCleared) {
  ToDo todo;
  todo.With(&T::prop_dtstart, "20030402").With(&T::prop_rrule, "D1 #0");
  const ComPtr<ITask> item = Filled(todo);
  EXPECT_NE(Get(item, &ITask::get_IsRecurring), 0);
  ToDo once;
  TaskToStore(item.get(), once.shape());
  EXPECT_EQ(Get(item, &ITask::get_IsRecurring), 0);
}

TEST_F(TaskToStoreTest, WithoutAPatternTheStepEnds) {
  ToDo todo;
  todo.With(&T::prop_dtstart, "20030402").With(&T::prop_rrule, "D1 #0");
  const ComPtr<ITask> item = New<ITask>();
  const CallWatch watch(std::string("ITask::GetRecurrencePattern"));
  TaskToStore(item.get(), todo.shape());
  EXPECT_EQ(watch.Only({"Pattern", "Clear"}), Strings{"GetRecurrencePattern"});
}

class TaskReminderTest : public TaskTest {
 protected:
  // A task with these dates and an alarm; its reminder was set to 1 January 2000 before.
  static ComPtr<ITask> WithAlarm(const char* start, const char* due, const char* alarm) {
    ComPtr<ITask> item = New<ITask>();
    Put(item, &ITask::put_ReminderTime, Date(2000, 1, 1).days);
    Put(item, &ITask::put_ReminderOptions, 1);
    ToDo todo;
    todo.With(&T::prop_dtstart, start).With(&T::prop_due, due).With(&T::prop_dalarm, alarm);
    TaskToStore(item.get(), todo.shape());
    return item;
  }
  static bool IsRefused(const ComPtr<ITask>& item) {
    return Get(item, &ITask::get_ReminderSet) == 0 &&
           Get(item, &ITask::get_ReminderTime) == Date(2000, 1, 1).days &&
           Get(item, &ITask::get_ReminderOptions) == 1;
  }
};

TEST_F(TaskReminderTest, OnTheDueDayItIsMovedToMidnight) {
  const LogCapture log;
  const ComPtr<ITask> item = WithAlarm("20030401", "20030405", "20030405T170000");
  EXPECT_EQ(Get(item, &ITask::get_ReminderTime), Date(2003, 4, 5).days);
  EXPECT_NE(Get(item, &ITask::get_ReminderSet), 0);
  EXPECT_EQ(Get(item, &ITask::get_ReminderOptions), 5);
  ASSERT_EQ(log.lines().size(), 1U);
  EXPECT_EQ(log.lines()[0].text, "TAMU:  Reminder date/time adjusted to midnight  - 04/05/2003");
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kInformation);
}

TEST_F(TaskReminderTest, AfterTheDueDayItIsRefused) {
  const LogCapture log;
  EXPECT_TRUE(IsRefused(WithAlarm("20030401", "20030405T120000", "20030406T000000")));
  ASSERT_EQ(log.texts(), Strings{kTooLate});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
}

TEST_F(TaskReminderTest, UpTo45WholeDaysBeforeTheStartItIsTaken) {
  const LogCapture log;
  EXPECT_EQ(Get(WithAlarm("20030401", "20030405", "20030215T000000"), &ITask::get_ReminderTime),
            Date(2003, 2, 15).days);
  EXPECT_EQ(Get(WithAlarm("20030401", "20030405", "20030214T000001"), &ITask::get_ReminderTime),
            Date(2003, 2, 14, 0, 0, 1).days)
      << "part of a day is not counted";
  EXPECT_EQ(log.texts(), Strings{});
}

TEST_F(TaskReminderTest, FortySixDaysBeforeTheStartIsRefused) {
  const LogCapture log;
  EXPECT_TRUE(IsRefused(WithAlarm("20030401", "20030405", "20030214T000000")));
  ASSERT_EQ(log.texts(), Strings{kTooEarly});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
}

TEST_F(TaskReminderTest, BetweenStartAndDueDateItIsTaken) {
  EXPECT_EQ(Get(WithAlarm("20030401", "20030405", "20030403T080000"), &ITask::get_ReminderTime),
            Date(2003, 4, 3, 8).days);
}

TEST_F(TaskReminderTest, WithoutAStartOnlyTheDueDayIsTaken) {
  {
    const LogCapture log;
    EXPECT_TRUE(IsRefused(WithAlarm("", "20030405", "20030404T120000")));
    EXPECT_EQ(log.texts(), Strings{kTooEarly});
  }
  EXPECT_EQ(Get(WithAlarm("", "20030405", "20030405T120000"), &ITask::get_ReminderTime),
            Date(2003, 4, 5).days);
}

TEST_F(TaskReminderTest, WithoutAnyDateItIsRefused) {
  const LogCapture log;
  EXPECT_TRUE(IsRefused(WithAlarm("", "", "20030404T120000")));
  EXPECT_EQ(log.texts(), Strings{kTooEarly});
}

TEST_F(TaskReminderTest, ATimeThatCannotBeReadIsRefused) {
  const LogCapture log;
  EXPECT_TRUE(IsRefused(WithAlarm("", "", "soon")));
  EXPECT_TRUE(IsRefused(WithAlarm("", "20030405", "20030432")));
  EXPECT_TRUE(log.Has(kTooLate));
}

TEST_F(TaskReminderTest, WithoutAnAlarmItIsSwitchedOff) {
  const ComPtr<ITask> item = WithAlarm("20030401", "20030405", "20030403T080000");
  ToDo todo;
  todo.With(&T::prop_dalarm, "");
  TaskToStore(item.get(), todo.shape());
  EXPECT_EQ(Get(item, &ITask::get_ReminderSet), 0);
  EXPECT_EQ(Get(item, &ITask::get_ReminderTime), Date(2003, 4, 3, 8).days);
}

TEST_F(TaskReminderTest, OnlyTheRunTimeOfAnAlarmCounts) {
  EXPECT_EQ(
      Get(WithAlarm("20030401", "20030405", "20030403T080000;;3;beep"), &ITask::get_ReminderTime),
      Date(2003, 4, 3, 8).days);
}

TEST_F(TaskFromStoreTest, ANewTaskHasWhatIsAlwaysWritten) {
  ToDo todo;
  RECORD_Free(KIND_CALENDAR, todo.get());
  TaskFromStore(New<ITask>().get(), &todo.shape());
  EXPECT_EQ(todo->object_type, 2U);
  EXPECT_EQ(todo->component, COMPONENT_TODO);
  EXPECT_STREQ(todo->version, "1.0");
  EXPECT_STREQ(todo->luid, "00000000");
  EXPECT_EQ(Line(todo->prop_categories), ":");
  EXPECT_EQ(Line(todo->prop_priority), ":1");
  EXPECT_EQ(Line(todo->prop_status), ":NEEDS ACTION");
  EXPECT_EQ(Line(todo->prop_summary), ":");
  EXPECT_EQ(Line(todo->prop_class), ":PUBLIC");
  for (const auto field :
       {&T::prop_completed, &T::prop_description, &T::prop_due, &T::prop_dtend, &T::prop_dtstart,
        &T::prop_dalarm, &T::prop_rrule, &T::prop_exdate, &T::prop_attendee}) {
    EXPECT_EQ(todo.shape().*field, nullptr);
  }
}

TEST_F(TaskFromStoreTest, EverythingComesBackInLocalTime) {
  ToDo todo;
  todo.With(&T::prop_summary, "a=0D=0Ab", "ENCODING=QUOTED-PRINTABLE")
      .With(&T::prop_description, "Text")
      .With(&T::prop_categories, "Work")
      .With(&T::prop_dtstart, "20030402T000000")
      .With(&T::prop_due, "20030405T000000")
      .With(&T::prop_priority, "2")
      .With(&T::prop_class, "CONFIDENTIAL")
      .With(&T::prop_rrule, "W2 MO FR #0")
      .With(&T::prop_dalarm, "20030403T070000Z");
  const std::string id = Add(KIND_CALENDAR, todo.get());
  ToDo back;
  TaskFromStore(Stored<ITask>(id).get(), &back.shape());
  EXPECT_EQ(back->luid, id);
  EXPECT_EQ(Line(back->prop_summary), "ENCODING=QUOTED-PRINTABLE:a=0D=0Ab");
  EXPECT_EQ(Line(back->prop_description), ":Text");
  EXPECT_EQ(Line(back->prop_categories), ":Work");
  EXPECT_EQ(Line(back->prop_dtstart), ":20030402T000000");
  EXPECT_EQ(Line(back->prop_due), ":20030405T000000");
  EXPECT_EQ(Line(back->prop_priority), ":2");
  EXPECT_EQ(Line(back->prop_class), ":PRIVATE");
  EXPECT_EQ(Line(back->prop_rrule), ":W2 MO FR #0");
  EXPECT_EQ(Line(back->prop_dalarm), ":20030403T080000");
  EXPECT_EQ(back->prop_completed, nullptr);
}

TEST_F(TaskFromStoreTest, ACompletedTaskHasItsDate) {
  const ComPtr<ITask> item = New<ITask>();
  Put(item, &ITask::put_Complete, platform::kVariantTrue);
  ToDo todo;
  TaskFromStore(item.get(), &todo.shape());
  EXPECT_EQ(Line(todo->prop_status), ":COMPLETED");
  EXPECT_EQ(Line(todo->prop_completed).size(), std::string(":20030402T000000").size());
}

TEST_F(TaskFromStoreTest, OtherSensitivitiesHaveNoClass) {
  const ComPtr<ITask> item = New<ITask>();
  Put(item, &ITask::put_Sensitivity, 1);
  ToDo todo;
  TaskFromStore(item.get(), &todo.shape());
  EXPECT_EQ(todo->prop_class, nullptr);
}

}  // namespace
}  // namespace tamu
