#include "formats/vcalendar_properties.h"

#include <array>
#include <cstddef>
#include <iterator>

namespace tamu {
namespace {

using E = EventShape;
using T = ToDoShape;

constexpr auto kNever = VcalWriting::kNever;
constexpr auto kIfThere = VcalWriting::kIfThere;
constexpr auto kAlways = VcalWriting::kAlways;
constexpr auto kOptional = VcalNeed::kOptional;
constexpr auto kMandatory = VcalNeed::kMandatory;
constexpr VcalUse kUnused = {0, kNever, kOptional};

// An event also always writes SUMMARY, DTEND and PRIORITY, which it need not have when it is read.
constexpr VcalRow kRows[] = {
    {VcalCode::kSummary,
     "SUMMARY",
     &E::prop_summary,
     &T::prop_summary,
     {1, kAlways, kOptional},
     {9, kAlways, kMandatory}},
    {VcalCode::kDescription,
     "DESCRIPTION",
     &E::prop_description,
     &T::prop_description,
     {2, kAlways, kMandatory},
     {4, kAlways, kMandatory}},
    {VcalCode::kDtstart,
     "DTSTART",
     &E::prop_dtstart,
     &T::prop_dtstart,
     {3, kAlways, kMandatory},
     {5, kIfThere, kOptional}},
    {VcalCode::kDtend, "DTEND", &E::prop_dtend, &T::prop_dtend, {4, kAlways, kOptional}, kUnused},
    {VcalCode::kClass,
     "CLASS",
     &E::prop_class,
     &T::prop_class,
     {5, kIfThere, kOptional},
     {2, kIfThere, kOptional}},
    {VcalCode::kPriority,
     "PRIORITY",
     &E::prop_priority,
     &T::prop_priority,
     {6, kAlways, kOptional},
     {7, kAlways, kMandatory}},
    {VcalCode::kStatus,
     "STATUS",
     &E::prop_status,
     &T::prop_status,
     {7, kIfThere, kOptional},
     {8, kAlways, kMandatory}},
    {VcalCode::kLocation,
     "LOCATION",
     &E::prop_location,
     nullptr,
     {8, kIfThere, kOptional},
     kUnused},
    {VcalCode::kCategories,
     "CATEGORIES",
     &E::prop_categories,
     &T::prop_categories,
     {9, kIfThere, kOptional},
     {1, kAlways, kMandatory}},
    {VcalCode::kCompleted,
     "COMPLETED",
     &E::prop_completed,
     &T::prop_completed,
     kUnused,
     {3, kAlways, kMandatory}},
    {VcalCode::kDue, "DUE", &E::prop_due, &T::prop_due, kUnused, {6, kAlways, kMandatory}},
    {VcalCode::kDalarm,
     "DALARM",
     &E::prop_dalarm,
     &T::prop_dalarm,
     {10, kIfThere, kOptional},
     {10, kIfThere, kOptional}},
    {VcalCode::kRrule,
     "RRULE",
     &E::prop_rrule,
     &T::prop_rrule,
     {11, kIfThere, kOptional},
     {11, kIfThere, kOptional}},
    {VcalCode::kExdate,
     "EXDATE",
     &E::prop_exdate,
     &T::prop_exdate,
     {12, kIfThere, kOptional},
     {12, kIfThere, kOptional}},
    {VcalCode::kAttendee,
     "ATTENDEE",
     &E::prop_attendee,
     &T::prop_attendee,
     {13, kIfThere, kOptional},
     {13, kIfThere, kOptional}},
};
constexpr std::size_t kWrittenCount = 13;

struct StructureName {
  std::string_view name;
  VcalCode code;
};
constexpr StructureName kStructureNames[] = {
    {"BEGIN", VcalCode::kBegin},
    {"END", VcalCode::kEnd},
    {"VERSION", VcalCode::kVersion},
    {"X-IRMC-LUID", VcalCode::kLuid},
    {"X-BLUETOOTH-ALLDAYEVENT", VcalCode::kAllDayEvent},
};

using WrittenRows = std::array<const VcalRow*, kWrittenCount>;

constexpr WrittenRows InWritingOrder(VcalUse VcalRow::*use) {
  WrittenRows rows{};
  for (const VcalRow& row : kRows) {
    if ((row.*use).place != 0) rows[(row.*use).place - 1U] = &row;
  }
  return rows;
}
constexpr WrittenRows kEventRows = InWritingOrder(&VcalRow::event);
constexpr WrittenRows kToDoRows = InWritingOrder(&VcalRow::todo);

// Every place is taken once, and only what is written has one.
constexpr bool PlacesAreComplete(const WrittenRows& rows, VcalUse VcalRow::*use) {
  std::size_t placed = 0;
  for (const VcalRow& row : kRows) {
    const bool written = (row.*use).writing != kNever;
    if (written != ((row.*use).place != 0)) return false;
    placed += written ? 1U : 0U;
  }
  for (const VcalRow* row : rows) {
    if (row == nullptr) return false;
  }
  return placed == kWrittenCount;
}
static_assert(PlacesAreComplete(kEventRows, &VcalRow::event));
static_assert(PlacesAreComplete(kToDoRows, &VcalRow::todo));
static_assert(std::size(kRows) + std::size(kStructureNames) == 20, "one name for each code");

}  // namespace

std::span<const VcalRow> VCAL_Rows() noexcept { return kRows; }

VcalCode VCAL_PropertyCode(std::string_view name) noexcept {
  for (const VcalRow& row : kRows) {
    if (row.name == name) return row.code;
  }
  for (const StructureName& row : kStructureNames) {
    if (row.name == name) return row.code;
  }
  return VcalCode::kUnknown;
}

const VcalRow* VCAL_RowOf(VcalCode code) noexcept {
  for (const VcalRow& row : kRows) {
    if (row.code == code) return &row;
  }
  return nullptr;
}

std::span<const VcalRow* const> VCAL_WrittenRows(std::uint8_t component) noexcept {
  if (component == COMPONENT_EVENT) return kEventRows;
  if (component == COMPONENT_TODO) return kToDoRows;
  return {};
}

}  // namespace tamu
