// mailstore/html_text.h - the body of an HTML message as plain text.
//   One pass, no document: what stands inside BODY is kept, a few tags break the line, entities are
//   decoded, line breaks of the source vanish together with the indentation behind them.
//   Ownership  the caller's texts; `text_out` is appended to.
//   Errors     none: any text is HTML. When memory runs out nothing is appended.
#ifndef TAMU_MAILSTORE_HTML_TEXT_H_
#define TAMU_MAILSTORE_HTML_TEXT_H_

#include <cstdint>
#include <string>

namespace tamu {

// Appends the plain text of `html`; null is nothing. A tag is what stands between "<" and ">", an
// entity what stands between "&" and ";", whatever that is; left open, they are dropped.
// - Kept: characters while more or fewer tags beginning with BODY than with /BODY have been seen.
// - A line break (CR LF): tags beginning with /DIV, /P or BR in any case, so that a closing PRE
//   breaks too; the ends of table cells and list items do not. Kept on purpose.
// - Line breaks for tags, and entities (html_entities.h), are appended outside of BODY too.
// Always returns 1.
std::int32_t HTML_ToText(const char16_t* html, std::u16string* text_out) noexcept;

}  // namespace tamu

#endif  // TAMU_MAILSTORE_HTML_TEXT_H_
