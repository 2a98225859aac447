// text/date.cpp - writing dates, and dates in properties.
#include "text/date.h"

#include <charconv>
#include <utility>

#include "core/log.h"
#include "core/memory.h"
#include "platform/code_pages.h"
#include "text/date_names.h"
#include "text/property.h"

namespace tamu {
namespace {

void Append(DateText* text, std::string_view more) noexcept {
  for (const char character : more) text->Append(character);
}

// A number of at least `width` characters.
void AppendNumber(DateText* text, std::uint32_t number, std::size_t width, char padding) noexcept {
  std::array<char, 10> digits{};
  const char* const end = std::to_chars(digits.begin(), digits.end(), number).ptr;
  const auto length = static_cast<std::size_t>(end - digits.data());
  for (std::size_t i = length; i < width; ++i) text->Append(padding);
  Append(text, {digits.data(), length});
}

void AppendYear(DateText* text, std::uint16_t year) noexcept { AppendNumber(text, year, 4, ' '); }
void AppendTwo(DateText* text, std::uint16_t number) noexcept {
  AppendNumber(text, number, 2, '0');
}

void AppendIsoDate(DateText* text, const platform::SYSTEMTIME& time) noexcept {
  AppendYear(text, time.wYear);
  AppendTwo(text, time.wMonth);
  AppendTwo(text, time.wDay);
}

void AppendIsoTime(DateText* text, const platform::SYSTEMTIME& time) noexcept {
  AppendIsoDate(text, time);
  text->Append('T');
  AppendTwo(text, time.wHour);
  AppendTwo(text, time.wMinute);
  AppendTwo(text, time.wSecond);
}

void AppendMail(DateText* text, const platform::SYSTEMTIME& time) noexcept {
  Append(text, kDayNames[time.wDayOfWeek]);
  Append(text, ", ");
  Append(text, kMonthNames[time.wMonth - 1]);
  text->Append(' ');
  AppendTwo(text, time.wDay);
  text->Append(' ');
  AppendTwo(text, time.wHour);
  text->Append(':');
  AppendTwo(text, time.wMinute);
  text->Append(':');
  AppendTwo(text, time.wSecond);
  text->Append(' ');
  AppendYear(text, time.wYear);
}

// The local time as the clocks show it: another one only in an hour that they leave out.
platform::SYSTEMTIME ByTheClocks(const DateValue& date, const platform::SYSTEMTIME& time) noexcept {
  platform::FILETIME utc{};
  platform::SYSTEMTIME shown{};
  if (!DATE_ToFileTime(date, &utc) || !DATE_ToSystemTime(DATE_FromFileTime(utc), &shown)) {
    return time;  // the calendar of the clocks begins later than the dates do
  }
  return shown;
}

bool ToUtc(const DateValue& date, platform::SYSTEMTIME* time) noexcept {
  platform::FILETIME utc{};
  return DATE_ToFileTime(date, &utc) && platform::FileTimeToSystemTime(&utc, time) != 0 &&
         DATE_FromSystemTime(*time).valid;
}

bool Write(const DateValue& date, DateForm form, DateText* text) noexcept {
  platform::SYSTEMTIME time{};
  if (!DATE_ToSystemTime(date, &time)) return false;
  switch (form) {
    case DateForm::kMail:
      AppendMail(text, ByTheClocks(date, time));
      return true;
    case DateForm::kDate:
      AppendIsoDate(text, time);
      return true;
    case DateForm::kLocal:
      AppendIsoTime(text, time);
      return true;
    case DateForm::kUtc:
      if (!ToUtc(date, &time)) return false;
      AppendIsoTime(text, time);
      text->Append('Z');
      return true;
  }
  return false;
}

// The text in the default ANSI code page; null when it cannot be had.
MemPtr<char> ToBytes(const DateText& text) noexcept {
  const std::int32_t size = platform::WideCharToMultiByte(platform::kCpAcp, 0, text.c_str(), -1,
                                                          nullptr, 0, nullptr, nullptr);
  if (size <= 0) return nullptr;
  MemPtr<char> bytes(static_cast<char*>(MEM_Alloc(static_cast<std::size_t>(size))));
  if (bytes && platform::WideCharToMultiByte(platform::kCpAcp, 0, text.c_str(), -1, bytes.get(),
                                             size, nullptr, nullptr) == 0) {
    return nullptr;
  }
  return bytes;
}

}  // namespace

DateText DATE_ToText(const DateValue& date, DateForm form) noexcept {
  DateText text;
  if (!Write(date, form, &text)) LOG_Error("TAMU:  Error converting date");
  return text;
}

void DATE_ToProperty(const DateValue& date, Property* property, DateForm form) noexcept {
  if (property == nullptr) return;
  MemPtr<char> bytes = ToBytes(DATE_ToText(date, form));
  if (bytes) PROP_SetValue(property, std::move(bytes), 0);
}

DateValue DATE_FromProperty(const Property* property) noexcept {
  return DATE_FromIso8601(PROP_GetValue(property, 0));
}

}  // namespace tamu
