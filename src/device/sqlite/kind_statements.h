// device/sqlite/kind_statements.h - the statements over the wide table of one kind of item.
//   Errors     as statements: thrown.
#ifndef TAMU_DEVICE_SQLITE_KIND_STATEMENTS_H_
#define TAMU_DEVICE_SQLITE_KIND_STATEMENTS_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "device/pim/item_record.h"
#include "device/sqlite/item_tables.h"
#include "device/sqlite/statement.h"

namespace tamu::device {

class KindStatements {
 public:
  KindStatements(Database& database, ItemKind kind);

  // The properties of the record, under an oid of its own.
  void Insert(const ItemRecord& item, std::int32_t oid);
  // The same in place of what has the record's oid; false when nothing has.
  [[nodiscard]] bool Update(const ItemRecord& item);
  [[nodiscard]] bool Select(std::int32_t oid, ItemRecord* item);

  // How a search column's value is found: oids from `from` on, ascending, at most `limit`.
  void SelectByKey(std::size_t search_column, std::int64_t key, std::int64_t from,
                   std::size_t limit, std::vector<std::int32_t>* oids);
  void SelectByDate(std::size_t search_column, double date, std::int64_t from, std::size_t limit,
                    std::vector<std::int32_t>* oids);

  // Takes the next oid of the device and counts the item; 0 when the oids are used up.
  [[nodiscard]] std::int32_t NewOid();
  void CountDeleted();
  [[nodiscard]] std::int32_t Count();
  // The last oid that any kind took, and the number of this one's items.
  void SelectCounts(std::int32_t* last_oid, std::int32_t* count);

 private:
  // Binds the columns after "oid" and "device" from parameter `first` on.
  void BindColumns(Statement& statement, std::size_t first, const ItemRecord& item);
  void BindKey(Statement& statement, std::size_t parameter, const SearchColumn& column,
               const ItemRecord& item) const;
  void RunSearch(Statement& statement, std::int64_t from, std::size_t limit,
                 std::vector<std::int32_t>* oids);

  ItemKind kind_;
  std::int64_t device_;
  std::size_t property_count_;
  std::size_t column_count_;
  std::string odd_dates_;
  Statement insert_;
  Statement update_;
  Statement select_;
  Statement new_oid_;
  Statement count_deleted_;
  Statement count_;
  std::vector<std::unique_ptr<Statement>> searches_;
};

}  // namespace tamu::device

#endif  // TAMU_DEVICE_SQLITE_KIND_STATEMENTS_H_
