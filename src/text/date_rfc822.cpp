// text/date_rfc822.cpp - reading the dates of mail headers.
#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "text/date.h"
#include "text/date_names.h"
#include "text/number_scan.h"

namespace tamu {
namespace {

// What a zone says: the hours' sign decides about the minutes too.
struct ZoneOffset {
  std::int32_t hours = 0;
  std::int32_t minutes = 0;
};

struct NamedZone {
  std::string_view name;
  std::int32_t hours;
};
// RFC 822 section 5.1, with the signs it prints for the one-letter zones.
constexpr NamedZone kZones[] = {
    {"UT", 0},   {"GMT", 0},  {"Z", 0},    {"EST", -5}, {"EDT", -4}, {"CST", -6}, {"CDT", -5},
    {"MST", -7}, {"MDT", -6}, {"PST", -8}, {"PDT", -7}, {"A", -1},   {"B", -2},   {"C", -3},
    {"D", -4},   {"E", -5},   {"F", -6},   {"G", -7},   {"H", -8},   {"I", -9},   {"K", -10},
    {"L", -11},  {"M", -12},  {"N", 1},    {"O", 2},    {"P", 3},    {"Q", 4},    {"R", 5},
    {"S", 6},    {"T", 7},    {"U", 8},    {"V", 9},    {"W", 10},   {"X", 11},   {"Y", 12},
};

constexpr std::size_t kNumericZoneLength = 5;  // "+0100"

std::optional<ZoneOffset> FindZone(std::string_view token) noexcept {
  for (const NamedZone& zone : kZones) {
    if (zone.name == token) return ZoneOffset{zone.hours, 0};
  }
  if (token.size() == 1) return ZoneOffset{};
  if (token.size() != kNumericZoneLength) return std::nullopt;
  const std::int32_t sign = token[0] == '-' ? -1 : 1;
  return ZoneOffset{sign * STR_ToNumber(token.substr(1, 2)),
                    sign * STR_ToNumber(token.substr(3, 2))};
}

// The local time of a time in a zone. A zone with hours of 0 counts as west of Greenwich, whatever
// its sign: kept on purpose.
DateValue FromZone(const DateValue& date, const ZoneOffset& zone) noexcept {
  DateValue utc = date;
  if (zone.hours != 0 || zone.minutes != 0) {
    const std::int32_t span = std::abs(zone.hours) * 60 + std::abs(zone.minutes);
    utc = DATE_AddMinutes(date, zone.hours > 0 ? -span : span);
  }
  DateFields fields;
  return DATE_ToFields(utc, &fields) ? DATE_FromUtc(fields) : kDateInvalid;
}

// A number of digits only, within limits.
bool ReadNumber(std::string_view token, std::int32_t least, std::int32_t most,
                std::int32_t* number) noexcept {
  if (!STR_IsNumber(token)) return false;
  *number = STR_ToNumber(token);
  return *number >= least && *number <= most;
}

bool ReadYear(std::string_view token, std::int32_t* year) noexcept {
  if (!ReadNumber(token, 0, INT32_MAX, year)) return false;
  if (token.size() == 2) *year += *year < 80 ? 2000 : 1900;
  return true;
}

// What the next token is.
enum class State : std::uint8_t {
  kDayName,
  kDay,
  kMonth,
  kYear,
  kHour,
  kMinute,
  kSecond,
  kZone,
  kDone,
};

class Parser {
 public:
  explicit Parser(std::string_view text) noexcept : rest_(text) { SkipSpaces(); }

  bool Run() noexcept {
    while (!rest_.empty() && state_ != State::kDone) {
      if (!Take(NextToken())) return false;
    }
    return state_ == State::kZone || state_ == State::kDone;
  }

  [[nodiscard]] DateValue Result() const noexcept {
    const DateValue written = DATE_FromFields(fields_);
    return state_ == State::kDone ? FromZone(written, zone_) : written;
  }

 private:
  void SkipSpaces() noexcept {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size()));
  }

  // Up to the separator, which is consumed, as are the spaces behind it.
  std::string_view NextToken() noexcept {
    const bool in_time = state_ == State::kHour || state_ == State::kMinute;
    const std::string_view token = rest_.substr(0, rest_.find(in_time ? ':' : ' '));
    rest_.remove_prefix(std::min(token.size() + 1, rest_.size()));
    SkipSpaces();
    return token;
  }

  bool Take(std::string_view token) noexcept {
    switch (state_) {
      case State::kDayName:
        state_ = State::kDay;
        // A day in the name's place is looked at, and asked for once more: kept on purpose.
        return token.find(',') != std::string_view::npos || ReadNumber(token, 1, 31, &fields_.day);
      case State::kDay:
        state_ = State::kMonth;
        return ReadNumber(token, 1, 31, &fields_.day);
      case State::kMonth:
        state_ = State::kYear;
        fields_.month = MonthOfName(token);
        return fields_.month != 0;
      case State::kYear:
        state_ = State::kHour;
        return ReadYear(token, &fields_.year);
      case State::kHour:
        state_ = State::kMinute;
        return ReadNumber(token, 0, 23, &fields_.hour);
      case State::kMinute:
        state_ = State::kSecond;
        return ReadNumber(token, 0, 59, &fields_.minute);
      case State::kSecond:
        state_ = State::kZone;
        return ReadNumber(token, 0, 59, &fields_.second);
      case State::kZone:
        return TakeZone(token);
      case State::kDone:
        break;
    }
    return true;
  }

  bool TakeZone(std::string_view token) noexcept {
    const std::optional<ZoneOffset> zone = FindZone(token);
    if (!zone) return false;
    zone_ = *zone;
    state_ = State::kDone;
    return true;
  }

  std::string_view rest_;
  State state_ = State::kDayName;
  DateFields fields_;
  ZoneOffset zone_;
};

}  // namespace

bool DATE_FromRfc822(const char* text, DateValue* result) noexcept {
  *result = DATE_NONE;
  if (text == nullptr) return false;
  Parser parser(text);
  if (!parser.Run()) return false;
  *result = parser.Result();
  return true;
}

}  // namespace tamu
