// recurrence/rule_parser.h - reads the text of a vCalendar 1.0 recurrence rule into a tree.
//   The grammar is the published one as this library's devices take it: kinds nest from coarse to
//   fine only, and a tail that does not fit is ignored, but not in minutely rules.
//   Ownership  the tree belongs to the root and is released by ERG_Free.
//   Errors     result codes; a failed parse leaves an empty root and nothing to free.
#ifndef TAMU_RECURRENCE_RULE_PARSER_H_
#define TAMU_RECURRENCE_RULE_PARSER_H_

#include <string_view>

#include "recurrence/rule.h"
#include "tamu/tamu.h"

namespace tamu {

// Reads `text` (8-bit, NUL-terminated; null counts as empty) into `rule`, whose former content is
// overwritten, not freed. Tokens are separated by spaces alone. An empty text gives an empty rule.
// An end date at any depth is the root's; longer ones are cut to kErgEndDateLength characters.
// `rest`, when it is not null, receives what was not read, from its first token on: the tail that a
// successful parse ignored (characters ignored within a token are not told), or the place of the
// error; a part of `text`.
// Returns TAMU_OK; TAMU_PARSE_ERROR when the first token is no frequency (a text of spaces has
// none), a frequency stands where its kind may not, or a minutely rule is followed by anything but
// one count and one end date; TAMU_OUT_OF_MEMORY.
[[nodiscard]] TamuResult ERG_Parse(const char* text, ErgRule* rule,
                                   std::string_view* rest = nullptr) noexcept;

}  // namespace tamu

#endif  // TAMU_RECURRENCE_RULE_PARSER_H_
