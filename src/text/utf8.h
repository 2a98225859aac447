// text/utf8.h - the library's own UTF-8, used only where the platform cannot convert code page
// 65001.
//   Both directions have limits of their own (no surrogates, no checks) that devices have come to
//   rely on; a platform with 65001 never gets here.
//   Units      sizes are bytes for 8-bit and UTF-16 units for wide buffers; a length of -1 means up
//              to the terminator.
//   Ownership  inputs are borrowed, outputs are the caller's buffers.
#ifndef TAMU_TEXT_UTF8_H_
#define TAMU_TEXT_UTF8_H_

#include <cstddef>
#include <cstdint>

namespace tamu {

// Encodes wide text; `out` is filled with zeros first. Units from 0x1000 on take three bytes, so
// that 0x800 to 0xFFF come out as two with a lead byte of 0xE0 and more. A surrogate stops the
// conversion with 0. A sequence is cut at the end of the buffer. Returns the bytes written plus 1,
// or 0 for a missing argument or empty text.
std::size_t UTF8_FromWide(const char16_t* text, std::int32_t length, char* out,
                          std::size_t out_size) noexcept;

// Decodes bytes; `out` is filled with zeros first. Leads from 0xE0 on take three bytes, from 0xC0
// on two, unchecked; a byte of 0x80 to 0xBF in their place ends the conversion. A sequence that the
// end of the text cuts reads zeros. Returns the units written, or 0 for a missing argument.
std::size_t UTF8_ToWide(const char* bytes, std::int32_t length, char16_t* out,
                        std::size_t out_size) noexcept;

}  // namespace tamu

#endif  // TAMU_TEXT_UTF8_H_
