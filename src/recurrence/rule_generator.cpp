#include "recurrence/rule_generator.h"

#include <charconv>
#include <cstring>

namespace tamu {
namespace {

// Appends to a text, or only counts when there is none.
class TextSink {
 public:
  explicit TextSink(char* out) noexcept : out_(out) {}

  void Put(std::string_view piece) noexcept {
    if (out_ != nullptr && !piece.empty()) std::memcpy(out_ + length_, piece.data(), piece.size());
    length_ += piece.size();
  }
  // As printf's "%d", or its "%02d" with `width` 2.
  void PutNumber(std::int64_t number, std::size_t width = 1) noexcept {
    char digits[24];
    const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, number);
    const auto length = static_cast<std::size_t>(result.ptr - digits);
    if (length < width) Put("0");
    Put({digits, length});
  }
  void PutMarker(std::uint8_t end_marker) noexcept {
    if (end_marker != 0) Put("$");
  }
  // Terminates; returns the size with the terminator.
  std::size_t Finish() noexcept {
    if (out_ != nullptr) out_[length_] = '\0';
    return length_ + 1;
  }

 private:
  char* out_;
  std::size_t length_ = 0;
};

std::int64_t Absolute(std::int32_t value) noexcept {
  return value < 0 ? -static_cast<std::int64_t>(value) : value;
}

void PutTimes(const ErgTime* time, TextSink* sink) noexcept {
  for (; time != nullptr; time = time->next) {
    sink->Put(" ");
    sink->PutNumber(time->hour, 2);
    sink->PutNumber(time->minute, 2);
    sink->PutMarker(time->end_marker);
  }
}

// A weekday without a name is left out: that is how a group without weekdays writes none.
void PutWeekday(std::int32_t weekday, std::uint8_t end_marker, TextSink* sink) noexcept {
  const std::string_view name = ERG_WeekdayName(weekday);
  if (name.empty()) return;
  sink->Put(" ");
  sink->Put(name);
  sink->PutMarker(end_marker);
}

void PutWeekdays(const ErgNumber* weekday, TextSink* sink) noexcept {
  for (; weekday != nullptr; weekday = weekday->next) {
    PutWeekday(weekday->value, weekday->end_marker, sink);
  }
}

void PutEntries(const ErgWeekdayEntry* entry, TextSink* sink) noexcept {
  for (; entry != nullptr; entry = entry->next) {
    PutWeekday(entry->weekday, entry->end_marker, sink);
    PutWeekdays(entry->more_weekdays, sink);
    PutTimes(entry->times, sink);
  }
}

void PutGroups(const ErgPositionGroup* group, TextSink* sink) noexcept {
  for (; group != nullptr; group = group->next) {
    for (const ErgNumber* place = &group->occurrence; place != nullptr; place = place->next) {
      sink->Put(" ");
      sink->PutNumber(Absolute(place->value));
      sink->Put(place->value < 0 ? "-" : "+");
      sink->PutMarker(place->end_marker);
    }
    PutWeekdays(&group->weekday, sink);
    PutTimes(group->times, sink);
  }
}

// Days of the month alone have their sign behind them.
void PutNumbers(const ErgView& view, TextSink* sink) noexcept {
  const bool sign_behind = view.kind == kErgMonthlyByDay;
  for (const ErgNumber* number = view.numbers; number != nullptr; number = number->next) {
    sink->Put(" ");
    sink->PutNumber(sign_behind ? Absolute(number->value) : number->value);
    if (sign_behind && number->value < 0) sink->Put("-");
    sink->PutMarker(number->end_marker);
  }
}

void PutNode(const ErgView& view, TextSink* sink) noexcept {
  sink->Put(kErgKinds[view.kind - 1].prefix);
  sink->PutNumber(view.interval);
  PutTimes(view.times, sink);
  PutEntries(view.entries, sink);
  PutGroups(view.groups, sink);
  PutNumbers(view, sink);
  if (view.duration == kErgDefaultDuration) return;
  sink->Put(" #");
  sink->PutNumber(view.duration);
}

TamuResult PutRule(const ErgRule& rule, TextSink* sink) noexcept {
  if (rule.kind < 1 || rule.kind > kErgKinds.size()) return TAMU_GENERAL_FAILURE;
  std::string_view blank;
  for (ErgView view = ERG_View(rule.kind, rule.node); view.kind != kErgNone;
       view = ERG_ViewNested(view)) {
    sink->Put(blank);
    PutNode(view, sink);
    blank = " ";
  }
  const std::string_view end_date = ERG_EndDate(rule);
  if (end_date.empty()) return TAMU_OK;
  sink->Put(" ");
  sink->Put(end_date);
  return TAMU_OK;
}

}  // namespace

std::size_t ERG_TextSize(const ErgRule& rule) noexcept {
  TextSink counter(nullptr);
  static_cast<void>(PutRule(rule, &counter));
  return counter.Finish();
}

TamuResult ERG_Generate(const ErgRule& rule, char* text) noexcept {
  TextSink sink(text);
  const TamuResult result = PutRule(rule, &sink);
  sink.Finish();
  return result;
}

TamuResult ERG_GenerateNew(const ErgRule& rule, MemPtr<char>* text) noexcept {
  text->reset(static_cast<char*>(MEM_Alloc(ERG_TextSize(rule))));
  if (*text == nullptr) return TAMU_OUT_OF_MEMORY;
  const TamuResult result = ERG_Generate(rule, text->get());
  if (result != TAMU_OK) text->reset();
  return result;
}

}  // namespace tamu
