// device/pim/item_record.h - one item as the stores keep it.
//   Errors     copying throws std::bad_alloc when memory runs out.
#ifndef TAMU_DEVICE_PIM_ITEM_RECORD_H_
#define TAMU_DEVICE_PIM_ITEM_RECORD_H_

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "device/bytes.h"
#include "device/pim/item_schema.h"

namespace tamu::device {

// Text, date, number or flag, bytes: the alternative is the property's type.
using PropertyValue = std::variant<std::u16string, double, std::int32_t, Bytes>;

// How an item repeats. Dates are days since 30 December 1899.
struct RecurrenceRecord {
  std::int32_t type = 0;
  double pattern_start = 0;
  double start_time = 0;      // time of day (the fraction) of an occurrence's start
  std::int32_t duration = 0;  // minutes
  bool no_end = true;
  double pattern_end = platform::kNoDate;
  std::int32_t occurrences = 0;
  std::int32_t interval = 1;
  std::int32_t day_of_week_mask = 0;
  std::int32_t day_of_month = 0;
  std::int32_t instance = 0;
  std::int32_t month_of_year = 0;

  friend bool operator==(const RecurrenceRecord&, const RecurrenceRecord&) = default;
};

// One occurrence that is not as the pattern has it.
struct ExceptionRecord {
  double original_start = 0;  // date and time that the pattern gives
  bool deleted = true;

  friend bool operator==(const ExceptionRecord&, const ExceptionRecord&) = default;
};

struct RecipientRecord {
  std::u16string name;
  std::u16string address;

  friend bool operator==(const RecipientRecord&, const RecipientRecord&) = default;
};

struct ItemRecord {
  ItemKind kind = ItemKind::kContact;
  std::int32_t oid = 0;               // 0: never saved
  std::vector<PropertyValue> values;  // one for each row of the kind's properties
  std::optional<RecurrenceRecord> recurrence;
  std::vector<ExceptionRecord> exceptions;  // by original start
  std::vector<RecipientRecord> recipients;

  friend bool operator==(const ItemRecord&, const ItemRecord&) = default;
};

// A record of the kind with every value empty: "" , kNoDate, 0, no bytes.
[[nodiscard]] ItemRecord EmptyItem(ItemKind kind);

}  // namespace tamu::device

#endif  // TAMU_DEVICE_PIM_ITEM_RECORD_H_
