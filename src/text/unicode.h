// text/unicode.h - characters by the Unicode Character Database, whatever the locale says.
//   The tables (unicode_tables.inc, with their Unicode version) are part of the tree and made by
//   make_unicode_tables.py.
//   Units      char32_t is a code point, text is UTF-16.
//   Errors     none, but for UNICODE_FoldText's std::bad_alloc.
#ifndef TAMU_TEXT_UNICODE_H_
#define TAMU_TEXT_UNICODE_H_

#include <string>
#include <string_view>

namespace tamu {

// Simple case folding (CaseFolding.txt, statuses C and S): one character for one character, so that
// texts which differ only in case become equal and keep their length in UTF-16. The final sigma
// folds to the ordinary one, U+1E9E to U+00DF, which itself stays. The Turkish dotted and dotless
// letters keep apart: U+0130 and U+0131 fold to themselves. What has no folding, surrogates and
// numbers beyond Unicode included, is given back as it is.
[[nodiscard]] char32_t UNICODE_Fold(char32_t code_point) noexcept;

// Every character of the text folded; lone surrogates stay what they are. Throws std::bad_alloc
// when memory runs out.
[[nodiscard]] std::u16string UNICODE_FoldText(std::u16string_view text);

// Whether the character may stand in the title of a note, which is a file's name: letters, digits
// and other numbers, punctuation, symbols, marks and spaces (general categories L, N, P, S, M, Zs).
// Of the format characters those that people see: the joiners U+200C and U+200D, the tags of emoji
// flags, the signs that enclose Arabic and other numbers. Code points that Unicode keeps for emoji
// to come count as what they will be.
// Not printable: controls (tab and line feed, too), line and paragraph separators, marks of writing
// direction and other invisible formats, surrogates, private and unassigned code points.
[[nodiscard]] bool UNICODE_IsPrintable(char32_t code_point) noexcept;

}  // namespace tamu

#endif  // TAMU_TEXT_UNICODE_H_
