// What every store of items promises, over the one in memory and the one in the database.
#include <gtest/gtest.h>

#include "device/sqlite/device_support.h"
#include "support/memory_item_store.h"

namespace tamu::device {
namespace {

using Oids = std::vector<std::int32_t>;

struct StoreKind {
  const char* name;
  std::shared_ptr<ItemStore> (*open)();
};

class ItemStoreContract : public ::testing::TestWithParam<StoreKind> {
 protected:
  TestDevice device_;
  std::shared_ptr<ItemStore> store_ = GetParam().open();
};

TEST_P(ItemStoreContract, SavedItemsComeBackAndAreReplaced) {
  for (const ItemKind kind : kItemKinds) {
    ItemRecord item = FullItem(kind);
    ASSERT_EQ(store_->Save(&item), hr::kOk);
    EXPECT_EQ(Loaded(*store_, item.oid), item);
    const std::int32_t oid = item.oid;
    item = FullItem(kind, 2);
    item.oid = oid;
    ASSERT_EQ(store_->Save(&item), hr::kOk);
    EXPECT_EQ(Loaded(*store_, oid), item);
  }
}

TEST_P(ItemStoreContract, OidsAreNeverUsedAgain) {
  EXPECT_EQ(Saved(*store_, Task(u"a")), 1);
  EXPECT_EQ(Saved(*store_, Contact(u"a", u"b")), 2);
  ASSERT_EQ(store_->Delete(2), hr::kOk);
  EXPECT_EQ(store_->Delete(2), hr::kItemNotFound);
  EXPECT_EQ(Saved(*store_, Task(u"a")), 3);
  ItemRecord gone = Contact(u"a", u"b");
  EXPECT_EQ(store_->Load(2, &gone), hr::kItemNotFound);
  gone.oid = 2;
  EXPECT_EQ(store_->Save(&gone), hr::kItemNotFound);
}

TEST_P(ItemStoreContract, PagesAreInTheOrderOfOids) {
  for (int i = 0; i < 6; ++i) Saved(*store_, i % 2 == 0 ? Task(u"t") : Contact(u"a", u"b"));
  Oids oids = {77};
  EXPECT_EQ(store_->ListOids(ItemKind::kTask, 0, 2, &oids), hr::kOk);
  EXPECT_EQ(oids, (Oids{1, 3}));
  EXPECT_EQ(store_->ListOids(ItemKind::kTask, 3, 2, &oids), hr::kOk);
  EXPECT_EQ(oids, Oids{5});
  std::int32_t count = 0;
  EXPECT_EQ(store_->Count(ItemKind::kContact, &count), hr::kOk);
  EXPECT_EQ(count, 3);
}

// What matches is never left out, whatever the terms; what is left out does not match.
TEST_P(ItemStoreContract, CandidatesHaveAllThatMatches) {
  for (int i = 0; i < 60; ++i) {
    Saved(*store_, Contact(i % 2 == 0 ? u"ANNA" : u"Otto", i % 3 == 0 ? u"Stra\u00DFe" : u"Weg"));
  }
  const auto at = [](ContactProperty property) { return static_cast<std::size_t>(property); };
  const SearchTerm terms[] = {{at(ContactProperty::FirstName), false, u"Anna", 0},
                              {at(ContactProperty::LastName), true, u"Stra\u00DFe", 0}};
  Oids oids;
  ASSERT_EQ(store_->FindCandidates(ItemKind::kContact, terms, 7, 100, &oids), hr::kOk);
  Oids matching;
  for (const std::int32_t oid : oids) {
    ItemRecord item = Loaded(*store_, oid);
    if (TextOf(item, ContactProperty::FirstName) == u"ANNA" &&
        TextOf(item, ContactProperty::LastName) == u"Stra\u00DFe") {
      matching.push_back(oid);
    }
  }
  EXPECT_EQ(matching, (Oids{13, 19, 25, 31, 37, 43, 49, 55}));
}

TEST_P(ItemStoreContract, TheVersionTellsChanges) {
  std::uint64_t before = 0;
  std::uint64_t after = 0;
  ASSERT_EQ(store_->Version(&before), hr::kOk);
  ItemRecord item = Task(u"a");
  for (const auto& change : {+[](ItemStore&store, ItemRecord&i) { return store.Save(&i); },
                             +[](ItemStore&store, ItemRecord&i) { return store.Save(&i); },
                             +[](ItemStore&store, ItemRecord&i) { return store.Delete(i.oid); }}) {
    ASSERT_EQ(change(*store_, item), hr::kOk);
    ASSERT_EQ(store_->Version(&after), hr::kOk);
    EXPECT_NE(after, before);
    before = after;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Stores, ItemStoreContract,
    ::testing::Values(StoreKind{"Memory",
                                []() -> std::shared_ptr<ItemStore> {
                                  return std::make_shared<testing::MemoryItemStore>();
                                }},
                      StoreKind{"Sqlite", &OpenDevice}),
    [](const auto& kind) { return std::string(kind.param.name); });

}  // namespace
}  // namespace tamu::device
