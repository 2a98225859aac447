#include "device/sqlite/sqlite_item_store.h"

#include <algorithm>
#include <new>
#include <utility>
#include <variant>

#include "device/sqlite/item_parts.h"
#include "device/sqlite/item_tables.h"
#include "device/sqlite/kind_statements.h"
#include "device/sqlite/search_keys.h"
#include "device/sqlite/statement.h"

namespace tamu::device {
namespace {

using platform::HRESULT;
namespace hr = platform::hr;

constexpr std::size_t kMostOids = 0x7FFFFFFF;

// Whether there is a value of the right type for each of the kind's properties.
bool IsWhole(const ItemRecord& item) noexcept {
  const auto rows = PropertiesOf(item.kind);
  if (TableOf(item.kind).kind != item.kind || item.values.size() != rows.size()) return false;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const PropertyValue& value = item.values[i];
    switch (rows[i].type) {
      case ValueType::kText:
        if (!std::holds_alternative<std::u16string>(value)) return false;
        break;
      case ValueType::kDate:
        if (!std::holds_alternative<double>(value)) return false;
        break;
      case ValueType::kNumber:
      case ValueType::kFlag:
        if (!std::holds_alternative<std::int32_t>(value)) return false;
        break;
      case ValueType::kBytes:
        if (!std::holds_alternative<Bytes>(value)) return false;
        break;
    }
  }
  return true;
}

// One condition that an index answers.
struct Condition {
  std::size_t search_column = 0;
  bool is_date = false;
  std::int64_t key = 0;
  double date = 0;
};

// The text that a contact's name property must equal exactly, or null.
const SearchTerm* ExactTerm(std::span<const SearchTerm> terms, ContactProperty property) noexcept {
  for (const SearchTerm& term : terms) {
    if (term.exact && term.property == static_cast<std::size_t>(property)) return &term;
  }
  return nullptr;
}

// The key of a whole name, when every part of it is given exactly.
bool ExactNameKey(std::span<const SearchTerm> terms, std::int64_t* key) noexcept {
  ExactKey exact;
  for (const ContactProperty property : kNameProperties) {
    const SearchTerm* const term = ExactTerm(terms, property);
    if (term == nullptr) return false;
    exact.Add(term->text);
  }
  *key = exact.value();
  return true;
}

// The conditions that the terms come to, the most selective first. An empty text is in no index.
std::vector<Condition> ConditionsOf(ItemKind kind, std::span<const SearchTerm> terms) {
  std::vector<Condition> conditions;
  const auto columns = SearchColumnsOf(kind);
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].property == kNoProperty) {
      Condition name{i, false, 0, 0};
      // Equal names are all that can be found: the parts narrow no further.
      if (ExactNameKey(terms, &name.key)) return {name};
      continue;
    }
    const bool is_date = PropertiesOf(kind)[columns[i].property].type == ValueType::kDate;
    for (const SearchTerm& term : terms) {
      if (term.property != columns[i].property) continue;
      if (is_date) {
        conditions.push_back({i, true, 0, term.date});
      } else if (!term.text.empty()) {
        conditions.push_back({i, false, FoldedKey(term.text), 0});
      }
    }
  }
  return conditions;
}

class SqliteItemStore final : public ItemStore {
 public:
  explicit SqliteItemStore(std::shared_ptr<Stores> stores)
      : stores_(std::move(stores)),
        database_(stores_->database()),
        contacts_(database_, ItemKind::kContact),
        appointments_(database_, ItemKind::kAppointment),
        tasks_(database_, ItemKind::kTask),
        parts_(database_),
        insert_item_(database_,
                     "insert into item (oid, device, kind) values (:oid, :device, :kind)", "iii"),
        delete_item_(database_, "delete from item where oid = :oid", "i"),
        select_item_(database_,
                     "select kind, exists (select 1 from recurrence where oid = item.oid), "
                     "exists (select 1 from exception where oid = item.oid), "
                     "exists (select 1 from recipient where oid = item.oid) "
                     "from item where oid = :oid",
                     "i", "iiii"),
        list_(database_,
              "select oid from item where device = :device and kind = :kind and oid > :after "
              "order by oid limit :most",
              "iiii", "i") {}

  HRESULT Load(std::int32_t oid, ItemRecord* item) noexcept override;
  HRESULT Save(ItemRecord* item) noexcept override;
  HRESULT Delete(std::int32_t oid) noexcept override;
  HRESULT Count(ItemKind kind, std::int32_t* count) noexcept override;
  HRESULT ListOids(ItemKind kind, std::int32_t after, std::size_t limit,
                   std::vector<std::int32_t>* oids) noexcept override;
  HRESULT FindCandidates(ItemKind kind, std::span<const SearchTerm> terms, std::int32_t after,
                         std::size_t limit, std::vector<std::int32_t>* oids) noexcept override;
  HRESULT Version(std::uint64_t* version) noexcept override { return database_.Version(version); }
  HRESULT Stamp(ItemKind kind, ListStamp* stamp) noexcept override;

 private:
  KindStatements& Of(ItemKind kind) noexcept;
  // The kind of the item and which parts it has, in select_item_; false when there is none.
  [[nodiscard]] bool SelectItem(std::int32_t oid);
  [[nodiscard]] ItemKind SelectedKind() const;
  HRESULT Insert(const ItemRecord& item, std::int32_t* oid);
  HRESULT Replace(const ItemRecord& item);
  void Select(const Condition& condition, KindStatements& statements, std::int64_t from,
              std::size_t limit, std::vector<std::int32_t>* oids);
  void Intersect(const std::vector<Condition>& conditions, KindStatements& statements,
                 std::int32_t after, std::size_t limit, std::vector<std::int32_t>* oids);

  std::shared_ptr<Stores> stores_;  // outlives the statements
  Database& database_;
  KindStatements contacts_;
  KindStatements appointments_;
  KindStatements tasks_;
  ItemParts parts_;
  Statement insert_item_;
  Statement delete_item_;
  Statement select_item_;
  Statement list_;
};

KindStatements& SqliteItemStore::Of(ItemKind kind) noexcept {
  switch (kind) {
    case ItemKind::kAppointment:
      return appointments_;
    case ItemKind::kTask:
      return tasks_;
    case ItemKind::kContact:
      break;
  }
  return contacts_;
}

bool SqliteItemStore::SelectItem(std::int32_t oid) {
  select_item_.SetInteger(0, oid);
  return select_item_.RunForRow();
}

ItemKind SqliteItemStore::SelectedKind() const {
  return static_cast<ItemKind>(select_item_.Integer(0));
}

HRESULT SqliteItemStore::Load(std::int32_t oid, ItemRecord* item) noexcept {
  return database_.Read([&] {
    if (!SelectItem(oid)) return hr::kItemNotFound;
    ItemRecord loaded;
    if (!Of(SelectedKind()).Select(oid, &loaded)) {
      throw DamagedFailure();  // an item without its row
    }
    if (select_item_.Integer(1) != 0) parts_.SelectRecurrence(&loaded);
    if (select_item_.Integer(2) != 0) parts_.SelectExceptions(&loaded);
    if (select_item_.Integer(3) != 0) parts_.SelectRecipients(&loaded);
    *item = std::move(loaded);
    return hr::kOk;
  });
}

HRESULT SqliteItemStore::Insert(const ItemRecord& item, std::int32_t* oid) {
  KindStatements& statements = Of(item.kind);
  *oid = statements.NewOid();
  if (*oid == 0) throw Failure{hr::kDiskFull, "no numbers are left for new items", {}};
  insert_item_.SetInteger(0, *oid);
  insert_item_.SetInteger(1, database_.device());
  insert_item_.SetInteger(2, static_cast<std::int32_t>(item.kind));
  insert_item_.Run();
  statements.Insert(item, *oid);
  parts_.Insert(item, *oid);
  return hr::kOk;
}

HRESULT SqliteItemStore::Replace(const ItemRecord& item) {
  if (!Of(item.kind).Update(item)) return hr::kItemNotFound;
  parts_.Delete(item.oid);
  parts_.Insert(item, item.oid);
  return hr::kOk;
}

HRESULT SqliteItemStore::Save(ItemRecord* item) noexcept {
  if (!IsWhole(*item)) return hr::kInvalidArgument;
  std::int32_t oid = item->oid;
  const HRESULT result =
      database_.Write([&] { return item->oid == 0 ? Insert(*item, &oid) : Replace(*item); });
  if (platform::Succeeded(result)) item->oid = oid;
  return result;
}

HRESULT SqliteItemStore::Delete(std::int32_t oid) noexcept {
  return database_.Write([&] {
    if (!SelectItem(oid)) return hr::kItemNotFound;
    Of(SelectedKind()).CountDeleted();
    delete_item_.SetInteger(0, oid);  // and, by the references, all that belongs to it
    delete_item_.Run();
    return hr::kOk;
  });
}

HRESULT SqliteItemStore::Count(ItemKind kind, std::int32_t* count) noexcept {
  return database_.Read([&] {
    *count = Of(kind).Count();
    return hr::kOk;
  });
}

// An item that comes takes the next oid, and one that goes leaves one less: both numbers the same
// means the same items, unless a batch took its oids back.
HRESULT SqliteItemStore::Stamp(ItemKind kind, ListStamp* stamp) noexcept {
  return database_.Read([&] {
    Of(kind).SelectCounts(&stamp->last_oid, &stamp->count);
    stamp->undone = database_.UndoneBatches();
    return hr::kOk;
  });
}

HRESULT SqliteItemStore::ListOids(ItemKind kind, std::int32_t after, std::size_t limit,
                                  std::vector<std::int32_t>* oids) noexcept {
  oids->clear();
  return database_.Read([&] {
    list_.SetInteger(0, database_.device());
    list_.SetInteger(1, static_cast<std::int32_t>(kind));
    list_.SetInteger(2, after);
    list_.SetInteger(3, static_cast<std::int64_t>(std::min(limit, kMostOids)));
    list_.RunForRows([&] {
      oids->push_back(static_cast<std::int32_t>(list_.Integer(0)));
      return true;
    });
    return hr::kOk;
  });
}

void SqliteItemStore::Select(const Condition& condition, KindStatements& statements,
                             std::int64_t from, std::size_t limit,
                             std::vector<std::int32_t>* oids) {
  if (condition.is_date) {
    statements.SelectByDate(condition.search_column, condition.date, from, limit, oids);
  } else {
    statements.SelectByKey(condition.search_column, condition.key, from, limit, oids);
  }
}

// Each index gives its oids in order: they take turns to move to the first oid that is not below the
// others' last. That costs no more steps than the rarest of the values has items.
void SqliteItemStore::Intersect(const std::vector<Condition>& conditions,
                                KindStatements& statements, std::int32_t after, std::size_t limit,
                                std::vector<std::int32_t>* oids) {
  std::int64_t candidate = std::int64_t{after} + 1;
  std::size_t agreed = 0;  // conditions in a row that the candidate satisfies
  std::vector<std::int32_t> next;
  for (std::size_t turn = 0; oids->size() < limit; turn = (turn + 1) % conditions.size()) {
    next.clear();
    Select(conditions[turn], statements, candidate, 1, &next);
    if (next.empty()) return;
    agreed = next[0] == candidate ? agreed + 1 : 1;
    candidate = next[0];
    if (agreed == conditions.size()) {
      oids->push_back(next[0]);
      ++candidate;
      agreed = 0;
    }
  }
}

HRESULT SqliteItemStore::FindCandidates(ItemKind kind, std::span<const SearchTerm> terms,
                                        std::int32_t after, std::size_t limit,
                                        std::vector<std::int32_t>* oids) noexcept {
  oids->clear();
  bool indexed = false;
  const HRESULT result = database_.Read([&] {
    const std::vector<Condition> conditions = ConditionsOf(kind, terms);
    indexed = !conditions.empty();
    if (conditions.size() == 1) {
      Select(conditions[0], Of(kind), std::int64_t{after} + 1, limit, oids);
    } else if (indexed) {
      Intersect(conditions, Of(kind), after, limit, oids);
    }
    return hr::kOk;
  });
  if (platform::Failed(result) || indexed) return result;
  return ListOids(kind, after, limit, oids);
}

}  // namespace

std::unique_ptr<ItemStore> MakeSqliteItemStore(std::shared_ptr<Stores> stores) noexcept {
  try {
    return std::make_unique<SqliteItemStore>(std::move(stores));
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

HRESULT OpenItemStore(std::shared_ptr<ItemStore>* store) noexcept {
  store->reset();
  std::shared_ptr<Stores> stores;
  if (const HRESULT result = OpenStores(&stores); platform::Failed(result)) return result;
  *store = MakeSqliteItemStore(std::move(stores));
  return *store == nullptr ? LogFailure(OutOfMemoryFailure(), {}) : hr::kOk;
}

}  // namespace tamu::device
