// recurrence/rule_tokens.h - the token forms of recurrence rules.
//   What a token is depends on where it stands ("15" is a day or a month), so that a reader asks
//   for one form at a time. Letters are upper case, as vCalendar 1.0 writes them.
//   Units      numbers that do not fit 32 bits stay at the nearest that does.
//   Errors     none: a token has the form or has not.
#ifndef TAMU_RECURRENCE_RULE_TOKENS_H_
#define TAMU_RECURRENCE_RULE_TOKENS_H_

#include <cstdint>
#include <string_view>

#include "recurrence/rule.h"

namespace tamu {

enum class ErgForm : std::uint8_t {
  kNone,        // no token has it
  kFrequency,   // "MP1": a prefix, then digits; without them the interval is 0
  kTime,        // "0900", "0900$"; a fifth character of another kind is ignored
  kWeekday,     // "MO", "MO$"; further characters are ignored
  kOccurrence,  // "1+", "2-", "5+$"
  kDay,         // "15", "1-", "2-$", "LD"; other characters behind the digits are ignored
  kMonth,       // "6", "6$": 1 to 12 in at most 4 digits; characters behind them are ignored
  kYearDay,     // "100", "100$": 1 to 366 in at most 6 digits; characters behind them are ignored
  kDuration,    // "#10"; the number is read as atoi reads it
  kEndDate,     // at least 15 characters, the ninth of them "T"
};

// What a token says; fields that its form does not have are 0.
struct ErgTokenValue {
  ErgKind kind = kErgNone;      // of a frequency
  std::int32_t number = 0;      // interval, hour, weekday, occurrence, day, month, count
  std::int32_t minute = 0;      // of a time
  std::uint8_t end_marker = 0;  // 1 when "$" stands directly behind the item
};

// True, and `*value` filled, when the token has the form.
[[nodiscard]] bool TOKEN_Read(ErgForm form, std::string_view token, ErgTokenValue* value) noexcept;

// Takes the next token off the front of `*text`: what stands between spaces. "" at the end.
[[nodiscard]] std::string_view TOKEN_Next(std::string_view* text) noexcept;

}  // namespace tamu

#endif  // TAMU_RECURRENCE_RULE_TOKENS_H_
