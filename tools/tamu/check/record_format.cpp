#include "check/record_format.h"

#include "formats/vcalendar_properties.h"
#include "formats/vcard_properties.h"
#include "formats/vnote_properties.h"
#include "text/version.h"

namespace tamu::tool {
namespace {

struct FormRow {
  std::string_view name;
  ValueForm form;
};
// Of an alarm the first component is a date.
constexpr FormRow kForms[] = {
    {"BDAY", ValueForm::kDate},     {"X-ANNIVERSARY", ValueForm::kDate},
    {"DTSTART", ValueForm::kDate},  {"DTEND", ValueForm::kDate},
    {"DUE", ValueForm::kDate},      {"COMPLETED", ValueForm::kDate},
    {"DCREATED", ValueForm::kDate}, {"LAST-MODIFIED", ValueForm::kDate},
    {"DALARM", ValueForm::kDate},   {"EXDATE", ValueForm::kDates},
    {"RRULE", ValueForm::kRule},
};

LineTraits Value(std::string_view name, std::uint32_t components) noexcept {
  for (const FormRow& row : kForms) {
    if (row.name == name) return {LineRole::kValue, components, row.form};
  }
  return {LineRole::kValue, components};
}

LineTraits FindInCard(std::string_view name) noexcept {
  const VcardName found = VCARD_FindName(name);
  switch (found.line) {
    case VcardLine::kBegin:
      return {LineRole::kBegin};
    case VcardLine::kEnd:
      return {LineRole::kEnd};
    case VcardLine::kLuid:
      return {LineRole::kLuid};
    case VcardLine::kVersion:
      return {LineRole::kVersion};
    case VcardLine::kProperty:
      return Value(name, VCARD_Rows()[found.row].components);
    case VcardLine::kUnknown:
      break;
  }
  return {};
}

LineTraits FindInComponent(std::string_view name, bool is_event) noexcept {
  const VcalCode code = VCAL_PropertyCode(name);
  switch (code) {
    case VcalCode::kUnknown:
      return {};
    case VcalCode::kBegin:
      return {LineRole::kBegin};
    case VcalCode::kEnd:
      return {LineRole::kEnd};
    case VcalCode::kLuid:
      return {LineRole::kLuid};
    case VcalCode::kVersion:
      return {LineRole::kNoPlace};
    case VcalCode::kAllDayEvent:
      return {is_event ? LineRole::kAllDay : LineRole::kNoPlace};
    default:
      break;
  }
  const VcalRow* const row = VCAL_RowOf(code);
  if (row == nullptr || (!is_event && row->todo_field == nullptr)) return {LineRole::kNoPlace};
  return Value(name, kAnyComponents);
}

LineTraits FindInEvent(std::string_view name) noexcept { return FindInComponent(name, true); }
LineTraits FindInToDo(std::string_view name) noexcept { return FindInComponent(name, false); }

LineTraits FindInNote(std::string_view name) noexcept {
  switch (VNOTE_PropertyCode(name)) {
    case VnoteCode::kUnknown:
      return {};
    case VnoteCode::kBegin:
      return {LineRole::kBegin};
    case VnoteCode::kEnd:
      return {LineRole::kEnd};
    case VnoteCode::kLuid:
      return {LineRole::kLuid};
    case VnoteCode::kVersion:
      return {LineRole::kVersion};
    default:
      return Value(name, kAnyComponents);
  }
}

std::vector<std::string_view> MandatoryInCard() { return {"VERSION", "N"}; }
std::vector<std::string_view> MandatoryInNote() { return {"VERSION"}; }

std::vector<std::string_view> MandatoryInComponent(VcalUse VcalRow::*use) {
  std::vector<std::string_view> names;
  for (const VcalRow& row : VCAL_Rows()) {
    if ((row.*use).need == VcalNeed::kMandatory) names.push_back(row.name);
  }
  return names;
}
std::vector<std::string_view> MandatoryInEvent() { return MandatoryInComponent(&VcalRow::event); }
std::vector<std::string_view> MandatoryInToDo() { return MandatoryInComponent(&VcalRow::todo); }

}  // namespace

const RecordFormat kCardFormat = {"card",
                                  "VCARD",
                                  true,
                                  &FindInCard,
                                  kVcardVersion,
                                  &MandatoryInCard,
                                  FindingKind::kMissingProperty,
                                  true};
const RecordFormat kEventFormat = {
    "event", "VEVENT", false, &FindInEvent, 0, &MandatoryInEvent, FindingKind::kMissingMandatory,
    false};
const RecordFormat kToDoFormat = {
    "to-do", "VTODO", false, &FindInToDo, 0, &MandatoryInToDo, FindingKind::kMissingMandatory,
    false};
const RecordFormat kNoteFormat = {"note",
                                  "VNOTE",
                                  false,
                                  &FindInNote,
                                  kVnoteVersion,
                                  &MandatoryInNote,
                                  FindingKind::kMissingProperty,
                                  true};

}  // namespace tamu::tool
