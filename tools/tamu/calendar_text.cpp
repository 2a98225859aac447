#include "calendar_text.h"

#include <string>

#include "calendar_words.h"
#include "date_words.h"
#include "property_lines.h"

namespace tamu::tool {
namespace {

constexpr LabelRow kSummary = {"SUMMARY", "Summary", &LINES_Plain};
constexpr LabelRow kStart = {"DTSTART", "Start", &LINES_Dates};
constexpr LabelRow kEnd = {"DTEND", "End", &LINES_Dates};

// What an event and a to-do have in common, in the order in which it is shown.
constexpr LabelRow kLabels[] = {
    {"LOCATION", "Where", &LINES_Plain},          {"RRULE", "Repeats", &CALWORDS_Rule},
    {"EXDATE", "Except", &LINES_Dates},           {"DUE", "Due", &LINES_Dates},
    {"COMPLETED", "Completed", &LINES_Dates},     {"DALARM", "Alarm", &CALWORDS_Alarm},
    {"ATTENDEE", "Attendee", &CALWORDS_Attendee}, {"CATEGORIES", "Categories", &LINES_List},
    {"PRIORITY", "Priority", &CALWORDS_Priority}, {"STATUS", "Status", &CALWORDS_Status},
    {"CLASS", "Access", &CALWORDS_Class},         {"DESCRIPTION", "Description", &LINES_Plain},
};

struct Period {
  const PropertyView* start;
  const PropertyView* end;
  DateReading from;
  DateReading to;
};

bool IsSameDay(const DateFields& a, const DateFields& b) noexcept {
  return a.year == b.year && a.month == b.month && a.day == b.day;
}

bool IsMidnight(const DateFields& fields) noexcept {
  return fields.hour == 0 && fields.minute == 0 && fields.second == 0;
}

// "Mon 5 Jan 2004 10:00 - 11:30"; an event of whole days by its days alone.
std::string PeriodWords(const Period& period, bool all_day) {
  const DateFields& from = period.from.local;
  const DateFields& to = period.to.local;
  const bool same_day = IsSameDay(from, to);
  if (all_day) return same_day ? DATE_Day(from) : DATE_Day(from) + " - " + DATE_Day(to);
  if (from == to && period.from.utc == period.to.utc) return DATE_Words(period.from);
  if (same_day && period.to.has_time) return DATE_Words(period.from) + " - " + DATE_Time(to);
  return DATE_Words(period.from) + " - " + DATE_Words(period.to);
}

// The dates as they stand in the file, where the words leave something unsaid.
void AddDateNotes(const Period& period, bool all_day, std::vector<std::string>* notes) {
  const bool hides_times =
      all_day && (!IsMidnight(period.from.local) || !IsMidnight(period.to.local));
  if (period.from.plain && period.to.plain && !hides_times) return;
  const std::string from = LINES_Part(*period.start, 0);
  const std::string to = LINES_Part(*period.end, 0);
  notes->push_back(from == to ? from : from + " - " + to);
}

bool HasSeveral(const ObjectView& event, const PropertyView* first) {
  for (const PropertyView& property : event.properties) {
    if (property.name == first->name && &property != first && !property.IsEmpty()) return true;
  }
  return false;
}

// One line for start and end. Returns false when there is no pair of dates to make it of.
bool AddPeriod(const ObjectView& event, TextLines* lines) {
  Period period{LINES_Find(event, "DTSTART"), LINES_Find(event, "DTEND"), {}, {}};
  if (period.start == nullptr) return false;
  if (period.end == nullptr) period.end = period.start;
  if (HasSeveral(event, period.start) || HasSeveral(event, period.end)) return false;
  const auto from = LINES_ReadDate(*period.start, 0);
  const auto to = LINES_ReadDate(*period.end, 0);
  if (!from || !to) return false;
  period.from = *from;
  period.to = *to;
  std::vector<std::string> notes;
  if (event.all_day) notes.emplace_back("all day");
  AddDateNotes(period, event.all_day, &notes);
  lines->AddValue("When", {PeriodWords(period, event.all_day)}, notes);
  return true;
}

// Times that make no period are shown each for itself.
void AddTimes(const ObjectView& item, TextLines* lines) {
  const bool is_event = item.component == COMPONENT_EVENT;
  if (is_event && AddPeriod(item, lines)) return;
  LINES_AddRow(kStart, item, lines);
  LINES_AddRow(kEnd, item, lines);
  if (item.all_day) lines->AddValue("When", {"all day"}, {});
}

}  // namespace

void TEXT_AddCalendarItem(const ObjectView& item, TextLines* lines) {
  LINES_AddSummary(kSummary, item, lines);
  AddTimes(item, lines);
  for (const LabelRow& row : kLabels) LINES_AddRow(row, item, lines);
  LINES_AddIdentifier(item, lines);
}

}  // namespace tamu::tool
