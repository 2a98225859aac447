#include "calendar_words.h"

#include <string_view>

#include "display_text.h"
#include "property_words.h"
#include "rule_reading.h"
#include "text/string_tools.h"

namespace tamu::tool {
namespace {

struct WordRow {
  std::string_view value;  // in capitals
  std::string_view words;
};
// vCalendar 1.0, "Classification".
constexpr WordRow kClasses[] = {
    {"PUBLIC", "public"}, {"PRIVATE", "private"}, {"CONFIDENTIAL", "confidential"}};
// vCalendar 1.0, "Status".
constexpr WordRow kStatuses[] = {
    {"NEEDS ACTION", "needs action"}, {"NEEDS_ACTION", "needs action"}, {"SENT", "sent"},
    {"NEEDSACTION", "needs action"},  {"TENTATIVE", "tentative"},       {"CONFIRMED", "confirmed"},
    {"DECLINED", "declined"},         {"COMPLETED", "completed"},       {"DELEGATED", "delegated"},
    {"ACCEPTED", "accepted"},
};
// vCalendar 1.0, "Priority". Higher numbers are lower priorities.
constexpr WordRow kPriorities[] = {{"0", "none given"}, {"1", "highest"}, {"2", "second highest"}};
// vCalendar 1.0, "Attendee".
constexpr WordRow kRoles[] = {{"ATTENDEE", "attendee"},
                              {"ORGANIZER", "organiser"},
                              {"OWNER", "owner"},
                              {"DELEGATE", "delegate"}};
constexpr WordRow kReplies[] = {{"YES", "reply requested"}, {"NO", "no reply requested"}};
constexpr WordRow kExpectations[] = {{"FYI", "for information"},
                                     {"REQUIRE", "presence required"},
                                     {"REQUEST", "presence requested"},
                                     {"IMMEDIATE", "immediate response"}};

template <std::size_t size>
std::string_view Look(const WordRow (&rows)[size], std::string_view value) noexcept {
  for (const WordRow& row : rows) {
    if (STR_EqualNoCase(value, row.value)) return row.words;
  }
  return {};
}

// The words of a known value, any other as in the file.
template <std::size_t size>
ValueText Words(const WordRow (&rows)[size], const PropertyView& property) {
  const std::string value = LINES_Part(property, 0);
  const std::string_view words = Look(rows, value);
  return {{words.empty() ? value : std::string(words)}, LINES_Notes(property)};
}

// What a parameter of an attendee says; "" for a parameter of another name or meaning.
std::string AttendeeWords(std::string_view param) {
  const std::size_t equals = param.find('=');
  if (equals == std::string_view::npos) return {};
  const std::string_view name = param.substr(0, equals);
  const std::string_view value = param.substr(equals + 1);
  if (STR_EqualNoCase(name, "ROLE")) return std::string(Look(kRoles, value));
  if (STR_EqualNoCase(name, "STATUS")) return std::string(Look(kStatuses, value));
  if (STR_EqualNoCase(name, "RSVP")) return std::string(Look(kReplies, value));
  if (STR_EqualNoCase(name, "EXPECT")) return std::string(Look(kExpectations, value));
  return {};
}

}  // namespace

ValueText CALWORDS_Class(const PropertyView& property) { return Words(kClasses, property); }

ValueText CALWORDS_Status(const PropertyView& property) { return Words(kStatuses, property); }

ValueText CALWORDS_Priority(const PropertyView& property) {
  std::string value = LINES_Part(property, 0);
  const std::string_view words = Look(kPriorities, value);
  if (!words.empty()) value += " (" + std::string(words) + ")";
  return {{value}, LINES_Notes(property)};
}

ValueText CALWORDS_Rule(const PropertyView& property) {
  ValueText text;
  const bool there = !property.components.empty() && property.components[0];
  const RuleReading reading(there ? std::string(property.components[0]->raw) : std::string());
  if (!reading.problem().empty()) {
    return {LINES_Plain(property).lines, {"not understood: " + reading.problem()}};
  }
  text.lines.push_back(DISPLAY_Bytes(reading.Words()));
  text.notes.push_back(LINES_Part(property, 0));
  if (!reading.ignored().empty()) {
    text.notes.push_back("ignored: '" + DISPLAY_Bytes(reading.ignored()) + "'");
  }
  return text;
}

ValueText CALWORDS_Alarm(const PropertyView& property) {
  enum : std::size_t { kTime, kSnooze, kRepeat, kText };
  std::string note;
  std::vector<std::string> parts = {LINES_Date(property, kTime, &note)};
  const std::string snooze = LINES_Part(property, kSnooze);
  const std::string repeat = LINES_Part(property, kRepeat);
  if (!snooze.empty()) parts.push_back("again after " + snooze);
  if (!repeat.empty()) parts.push_back("repeated " + repeat + (repeat == "1" ? " time" : " times"));
  parts.push_back(LINES_Part(property, kText));
  ValueText text{{LINES_Join(parts, ", ")}, {}};
  if (!note.empty()) text.notes.push_back(note);
  for (std::string& doubt : WORDS_Doubts(property)) text.notes.push_back(std::move(doubt));
  return text;
}

ValueText CALWORDS_Attendee(const PropertyView& property) {
  PropertyView rest = property;
  rest.params.clear();
  ValueText text{LINES_Plain(property).lines, {}};
  for (const std::string_view param : property.params) {
    std::string words = AttendeeWords(param);
    if (words.empty()) {
      rest.params.push_back(param);
    } else {
      text.notes.push_back(std::move(words));
    }
  }
  for (std::string& note : LINES_Notes(rest)) text.notes.push_back(std::move(note));
  return text;
}

}  // namespace tamu::tool
