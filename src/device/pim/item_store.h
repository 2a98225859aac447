// device/pim/item_store.h - where items are kept: what the object model asks of a store.
//   A store answers superset questions fast ("items that may match") and the object model decides,
//   so that every store finds the same.
//   Units      oids start at 1, are unique over all kinds and are never used again.
//   Errors     results of com.h; nothing is thrown. Every change is atomic: it happened whole, and
//              is kept over crashes, or not at all.
//   Threads    none.
#ifndef TAMU_DEVICE_PIM_ITEM_STORE_H_
#define TAMU_DEVICE_PIM_ITEM_STORE_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "device/pim/item_record.h"
#include "platform/com.h"

namespace tamu::device {

// One condition that a store may use to narrow a search by an index of its own.
struct SearchTerm {
  std::size_t property = 0;  // index into the kind's rows
  bool exact = false;        // texts: compared as they are, or with case folded on both sides
  std::u16string_view text;  // of a text property; unfolded
  double date = 0;           // of a date property: equals exactly
};

// Tells which items of a kind there are: the same as long as none came or went.
struct ListStamp {
  std::int32_t last_oid = 0;
  std::int32_t count = 0;
  std::uint32_t undone = 0;  // batches of this process that came to nothing

  friend bool operator==(const ListStamp&, const ListStamp&) = default;
};

class ItemStore {
 public:
  ItemStore() = default;
  ItemStore(const ItemStore&) = delete;
  ItemStore& operator=(const ItemStore&) = delete;
  virtual ~ItemStore() = default;

  // kItemNotFound when no item has the oid.
  [[nodiscard]] virtual platform::HRESULT Load(std::int32_t oid, ItemRecord* item) noexcept = 0;

  // Stores all of the item. One with oid 0 is new and receives its oid; any other replaces what has
  // its oid, kItemNotFound when it was deleted meanwhile.
  [[nodiscard]] virtual platform::HRESULT Save(ItemRecord* item) noexcept = 0;

  // kItemNotFound when no item has the oid.
  [[nodiscard]] virtual platform::HRESULT Delete(std::int32_t oid) noexcept = 0;

  [[nodiscard]] virtual platform::HRESULT Count(ItemKind kind, std::int32_t* count) noexcept = 0;

  // The oids of a kind's items above `after`, at most `limit`, in ascending order.
  [[nodiscard]] virtual platform::HRESULT ListOids(ItemKind kind, std::int32_t after,
                                                   std::size_t limit,
                                                   std::vector<std::int32_t>* oids) noexcept = 0;

  // The same for items that may satisfy all of the terms: none that does is left out, others may be
  // among them. Without terms, or with none that has an index, all items.
  [[nodiscard]] virtual platform::HRESULT FindCandidates(
      ItemKind kind, std::span<const SearchTerm> terms, std::int32_t after, std::size_t limit,
      std::vector<std::int32_t>* oids) noexcept = 0;

  // A number that differs after any change of items, of this process or another.
  [[nodiscard]] virtual platform::HRESULT Version(std::uint64_t* version) noexcept = 0;

  // For lists of all items of a kind, which changes of single items leave as they are.
  [[nodiscard]] virtual platform::HRESULT Stamp(ItemKind kind, ListStamp* stamp) noexcept = 0;
};

}  // namespace tamu::device

#endif  // TAMU_DEVICE_PIM_ITEM_STORE_H_
