// text/date_iso8601.cpp - reading ISO 8601 dates.
#include <string_view>

#include "core/log.h"
#include "text/date.h"
#include "text/number_scan.h"

namespace tamu {
namespace {

constexpr std::size_t kExtendedLength = 10;  // "2003-12-31"
constexpr std::size_t kFirstDash = 4;

struct IsoFields {
  DateFields date;
  char separator = '\0';
  char zone = '\0';
  int count = 0;  // fields read
};

bool IsExtended(std::string_view text) noexcept {
  return text.size() >= kExtendedLength && text[kFirstDash] == '-';
}

// "%4d%2d%2d%c%2d%2d%2d%c", or with `dashes` "%4d-%2d-%2d%c%2d%2d%2d%c": up to the first field that
// does not read.
IsoFields Scan(const char* text, bool dashes) noexcept {
  TextScan scan(text);
  IsoFields fields;
  DateFields& date = fields.date;
  const auto dash = [&] { return !dashes || scan.Literal('-'); };
  const auto count = [&](bool read) {
    fields.count += read ? 1 : 0;
    return read;
  };
  (void)(count(scan.Number(&date.year, 4)) && dash() && count(scan.Number(&date.month, 2)) &&
         dash() && count(scan.Number(&date.day, 2)) && count(scan.Character(&fields.separator)) &&
         count(scan.Number(&date.hour, 2)) && count(scan.Number(&date.minute, 2)) &&
         count(scan.Number(&date.second, 2)) && count(scan.Character(&fields.zone)));
  return fields;
}

constexpr int kDateFields = 3;
constexpr int kAllFields = 8;

bool IsAccepted(const IsoFields& fields) noexcept {
  if (fields.count < kDateFields) return false;
  if (fields.count > kDateFields && fields.separator != 'T') return false;
  return fields.count < kAllFields || fields.zone == 'Z';
}

}  // namespace

DateValue DATE_FromIso8601(const char* text) noexcept {
  if (text == nullptr || *text == '\0') return DATE_NONE;
  const IsoFields fields = Scan(text, IsExtended(text));
  if (!IsAccepted(fields)) {
    LOG_Error("TAMU:  Error in date '%s' - cannot convert from 8601", text);
    return DATE_NONE;
  }
  return fields.count == kAllFields ? DATE_FromUtc(fields.date) : DATE_FromFields(fields.date);
}

}  // namespace tamu
