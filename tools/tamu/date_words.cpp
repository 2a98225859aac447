#include "date_words.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

#include "platform/time.h"
#include "text/date.h"
#include "text/date_names.h"

namespace tamu::tool {
namespace {

constexpr std::size_t kDateLength = 8;  // "20031231"
constexpr std::size_t kTimePlace = 8;
constexpr std::size_t kLocalLength = 15;  // "20031231T235959"
constexpr std::size_t kUtcLength = 16;    // "20031231T235959Z"

bool IsDigit(char character) noexcept { return character >= '0' && character <= '9'; }

std::string_view Trim(std::string_view text) noexcept {
  const std::size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t") + 1 - begin);
}

// "2003-12-31T..." as "20031231T...", blanks around it left out.
std::string Compact(std::string_view text) {
  constexpr std::size_t kExtendedDate = 10, kFirstDash = 4, kSecondDash = 7;
  std::string compact(Trim(text));
  if (compact.size() >= kExtendedDate && compact[kFirstDash] == '-' &&
      compact[kSecondDash] == '-') {
    compact.erase(kSecondDash, 1);
    compact.erase(kFirstDash, 1);
  }
  return compact;
}

// The text begins with digits, and "T" and digits, for so many characters.
bool HasShape(std::string_view text, std::size_t length) noexcept {
  if (text.size() < length) return false;
  for (std::size_t i = 0; i < length; ++i) {
    if (i == kTimePlace ? text[i] != 'T' : !IsDigit(text[i])) return false;
  }
  return true;
}

std::optional<DateFields> FieldsOf(const DateValue& date) noexcept {
  DateFields fields;
  if (DATE_IsNone(date) || !DATE_ToFields(date, &fields)) return std::nullopt;
  return fields;
}

// A zone ends the text: a name, "+0100".
bool EndsInZone(std::string_view text) noexcept {
  const std::string_view trimmed = Trim(text);
  const std::size_t blank = trimmed.find_last_of(' ');
  const std::string_view last =
      blank == std::string_view::npos ? std::string_view() : trimmed.substr(blank + 1);
  if (last.empty()) return false;
  const bool letters = std::all_of(last.begin(), last.end(), [](char character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
  });
  return letters || last.front() == '+' || last.front() == '-';
}

std::optional<DateFields> UtcOf(const platform::FILETIME& time) noexcept {
  platform::SYSTEMTIME utc{};
  if (platform::FileTimeToSystemTime(&time, &utc) == 0) return std::nullopt;
  return DateFields{utc.wYear, utc.wMonth, utc.wDay, utc.wHour, utc.wMinute, utc.wSecond};
}

// The instant of a local time; none for an hour that the clocks repeat, which has two.
std::optional<DateFields> InstantOf(const DateValue& local) noexcept {
  constexpr std::uint64_t kHour = 36000000000U;
  platform::FILETIME first{};
  if (!DATE_ToFileTime(local, &first)) return std::nullopt;
  const std::uint64_t later =
      ((std::uint64_t{first.dwHighDateTime} << 32) | first.dwLowDateTime) + kHour;
  const platform::FILETIME second{static_cast<std::uint32_t>(later),
                                  static_cast<std::uint32_t>(later >> 32)};
  if (DATE_FromFileTime(second) == local) return std::nullopt;
  return UtcOf(first);
}

}  // namespace

std::optional<DateReading> DATE_ReadIso(std::string_view text) {
  const std::optional<DateFields> local = FieldsOf(DATE_FromIso8601(std::string(text).c_str()));
  if (!local) return std::nullopt;
  DateReading date;
  date.local = *local;
  const std::string compact = Compact(text);
  date.has_time = compact.size() > kDateLength;
  const bool to_the_second = HasShape(compact, kLocalLength);
  if (to_the_second && compact.size() >= kUtcLength && compact[kLocalLength] == 'Z') {
    date.utc = FieldsOf(DATE_FromIso8601(compact.substr(0, kLocalLength).c_str()));
  }
  date.plain = (compact.size() == kDateLength && HasShape(compact, kDateLength)) ||
               (compact.size() == kLocalLength && to_the_second);
  return date;
}

std::optional<DateReading> DATE_ReadMail(std::string_view text) {
  const DateValue value = DATE_FromMailText(std::string(text).c_str());
  const std::optional<DateFields> local = FieldsOf(value);
  if (!local) return std::nullopt;
  DateReading date;
  date.local = *local;
  if (EndsInZone(text)) date.utc = InstantOf(value);
  return date;
}

std::string DATE_Day(const DateFields& fields) {
  const std::chrono::year_month_day date(std::chrono::year(fields.year),
                                         std::chrono::month(static_cast<unsigned>(fields.month)),
                                         std::chrono::day(static_cast<unsigned>(fields.day)));
  const unsigned weekday = std::chrono::weekday(std::chrono::sys_days(date)).c_encoding();
  std::string text(kDayNames[weekday]);
  text += " " + std::to_string(fields.day) + " ";
  text += kMonthNames[fields.month - 1];
  return text + " " + std::to_string(fields.year);
}

std::string DATE_Time(const DateFields& fields) {
  std::array<char, 16> text;
  std::snprintf(text.data(), text.size(), "%02d:%02d", fields.hour, fields.minute);
  std::string time = text.data();
  if (fields.second != 0) {
    std::snprintf(text.data(), text.size(), ":%02d", fields.second);
    time += text.data();
  }
  return time;
}

std::string DATE_Words(const DateReading& date) {
  return date.has_time ? DATE_Day(date.local) + " " + DATE_Time(date.local) : DATE_Day(date.local);
}

std::string DATE_Iso(const DateFields& fields, bool has_time, std::string_view zone) {
  std::array<char, 48> text;
  std::snprintf(text.data(), text.size(), "%04d-%02d-%02d", fields.year, fields.month, fields.day);
  std::string iso = text.data();
  if (!has_time) return iso;
  std::snprintf(text.data(), text.size(), "T%02d:%02d:%02d", fields.hour, fields.minute,
                fields.second);
  return iso + text.data() + std::string(zone);
}

}  // namespace tamu::tool
