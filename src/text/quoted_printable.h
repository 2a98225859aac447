// text/quoted_printable.h - quoted-printable text of property values (vCard 2.1, after RFC 1521).
//   Soft line breaks are not made here and have been removed before decoding (logical_line.h,
//   property_emitter.h).
//   Units      all sizes are bytes; lengths exclude the terminator, buffer sizes include it.
//   Ownership  inputs are borrowed for the call; outputs are the caller's buffers.
//   Errors     none: malformed input decodes by rule, see QP_Decode.
#ifndef TAMU_TEXT_QUOTED_PRINTABLE_H_
#define TAMU_TEXT_QUOTED_PRINTABLE_H_

#include <cstddef>
#include <string_view>

namespace tamu {

// Encodes `text` into `out` (at most out_size bytes with the terminator; null only measures).
// Spaces and tabs stay, also at the end; every other byte below 33 or above 126 and the characters
// "=:;\" become "=" and two upper-case digits. From the first code that does not fit on nothing is
// written, but all is counted: the result is the whole length.
std::size_t QP_Encode(std::string_view text, char* out, std::size_t out_size) noexcept;

// Decodes `text` into `out` (at most out_size bytes with the terminator; null only measures). Every
// "=" takes the next two characters as hexadecimal digits; one that is none counts as -1 in high *
// 16 + low, modulo 256. An "=" among the last two characters is copied. Returns the decoded length,
// also when it did not fit.
std::size_t QP_Decode(std::string_view text, char* out, std::size_t out_size) noexcept;

}  // namespace tamu

#endif  // TAMU_TEXT_QUOTED_PRINTABLE_H_
