// device/pim/restriction.h - the conditions by which collections are searched.
//   A restriction is a chain of `[Property] op value`, op one of = <> < <= > >=, joined by AND and
//   OR, which have no precedence: the chain is evaluated from left to right, and parentheses, at most
//   kMaxDepth deep, change that. Keywords and names are in any case, blanks are free. An empty
//   restriction holds for every item. Beside its properties an item has [Oid] and, if it can recur,
//   [IsRecurring].
//   Values     text in double quotes; a closing quote is one that the restriction's end or AND or OR
//              and a bracket follow (closing parentheses may stand between), all others belong to
//              the value, so that values need no escapes. Text without blanks may stand bare.
//              Numbers are bare, flags are TRUE, FALSE, -1, 1 or 0. Dates are text, either
//              month/day/year hour:minute or year-month-day hour:minute (a T for the blank, too),
//              24 hours, seconds or the whole time left out.
//   Meaning    text is compared without regard to case over all of Unicode, in the order of UTF-16
//              units after folding; dates to the second. An item whose property is empty ("" or no
//              date) never matches, not even with <>.
//   Errors     kInvalidArgument for what is not a restriction, an unknown property, or one that is
//              not searchable.
#ifndef TAMU_DEVICE_PIM_RESTRICTION_H_
#define TAMU_DEVICE_PIM_RESTRICTION_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "device/pim/item_record.h"
#include "device/pim/item_store.h"

namespace tamu::device {

class Restriction {
 public:
  static constexpr std::size_t kMaxDepth = 64;

  enum class Operator : std::uint8_t {
    kEqual,
    kNotEqual,
    kLess,
    kLessOrEqual,
    kGreater,
    kGreaterOrEqual,
  };

  // What a term compares; properties of the kind's rows, and two that every item has beside them.
  static constexpr std::size_t kOid = static_cast<std::size_t>(-2);
  static constexpr std::size_t kIsRecurring = static_cast<std::size_t>(-3);

  struct Term {
    std::size_t property = 0;
    ValueType type = ValueType::kText;
    Operator op = Operator::kEqual;
    std::u16string text;    // as it stands
    std::u16string folded;  // of a text
    std::int64_t number =
        0;  // of the others; dates in seconds since 30 December 1899, flags 0 or 1
  };

  // Reads a restriction on items of the kind. Throws std::bad_alloc when memory runs out.
  [[nodiscard]] static platform::HRESULT Parse(ItemKind kind, std::u16string_view text,
                                               Restriction* restriction);

  // True when the item, of the restriction's kind and well formed, satisfies it. Throws
  // std::bad_alloc when memory runs out.
  [[nodiscard]] bool Matches(const ItemRecord& item) const;

  // Adds conditions that every match satisfies, for a store to narrow its search: texts that have to
  // be equal. Their texts are borrowed from this restriction. Throws std::bad_alloc when memory runs
  // out.
  void AppendSearchTerms(std::vector<SearchTerm>* terms) const;

 private:
  friend class RestrictionParser;

  // The program in reverse Polish notation: indexes of terms, and these.
  static constexpr std::int32_t kAnd = -1;
  static constexpr std::int32_t kOr = -2;

  std::vector<Term> terms_;
  std::vector<std::int32_t> program_;
  bool only_and_ = true;
};

// The name in a sort order or a term: "[LastName]" or "LastName". Gives kNoProperty for a name that
// the kind does not have; kOid for the id.
[[nodiscard]] std::size_t FindBracketed(ItemKind kind, std::u16string_view name) noexcept;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_PIM_RESTRICTION_H_
