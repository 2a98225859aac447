// Several processes on one device, and processes that die.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <set>

#include "device/sqlite/device_support.h"

namespace tamu::device {
namespace {

pid_t Start(const std::function<int()>& work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work());
  EXPECT_GT(child, 0);
  return child;
}

void ExpectSuccess(pid_t child) {
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST(Processes, SaveAtOnceWithoutLosingAnything) {
  constexpr int kProcesses = 4;
  constexpr int kItems = 40;
  const TestDevice device;  // new: they also create it at once
  std::vector<pid_t> children;
  for (int process = 0; process < kProcesses; ++process) {
    children.push_back(Start([process] {
      std::shared_ptr<ItemStore> store;
      if (OpenItemStore(&store) != hr::kOk) return 10;
      for (int i = 0; i < kItems; ++i) {
        ItemRecord item = FullItem(process % 2 == 0 ? ItemKind::kContact : ItemKind::kTask, i);
        if (store->Save(&item) != hr::kOk) return 11;
        ItemRecord back;
        if (store->Load(item.oid, &back) != hr::kOk || back != item) return 12;
      }
      return 0;
    }));
  }
  for (const pid_t child : children) ExpectSuccess(child);
  const auto store = OpenDevice();
  std::set<std::int32_t> oids;
  for (const ItemKind kind : {ItemKind::kContact, ItemKind::kTask}) {
    std::vector<std::int32_t> listed;
    ASSERT_EQ(store->ListOids(kind, 0, 1000, &listed), hr::kOk);
    EXPECT_EQ(listed.size(), std::size_t{kProcesses / 2 * kItems});
    oids.insert(listed.begin(), listed.end());
    std::int32_t count = 0;
    ASSERT_EQ(store->Count(kind, &count), hr::kOk);
    EXPECT_EQ(count, kProcesses / 2 * kItems);
  }
  EXPECT_EQ(oids.size(), std::size_t{kProcesses * kItems});
  EXPECT_EQ(*oids.begin(), 1);
  EXPECT_EQ(*oids.rbegin(), kProcesses * kItems);
}

TEST(Processes, ShareOneConnectionEachAndNeverTheirParents) {
  const TestDevice device;
  std::shared_ptr<Stores> first;
  std::shared_ptr<Stores> second;
  ASSERT_EQ(OpenStores(&first), hr::kOk);
  ASSERT_EQ(OpenStores(&second), hr::kOk);
  EXPECT_EQ(first, second);
  ExpectSuccess(Start([&first] {
    std::shared_ptr<Stores> own;
    if (OpenStores(&own) != hr::kOk) return 10;
    return own == first ? 11 : 0;
  }));
  const std::weak_ptr<Stores> gone = first;
  first.reset();
  second.reset();
  EXPECT_TRUE(gone.expired());
  const testing::ScopedEnvironment elsewhere("TAMU_HOME", device.folder() + "2");
  std::shared_ptr<Stores> other;
  ASSERT_EQ(OpenStores(&other), hr::kOk);
  EXPECT_EQ(other->database().file(), device.folder() + "2/device.db");
}

// What the child reports: one line a save that has returned, in one write.
struct Report {
  std::int32_t oid;
  std::int32_t seed;
  ItemKind kind;
};

// Saves and reports until it is killed; every third save replaces an earlier item.
int SaveUntilKilled(int pipe, std::int32_t seed) {
  std::shared_ptr<ItemStore> store;
  if (OpenItemStore(&store) != hr::kOk) return 10;
  std::vector<Report> mine;
  for (std::int32_t i = 0;; ++i) {
    Report report = {0, seed + i, i % 2 == 0 ? ItemKind::kContact : ItemKind::kAppointment};
    if (i % 3 == 2) {
      const Report& old = mine[static_cast<std::size_t>(i) / 2 % mine.size()];
      report.oid = old.oid;
      report.kind = old.kind;
    }
    ItemRecord item = FullItem(report.kind, report.seed);
    item.oid = report.oid;
    // The replacement that is under way may or may not be there after the kill: it is announced.
    const Report announced = {report.oid == 0 ? 0 : -report.oid, report.seed, report.kind};
    if (::write(pipe, &announced, sizeof announced) != sizeof announced) return 11;
    if (store->Save(&item) != hr::kOk) return 12;
    report.oid = item.oid;
    if (::write(pipe, &report, sizeof report) != sizeof report) return 13;
    if (i % 3 != 2) mine.push_back(report);
  }
}

struct Expected {
  ItemRecord item;
  std::optional<ItemRecord> under_way;
};

void ReadReports(int pipe, std::map<std::int32_t, Expected>* expected) {
  for (Report report = {}; ::read(pipe, &report, sizeof report) == sizeof report;) {
    ItemRecord item = FullItem(report.kind, report.seed);
    item.oid = std::abs(report.oid);
    if (report.oid > 0) (*expected)[report.oid] = {item, {}};
    if (report.oid < 0) expected->at(-report.oid).under_way = item;
  }
}

// TAMU_CRASH_KILLS asks for more kills than a test run needs.
TEST(Processes, WhatWasReportedSurvivesKills) {
  const char* const asked = std::getenv("TAMU_CRASH_KILLS");
  const int kills = asked == nullptr ? 10 : std::atoi(asked);
  const TestDevice device;
  std::mt19937 random(20240105);
  std::map<std::int32_t, Expected> expected;
  for (int kill = 0; kill < kills; ++kill) {
    int ends[2] = {};
    ASSERT_EQ(::pipe(ends), 0);
    const pid_t child = Start([&] { return SaveUntilKilled(ends[1], kill * 1000); });
    ::close(ends[1]);
    const timespec moment = {0, std::uniform_int_distribution<long>(1, 150)(random) * 1000000};
    ::nanosleep(&moment, nullptr);
    ASSERT_EQ(::kill(child, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the child ended by itself: " << WEXITSTATUS(status);
    ReadReports(ends[0], &expected);
    ::close(ends[0]);

    const auto store = OpenDevice();
    ASSERT_NE(store, nullptr);
    for (auto& [oid, entry] : expected) {
      ItemRecord item;
      ASSERT_EQ(store->Load(oid, &item), hr::kOk) << "kill " << kill;
      if (entry.under_way && item == *entry.under_way) entry.item = item;
      entry.under_way.reset();
      ASSERT_TRUE(item == entry.item) << "kill " << kill << ", item " << oid;
    }
    RawDatabase raw(device.file());
    ASSERT_EQ(raw.Query("pragma integrity_check")[0], "ok") << "kill " << kill;
    ASSERT_EQ(raw.Query("pragma foreign_key_check").size(), 0U) << "kill " << kill;
    ASSERT_EQ(raw.Query("select contacts = (select count(*) from contact) and appointments = "
                        "(select count(*) from appointment) and contacts + appointments = "
                        "(select count(*) from item) from device")[0],
              "1");
  }
  EXPECT_GT(expected.size(), static_cast<std::size_t>(kills));
}

}  // namespace
}  // namespace tamu::device
