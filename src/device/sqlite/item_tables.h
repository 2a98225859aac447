// device/sqlite/item_tables.h - the tables that items are kept in: "item" (every oid with its
// kind), a wide table for each kind with one readable column a property, and "recurrence",
// "exception" and "recipient" below them.
//   Beside the properties a wide table has keys for searching (search_keys.h; NULL for an empty
//   text) and "odd_dates", which holds the dates that a column of numbers would change.
#ifndef TAMU_DEVICE_SQLITE_ITEM_TABLES_H_
#define TAMU_DEVICE_SQLITE_ITEM_TABLES_H_

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "device/pim/item_schema.h"

namespace tamu::device {

class Database;

struct KindTable {
  ItemKind kind;
  const char* name;          // of the wide table
  const char* count_column;  // of table "device"
};
[[nodiscard]] const KindTable& TableOf(ItemKind kind) noexcept;

// A column that searches use, each with an index of its own.
struct SearchColumn {
  const char* column;
  std::size_t property;  // kNoProperty: the exact names of a contact together
};
// The most selective first.
[[nodiscard]] std::span<const SearchColumn> SearchColumnsOf(ItemKind kind) noexcept;

// The properties that make up a contact's name.
inline constexpr std::array<ContactProperty, 5> kNameProperties = {
    ContactProperty::Title, ContactProperty::FirstName, ContactProperty::MiddleName,
    ContactProperty::LastName, ContactProperty::Suffix};

// The columns of a kind's wide table after "oid" and "device", and their types as a statement takes
// them: the properties, "odd_dates", the keys that are no properties.
struct ColumnList {
  std::string names;  // "birthday, anniversary, ..."
  std::string types;
  std::size_t properties = 0;  // how many of them are properties
};
[[nodiscard]] ColumnList ColumnsOf(ItemKind kind);

// Creates all of them. Throws as statements do.
void CreateItemTables(Database& database);

}  // namespace tamu::device

#endif  // TAMU_DEVICE_SQLITE_ITEM_TABLES_H_
