#include "device/pim/item_order.h"

#include <algorithm>

#include "device/pim/restriction.h"
#include "text/unicode.h"

namespace tamu::device {

bool IsSortable(ItemKind kind, std::size_t property) noexcept {
  if (property == Restriction::kOid) return true;
  if (property == kNoProperty) return false;
  const PropertyInfo& row = PropertiesOf(kind)[property];
  return row.searchable && row.name != u"Categories";
}

void ItemSorter::Add(const ItemRecord& item) {
  Key key;
  key.oid = item.oid;
  if (order_.property != Restriction::kOid) {
    const PropertyValue& value = item.values[order_.property];
    if (const auto* text = std::get_if<std::u16string>(&value)) {
      key.text = UNICODE_FoldText(*text);
    } else if (const auto* date = std::get_if<double>(&value)) {
      key.number = *date;
    } else if (const auto* number = std::get_if<std::int32_t>(&value)) {
      const bool is_flag = PropertiesOf(item.kind)[order_.property].type == ValueType::kFlag;
      key.number = is_flag ? (*number != 0 ? 1 : 0) : *number;
    }
  } else {
    key.number = item.oid;
  }
  keys_.push_back(std::move(key));
}

std::vector<std::int32_t> ItemSorter::Sorted() {
  std::sort(keys_.begin(), keys_.end(), [this](const Key& left, const Key& right) {
    int order = left.text.compare(right.text);
    if (order == 0) order = left.number < right.number ? -1 : left.number > right.number ? 1 : 0;
    if (order != 0) return order_.descending ? order > 0 : order < 0;
    return left.oid < right.oid;
  });
  std::vector<std::int32_t> oids;
  oids.reserve(keys_.size());
  for (const Key& key : keys_) oids.push_back(key.oid);
  return oids;
}

}  // namespace tamu::device
