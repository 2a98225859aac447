// device/pim/item_state.h - one item in hand: its record and what the objects that show it (the item,
// its pattern, its recipients) change together.
//   Errors     results of com.h and poom.h; nothing is thrown unless a function says so.
#ifndef TAMU_DEVICE_PIM_ITEM_STATE_H_
#define TAMU_DEVICE_PIM_ITEM_STATE_H_

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "device/pim/application.h"
#include "device/pim/item_record.h"
#include "device/pim/series.h"
#include "platform/com_ptr.h"

namespace tamu::device {

struct ItemState;

// What makes an item one occurrence of a series.
struct OccurrenceOf {
  std::shared_ptr<ItemState> series;
  platform::DATE original_start = 0;
  ItemRecord as_made;
};

struct ItemState {
  platform::ComPtr<PimApplication> application;
  ItemRecord record;
  bool deleted = false;

  // The pattern of an item that does not recur (yet): what was put of it, and which parts follow
  // the item because they were not.
  RecurrenceRecord prepared;
  bool start_was_put = false;
  bool time_was_put = false;
  bool duration_was_put = false;
  // The time of day that was put as the pattern's end.
  std::optional<double> end_time;
  PutEnd put_end = PutEnd::kNone;

  // One for each recipient, never used again: objects of recipients find theirs by it.
  std::vector<std::uint32_t> recipient_ids;
  std::uint32_t next_recipient_id = 0;

  std::optional<OccurrenceOf> occurrence;
};

// The property's value of a text, date, number or flag, bytes; the record is well formed.
[[nodiscard]] std::u16string& TextOf(ItemRecord& item, std::size_t property);
[[nodiscard]] double& DateOf(ItemRecord& item, std::size_t property);
[[nodiscard]] std::int32_t& NumberOf(ItemRecord& item, std::size_t property);
[[nodiscard]] Bytes& BytesOf(ItemRecord& item, std::size_t property);

// True when every property has a value of its type.
[[nodiscard]] bool IsWellFormed(const ItemRecord& item) noexcept;

// The item in hand of a record. Throws std::bad_alloc when memory runs out.
[[nodiscard]] std::shared_ptr<ItemState> MakeState(PimApplication* application, ItemRecord record);

// The record of a new item: an appointment starts with the next full hour, lasts 60 minutes and is
// busy; a task has normal importance and no dates. Throws std::bad_alloc when memory runs out.
[[nodiscard]] platform::HRESULT FillNewItem(ItemKind kind, ItemRecord* item);

// Stores the item whole. kInvalidDates when an appointment ends before it starts, kItemNotFound
// when the item was deleted. What is in hand is unchanged after a failure.
[[nodiscard]] platform::HRESULT SaveItem(ItemState* item) noexcept;

// Takes the item out of the store; kItemNotFound when it was never saved or is gone.
[[nodiscard]] platform::HRESULT DeleteItem(ItemState* item) noexcept;

// The pattern in hand: the item's, or of an item that does not recur the one that is prepared, as
// far as it was not put taken from the item.
[[nodiscard]] RecurrenceRecord CurrentPattern(const ItemState& item) noexcept;

// The same with its end complete.
[[nodiscard]] RecurrenceRecord CompletePattern(const ItemState& item) noexcept;

// Makes the item one that does not recur, its exceptions gone.
void ClearPattern(ItemState* item) noexcept;

// Starts of appointments. A date that is not a number is refused.
//   Start keeps the length of the appointment. When an end was put that lies before the old start,
//   it stays, and the length becomes what lies between.
//   The pattern of a recurring appointment moves along.
[[nodiscard]] platform::HRESULT PutStart(ItemState* item, platform::DATE date) noexcept;
[[nodiscard]] platform::HRESULT PutEndDate(ItemState* item, platform::DATE date) noexcept;
[[nodiscard]] platform::HRESULT PutDuration(ItemState* item, std::int32_t minutes) noexcept;

// Takes a deleted exception of an occurrence into the series in hand and, when the stored series has
// that occurrence, into the store, at once and without what else was put in hand.
[[nodiscard]] platform::HRESULT DeleteOccurrence(ItemState* series,
                                                 platform::DATE original_start) noexcept;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_PIM_ITEM_STATE_H_
