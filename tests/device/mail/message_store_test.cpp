#include "device/mail/message_store.h"

#include "device/mail/mail_fixture.h"

namespace tamu::testing {
namespace {

namespace hr = platform::hr;

class MessageStore : public MailContract {};

TEST_P(MessageStore, NamesItsFoldersByProperties) {
  constexpr std::uint32_t kInboxEntryId = 0x81060102;
  Props props;
  Fill(store_.get(),
       {platform::PR_IPM_OUTBOX_ENTRYID, platform::PR_IPM_SENTMAIL_ENTRYID, kInboxEntryId,
        platform::PR_ENTRYID, platform::PR_OBJECT_TYPE},
       &props);
  EXPECT_EQ(props.result, hr::kOk);
  ASSERT_EQ(props.count, 5U);
  EXPECT_EQ(BinaryOf(props[0]), outbox_id_);
  EXPECT_EQ(BinaryOf(props[1]), sent_id_);
  EXPECT_EQ(BinaryOf(props[2]), inbox_id_);
  EXPECT_EQ(BinaryOf(props[3]), store_id_);
  EXPECT_EQ(props[4].Value.ul, platform::kObjectStore);
}

TEST_P(MessageStore, FoldersAreThreeDifferentOnes) {
  EXPECT_EQ(inbox_id_.size(), 16U);
  EXPECT_EQ(outbox_id_.size(), 16U);
  EXPECT_EQ(sent_id_.size(), 16U);
  EXPECT_NE(inbox_id_, outbox_id_);
  EXPECT_NE(inbox_id_, sent_id_);
  EXPECT_NE(outbox_id_, sent_id_);
}

TEST_P(MessageStore, EntryIdsOutliveTheSession) {
  const std::string message_id = EntryIdOf(Create(inbox_, u"kept", 5).get());
  const std::string outbox = outbox_id_;
  LogonAgain();
  EXPECT_EQ(outbox_id_, outbox);
  EXPECT_EQ(TextOf(Open<IMessage>(message_id).get(), platform::PR_SUBJECT), u"kept");
}

TEST_P(MessageStore, MissingPropertyIsAnErrorCellInItsPlace) {
  Props props;
  Fill(store_.get(),
       {platform::PR_IPM_OUTBOX_ENTRYID, platform::PR_SUBJECT, platform::PR_IPM_SENTMAIL_ENTRYID},
       &props);
  EXPECT_EQ(props.result, hr::kErrorsReturned);
  ASSERT_EQ(props.count, 3U);
  EXPECT_EQ(props[0].ulPropTag, platform::PR_IPM_OUTBOX_ENTRYID);
  EXPECT_EQ(platform::PropType(props[1].ulPropTag), platform::kTypeError);
  EXPECT_EQ(props[1].Value.err, hr::kNotFound);
  EXPECT_EQ(props[2].ulPropTag, platform::PR_IPM_SENTMAIL_ENTRYID);
}

TEST_P(MessageStore, GetPropsNeedsTagsAndPointers) {
  Tags tags{platform::PR_ENTRYID};
  Tags none{};
  std::uint32_t count = 77;
  SPropValue* values = nullptr;
  EXPECT_EQ(store_->GetProps(nullptr, 0, &count, &values), hr::kInvalidArgument);
  EXPECT_EQ(store_->GetProps(none.get(), 0, &count, &values), hr::kInvalidArgument);
  EXPECT_EQ(count, 0U);
  EXPECT_EQ(store_->GetProps(tags.get(), 0, nullptr, &values), hr::kInvalidArgument);
  EXPECT_EQ(store_->GetProps(tags.get(), 0, &count, nullptr), hr::kInvalidArgument);
}

TEST_P(MessageStore, ReceiveFolderIsForAllClassesOnly) {
  std::uint32_t size = 77;
  char16_t name[] = u"IPM.Note";
  ENTRYID* id = nullptr;
  char16_t* explicit_class = name;
  EXPECT_EQ(store_->GetReceiveFolder(name, 0, &size, &id, nullptr), hr::kInvalidArgument);
  EXPECT_EQ(size, 0U);
  EXPECT_EQ(id, nullptr);
  EXPECT_EQ(store_->GetReceiveFolder(nullptr, 0, nullptr, &id, nullptr), hr::kInvalidArgument);
  EXPECT_EQ(store_->GetReceiveFolder(nullptr, 0, &size, nullptr, nullptr), hr::kInvalidArgument);
  ASSERT_EQ(store_->GetReceiveFolder(nullptr, platform::kMapiUnicode, &size, &id, &explicit_class),
            hr::kOk);
  EXPECT_EQ(size, 16U);
  EXPECT_EQ(explicit_class, nullptr);
  EXPECT_EQ(platform::MAPIFreeBuffer(id), 0U);
}

TEST_P(MessageStore, WhatThePlatformLacksIsNotSupported) {
  std::uint32_t number = 77;
  SPropValue value = LongValue(platform::PR_MESSAGE_FLAGS, 1);
  Tags tags{platform::PR_ENTRYID};
  platform::SPropTagArray* list = tags.get();
  ComPtr<platform::IUnknown> object;
  ComPtr<IMAPITable> table;
  void** names = nullptr;
  const HRESULT results[] = {
      store_->SaveChanges(0),
      store_->GetPropList(0, &list),
      store_->OpenProperty(platform::PR_BODY, nullptr, 0, 0, object.put()),
      store_->SetProps(1, &value, nullptr),
      store_->DeleteProps(tags.get(), nullptr),
      store_->CopyTo(0, nullptr, nullptr, 0, nullptr, nullptr, nullptr, 0, nullptr),
      store_->CopyProps(nullptr, 0, nullptr, nullptr, nullptr, 0, nullptr),
      store_->GetNamesFromIDs(nullptr, nullptr, 0, &number, nullptr),
      store_->GetIDsFromNames(0, names, 0, nullptr),
      store_->Advise(0, nullptr, 0, nullptr, &number),
      store_->Unadvise(0),
      store_->CompareEntryIDs(16, IdPointer(inbox_id_), 16, IdPointer(inbox_id_), 0, &number),
      store_->SetReceiveFolder(nullptr, 0, 16, IdPointer(inbox_id_)),
      store_->GetReceiveFolderTable(0, table.put()),
      store_->StoreLogoff(&number),
      store_->AbortSubmit(16, IdPointer(inbox_id_), 0),
      store_->GetOutgoingQueue(0, table.put()),
      store_->SetLockState(nullptr, 0),
      store_->FinishedMsg(0, 0, nullptr),
      store_->NotifyNewMail(nullptr),
      session_->OpenAddressBook(0, nullptr, 0, nullptr),
      session_->OpenProfileSection(nullptr, nullptr, 0, nullptr),
      session_->GetStatusTable(0, table.put()),
      session_->Advise(0, nullptr, 0, nullptr, &number),
      session_->Unadvise(0),
      session_->MessageOptions(0, 0, nullptr, nullptr),
      session_->QueryDefaultMessageOpt(nullptr, 0, &number, nullptr),
      session_->EnumAdrTypes(0, &number, nullptr),
      session_->QueryIdentity(&number, nullptr),
      session_->SetDefaultStore(0, 0, nullptr),
      session_->AdminServices(0, nullptr),
      session_->ShowForm(0, nullptr, nullptr, nullptr, 0, nullptr, 0, 0, 0, 0, nullptr),
      session_->PrepareForm(nullptr, nullptr, &number),
  };
  for (const HRESULT result : results) EXPECT_EQ(result, hr::kNoSupport);
  EXPECT_EQ(list, nullptr);
  EXPECT_EQ(number, 0U);
}

INSTANTIATE_TEST_SUITE_P(Devices, MessageStore, ::testing::ValuesIn(MailDeviceKinds()),
                         &NameOfKind);

// --- Stores that lack something ---------------------------------------------

TEST(MessageStoreWithGaps, LackedFolderHasNoPropertyAndCannotBeOpened) {
  MemoryMailDevice device;
  device.store().Lack(device::MailFolder::kSentItems);
  ComPtr<IMAPISession> session;
  ASSERT_EQ(device.Logon(session.put()), hr::kOk);
  ComPtr<IMAPITable> stores;
  ASSERT_EQ(session->GetMsgStoresTable(0, stores.put()), hr::kOk);
  Rows rows;
  Query(stores.get(), 50, &rows);
  std::string id = BinaryOf(rows.cell(0, 0));
  ComPtr<IMsgStore> store;
  ASSERT_EQ(session->OpenMsgStore(0, 16, IdPointer(id), nullptr, 0, store.put()), hr::kOk);

  Props props;
  Fill(store.get(), {platform::PR_IPM_SENTMAIL_ENTRYID}, &props);
  EXPECT_EQ(props.result, hr::kErrorsReturned);
  EXPECT_NE(props[0].ulPropTag, platform::PR_IPM_SENTMAIL_ENTRYID);
}

TEST(MessageStoreWithGaps, DeviceWithoutAStoreHasAnEmptyTable) {
  MemoryMailDevice device;
  device.RemoveStore();
  ComPtr<IMAPISession> session;
  ASSERT_EQ(device.Logon(session.put()), hr::kOk);
  ComPtr<IMAPITable> stores;
  ASSERT_EQ(session->GetMsgStoresTable(0, stores.put()), hr::kOk);
  Rows rows;
  Query(stores.get(), 50, &rows);
  EXPECT_EQ(rows.result, hr::kOk);
  ASSERT_NE(rows.set, nullptr);
  EXPECT_EQ(rows.size(), 0U);
}

}  // namespace
}  // namespace tamu::testing
