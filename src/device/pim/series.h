// device/pim/series.h - what a recurring item's pattern means: when it happens, where it ends, which
// exceptions belong to it.
//   Errors     none.
#ifndef TAMU_DEVICE_PIM_SERIES_H_
#define TAMU_DEVICE_PIM_SERIES_H_

#include <cstdint>
#include <optional>

#include "device/pim/item_record.h"
#include "device/pim/occurrences.h"

namespace tamu::device {

// Which end of a series was put since it was last saved.
enum class PutEnd : std::uint8_t { kNone, kCount, kDate };

[[nodiscard]] PatternRule RuleOf(const RecurrenceRecord& pattern) noexcept;

// Makes the end whole: the one of count and date that was not put is computed from the other; with
// neither put the date holds. A series without any end is endless, an endless one has no count and
// no date. The date of a rule that never happens is unknown: kNoDate.
void CompleteEnd(RecurrenceRecord* pattern, PutEnd put) noexcept;

// True when the pattern, its end complete, happens on the day; exceptions are not looked at.
[[nodiscard]] bool HappensOn(const RecurrenceRecord& pattern, std::int32_t day) noexcept;

// The first day after this one on which the pattern, its end complete, happens.
[[nodiscard]] std::optional<std::int32_t> NextAfter(const RecurrenceRecord& pattern,
                                                    std::int32_t day) noexcept;

// The exception of a day, or null.
[[nodiscard]] const ExceptionRecord* ExceptionOn(const ItemRecord& item, std::int32_t day) noexcept;

// Takes away the exceptions on days on which the item's pattern does not happen, all when it has
// none. The others move to the time of day of the pattern.
void DropStrayExceptions(ItemRecord* item) noexcept;

// Puts an exception in its place by date, for the one of its day or beside the others. Throws
// std::bad_alloc when memory runs out.
void SetException(ItemRecord* item, const ExceptionRecord& exception);

}  // namespace tamu::device

#endif  // TAMU_DEVICE_PIM_SERIES_H_
