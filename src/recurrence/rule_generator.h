// recurrence/rule_generator.h - writes a rule tree as the text of a vCalendar 1.0 recurrence rule,
// in the form that ERG_Parse reads.
//   Units      sizes are bytes with the terminator.
//   Ownership  trees are borrowed; buffers are the caller's.
//   Errors     result codes; see each function.
#ifndef TAMU_RECURRENCE_RULE_GENERATOR_H_
#define TAMU_RECURRENCE_RULE_GENERATOR_H_

#include <cstddef>

#include "core/memory.h"
#include "recurrence/rule.h"
#include "tamu/tamu.h"

namespace tamu {

// What ERG_Generate writes for this tree, in bytes with the terminator; at least 1.
[[nodiscard]] std::size_t ERG_TextSize(const ErgRule& rule) noexcept;

// Writes the rule to `text`, which holds at least ERG_TextSize bytes: no length is checked. Counts
// of 2 are not written, the last day of a month is "1-", weekdays outside 1 to 7 are skipped, and
// so is a nested node that is missing or whose kind its place does not allow. Without a top node
// only the end date is written, behind its blank.
// Returns TAMU_OK, or TAMU_GENERAL_FAILURE when the rule's kind is not 1 to 7 (the empty rule's is
// not); the text is empty then.
[[nodiscard]] TamuResult ERG_Generate(const ErgRule& rule, char* text) noexcept;

// The same into a new text of just that size. `*text` is null unless the result is TAMU_OK.
// Returns what ERG_Generate returns, or TAMU_OUT_OF_MEMORY.
[[nodiscard]] TamuResult ERG_GenerateNew(const ErgRule& rule, MemPtr<char>* text) noexcept;

}  // namespace tamu

#endif  // TAMU_RECURRENCE_RULE_GENERATOR_H_
