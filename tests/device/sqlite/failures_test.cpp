// Databases that cannot be used: each gives a failing result and exactly one line of the log.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "device/batch.h"
#include "device/sqlite/device_support.h"
#include "device/sqlite/schema.h"
#include "device/sqlite/statement.h"
#include "platform/test_folder.h"
#include "support/log_capture.h"

namespace tamu::device {
namespace {

constexpr int kShortWait = 30;

// Exactly one line since it was made, and that it is as lines are: it names the file, and has
// nothing of an item in it.
void ExpectOneLine(const testing::LogCapture& log, const std::string& text,
                   const std::string& file) {
  ASSERT_EQ(log.lines().size(), 1U) << ::testing::PrintToString(log.texts());
  const std::string& line = log.lines()[0].text;
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
  EXPECT_TRUE(line.starts_with("TAMU:  device: ")) << line;
  EXPECT_NE(line.find(text), std::string::npos) << line;
  EXPECT_NE(line.find(file), std::string::npos) << line;
  EXPECT_EQ(line.find("Secret"), std::string::npos) << line;
}

class DeviceFailures : public ::testing::Test {
 protected:
  std::int32_t SaveSecret(ItemStore& store) {
    ItemRecord item = FullItem(ItemKind::kContact);
    TextOf(item, ContactProperty::LastName) = u"Secret";
    return Saved(store, item);
  }
  platform::HRESULT Open(int busy = kShortWait) {
    std::unique_ptr<Database> database;
    const platform::HRESULT result = Database::Open(device_.folder(), &database, busy);
    EXPECT_EQ(database != nullptr, platform::Succeeded(result));
    if (database == nullptr) return result;
    stores_ = std::make_shared<Stores>(std::move(database));
    store_ = MakeSqliteItemStore(stores_);
    return result;
  }
  void Close() {
    store_.reset();
    stores_.reset();
  }
  void MakeDeviceWithItems(int items) {
    ASSERT_EQ(Open(), hr::kOk);
    ASSERT_EQ(stores_->database().BeginBatch(), hr::kOk);
    for (int i = 0; i < items; ++i) SaveSecret(*store_);
    ASSERT_EQ(stores_->database().CommitBatch(), hr::kOk);
    Close();
  }
  void ExpectOpenFails(platform::HRESULT expected, const std::string& text) {
    const testing::LogCapture log;
    EXPECT_EQ(Open(), expected);
    ExpectOneLine(log, text, device_.folder());
  }
  // What the application is given, too.
  void ExpectStoresFail(platform::HRESULT expected, const std::string& text) {
    const testing::LogCapture log;
    std::shared_ptr<ItemStore> store;
    EXPECT_EQ(OpenItemStore(&store), expected);
    EXPECT_EQ(store, nullptr);
    ExpectOneLine(log, text, device_.folder());
  }

  TestDevice device_;
  std::shared_ptr<Stores> stores_;
  std::shared_ptr<ItemStore> store_;
};

TEST_F(DeviceFailures, FolderAndFileAreMadeForTheUserAlone) {
  ASSERT_EQ(Open(), hr::kOk);
  SaveSecret(*store_);
  struct stat status = {};
  ASSERT_EQ(::stat(device_.folder().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0700U);
  for (const char* const suffix : {"", "-wal", "-shm"}) {
    ASSERT_EQ(::stat((device_.file() + suffix).c_str(), &status), 0) << suffix;
    EXPECT_EQ(status.st_mode & 0777, 0600U) << suffix;
  }
}

TEST_F(DeviceFailures, TheConnectionIsDurableAndChecksReferences) {
  ASSERT_EQ(Open(), hr::kOk);
  Database& database = stores_->database();
  const auto number = [&](const char* sql) {
    Statement statement(database, sql, "", "i");
    return statement.RunForRow() ? statement.Integer(0) : -1;
  };
  EXPECT_EQ(number("pragma synchronous"), 2);
  EXPECT_EQ(number("pragma foreign_keys"), 1);
  EXPECT_EQ(number("pragma application_id"), kApplicationId);
  Statement mode(database, "pragma journal_mode", "", "t");
  ASSERT_TRUE(mode.RunForRow());
  EXPECT_EQ(mode.Utf8(0), "wal");
}

TEST_F(DeviceFailures, AnyFolderNameWorks) {
  for (const char* const name : {"with blank", "a=b c", "quo\"te", "it's", "-x", "%41?mode=ro#f",
                                 "\xFF\xFE", "new\nline", ":memory:", "file:x"}) {
    const std::string folder = (device_.path() / name).string();
    std::unique_ptr<Database> database;
    ASSERT_EQ(Database::Open(folder, &database), hr::kOk) << name;
    EXPECT_TRUE(std::filesystem::exists(folder + "/device.db")) << name;
    EXPECT_EQ(database->file(), folder + "/device.db");
  }
}

TEST_F(DeviceFailures, ALockedDatabaseIsWaitedForAndThenRefused) {
  ASSERT_EQ(Open(), hr::kOk);
  const std::int32_t oid = SaveSecret(*store_);
  RawDatabase other(device_.file());
  other.Query("begin immediate");
  const testing::LogCapture log;
  ItemRecord item = FullItem(ItemKind::kContact);
  TextOf(item, ContactProperty::LastName) = u"Secret";
  EXPECT_EQ(store_->Save(&item), hr::kLocked);
  EXPECT_EQ(item.oid, 0);
  ExpectOneLine(log, "in use by another program; try again when it is done", device_.file());
  EXPECT_EQ(Loaded(*store_, oid).oid, oid);  // reading goes on
  other.Query("rollback");
  EXPECT_EQ(store_->Save(&item), hr::kOk);
}

TEST_F(DeviceFailures, ALockedDatabaseHasNoBatch) {
  ASSERT_EQ(Open(), hr::kOk);
  RawDatabase other(device_.file());
  other.Query("begin immediate");
  const testing::LogCapture log;
  EXPECT_EQ(stores_->database().BeginBatch(), hr::kLocked);
  EXPECT_FALSE(stores_->database().InBatch());
  ExpectOneLine(log, "in use by another program", device_.file());
}

TEST_F(DeviceFailures, AnExclusivelyLockedDatabaseIsNotOpened) {
  MakeDeviceWithItems(1);
  RawDatabase other(device_.file());
  other.Query("pragma locking_mode = exclusive; begin immediate; delete from item; rollback");
  ExpectOpenFails(hr::kLocked, "in use by another program");
}

TEST_F(DeviceFailures, AReadOnlyFileIsNotOpened) {
  MakeDeviceWithItems(1);
  std::filesystem::permissions(device_.path(), std::filesystem::perms(0777));
  std::filesystem::permissions(device_.folder(), std::filesystem::perms(0777));
  std::filesystem::permissions(device_.file(), std::filesystem::perms(0444));
  const platform::WithoutPrivileges somebody;
  ExpectOpenFails(hr::kWriteProtected, "cannot be written");
  ExpectStoresFail(hr::kWriteProtected, "cannot be written");
}

TEST_F(DeviceFailures, AReadOnlyFolderIsNotOpened) {
  MakeDeviceWithItems(1);
  std::filesystem::permissions(device_.path(), std::filesystem::perms(0755));
  std::filesystem::permissions(device_.file(), std::filesystem::perms(0666));
  std::filesystem::permissions(device_.folder(), std::filesystem::perms(0555));
  const platform::WithoutPrivileges somebody;
  ExpectOpenFails(hr::kWriteProtected, "make the file and its folder writable");
}

TEST_F(DeviceFailures, AFolderThatCannotBeMadeIsAccessDenied) {
  std::filesystem::permissions(device_.path(), std::filesystem::perms(0555));
  const platform::WithoutPrivileges somebody;
  ExpectOpenFails(hr::kAccessDenied, "let this user read and write");
}

TEST_F(DeviceFailures, AFileInTheFoldersPlaceIsRefused) {
  std::ofstream(device_.folder()) << "x";
  const testing::LogCapture log;
  EXPECT_TRUE(platform::Failed(Open()));
  ExpectOneLine(log, "no such folder", device_.folder());
}

TEST_F(DeviceFailures, NoFolderAtAllIsRefused) {
  const testing::ScopedEnvironment home("HOME", "");
  const testing::ScopedEnvironment data("XDG_DATA_HOME", "");
  const testing::ScopedEnvironment own("TAMU_HOME", "");
  const testing::LogCapture log;
  std::shared_ptr<Stores> stores;
  EXPECT_EQ(OpenStores(&stores), static_cast<platform::HRESULT>(0x80070003U));
  ExpectOneLine(log, "set TAMU_HOME", "");
}

TEST_F(DeviceFailures, AFileThatIsNoDatabaseIsCorrupt) {
  std::filesystem::create_directories(device_.folder());
  std::ofstream(device_.file()) << std::string(8192, 'x');
  ExpectOpenFails(hr::kCorrupt, "damaged");
  ExpectStoresFail(hr::kCorrupt, "damaged");
}

TEST_F(DeviceFailures, ATruncatedDatabaseIsCorrupt) {
  MakeDeviceWithItems(50);
  const auto size = std::filesystem::file_size(device_.file());
  for (const std::uintmax_t left : {size / 2, std::uintmax_t{4096}, std::uintmax_t{100}}) {
    std::filesystem::resize_file(device_.file(), left);
    ExpectOpenFails(hr::kCorrupt, "damaged");
  }
}

TEST_F(DeviceFailures, ADamagedPageIsCorruptWhenItIsRead) {
  MakeDeviceWithItems(200);
  {
    std::fstream file(device_.file(), std::ios::in | std::ios::out | std::ios::binary);
    const auto size = std::filesystem::file_size(device_.file());
    for (std::uintmax_t at = std::uintmax_t{4096} * 30; at < size; at += 4096) {
      file.seekp(static_cast<std::streamoff>(at));
      file << std::string(512, '\xEE');
    }
  }
  ASSERT_EQ(Open(), hr::kOk);
  int corrupt = 0;
  for (std::int32_t oid = 1; oid <= 200; ++oid) {
    const testing::LogCapture log;
    ItemRecord item;
    const platform::HRESULT result = store_->Load(oid, &item);
    if (platform::Succeeded(result)) continue;
    EXPECT_EQ(result, hr::kCorrupt);
    ExpectOneLine(log, "damaged", device_.file());
    ++corrupt;
  }
  EXPECT_GT(corrupt, 50);
}

TEST_F(DeviceFailures, ADatabaseThatLacksATableIsCorrupt) {
  MakeDeviceWithItems(1);
  const auto tables =
      RawDatabase(device_.file()).Query("select name from sqlite_master where type = 'table'");
  EXPECT_GE(tables.size(), 12U);
  const std::string whole = device_.file() + ".whole";
  std::filesystem::copy_file(device_.file(), whole);
  for (const std::string& table : tables) {
    SCOPED_TRACE(table);
    RawDatabase(device_.file()).Query("drop table " + table);
    ExpectOpenFails(hr::kCorrupt, "damaged");
    Close();
    std::filesystem::remove(device_.file() + "-wal");
    std::filesystem::remove(device_.file() + "-shm");
    std::filesystem::copy_file(whole, device_.file(),
                               std::filesystem::copy_options::overwrite_existing);
  }
  EXPECT_EQ(Open(), hr::kOk);
}

// Rows of several devices can be told apart.
TEST_F(DeviceFailures, EveryTableHasTheDevicesId) {
  MakeDeviceWithItems(1);
  RawDatabase raw(device_.file());
  EXPECT_EQ(raw.Query("select name from sqlite_master where type = 'table' and name <> 'device' "
                      "and not exists (select 1 from pragma_table_info(sqlite_master.name) as c "
                      "where c.name = 'device')"),
            std::vector<std::string>());
}

TEST_F(DeviceFailures, ANewerVersionIsNotOpened) {
  MakeDeviceWithItems(1);
  RawDatabase(device_.file()).Query("pragma user_version = 999");
  ExpectOpenFails(hr::kNewerVersion, "made by a newer version");
  EXPECT_EQ(RawDatabase(device_.file()).Query("select count(*) from item")[0], "1");
}

TEST_F(DeviceFailures, AnotherProgramsDatabaseIsNotTouched) {
  std::filesystem::create_directories(device_.folder());
  RawDatabase(device_.file()).Query("create table theirs (x); pragma user_version = 1");
  ExpectOpenFails(hr::kCorrupt, "another program's database");
  RawDatabase(device_.file()).Query("pragma application_id = 17");
  ExpectOpenFails(hr::kCorrupt, "another program's database");
  EXPECT_EQ(RawDatabase(device_.file()).Query("select name from sqlite_master"),
            std::vector<std::string>{"theirs"});
}

TEST_F(DeviceFailures, AFullDatabaseKeepsWhatItHad) {
  ASSERT_EQ(Open(), hr::kOk);
  const std::int32_t kept = SaveSecret(*store_);
  Statement limit(stores_->database(), "pragma max_page_count = 45", "", "i");
  ASSERT_TRUE(limit.RunForRow());
  platform::HRESULT result = hr::kOk;
  std::int32_t saved = 1;
  for (; saved < 1000; ++saved) {
    const testing::LogCapture log;
    ItemRecord item = FullItem(ItemKind::kContact, saved);
    TextOf(item, ContactProperty::Body) = std::u16string(3000, u'x');
    result = store_->Save(&item);
    if (platform::Succeeded(result)) continue;
    EXPECT_EQ(item.oid, 0);
    ExpectOneLine(log, "no space left", device_.file());
    break;
  }
  EXPECT_EQ(result, hr::kDiskFull);
  EXPECT_EQ(Loaded(*store_, kept).oid, kept);
  std::int32_t count = 0;
  ASSERT_EQ(store_->Count(ItemKind::kContact, &count), hr::kOk);
  EXPECT_EQ(count, saved);
  EXPECT_EQ(store_->Delete(kept), hr::kOk);
}

TEST_F(DeviceFailures, ABatchThatFillsTheDatabaseIsLostWhole) {
  ASSERT_EQ(Open(), hr::kOk);
  SaveSecret(*store_);
  Statement limit(stores_->database(), "pragma max_page_count = 60", "", "i");
  ASSERT_TRUE(limit.RunForRow());
  ASSERT_EQ(stores_->database().BeginBatch(), hr::kOk);
  const testing::LogCapture log;
  platform::HRESULT result = hr::kOk;
  for (int i = 0; i < 1000 && platform::Succeeded(result); ++i) {
    ItemRecord item = FullItem(ItemKind::kContact, i);
    TextOf(item, ContactProperty::Body) = std::u16string(3000, u'x');
    result = store_->Save(&item);
  }
  EXPECT_EQ(result, hr::kDiskFull);
  ExpectOneLine(log, "no space left", device_.file());
  // Whether the failure ended the transaction or only the save: what follows is consistent.
  const platform::HRESULT committed = stores_->database().CommitBatch();
  std::int32_t count = 0;
  ASSERT_EQ(store_->Count(ItemKind::kContact, &count), hr::kOk);
  if (platform::Failed(committed)) {
    EXPECT_EQ(count, 1);
  }
  const auto rows = RawDatabase(device_.file()).Query("select count(*) from contact");
  EXPECT_EQ(rows[0], std::to_string(count));
}

// The file system's limit, in a process of its own.
TEST_F(DeviceFailures, AFullDiskIsReportedAndNothingIsHalf) {
  MakeDeviceWithItems(1);
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit = {300 * 1024, 300 * 1024};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    if (Open() != hr::kOk) ::_exit(10);
    for (int i = 1; i < 1000; ++i) {
      const testing::LogCapture log;
      ItemRecord item = FullItem(ItemKind::kTask, i);
      const platform::HRESULT result = store_->Save(&item);
      if (platform::Succeeded(result)) continue;
      const bool one_line =
          log.lines().size() == 1 && log.lines()[0].text.find("no space left") != std::string::npos;
      std::int32_t count = 0;
      if (store_->Count(ItemKind::kTask, &count) != hr::kOk) ::_exit(11);
      ::_exit(result != hr::kDiskFull ? 12 : !one_line ? 13 : count != i - 1 ? 14 : 0);
    }
    ::_exit(15);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
  ASSERT_EQ(Open(), hr::kOk);
  EXPECT_EQ(RawDatabase(device_.file()).Query("pragma integrity_check")[0], "ok");
}

TEST_F(DeviceFailures, TextsBeyondTheLimitAreRefusedNotLost) {
  ASSERT_EQ(Open(), hr::kOk);
  Statement insert(stores_->database(),
                   "insert into recipient (oid, position, device, name, "
                   "address) values (1, 1, 1, :name, '')",
                   "t");
  const std::size_t longest = stores_->database().LongestText();
  EXPECT_GE(longest, 1000000000U);
  insert.SetUtf8(0, std::string(longest + 1, 'x'));
  const testing::LogCapture log;
  EXPECT_EQ(stores_->database().Write([&] {
    insert.Run();
    return hr::kOk;
  }),
            hr::kInvalidArgument);
  ExpectOneLine(log, "too long", device_.file());
}

TEST_F(DeviceFailures, AFailedConstraintHasNoValuesInItsLine) {
  ASSERT_EQ(Open(), hr::kOk);
  const std::int32_t oid = SaveSecret(*store_);
  const testing::LogCapture log;
  EXPECT_EQ(stores_->database().Write([&] {
    Statement insert(stores_->database(),
                     "insert into recipient (oid, position, device, name, address) "
                     "values (:oid, 0, 1, :name, '')",
                     "it");
    insert.SetInteger(0, oid);
    insert.SetText(1, u"Secret");
    insert.Run();
    return hr::kOk;
  }),
            hr::kFail);
  ExpectOneLine(log, "the database failed", device_.file());
}

TEST_F(DeviceFailures, AResultOfTheWorkUndoesItWithoutALine) {
  ASSERT_EQ(Open(), hr::kOk);
  const testing::LogCapture log;
  Database& database = stores_->database();
  EXPECT_EQ(database.Write([&] {
    Statement(database, "update device set tasks = 77", "").Run();
    return hr::kItemNotFound;
  }),
            hr::kItemNotFound);
  std::int32_t count = -1;
  EXPECT_EQ(store_->Count(ItemKind::kTask, &count), hr::kOk);
  EXPECT_EQ(count, 0);
  // A write within a read would fail when another process wrote meanwhile.
  EXPECT_EQ(database.Read([&] { return database.Write([] { return hr::kOk; }); }), hr::kUnexpected);
  // One within a write is a step of it.
  EXPECT_EQ(database.Write([&] {
    Statement(database, "update device set tasks = 1", "").Run();
    EXPECT_EQ(database.Write([&] {
      Statement(database, "update device set tasks = 2", "").Run();
      return hr::kFail;
    }),
              hr::kFail);
    return hr::kOk;
  }),
            hr::kOk);
  EXPECT_EQ(store_->Count(ItemKind::kTask, &count), hr::kOk);
  EXPECT_EQ(count, 1);
  EXPECT_TRUE(log.lines().empty());
}

// A kept INSERT with a result that is not run to its end would hold the transaction open.
TEST_F(DeviceFailures, StatementsLeaveNothingOpen) {
  ASSERT_EQ(Open(), hr::kOk);
  Database& database = stores_->database();
  Statement insert(database,
                   "insert into item (oid, device, kind) values (:oid, :device, 2) returning oid",
                   "ii", "i");
  insert.SetInteger(0, 500);
  insert.SetInteger(1, database.device());
  EXPECT_EQ(database.Write([&] {
    EXPECT_TRUE(insert.RunForRow());
    EXPECT_EQ(insert.Integer(0), 500);
    return hr::kOk;
  }),
            hr::kOk);
  EXPECT_EQ(RawDatabase(device_.file()).Query("select oid from item")[0], "500");
  // A walk that is left early leaves no old state behind.
  Statement walk(database, "select oid from item", "", "i");
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(database.Read([&] {
      walk.RunForRows([] { return false; });
      return hr::kOk;
    }),
              hr::kOk);
    RawDatabase(device_.file()).Query("pragma wal_checkpoint(truncate)");
    EXPECT_EQ(std::filesystem::file_size(device_.file() + "-wal"), 0U);
  }
}

TEST_F(DeviceFailures, NullIsEmptyAndParametersMustBeSet) {
  ASSERT_EQ(Open(), hr::kOk);
  Database& database = stores_->database();
  Statement select(database, "select :a, :b, :c, 5", "irt", "irti");
  const testing::LogCapture log;
  EXPECT_EQ(database.Read([&] {
    select.SetInteger(0, 1);
    select.Run();
    return hr::kOk;
  }),
            hr::kUnexpected);
  EXPECT_EQ(log.lines().size(), 1U);
  EXPECT_EQ(database.Read([&] {
    select.SetInteger(0, -1);
    select.SetReal(1, 0.1);
    select.SetText(2, u"x");
    EXPECT_TRUE(select.RunForRow());
    EXPECT_EQ(select.Integer(0), -1);
    EXPECT_EQ(select.Real(1), 0.1);
    EXPECT_EQ(select.Text(2), u"x");
    for (std::size_t i = 0; i < 3; ++i) select.SetNull(i);
    EXPECT_TRUE(select.RunForRow());
    EXPECT_EQ(select.Integer(0), 0);
    EXPECT_EQ(select.Real(1), 0);
    EXPECT_EQ(select.Text(2), u"");
    EXPECT_EQ(select.Integer(3), 5);
    return hr::kOk;
  }),
            hr::kOk);
}

}  // namespace
}  // namespace tamu::device
