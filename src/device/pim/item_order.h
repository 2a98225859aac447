// device/pim/item_order.h - the order in which a sorted collection gives its items.
#ifndef TAMU_DEVICE_PIM_ITEM_ORDER_H_
#define TAMU_DEVICE_PIM_ITEM_ORDER_H_

#include <cstdint>
#include <string>
#include <vector>

#include "device/pim/item_record.h"

namespace tamu::device {

struct ItemOrder {
  std::size_t property = 0;  // index into the kind's rows, or Restriction::kOid
  bool descending = false;
};

// True for a property by which items can be sorted: searchable, and no list of words.
[[nodiscard]] bool IsSortable(ItemKind kind, std::size_t property) noexcept;

// Collects the oids of items and gives them in an order: texts without regard to case, items that are
// equal by their ids. Empty texts come first in an ascending order, missing dates last.
class ItemSorter {
 public:
  explicit ItemSorter(const ItemOrder& order) noexcept : order_(order) {}

  // Takes a well-formed item. Throws std::bad_alloc when memory runs out.
  void Add(const ItemRecord& item);
  // Throws std::bad_alloc when memory runs out.
  [[nodiscard]] std::vector<std::int32_t> Sorted();

 private:
  struct Key {
    std::u16string text;
    double number = 0;
    std::int32_t oid = 0;
  };

  ItemOrder order_;
  std::vector<Key> keys_;
};

}  // namespace tamu::device

#endif  // TAMU_DEVICE_PIM_ITEM_ORDER_H_
