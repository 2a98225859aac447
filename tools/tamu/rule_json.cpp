#include "rule_json.h"

#include <array>
#include <string_view>
#include <vector>

#include "display_text.h"

namespace tamu::tool {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::array<std::string_view, 7> kKinds = {
    "minutely",     "daily",         "weekly",     "monthlyByPosition",
    "monthlyByDay", "yearlyByMonth", "yearlyByDay"};
static_assert(kKinds.size() == kErgKinds.size());

// {"month": 3, "endMarker": false}
template <typename Value>
Json Item(std::string_view name, Value value, std::uint8_t end_marker) {
  Json item;
  item[std::string(name)] = value;
  item["endMarker"] = end_marker != 0;
  return item;
}

Json Times(const ErgTime* time) {
  Json times = Json::array();
  for (; time != nullptr; time = time->next) {
    Json item;
    item["hour"] = time->hour;
    item["minute"] = time->minute;
    item["endMarker"] = time->end_marker != 0;
    times.push_back(std::move(item));
  }
  return times;
}

Json Numbers(const ErgNumber* number, std::string_view name) {
  Json numbers = Json::array();
  for (; number != nullptr; number = number->next) {
    numbers.push_back(Item(name, number->value, number->end_marker));
  }
  return numbers;
}

Json Weekdays(const ErgNumber* number) {
  Json days = Json::array();
  for (; number != nullptr; number = number->next) {
    if (ERG_WeekdayName(number->value).empty()) continue;
    days.push_back(Item("weekday", ERG_WeekdayName(number->value), number->end_marker));
  }
  return days;
}

Json Entries(const ErgWeekdayEntry* entry) {
  Json entries = Json::array();
  for (; entry != nullptr; entry = entry->next) {
    Json item = Item("weekday", ERG_WeekdayName(entry->weekday), entry->end_marker);
    item["times"] = Times(entry->times);
    entries.push_back(std::move(item));
  }
  return entries;
}

Json Groups(const ErgPositionGroup* group) {
  Json groups = Json::array();
  for (; group != nullptr; group = group->next) {
    Json item;
    item["occurrences"] = Numbers(&group->occurrence, "occurrence");
    item["weekdays"] = Weekdays(&group->weekday);
    item["times"] = Times(group->times);
    groups.push_back(std::move(item));
  }
  return groups;
}

Json ItemsOf(const ErgView& view) {
  switch (view.kind) {
    case kErgDaily:
      return Times(view.times);
    case kErgWeekly:
      return Entries(view.entries);
    case kErgMonthlyByPos:
      return Groups(view.groups);
    case kErgMonthlyByDay:
    case kErgYearlyByDay:
      return Numbers(view.numbers, "day");
    case kErgYearlyByMonth:
      return Numbers(view.numbers, "month");
    default:
      return Json::array();
  }
}

}  // namespace

Json RULE_Tree(const ErgRule& rule) {
  std::vector<ErgView> views;
  for (ErgView view = ERG_View(rule.kind, rule.node); view.kind != kErgNone;
       view = ERG_ViewNested(view)) {
    views.push_back(view);
  }
  Json tree;
  // From the innermost outwards.
  for (auto view = views.rbegin(); view != views.rend(); ++view) {
    Json node;
    node["kind"] = kKinds[view->kind - 1];
    node["interval"] = view->interval;
    node["items"] = ItemsOf(*view);
    node["duration"] = view->duration;
    node["nested"] = std::move(tree);
    tree = std::move(node);
  }
  const std::string_view end_date = ERG_EndDate(rule);
  tree["endDate"] = end_date.empty() ? Json(nullptr) : Json(DISPLAY_BytesToUtf8(end_date));
  return tree;
}

Json RULE_Json(const RuleReading& reading) {
  Json json;
  json["words"] = DISPLAY_Bytes(reading.Words());
  json["tree"] = RULE_Tree(reading.rule());
  json["generated"] = DISPLAY_BytesToUtf8(reading.Generated());
  json["ignored"] = DISPLAY_BytesToUtf8(reading.ignored());
  return json;
}

}  // namespace tamu::tool
