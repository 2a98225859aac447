// text/number_scan.h - numbers, words and characters read from a text as the C library's sscanf and
// atoi read them, in the same way in every locale.
//   Blanks     space, tab, line feed, vertical tab, form feed, carriage return.
//   Ownership  the text is borrowed; it must be terminated.
//   Errors     a conversion that fails says so and leaves its output alone; numbers that do not fit
//   are the smallest or the largest of 32 bits.
#ifndef TAMU_TEXT_NUMBER_SCAN_H_
#define TAMU_TEXT_NUMBER_SCAN_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tamu {

// The number that a text begins with, as atoi reads it: blanks, a sign, digits; 0 without digits.
[[nodiscard]] std::int32_t STR_ToNumber(std::string_view text) noexcept;

// True for a text of decimal digits only, at least one.
[[nodiscard]] bool STR_IsNumber(std::string_view text) noexcept;

// One pass over a text, one conversion a call.
class TextScan {
 public:
  static constexpr std::size_t kAnyWidth = SIZE_MAX;

  explicit TextScan(const char* text) noexcept : rest_(text) {}

  // "%4d": skips blanks, then takes at most `width` characters: a sign, digits.
  [[nodiscard]] bool Number(std::int32_t* number, std::size_t width = kAnyWidth) noexcept;
  // "%3s": skips blanks, then takes at most `width` characters up to the next blank. At least one.
  [[nodiscard]] bool Word(std::string_view* word, std::size_t width = kAnyWidth) noexcept;
  // "%c": the next character, whatever it is.
  [[nodiscard]] bool Character(char* character) noexcept;
  // A character of the format that is no blank: it must come next.
  [[nodiscard]] bool Literal(char expected) noexcept;

 private:
  void SkipBlanks() noexcept;

  std::string_view rest_;
};

}  // namespace tamu

#endif  // TAMU_TEXT_NUMBER_SCAN_H_
