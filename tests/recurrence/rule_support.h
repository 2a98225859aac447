// recurrence/rule_support.h - rules in tests: parsed, built by hand, and shown as one line of text.
#ifndef TAMU_TESTS_RECURRENCE_RULE_SUPPORT_H_
#define TAMU_TESTS_RECURRENCE_RULE_SUPPORT_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "core/memory.h"
#include "recurrence/rule.h"
#include "recurrence/rule_generator.h"
#include "recurrence/rule_parser.h"

namespace tamu::testing {

// A rule that frees its tree, parsed from a text or built by hand.
class OwnedRule {
 public:
  OwnedRule() = default;
  explicit OwnedRule(const std::string& text) : result_(ERG_Parse(text.c_str(), &rule_, &rest_)) {
    // The view is into the caller's text.
    rest_copy_ = rest_;
  }
  ~OwnedRule() { ERG_Free(&rule_); }
  OwnedRule(const OwnedRule&) = delete;
  OwnedRule& operator=(const OwnedRule&) = delete;

  [[nodiscard]] TamuResult result() const { return result_; }
  // What the parse left unread.
  [[nodiscard]] const std::string& rest() const { return rest_copy_; }
  ErgRule& operator*() { return rule_; }
  ErgRule* operator->() { return &rule_; }

  template <typename Node>
  [[nodiscard]] Node* As(ErgKind kind) {
    EXPECT_EQ(rule_.kind, kind);
    return static_cast<Node*>(rule_.node);
  }
  // Makes a top node; its duration is the default.
  template <typename Node>
  Node* Make(ErgKind kind, std::int32_t interval) {
    Node* const node = MEM_New<Node>().release();
    node->interval = interval;
    node->duration = kErgDefaultDuration;
    rule_.kind = kind;
    rule_.node = node;
    return node;
  }

 private:
  ErgRule rule_ = {};
  std::string_view rest_;
  std::string rest_copy_;
  TamuResult result_ = TAMU_OK;
};

// A list of numbers, its items owned by whatever they are hung under.
inline ErgNumber* NumberList(std::initializer_list<std::int32_t> values) {
  ErgNumber* head = nullptr;
  ErgNumber** end = &head;
  for (const std::int32_t value : values) {
    *end = MEM_New<ErgNumber>().release();
    (*end)->value = value;
    end = &(*end)->next;
  }
  return head;
}

// The generated text, in a buffer without a byte to spare.
inline std::string GeneratedText(const ErgRule& rule, TamuResult expected = TAMU_OK) {
  std::vector<char> buffer(ERG_TextSize(rule), '#');
  EXPECT_EQ(ERG_Generate(rule, buffer.data()), expected);
  EXPECT_EQ(buffer.back(), '\0');
  EXPECT_EQ(std::count(buffer.begin(), buffer.end(), '\0'), 1);
  return buffer.data();
}

namespace detail {

inline std::string Marker(std::uint8_t end_marker) { return end_marker == 1 ? "$" : ""; }

inline std::string TimesText(const ErgTime* time, const std::string& before) {
  std::string text;
  for (; time != nullptr; time = time->next) {
    text += text.empty() ? before : " ";
    text += std::to_string(time->hour) + ":" + std::to_string(time->minute);
    text += Marker(time->end_marker);
  }
  return text;
}

inline std::string NumbersText(const ErgNumber* number, const std::string& before) {
  std::string text;
  for (; number != nullptr; number = number->next) {
    text += text.empty() ? before : " ";
    text += std::to_string(number->value) + Marker(number->end_marker);
  }
  return text;
}

inline std::string NodeText(const ErgView& view) {
  static constexpr const char* kNames[] = {"minutely",       "daily",          "weekly",
                                           "monthly-by-pos", "monthly-by-day", "yearly-by-month",
                                           "yearly-by-day"};
  std::string text = kNames[view.kind - 1];
  text += " every " + std::to_string(view.interval);
  text += TimesText(view.times, " at ");
  for (const ErgWeekdayEntry* entry = view.entries; entry != nullptr; entry = entry->next) {
    text += " [" + std::to_string(entry->weekday) + Marker(entry->end_marker);
    text += NumbersText(entry->more_weekdays, " + ") + TimesText(entry->times, " at ") + "]";
  }
  for (const ErgPositionGroup* group = view.groups; group != nullptr; group = group->next) {
    text += " [" + NumbersText(&group->occurrence, "") + NumbersText(&group->weekday, " of ");
    text += TimesText(group->times, " at ") + "]";
  }
  text += NumbersText(view.numbers, " on ");
  return text + " duration " + std::to_string(view.duration);
}

}  // namespace detail

// The tree in one line: "weekly every 1 [2] [3 at 9:0] duration 10 > minutely every 30 duration 2
// until 20031231T000000". Weekdays are numbers, 1 is Sunday; a group's weekday 0 is none.
inline std::string TreeText(const ErgRule& rule) {
  if (rule.kind == kErgNone) return "none";
  std::string text;
  for (ErgView view = ERG_View(rule.kind, rule.node); view.kind != kErgNone;
       view = ERG_ViewNested(view)) {
    text += (text.empty() ? "" : " > ") + detail::NodeText(view);
  }
  const std::string_view end_date = ERG_EndDate(rule);
  return end_date.empty() ? text : text + " until " + std::string(end_date);
}

}  // namespace tamu::testing

#endif  // TAMU_TESTS_RECURRENCE_RULE_SUPPORT_H_
