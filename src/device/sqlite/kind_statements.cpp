#include "device/sqlite/kind_statements.h"

#include <string_view>
#include <utility>
#include <variant>

#include "device/sqlite/database.h"
#include "device/sqlite/failure.h"
#include "device/sqlite/odd_dates.h"
#include "device/sqlite/search_keys.h"

namespace tamu::device {
namespace {

// "a, b" as ":a, :b".
std::string AsParameters(std::string_view names) {
  std::string parameters = ":";
  for (const char letter : names) {
    parameters += letter;
    if (letter == ' ') parameters += ':';
  }
  return parameters;
}

// "a, b" as "a = :a, b = :b".
std::string AsAssignments(std::string_view names) {
  std::string assignments;
  while (!names.empty()) {
    const std::size_t end = names.find(", ");
    const std::string name(names.substr(0, end));
    assignments += (assignments.empty() ? "" : ", ") + name + " = :" + name;
    names = end == std::string_view::npos ? std::string_view() : names.substr(end + 2);
  }
  return assignments;
}

std::string InsertSql(ItemKind kind) {
  const std::string names = "oid, device, " + ColumnsOf(kind).names;
  return std::string("insert into ") + TableOf(kind).name + " (" + names + ") values (" +
         AsParameters(names) + ")";
}

std::string UpdateSql(ItemKind kind) {
  return std::string("update ") + TableOf(kind).name + " set " +
         AsAssignments(ColumnsOf(kind).names) + " where oid = :oid";
}

std::string SelectSql(ItemKind kind) {
  return "select " + ColumnsOf(kind).names + " from " + TableOf(kind).name + " where oid = :oid";
}

std::string SearchSql(ItemKind kind, const SearchColumn& column) {
  return std::string("select oid from ") + TableOf(kind).name + " where " + column.column +
         " = :value and oid >= :least order by oid limit :most";
}

std::string NewOidSql(ItemKind kind) {
  const std::string count = TableOf(kind).count_column;
  return "update device set last_oid = last_oid + 1, " + count + " = " + count +
         " + 1 where id = :id and last_oid < 2147483647 returning last_oid";
}

std::string CountDeletedSql(ItemKind kind) {
  const std::string count = TableOf(kind).count_column;
  return "update device set " + count + " = " + count + " - 1 where id = :id";
}

}  // namespace

KindStatements::KindStatements(Database& database, ItemKind kind)
    : kind_(kind),
      device_(database.device()),
      property_count_(ColumnsOf(kind).properties),
      column_count_(ColumnsOf(kind).types.size()),
      insert_(database, InsertSql(kind), "ii" + ColumnsOf(kind).types),
      update_(database, UpdateSql(kind), ColumnsOf(kind).types + "i"),
      select_(database, SelectSql(kind), "i", ColumnsOf(kind).types),
      new_oid_(database, NewOidSql(kind), "i", "i"),
      count_deleted_(database, CountDeletedSql(kind), "i"),
      count_(database,
             std::string("select ") + TableOf(kind).count_column +
                 ", last_oid from device where id = :id",
             "i", "ii") {
  for (const SearchColumn& column : SearchColumnsOf(kind)) {
    const bool date = column.property != kNoProperty &&
                      PropertiesOf(kind)[column.property].type == ValueType::kDate;
    searches_.push_back(
        std::make_unique<Statement>(database, SearchSql(kind, column), date ? "rii" : "iii", "i"));
  }
}

void KindStatements::BindKey(Statement& statement, std::size_t parameter,
                             const SearchColumn& column, const ItemRecord& item) const {
  if (column.property != kNoProperty) {
    const auto& text = std::get<std::u16string>(item.values[column.property]);
    if (text.empty()) return statement.SetNull(parameter);
    return statement.SetInteger(parameter, FoldedKey(text));
  }
  ExactKey key;
  for (const ContactProperty property : kNameProperties) {
    key.Add(std::get<std::u16string>(item.values[static_cast<std::size_t>(property)]));
  }
  statement.SetInteger(parameter, key.value());
}

void KindStatements::BindColumns(Statement& statement, std::size_t first, const ItemRecord& item) {
  const auto rows = PropertiesOf(kind_);
  odd_dates_.clear();
  for (std::size_t i = 0; i < property_count_; ++i) {
    const PropertyValue& value = item.values[i];
    switch (rows[i].type) {
      case ValueType::kText:
        statement.SetText(first + i, std::get<std::u16string>(value));
        break;
      case ValueType::kDate:
        statement.SetReal(first + i,
                          ToColumn(std::get<double>(value), rows[i].column, &odd_dates_));
        break;
      case ValueType::kNumber:
      case ValueType::kFlag:
        statement.SetInteger(first + i, std::get<std::int32_t>(value));
        break;
      case ValueType::kBytes:
        statement.SetBytes(first + i, std::get<Bytes>(value));
        break;
    }
  }
  std::size_t parameter = first + property_count_;
  statement.SetUtf8(parameter++, odd_dates_);
  for (const SearchColumn& column : SearchColumnsOf(kind_)) {
    const bool own_column =
        column.property != kNoProperty && rows[column.property].type != ValueType::kText;
    if (!own_column) BindKey(statement, parameter++, column, item);
  }
}

void KindStatements::Insert(const ItemRecord& item, std::int32_t oid) {
  insert_.SetInteger(0, oid);
  insert_.SetInteger(1, device_);
  BindColumns(insert_, 2, item);
  insert_.Run();
}

bool KindStatements::Update(const ItemRecord& item) {
  BindColumns(update_, 0, item);
  update_.SetInteger(column_count_, item.oid);
  update_.Run();
  return update_.ChangedRows() != 0;
}

bool KindStatements::Select(std::int32_t oid, ItemRecord* item) {
  select_.SetInteger(0, oid);
  if (!select_.RunForRow()) return false;
  const auto rows = PropertiesOf(kind_);
  const std::string& odd_dates = select_.Utf8(property_count_);
  item->kind = kind_;
  item->oid = oid;
  item->values.clear();
  item->values.reserve(property_count_);
  for (std::size_t i = 0; i < property_count_; ++i) {
    switch (rows[i].type) {
      case ValueType::kText:
        item->values.emplace_back(select_.Text(i));
        break;
      case ValueType::kDate:
        item->values.emplace_back(FromColumn(select_.Real(i), rows[i].column, odd_dates));
        break;
      case ValueType::kNumber:
      case ValueType::kFlag:
        item->values.emplace_back(static_cast<std::int32_t>(select_.Integer(i)));
        break;
      case ValueType::kBytes:
        item->values.emplace_back(select_.GetBytes(i));
        break;
    }
  }
  return true;
}

void KindStatements::RunSearch(Statement& statement, std::int64_t from, std::size_t limit,
                               std::vector<std::int32_t>* oids) {
  constexpr std::size_t kMostOids = 0x7FFFFFFF;
  statement.SetInteger(1, from);
  statement.SetInteger(2, static_cast<std::int64_t>(limit < kMostOids ? limit : kMostOids));
  statement.RunForRows([&] {
    oids->push_back(static_cast<std::int32_t>(statement.Integer(0)));
    return true;
  });
}

void KindStatements::SelectByKey(std::size_t search_column, std::int64_t key, std::int64_t from,
                                 std::size_t limit, std::vector<std::int32_t>* oids) {
  searches_[search_column]->SetInteger(0, key);
  RunSearch(*searches_[search_column], from, limit, oids);
}

void KindStatements::SelectByDate(std::size_t search_column, double date, std::int64_t from,
                                  std::size_t limit, std::vector<std::int32_t>* oids) {
  searches_[search_column]->SetReal(0, date);
  RunSearch(*searches_[search_column], from, limit, oids);
}

std::int32_t KindStatements::NewOid() {
  new_oid_.SetInteger(0, device_);
  return new_oid_.RunForRow() ? static_cast<std::int32_t>(new_oid_.Integer(0)) : 0;
}

void KindStatements::CountDeleted() {
  count_deleted_.SetInteger(0, device_);
  count_deleted_.Run();
}

std::int32_t KindStatements::Count() {
  std::int32_t last_oid = 0;
  std::int32_t count = 0;
  SelectCounts(&last_oid, &count);
  return count;
}

void KindStatements::SelectCounts(std::int32_t* last_oid, std::int32_t* count) {
  count_.SetInteger(0, device_);
  if (!count_.RunForRow()) throw DamagedFailure();
  *count = static_cast<std::int32_t>(count_.Integer(0));
  *last_oid = static_cast<std::int32_t>(count_.Integer(1));
}

}  // namespace tamu::device
