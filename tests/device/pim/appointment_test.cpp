#include <limits>

#include "device/pim/pim_fixture.h"
#include "platform/time.h"

namespace tamu::testing {
namespace {

using AppointmentContract = PimContract;
TAMU_OVER_PIM_DEVICES(AppointmentContract);

// It is New Year's Eve 2004, 22:37:15 UTC.
void NewYearsEve(platform::SYSTEMTIME* time) { *time = {2004, 12, 5, 31, 22, 37, 15, 500}; }

TEST_P(AppointmentContract, NewOneStartsWithTheNextFullHour) {
  const platform::ScopedOverride<void(platform::SYSTEMTIME*)> now(platform::GetSystemTime,
                                                                  &NewYearsEve);
  const ScopedTimeZone zone(kPlusOneZone);
  const ComPtr<IAppointment> item = NewAppointment();
  EXPECT_EQ(Got(item, &IAppointment::get_Start), Day2004(367));
  EXPECT_EQ(Got(item, &IAppointment::get_End), Day2004(367, 1));
  EXPECT_EQ(Got(item, &IAppointment::get_Duration), 60);
  EXPECT_EQ(Got(item, &IAppointment::get_BusyStatus), platform::kBusyBusy);
  EXPECT_EQ(Got(item, &IAppointment::get_ReminderSet), kVariantFalse);
  EXPECT_EQ(Got(item, &IAppointment::get_AllDayEvent), kVariantFalse);
  EXPECT_EQ(Got(item, &IAppointment::get_MeetingStatus), 0);
}

TEST_P(AppointmentContract, CannotBeMadeWithoutATime) {
  const platform::ScopedFailure failure(platform::FileTimeToSystemTime);
  IDispatch* item = nullptr;
  EXPECT_EQ(application_->CreateItem(platform::kAppointmentItem, &item), hr::kFail);
  EXPECT_EQ(item, nullptr);
}

TEST_P(AppointmentContract, EveryPropertyIsKept) {
  const ComPtr<IAppointment> item = NewAppointment();
  EXPECT_EQ(item->put_Subject(Arg(u"s")), hr::kOk);
  EXPECT_EQ(item->put_Location(Arg(u"l")), hr::kOk);
  EXPECT_EQ(item->put_Categories(Arg(u"c")), hr::kOk);
  EXPECT_EQ(item->put_Start(Day2004(10, 9)), hr::kOk);
  EXPECT_EQ(item->put_End(Day2004(10, 10, 30)), hr::kOk);
  EXPECT_EQ(item->put_AllDayEvent(7), hr::kOk);
  EXPECT_EQ(item->put_BusyStatus(platform::kBusyTentative), hr::kOk);
  EXPECT_EQ(item->put_Sensitivity(platform::kSensitivityPrivate), hr::kOk);
  EXPECT_EQ(item->put_Body(Arg(u"b")), hr::kOk);
  EXPECT_EQ(item->put_ReminderSet(1), hr::kOk);
  EXPECT_EQ(item->put_ReminderSoundFile(Arg(u"w")), hr::kOk);
  EXPECT_EQ(item->put_ReminderMinutesBeforeStart(64800), hr::kOk);
  EXPECT_EQ(item->put_ReminderOptions(12), hr::kOk);
  ASSERT_EQ(item->Save(), hr::kOk);
  LogonAgain();
  const ComPtr<IAppointment> stored = Open<IAppointment>(1);
  EXPECT_EQ(GotText(stored, &IAppointment::get_Subject), u"s");
  EXPECT_EQ(GotText(stored, &IAppointment::get_Location), u"l");
  EXPECT_EQ(GotText(stored, &IAppointment::get_Categories), u"c");
  EXPECT_EQ(Got(stored, &IAppointment::get_Start), Day2004(10, 9));
  EXPECT_EQ(Got(stored, &IAppointment::get_End), Day2004(10, 10, 30));
  EXPECT_EQ(Got(stored, &IAppointment::get_Duration), 90);
  EXPECT_EQ(Got(stored, &IAppointment::get_AllDayEvent), kVariantTrue);
  EXPECT_EQ(Got(stored, &IAppointment::get_BusyStatus), platform::kBusyTentative);
  EXPECT_EQ(Got(stored, &IAppointment::get_Sensitivity), platform::kSensitivityPrivate);
  EXPECT_EQ(GotText(stored, &IAppointment::get_Body), u"b");
  EXPECT_EQ(Got(stored, &IAppointment::get_ReminderSet), kVariantTrue);
  EXPECT_EQ(GotText(stored, &IAppointment::get_ReminderSoundFile), u"w");
  EXPECT_EQ(Got(stored, &IAppointment::get_ReminderMinutesBeforeStart), 64800);
  EXPECT_EQ(Got(stored, &IAppointment::get_ReminderOptions), 12);
}

TEST_P(AppointmentContract, StartKeepsTheDuration) {
  const ComPtr<IAppointment> item = AddAppointment(u"", Day2004(10, 9), Day2004(10, 10, 30));
  ASSERT_EQ(item->put_Start(Day2004(40, 23)), hr::kOk);
  EXPECT_EQ(Got(item, &IAppointment::get_End), Day2004(41, 0, 30));
  EXPECT_EQ(Got(item, &IAppointment::get_Duration), 90);
}

TEST_P(AppointmentContract, EndChangesTheDuration) {
  const ComPtr<IAppointment> item = AddAppointment(u"", Day2004(10, 9), Day2004(10, 10));
  ASSERT_EQ(item->put_End(Day2004(11, 9)), hr::kOk);
  EXPECT_EQ(Got(item, &IAppointment::get_Start), Day2004(10, 9));
  EXPECT_EQ(Got(item, &IAppointment::get_Duration), 24 * 60);
  ASSERT_EQ(item->put_End(Day2004(10, 9)), hr::kOk);
  EXPECT_EQ(Got(item, &IAppointment::get_Duration), 0);
  EXPECT_EQ(item->Save(), hr::kOk);
}

TEST_P(AppointmentContract, DurationMovesTheEnd) {
  const ComPtr<IAppointment> item = AddAppointment(u"", Day2004(10, 9), Day2004(10, 10));
  ASSERT_EQ(item->put_Duration(15), hr::kOk);
  EXPECT_EQ(Got(item, &IAppointment::get_End), Day2004(10, 9, 15));
  EXPECT_EQ(item->put_Duration(-1), hr::kInvalidArgument);
}

// From the year 100 to 9999 there are more minutes than a duration can say.
TEST_P(AppointmentContract, TheLongestDurationIsNotNegative) {
  const ComPtr<IAppointment> item = AddAppointment(u"a", -657434, 2958465);
  EXPECT_EQ(Got(item, &IAppointment::get_Duration), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(Got(item, &IAppointment::get_Start), -657434);
  EXPECT_EQ(Got(item, &IAppointment::get_End), 2958465);
}

TEST_P(AppointmentContract, EndBeforeStartIsRefusedBySave) {
  const ComPtr<IAppointment> item = AddAppointment(u"kept", Day2004(10, 9), Day2004(10, 10));
  ASSERT_EQ(item->put_End(Day2004(10, 8)), hr::kOk);
  EXPECT_EQ(item->Save(), platform::hr::kInvalidDates);
  EXPECT_EQ(Got(Reopen(item), &IAppointment::get_End), Day2004(10, 10));
  ASSERT_EQ(item->put_End(Day2004(10, 11)), hr::kOk);
  EXPECT_EQ(item->Save(), hr::kOk);
}

TEST_P(AppointmentContract, EndThatWasPutFirstWaitsForItsStart) {
  const ComPtr<IAppointment> item = AddAppointment(u"", Day2004(10, 9), Day2004(10, 10));
  ASSERT_EQ(item->put_End(Day2004(5, 12)), hr::kOk);
  ASSERT_EQ(item->put_Start(Day2004(5, 10)), hr::kOk);
  EXPECT_EQ(Got(item, &IAppointment::get_End), Day2004(5, 12));
  EXPECT_EQ(Got(item, &IAppointment::get_Duration), 120);
  EXPECT_EQ(item->Save(), hr::kOk);
}

TEST_P(AppointmentContract, AllDayKeepsTheDatesThatWerePut) {
  const ComPtr<IAppointment> item = AddAppointment(u"", Day2004(10, 9), Day2004(12, 10));
  ASSERT_EQ(item->put_AllDayEvent(kVariantTrue), hr::kOk);
  ASSERT_EQ(item->Save(), hr::kOk);
  const ComPtr<IAppointment> stored = Reopen(item);
  EXPECT_EQ(Got(stored, &IAppointment::get_Start), Day2004(10, 9));
  EXPECT_EQ(Got(stored, &IAppointment::get_End), Day2004(12, 10));
}

TEST_P(AppointmentContract, DatesBefore1900KeepTheirTimes) {
  // 29 December 1899, 06:00, and two hours later.
  const ComPtr<IAppointment> item = NewAppointment();
  ASSERT_EQ(item->put_Start(-1.25), hr::kOk);
  EXPECT_EQ(Got(item, &IAppointment::get_End), -1.0 - 7.0 / 24);
  ASSERT_EQ(item->put_End(-1.5), hr::kOk);
  EXPECT_EQ(Got(item, &IAppointment::get_Duration), 6 * 60);
  ASSERT_EQ(item->Save(), hr::kOk);
  EXPECT_EQ(Got(Reopen(item), &IAppointment::get_Start), -1.25);
}

TEST_P(AppointmentContract, RefusesNumbersThatMeanNothing) {
  const ComPtr<IAppointment> item = NewAppointment();
  EXPECT_EQ(item->put_BusyStatus(4), hr::kInvalidArgument);
  EXPECT_EQ(item->put_Sensitivity(-1), hr::kInvalidArgument);
  EXPECT_EQ(item->put_ReminderMinutesBeforeStart(-1), hr::kInvalidArgument);
}

TEST_P(AppointmentContract, IsNotSentOrShown) {
  const ComPtr<IAppointment> item = NewAppointment();
  EXPECT_EQ(item->Send(), hr::kNotImplemented);
  EXPECT_EQ(item->Cancel(), hr::kNotImplemented);
  EXPECT_EQ(item->Display(), hr::kNotImplemented);
}

TEST_P(AppointmentContract, RecipientsMakeAMeeting) {
  const ComPtr<IAppointment> item = NewAppointment();
  const ComPtr<IRecipients> recipients = GotPart(item, &IAppointment::get_Recipients);
  EXPECT_EQ(Got(recipients, &IRecipients::get_Count), 0);
  ComPtr<IRecipient> recipient;
  ASSERT_EQ(recipients->Add(Arg(u"Ada "), recipient.put()), hr::kOk);
  ASSERT_EQ(recipient->put_Address(Arg(u"ada@example.com")), hr::kOk);
  ASSERT_EQ(recipients->Add(Arg(u""), recipient.put()), hr::kOk);
  EXPECT_EQ(Got(item, &IAppointment::get_MeetingStatus), 1);
  ASSERT_EQ(item->Save(), hr::kOk);
  const ComPtr<IAppointment> stored = Reopen(item);
  EXPECT_EQ(Got(stored, &IAppointment::get_MeetingStatus), 1);
  const ComPtr<IRecipients> list = GotPart(stored, &IAppointment::get_Recipients);
  ASSERT_EQ(Got(list, &IRecipients::get_Count), 2);
  ComPtr<IRecipient> first;
  ASSERT_EQ(list->Item(1, first.put()), hr::kOk);
  EXPECT_EQ(GotText(first, &IRecipient::get_Name), u"Ada ");
  EXPECT_EQ(GotText(first, &IRecipient::get_Address), u"ada@example.com");
  ComPtr<IRecipient> second;
  ASSERT_EQ(list->Item(2, second.put()), hr::kOk);
  EXPECT_EQ(GotText(second, &IRecipient::get_Address), u"");
  EXPECT_EQ(list->Item(0, recipient.put()), hr::kInvalidArgument);
  EXPECT_EQ(list->Item(3, recipient.put()), hr::kInvalidArgument);
  EXPECT_FALSE(recipient);

  ASSERT_EQ(list->Remove(1), hr::kOk);
  EXPECT_EQ(list->Remove(2), hr::kInvalidArgument);
  EXPECT_EQ(first->put_Address(Arg(u"x")), hr::kItemNotFound);
  ASSERT_EQ(second->put_Address(Arg(u"bob@example.com")), hr::kOk);
  EXPECT_EQ(Got(GotPart(Reopen(item), &IAppointment::get_Recipients), &IRecipients::get_Count), 2);
  ASSERT_EQ(stored->Save(), hr::kOk);
  const ComPtr<IRecipients> left = GotPart(Reopen(item), &IAppointment::get_Recipients);
  ASSERT_EQ(Got(left, &IRecipients::get_Count), 1);
  ASSERT_EQ(left->Item(1, recipient.put()), hr::kOk);
  EXPECT_EQ(GotText(recipient, &IRecipient::get_Address), u"bob@example.com");
  ASSERT_EQ(list->Remove(1), hr::kOk);
  ASSERT_EQ(stored->Save(), hr::kOk);
  EXPECT_EQ(Got(Reopen(item), &IAppointment::get_MeetingStatus), 0);
}

}  // namespace
}  // namespace tamu::testing
