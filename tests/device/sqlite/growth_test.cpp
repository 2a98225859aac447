// What the stores do takes as many steps with many items and messages as with few: SQLite's own steps
// are counted, which no busy machine changes.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "device/sqlite/item_tables.h"
#include "device/sqlite/session.h"
#include "device/sqlite/sqlite_item_store.h"
#include "device/sqlite/sqlite_mail_store.h"
#include "platform/cemapi.h"
#include "support/scratch_folder.h"

namespace tamu::device {
namespace {

namespace hr = platform::hr;

constexpr std::uint64_t kTime = 0x01D0000000000000U;
constexpr std::uint64_t kSecond = 10'000'000;

std::u16string Numbered(const char16_t* text, int number) {
  std::u16string result = text;
  for (const char digit : std::to_string(number)) result += static_cast<char16_t>(digit);
  return result;
}

class Growth : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(OpenStores(&stores_), hr::kOk);
    items_ = MakeSqliteItemStore(stores_);
    mail_ = MakeSqliteMailStore(stores_);
  }

  // The steps of a call that has to succeed.
  std::int64_t Steps(const std::function<platform::HRESULT()>& call) {
    EXPECT_EQ(call(), hr::kOk);  // prepares its statements
    sqlite_api::sqlite3* const connection = ConnectionOf(stores_->database().session());
    std::int64_t steps = 0;
    const auto count = [](void* context) {
      ++*static_cast<std::int64_t*>(context);
      return 0;
    };
    sqlite_api::sqlite3_progress_handler(connection, 1, count, &steps);
    EXPECT_EQ(call(), hr::kOk);
    sqlite_api::sqlite3_progress_handler(connection, 0, nullptr, nullptr);
    return steps;
  }

  platform::HRESULT AddContact(int number) {
    ItemRecord item = EmptyItem(ItemKind::kContact);
    item.values[static_cast<std::size_t>(ContactProperty::LastName)] = Numbered(u"Name ", number);
    item.values[static_cast<std::size_t>(ContactProperty::FirstName)] = Numbered(u"", number % 7);
    return items_->Save(&item);
  }
  platform::HRESULT AddMessage(int number) {
    MailId id = 0;
    const platform::HRESULT made = mail_->CreateMessage(MailFolder::kInbox, &id);
    if (platform::Failed(made)) return made;
    const std::uint64_t time = kTime + static_cast<std::uint64_t>(number) * kSecond;
    const MailProperty properties[] = {
        {platform::PR_SUBJECT, Numbered(u"Subject ", number % 7)},
        {platform::PR_MESSAGE_DELIVERY_TIME, static_cast<std::int64_t>(time)}};
    return mail_->SetProperties(id, properties);
  }
  platform::HRESULT FindMessage(int number, bool* found) {
    const std::u16string subject = Numbered(u"Subject ", number % 7);
    MailId id = 0;
    const platform::HRESULT result = mail_->FindExact(
        MailFolder::kInbox,
        {kTime + static_cast<std::uint64_t>(number) * kSecond, kSecond, subject}, &id);
    *found = id != 0;
    return result;
  }
  platform::HRESULT FindContact(int number, bool exact, std::size_t* found) {
    const std::u16string last = Numbered(u"Name ", number);
    const std::u16string first = Numbered(u"", number % 7);
    std::vector<SearchTerm> terms;
    for (const ContactProperty property : kNameProperties) {
      std::u16string_view text;
      if (property == ContactProperty::LastName) text = last;
      if (property == ContactProperty::FirstName) text = first;
      if (exact || !text.empty()) {
        terms.push_back({static_cast<std::size_t>(property), exact, text, 0});
      }
    }
    std::vector<std::int32_t> oids;
    const platform::HRESULT result =
        items_->FindCandidates(ItemKind::kContact, terms, 0, 16, &oids);
    *found = oids.size();
    return result;
  }

  // The steps of everything that must not grow, by name.
  std::vector<std::pair<std::string, std::int64_t>> StepsOfAll(int number) {
    bool message = false;
    std::size_t contacts = 0;
    std::int32_t items = 0;
    std::uint32_t messages = 0;
    std::uint64_t version = 0;
    std::vector<std::pair<std::string, std::int64_t>> all;
    const auto add = [&](const char* name, const std::function<platform::HRESULT()>& call) {
      all.emplace_back(name, Steps(call));
    };
    add("save an item", [&] { return AddContact(number); });
    add("find by name", [&] { return FindContact(number / 2, false, &contacts); });
    EXPECT_EQ(contacts, 1U);
    add("find exactly", [&] { return FindContact(number / 2, true, &contacts); });
    EXPECT_EQ(contacts, 1U);
    add("count the items", [&] { return items_->Count(ItemKind::kContact, &items); });
    add("version", [&] { return items_->Version(&version); });
    add("save a message", [&] { return AddMessage(number); });
    add("find a message", [&] { return FindMessage(number / 2, &message); });
    EXPECT_TRUE(message);
    add("find no message", [&] { return FindMessage(-1, &message); });
    EXPECT_FALSE(message);
    add("count the messages",
        [&] { return mail_->Count(MailFolder::kInbox, kLastMail, &messages); });
    return all;
  }

  void Fill(int first, int last) {
    ASSERT_EQ(stores_->database().BeginBatch(), hr::kOk);
    for (int i = first; i < last; ++i) {
      ASSERT_EQ(AddContact(i), hr::kOk);
      ASSERT_EQ(AddMessage(i), hr::kOk);
    }
    ASSERT_EQ(stores_->database().CommitBatch(), hr::kOk);
  }

  testing::ScratchFolder scratch_;
  testing::ScopedEnvironment home_{"TAMU_HOME", (scratch_.path() / "device").string()};
  std::shared_ptr<Stores> stores_;
  std::unique_ptr<ItemStore> items_;
  std::unique_ptr<MailStore> mail_;
};

TEST_F(Growth, SavesFindsAndCountsTakeTheSameStepsInAFullDevice) {
  constexpr int kFew = 20;
  constexpr int kMany = 2000;
  Fill(0, kFew);
  const auto few = StepsOfAll(kFew);
  Fill(kFew + 1, kMany);
  const auto many = StepsOfAll(kMany);
  ASSERT_EQ(few.size(), many.size());
  for (std::size_t i = 0; i < few.size(); ++i) {
    EXPECT_GT(few[i].second, 0) << few[i].first;
    EXPECT_LE(many[i].second, few[i].second + few[i].second / 2) << few[i].first;
  }
}

}  // namespace
}  // namespace tamu::device
