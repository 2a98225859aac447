// text/date_mail.cpp - mail dates of either form, and the library's own form.
#include <array>
#include <string_view>

#include "core/log.h"
#include "text/date.h"
#include "text/date_names.h"
#include "text/number_scan.h"
#include "text/tokens.h"

namespace tamu {
namespace {

constexpr std::size_t kMonthLength = 3;
constexpr std::size_t kDayNameLength = 5;  // "Wed, "

// "%3s %d %d:%d:%d %d", whole or not at all.
bool ScanLegacy(const char* text, std::string_view* month, DateFields* fields) noexcept {
  TextScan scan(text);
  return scan.Word(month, kMonthLength) && scan.Number(&fields->day) &&
         scan.Number(&fields->hour) && scan.Literal(':') && scan.Number(&fields->minute) &&
         scan.Literal(':') && scan.Number(&fields->second) && scan.Number(&fields->year);
}

}  // namespace

DateValue DATE_FromLegacyText(const char* text) noexcept {
  if (text == nullptr || *text == '\0') return DATE_NONE;
  std::string_view month;
  DateFields fields;
  if (!ScanLegacy(text, &month, &fields)) {
    LOG_Error("TAMU:  Error in date '%s' - cannot convert legacy Date", text);
    return DATE_NONE;
  }
  fields.month = MonthOfName(month);
  if (fields.month == 0) {
    std::array<char, kMonthLength + 1> month_text{};
    STR_CopyBounded(month_text.data(), month.data(), month.size());
    LOG_Error("TAMU:  Error in date '%s' - Invalid Month part '%s' in legacy Date", text,
              month_text.data());
    return DATE_NONE;
  }
  const DateValue date = DATE_FromFields(fields);
  if (!date.valid) LOG_Error("TAMU:  Error in date '%s' - could not set OLE date/time", text);
  return date;
}

DateValue DATE_FromMailText(const char* text) noexcept {
  DateValue date;
  if (DATE_FromRfc822(text, &date)) return date;
  const std::string_view view = text != nullptr ? text : "";
  const bool has_day_name = view.size() > 3 && view[3] == ',';
  if (!has_day_name) return DATE_FromLegacyText(text);
  return DATE_FromLegacyText(view.substr(std::min(view.size(), kDayNameLength)).data());
}

platform::FILETIME DATE_MailTextToFileTime(const char* text) noexcept {
  platform::SYSTEMTIME time{};
  platform::GetSystemTime(&time);
  // An invalid value leaves the current time where it is.
  (void)DATE_ToSystemTime(DATE_FromMailText(text), &time);
  platform::FILETIME local{};
  platform::FILETIME utc{};
  if (platform::SystemTimeToFileTime(&time, &local) == 0 ||
      platform::LocalFileTimeToFileTime(&local, &utc) == 0) {
    return {};
  }
  return utc;
}

}  // namespace tamu
