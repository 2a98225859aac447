// device/sqlite/device_support.h - a device of the test's own, and items for it.
#ifndef TAMU_TESTS_DEVICE_SQLITE_DEVICE_SUPPORT_H_
#define TAMU_TESTS_DEVICE_SQLITE_DEVICE_SUPPORT_H_

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "device/pim/item_store.h"
#include "device/sqlite/item_tables.h"
#include "device/sqlite/sqlite_item_store.h"
#include "device/sqlite/stores.h"
#include "support/scratch_folder.h"

namespace tamu::device {

namespace hr = platform::hr;

// A folder that is the device's while it lives.
class TestDevice {
 public:
  TestDevice() : home_("TAMU_HOME", folder()) {}
  [[nodiscard]] std::string folder() const { return (scratch_.path() / "device").string(); }
  [[nodiscard]] std::string file() const { return folder() + "/device.db"; }
  [[nodiscard]] const std::filesystem::path& path() const { return scratch_.path(); }

 private:
  testing::ScratchFolder scratch_;
  testing::ScopedEnvironment home_;
};

// SQLite itself, to look at or damage what the device has written.
class RawDatabase {
 public:
  explicit RawDatabase(const std::string& file) {
    EXPECT_EQ(sqlite3_open(file.c_str(), &connection_), SQLITE_OK);
    sqlite3_busy_timeout(connection_, 5000);
  }
  ~RawDatabase() { sqlite3_close(connection_); }
  RawDatabase(const RawDatabase&) = delete;
  RawDatabase& operator=(const RawDatabase&) = delete;

  // The rows, each with its columns joined by "|".
  std::vector<std::string> Query(const std::string& sql) {
    std::vector<std::string> rows;
    char* error = nullptr;
    const auto add = [](void* context, int columns, char** values, char**) {
      std::string row;
      for (int i = 0; i < columns; ++i) {
        row += (i == 0 ? "" : "|") + std::string(values[i] == nullptr ? "NULL" : values[i]);
      }
      static_cast<std::vector<std::string>*>(context)->push_back(row);
      return 0;
    };
    EXPECT_EQ(sqlite3_exec(connection_, sql.c_str(), add, &rows, &error), SQLITE_OK)
        << sql << ": " << (error == nullptr ? "" : error);
    sqlite3_free(error);
    return rows;
  }

 private:
  sqlite3* connection_ = nullptr;
};

template <typename Property>
std::u16string& TextOf(ItemRecord& item, Property property) {
  return std::get<std::u16string>(item.values[static_cast<std::size_t>(property)]);
}
template <typename Property>
double& DateOf(ItemRecord& item, Property property) {
  return std::get<double>(item.values[static_cast<std::size_t>(property)]);
}

inline ItemRecord Contact(const std::u16string& first, const std::u16string& last) {
  ItemRecord item = EmptyItem(ItemKind::kContact);
  TextOf(item, ContactProperty::FirstName) = first;
  TextOf(item, ContactProperty::LastName) = last;
  return item;
}
inline ItemRecord Task(const std::u16string& subject) {
  ItemRecord item = EmptyItem(ItemKind::kTask);
  TextOf(item, TaskProperty::Subject) = subject;
  return item;
}
inline ItemRecord Appointment(const std::u16string& subject, double start) {
  ItemRecord item = EmptyItem(ItemKind::kAppointment);
  TextOf(item, AppointmentProperty::Subject) = subject;
  DateOf(item, AppointmentProperty::Start) = start;
  return item;
}

// Every property has a value of its own, and so has every part.
inline ItemRecord FullItem(ItemKind kind, std::int32_t seed = 1) {
  ItemRecord item = EmptyItem(kind);
  for (std::size_t i = 0; i < item.values.size(); ++i) {
    const auto number = static_cast<std::int32_t>(i) + 1000 * seed;
    if (auto* const text = std::get_if<std::u16string>(&item.values[i])) {
      *text = PropertiesOf(kind)[i].name;
      *text += std::u16string(static_cast<std::size_t>(seed % 7), u'\u00E4') +
               static_cast<char16_t>(0x4E00 + number % 1000);
    } else if (auto* const date = std::get_if<double>(&item.values[i])) {
      *date = number + 1.0 / (2 + number % 11);
    } else if (auto* const value = std::get_if<std::int32_t>(&item.values[i])) {
      *value = number % 2 == 0 ? number : -number;
    } else {
      item.values[i] = Bytes{0, 0xFF, static_cast<std::uint8_t>(seed)};
    }
  }
  item.recurrence = RecurrenceRecord{3, 100.5, 0.25, seed, false, 200.125, 7, 2, 65, -1, 5, 12};
  item.exceptions = {{101.5, true}, {102.5 + seed, false}};
  item.recipients = {{u"Name \u20AC", u"a@example.org"}, {u"", u"b@example.org"}};
  return item;
}

inline std::shared_ptr<ItemStore> OpenDevice() {
  std::shared_ptr<ItemStore> store;
  EXPECT_EQ(OpenItemStore(&store), hr::kOk);
  return store;
}

inline ItemRecord Loaded(ItemStore& store, std::int32_t oid) {
  ItemRecord item;
  EXPECT_EQ(store.Load(oid, &item), hr::kOk) << oid;
  return item;
}

inline std::int32_t Saved(ItemStore& store, ItemRecord item) {
  EXPECT_EQ(store.Save(&item), hr::kOk);
  return item.oid;
}

}  // namespace tamu::device

#endif  // TAMU_TESTS_DEVICE_SQLITE_DEVICE_SUPPORT_H_
