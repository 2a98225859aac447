#include "device/pim/item_store.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "device/batch.h"
#include "device/sqlite/device_support.h"

namespace tamu::device {
namespace {

using Oids = std::vector<std::int32_t>;

std::size_t At(ContactProperty property) { return static_cast<std::size_t>(property); }
std::size_t At(AppointmentProperty property) { return static_cast<std::size_t>(property); }
std::size_t At(TaskProperty property) { return static_cast<std::size_t>(property); }

class ItemStoreTest : public ::testing::Test {
 protected:
  Oids Find(ItemKind kind, std::vector<SearchTerm> terms, std::int32_t after = 0,
            std::size_t limit = 100) {
    Oids oids = {-1};
    EXPECT_EQ(store_->FindCandidates(kind, terms, after, limit, &oids), hr::kOk);
    return oids;
  }
  Oids List(ItemKind kind, std::int32_t after = 0, std::size_t limit = 100) {
    Oids oids = {-1};
    EXPECT_EQ(store_->ListOids(kind, after, limit, &oids), hr::kOk);
    return oids;
  }
  std::int32_t Count(ItemKind kind) {
    std::int32_t count = -1;
    EXPECT_EQ(store_->Count(kind, &count), hr::kOk);
    return count;
  }
  std::uint64_t Version() {
    std::uint64_t version = 0;
    EXPECT_EQ(store_->Version(&version), hr::kOk);
    return version;
  }
  void Reopen() {
    store_.reset();
    store_ = OpenDevice();
  }

  TestDevice device_;
  std::shared_ptr<ItemStore> store_ = OpenDevice();
};

TEST_F(ItemStoreTest, EveryPropertyAndPartOfEveryKindComesBack) {
  for (const ItemKind kind : kItemKinds) {
    ItemRecord item = FullItem(kind);
    ASSERT_EQ(store_->Save(&item), hr::kOk);
    EXPECT_GT(item.oid, 0);
    EXPECT_EQ(Loaded(*store_, item.oid), item);
    Reopen();
    EXPECT_EQ(Loaded(*store_, item.oid), item);
  }
}

TEST_F(ItemStoreTest, EmptyItemsComeBackEmpty) {
  for (const ItemKind kind : kItemKinds) {
    ItemRecord item = EmptyItem(kind);
    ASSERT_EQ(store_->Save(&item), hr::kOk);
    EXPECT_EQ(Loaded(*store_, item.oid), item);
  }
}

TEST_F(ItemStoreTest, ReplacingLeavesNothingOfWhatWas) {
  for (const ItemKind kind : kItemKinds) {
    ItemRecord item = FullItem(kind);
    ASSERT_EQ(store_->Save(&item), hr::kOk);
    const std::int32_t oid = item.oid;
    item = FullItem(kind, 2);
    item.oid = oid;
    item.exceptions.pop_back();
    item.recipients.push_back({u"third", u"c@example.org"});
    ASSERT_EQ(store_->Save(&item), hr::kOk);
    EXPECT_EQ(item.oid, oid);
    EXPECT_EQ(Loaded(*store_, oid), item);
    item = EmptyItem(kind);
    item.oid = oid;
    ASSERT_EQ(store_->Save(&item), hr::kOk);
    EXPECT_EQ(Loaded(*store_, oid), item);
  }
}

TEST_F(ItemStoreTest, OidsAreUniqueOverAllKindsFromOneAndNeverUsedAgain) {
  EXPECT_EQ(Saved(*store_, Contact(u"a", u"b")), 1);
  EXPECT_EQ(Saved(*store_, Task(u"a")), 2);
  EXPECT_EQ(Saved(*store_, Appointment(u"a", 1)), 3);
  ASSERT_EQ(store_->Delete(3), hr::kOk);
  Reopen();
  EXPECT_EQ(Saved(*store_, Task(u"a")), 4);
}

TEST_F(ItemStoreTest, AFailedSaveLeavesTheRecordUnsaved) {
  ItemRecord item = Contact(u"a", u"b");
  item.values.pop_back();
  EXPECT_EQ(store_->Save(&item), hr::kInvalidArgument);
  item = Contact(u"a", u"b");
  item.values[0] = std::u16string(u"no date");
  EXPECT_EQ(store_->Save(&item), hr::kInvalidArgument);
  EXPECT_EQ(item.oid, 0);
  EXPECT_EQ(Count(ItemKind::kContact), 0);
}

TEST_F(ItemStoreTest, WhatWasDeletedIsNotFoundNorSavedAgain) {
  ItemRecord item = FullItem(ItemKind::kAppointment);
  ASSERT_EQ(store_->Save(&item), hr::kOk);
  EXPECT_EQ(store_->Delete(item.oid), hr::kOk);
  EXPECT_EQ(store_->Delete(item.oid), hr::kItemNotFound);
  EXPECT_EQ(store_->Save(&item), hr::kItemNotFound);
  ItemRecord untouched = Task(u"kept");
  EXPECT_EQ(store_->Load(item.oid, &untouched), hr::kItemNotFound);
  EXPECT_EQ(untouched, Task(u"kept"));
  EXPECT_EQ(store_->Load(0, &untouched), hr::kItemNotFound);
  EXPECT_EQ(store_->Load(-1, &untouched), hr::kItemNotFound);
  RawDatabase raw(device_.file());
  for (const char* const table : {"item", "appointment", "recurrence", "exception", "recipient"}) {
    EXPECT_EQ(raw.Query(std::string("select count(*) from ") + table)[0], "0") << table;
  }
}

TEST_F(ItemStoreTest, AnOidOfAnotherKindIsNotReplaced) {
  const std::int32_t oid = Saved(*store_, Task(u"task"));
  ItemRecord contact = Contact(u"a", u"b");
  contact.oid = oid;
  EXPECT_EQ(store_->Save(&contact), hr::kItemNotFound);
  EXPECT_EQ(TextOf(*std::make_unique<ItemRecord>(Loaded(*store_, oid)), TaskProperty::Subject),
            u"task");
}

TEST_F(ItemStoreTest, KindsAreCountedAndListedApart) {
  for (int i = 0; i < 5; ++i) {
    Saved(*store_, Contact(u"a", u"b"));
    Saved(*store_, Task(u"a"));
  }
  EXPECT_EQ(Count(ItemKind::kContact), 5);
  EXPECT_EQ(Count(ItemKind::kTask), 5);
  EXPECT_EQ(Count(ItemKind::kAppointment), 0);
  EXPECT_EQ(List(ItemKind::kContact), (Oids{1, 3, 5, 7, 9}));
  EXPECT_EQ(List(ItemKind::kTask, 4, 2), (Oids{6, 8}));
  EXPECT_EQ(List(ItemKind::kTask, 10), Oids{});
  ASSERT_EQ(store_->Delete(5), hr::kOk);
  EXPECT_EQ(Count(ItemKind::kContact), 4);
  EXPECT_EQ(List(ItemKind::kContact), (Oids{1, 3, 7, 9}));
  EXPECT_EQ(List(ItemKind::kContact, 0, std::numeric_limits<std::size_t>::max()).size(), 4U);
}

TEST_F(ItemStoreTest, NamesAreFoundWithoutRegardToCase) {
  Saved(*store_, Contact(u"J\u00F6rg", u"M\u00DCLLER"));
  Saved(*store_, Contact(u"J\u00D6RG", u"Smith"));
  Saved(*store_, Contact(u"Other", u"m\u00FCller"));
  const SearchTerm last{At(ContactProperty::LastName), false, u"M\u00FCller", 0};
  const SearchTerm first{At(ContactProperty::FirstName), false, u"j\u00F6rg", 0};
  EXPECT_EQ(Find(ItemKind::kContact, {last}), (Oids{1, 3}));
  EXPECT_EQ(Find(ItemKind::kContact, {first}), (Oids{1, 2}));
  EXPECT_EQ(Find(ItemKind::kContact, {first, last}), Oids{1});
  EXPECT_EQ(Find(ItemKind::kContact, {last}, 1), Oids{3});
  EXPECT_EQ(Find(ItemKind::kContact, {last}, 0, 1), Oids{1});
  EXPECT_EQ(Find(ItemKind::kContact, {{At(ContactProperty::LastName), false, u"nobody", 0}}),
            Oids{});
}

TEST_F(ItemStoreTest, AnExactNameIsFoundByAllItsParts) {
  Saved(*store_, Contact(u"Jo", u"Doe"));
  Saved(*store_, Contact(u"JO", u"Doe"));
  Saved(*store_, Contact(u"Doe", u"Jo"));
  Saved(*store_, Contact(u"", u""));
  std::vector<SearchTerm> terms;
  for (const ContactProperty property : kNameProperties)
    terms.push_back({At(property), true, u"", 0});
  EXPECT_EQ(Find(ItemKind::kContact, terms), Oids{4});
  terms[1].text = u"Jo";
  terms[3].text = u"Doe";
  EXPECT_EQ(Find(ItemKind::kContact, terms), Oids{1});
  terms.pop_back();  // then it is no whole name, and what may match is more
  EXPECT_EQ(Find(ItemKind::kContact, terms), (Oids{1, 2}));
}

TEST_F(ItemStoreTest, TermsWithoutAnIndexFindEverything) {
  Saved(*store_, Contact(u"Jo", u"Doe"));
  Saved(*store_, Contact(u"Al", u"Roe"));
  EXPECT_EQ(Find(ItemKind::kContact, {}), (Oids{1, 2}));
  EXPECT_EQ(Find(ItemKind::kContact, {{At(ContactProperty::Body), false, u"x", 0}}), (Oids{1, 2}));
  EXPECT_EQ(Find(ItemKind::kContact, {{At(ContactProperty::LastName), true, u"", 0}}),
            (Oids{1, 2}));
}

TEST_F(ItemStoreTest, AppointmentsAreFoundByStartSubjectAndBody) {
  const double start = 38000.0 + 1.0 / 3;
  Saved(*store_, Appointment(u"Review", start));
  Saved(*store_, Appointment(u"REVIEW", std::nextafter(start, 1e9)));
  ItemRecord item = Appointment(u"", start);
  TextOf(item, AppointmentProperty::Body) = u"Long text";
  Saved(*store_, item);
  const SearchTerm at{At(AppointmentProperty::Start), true, {}, start};
  const SearchTerm subject{At(AppointmentProperty::Subject), true, u"Review", 0};
  const SearchTerm body{At(AppointmentProperty::Body), true, u"Long text", 0};
  EXPECT_EQ(Find(ItemKind::kAppointment, {at}), (Oids{1, 3}));
  EXPECT_EQ(Find(ItemKind::kAppointment, {subject}), (Oids{1, 2}));
  EXPECT_EQ(Find(ItemKind::kAppointment, {at, subject}), Oids{1});
  EXPECT_EQ(Find(ItemKind::kAppointment, {at, body}), Oids{3});
  EXPECT_EQ(Find(ItemKind::kAppointment, {subject, body}), Oids{});
}

TEST_F(ItemStoreTest, TasksAreFoundBySubjectAndFollowItsChanges) {
  ItemRecord task = Task(u"Buy milk");
  ASSERT_EQ(store_->Save(&task), hr::kOk);
  const SearchTerm milk{At(TaskProperty::Subject), false, u"BUY MILK", 0};
  EXPECT_EQ(Find(ItemKind::kTask, {milk}), Oids{1});
  TextOf(task, TaskProperty::Subject) = u"Buy bread";
  ASSERT_EQ(store_->Save(&task), hr::kOk);
  EXPECT_EQ(Find(ItemKind::kTask, {milk}), Oids{});
  EXPECT_EQ(Find(ItemKind::kTask, {{At(TaskProperty::Subject), true, u"Buy bread", 0}}), Oids{1});
}

// The indexes are walked side by side; a simple filter says what must come out.
TEST_F(ItemStoreTest, SeveralTermsFindTheirIntersectionInPages) {
  const std::u16string firsts[] = {u"A", u"B", u"C"};
  const std::u16string lasts[] = {u"X", u"Y"};
  Oids expected;
  for (int i = 0; i < 120; ++i) {
    ItemRecord item = Contact(firsts[i * 7 % 3], lasts[i / 5 % 2]);
    TextOf(item, ContactProperty::Suffix) = i % 4 < 3 ? u"jr" : u"";
    const bool matches = i * 7 % 3 == 1 && i / 5 % 2 == 1 && i % 4 < 3;
    const std::int32_t oid = Saved(*store_, item);
    if (matches) expected.push_back(oid);
  }
  ASSERT_GT(expected.size(), 10U);
  const std::vector<SearchTerm> terms = {{At(ContactProperty::FirstName), false, u"b", 0},
                                         {At(ContactProperty::LastName), false, u"y", 0},
                                         {At(ContactProperty::Suffix), false, u"JR", 0}};
  EXPECT_EQ(Find(ItemKind::kContact, terms), expected);
  Oids paged;
  for (;;) {
    const Oids page = Find(ItemKind::kContact, terms, paged.empty() ? 0 : paged.back(), 3);
    if (page.empty()) break;
    paged.insert(paged.end(), page.begin(), page.end());
  }
  EXPECT_EQ(paged, expected);
}

TEST_F(ItemStoreTest, SearchesUseTheirIndexes) {
  RawDatabase raw(device_.file());
  for (const ItemKind kind : kItemKinds) {
    for (const SearchColumn& column : SearchColumnsOf(kind)) {
      const std::string plan =
          raw.Query(std::string("explain query plan select oid from ") + TableOf(kind).name +
                    " where " + column.column + " = :v and oid >= :l order by oid limit :m")[0];
      EXPECT_NE(plan.find("USING COVERING INDEX"), std::string::npos) << plan;
      EXPECT_NE(plan.find(column.column), std::string::npos) << plan;
    }
  }
  const auto plan = raw.Query(
      "explain query plan select oid from item where device = :d and kind = :k and oid > :o "
      "order by oid limit :m");
  ASSERT_EQ(plan.size(), 1U);
  EXPECT_NE(plan[0].find("item_by_kind"), std::string::npos) << plan[0];
}

TEST_F(ItemStoreTest, DatesAreKeptToTheBit) {
  const double values[] = {0.0,
                           -0.0,
                           1.0 / 3,
                           -1e308,
                           5e-324,
                           9007199254740993.0,
                           std::numeric_limits<double>::infinity(),
                           -std::numeric_limits<double>::infinity(),
                           std::numeric_limits<double>::quiet_NaN(),
                           -std::numeric_limits<double>::quiet_NaN(),
                           platform::kNoDate};
  const auto same = [](double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; };
  for (const double value : values) {
    ItemRecord item = FullItem(ItemKind::kTask);
    DateOf(item, TaskProperty::StartDate) = value;
    DateOf(item, TaskProperty::ReminderTime) = value;
    item.recurrence->start_time = value;
    item.recurrence->pattern_end = value;
    item.exceptions[1].original_start = value;
    ASSERT_EQ(store_->Save(&item), hr::kOk);
    ItemRecord back = Loaded(*store_, item.oid);
    EXPECT_TRUE(same(DateOf(back, TaskProperty::StartDate), value)) << value;
    EXPECT_TRUE(same(DateOf(back, TaskProperty::ReminderTime), value)) << value;
    EXPECT_TRUE(same(DateOf(back, TaskProperty::DueDate), DateOf(item, TaskProperty::DueDate)));
    EXPECT_TRUE(same(back.recurrence->start_time, value)) << value;
    EXPECT_TRUE(same(back.recurrence->pattern_end, value)) << value;
    EXPECT_TRUE(same(back.recurrence->pattern_start, item.recurrence->pattern_start));
    EXPECT_TRUE(same(back.exceptions[1].original_start, value)) << value;
    EXPECT_TRUE(same(back.exceptions[0].original_start, item.exceptions[0].original_start));
  }
}

TEST_F(ItemStoreTest, ZeroOfEitherSignIsFoundByZero) {
  Saved(*store_, Appointment(u"a", -0.0));
  Saved(*store_, Appointment(u"b", 0.0));
  EXPECT_EQ(Find(ItemKind::kAppointment, {{At(AppointmentProperty::Start), true, {}, 0.0}}),
            (Oids{1, 2}));
  EXPECT_EQ(Find(ItemKind::kAppointment, {{At(AppointmentProperty::Start), true, {}, -0.0}}),
            (Oids{1, 2}));
}

TEST_F(ItemStoreTest, HostileTextsAreStoredAndFoundAsTheyAre) {
  std::u16string all_units;
  for (unsigned unit = 0; unit <= 0xFFFF; ++unit) all_units += static_cast<char16_t>(unit);
  std::u16string all_reversed(all_units.rbegin(), all_units.rend());
  const std::vector<std::u16string> texts = {
      u"'",
      u"\"",
      u"'; drop table contact; --",
      u"Robert'); delete from item where 1 = 1; --",
      u"[LastName] = \"x\" OR [LastName] = \"y\"",
      u"%",
      u"_",
      u"100%_%",
      u":oid",
      u"?1",
      u"NULL",
      u"\\",
      u"\r\n\t",
      u"\x001B"
      u"0000",
      std::u16string(1, u'\0'),
      std::u16string(u"a\0b", 3),
      std::u16string(1, static_cast<char16_t>(0xD800)),
      std::u16string(1, static_cast<char16_t>(0xDC00)),
      all_units,
      all_reversed,
      std::u16string(1 << 20, u'x'),
      std::u16string(1 << 20, u'\''),
      std::u16string(1 << 20, u'\0'),
  };
  Oids oids;
  for (const std::u16string& text : texts) {
    ItemRecord item = Contact(text, text);
    TextOf(item, ContactProperty::Body) = text;
    item.recipients = {{text, text}};
    ASSERT_EQ(store_->Save(&item), hr::kOk);
    oids.push_back(item.oid);
    EXPECT_TRUE(Loaded(*store_, item.oid) == item) << text.size();
  }
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const SearchTerm last{At(ContactProperty::LastName), false, texts[i], 0};
    EXPECT_EQ(Find(ItemKind::kContact, {last}), Oids{oids[i]}) << i;
    std::vector<SearchTerm> exact;
    for (const ContactProperty property : kNameProperties)
      exact.push_back({At(property), true, u"", 0});
    exact[1].text = texts[i];
    exact[3].text = texts[i];
    EXPECT_EQ(Find(ItemKind::kContact, exact), Oids{oids[i]}) << i;
  }
  EXPECT_EQ(Count(ItemKind::kContact), static_cast<std::int32_t>(texts.size()));
}

TEST_F(ItemStoreTest, ColumnsAreReadable) {
  ItemRecord item = Contact(u"J\u00F6rg", u"M\u00FCller");
  item.values[static_cast<std::size_t>(ContactProperty::BodyInk)] = Bytes{1, 0xAB};
  Saved(*store_, item);
  RawDatabase raw(device_.file());
  EXPECT_EQ(raw.Query("select first_name, last_name, body_ink, birthday from contact")[0],
            "J\xC3\xB6rg|M\xC3\xBCller|01AB|949998.0");
  EXPECT_EQ(raw.Query("select count(distinct device) from (select device from contact union "
                      "select device from item union select id from device)")[0],
            "1");
}

TEST_F(ItemStoreTest, VersionChangesWithEveryChange) {
  const std::uint64_t empty = Version();
  EXPECT_EQ(Version(), empty);
  ItemRecord item = Contact(u"a", u"b");
  ASSERT_EQ(store_->Save(&item), hr::kOk);
  const std::uint64_t saved = Version();
  EXPECT_NE(saved, empty);
  static_cast<void>(Loaded(*store_, item.oid));
  EXPECT_EQ(Version(), saved);
  ASSERT_EQ(store_->Save(&item), hr::kOk);
  const std::uint64_t replaced = Version();
  EXPECT_NE(replaced, saved);
  ASSERT_EQ(store_->Delete(item.oid), hr::kOk);
  const std::uint64_t deleted = Version();
  EXPECT_NE(deleted, replaced);
  std::unique_ptr<Database> other;
  ASSERT_EQ(Database::Open(device_.folder(), &other), hr::kOk);
  EXPECT_EQ(Version(), deleted);
  auto other_store = MakeSqliteItemStore(std::make_shared<Stores>(std::move(other)));
  Saved(*other_store, Task(u"a"));
  EXPECT_NE(Version(), deleted);
}

TEST_F(ItemStoreTest, ABatchIsKeptWhole) {
  std::shared_ptr<ItemStore> second = OpenDevice();
  {
    Batch batch;
    EXPECT_EQ(batch.Commit(), hr::kUnexpected);
    ASSERT_EQ(batch.Begin(), hr::kOk);
    EXPECT_EQ(batch.Begin(), hr::kUnexpected);
    Batch nested;
    EXPECT_EQ(nested.Begin(), hr::kUnexpected);
    Saved(*store_, FullItem(ItemKind::kAppointment));
    Saved(*second, Contact(u"a", u"b"));
    EXPECT_EQ(Count(ItemKind::kContact), 1);
    EXPECT_EQ(RawDatabase(device_.file()).Query("select count(*) from item")[0], "0");
    ASSERT_EQ(batch.Commit(), hr::kOk);
  }
  EXPECT_EQ(RawDatabase(device_.file()).Query("select count(*) from item")[0], "2");
}

TEST_F(ItemStoreTest, ABatchWithoutCommitLeavesNothing) {
  Saved(*store_, Contact(u"kept", u"b"));
  const std::uint64_t before = Version();
  {
    Batch batch;
    ASSERT_EQ(batch.Begin(), hr::kOk);
    Saved(*store_, Contact(u"a", u"b"));
    ASSERT_EQ(store_->Delete(1), hr::kOk);
    EXPECT_EQ(Count(ItemKind::kContact), 1);
  }
  EXPECT_NE(Version(), before);
  EXPECT_EQ(List(ItemKind::kContact), Oids{1});
  EXPECT_EQ(Count(ItemKind::kContact), 1);
  Saved(*store_, Contact(u"a", u"b"));
}

// One item less and none more, but not the same one: the stamps differ all the same.
TEST_F(ItemStoreTest, TheStampTellsABatchThatWasUndone) {
  for (int i = 0; i < 3; ++i) Saved(*store_, Task(u"a"));
  ListStamp inside;
  {
    Batch batch;
    ASSERT_EQ(batch.Begin(), hr::kOk);
    ASSERT_EQ(store_->Delete(1), hr::kOk);
    ASSERT_EQ(store_->Stamp(ItemKind::kTask, &inside), hr::kOk);
  }
  ASSERT_EQ(store_->Delete(2), hr::kOk);
  ListStamp after;
  ASSERT_EQ(store_->Stamp(ItemKind::kTask, &after), hr::kOk);
  EXPECT_NE(after, inside);
}

TEST_F(ItemStoreTest, AFailedSaveInABatchLeavesTheOthers) {
  Batch batch;
  ASSERT_EQ(batch.Begin(), hr::kOk);
  Saved(*store_, FullItem(ItemKind::kTask));
  ItemRecord missing = FullItem(ItemKind::kTask);
  missing.oid = 77;
  EXPECT_EQ(store_->Save(&missing), hr::kItemNotFound);
  EXPECT_EQ(store_->Delete(77), hr::kItemNotFound);
  Saved(*store_, Contact(u"a", u"b"));
  ASSERT_EQ(batch.Commit(), hr::kOk);
  EXPECT_EQ(Count(ItemKind::kTask), 1);
  EXPECT_EQ(Count(ItemKind::kContact), 1);
}

TEST_F(ItemStoreTest, UsedUpOidsAreAFullDevice) {
  RawDatabase(device_.file()).Query("update device set last_oid = 2147483646");
  EXPECT_EQ(Saved(*store_, Task(u"last")), 2147483647);
  ItemRecord item = Task(u"one too many");
  EXPECT_EQ(store_->Save(&item), hr::kDiskFull);
  EXPECT_EQ(item.oid, 0);
  EXPECT_EQ(Count(ItemKind::kTask), 1);
  EXPECT_EQ(List(ItemKind::kTask), Oids{2147483647});
  EXPECT_EQ(List(ItemKind::kTask, 2147483647), Oids{});
}

}  // namespace
}  // namespace tamu::device
