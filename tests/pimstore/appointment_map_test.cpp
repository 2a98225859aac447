#include "pimstore/appointment_map.h"

#include <gtest/gtest.h>

#include "pimstore/store_session.h"

namespace tamu {
namespace {

using platform::ComPtr;
using platform::IAppointment;
using platform::IRecipient;
using platform::IRecipients;
using testing::CallWatch;
using testing::Date;
using testing::Event;
using testing::Line;
using testing::Lines;
using testing::LogCapture;
using E = EventShape;
using Strings = std::vector<std::string>;

constexpr const char* kTooLate = "TAMU:  Reminder date/time is after the DUE date.";
constexpr const char* kTooEarly =
    "TAMU:  DALARM 'Reminder date/time' is more than 45 days before the START date.";

class AppointmentTest : public testing::SessionTest {
 protected:
  static ComPtr<IAppointment> Filled(Event& event) {
    ComPtr<IAppointment> item = New<IAppointment>();
    AppointmentToStore(item.get(), event.shape());
    return item;
  }
  static std::int32_t BusyStatusOf(const char* status) {
    Event event;
    event.With(&E::prop_status, status);
    return Get(Filled(event), &IAppointment::get_BusyStatus);
  }
  // "name|address" of every recipient.
  static Strings Recipients(const ComPtr<IAppointment>& item) {
    ComPtr<IRecipients> recipients;
    EXPECT_EQ(item->get_Recipients(recipients.put()), platform::hr::kOk);
    Strings all;
    for (std::int32_t i = 1; i <= Get(recipients, &IRecipients::get_Count); ++i) {
      ComPtr<IRecipient> recipient;
      EXPECT_EQ(recipients->Item(i, recipient.put()), platform::hr::kOk);
      const std::u16string text =
          Text(recipient, &IRecipient::get_Name) + u"|" + Text(recipient, &IRecipient::get_Address);
      all.emplace_back(text.begin(), text.end());
    }
    return all;
  }
};
using AppointmentToStoreTest = AppointmentTest;
using AppointmentFromStoreTest = AppointmentTest;
using AttendeesTest = AppointmentTest;
using ExceptionsTest = AppointmentTest;

TEST_F(AppointmentToStoreTest, TheFieldsArePutInOneFixedOrder) {
  Event event;
  event.With(&E::prop_dalarm, "20030401T090000")
      .With(&E::prop_attendee, "Ann <a@b>")
      .With(&E::prop_exdate, "20030403T100000")
      .With(&E::prop_rrule, "D1 #3")
      .With(&E::prop_description, "Text")
      .With(&E::prop_status, "TENTATIVE")
      .With(&E::prop_class, "PUBLIC")
      .With(&E::prop_dtend, "20030402T110000")
      .With(&E::prop_dtstart, "20030402T100000")
      .With(&E::prop_categories, "Work")
      .With(&E::prop_location, "Here")
      .With(&E::prop_summary, "Event");
  event->all_day = 1;
  const ComPtr<IAppointment> item = New<IAppointment>();
  const CallWatch watch;
  AppointmentToStore(item.get(), event.shape());
  EXPECT_EQ(watch.Only({"put_", "Save", "Clear", "GetRecurrencePattern", "Occurrence", "Delete",
                        "Recipients::"}),
            (Strings{"put_Subject",
                     "put_Location",
                     "put_Categories",
                     "put_Start",
                     "put_End",
                     "put_Sensitivity",
                     "put_BusyStatus",
                     "put_Body",
                     "GetRecurrencePattern",
                     "put_PatternStartDate",
                     "put_RecurrenceType",
                     "put_Interval",
                     "put_Occurrences",
                     "Save",
                     "GetOccurrence",
                     "Delete",
                     "put_AllDayEvent",
                     "get_Count",
                     "Add",
                     "put_Address",
                     "put_ReminderMinutesBeforeStart",
                     "put_ReminderSet",
                     "put_ReminderOptions"}));
}

TEST_F(AppointmentToStoreTest, AnEmptyRecordTouchesWhatIsAlwaysPutAlone) {
  Event event;
  const ComPtr<IAppointment> item = New<IAppointment>();
  const CallWatch watch;
  AppointmentToStore(item.get(), event.shape());
  EXPECT_EQ(watch.calls(), (Strings{"IAppointment::ClearRecurrencePattern",
                                    "IAppointment::put_AllDayEvent", "IAppointment::get_Recipients",
                                    "IRecipients::get_Count", "IAppointment::put_ReminderSet"}));
}

TEST_F(AppointmentToStoreTest, TheAllDayFlagIsAlwaysPut) {
  Event event;
  event->all_day = 1;
  const ComPtr<IAppointment> item = Filled(event);
  EXPECT_NE(Get(item, &IAppointment::get_AllDayEvent), 0);
  Event none;
  AppointmentToStore(item.get(), none.shape());
  EXPECT_EQ(Get(item, &IAppointment::get_AllDayEvent), 0);
}

TEST_F(AppointmentToStoreTest, StatusIsTheBusyStatus) {
  EXPECT_EQ(BusyStatusOf("TENTATIVE"), platform::kBusyTentative);
  EXPECT_EQ(BusyStatusOf("DECLINED"), platform::kBusyFree);
  EXPECT_EQ(BusyStatusOf("CONFIRMED"), platform::kBusyBusy);
  EXPECT_EQ(BusyStatusOf("declined"), platform::kBusyBusy);
}

TEST_F(AppointmentToStoreTest, TheStartOfARuleIsTheStart) {
  Event event;
  event.With(&E::prop_dtstart, "20030402T100000").With(&E::prop_rrule, "D1 #0");
  ComPtr<platform::IRecurrencePattern> pattern;
  const ComPtr<IAppointment> item = Filled(event);
  ASSERT_EQ(item->GetRecurrencePattern(pattern.put()), platform::hr::kOk);
  EXPECT_EQ(
      static_cast<std::int32_t>(Get(pattern, &platform::IRecurrencePattern::get_PatternStartDate)),
      static_cast<std::int32_t>(Date(2003, 4, 2).days));
  EXPECT_EQ(Get(item, &IAppointment::get_Start), Date(2003, 4, 2, 10).days);
}

TEST_F(AppointmentToStoreTest, WithoutARuleTheRecurrenceIsCleared) {
  Event event;
  event.With(&E::prop_dtstart, "20030402T100000").With(&E::prop_rrule, "D1 #0");
  const ComPtr<IAppointment> item = Filled(event);
  EXPECT_NE(Get(item, &IAppointment::get_IsRecurring), 0);
  Event once;
  once.With(&E::prop_rrule, "");
  AppointmentToStore(item.get(), once.shape());
  EXPECT_EQ(Get(item, &IAppointment::get_IsRecurring), 0);
}

class AppointmentReminderTest : public AppointmentTest {
 protected:
  // An appointment on 16 April 2003 at 10:00 with an alarm; 99 minutes were put before.
  static ComPtr<IAppointment> WithAlarm(const char* alarm) {
    ComPtr<IAppointment> item = New<IAppointment>();
    Put(item, &IAppointment::put_ReminderMinutesBeforeStart, 99);
    Put(item, &IAppointment::put_ReminderOptions, 1);
    Event event;
    event.With(&E::prop_dtstart, "20030416T100000").With(&E::prop_dalarm, alarm);
    AppointmentToStore(item.get(), event.shape());
    return item;
  }
  static std::int32_t MinutesOf(const ComPtr<IAppointment>& item) {
    return Get(item, &IAppointment::get_ReminderMinutesBeforeStart);
  }
  static bool IsRefused(const ComPtr<IAppointment>& item) {
    return Get(item, &IAppointment::get_ReminderSet) == 0 && MinutesOf(item) == 99 &&
           Get(item, &IAppointment::get_ReminderOptions) == 1;
  }
};

TEST_F(AppointmentReminderTest, MinutesAreCountedAndSecondsDropped) {
  const ComPtr<IAppointment> item = WithAlarm("20030415T085801");
  EXPECT_EQ(MinutesOf(item), 24 * 60 + 61);
  EXPECT_NE(Get(item, &IAppointment::get_ReminderSet), 0);
  EXPECT_EQ(Get(item, &IAppointment::get_ReminderOptions), 5);
}

TEST_F(AppointmentReminderTest, AtTheStartItIsZeroMinutes) {
  EXPECT_EQ(MinutesOf(WithAlarm("20030416T100000")), 0);
}

TEST_F(AppointmentReminderTest, AfterTheStartItIsRefused) {
  const LogCapture log;
  EXPECT_TRUE(IsRefused(WithAlarm("20030416T100001")));
  ASSERT_EQ(log.texts(), Strings{kTooLate});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
}

TEST_F(AppointmentReminderTest, Exactly45DaysAre64800MinutesAndOneMoreIsRefused) {
  EXPECT_EQ(MinutesOf(WithAlarm("20030302T100000")), 64800);
  EXPECT_EQ(MinutesOf(WithAlarm("20030302T095901")), 64800) << "seconds are dropped";
  const LogCapture log;
  EXPECT_TRUE(IsRefused(WithAlarm("20030302T095900")));
  ASSERT_EQ(log.texts(), Strings{kTooEarly});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
}

TEST_F(AppointmentReminderTest, WithoutAnAlarmItIsSwitchedOff) {
  const ComPtr<IAppointment> item = WithAlarm("20030416T093000");
  Event event;
  AppointmentToStore(item.get(), event.shape());
  EXPECT_EQ(Get(item, &IAppointment::get_ReminderSet), 0);
  EXPECT_EQ(MinutesOf(item), 30);
}

TEST_F(AttendeesTest, NameAndAddressAreSplitAndTheBlankKeptOnPurpose) {
  Event event;
  event.With(&E::prop_attendee, "Ann <a@b>")
      .With(&E::prop_attendee, "c@d")
      .With(&E::prop_attendee, "<e@f>")
      .With(&E::prop_attendee, "G <")
      .With(&E::prop_attendee, "H<i@j>k<l>")
      .With(&E::prop_attendee, "x> y <z>")
      .With(&E::prop_attendee, "");
  EXPECT_EQ(Recipients(Filled(event)),
            (Strings{"Ann |a@b", "c@d|c@d", "|e@f", "G <|G <", "H|i@j", "x> y |"}));
}

TEST_F(AttendeesTest, WhoWasThereIsRemovedFromTheLastOn) {
  Event event;
  event.With(&E::prop_attendee, "a").With(&E::prop_attendee, "b");
  const ComPtr<IAppointment> item = Filled(event);
  Event other;
  other.With(&E::prop_attendee, "c");
  const LogCapture log;
  const CallWatch watch;
  AppointmentToStore(item.get(), other.shape());
  EXPECT_EQ(watch.Only({"IRecipients::"}), (Strings{"get_Count", "Remove", "Remove", "Add"}));
  ASSERT_EQ(log.texts(), Strings{"TAMU:  2 attendees will be removed."});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kInformation);
}

TEST_F(AttendeesTest, ARecordWithoutAttendeesRemovesThemToo) {
  Event event;
  event.With(&E::prop_attendee, "a");
  const ComPtr<IAppointment> item = Filled(event);
  Event none;
  AppointmentToStore(item.get(), none.shape());
  EXPECT_EQ(Recipients(item), Strings{});
}

TEST_F(AttendeesTest, TheyComeBackAsTheyWere) {
  Event event;
  event.With(&E::prop_attendee, "Ann <a@b>").With(&E::prop_attendee, "c@d");
  Event back;
  AppointmentFromStore(Filled(event).get(), &back.shape());
  // The blank before the address is the name's own; the writer adds one.
  EXPECT_EQ(Lines(back->prop_attendee), (Strings{"ROLE=ATTENDEE:Ann  <a@b>", "ROLE=ATTENDEE:c@d"}));
}

TEST_F(ExceptionsTest, EveryDateOfEveryPropertyIsTakenOut) {
  Event event;
  event.With(&E::prop_dtstart, "20030402T100000")
      .With(&E::prop_rrule, "D1 #9")
      .With(&E::prop_exdate, "20030403T100000;;20030405T100000")
      .With(&E::prop_exdate, "20030407T090000Z");
  const std::string id = Add(KIND_CALENDAR, event.get());
  Event back;
  AppointmentFromStore(Stored<IAppointment>(id).get(), &back.shape());
  EXPECT_EQ(Lines(back->prop_exdate),
            Strings{":20030403T090000Z;20030405T090000Z;20030407T090000Z"});
}

TEST_F(ExceptionsTest, ADateWithoutAnOccurrenceIsLogged) {
  Event event;
  event.With(&E::prop_dtstart, "20030402T100000")
      .With(&E::prop_rrule, "D2 #9")
      .With(&E::prop_exdate, "20030403T100000;20030404T100000");
  const LogCapture log;
  const ComPtr<IAppointment> item = Filled(event);
  ASSERT_EQ(log.texts(), Strings{"TAMU:  Could not find Appointment for '20030403T100000' "
                                 "(Exception not made)"});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
  Event back;
  AppointmentFromStore(item.get(), &back.shape());
  EXPECT_EQ(Lines(back->prop_exdate), Strings{":20030404T090000Z"});
}

TEST_F(ExceptionsTest, WithoutATranslatedRuleNoneAreMade) {
  for (const char* rule : {"", "YM1 6 #0", "no rule"}) {
    Event event;
    event.With(&E::prop_dtstart, "20030402T100000")
        .With(&E::prop_rrule, rule)
        .With(&E::prop_exdate, "20030403T100000");
    const CallWatch watch;
    const ComPtr<IAppointment> item = Filled(event);
    EXPECT_EQ(watch.Only({"Save", "GetOccurrence"}), Strings{}) << rule;
  }
}

TEST_F(ExceptionsTest, AnEmptyExceptionDoesNotSave) {
  Event event;
  event.With(&E::prop_dtstart, "20030402T100000")
      .With(&E::prop_rrule, "D1 #9")
      .With(&E::prop_exdate, "");
  const CallWatch watch;
  const ComPtr<IAppointment> item = Filled(event);
  EXPECT_EQ(watch.Only({"Save", "GetOccurrence"}), Strings{});
}

TEST_F(AppointmentFromStoreTest, ANewAppointmentHasWhatIsAlwaysWritten) {
  const ComPtr<IAppointment> item = New<IAppointment>();
  Put(item, &IAppointment::put_Start, Date(2003, 4, 2, 10).days);
  Event event;
  RECORD_Free(KIND_CALENDAR, event.get());
  AppointmentFromStore(item.get(), &event.shape());
  EXPECT_EQ(event->object_type, 2U);
  EXPECT_EQ(event->component, COMPONENT_EVENT);
  EXPECT_STREQ(event->version, "1.0");
  EXPECT_STREQ(event->luid, "00000000");
  EXPECT_EQ(Line(event->prop_categories), ":");
  EXPECT_EQ(Line(event->prop_dtstart), ":20030402T090000Z");
  EXPECT_EQ(Line(event->prop_dtend), ":20030402T100000Z");
  EXPECT_EQ(Line(event->prop_summary), ":");
  EXPECT_EQ(Line(event->prop_location), ":");
  EXPECT_EQ(Line(event->prop_class), ":PUBLIC");
  EXPECT_EQ(event->all_day, 0);
  for (const auto field : {&E::prop_completed, &E::prop_due, &E::prop_description, &E::prop_dalarm,
                           &E::prop_rrule, &E::prop_exdate, &E::prop_attendee}) {
    EXPECT_EQ(event.shape().*field, nullptr);
  }
}

TEST_F(AppointmentFromStoreTest, ThePriorityIsAlways0KeptOnPurpose) {
  Event event;
  event.With(&E::prop_priority, "2");
  Event back;
  AppointmentFromStore(Filled(event).get(), &back.shape());
  EXPECT_EQ(Line(back->prop_priority), ":0");
}

TEST_F(AppointmentFromStoreTest, ABusyOneNeedsActionKeptOnPurpose) {
  const std::pair<std::int32_t, const char*> statuses[] = {{platform::kBusyFree, "none"},
                                                           {platform::kBusyTentative, ":TENTATIVE"},
                                                           {platform::kBusyBusy, ":NEEDS ACTION"},
                                                           {platform::kBusyOutOfOffice, "none"}};
  for (const auto& [status, line] : statuses) {
    const ComPtr<IAppointment> item = New<IAppointment>();
    Put(item, &IAppointment::put_BusyStatus, status);
    Event event;
    AppointmentFromStore(item.get(), &event.shape());
    EXPECT_EQ(Line(event->prop_status), line);
  }
}

TEST_F(AppointmentFromStoreTest, ADeclinedOneComesBackWithoutStatus) {
  Event event;
  event.With(&E::prop_status, "DECLINED");
  Event back;
  AppointmentFromStore(Filled(event).get(), &back.shape());
  EXPECT_EQ(back->prop_status, nullptr);
}

TEST_F(AppointmentFromStoreTest, AnAllDayOneIsInLocalTimeWithItsAlarmAndExceptions) {
  Event event;
  event.With(&E::prop_dtstart, "20030402T000000")
      .With(&E::prop_dtend, "20030402T230000")
      .With(&E::prop_rrule, "D1 #9")
      .With(&E::prop_exdate, "20030403T000000")
      .With(&E::prop_dalarm, "20030401T230000");
  event->all_day = 1;
  Event back;
  AppointmentFromStore(Filled(event).get(), &back.shape());
  EXPECT_EQ(Line(back->prop_dtstart), ":20030402T000000");
  EXPECT_EQ(Line(back->prop_dtend), ":20030402T230000");
  EXPECT_EQ(Line(back->prop_exdate), ":20030403T000000");
  EXPECT_EQ(Line(back->prop_dalarm), ":20030401T230000");
  EXPECT_EQ(back->all_day, 1);
}

TEST_F(AppointmentFromStoreTest, EverythingComesBackInUtc) {
  Event event;
  event.With(&E::prop_summary, "Event")
      .With(&E::prop_location, "Here")
      .With(&E::prop_description, "a=0D=0Ab", "ENCODING=QUOTED-PRINTABLE")
      .With(&E::prop_categories, "Work")
      .With(&E::prop_dtstart, "20030402T100000")
      .With(&E::prop_dtend, "20030402T113000")
      .With(&E::prop_class, "PRIVATE")
      .With(&E::prop_dalarm, "20030402T093000")
      .With(&E::prop_rrule, "W1 WE 20031231T000000");
  const std::string id = Add(KIND_CALENDAR, event.get());
  Event back;
  AppointmentFromStore(Stored<IAppointment>(id).get(), &back.shape());
  EXPECT_EQ(back->luid, id);
  EXPECT_EQ(Line(back->prop_summary), ":Event");
  EXPECT_EQ(Line(back->prop_location), ":Here");
  EXPECT_EQ(Line(back->prop_description), "ENCODING=QUOTED-PRINTABLE:a=0D=0Ab");
  EXPECT_EQ(Line(back->prop_categories), ":Work");
  EXPECT_EQ(Line(back->prop_dtstart), ":20030402T090000Z");
  EXPECT_EQ(Line(back->prop_dtend), ":20030402T103000Z");
  EXPECT_EQ(Line(back->prop_class), ":PRIVATE");
  EXPECT_EQ(Line(back->prop_dalarm), ":20030402T083000Z");
  EXPECT_EQ(Line(back->prop_rrule), ":W1 WE #40 20031230T230000Z");
}

}  // namespace
}  // namespace tamu
