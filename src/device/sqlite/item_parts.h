// device/sqlite/item_parts.h - what items have beside their properties: recurrence, exceptions,
// recipients; the statements over those three tables.
//   Errors     as statements: thrown.
#ifndef TAMU_DEVICE_SQLITE_ITEM_PARTS_H_
#define TAMU_DEVICE_SQLITE_ITEM_PARTS_H_

#include <cstdint>

#include "device/pim/item_record.h"
#include "device/sqlite/statement.h"

namespace tamu::device {

class ItemParts {
 public:
  explicit ItemParts(Database& database);

  // What the record has, under an oid that has none of it.
  void Insert(const ItemRecord& item, std::int32_t oid);
  void Delete(std::int32_t oid);

  void SelectRecurrence(ItemRecord* item);
  void SelectExceptions(ItemRecord* item);
  void SelectRecipients(ItemRecord* item);

 private:
  void InsertRecurrence(std::int32_t oid, const RecurrenceRecord& recurrence);

  std::int64_t device_;
  Statement insert_recurrence_;
  Statement insert_exception_;
  Statement insert_recipient_;
  Statement delete_recurrence_;
  Statement delete_exceptions_;
  Statement delete_recipients_;
  Statement select_recurrence_;
  Statement select_exceptions_;
  Statement select_recipients_;
};

}  // namespace tamu::device

#endif  // TAMU_DEVICE_SQLITE_ITEM_PARTS_H_
