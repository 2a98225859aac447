// device/pim/restriction_scanner.h - the words of a restriction.
//   Errors     the calls that may not find what they look for say so; nothing is thrown.
#ifndef TAMU_DEVICE_PIM_RESTRICTION_SCANNER_H_
#define TAMU_DEVICE_PIM_RESTRICTION_SCANNER_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "device/pim/restriction.h"

namespace tamu::device {

// True for the same ASCII letters in any case.
[[nodiscard]] bool EqualWords(std::u16string_view text, std::u16string_view word) noexcept;

// A 32-bit number with an optional sign, nothing around it.
[[nodiscard]] std::optional<std::int32_t> ScanNumber(std::u16string_view text) noexcept;
// TRUE, FALSE, -1, 1 or 0.
[[nodiscard]] std::optional<bool> ScanFlag(std::u16string_view text) noexcept;
// A date that exists, in seconds since 30 December 1899.
[[nodiscard]] std::optional<std::int64_t> ScanDate(std::u16string_view text) noexcept;

// Walks along a restriction.
class RestrictionScanner {
 public:
  explicit RestrictionScanner(std::u16string_view text) noexcept : text_(text) {}

  void SkipBlanks() noexcept { position_ = AfterBlanks(position_); }
  [[nodiscard]] bool AtEnd() const noexcept { return position_ == text_.size(); }
  // Takes a character if it comes next.
  [[nodiscard]] bool Take(char16_t unit) noexcept;
  // Takes AND or OR, which blanks, a parenthesis or a bracket have to follow.
  [[nodiscard]] bool TakeJoin(bool* is_and) noexcept;
  // Takes what stands up to the closing bracket, and the bracket.
  [[nodiscard]] bool TakeName(std::u16string_view* name) noexcept;
  [[nodiscard]] bool TakeOperator(Restriction::Operator* op) noexcept;
  // Takes a value inside so many parentheses.
  [[nodiscard]] bool TakeValue(std::size_t depth, std::u16string_view* value) noexcept;

 private:
  [[nodiscard]] std::size_t AfterBlanks(std::size_t position) const noexcept;
  // Where AND or OR ends that stands here; 0 for none.
  [[nodiscard]] std::size_t AfterJoin(std::size_t position, bool* is_and) const noexcept;
  [[nodiscard]] bool EndsValue(std::size_t position, std::size_t depth) const noexcept;
  [[nodiscard]] bool IsAt(std::size_t position, char16_t unit) const noexcept {
    return position < text_.size() && text_[position] == unit;
  }

  std::u16string_view text_;
  std::size_t position_ = 0;
};

}  // namespace tamu::device

#endif  // TAMU_DEVICE_PIM_RESTRICTION_SCANNER_H_
