// device/ink/ink_encoder.h - plain text as a rich-ink document (".pwi").
//   The documents are laid out as a device lays out notes that are typed: one font, no formatting,
//   a line a paragraph (a device wraps them anew).
//   Errors     std::bad_alloc.
#ifndef TAMU_DEVICE_INK_INK_ENCODER_H_
#define TAMU_DEVICE_INK_INK_ENCODER_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tamu::device {

// The text as a document gives it back: each CR LF, LF or CR, which end a paragraph, becomes CR LF.
// Everything else, controls and lone surrogates included, comes back as it is.
[[nodiscard]] std::u16string INK_CanonicalText(std::u16string_view text);

// The document of a text of any length. A paragraph of more than some 65,500 bytes of code is
// continued in further blocks (kInkContinues): INK_Decode joins them, a device shows paragraphs.
// Blocks have ids of their own as long as these last, for 32,751 paragraphs; in longer texts all
// paragraphs share one, which readers take as the order of the file, and the paragraph list is in
// several blocks when it has to be.
[[nodiscard]] std::vector<std::uint8_t> INK_Encode(std::u16string_view text);

}  // namespace tamu::device

#endif  // TAMU_DEVICE_INK_INK_ENCODER_H_
