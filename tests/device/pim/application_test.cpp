#include "device/pim/pim_fixture.h"

namespace tamu::testing {
namespace {

using ApplicationContract = PimContract;
TAMU_OVER_PIM_DEVICES(ApplicationContract);

TEST_P(ApplicationContract, SecondLogonIsToldApart) {
  EXPECT_EQ(application_->Logon(0), hr::kFalse);
  EXPECT_EQ(Got(Contacts(), &IPOutlookItemCollection::get_Count), 0);
}

TEST_P(ApplicationContract, FailsBeforeLogonAndAfterLogoff) {
  const ComPtr<IContact> contact = AddContact(u"Kept");
  const ComPtr<IPOutlookItemCollection> items = Contacts();
  const auto fails = [](const ComPtr<IPOutlookApp>& application) {
    IDispatch* item = nullptr;
    EXPECT_EQ(application->CreateItem(platform::kContactItem, &item), hr::kUnexpected);
    EXPECT_EQ(item, nullptr);
    EXPECT_EQ(application->GetItemFromOid(1, &item), hr::kUnexpected);
    ComPtr<IFolder> folder;
    EXPECT_EQ(application->GetDefaultFolder(platform::kContactsFolder, folder.put()),
              hr::kUnexpected);
    BStr version;
    EXPECT_EQ(application->get_Version(version.put()), hr::kUnexpected);
    EXPECT_EQ(application->ReceiveFromInfrared(), hr::kUnexpected);
    EXPECT_EQ(application->Logoff(), hr::kUnexpected);
  };
  fails(NewApplication());
  ASSERT_EQ(application_->Logoff(), hr::kOk);
  fails(application_);
  EXPECT_EQ(contact->Save(), hr::kUnexpected);
  EXPECT_EQ(contact->Delete(), hr::kUnexpected);
  EXPECT_EQ(GotText(contact, &IContact::get_LastName), u"Kept");
  std::int32_t count = 1;
  EXPECT_EQ(items->get_Count(&count), hr::kUnexpected);
  EXPECT_EQ(count, 0);
  IDispatch* item = nullptr;
  EXPECT_EQ(items->Item(1, &item), hr::kUnexpected);
  EXPECT_EQ(items->Find(Arg(u""), &item), hr::kUnexpected);
  EXPECT_EQ(items->Remove(1), hr::kUnexpected);
  EXPECT_EQ(items->Add(&item), hr::kUnexpected);
}

TEST_P(ApplicationContract, LogsOnAgainAfterLogoff) {
  const ComPtr<IContact> contact = AddContact(u"Kept");
  ASSERT_EQ(application_->Logoff(), hr::kOk);
  ASSERT_EQ(application_->Logon(0), hr::kOk);
  EXPECT_EQ(GotText(Reopen(contact), &IContact::get_LastName), u"Kept");
  EXPECT_EQ(contact->Save(), hr::kOk);
}

TEST_P(ApplicationContract, AnswersHonestlyWhatItIs) {
  void* object = nullptr;
  EXPECT_EQ(application_->QueryInterface(platform::IID_IContact, &object), hr::kNoInterface);
  EXPECT_EQ(object, nullptr);
  ComPtr<IPOutlookApp> same;
  EXPECT_EQ(application_->QueryInterface(platform::IID_IPOutlookApp, same.put_void()), hr::kOk);
  EXPECT_EQ(same.get(), application_.get());
  EXPECT_EQ(device_->CreateApplication(platform::IID_ITask, &object), hr::kNoInterface);
  EXPECT_EQ(object, nullptr);
}

TEST_P(ApplicationContract, GivesTheThreeFolders) {
  const std::pair<std::int32_t, std::int32_t> kFolders[] = {
      {platform::kCalendarFolder, platform::kAppointmentItem},
      {platform::kContactsFolder, platform::kContactItem},
      {platform::kTasksFolder, platform::kTaskItem}};
  for (const auto& [number, type] : kFolders) {
    ComPtr<IFolder> folder;
    ASSERT_EQ(application_->GetDefaultFolder(number, folder.put()), hr::kOk);
    EXPECT_EQ(Got(folder, &IFolder::get_DefaultItemType), type);
    EXPECT_EQ(GotPart(folder, &IFolder::get_Application).get(), application_.get());
    EXPECT_EQ(folder->SendToInfrared(), hr::kNotImplemented);
  }
  ComPtr<IFolder> none;
  EXPECT_EQ(application_->GetDefaultFolder(1, none.put()), hr::kInvalidArgument);
  EXPECT_EQ(application_->GetDefaultFolder(101, none.put()), hr::kNotImplemented);
  EXPECT_FALSE(none);
}

TEST_P(ApplicationContract, RefusesItemsThatItDoesNotMake) {
  IDispatch* item = nullptr;
  EXPECT_EQ(application_->CreateItem(0, &item), hr::kInvalidArgument);
  EXPECT_EQ(application_->CreateItem(4, &item), hr::kInvalidArgument);
  EXPECT_EQ(application_->CreateItem(102, &item), hr::kNotImplemented);
  EXPECT_EQ(item, nullptr);
  EXPECT_EQ(application_->CreateItem(platform::kContactItem, nullptr), hr::kPointer);
}

TEST_P(ApplicationContract, FindsItemsByTheirId) {
  const ComPtr<IContact> contact = AddContact(u"Ada");
  IDispatch* item = nullptr;
  EXPECT_EQ(application_->GetItemFromOid(0, &item), hr::kInvalidArgument);
  EXPECT_EQ(application_->GetItemFromOid(-5, &item), hr::kItemNotFound);
  EXPECT_EQ(application_->GetItemFromOid(2, &item), hr::kItemNotFound);
  EXPECT_EQ(item, nullptr);
  const ComPtr<IContact> found = Open<IContact>(1);
  ComPtr<IContact> typed;
  ASSERT_EQ(found->QueryInterface(platform::IID_IContact, typed.put_void()), hr::kOk);
  EXPECT_EQ(typed.get(), found.get());
  void* other = nullptr;
  EXPECT_EQ(found->QueryInterface(platform::IID_IAppointment, &other), hr::kNoInterface);
}

TEST_P(ApplicationContract, NumbersItemsOfAllKindsInOneRowAndNeverAgain) {
  EXPECT_EQ(Got(AddContact(u"a"), &IContact::get_Oid), 1);
  const ComPtr<ITask> task = NewTask();
  ASSERT_EQ(task->Save(), hr::kOk);
  EXPECT_EQ(Got(task, &ITask::get_Oid), 2);
  ASSERT_EQ(task->Delete(), hr::kOk);
  EXPECT_EQ(Got(AddAppointment(u"b", Day2004(1), Day2004(2)), &IAppointment::get_Oid), 3);
  LogonAgain();
  EXPECT_EQ(Got(AddContact(u"c"), &IContact::get_Oid), 4);
}

TEST_P(ApplicationContract, ConvertsTimesAndFreesStrings) {
  const ComPtr<IPOutlookApp> application = NewApplication();
  platform::SYSTEMTIME time{};
  ASSERT_EQ(application->VariantTimeToSystemTime(Day2004(366, 10, 30), &time), hr::kOk);
  EXPECT_EQ(time.wYear, 2004);
  EXPECT_EQ(time.wDay, 31);
  EXPECT_EQ(time.wHour, 10);
  DATE date = 0;
  ASSERT_EQ(application->SystemTimeToVariantTime(&time, &date), hr::kOk);
  EXPECT_EQ(date, Day2004(366, 10, 30));
  EXPECT_EQ(application->SystemTimeToVariantTime(nullptr, &date), hr::kPointer);
  EXPECT_EQ(application->VariantTimeToSystemTime(1e9, &time), hr::kInvalidArgument);
  EXPECT_EQ(application->SysFreeString(platform::SysAllocString(u"text")), hr::kOk);
}

TEST(Application, FailsToLogOnWithTheResultOfItsStore) {
  const auto opener = [](std::shared_ptr<device::ItemStore>*) { return hr::kLocked; };
  ComPtr<IPOutlookApp> application;
  ASSERT_EQ(device::CreateApplication(opener, platform::IID_IPOutlookApp, application.put_void()),
            hr::kOk);
  EXPECT_EQ(application->Logon(0), hr::kLocked);
  EXPECT_EQ(application->Logoff(), hr::kUnexpected);
}

}  // namespace
}  // namespace tamu::testing
