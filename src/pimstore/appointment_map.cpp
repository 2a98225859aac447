#include "pimstore/appointment_map.h"

#include "pimstore/attendees.h"
#include "pimstore/calendar_fields.h"
#include "pimstore/exceptions.h"
#include "pimstore/reminder.h"

namespace tamu {
namespace {

using platform::BStr;
using platform::IAppointment;

void PutBusyStatus(IAppointment* item, Property* property) {
  const BStr text = WideOf(property);
  if (text.empty()) return;
  if (text.view() == u"TENTATIVE") {
    item->put_BusyStatus(platform::kBusyTentative);
  } else if (text.view() == u"DECLINED") {
    item->put_BusyStatus(platform::kBusyFree);
  } else {
    item->put_BusyStatus(platform::kBusyBusy);
  }
}

void AppendStatus(IAppointment* item, Ref<Property>* chain) {
  switch (GetValue(item, &IAppointment::get_BusyStatus, -1)) {
    case platform::kBusyTentative:
      return AppendAscii(chain, "TENTATIVE");
    case platform::kBusyBusy:
      return AppendAscii(chain, "NEEDS ACTION");  // on purpose
    default:
      return;
  }
}

void PutRecurrenceAndExceptions(IAppointment* item, const EventShape& record) {
  const Property* const start = HasText(record.prop_dtstart) ? record.prop_dtstart.get() : nullptr;
  const auto pattern = PutRecurrence(item, record.prop_rrule, start);
  if (pattern) ExceptionsToStore(item, pattern.get(), record.prop_exdate);
}

}  // namespace

void AppointmentToStore(IAppointment* item, const EventShape& record) noexcept {
  PutTextIfAny(item, &IAppointment::put_Subject, record.prop_summary);
  PutTextIfAny(item, &IAppointment::put_Location, record.prop_location);
  PutTextIfAny(item, &IAppointment::put_Categories, record.prop_categories);
  PutDateIfAny(item, &IAppointment::put_Start, record.prop_dtstart);
  PutDateIfAny(item, &IAppointment::put_End, record.prop_dtend);
  PutClass(item, record.prop_class);
  PutBusyStatus(item, record.prop_status);
  PutTextIfAny(item, &IAppointment::put_Body, record.prop_description);
  PutRecurrenceAndExceptions(item, record);
  item->put_AllDayEvent(record.all_day);
  AttendeesToStore(item, record.prop_attendee);
  ReminderToAppointment(item, record.prop_dalarm);
}

void AppointmentFromStore(IAppointment* item, EventShape* record) noexcept {
  FillCalendarHeader(item, COMPONENT_EVENT, record);
  AppendText(&record->prop_categories, GetText(item, &IAppointment::get_Categories));
  AppendDescription(item, &record->prop_description);
  const bool all_day = GetFlag(item, &IAppointment::get_AllDayEvent);
  const DateForm form = all_day ? DateForm::kLocal : DateForm::kUtc;
  const DateValue start = GetDate(item, &IAppointment::get_Start);
  AppendDate(&record->prop_dtend, GetDate(item, &IAppointment::get_End), form);
  AppendDate(&record->prop_dtstart, start, form);
  AppendStatus(item, &record->prop_status);
  AppendText(&record->prop_summary, GetText(item, &IAppointment::get_Subject),
             kAllowQuotedPrintable);
  AppendClass(item, &record->prop_class);
  AppendText(&record->prop_location, GetText(item, &IAppointment::get_Location));
  if (GetFlag(item, &IAppointment::get_ReminderSet)) {
    const std::int32_t minutes = GetValue(item, &IAppointment::get_ReminderMinutesBeforeStart, 0);
    AppendDate(&record->prop_dalarm, DATE_AddMinutes(start, -minutes), form);
  }
  if (const auto pattern = PatternOf(item)) {
    RecurrenceFromStore(pattern.get(), &record->prop_rrule);
    ExceptionsFromStore(pattern.get(), form, &record->prop_exdate);
  }
  record->all_day = all_day ? 1 : 0;
  AttendeesFromStore(item, &record->prop_attendee);
  AppendAscii(&record->prop_priority, "0");  // on purpose
}

}  // namespace tamu
