// formats/vcalendar_properties.h - the properties of a vCalendar 1.0 with its events and to-dos,
// for the reader and the writer.
#ifndef TAMU_FORMATS_VCALENDAR_PROPERTIES_H_
#define TAMU_FORMATS_VCALENDAR_PROPERTIES_H_

#include <cstdint>
#include <span>
#include <string_view>

#include "tamu/tamu.h"

namespace tamu {

// What a line is, by its property name.
enum class VcalCode : std::uint8_t {
  kUnknown = 0,
  kBegin = 1,
  kCategories = 2,
  kVersion = 3,
  kCompleted = 4,
  kDescription = 5,
  kDue = 6,
  kDtend = 7,
  kPriority = 8,
  kDtstart = 9,
  kStatus = 10,
  kSummary = 11,
  kEnd = 12,
  kLuid = 13,
  kLocation = 14,
  kClass = 15,
  kRrule = 16,
  kAllDayEvent = 17,
  kAttendee = 18,
  kDalarm = 19,
  kExdate = 20,
};

// Whether a component has to have a property when it is read.
enum class VcalNeed : std::uint8_t { kOptional, kMandatory };

// How a component's property is written: not at all, only when there is one, or also as an empty
// line.
enum class VcalWriting : std::uint8_t { kNever, kIfThere, kAlways };

// One property of one component.
struct VcalUse {
  std::uint8_t place;  // among the lines that are written, from 1; 0 for none
  VcalWriting writing;
  VcalNeed need;
};

// One property that is kept in a chain. Both components fill `event` and `todo` alike where both
// have the field, also with properties that they never write.
struct VcalRow {
  VcalCode code;
  std::string_view name;
  Ref<Property> EventShape::*event_field;
  Ref<Property> ToDoShape::*todo_field;  // null: a to-do has no such field
  VcalUse event;
  VcalUse todo;
};

[[nodiscard]] std::span<const VcalRow> VCAL_Rows() noexcept;

// The code of a name, whole and case-sensitive; kUnknown for any other.
[[nodiscard]] VcalCode VCAL_PropertyCode(std::string_view name) noexcept;

// The row of a code's property, or null when it is kept in no chain.
[[nodiscard]] const VcalRow* VCAL_RowOf(VcalCode code) noexcept;

// The rows that a component writes, in their order.
[[nodiscard]] std::span<const VcalRow* const> VCAL_WrittenRows(std::uint8_t component) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_VCALENDAR_PROPERTIES_H_
