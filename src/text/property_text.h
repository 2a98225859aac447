// text/property_text.h - property values between their form in a file and wide text.
//   From a file: decode quoted-printable, convert from the character set, remove backslashes. Into
//   a file: the same steps the other way round. Ownership  results replace what `*result` held.
//   Errors     when memory runs out the result is empty, or the property stays as it was.
#ifndef TAMU_TEXT_PROPERTY_TEXT_H_
#define TAMU_TEXT_PROPERTY_TEXT_H_

#include <cstdint>

#include "core/records.h"
#include "platform/bstr.h"

namespace tamu {

// The wide text of component `index`; empty when it is missing. The first component that is
// converted settles the property's code page for the others. In a value that declares no
// quoted-printable, "=0D=0A" still is a line break.
void PROP_GetWide(Property* property, std::uint32_t index, platform::BStr* result) noexcept;

// The wide text of a value whose CHARSET and ENCODING parameters are held as texts of their own
// (either may be null). Backslashes stay.
void TEXT_ToWide(const char* value_text, const char* charset_param_text,
                 const char* encoding_param_text, platform::BStr* result) noexcept;

// Options of PROP_SetWide.
inline constexpr std::uint32_t kAllowQuotedPrintable = 1;  // for fields that can hold line breaks

// Stores wide text as component `index`, adding the parameters that it needs: CHARSET when it is
// not ASCII, and, where `options` allow it, ENCODING=QUOTED-PRINTABLE when a byte of it has to be
// encoded (added once for each such component, on purpose). Does nothing for an empty text.
void PROP_SetWide(const char16_t* wide_value, Property* property, std::uint32_t options,
                  std::uint32_t index) noexcept;

}  // namespace tamu

#endif  // TAMU_TEXT_PROPERTY_TEXT_H_
