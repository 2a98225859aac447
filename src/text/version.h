// text/version.h - the version test of the object formats.
#ifndef TAMU_TEXT_VERSION_H_
#define TAMU_TEXT_VERSION_H_

namespace tamu {

// The highest version of each format that is read.
inline constexpr double kVcardVersion = 2.1;
inline constexpr double kVcalendarVersion = 1.0;
inline constexpr double kVnoteVersion = 1.1;
inline constexpr double kVmessageVersion = 1.1;

// True when the decimal number that the text begins with (as atof reads it in the "C" locale,
// whatever the locale is) is not 0 and not above `highest`. A text without a number counts as 0.
[[nodiscard]] bool VERSION_IsSupported(const char* text, double highest) noexcept;

}  // namespace tamu

#endif  // TAMU_TEXT_VERSION_H_
