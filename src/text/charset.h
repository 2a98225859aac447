// text/charset.h - character set names and the code pages that text is read and written with.
//   The three code pages below are settled on their first use and kept as long as the library is
//   loaded. Ownership  names are static.
#ifndef TAMU_TEXT_CHARSET_H_
#define TAMU_TEXT_CHARSET_H_

#include <cstdint>
#include <string_view>

#include "platform/bstr.h"

namespace tamu {

inline constexpr std::uint32_t kCodePageWindows1252 = 1252;
inline constexpr std::uint32_t kCodePageUtf8 = 65001;

// The code page of a character set name, without regard to case; 0 when it is unknown. The name is
// taken whole, quotes included.
[[nodiscard]] std::uint32_t CHARSET_FromName(std::string_view name) noexcept;

// The name that text in a code page is announced by, or null.
[[nodiscard]] const char* CHARSET_ToName(std::uint32_t code_page) noexcept;

// The system locale's ANSI code page, 0 when the system does not say.
[[nodiscard]] std::uint32_t CHARSET_GetNativeCodePage() noexcept;

// The code page of values that name no (known) character set: `DefaultInputCharset` of the
// configuration, 1252 when that is empty, the native one when it is "NATIVE" or, after a log line,
// unknown.
[[nodiscard]] std::uint32_t CHARSET_GetInputCodePage() noexcept;

// The code page that text which is not ASCII is written in: `DefaultOutputCharset`, with the same
// rules but 65001 (UTF-8) when it is empty.
[[nodiscard]] std::uint32_t CHARSET_GetOutputCodePage() noexcept;

// The name of the output code page; null for 1252, which is never announced, and for one without a
// name.
[[nodiscard]] const char* CHARSET_GetOutputName() noexcept;

// Replaces `*result` by the conversion of NUL-terminated bytes. A code page that the platform does
// not have is read as the ANSI one, except 65001, for which there is UTF8_ToWide. Left empty when
// memory runs out.
void CHARSET_ToWide(std::uint32_t code_page, const char* bytes, platform::BStr* result) noexcept;

// Forgets the settled code pages. For tests: a running library never does.
void CHARSET_Reset() noexcept;

}  // namespace tamu

#endif  // TAMU_TEXT_CHARSET_H_
