#include "device/sqlite/schema.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "device/sqlite/device_support.h"
#include "device/sqlite/sqlite_mail_store.h"
#include "device/sqlite/statement.h"
#include "support/log_capture.h"

namespace tamu::device {
namespace {

void AddNickname(Database& database) {
  Statement(database, "alter table contact add column nickname text not null default ''", "").Run();
}
void AddPager(Database& database) {
  Statement(database, "alter table contact add column pager text not null default ''", "").Run();
}
void FailHalfway(Database& database) {
  AddNickname(database);
  Statement(database, "alter table no_such_table add column x", "").Run();
}

std::unique_ptr<Database> Open(const TestDevice& device) {
  std::unique_ptr<Database> database;
  EXPECT_EQ(Database::Open(device.folder(), &database), hr::kOk);
  return database;
}

std::vector<SchemaStep> StepsAnd(std::initializer_list<SchemaStep> more) {
  std::vector<SchemaStep> steps(SchemaSteps().begin(), SchemaSteps().end());
  steps.insert(steps.end(), more);
  return steps;
}

TEST(Schema, ANewDatabaseIsOfTheNewestVersion) {
  const TestDevice device;
  static_cast<void>(Open(device));
  RawDatabase raw(device.file());
  EXPECT_EQ(raw.Query("pragma user_version")[0], std::to_string(SchemaSteps().size()));
  EXPECT_EQ(raw.Query("pragma application_id")[0], std::to_string(kApplicationId));
}

TEST(Schema, AnOlderDatabaseIsBroughtForwardWithItsItems) {
  const TestDevice device;
  const ItemRecord kept = [&] {
    ItemRecord item = FullItem(ItemKind::kContact);
    EXPECT_EQ(OpenDevice()->Save(&item), hr::kOk);
    return item;
  }();
  auto database = Open(device);
  const auto steps = StepsAnd({&AddNickname, &AddPager});
  ASSERT_EQ(PrepareSchema(*database, steps), hr::kOk);
  ASSERT_EQ(PrepareSchema(*database, steps), hr::kOk);  // there is nothing left to do
  RawDatabase raw(device.file());
  EXPECT_EQ(raw.Query("pragma user_version")[0], std::to_string(steps.size()));
  EXPECT_EQ(raw.Query("select nickname, pager from contact")[0], "|");
  auto store = MakeSqliteItemStore(std::make_shared<Stores>(std::move(database)));
  EXPECT_EQ(Loaded(*store, kept.oid), kept);
}

// Version 2 came with the numbers of messages.
TEST(Schema, MessagesOfVersion1AreCounted) {
  const TestDevice device;
  {
    std::shared_ptr<MailStore> mail;
    ASSERT_EQ(OpenMailStore(&mail), hr::kOk);
    MailId id = 0;
    for (int i = 0; i < 3; ++i) ASSERT_EQ(mail->CreateMessage(MailFolder::kInbox, &id), hr::kOk);
    ASSERT_EQ(mail->CreateMessage(MailFolder::kOutbox, &id), hr::kOk);
  }
  RawDatabase(device.file()).Query("drop table mail_folder; pragma user_version = 1");
  std::shared_ptr<MailStore> mail;
  ASSERT_EQ(OpenMailStore(&mail), hr::kOk);
  const auto count = [&](MailFolder folder) {
    std::uint32_t messages = 77;
    EXPECT_EQ(mail->Count(folder, kLastMail, &messages), hr::kOk);
    return messages;
  };
  EXPECT_EQ(count(MailFolder::kInbox), 3U);
  EXPECT_EQ(count(MailFolder::kOutbox), 1U);
  EXPECT_EQ(count(MailFolder::kSentItems), 0U);
  const MailId first = 1;
  ASSERT_EQ(mail->DeleteMessages(MailFolder::kInbox, std::span(&first, 1)), hr::kOk);
  EXPECT_EQ(count(MailFolder::kInbox), 2U);
}

TEST(Schema, AStepThatFailsLeavesTheDatabaseAsItWas) {
  const TestDevice device;
  auto database = Open(device);
  const auto steps = StepsAnd({&AddPager, &FailHalfway});
  const testing::LogCapture log;
  EXPECT_TRUE(platform::Failed(PrepareSchema(*database, steps)));
  EXPECT_EQ(log.lines().size(), 1U);
  RawDatabase raw(device.file());
  EXPECT_EQ(raw.Query("pragma user_version")[0], std::to_string(SchemaSteps().size()));
  EXPECT_EQ(raw.Query("select count(*) from pragma_table_info('contact') "
                      "where name in ('pager', 'nickname')")[0],
            "0");
}

TEST(Schema, ADatabaseBeyondTheStepsIsRefused) {
  const TestDevice device;
  auto database = Open(device);
  ASSERT_EQ(PrepareSchema(*database, StepsAnd({&AddPager})), hr::kOk);
  EXPECT_EQ(PrepareSchema(*database, SchemaSteps()), hr::kNewerVersion);
}

// A released step never changes: a property that is added later needs a step of its own, and this
// sum tells when the first step's tables came out otherwise.
TEST(Schema, TheTablesOfVersion1AreTheirs) {
  const TestDevice device;
  static_cast<void>(Open(device));
  RawDatabase raw(device.file());
  std::string all;
  std::uint64_t sum = 0xCBF29CE484222325U;
  for (const std::string& sql :
       raw.Query("select sql from sqlite_master where tbl_name in ('device', 'item', 'contact', "
                 "'appointment', 'task', 'recurrence', 'exception', 'recipient') and "
                 "sql is not null order by name")) {
    all += sql + ";\n";
  }
  for (const char letter : all) sum = (sum ^ static_cast<unsigned char>(letter)) * 0x100000001B3U;
  EXPECT_EQ(sum, 14221174963403891691U) << all;
}

}  // namespace
}  // namespace tamu::device
