// device/pim/item_schema.h - the kinds of items and their properties: one row a property, which the
// interfaces, restrictions, sorting and every store are driven by.
#ifndef TAMU_DEVICE_PIM_ITEM_SCHEMA_H_
#define TAMU_DEVICE_PIM_ITEM_SCHEMA_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "platform/poom.h"

namespace tamu::device {

// The platform's numbers for what CreateItem makes.
enum class ItemKind : std::int32_t {
  kAppointment = platform::kAppointmentItem,
  kContact = platform::kContactItem,
  kTask = platform::kTaskItem,
};
inline constexpr ItemKind kItemKinds[] = {ItemKind::kContact, ItemKind::kAppointment,
                                          ItemKind::kTask};

enum class ValueType : std::uint8_t {
  kText,    // UTF-16, any length, NULs and lone surrogates included
  kDate,    // the exact double
  kNumber,  // 32 bits
  kFlag,    // kVariantTrue or kVariantFalse
  kBytes,
};

struct PropertyInfo {
  std::u16string_view name;  // as restrictions name it
  const char* column;        // as databases name it: "last_name"
  ValueType type;
  bool searchable;  // may stand in a restriction or a sort order
};

// Indexes into the rows of a kind.
enum class ContactProperty : std::uint8_t {
#define TAMU_ENUMERATOR(name) name,
  TAMU_CONTACT_PROPERTIES(TAMU_ENUMERATOR, TAMU_ENUMERATOR)
#undef TAMU_ENUMERATOR
      BodyInk,
  kCount,
};

enum class TaskProperty : std::uint8_t {
  Subject,
  Categories,
  StartDate,
  DueDate,
  DateCompleted,
  Importance,
  Complete,
  Sensitivity,
  TeamTask,
  Body,
  ReminderSet,
  ReminderSoundFile,
  ReminderTime,
  ReminderOptions,
  BodyInk,
  kCount,
};

enum class AppointmentProperty : std::uint8_t {
  Subject,
  Location,
  Categories,
  Start,
  Duration,
  End,
  AllDayEvent,
  BusyStatus,
  Sensitivity,
  Body,
  MeetingStatus,
  ReminderSet,
  ReminderSoundFile,
  ReminderMinutesBeforeStart,
  ReminderOptions,
  BodyInk,
  kCount,
};

// A kind's rows, in the order of its enumeration.
[[nodiscard]] std::span<const PropertyInfo> PropertiesOf(ItemKind kind) noexcept;

inline constexpr std::size_t kNoProperty = static_cast<std::size_t>(-1);

// The index of a property by its name, without regard to case; kNoProperty when the kind has none
// of that name.
[[nodiscard]] std::size_t FindProperty(ItemKind kind, std::u16string_view name) noexcept;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_PIM_ITEM_SCHEMA_H_
