// recurrence/rule_words.h - a recurrence rule in English, for people.
//   "every 2 weeks on Monday and Friday, 10 times"; "every month on the 2nd Tuesday until 31
//   December 2003"; "every year in March and July on day 1, forever".
//   Units      UTF-8, as far as the rule's own text is; an end date that is no date is quoted as it
//              stands, control characters and all.
//   Errors     an empty text when memory runs out; nothing is thrown.
#ifndef TAMU_RECURRENCE_RULE_WORDS_H_
#define TAMU_RECURRENCE_RULE_WORDS_H_

#include <string>

#include "recurrence/rule.h"

namespace tamu {

// Describes the rule. What the tree says is said, and nothing is added to it: intervals below 1 are
// named as they are, and end markers are. A count of 2 is the one that texts leave out: beside an
// end date, and in nested rules but minutely ones, it is not mentioned. A month's days or positions
// nested in a yearly rule are drawn together with it when they mean one month each year.
[[nodiscard]] std::string ERG_Describe(const ErgRule& rule) noexcept;

}  // namespace tamu

#endif  // TAMU_RECURRENCE_RULE_WORDS_H_
