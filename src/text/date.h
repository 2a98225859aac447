// text/date.h - dates as text: ISO 8601 as calendars write it, the date of a mail header, and the
// library's own mail form.
//   Texts are read the same way in every locale; names of days and months are English and
//   case-sensitive.
//   Ownership  texts are borrowed for the call; a null text reads as an empty one.
//   Errors     text that cannot be read gives DATE_NONE and a log line; text whose shape is right
//   but whose numbers make no date gives an invalid value.
#ifndef TAMU_TEXT_DATE_H_
#define TAMU_TEXT_DATE_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/records.h"
#include "platform/time.h"
#include "text/date_value.h"

namespace tamu {

// Reads "20031231", "20031231T235959", "20031231T235959Z" or the same with dashes in the date
// ("2003-12-31T235959Z"; the time never has colons: of "23:59:59" the hour counts and the rest is
// ignored). Later fields may be missing. Without "Z" the time is taken as it is written; with "Z"
// it is UTC and the value is the local time of that instant. Numbers are read as sscanf reads
// "%4d%2d...": blanks before them are skipped, signs count.
[[nodiscard]] DateValue DATE_FromIso8601(const char* text) noexcept;

// The date of a mail header: RFC 822 with a leading day name, else the library's own form
// ("Wed, Dec 31 23:59:59 2003", with or without the day name).
[[nodiscard]] DateValue DATE_FromMailText(const char* text) noexcept;

// RFC 822 section 5: "Wed, 31 Dec 2003 23:59:59 +0100". The day name with its comma is required but
// not looked at, so are the seconds; years of two digits are 1980 to 2079; without a zone the time
// is taken as it is written, else the value is the local time of that instant. Blanks are spaces
// only; what follows the zone is ignored. One-letter zones have the signs that RFC 822 prints, and
// a numeric zone whose hours are 0 ("+0030") counts as west of Greenwich, both on purpose. False,
// with DATE_NONE, when the text is not of this form; nothing is logged. True with an invalid value
// for a day that the month does not have.
[[nodiscard]] bool DATE_FromRfc822(const char* text, DateValue* result) noexcept;

// The library's own mail form without its day name: "Dec 31 23:59:59 2003", local time.
[[nodiscard]] DateValue DATE_FromLegacyText(const char* text) noexcept;

// The UTC file time of a mail date. Where the text reads as an invalid value it is made of the
// current UTC time, which is then taken as local time too; text that cannot be read gives
// DATE_NONE's. 0 when a date before 1601 has no file time.
[[nodiscard]] platform::FILETIME DATE_MailTextToFileTime(const char* text) noexcept;

enum class DateForm : std::uint8_t {
  kMail,   // "Wed, Dec 31 23:59:59 2003", local time
  kDate,   // "20031231"
  kLocal,  // "20031231T235959"
  kUtc,    // "20031231T225959Z", converted from local time
};

// A date's text, at most 25 characters.
class DateText {
 public:
  static constexpr std::size_t kCapacity = 32;

  [[nodiscard]] const char16_t* c_str() const noexcept { return units_.data(); }
  [[nodiscard]] std::size_t size() const noexcept { return size_; }
  [[nodiscard]] bool empty() const noexcept { return size_ == 0; }
  [[nodiscard]] std::u16string_view view() const noexcept { return {units_.data(), size_}; }

  // Appends one ASCII character; what does not fit is left out.
  void Append(char character) noexcept {
    if (size_ + 1 < kCapacity) units_[size_++] = static_cast<unsigned char>(character);
  }

 private:
  std::array<char16_t, kCapacity> units_{};
  std::size_t size_ = 0;
};

// The date's text. Years below 1000 are padded with blanks. Empty, with a log line, when the date
// is invalid or has no UTC time (years before 1601). In the mail form a local time that the clocks
// leave out is moved forward.
[[nodiscard]] DateText DATE_ToText(const DateValue& date, DateForm form) noexcept;

// Stores the date's text, in the default ANSI code page, as component 0 of the property.
void DATE_ToProperty(const DateValue& date, Property* property, DateForm form) noexcept;

// Component 0 of the property, as it stands in the file, through DATE_FromIso8601; DATE_NONE when
// there is no property, no component or no text.
[[nodiscard]] DateValue DATE_FromProperty(const Property* property) noexcept;

}  // namespace tamu

#endif  // TAMU_TEXT_DATE_H_
