// device/ink/ink_decoder.h - the text of a rich-ink document (".pwi", and ".psw", which is alike),
// or of the plain text that stands in such a file at times.
//   Units      documents are bytes, text is UTF-16 with CR LF between paragraphs.
//   Errors     std::bad_alloc; a document that is damaged gives what can be read of it.
#ifndef TAMU_DEVICE_INK_INK_DECODER_H_
#define TAMU_DEVICE_INK_INK_DECODER_H_

#include <cstdint>
#include <span>
#include <string>

namespace tamu::device {

enum class InkSource {
  kDocument,     // a rich-ink document
  kPlainText,    // text in UTF-16, UTF-8 with its mark, or the device's ANSI code page
  kOtherFormat,  // an RTF or Handheld PC document, which is not read: no text
};

struct InkText {
  std::u16string text;
  InkSource source = InkSource::kDocument;
  bool damaged = false;  // something was cut, missing, contradictory or unknown: text may be wrong
  bool objects = false;  // the document also holds drawings, handwriting or recordings
};

// Paragraphs come in the order of the document's list; when their ids are not unique, or the list
// names others than there are, in the order of the file. A stretch that was drawn on comes as empty
// lines (up to some thousand in a document). When the chain of blocks is broken, paragraphs are
// also looked for by the way they begin, and the longer text of the two is given. Paragraphs that
// INK_Encode continued are joined.
// Plain text loses its byte order mark, zeros at its end, and the 03 byte that fills text to an
// even length.
[[nodiscard]] InkText INK_Decode(std::span<const std::uint8_t> file);

}  // namespace tamu::device

#endif  // TAMU_DEVICE_INK_INK_DECODER_H_
