// platform/linux/locale_date.cpp - dates as the user's locale writes them.
//   The library never changes the process's locale, so the user's is looked up for the call. "C"
//   writes years of two digits; a locale without conventions is written with four.
#include <locale.h>
#include <wchar.h>

#include <ctime>
#include <string_view>

#include "platform/bstr.h"
#include "platform/com.h"
#include "platform/time.h"

namespace tamu::platform {
namespace {

constexpr std::size_t kMostCharacters = 128;

class UserLocale {
 public:
  UserLocale() noexcept : locale_(::newlocale(LC_ALL_MASK, "", nullptr)) {}
  ~UserLocale() {
    if (locale_ != nullptr) ::freelocale(locale_);
  }
  UserLocale(const UserLocale&) = delete;
  UserLocale& operator=(const UserLocale&) = delete;

  // False for a locale that the system lacks, and for "C" and "POSIX".
  [[nodiscard]] bool HasConventions() const noexcept {
    if (locale_ == nullptr) return false;
    std::tm day{};
    day.tm_mday = 2;
    day.tm_year = 103;
    wchar_t text[kMostCharacters];
    const std::size_t size = ::wcsftime_l(text, kMostCharacters, L"%x", &day, locale_);
    return std::wstring_view(text, size) != L"01/02/03";
  }

  [[nodiscard]] std::size_t Format(wchar_t* text, const wchar_t* format,
                                   const std::tm& time) const noexcept {
    return locale_ != nullptr ? ::wcsftime_l(text, kMostCharacters, format, &time, locale_)
                              : ::wcsftime(text, kMostCharacters, format, &time);
  }

 private:
  locale_t locale_;
};

std::tm BrokenDown(const SYSTEMTIME& time) noexcept {
  std::tm result{};
  result.tm_year = time.wYear - 1900;
  result.tm_mon = time.wMonth - 1;
  result.tm_mday = time.wDay;
  result.tm_wday = time.wDayOfWeek;
  result.tm_hour = time.wHour;
  result.tm_min = time.wMinute;
  result.tm_sec = time.wSecond;
  return result;
}

// Which parts of the date are written.
const wchar_t* FormatFor(double date, const SYSTEMTIME& time, bool conventions) noexcept {
  const bool has_time = time.wHour != 0 || time.wMinute != 0 || time.wSecond != 0;
  const bool has_day = !(date > -1 && date < 1);
  if (!has_day) return conventions ? L"%X" : L"%H:%M:%S";
  if (!has_time) return conventions ? L"%x" : L"%m/%d/%Y";
  return conventions ? L"%x %X" : L"%m/%d/%Y %H:%M:%S";
}

std::int32_t FromDate(double date, std::uint32_t, std::uint32_t, char16_t** text) {
  *text = nullptr;
  SYSTEMTIME time{};
  if (VariantTimeToSystemTime.system_function()(date, &time) == 0) return hr::kInvalidArgument;
  const UserLocale locale;
  wchar_t wide[kMostCharacters];
  const std::size_t size =
      locale.Format(wide, FormatFor(date, time, locale.HasConventions()), BrokenDown(time));
  char16_t units[kMostCharacters];
  for (std::size_t i = 0; i < size; ++i) units[i] = static_cast<char16_t>(wide[i]);
  *text = SysAllocStringLen(units, static_cast<std::uint32_t>(size));
  return *text == nullptr ? hr::kOutOfMemory : hr::kOk;
}

}  // namespace

constinit Service<std::int32_t(double, std::uint32_t, std::uint32_t, char16_t**)> VarBstrFromDate{
    "VarBstrFromDate", &FromDate, hr::kFail};

}  // namespace tamu::platform
