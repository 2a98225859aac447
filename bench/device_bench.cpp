// The device's item store: saves one by one and in batches, beside SQLite itself inserting the same
// rows into the same tables; finds and a walk at growing sizes.
#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <stdlib.h>

#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "device/sqlite/item_tables.h"
#include "device/sqlite/search_keys.h"
#include "device/sqlite/sqlite_item_store.h"
#include "device/sqlite/stored_text.h"

namespace tamu::device {
namespace {

namespace hr = platform::hr;

constexpr std::int32_t kBatch = 1000;

std::u16string& TextOf(ItemRecord& item, ContactProperty property) {
  return std::get<std::u16string>(item.values[static_cast<std::size_t>(property)]);
}

std::u16string Numbered(const char16_t* text, std::int64_t number) {
  std::u16string result = text;
  for (const char digit : std::to_string(number)) result += static_cast<char16_t>(digit);
  return result;
}

// A contact as people have them: a dozen fields, some of them beyond ASCII.
ItemRecord Contact(std::int64_t number) {
  ItemRecord item = EmptyItem(ItemKind::kContact);
  TextOf(item, ContactProperty::FirstName) = Numbered(u"J\u00F6rg ", number % 997);
  TextOf(item, ContactProperty::LastName) = Numbered(u"Mustermann-", number);
  TextOf(item, ContactProperty::CompanyName) = u"Example Company Ltd.";
  TextOf(item, ContactProperty::JobTitle) = u"Manager of everything";
  TextOf(item, ContactProperty::Email1Address) = Numbered(u"somebody@example.org", number);
  TextOf(item, ContactProperty::MobileTelephoneNumber) = Numbered(u"+49 171 ", number);
  TextOf(item, ContactProperty::BusinessTelephoneNumber) = Numbered(u"+49 30 ", number);
  TextOf(item, ContactProperty::HomeAddressStreet) = u"Long Street 12";
  TextOf(item, ContactProperty::HomeAddressCity) = u"M\u00FCnchen";
  TextOf(item, ContactProperty::HomeAddressPostalCode) = u"80331";
  TextOf(item, ContactProperty::FileAs) = Numbered(u"Mustermann, J\u00F6rg ", number);
  TextOf(item, ContactProperty::Body) = u"Met at the fair; likes coffee, dislikes phone calls.";
  return item;
}

// A device in a folder of its own.
class Device {
 public:
  explicit Device(std::int32_t contacts = 0) {
    std::string name = (std::filesystem::temp_directory_path() / "tamu-bench-XXXXXX").string();
    folder_ = ::mkdtemp(name.data());
    std::unique_ptr<Database> database;
    if (Database::Open(folder_, &database) != hr::kOk) ::abort();
    stores_ = std::make_shared<Stores>(std::move(database));
    store_ = MakeSqliteItemStore(stores_);
    for (std::int32_t done = 0; done < contacts; done += kBatch) SaveBatch(done, kBatch);
  }
  ~Device() {
    store_.reset();
    stores_.reset();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  Device(const Device&) = delete;
  Device& operator=(const Device&) = delete;

  void Save(std::int64_t number) {
    ItemRecord item = Contact(number);
    if (store_->Save(&item) != hr::kOk) ::abort();
  }
  void SaveBatch(std::int64_t first, std::int32_t count) {
    Database& database = stores_->database();
    if (database.BeginBatch() != hr::kOk) ::abort();
    for (std::int32_t i = 0; i < count; ++i) Save(first + i);
    if (database.CommitBatch() != hr::kOk) ::abort();
  }
  [[nodiscard]] ItemStore& store() { return *store_; }
  [[nodiscard]] std::string file() const { return folder_ + "/device.db"; }
  [[nodiscard]] std::int64_t device_id() { return stores_->database().device(); }

 private:
  std::string folder_;
  std::shared_ptr<Stores> stores_;
  std::shared_ptr<ItemStore> store_;
};

// Filled once for all measurements of a size.
Device& DeviceWith(std::int64_t contacts) {
  static std::map<std::int64_t, std::unique_ptr<Device>> devices;
  auto& device = devices[contacts];
  if (device == nullptr) device = std::make_unique<Device>(static_cast<std::int32_t>(contacts));
  return *device;
}

void BM_DeviceSaveOne(benchmark::State& state) {
  Device& device = DeviceWith(state.range(0));
  std::int64_t number = 10000000;
  for (auto _ : state) device.Save(number++);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_DeviceSaveOne)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);

void BM_DeviceSaveBatch(benchmark::State& state) {
  Device device;
  std::int64_t number = 0;
  for (auto _ : state) {
    device.SaveBatch(number, kBatch);
    number += kBatch;
  }
  state.SetItemsProcessed(state.iterations() * kBatch);
}
BENCHMARK(BM_DeviceSaveBatch)->Unit(benchmark::kMillisecond)->Iterations(20);

// SQLite's own interface, with everything prepared beforehand that can be: the floor.
class PlainInserts {
 public:
  explicit PlainInserts(Device& device) : device_(device.device_id()) {
    if (sqlite3_open(device.file().c_str(), &connection_) != SQLITE_OK) ::abort();
    Execute("pragma synchronous = full");
    Execute("pragma foreign_keys = on");
    const ColumnList columns = ColumnsOf(ItemKind::kContact);
    types_ = columns.types;
    std::string places = "?, ?";
    for (std::size_t i = 0; i < types_.size(); ++i) places += ", ?";
    oid_ = Prepare(
        "update device set last_oid = last_oid + 1, contacts = contacts + 1 where id = ? "
        "returning last_oid");
    item_ = Prepare("insert into item (oid, device, kind) values (?, ?, 2)");
    contact_ =
        Prepare("insert into contact (oid, device, " + columns.names + ") values (" + places + ")");
  }
  ~PlainInserts() {
    for (sqlite3_stmt* const statement : {oid_, item_, contact_}) sqlite3_finalize(statement);
    sqlite3_close(connection_);
  }
  PlainInserts(const PlainInserts&) = delete;
  PlainInserts& operator=(const PlainInserts&) = delete;

  void Execute(const char* sql) {
    if (sqlite3_exec(connection_, sql, nullptr, nullptr, nullptr) != SQLITE_OK) ::abort();
  }

  // The rows' values, ready for SQLite.
  struct Row {
    std::vector<std::string> texts;
    std::vector<double> dates;
    std::int64_t name_key, last_name_key, first_name_key;
  };
  static Row RowOf(const ItemRecord& item) {
    Row row = {};
    for (const PropertyValue& value : item.values) {
      row.texts.emplace_back();
      row.dates.push_back(0);
      if (const auto* text = std::get_if<std::u16string>(&value)) {
        ToStoredText(*text, &row.texts.back());
      } else if (const auto* date = std::get_if<double>(&value)) {
        row.dates.back() = *date;
      }
    }
    ExactKey key;
    for (const ContactProperty property : kNameProperties) {
      key.Add(std::get<std::u16string>(item.values[static_cast<std::size_t>(property)]));
    }
    const auto folded = [&](ContactProperty property) {
      return FoldedKey(std::get<std::u16string>(item.values[static_cast<std::size_t>(property)]));
    };
    row.name_key = key.value();
    row.last_name_key = folded(ContactProperty::LastName);
    row.first_name_key = folded(ContactProperty::FirstName);
    return row;
  }

  void Insert(const Row& row) {
    sqlite3_bind_int64(oid_, 1, device_);
    if (sqlite3_step(oid_) != SQLITE_ROW) ::abort();
    const sqlite3_int64 oid = sqlite3_column_int64(oid_, 0);
    if (sqlite3_step(oid_) != SQLITE_DONE) ::abort();
    sqlite3_reset(oid_);
    sqlite3_bind_int64(item_, 1, oid);
    sqlite3_bind_int64(item_, 2, device_);
    Run(item_);
    sqlite3_bind_int64(contact_, 1, oid);
    sqlite3_bind_int64(contact_, 2, device_);
    for (std::size_t i = 0; i < row.texts.size(); ++i) {
      const int place = static_cast<int>(i) + 3;
      if (types_[i] == 'r') {
        sqlite3_bind_double(contact_, place, row.dates[i]);
      } else {
        sqlite3_bind_text(contact_, place, row.texts[i].data(),
                          static_cast<int>(row.texts[i].size()), SQLITE_STATIC);
      }
    }
    int place = static_cast<int>(row.texts.size()) + 3;
    sqlite3_bind_text(contact_, place++, "", 0, SQLITE_STATIC);
    sqlite3_bind_int64(contact_, place++, row.name_key);
    sqlite3_bind_int64(contact_, place++, row.last_name_key);
    sqlite3_bind_int64(contact_, place++, row.first_name_key);
    Run(contact_);
  }

 private:
  sqlite3_stmt* Prepare(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(connection_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
      ::abort();
    }
    return statement;
  }
  static void Run(sqlite3_stmt* statement) {
    if (sqlite3_step(statement) != SQLITE_DONE) ::abort();
    sqlite3_reset(statement);
  }

  sqlite3* connection_ = nullptr;
  std::int64_t device_;
  std::string types_;
  sqlite3_stmt* oid_ = nullptr;
  sqlite3_stmt* item_ = nullptr;
  sqlite3_stmt* contact_ = nullptr;
};

void BM_DeviceFloorPlainBatch(benchmark::State& state) {
  Device device;
  PlainInserts plain(device);
  std::int64_t number = 0;
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<PlainInserts::Row> rows;
    for (std::int32_t i = 0; i < kBatch; ++i) rows.push_back(plain.RowOf(Contact(number++)));
    state.ResumeTiming();
    plain.Execute("begin immediate");
    for (const PlainInserts::Row& row : rows) plain.Insert(row);
    plain.Execute("commit");
  }
  state.SetItemsProcessed(state.iterations() * kBatch);
}
BENCHMARK(BM_DeviceFloorPlainBatch)->Unit(benchmark::kMillisecond)->Iterations(20);

void BM_DeviceFindByName(benchmark::State& state) {
  Device& device = DeviceWith(state.range(0));
  std::int64_t number = 0;
  for (auto _ : state) {
    number = (number + 7919) % state.range(0);
    const std::u16string last = Numbered(u"MUSTERMANN-", number);
    const std::u16string first = Numbered(u"J\u00D6RG ", number % 997);
    const SearchTerm terms[] = {
        {static_cast<std::size_t>(ContactProperty::FirstName), false, first, 0},
        {static_cast<std::size_t>(ContactProperty::LastName), false, last, 0}};
    std::vector<std::int32_t> oids;
    if (device.store().FindCandidates(ItemKind::kContact, terms, 0, 2, &oids) != hr::kOk ||
        oids.size() != 1) {
      return state.SkipWithError("not found");
    }
  }
}
BENCHMARK(BM_DeviceFindByName)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);

void BM_DeviceFindExactly(benchmark::State& state) {
  Device& device = DeviceWith(state.range(0));
  std::int64_t number = 0;
  for (auto _ : state) {
    number = (number + 7919) % state.range(0);
    ItemRecord item = Contact(number);
    std::vector<SearchTerm> terms;
    for (const ContactProperty property : kNameProperties) {
      terms.push_back({static_cast<std::size_t>(property), true, TextOf(item, property), 0});
    }
    std::vector<std::int32_t> oids;
    if (device.store().FindCandidates(ItemKind::kContact, terms, 0, 2, &oids) != hr::kOk ||
        oids.size() != 1) {
      return state.SkipWithError("not found");
    }
  }
}
BENCHMARK(BM_DeviceFindExactly)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMicrosecond);

// Every item in the order of oids, a page of oids at a time.
void BM_DeviceWalk(benchmark::State& state) {
  constexpr std::size_t kPage = 256;
  Device& device = DeviceWith(state.range(0));
  std::int64_t walked = 0;
  for (auto _ : state) {
    std::vector<std::int32_t> oids;
    std::int32_t after = 0;
    do {
      if (device.store().ListOids(ItemKind::kContact, after, kPage, &oids) != hr::kOk) ::abort();
      for (const std::int32_t oid : oids) {
        ItemRecord item;
        if (device.store().Load(oid, &item) != hr::kOk) ::abort();
        after = oid;
        ++walked;
      }
    } while (!oids.empty());
  }
  state.SetItemsProcessed(walked);
}
BENCHMARK(BM_DeviceWalk)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tamu::device
