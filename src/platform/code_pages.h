// platform/code_pages.h - character conversion between 8-bit code pages and UTF-16, and the
// locale's code page.
//   Units      byte counts for 8-bit text, UTF-16 units for wide text.
//   Ownership  all buffers are the caller's.
//   Errors     0 with the reason in GetLastError; with flags 0 no input text ever fails.
#ifndef TAMU_PLATFORM_CODE_PAGES_H_
#define TAMU_PLATFORM_CODE_PAGES_H_

#include <cstdint>

#include "platform/service.h"

namespace tamu::platform {

inline constexpr std::uint32_t kCpAcp = 0;  // the system's default ANSI code page
inline constexpr std::uint32_t kCpUtf7 = 65000;
inline constexpr std::uint32_t kCpUtf8 = 65001;

inline constexpr std::uint32_t kMbPrecomposed = 0x1;
inline constexpr std::uint32_t kMbErrInvalidChars = 0x8;
inline constexpr std::uint32_t kWcErrInvalidChars = 0x80;
inline constexpr std::uint32_t kWcNoBestFitChars = 0x400;

inline constexpr std::uint32_t kLocaleSystemDefault = 0x0800;
inline constexpr std::uint32_t kLocaleIDefaultAnsiCodePage = 0x1004;

// Nonzero when text can be converted to and from `code_page`; kCpAcp itself is not a valid page.
extern Service<std::int32_t(std::uint32_t code_page)> IsValidCodePage;

// Converts `byte_count` bytes (a negative count: up to and with the terminator) and returns the
// number of units written, without adding a terminator; `unit_count` 0 only measures. Fails, with
// 0, for an unknown page or wrong arguments (87), flags the page does not know (1004), a buffer
// that is too short (122; what fits is written), and, with kMbErrInvalidChars only, malformed input
// (1113). Malformed UTF-8 becomes U+FFFD otherwise.
extern Service<std::int32_t(std::uint32_t code_page, std::uint32_t flags, const char* bytes,
                            std::int32_t byte_count, char16_t* units, std::int32_t unit_count)>
    MultiByteToWideChar;

// The way back. A unit that the page lacks becomes its best fit (none with kWcNoBestFitChars), else
// `default_char` or "?", and sets `*used_default`; both must be null for UTF-7 and UTF-8. Same
// counts and errors as above.
extern Service<std::int32_t(std::uint32_t code_page, std::uint32_t flags, const char16_t* units,
                            std::int32_t unit_count, char* bytes, std::int32_t byte_count,
                            const char* default_char, std::int32_t* used_default)>
    WideCharToMultiByte;

// The text of one locale property in at most `capacity` units with its terminator; returns the
// units written with the terminator, or 0. Known here: kLocaleSystemDefault with
// kLocaleIDefaultAnsiCodePage, a decimal number: the value "AnsiCodePage" (string or number) under
// "Software\Velmora\BTConfig\General" of the registry when it is there, else what LC_ALL, LC_CTYPE
// or LANG (the first that is not empty) name: a UTF-8 locale 65001, "C", "POSIX" and none 1252, any
// other by its charset, or by its language when it names none.
extern Service<std::int32_t(std::uint32_t locale, std::uint32_t property, char16_t* text,
                            std::int32_t capacity)>
    GetLocaleInfoW;

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_CODE_PAGES_H_
