// Finding, adding and modifying messages.
#include "mailstore/mail_adapter_fixture.h"
#include "mailstore/mail_message.h"
#include "mailstore/scripted_message.h"

namespace tamu {
namespace {

using namespace platform;
using namespace tamu::testing;

constexpr HRESULT kStrange = static_cast<HRESULT>(0x80041234U);
constexpr std::uint64_t kLastSecondOf2003 = 127173887990000000;  // 31 December 2003 23:59:59 UTC

class MailOperations : public MailAdapter {
 protected:
  void SetUp() override {
    MailAdapter::SetUp();
    ASSERT_EQ(MAPI_Init(), TAMU_OK);
  }

  // Adds the record; its id.
  static std::string Add(MessageRecord* record) {
    std::array<char, 64> id{};
    EXPECT_EQ(MAPI_AddMail(record->get(), id.data()), TAMU_OK);
    return id.data();
  }
};
INSTANTIATE_TEST_SUITE_P(Devices, MailOperations, ::testing::ValuesIn(MailDeviceKinds()),
                         NameOfMailKind);

TEST_P(MailOperations, AddStoresEveryField) {
  MessageRecord record;
  FillMessage(&record);
  const std::string id = Add(&record);
  EXPECT_EQ(id.size(), 32U);
  EXPECT_EQ(id.find_first_not_of("0123456789ABCDEF"), std::string::npos);
  const std::vector<Stored> messages = Messages(gpInBoxFolder);
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0].subject, u"Meeting");
  EXPECT_EQ(messages[0].sender, u"Ada <ada@example.org>");
  EXPECT_EQ(messages[0].flags, 33);
  EXPECT_EQ(messages[0].delivered, kLastSecondOf2003);
  EXPECT_EQ(messages[0].body, std::u16string(u"first line\r\nsecond line\r\n\0", 26));
  EXPECT_EQ(messages[0].recipients,
            (std::vector<std::pair<std::int32_t, std::u16string>>{
                {1, u"bob@example.org"}, {1, u"carol@example.org"}, {2, u"dan@example.org"}}));
}

TEST_P(MailOperations, FolderNamesSelectTheFolderExactly) {
  for (const char* const folder : {"OUTBOX", "SENTBOX", "Outbox", "INBOX", ""}) {
    MessageRecord record;
    FillMessage(&record, folder);
    STR_CopyField(record.shape().folder, folder);
    Add(&record);
  }
  ASSERT_EQ(Messages(gpOutBoxFolder).size(), 1U);
  EXPECT_EQ(Messages(gpOutBoxFolder)[0].subject, u"OUTBOX");
  ASSERT_EQ(Messages(gpSentBoxFolder).size(), 1U);
  EXPECT_EQ(Messages(gpSentBoxFolder)[0].subject, u"SENTBOX");
  EXPECT_EQ(Messages(gpInBoxFolder).size(), 3U);
}

TEST_P(MailOperations, StatusOtherThanReadIsUnread) {
  for (const char* const status : {"read", "UNREAD", "READ ", ""}) {
    MessageRecord record;
    FillMessage(&record);
    STR_CopyField(record.shape().status, status);
    Add(&record);
  }
  for (const Stored& message : Messages(gpInBoxFolder)) EXPECT_EQ(message.flags, 32);
}

TEST_P(MailOperations, HtmlBodyIsStoredAsPlainText) {
  MessageRecord record;
  FillMessage(&record);
  record.SetBody("<html><body><p>one &amp; two</p>three</body></html>",
                 "text/html; charset=us-ascii");
  Add(&record);
  const std::u16string body = Messages(gpInBoxFolder)[0].body;
  EXPECT_EQ(body.find(u'<'), std::u16string::npos);
  EXPECT_NE(body.find(u"one & two"), std::u16string::npos);
  EXPECT_EQ(body.back(), u'\0');
}

TEST_P(MailOperations, EveryLineFeedGetsACarriageReturn) {
  MessageRecord record;
  FillMessage(&record);
  record.SetBody("a\nb\r\nc");
  Add(&record);
  EXPECT_EQ(Messages(gpInBoxFolder)[0].body, std::u16string(u"a\r\nb\r\r\nc\0", 9));
}

TEST_P(MailOperations, OnlyTheFirstBodyPartIsStored) {
  MessageRecord record;
  FillMessage(&record);
  MemPtr<BodyPart> second = MEM_New<BodyPart>();
  second->text = MEM_CopyText("second part").release();
  record.shape().body.next = second.release();
  Add(&record);
  EXPECT_EQ(Messages(gpInBoxFolder)[0].body.find(u"second part"), std::u16string::npos);
}

TEST_P(MailOperations, EmptyFieldsAreNotWritten) {
  MessageRecord record;
  CallHookScope calls;
  Add(&record);
  const auto& made = calls.calls();
  EXPECT_EQ(std::count(made.begin(), made.end(), "IMessage::SetProps"), 1);  // the flags
  EXPECT_EQ(std::count(made.begin(), made.end(), "IMessage::OpenProperty"), 0);
  EXPECT_EQ(std::count(made.begin(), made.end(), "IMessage::ModifyRecipients"), 1);
}

TEST_P(MailOperations, PropertiesAreSetInTheirOrder) {
  MessageRecord record;
  FillMessage(&record);
  CallHookScope calls;
  Add(&record);
  std::vector<std::string> order;
  for (const std::string& call : calls.calls()) {
    if (call.starts_with("IMessage::") || call.starts_with("IMAPIFolder::")) order.push_back(call);
  }
  EXPECT_EQ(order, (std::vector<std::string>{"IMAPIFolder::CreateMessage", "IMessage::SetProps",
                                             "IMessage::SetProps", "IMessage::OpenProperty",
                                             "IMessage::SetProps", "IMessage::SetProps",
                                             "IMessage::ModifyRecipients", "IMessage::GetProps"}));
}

TEST_P(MailOperations, AddLogsTheFolder) {
  MessageRecord record;
  STR_CopyField(record.shape().folder, "OUTBOX");
  const LogCapture log;
  Add(&record);
  ASSERT_FALSE(log.lines().empty());
  EXPECT_EQ(log.lines()[0].text, "MAPI:  MAPI_AddMail() Folder:OUTBOX");
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kInformation);
}

TEST_P(MailOperations, FindsWhatWasAdded) {
  MessageRecord record;
  FillMessage(&record);
  const std::string id = Add(&record);
  std::array<char, 64> found{};
  EXPECT_EQ(MAPI_FindMail(record.get(), found.data()), 1U);
  EXPECT_EQ(std::string(found.data()), id);
  EXPECT_EQ(MAPI_FindMail(record.get(), nullptr), 1U);
}

TEST_P(MailOperations, FindLogsFolderDateAndSubject) {
  const ScopedEnvironment locale("LC_ALL", "C");
  MessageRecord record;
  FillMessage(&record);
  STR_CopyField(record.shape().folder, "SENTBOX");
  const LogCapture log;
  EXPECT_EQ(MAPI_FindMail(record.get(), nullptr), 0U);
  EXPECT_EQ(log.texts(), (std::vector<std::string>{
                             "MAPI:  MAPI_FindMail() Folder:SENTBOX Date:12/31/2003 23:59:59 "
                             "Subj:'Meeting'",
                             "MAPI:  MAPI_FindMail - No more rows found (total=0)"}));
}

TEST_P(MailOperations, FindCountsTheRowsItHasSeen) {
  for (int i = 0; i < 60; ++i) {
    MessageRecord record;
    FillMessage(&record);
    Add(&record);
  }
  MessageRecord other;
  FillMessage(&other, "other");
  const LogCapture log;
  EXPECT_EQ(MAPI_FindMail(other.get(), nullptr), 0U);
  EXPECT_TRUE(log.Has("MAPI:  MAPI_FindMail - No more rows found (total=60)"));
}

TEST_P(MailOperations, FindLeavesTheIdAloneWhenNothingMatches) {
  MessageRecord record;
  FillMessage(&record);
  std::array<char, 64> id{"untouched"};
  EXPECT_EQ(MAPI_FindMail(record.get(), id.data()), 0U);
  EXPECT_STREQ(id.data(), "untouched");
}

TEST_P(MailOperations, OfTwoWithOneSecondAndSubjectTheFirstInTableOrderIsFound) {
  MessageRecord record;
  FillMessage(&record);
  const std::string first = Add(&record);
  Add(&record);
  std::array<char, 64> found{};
  ASSERT_EQ(MAPI_FindMail(record.get(), found.data()), 1U);
  EXPECT_EQ(std::string(found.data()), first);
}

TEST_P(MailOperations, RecordWithoutADateFindsOnlyTheZeroDeliveryDate) {
  MessageRecord record;
  FillMessage(&record);
  Add(&record);
  record.shape().date[0] = '\0';
  Add(&record);  // without a delivery time
  EXPECT_EQ(MAPI_FindMail(record.get(), nullptr), 0U);
  MessageRecord zero;
  FillMessage(&zero, "Meeting", "Sat, 30 Dec 1899 00:00:00");
  const std::string id = Add(&zero);
  std::array<char, 64> found{};
  ASSERT_EQ(MAPI_FindMail(record.get(), found.data()), 1U);
  EXPECT_EQ(std::string(found.data()), id);
}

TEST_P(MailOperations, SubjectIsComparedWithCase) {
  MessageRecord record;
  FillMessage(&record);
  Add(&record);
  STR_CopyField(record.shape().subject, "meeting");
  EXPECT_EQ(MAPI_FindMail(record.get(), nullptr), 0U);
}

TEST_P(MailOperations, MessageWithoutASubjectIsFoundByTheEmptyOne) {
  MessageRecord record;
  FillMessage(&record, "");
  const std::string id = Add(&record);
  std::array<char, 64> found{};
  ASSERT_EQ(MAPI_FindMail(record.get(), found.data()), 1U);
  EXPECT_EQ(std::string(found.data()), id);
}

TEST_P(MailOperations, OneSecondApartIsNotFound) {
  MessageRecord record;
  FillMessage(&record);
  Add(&record);
  STR_CopyField(record.shape().date, "Wed, 31 Dec 2003 23:59:58 GMT");
  EXPECT_EQ(MAPI_FindMail(record.get(), nullptr), 0U);
}

TEST_P(MailOperations, RepeatedHourFindsEitherInstantAndTheFirstArrivalOfBoth) {
  const ScopedTimeZone zone(kBerlinZone);
  MessageRecord later;
  FillMessage(&later, "Meeting", "Sun, 31 Oct 2021 01:30:00 GMT");
  const std::string later_id = Add(&later);
  MessageRecord wanted;
  FillMessage(&wanted, "Meeting", "Sun, 31 Oct 2021 02:30:00");
  std::array<char, 64> found{};
  ASSERT_EQ(MAPI_FindMail(wanted.get(), found.data()), 1U);
  EXPECT_EQ(std::string(found.data()), later_id);
  MessageRecord earlier;
  FillMessage(&earlier, "Meeting", "Sun, 31 Oct 2021 00:30:00 GMT");
  Add(&earlier);
  ASSERT_EQ(MAPI_FindMail(wanted.get(), found.data()), 1U);
  EXPECT_EQ(std::string(found.data()), later_id);
}

TEST_P(MailOperations, FindWithoutTheIndexGivesTheSame) {
  MessageRecord record;
  FillMessage(&record);
  const std::string id = Add(&record);
  CallHookScope calls;
  calls.Answer("IExactMailFind::FindMessage", kStrange);
  std::array<char, 64> found{};
  EXPECT_EQ(MAPI_FindMail(record.get(), found.data()), 1U);
  EXPECT_EQ(std::string(found.data()), id);
  STR_CopyField(record.shape().subject, "other");
  const LogCapture log;
  EXPECT_EQ(MAPI_FindMail(record.get(), nullptr), 0U);
  EXPECT_TRUE(log.Has("MAPI:  MAPI_FindMail - No more rows found (total=1)"));
}

TEST_P(MailOperations, FindFailuresAreLoggedAndReadAsNotFound) {
  MessageRecord record;
  FillMessage(&record);
  Add(&record);
  const std::pair<const char*, const char*> failures[] = {
      {"IMAPIFolder::GetContentsTable",
       "MAPI:  lpFolder->GetContentsTable failed with code: 0x80041234"},
      {"IMAPITable::SeekRow", "MAPI:  lpMessageTable->SeekRow failed with code: 0x80041234"}};
  for (const auto& [method, text] : failures) {
    CallHookScope calls;
    calls.Answer(method, kStrange);
    const LogCapture log;
    EXPECT_EQ(MAPI_FindMail(record.get(), nullptr), 0U);
    EXPECT_TRUE(log.Has(text)) << text;
  }
  CallHookScope calls;
  calls.Answer("IExactMailFind::FindMessage", kStrange);
  calls.Answer("IMAPITable::QueryRows", kStrange);
  const LogCapture log;
  EXPECT_EQ(MAPI_FindMail(record.get(), nullptr), 0U);
  EXPECT_TRUE(log.Has("MAPI:  lpMessageTable->QueryRows failed with code: 0x80041234"));
}

TEST_P(MailOperations, ColumnsThatFailAreLoggedAndTheSearchGoesOn) {
  MessageRecord record;
  FillMessage(&record);
  Add(&record);
  CallHookScope calls;
  calls.Answer("IMAPITable::SetColumns", kStrange);
  const LogCapture log;
  EXPECT_EQ(MAPI_FindMail(record.get(), nullptr), 1U);
  EXPECT_TRUE(log.Has("MAPI:  lpMessageTable->SetColumns failed with code: 0x80041234"));
}

TEST_P(MailOperations, ModifySetsThePropertiesAnew) {
  MessageRecord record;
  FillMessage(&record);
  const std::string id = Add(&record);
  STR_CopyField(record.shape().subject, "Changed");
  record.SetBody("x");
  EXPECT_EQ(MAPI_ModifyMail(record.get(), id.c_str()), TAMU_OK);
  const std::vector<Stored> messages = Messages(gpInBoxFolder);
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0].subject, u"Changed");
  EXPECT_EQ(messages[0].body, std::u16string(u"x\0", 2));
}

TEST_P(MailOperations, ModifyAddsTheRecipientsOnceMore) {
  MessageRecord record;
  FillMessage(&record);
  const std::string id = Add(&record);
  EXPECT_EQ(MAPI_ModifyMail(record.get(), id.c_str()), TAMU_OK);
  EXPECT_EQ(Messages(gpInBoxFolder)[0].recipients.size(), 6U);
}

TEST_P(MailOperations, ModifyTakesLowerCaseIds) {
  MessageRecord record;
  FillMessage(&record);
  std::string id = Add(&record);
  for (char& digit : id) digit = static_cast<char>(std::tolower(digit));
  EXPECT_EQ(MAPI_ModifyMail(record.get(), id.c_str()), TAMU_OK);
}

TEST_P(MailOperations, ModifyWithAnIdThatIsNotHexadecimalGives9) {
  MessageRecord record;
  const std::string id = Add(&record);
  for (const std::string& wrong : {id.substr(1), id.substr(0, 31) + "g", id + "0"}) {
    const LogCapture log;
    EXPECT_EQ(MAPI_ModifyMail(record.get(), wrong.c_str()), TAMU_INVALID_ID);
    EXPECT_EQ(log.texts().back(), "MAPI:  FBinFromHex to convert ID");
    EXPECT_EQ(log.lines().front().text, "MAPI:  MAPI_ModifyMail() Folder: ID:'" + wrong + "'");
  }
}

TEST_P(MailOperations, ModifyOfAMessageThatIsNotThereGives14) {
  MessageRecord record;
  std::string id = Add(&record);
  id.back() = id.back() == '9' ? '8' : '9';
  const LogCapture log;
  EXPECT_EQ(MAPI_ModifyMail(record.get(), id.c_str()), TAMU_GENERAL_PIM_ERROR);
  EXPECT_EQ(log.texts().back(),
            "MAPI:  lpFolder->OpenEntry for Mailbox failed with code: 0x8004010f");
}

TEST_P(MailOperations, ModifyOfAFolderChangesNothingAndReturnsZero) {
  SizedPropTagArray<1> tags{1, {PR_ENTRYID}};
  std::uint32_t count = 0;
  SPropValue* values = nullptr;
  ASSERT_EQ(gpSentBoxFolder->GetProps(tags.get(), 0, &count, &values), hr::kOk);
  std::array<char, 64> id{};
  MAPI_EntryIdToHex(values->Value.bin.lpb, values->Value.bin.cb, id.data());
  MAPIFreeBuffer(values);
  MessageRecord record;
  FillMessage(&record);
  const LogCapture log;
  EXPECT_EQ(MAPI_ModifyMail(record.get(), id.data()), TAMU_OK);
  EXPECT_EQ(log.texts().back(), "MAPI:  ulObjType of OpenEntry on Mailbox != MAPI_MESSAGE");
  EXPECT_EQ(log.lines().back().severity, LogSeverity::kInformation);
}

TEST_P(MailOperations, EveryFailingPropertyHasItsLineAndDoesNotStopTheOthers) {
  MessageRecord record;
  FillMessage(&record);
  CallHookScope calls;
  calls.Answer("IMessage::SetProps", kStrange);
  calls.Answer("IMessage::OpenProperty", kStrange);
  calls.Answer("IMessage::ModifyRecipients", kStrange);
  const LogCapture log;
  EXPECT_EQ(MAPI_AddMail(record.get(), nullptr), TAMU_OK);
  EXPECT_EQ(log.texts(),
            (std::vector<std::string>{
                "MAPI:  MAPI_AddMail() Folder:",
                "MAPI:  lpMessage->SetProps(PR_SUBJECT) failed with code: 0x80041234",
                "MAPI:  lpMessage->SetProps(PR_MESSAGE_DELIVERY_TIME) failed with code: 0x80041234",
                "MAPI:  pMapiMessage->OpenProperty failed with code: 0x80041234",
                "MAPI:  lpMessage->SetProps(PR_MESSAGE_FLAG) failed with code: 0x80041234",
                "MAPI:  lpMessage->SetProps(PR_SENDER_*) failed with code: 0x80041234",
                "MAPI:  pmsg->ModifyRecipients failed with code: 0x80041234"}));
}

TEST_P(MailOperations, BodyThatCannotBeWrittenIsLoggedAndDoesNotStopTheOthers) {
  MessageRecord record;
  FillMessage(&record);
  CallHookScope calls;
  calls.Answer("IStream::Write", kStrange);
  const LogCapture log;
  EXPECT_EQ(MAPI_AddMail(record.get(), nullptr), TAMU_OK);
  EXPECT_EQ(log.texts(),
            (std::vector<std::string>{"MAPI:  MAPI_AddMail() Folder:",
                                      "MAPI:  lpStream->Write failed with code: 0x80041234"}));
  EXPECT_EQ(Messages(gpInBoxFolder).at(0).recipients.size(), 3U);
}

TEST_P(MailOperations, CreateThatFailsGives14) {
  MessageRecord record;
  CallHookScope calls;
  calls.Answer("IMAPIFolder::CreateMessage", kStrange);
  const LogCapture log;
  EXPECT_EQ(MAPI_AddMail(record.get(), nullptr), TAMU_GENERAL_PIM_ERROR);
  EXPECT_TRUE(log.Has("MAPI:  lpFolder->CreateMessage failed with code: 0x80041234"));
}

TEST_P(MailOperations, IdThatCannotBeReadGives14WhenItIsAskedFor) {
  MessageRecord record;
  CallHookScope calls;
  calls.Answer("IMessage::GetProps", kStrange);
  EXPECT_EQ(MAPI_AddMail(record.get(), nullptr), TAMU_OK);
  std::array<char, 64> id{};
  const LogCapture log;
  EXPECT_EQ(MAPI_AddMail(record.get(), id.data()), TAMU_GENERAL_PIM_ERROR);
  EXPECT_TRUE(log.Has("MAPI:  lpMessage->GetProps(PR_ENTRYID) failed with code: 0x80041234"));
}

TEST_P(MailOperations, RecipientsWithoutMemoryGiveItsCode) {
  MessageRecord record;
  FillMessage(&record);
  ComPtr<IMessage> message;
  ASSERT_EQ(gpInBoxFolder->CreateMessage(nullptr, 0, message.put()), hr::kOk);
  bool refused = false;
  for (std::uint64_t n = 1; !refused && n < 50; ++n) {
    MEM_FailNth(n);
    refused = MAPI_SetMessageProps(message.get(), *record.get()) == hr::kOutOfMemory;
  }
  MEM_FailNth(0);
  EXPECT_TRUE(refused);
}

TEST_P(MailOperations, EveryCallFailingReleasesEverythingAndAnswersByItsCode) {
  MessageRecord record;
  FillMessage(&record);
  const std::string id = Add(&record);
  for (std::uint64_t n = 1;; ++n) {
    const LiveCounts before;
    CallHookScope calls;
    calls.AnswerNth(n, kStrange);
    std::array<char, 64> text{};
    const std::uint32_t found = MAPI_FindMail(record.get(), text.data());
    const TamuResult added = MAPI_AddMail(record.get(), text.data());
    const TamuResult modified = MAPI_ModifyMail(record.get(), id.c_str());
    EXPECT_EQ(LiveCounts(), before) << n << " " << calls.struck();
    EXPECT_TRUE(found <= 1);
    EXPECT_TRUE(added == TAMU_OK || added == TAMU_GENERAL_PIM_ERROR) << added;
    EXPECT_TRUE(modified == TAMU_OK || modified == TAMU_GENERAL_PIM_ERROR) << modified;
    if (calls.struck().empty()) break;
    ASSERT_LT(n, 1000U);
  }
}

TEST(MailSender, ProblemWithItIsLoggedAndReleased) {
  MessageRecord record;
  FillMessage(&record);
  const std::int64_t buffers = LiveMapiBuffers();
  const ComPtr<ScriptedMessage> message(new ScriptedMessage);
  message->problem_tag = PR_SENDER_EMAIL_ADDRESS;
  record.SetBody("");
  const LogCapture log;
  EXPECT_EQ(MAPI_SetMessageProps(message.get(), *record.get()), hr::kOk);
  ASSERT_EQ(log.texts(),
            (std::vector<std::string>{
                "MAPI:  lpProblems->aProblem[0].scode (PR_SENDER_NAME) : 0x8004011a"}));
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
  EXPECT_EQ(LiveMapiBuffers(), buffers);
}

TEST(MailOperationsWithoutFolders, FindAndModifySayThatTheFolderIsNull) {
  MessageRecord record;
  FillMessage(&record);
  {
    const LogCapture log;
    EXPECT_EQ(MAPI_FindMail(record.get(), nullptr), 0U);
    EXPECT_EQ(log.texts().back(), "MAPI:  MAPI_FindMail error - lpFolder is NULL");
    EXPECT_EQ(log.lines().back().severity, LogSeverity::kError);
  }
  const LogCapture log;
  EXPECT_EQ(MAPI_ModifyMail(record.get(), "00"), TAMU_GENERAL_PIM_ERROR);
  EXPECT_EQ(log.texts().back(), "MAPI:  MAPI_ModifyMail error - lpFolder is NULL");
}

TEST(MailOperationsWithoutFolders, AddGives14) {
  MessageRecord record;
  FillMessage(&record);
  EXPECT_EQ(MAPI_AddMail(record.get(), nullptr), TAMU_GENERAL_PIM_ERROR);
}

}  // namespace
}  // namespace tamu
