#include "device/mail/mail_fixture.h"

namespace tamu::testing {
namespace {

namespace hr = platform::hr;

class MailFolder : public MailContract {
 protected:
  static std::uint32_t CountOf(const ComPtr<IMAPIFolder>& folder) {
    Props props;
    Fill(folder.get(), {platform::PR_CONTENT_COUNT}, &props);
    return props.result == hr::kOk ? props[0].Value.ul : 99999;
  }

  static HRESULT Delete(const ComPtr<IMAPIFolder>& folder, std::vector<std::string> ids) {
    std::vector<platform::SBinary> list;
    for (std::string& id : ids) {
      list.push_back({static_cast<std::uint32_t>(id.size()),
                      static_cast<std::uint8_t*>(static_cast<void*>(id.data()))});
    }
    platform::ENTRYLIST entries{static_cast<std::uint32_t>(list.size()), list.data()};
    return folder->DeleteMessages(&entries, 0, nullptr, 0);
  }
};

TEST_P(MailFolder, TellsItsNameKindAndIds) {
  Props props;
  Fill(outbox_.get(),
       {platform::PR_DISPLAY_NAME, platform::PR_OBJECT_TYPE, platform::PR_ENTRYID,
        platform::PR_PARENT_ENTRYID, platform::PR_CONTENT_COUNT},
       &props);
  EXPECT_EQ(props.result, hr::kOk);
  ASSERT_EQ(props.count, 5U);
  EXPECT_EQ(std::u16string(props[0].Value.lpszW), u"Outbox");
  EXPECT_EQ(props[1].Value.ul, platform::kObjectFolder);
  EXPECT_EQ(BinaryOf(props[2]), outbox_id_);
  EXPECT_EQ(BinaryOf(props[3]), store_id_);
  EXPECT_EQ(props[4].Value.l, 0);
}

TEST_P(MailFolder, NamesDiffer) {
  Props inbox;
  Props sent;
  Fill(inbox_.get(), {platform::PR_DISPLAY_NAME}, &inbox);
  Fill(sent_.get(), {platform::PR_DISPLAY_NAME}, &sent);
  EXPECT_EQ(std::u16string(inbox[0].Value.lpszW), u"Inbox");
  EXPECT_EQ(std::u16string(sent[0].Value.lpszW), u"Sent Items");
}

TEST_P(MailFolder, MissingPropertyIsAnErrorCell) {
  Props props;
  Fill(inbox_.get(), {platform::PR_SUBJECT, platform::PR_DISPLAY_NAME}, &props);
  EXPECT_EQ(props.result, hr::kErrorsReturned);
  EXPECT_EQ(platform::PropType(props[0].ulPropTag), platform::kTypeError);
  EXPECT_EQ(props[0].Value.err, hr::kNotFound);
  EXPECT_EQ(props[1].ulPropTag, platform::PR_DISPLAY_NAME);
}

TEST_P(MailFolder, CreatedMessageIsThereAtOnceWithItsId) {
  const ComPtr<IMessage> message = Create(inbox_);
  const std::string id = EntryIdOf(message.get());
  EXPECT_EQ(id.size(), 16U);
  EXPECT_EQ(CountOf(inbox_), 1U);
  EXPECT_EQ(CountOf(outbox_), 0U);
  EXPECT_EQ(CountOf(sent_), 0U);

  Rows rows;
  Query(Contents(inbox_).get(), 50, &rows);
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(BinaryOf(rows.cell(0, 0)), id);
}

TEST_P(MailFolder, ReleasedMessageStaysWithoutASave) {
  static_cast<void>(Create(outbox_, u"draft", 1));
  LogonAgain();
  EXPECT_EQ(CountOf(outbox_), 1U);
}

TEST_P(MailFolder, MessagesHaveDifferentIds) {
  const std::string first = EntryIdOf(Create(inbox_).get());
  const std::string second = EntryIdOf(Create(inbox_).get());
  const std::string third = EntryIdOf(Create(sent_).get());
  EXPECT_NE(first, second);
  EXPECT_NE(second, third);
}

TEST_P(MailFolder, IdsAreNotUsedAgain) {
  const std::string first = EntryIdOf(Create(inbox_).get());
  ASSERT_EQ(Delete(inbox_, {first}), hr::kOk);
  LogonAgain();
  EXPECT_NE(EntryIdOf(Create(inbox_).get()), first);
}

TEST_P(MailFolder, CreateMessageIgnoresInterfaceAndFlags) {
  ComPtr<IMessage> message;
  EXPECT_EQ(inbox_->CreateMessage(&platform::IID_IMessage, 7, message.put()), hr::kOk);
  EXPECT_TRUE(message);
  EXPECT_EQ(inbox_->CreateMessage(nullptr, 0, nullptr), hr::kInvalidArgument);
  EXPECT_EQ(CountOf(inbox_), 1U);
}

// --- Deleting ---------------------------------------------------------------

TEST_P(MailFolder, DeleteTakesMessagesAway) {
  const std::string first = EntryIdOf(Create(inbox_, u"one", 1).get());
  const std::string second = EntryIdOf(Create(inbox_, u"two", 2).get());
  const std::string third = EntryIdOf(Create(inbox_, u"three", 3).get());
  EXPECT_EQ(Delete(inbox_, {third, first, third}), hr::kOk);
  Rows rows;
  Query(Contents(inbox_).get(), 50, &rows);
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(BinaryOf(rows.cell(0, 0)), second);
}

TEST_P(MailFolder, DeleteIsAllOrNothing) {
  const std::string first = EntryIdOf(Create(inbox_).get());
  const std::string elsewhere = EntryIdOf(Create(sent_).get());
  const std::string gone = EntryIdOf(Create(inbox_).get());
  ASSERT_EQ(Delete(inbox_, {gone}), hr::kOk);
  EXPECT_EQ(Delete(inbox_, {first, gone}), hr::kNotFound);
  EXPECT_EQ(Delete(inbox_, {first, elsewhere}), hr::kNotFound);
  EXPECT_EQ(Delete(inbox_, {first, outbox_id_}), hr::kNotFound);
  EXPECT_EQ(Delete(inbox_, {first, std::string(16, 'x')}), hr::kUnknownEntryId);
  EXPECT_EQ(Delete(inbox_, {first, std::string()}), hr::kUnknownEntryId);
  EXPECT_EQ(CountOf(inbox_), 1U);
  EXPECT_EQ(CountOf(sent_), 1U);
}

TEST_P(MailFolder, DeleteOfNothingIsNothing) {
  static_cast<void>(Create(inbox_));
  EXPECT_EQ(Delete(inbox_, {}), hr::kOk);
  EXPECT_EQ(inbox_->DeleteMessages(nullptr, 0, nullptr, 0), hr::kInvalidArgument);
  platform::ENTRYLIST hollow{1, nullptr};
  EXPECT_EQ(inbox_->DeleteMessages(&hollow, 0, nullptr, 0), hr::kInvalidArgument);
  EXPECT_EQ(CountOf(inbox_), 1U);
}

TEST_P(MailFolder, DeletedMessageThatIsStillHeldSaysSo) {
  const ComPtr<IMessage> message = Create(inbox_, u"one", 1);
  ComPtr<platform::IUnknown> object;
  ASSERT_EQ(message->OpenProperty(platform::PR_BODY, nullptr, 1, 3, object.put()), hr::kOk);
  const ComPtr<IStream> stream(static_cast<IStream*>(object.release()));
  ASSERT_EQ(Delete(inbox_, {EntryIdOf(message.get())}), hr::kOk);

  Props props;
  Fill(message.get(), {platform::PR_ENTRYID}, &props);
  EXPECT_EQ(props.result, hr::kObjectDeleted);
  EXPECT_EQ(props.values, nullptr);
  EXPECT_EQ(props.count, 0U);
  EXPECT_EQ(SetText(message.get(), platform::PR_SUBJECT, u"two"), hr::kObjectDeleted);
  Tags subject{platform::PR_SUBJECT};
  EXPECT_EQ(message->DeleteProps(subject.get(), nullptr), hr::kObjectDeleted);
  platform::ADRLIST nobody{0, {}};
  EXPECT_EQ(message->ModifyRecipients(platform::kRecipientsAdd, &nobody), hr::kObjectDeleted);
  ComPtr<IMAPITable> table;
  EXPECT_EQ(message->GetRecipientTable(0, table.put()), hr::kObjectDeleted);
  EXPECT_EQ(message->OpenProperty(platform::PR_BODY, nullptr, 0, 0, object.put()),
            hr::kObjectDeleted);
  EXPECT_EQ(stream->Write("xx", 2, nullptr), hr::kOk);
  EXPECT_EQ(stream->Commit(0), hr::kObjectDeleted);
  EXPECT_EQ(CountOf(inbox_), 0U);
}

// --- What there is not ------------------------------------------------------

TEST_P(MailFolder, WhatThePlatformLacksIsNotSupported) {
  SPropValue value = LongValue(platform::PR_MESSAGE_FLAGS, 1);
  Tags tags{platform::PR_ENTRYID};
  ComPtr<platform::IUnknown> object;
  ComPtr<IMAPITable> table;
  ComPtr<IMAPIFolder> folder;
  platform::SRestriction* restriction = nullptr;
  platform::ENTRYLIST* list = nullptr;
  std::uint32_t number = 77;
  const HRESULT results[] = {
      inbox_->SaveChanges(0),
      inbox_->GetPropList(0, nullptr),
      inbox_->OpenProperty(platform::PR_BODY, nullptr, 0, 0, object.put()),
      inbox_->SetProps(1, &value, nullptr),
      inbox_->DeleteProps(tags.get(), nullptr),
      inbox_->GetHierarchyTable(0, table.put()),
      inbox_->SetSearchCriteria(nullptr, nullptr, 0),
      inbox_->GetSearchCriteria(0, &restriction, &list, &number),
      inbox_->CopyMessages(nullptr, nullptr, nullptr, 0, nullptr, 0),
      inbox_->CreateFolder(0, nullptr, nullptr, nullptr, 0, folder.put()),
      inbox_->CopyFolder(0, nullptr, nullptr, nullptr, nullptr, 0, nullptr, 0),
      inbox_->DeleteFolder(0, nullptr, 0, nullptr, 0),
      inbox_->SetReadFlags(nullptr, 0, nullptr, 0),
      inbox_->GetMessageStatus(0, nullptr, 0, &number),
      inbox_->SetMessageStatus(0, nullptr, 0, 0, &number),
      inbox_->SaveContentsSort(nullptr, 0),
      inbox_->EmptyFolder(0, nullptr, 0),
  };
  for (const HRESULT result : results) EXPECT_EQ(result, hr::kNoSupport);
  EXPECT_EQ(number, 0U);
}

INSTANTIATE_TEST_SUITE_P(Devices, MailFolder, ::testing::ValuesIn(MailDeviceKinds()), &NameOfKind);

}  // namespace
}  // namespace tamu::testing
