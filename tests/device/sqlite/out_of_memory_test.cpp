// Lets the n-th allocation of a call fail, for every n, the program's and SQLite's own: each failure
// is kOutOfMemory with at most one line of the log, nothing is half done, and the store works on.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <functional>
#include <utility>

#include "device/sqlite/device_support.h"
#include "support/failing_new.h"
#include "support/log_capture.h"

namespace {

using tamu::testing::allocations_left;
using tamu::testing::MayAllocate;

sqlite3_mem_methods usual_memory;

void* SqliteAllocate(int size) { return MayAllocate() ? usual_memory.xMalloc(size) : nullptr; }
void* SqliteResize(void* memory, int size) {
  return MayAllocate() ? usual_memory.xRealloc(memory, size) : nullptr;
}

// Before anything uses SQLite.
[[maybe_unused]] const bool installed = [] {
  sqlite3_config(SQLITE_CONFIG_GETMALLOC, &usual_memory);
  sqlite3_mem_methods methods = usual_memory;
  methods.xMalloc = &SqliteAllocate;
  methods.xRealloc = &SqliteResize;
  return sqlite3_config(SQLITE_CONFIG_MALLOC, &methods) == SQLITE_OK;
}();

}  // namespace

namespace tamu::device {
namespace {

int lines = 0;

// Fails the first, the second, ... allocation until `call` succeeds without; returns how many it
// needed. `after_failure` looks at what a failure has left.
int FailEveryAllocation(const std::function<platform::HRESULT()>& call,
                        const std::function<void()>& after_failure) {
  int failures = 0;
  for (int n = 0; n < 20000; ++n) {
    lines = 0;
    LOG_SetObserver([](const LogLine&, void*) { ++lines; }, nullptr);
    allocations_left = n;
    const platform::HRESULT result = call();
    const bool reached_the_end = allocations_left > 0;
    allocations_left = -1;
    LOG_SetObserver(nullptr, nullptr);
    if (platform::Succeeded(result)) {
      EXPECT_EQ(lines, 0) << n;
      // SQLite does without some of its memory: only then is an allocation left to fail.
      if (reached_the_end) return failures;
      continue;
    }
    ++failures;
    EXPECT_EQ(result, hr::kOutOfMemory) << n;
    EXPECT_EQ(lines, 1) << n;
    after_failure();
    if (::testing::Test::HasFailure()) return failures;
  }
  ADD_FAILURE() << "never succeeds";
  return failures;
}

// Without the seam for a while.
template <typename Call>
auto WithMemory(Call&& call) {
  const int left = std::exchange(allocations_left, -1);
  auto result = call();
  allocations_left = left;
  return result;
}

std::int32_t CountOf(ItemStore& store, ItemKind kind) {
  std::int32_t count = -1;
  EXPECT_EQ(store.Count(kind, &count), hr::kOk);
  return count;
}

// A store whose statements are not prepared yet: preparing fails, too.
TEST(DeviceOutOfMemory, SavingIsWholeOrNot) {
  const TestDevice device;
  std::shared_ptr<Stores> stores;
  ASSERT_EQ(OpenStores(&stores), hr::kOk);
  const ItemRecord sample = FullItem(ItemKind::kAppointment);
  std::shared_ptr<ItemStore> store;
  ItemRecord item;
  const int failures = FailEveryAllocation(
      [&] {
        WithMemory([&] {
          if (store == nullptr || item.oid != 0) store = OpenDevice();
          item = sample;
          return 0;
        });
        return store->Save(&item);
      },
      [&] { EXPECT_EQ(item.oid, 0); });
  EXPECT_GT(failures, 20);
  EXPECT_EQ(Loaded(*store, item.oid), item);
  RawDatabase raw(device.file());
  EXPECT_EQ(raw.Query("pragma integrity_check")[0], "ok");
  EXPECT_EQ(raw.Query("select count(*) from appointment")[0],
            raw.Query("select appointments from device")[0]);
  EXPECT_EQ(raw.Query("select count(*) * 2 from appointment")[0],
            raw.Query("select count(*) from recipient")[0]);
}

TEST(DeviceOutOfMemory, ReplacingLeavesTheOldOrTheNewItem) {
  const TestDevice device;
  auto store = OpenDevice();
  ItemRecord old = FullItem(ItemKind::kContact);
  ASSERT_EQ(store->Save(&old), hr::kOk);
  ItemRecord item = FullItem(ItemKind::kContact, 2);
  item.oid = old.oid;
  FailEveryAllocation(
      [&] {
        WithMemory([&] { return store->Save(&old); });
        return store->Save(&item);
      },
      [&] { EXPECT_EQ(Loaded(*store, old.oid), old); });
  EXPECT_EQ(Loaded(*store, old.oid), item);
}

TEST(DeviceOutOfMemory, ReadingAnswersItAndWorksOn) {
  const TestDevice device;
  auto store = OpenDevice();
  ItemRecord item = FullItem(ItemKind::kContact);
  ASSERT_EQ(store->Save(&item), hr::kOk);
  ItemRecord loaded = EmptyItem(ItemKind::kTask);
  const ItemRecord untouched = loaded;
  EXPECT_GT(FailEveryAllocation([&] { return store->Load(item.oid, &loaded); },
                                [&] { EXPECT_EQ(loaded, untouched); }),
            20);
  EXPECT_EQ(loaded, item);
  std::vector<std::int32_t> oids;
  FailEveryAllocation(
      [&] {
        const std::u16string& last = TextOf(item, ContactProperty::LastName);
        const SearchTerm term{static_cast<std::size_t>(ContactProperty::LastName), false, last, 0};
        return store->FindCandidates(ItemKind::kContact, {&term, 1}, 0, 10, &oids);
      },
      [] {});
  EXPECT_EQ(oids, std::vector<std::int32_t>{item.oid});
}

TEST(DeviceOutOfMemory, ABatchGoesOnOrIsLostWhole) {
  const TestDevice device;
  auto store = OpenDevice();
  std::shared_ptr<Stores> stores;
  ASSERT_EQ(OpenStores(&stores), hr::kOk);
  std::int32_t expected = 0;
  FailEveryAllocation(
      [&] {
        ItemRecord first = WithMemory([] { return FullItem(ItemKind::kTask, 1); });
        ItemRecord second = WithMemory([] { return FullItem(ItemKind::kTask, 2); });
        expected = WithMemory([&] { return CountOf(*store, ItemKind::kTask); });
        Database& database = stores->database();
        platform::HRESULT result = database.BeginBatch();
        if (platform::Failed(result)) return result;
        result = store->Save(&first);
        if (platform::Succeeded(result)) result = store->Save(&second);
        if (platform::Failed(result)) {
          static_cast<void>(database.RollbackBatch());
          return result;
        }
        return database.CommitBatch();
      },
      [&] { EXPECT_EQ(CountOf(*store, ItemKind::kTask), expected); });
  EXPECT_EQ(CountOf(*store, ItemKind::kTask) % 2, 0);
}

TEST(DeviceOutOfMemory, OpeningGivesAWholeStoreOrNone) {
  const TestDevice device;
  std::shared_ptr<ItemStore> store;
  const int failures = FailEveryAllocation(
      [&] {
        WithMemory([&] {
          store.reset();
          return 0;
        });
        return OpenItemStore(&store);
      },
      [&] { EXPECT_EQ(store, nullptr); });
  EXPECT_GT(failures, 50);
  ItemRecord item = FullItem(ItemKind::kTask);
  EXPECT_EQ(store->Save(&item), hr::kOk);
}

}  // namespace
}  // namespace tamu::device
