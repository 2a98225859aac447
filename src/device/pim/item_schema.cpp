#include "device/pim/item_schema.h"

#include <array>

namespace tamu::device {
namespace {

constexpr bool kNotSearchable = false;

constexpr PropertyInfo kContactRows[] = {
    {u"Birthday", "birthday", ValueType::kDate, true},
    {u"Anniversary", "anniversary", ValueType::kDate, true},
    {u"BusinessFaxNumber", "business_fax_number", ValueType::kText, true},
    {u"CompanyName", "company_name", ValueType::kText, true},
    {u"Department", "department", ValueType::kText, true},
    {u"Email1Address", "email1_address", ValueType::kText, true},
    {u"MobileTelephoneNumber", "mobile_telephone_number", ValueType::kText, true},
    {u"OfficeLocation", "office_location", ValueType::kText, true},
    {u"PagerNumber", "pager_number", ValueType::kText, true},
    {u"BusinessTelephoneNumber", "business_telephone_number", ValueType::kText, true},
    {u"JobTitle", "job_title", ValueType::kText, true},
    {u"HomeTelephoneNumber", "home_telephone_number", ValueType::kText, true},
    {u"Email2Address", "email2_address", ValueType::kText, true},
    {u"Spouse", "spouse", ValueType::kText, true},
    {u"Email3Address", "email3_address", ValueType::kText, true},
    {u"Home2TelephoneNumber", "home2_telephone_number", ValueType::kText, true},
    {u"HomeFaxNumber", "home_fax_number", ValueType::kText, true},
    {u"CarTelephoneNumber", "car_telephone_number", ValueType::kText, true},
    {u"AssistantName", "assistant_name", ValueType::kText, true},
    {u"AssistantTelephoneNumber", "assistant_telephone_number", ValueType::kText, true},
    {u"Children", "children", ValueType::kText, true},
    {u"Categories", "categories", ValueType::kText, true},
    {u"WebPage", "web_page", ValueType::kText, true},
    {u"Business2TelephoneNumber", "business2_telephone_number", ValueType::kText, true},
    {u"Title", "title", ValueType::kText, true},
    {u"FirstName", "first_name", ValueType::kText, true},
    {u"MiddleName", "middle_name", ValueType::kText, true},
    {u"LastName", "last_name", ValueType::kText, true},
    {u"Suffix", "suffix", ValueType::kText, true},
    {u"HomeAddressStreet", "home_address_street", ValueType::kText, true},
    {u"HomeAddressCity", "home_address_city", ValueType::kText, true},
    {u"HomeAddressState", "home_address_state", ValueType::kText, true},
    {u"HomeAddressPostalCode", "home_address_postal_code", ValueType::kText, true},
    {u"HomeAddressCountry", "home_address_country", ValueType::kText, true},
    {u"OtherAddressStreet", "other_address_street", ValueType::kText, true},
    {u"OtherAddressCity", "other_address_city", ValueType::kText, true},
    {u"OtherAddressState", "other_address_state", ValueType::kText, true},
    {u"OtherAddressPostalCode", "other_address_postal_code", ValueType::kText, true},
    {u"OtherAddressCountry", "other_address_country", ValueType::kText, true},
    {u"BusinessAddressStreet", "business_address_street", ValueType::kText, true},
    {u"BusinessAddressCity", "business_address_city", ValueType::kText, true},
    {u"BusinessAddressState", "business_address_state", ValueType::kText, true},
    {u"BusinessAddressPostalCode", "business_address_postal_code", ValueType::kText, true},
    {u"BusinessAddressCountry", "business_address_country", ValueType::kText, true},
    {u"RadioTelephoneNumber", "radio_telephone_number", ValueType::kText, true},
    {u"FileAs", "file_as", ValueType::kText, true},
    {u"Body", "body", ValueType::kText, true},
    {u"YomiCompanyName", "yomi_company_name", ValueType::kText, true},
    {u"YomiFirstName", "yomi_first_name", ValueType::kText, true},
    {u"YomiLastName", "yomi_last_name", ValueType::kText, true},
    {u"BodyInk", "body_ink", ValueType::kBytes, kNotSearchable},
};

constexpr PropertyInfo kTaskRows[] = {
    {u"Subject", "subject", ValueType::kText, true},
    {u"Categories", "categories", ValueType::kText, true},
    {u"StartDate", "start_date", ValueType::kDate, true},
    {u"DueDate", "due_date", ValueType::kDate, true},
    {u"DateCompleted", "date_completed", ValueType::kDate, true},
    {u"Importance", "importance", ValueType::kNumber, true},
    {u"Complete", "complete", ValueType::kFlag, true},
    {u"Sensitivity", "sensitivity", ValueType::kNumber, true},
    {u"TeamTask", "team_task", ValueType::kFlag, true},
    {u"Body", "body", ValueType::kText, true},
    {u"ReminderSet", "reminder_set", ValueType::kFlag, true},
    {u"ReminderSoundFile", "reminder_sound_file", ValueType::kText, true},
    {u"ReminderTime", "reminder_time", ValueType::kDate, kNotSearchable},
    {u"ReminderOptions", "reminder_options", ValueType::kNumber, true},
    {u"BodyInk", "body_ink", ValueType::kBytes, kNotSearchable},
};

constexpr PropertyInfo kAppointmentRows[] = {
    {u"Subject", "subject", ValueType::kText, true},
    {u"Location", "location", ValueType::kText, true},
    {u"Categories", "categories", ValueType::kText, true},
    {u"Start", "start", ValueType::kDate, true},
    {u"Duration", "duration", ValueType::kNumber, true},
    {u"End", "end_date", ValueType::kDate, true},
    {u"AllDayEvent", "all_day_event", ValueType::kFlag, true},
    {u"BusyStatus", "busy_status", ValueType::kNumber, true},
    {u"Sensitivity", "sensitivity", ValueType::kNumber, true},
    {u"Body", "body", ValueType::kText, true},
    {u"MeetingStatus", "meeting_status", ValueType::kNumber, true},
    {u"ReminderSet", "reminder_set", ValueType::kFlag, true},
    {u"ReminderSoundFile", "reminder_sound_file", ValueType::kText, true},
    {u"ReminderMinutesBeforeStart", "reminder_minutes_before_start", ValueType::kNumber, true},
    {u"ReminderOptions", "reminder_options", ValueType::kNumber, true},
    {u"BodyInk", "body_ink", ValueType::kBytes, kNotSearchable},
};

static_assert(std::size(kContactRows) == static_cast<std::size_t>(ContactProperty::kCount));
static_assert(std::size(kTaskRows) == static_cast<std::size_t>(TaskProperty::kCount));
static_assert(std::size(kAppointmentRows) == static_cast<std::size_t>(AppointmentProperty::kCount));

// The rows of contacts stand in the order of the interface's slots.
constexpr std::u16string_view kContactNames[] = {
#define TAMU_NAME(name) u## #name,
    TAMU_CONTACT_PROPERTIES(TAMU_NAME, TAMU_NAME)
#undef TAMU_NAME
};

constexpr bool ContactRowsAreInOrder() {
  for (std::size_t i = 0; i < std::size(kContactNames); ++i) {
    if (kContactRows[i].name != kContactNames[i]) return false;
  }
  return true;
}
static_assert(ContactRowsAreInOrder());

constexpr char16_t ToLower(char16_t unit) noexcept {
  return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit;
}

// Names of properties are ASCII.
bool EqualNames(std::u16string_view left, std::u16string_view right) noexcept {
  if (left.size() != right.size()) return false;
  for (std::size_t i = 0; i < left.size(); ++i) {
    if (ToLower(left[i]) != ToLower(right[i])) return false;
  }
  return true;
}

}  // namespace

std::span<const PropertyInfo> PropertiesOf(ItemKind kind) noexcept {
  switch (kind) {
    case ItemKind::kAppointment:
      return kAppointmentRows;
    case ItemKind::kTask:
      return kTaskRows;
    case ItemKind::kContact:
      break;
  }
  return kContactRows;
}

std::size_t FindProperty(ItemKind kind, std::u16string_view name) noexcept {
  const std::span<const PropertyInfo> rows = PropertiesOf(kind);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (EqualNames(rows[i].name, name)) return i;
  }
  return kNoProperty;
}

}  // namespace tamu::device
