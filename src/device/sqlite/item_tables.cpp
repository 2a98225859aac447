#include "device/sqlite/item_tables.h"

#include "device/sqlite/database.h"
#include "device/sqlite/statement.h"

namespace tamu::device {
namespace {

constexpr KindTable kTables[] = {
    {ItemKind::kContact, "contact", "contacts"},
    {ItemKind::kAppointment, "appointment", "appointments"},
    {ItemKind::kTask, "task", "tasks"},
};

template <typename Property>
constexpr std::size_t Index(Property property) {
  return static_cast<std::size_t>(property);
}

constexpr SearchColumn kContactColumns[] = {
    {"name_key", kNoProperty},
    {"last_name_key", Index(ContactProperty::LastName)},
    {"first_name_key", Index(ContactProperty::FirstName)},
    {"middle_name_key", Index(ContactProperty::MiddleName)},
    {"suffix_key", Index(ContactProperty::Suffix)},
    {"title_key", Index(ContactProperty::Title)},
};
constexpr SearchColumn kAppointmentColumns[] = {
    {"start", Index(AppointmentProperty::Start)},
    {"subject_key", Index(AppointmentProperty::Subject)},
    {"body_key", Index(AppointmentProperty::Body)},
};
constexpr SearchColumn kTaskColumns[] = {
    {"subject_key", Index(TaskProperty::Subject)},
};

struct Storage {
  const char* declaration;
  char type;
};

// No column of a property is NULL.
Storage StorageOf(ValueType type) noexcept {
  switch (type) {
    case ValueType::kDate:
      return {"real not null", 'r'};
    case ValueType::kNumber:
    case ValueType::kFlag:
      return {"integer not null", 'i'};
    case ValueType::kText:
    case ValueType::kBytes:
      break;
  }
  return {"text not null", 't'};
}

// Keys, and not a property's own column.
bool IsKey(const SearchColumn& column, ItemKind kind) noexcept {
  return column.property == kNoProperty ||
         PropertiesOf(kind)[column.property].type == ValueType::kText;
}

void Execute(Database& database, const std::string& sql) { Statement(database, sql, "").Run(); }

void CreateKindTable(Database& database, const KindTable& table) {
  std::string sql = std::string("create table ") + table.name +
                    " (oid integer primary key references item (oid) on delete cascade, "
                    "device integer not null";
  for (const PropertyInfo& row : PropertiesOf(table.kind)) {
    sql += std::string(", ") + row.column + " " + StorageOf(row.type).declaration;
  }
  sql += ", odd_dates text not null";
  for (const SearchColumn& column : SearchColumnsOf(table.kind)) {
    if (IsKey(column, table.kind)) sql += std::string(", ") + column.column + " integer";
  }
  Execute(database, sql + ")");
  // An empty field has no key and is in no index.
  for (const SearchColumn& column : SearchColumnsOf(table.kind)) {
    const std::string index = std::string("create index ") + table.name + "_by_" + column.column +
                              " on " + table.name + " (" + column.column + ")";
    Execute(database,
            IsKey(column, table.kind) ? index + " where " + column.column + " is not null" : index);
  }
}

constexpr const char* kItemSql =
    "create table item (oid integer primary key, "
    "device integer not null references device (id), kind integer not null)";
constexpr const char* kItemIndexSql = "create index item_by_kind on item (device, kind)";
constexpr const char* kRecurrenceSql =
    "create table recurrence (oid integer primary key references item (oid) on delete cascade, "
    "device integer not null, type integer not null, pattern_start real not null, "
    "start_time real not null, duration integer not null, no_end integer not null, "
    "pattern_end real not null, occurrences integer not null, interval integer not null, "
    "day_of_week_mask integer not null, day_of_month integer not null, "
    "instance integer not null, month_of_year integer not null, odd_dates text not null)";
constexpr const char* kExceptionSql =
    "create table exception (oid integer not null references item (oid) on delete cascade, "
    "position integer not null, device integer not null, original_start real not null, "
    "deleted integer not null, odd_dates text not null, primary key (oid, position)) "
    "without rowid";
constexpr const char* kRecipientSql =
    "create table recipient (oid integer not null references item (oid) on delete cascade, "
    "position integer not null, device integer not null, name text not null, "
    "address text not null, primary key (oid, position)) without rowid";

}  // namespace

const KindTable& TableOf(ItemKind kind) noexcept {
  for (const KindTable& table : kTables) {
    if (table.kind == kind) return table;
  }
  return kTables[0];
}

std::span<const SearchColumn> SearchColumnsOf(ItemKind kind) noexcept {
  switch (kind) {
    case ItemKind::kAppointment:
      return kAppointmentColumns;
    case ItemKind::kTask:
      return kTaskColumns;
    case ItemKind::kContact:
      break;
  }
  return kContactColumns;
}

ColumnList ColumnsOf(ItemKind kind) {
  ColumnList list;
  for (const PropertyInfo& row : PropertiesOf(kind)) {
    list.names += std::string(row.column) + ", ";
    list.types += StorageOf(row.type).type;
    ++list.properties;
  }
  list.names += "odd_dates";
  list.types += 't';
  for (const SearchColumn& column : SearchColumnsOf(kind)) {
    if (!IsKey(column, kind)) continue;
    list.names += std::string(", ") + column.column;
    list.types += 'i';
  }
  return list;
}

void CreateItemTables(Database& database) {
  for (const char* const sql :
       {kItemSql, kItemIndexSql, kRecurrenceSql, kExceptionSql, kRecipientSql}) {
    Execute(database, sql);
  }
  for (const KindTable& table : kTables) CreateKindTable(database, table);
}

}  // namespace tamu::device
