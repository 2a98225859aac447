#include "device/mail/mail_store.h"

#include <gtest/gtest.h>

#include "device/batch.h"
#include "device/sqlite/device_support.h"
#include "device/sqlite/sqlite_mail_store.h"
#include "platform/cemapi.h"
#include "support/log_capture.h"

namespace tamu::device {
namespace {

// What the contract tests of device/mail cannot see from outside.
class MailStoreTest : public ::testing::Test {
 protected:
  static std::shared_ptr<MailStore> OpenMail() {
    std::shared_ptr<MailStore> store;
    EXPECT_EQ(OpenMailStore(&store), hr::kOk);
    return store;
  }

  MailId Create(std::u16string subject, std::int64_t time = 5) {
    MailId id = 0;
    EXPECT_EQ(store_->CreateMessage(MailFolder::kInbox, &id), hr::kOk);
    const MailProperty properties[] = {{platform::PR_SUBJECT, std::move(subject)},
                                       {platform::PR_MESSAGE_DELIVERY_TIME, time}};
    EXPECT_EQ(store_->SetProperties(id, properties), hr::kOk);
    return id;
  }

  std::uint32_t Count() {
    std::uint32_t count = 99;
    EXPECT_EQ(store_->Count(MailFolder::kInbox, kLastMail, &count), hr::kOk);
    return count;
  }

  MailId Find(std::u16string_view subject) {
    MailId id = 99;
    EXPECT_EQ(store_->FindExact(MailFolder::kInbox, {0, 1000, subject}, &id), hr::kOk);
    return id;
  }

  TestDevice device_;
  std::shared_ptr<MailStore> store_ = OpenMail();
};

TEST_F(MailStoreTest, EveryRowCarriesTheDevicesId) {
  const MailId id = Create(u"subject");
  const MailRecipient recipient{1, {}, u"SMTP", u"a@example.org"};
  ASSERT_EQ(store_->AddRecipients(id, {&recipient, 1}), hr::kOk);
  RawDatabase raw(device_.file());
  for (const char* const table : {"message", "message_property", "message_recipient", "mailbox"}) {
    const std::string of = table;
    EXPECT_NE(raw.Query("select count(*) from " + of)[0], "0") << table;
    EXPECT_EQ(
        raw.Query("select count(*) from " + of + " where device <> (select id from device)")[0],
        "0")
        << table;
  }
}

TEST_F(MailStoreTest, MessagesOfAnotherDeviceAreNotThere) {
  const MailId id = Create(u"foreign");
  store_.reset();
  {
    RawDatabase raw(device_.file());
    raw.Query("pragma foreign_keys = off");
    raw.Query("update message set device = device + 1");
    raw.Query("insert into mail_folder select device + 1, folder, messages from mail_folder");
    raw.Query("update mail_folder set messages = 0 where device = (select id from device)");
  }
  store_ = OpenMail();
  EXPECT_EQ(Count(), 0U);
  EXPECT_EQ(Find(u"foreign"), 0U);
  MailFolder folder{};
  EXPECT_EQ(store_->FolderOf(id, &folder), hr::kItemNotFound);
  EXPECT_EQ(store_->DeleteMessages(MailFolder::kInbox, {&id, 1}), hr::kItemNotFound);
  std::vector<MailRow> rows;
  EXPECT_EQ(store_->ReadRows(MailFolder::kInbox, 0, 10, {}, &rows), hr::kOk);
  EXPECT_TRUE(rows.empty());
}

TEST_F(MailStoreTest, DeletingLeavesNoRowBehind) {
  const MailId id = Create(u"subject");
  const MailRecipient recipient{1, {}, {}, u"a@example.org"};
  ASSERT_EQ(store_->AddRecipients(id, {&recipient, 1}), hr::kOk);
  ASSERT_EQ(store_->DeleteMessages(MailFolder::kInbox, {&id, 1}), hr::kOk);
  RawDatabase raw(device_.file());
  for (const char* const table : {"message", "message_property", "message_recipient"}) {
    EXPECT_EQ(raw.Query(std::string("select count(*) from ") + table)[0], "0") << table;
  }
}

TEST_F(MailStoreTest, AbsentPartsOfARecipientStayAbsent) {
  const MailId id = Create(u"subject");
  const std::vector<MailRecipient> recipients = {{1, u"", {}, u"a@example.org"}, {2, {}, u"", {}}};
  ASSERT_EQ(store_->AddRecipients(id, recipients), hr::kOk);
  std::vector<MailRecipient> read;
  ASSERT_EQ(store_->ReadRecipients(id, &read), hr::kOk);
  EXPECT_EQ(read, recipients);
}

// Texts that an index cannot tell apart are told apart by looking at them.
TEST_F(MailStoreTest, EqualKeysOfDifferentSubjectsDoNotDeceiveTheExactFind) {
  const MailId first = Create(u"one");
  const MailId second = Create(u"two");
  store_.reset();
  RawDatabase(device_.file())
      .Query("update message set subject_key = (select subject_key from message where id = " +
             std::to_string(second) + ")");
  store_ = OpenMail();
  EXPECT_EQ(Find(u"two"), second);
  EXPECT_NE(Find(u"two"), first);
}

TEST_F(MailStoreTest, ExactFindAndPagesGoByIndex) {
  RawDatabase raw(device_.file());
  const std::string find = raw.Query(
      "explain query plan select id from message where device = 1 and folder = 1 and "
      "subject_key = 1 and delivery_key between 1 and 2 order by id")[0];
  EXPECT_NE(find.find("message_by_subject"), std::string::npos) << find;
  const auto page = raw.Query(
      "explain query plan select id from message where device = 1 and folder = 1 and id > 5 "
      "order by id limit 50");
  ASSERT_EQ(page.size(), 1U);  // nothing is sorted
  EXPECT_NE(page[0].find("message_by_folder"), std::string::npos) << page[0];
}

// --- Batches ----------------------------------------------------------------

TEST_F(MailStoreTest, BatchThatIsGivenUpLeavesNoMail) {
  const MailId kept = Create(u"kept");
  {
    Batch batch;
    ASSERT_EQ(batch.Begin(), hr::kOk);
    static_cast<void>(Create(u"in the batch"));
    const MailProperty changed{platform::PR_SUBJECT, std::u16string(u"changed")};
    ASSERT_EQ(store_->SetProperties(kept, {&changed, 1}), hr::kOk);
    EXPECT_EQ(Count(), 2U);
    ASSERT_EQ(batch.Rollback(), hr::kOk);
  }
  EXPECT_EQ(Count(), 1U);
  EXPECT_EQ(Find(u"kept"), kept);
  EXPECT_EQ(Find(u"in the batch"), 0U);
}

TEST_F(MailStoreTest, CommittedBatchIsKept) {
  Batch batch;
  ASSERT_EQ(batch.Begin(), hr::kOk);
  for (int i = 0; i < 100; ++i) static_cast<void>(Create(u"message", i));
  ASSERT_EQ(batch.Commit(), hr::kOk);
  store_.reset();
  store_ = OpenMail();
  EXPECT_EQ(Count(), 100U);
}

// One step of a batch that fails takes nothing of the steps before it.
TEST_F(MailStoreTest, FailedStepOfABatchUndoesItselfAlone) {
  Batch batch;
  ASSERT_EQ(batch.Begin(), hr::kOk);
  const MailId first = Create(u"first");
  const MailId gone[] = {first, 4000};
  EXPECT_EQ(store_->DeleteMessages(MailFolder::kInbox, gone), hr::kItemNotFound);
  ASSERT_EQ(batch.Commit(), hr::kOk);
  EXPECT_EQ(Find(u"first"), first);
}

// --- Damage -----------------------------------------------------------------

TEST_F(MailStoreTest, FolderThatThereIsNotIsDamage) {
  const MailId id = Create(u"subject");
  RawDatabase(device_.file()).Query("update message set folder = 77");
  testing::LogCapture log;
  MailFolder folder{};
  EXPECT_EQ(store_->FolderOf(id, &folder), hr::kCorrupt);
  EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(MailStoreTest, TypeThatIsNeverStoredIsDamage) {
  const MailId id = Create(u"subject");
  RawDatabase(device_.file())
      .Query("update message_property set tag = 3604480 + 13 where tag = 3604511");
  testing::LogCapture log;
  const std::uint32_t tags[] = {0x00370000};
  std::vector<MailProperty> found;
  EXPECT_EQ(store_->ReadProperties(id, tags, &found), hr::kCorrupt);
  EXPECT_EQ(log.lines().size(), 1U);
}

}  // namespace
}  // namespace tamu::device
