#include "device/pim/item_record.h"

namespace tamu::device {
namespace {

PropertyValue EmptyValue(ValueType type) {
  switch (type) {
    case ValueType::kText:
      return std::u16string();
    case ValueType::kDate:
      return platform::kNoDate;
    case ValueType::kNumber:
    case ValueType::kFlag:
      return std::int32_t{0};
    case ValueType::kBytes:
      break;
  }
  return Bytes();
}

}  // namespace

ItemRecord EmptyItem(ItemKind kind) {
  ItemRecord item;
  item.kind = kind;
  for (const PropertyInfo& row : PropertiesOf(kind)) item.values.push_back(EmptyValue(row.type));
  return item;
}

}  // namespace tamu::device
