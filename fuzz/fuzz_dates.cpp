// Dates: whatever reads as a date has a text in every form that reads as the same date, in zones
// with and without changes of the clocks.
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "fuzz_check.h"
#include "platform/time.h"
#include "text/date.h"

namespace tamu::fuzz {
namespace {

constexpr const char* kZones[] = {
    "UTC0",
    "CET-1CEST,M3.5.0,M10.5.0/3",
    "EST5EDT,M3.2.0,M11.1.0",
    "LHST-10:30LHDT-11,M10.1.0,M4.1.0",
    "ODD-0:53:28",
    "AAA12BBB0,M3.5.0,M10.5.0",
    "XXX-14",
};

std::string Narrow(const DateText& text) { return {text.view().begin(), text.view().end()}; }

bool HasFourDigits(const DateValue& date) {
  DateFields fields;
  return DATE_ToFields(date, &fields) && fields.year >= 1000;
}

void CheckLocalForms(const DateValue& date) {
  const std::string local = Narrow(DATE_ToText(date, DateForm::kLocal));
  FUZZ_CHECK(local.size() == std::strlen("20031231T235959"));
  FUZZ_CHECK(Narrow(DATE_ToText(date, DateForm::kDate)) == local.substr(0, 8));
  const std::string mail = Narrow(DATE_ToText(date, DateForm::kMail));
  FUZZ_CHECK(mail.size() == std::strlen("Wed, Dec 31 23:59:59 2003"));
  if (!HasFourDigits(date)) return;  // a padded year reads as another one
  FUZZ_CHECK(DATE_FromIso8601(local.c_str()) == date);
  const DateValue by_the_clocks = DATE_FromMailText(mail.c_str());
  FUZZ_CHECK(by_the_clocks.valid);
  FUZZ_CHECK(Narrow(DATE_ToText(by_the_clocks, DateForm::kMail)) == mail);
}

void CheckUtcForm(const DateValue& date) {
  const std::string utc = Narrow(DATE_ToText(date, DateForm::kUtc));
  platform::FILETIME file_time{};
  FUZZ_CHECK(utc.empty() || DATE_ToFileTime(date, &file_time));
  if (utc.empty()) return;
  const DateValue again = DATE_FromIso8601(utc.c_str());
  if (again.valid) FUZZ_CHECK(Narrow(DATE_ToText(again, DateForm::kUtc)) == utc);
}

void CheckDate(const DateValue& date) {
  DateFields fields{1, 2, 3, 4, 5, 6};
  if (!date.valid) {
    FUZZ_CHECK(date == kDateInvalid);
    FUZZ_CHECK(DATE_ToText(date, DateForm::kUtc).empty());
    FUZZ_CHECK(!DATE_ToFields(date, &fields) && fields.year == 1);
    return;
  }
  FUZZ_CHECK(DATE_ToFields(date, &fields));
  FUZZ_CHECK(DATE_FromFields(fields) == date);
  CheckLocalForms(date);
  CheckUtcForm(date);
}

// Any number is a date's days or is refused.
void CheckDays(double days) {
  const DateValue date{days, true};
  DateFields fields;
  if (!DATE_ToFields(date, &fields)) {
    FUZZ_CHECK(DATE_ToText(date, DateForm::kDate).empty());
    return;
  }
  CheckDate(DATE_FromFields(fields));
}

void CheckFileTime(const std::string& bytes) {
  platform::FILETIME utc{};
  std::memcpy(&utc, bytes.data(), std::min(bytes.size(), sizeof utc));
  CheckDate(DATE_FromFileTime(utc));
  platform::SYSTEMTIME time{};
  if (platform::FileTimeToSystemTime(&utc, &time) == 0 || time.wYear > 30827) return;
  platform::FILETIME again{};
  FUZZ_CHECK(platform::SystemTimeToFileTime(&time, &again) != 0);
  FUZZ_CHECK(again.dwHighDateTime <= utc.dwHighDateTime);
}

}  // namespace
}  // namespace tamu::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tamu;
  using namespace tamu::fuzz;
  const NothingLeaks leaks;
  Input input(data, size);
  ::setenv("TZ", kZones[input.Byte() % std::size(kZones)], 1);
  const auto minutes = static_cast<std::int32_t>(input.Byte() << 8 | input.Byte()) - 0x8000;
  const std::string bytes = input.Bytes(sizeof(double));
  const std::string text = UpToNul(input.Rest());

  double days = 0;
  std::memcpy(&days, bytes.data(), std::min(bytes.size(), sizeof days));
  CheckDays(days);
  CheckFileTime(bytes);
  DateValue rfc822;
  if (!DATE_FromRfc822(text.c_str(), &rfc822)) FUZZ_CHECK(rfc822 == DATE_NONE);
  const DateValue iso = DATE_FromIso8601(text.c_str());
  for (const DateValue& date : {rfc822, iso, DATE_FromLegacyText(text.c_str()),
                                DATE_FromMailText(text.c_str()), DATE_AddMinutes(iso, minutes)}) {
    CheckDate(date);
  }
  (void)DATE_MailTextToFileTime(text.c_str());
  return 0;
}
