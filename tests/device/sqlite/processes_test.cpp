// Several processes on one device, and processes that die.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <span>

#include "device/batch.h"
#include "device/sqlite/device_support.h"
#include "device/sqlite/sqlite_mail_store.h"
#include "platform/cemapi.h"

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

// What the child reports, each in one write: what it is about to do where that may or may not be
// there after the kill, and every save that has returned.
enum class Step : std::int32_t {
  kItemBegun,
  kItemSaved,
  kMailMade,
  kMailSet,
  kMailAddressed,
  kBatchBegun,
  kBatchKept,
};
struct Report {
  Step step;
  std::int32_t id;    // the item's, the message's or the batch's
  std::int32_t seed;  // of the item's or the message's contents
  ItemKind kind;
};

// A mail as people get them, with a body of up to some 30 KB.
std::vector<MailProperty> MailOf(std::int32_t seed) {
  const auto number = static_cast<std::size_t>(seed);
  std::u16string body(number % 16000, u'b');
  body += static_cast<char16_t>(0x4E00 + number % 1000);
  return {{platform::PR_SUBJECT, u"Subject " + std::u16string(1 + number % 9, u'\u00E9')},
          {platform::PR_MESSAGE_DELIVERY_TIME, std::int64_t{seed} * 10'000'000},
          {platform::PR_MESSAGE_FLAGS, std::int64_t{seed % 2}},
          {platform::PR_SENDER_EMAIL_ADDRESS, std::u16string(u"somebody@example.org")},
          {platform::PR_BODY, std::move(body)}};
}
std::vector<MailRecipient> RecipientsOf(std::int32_t seed) {
  return {{1, std::nullopt, u"SMTP", std::u16string(1 + static_cast<std::size_t>(seed % 5), u'a')},
          {2, std::nullopt, u"SMTP", u"b@example.org"}};
}

std::string BatchName(std::int32_t batch) { return "Batch " + std::to_string(batch); }
std::u16string BatchText(std::int32_t batch) {
  const std::string name = BatchName(batch);
  return {name.begin(), name.end()};
}

// Saves and reports until it is killed.
class Saver {
 public:
  Saver(int pipe, std::int32_t kill) : pipe_(pipe), kill_(kill) {}

  int Run() {
    if (OpenItemStore(&items_) != hr::kOk || OpenMailStore(&mail_) != hr::kOk) return 10;
    for (std::int32_t i = 0;; ++i) {
      const std::int32_t seed = kill_ * 1000 + i % 1000;
      if (!SaveItem(i, seed)) return 11;
      if (i % 2 == 1 && !SaveMail(seed)) return 12;
      if (i % 5 == 4 && !SaveBatch(kill_ * 1'000'000 + i)) return 13;
    }
  }

 private:
  [[nodiscard]] bool Tell(const Report& report) const {
    return ::write(pipe_, &report, sizeof report) == sizeof report;
  }

  // Every third save replaces an earlier item.
  bool SaveItem(std::int32_t i, std::int32_t seed) {
    Report report = {Step::kItemBegun, 0, seed,
                     i % 2 == 0 ? ItemKind::kContact : ItemKind::kAppointment};
    const bool replaces = i % 3 == 2;
    if (replaces) {
      const Report& old = mine_[static_cast<std::size_t>(i) / 2 % mine_.size()];
      report.id = old.id;
      report.kind = old.kind;
      if (!Tell(report)) return false;
    }
    ItemRecord item = FullItem(report.kind, seed);
    item.oid = report.id;
    if (items_->Save(&item) != hr::kOk) return false;
    report.step = Step::kItemSaved;
    report.id = item.oid;
    if (!replaces) mine_.push_back(report);
    return Tell(report);
  }

  // A message is there from its creation on, and each change at once.
  bool SaveMail(std::int32_t seed) {
    MailId id = 0;
    if (mail_->CreateMessage(MailFolder::kInbox, &id) != hr::kOk) return false;
    const auto number = static_cast<std::int32_t>(id);
    if (!Tell({Step::kMailMade, number, seed, {}})) return false;
    if (mail_->SetProperties(id, MailOf(seed)) != hr::kOk) return false;
    if (!Tell({Step::kMailSet, number, seed, {}})) return false;
    if (mail_->AddRecipients(id, RecipientsOf(seed)) != hr::kOk) return false;
    return Tell({Step::kMailAddressed, number, seed, {}});
  }

  // One of each kind that is saved, under one name.
  bool SaveBatch(std::int32_t number) {
    if (!Tell({Step::kBatchBegun, number, 0, {}})) return false;
    Batch batch;
    if (batch.Begin() != hr::kOk) return false;
    ItemRecord contact = Contact(u"", BatchText(number));
    ItemRecord appointment = Appointment(BatchText(number), number);
    MailId id = 0;
    const MailProperty subject = {platform::PR_SUBJECT, BatchText(number)};
    if (items_->Save(&contact) != hr::kOk || items_->Save(&appointment) != hr::kOk ||
        mail_->CreateMessage(MailFolder::kSentItems, &id) != hr::kOk ||
        mail_->SetProperties(id, std::span(&subject, 1)) != hr::kOk || batch.Commit() != hr::kOk) {
      return false;
    }
    return Tell({Step::kBatchKept, number, 0, {}});
  }

  int pipe_;
  std::int32_t kill_;
  std::shared_ptr<ItemStore> items_;
  std::shared_ptr<MailStore> mail_;
  std::vector<Report> mine_;
};

// What has to be there after all the kills so far. What was under way may be there or not; from the
// first look on it stays as it was found.
class Expectation {
 public:
  void Read(int pipe) {
    for (Report report = {}; ::read(pipe, &report, sizeof report) == sizeof report;) Take(report);
  }

  [[nodiscard]] std::size_t size() const { return items_.size() + mails_.size() + batches_.size(); }

  // Looks at what the last kill can have touched, or at everything.
  void Check(const TestDevice& device, bool everything) {
    const auto items = OpenDevice();
    std::shared_ptr<MailStore> mail;
    ASSERT_EQ(OpenMailStore(&mail), hr::kOk);
    for (auto& [oid, entry] : items_) {
      if (everything || entry.fresh) CheckItem(*items, oid, &entry);
    }
    for (auto& [id, entry] : mails_) {
      if (everything || entry.fresh) CheckMail(*mail, id, &entry);
    }
    RawDatabase raw(device.file());
    for (auto& [number, entry] : batches_) {
      if (everything || entry.fresh) CheckBatch(raw, number, &entry);
    }
    EXPECT_EQ(raw.Query("pragma integrity_check")[0], "ok");
    EXPECT_EQ(raw.Query("pragma foreign_key_check").size(), 0U);
    EXPECT_EQ(raw.Query("select contacts = (select count(*) from contact) and appointments = "
                        "(select count(*) from appointment) and contacts + appointments = "
                        "(select count(*) from item) from device")[0],
              "1");
    for (const MailFolder folder : kMailFolders) {
      std::uint32_t count = 0;
      ASSERT_EQ(mail->Count(folder, kLastMail, &count), hr::kOk);
      EXPECT_EQ(raw.Query("select count(*) from message where folder = " +
                          std::to_string(static_cast<std::uint32_t>(folder)))[0],
                std::to_string(count));
    }
  }

 private:
  struct Item {
    ItemRecord saved;
    std::optional<ItemRecord> under_way;
    bool fresh = true;
  };
  struct Mail {
    std::int32_t seed = 0;
    bool set = false;
    bool addressed = false;
    bool fresh = true;
  };
  struct SavedBatch {
    bool kept = false;
    bool fresh = true;
  };

  void Take(const Report& report) {
    switch (report.step) {
      case Step::kItemBegun:
        items_.at(report.id).under_way = FullItem(report.kind, report.seed);
        items_.at(report.id).under_way->oid = report.id;
        items_.at(report.id).fresh = true;
        break;
      case Step::kItemSaved:
        items_[report.id] = {FullItem(report.kind, report.seed), {}, true};
        items_[report.id].saved.oid = report.id;
        break;
      case Step::kMailMade:
        mails_[report.id] = {report.seed, false, false, true};
        break;
      case Step::kMailSet:
        mails_.at(report.id).set = true;
        break;
      case Step::kMailAddressed:
        mails_.at(report.id).addressed = true;
        break;
      case Step::kBatchBegun:
        batches_[report.id] = {};
        break;
      case Step::kBatchKept:
        batches_.at(report.id).kept = true;
        break;
    }
  }

  static void CheckItem(ItemStore& store, std::int32_t oid, Item* entry) {
    ItemRecord item;
    ASSERT_EQ(store.Load(oid, &item), hr::kOk) << "item " << oid;
    if (entry->under_way && item == *entry->under_way) entry->saved = item;
    entry->under_way.reset();
    entry->fresh = false;
    EXPECT_TRUE(item == entry->saved) << "item " << oid;
  }

  static void CheckMail(MailStore& store, std::int32_t id, Mail* entry) {
    const auto message = static_cast<MailId>(id);
    std::vector<MailProperty> wanted = MailOf(entry->seed);
    std::vector<std::uint32_t> tags;
    for (const MailProperty& property : wanted) tags.push_back(property.tag);
    std::vector<MailProperty> found;
    ASSERT_EQ(store.ReadProperties(message, tags, &found), hr::kOk) << "message " << id;
    if (!entry->set && !found.empty()) entry->set = true;
    if (!entry->set) wanted.clear();
    const auto by_tag = [](const MailProperty& a, const MailProperty& b) { return a.tag < b.tag; };
    std::sort(wanted.begin(), wanted.end(), by_tag);
    std::sort(found.begin(), found.end(), by_tag);
    EXPECT_TRUE(found == wanted) << "message " << id;
    std::vector<MailRecipient> recipients;
    ASSERT_EQ(store.ReadRecipients(message, &recipients), hr::kOk) << "message " << id;
    if (!entry->addressed && !recipients.empty()) entry->addressed = true;
    EXPECT_TRUE(recipients ==
                (entry->addressed ? RecipientsOf(entry->seed) : std::vector<MailRecipient>()))
        << "message " << id;
    entry->fresh = false;
  }

  static void CheckBatch(RawDatabase& raw, std::int32_t number, SavedBatch* entry) {
    const std::string name = "'" + BatchName(number) + "'";
    const std::string counts =
        raw.Query("select (select count(*) from contact where last_name = " + name +
                  "), (select count(*) from appointment where subject = " + name +
                  "), (select count(*) from message_property where text = " + name + ")")[0];
    if (!entry->kept && counts != "0|0|0") entry->kept = true;
    EXPECT_EQ(counts, entry->kept ? "1|1|1" : "0|0|0") << "batch " << number;
    entry->fresh = false;
  }

  std::map<std::int32_t, Item> items_;
  std::map<std::int32_t, Mail> mails_;
  std::map<std::int32_t, SavedBatch> batches_;
};

// TAMU_CRASH_KILLS asks for more kills than a test run needs.
TEST(Processes, WhatWasReportedSurvivesKills) {
  constexpr int kAllInBetween = 20;
  const char* const asked = std::getenv("TAMU_CRASH_KILLS");
  const int kills = asked == nullptr ? 10 : std::atoi(asked);
  const TestDevice device;
  std::mt19937 random(20240105);
  Expectation expectation;
  for (int kill = 0; kill < kills; ++kill) {
    SCOPED_TRACE(::testing::Message() << "kill " << kill);
    int ends[2] = {};
    ASSERT_EQ(::pipe(ends), 0);
    const pid_t child = Start([&] { return Saver(ends[1], kill).Run(); });
    ::close(ends[1]);
    const timespec moment = {0, std::uniform_int_distribution<long>(1, 150)(random) * 1000000};
    ::nanosleep(&moment, nullptr);
    ASSERT_EQ(::kill(child, SIGKILL), 0);
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the child ended by itself: " << WEXITSTATUS(status);
    expectation.Read(ends[0]);
    ::close(ends[0]);
    expectation.Check(device, kill % kAllInBetween == kAllInBetween - 1 || kill == kills - 1);
    if (HasFailure()) return;
  }
  EXPECT_GT(expectation.size(), static_cast<std::size_t>(kills));
}

}  // namespace
}  // namespace tamu::device
