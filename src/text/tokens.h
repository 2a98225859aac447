// text/tokens.h - a logical line split into property name, parameters and value, and the bounded
// copies for it.
//   Units      bytes; capacities count the terminator.
//   Ownership  buffers are the caller's; returned positions point into the text that was given.
//   Errors     none: what does not fit is cut.
#ifndef TAMU_TEXT_TOKENS_H_
#define TAMU_TEXT_TOKENS_H_

#include <cstddef>
#include <string_view>

namespace tamu {

// Widths of the buffers that LINE_Split fills.
inline constexpr std::size_t kNameSize = 52;
inline constexpr std::size_t kParamsSize = 128;

// Splits a logical line at its first ":" or ";" into the name, the parameter text (its inner ";"
// kept, "" when there is none) and the value, whose position it returns. `name_out` holds kNameSize
// bytes, `params_out` kParamsSize. Without a
// ":" the value lies one past the terminator, which FileLine leaves readable and empty.
[[nodiscard]] char* LINE_Split(char* name_out, char* params_out, char* line) noexcept;

// Removes every space and tab from the text, in place, and returns it.
char* LINE_StripBlanks(char* text) noexcept;

// Removes spaces and tabs from the start of the text, in place, and returns it.
char* LINE_TrimLeadingBlanks(char* text) noexcept;

// Copies up to the first character of `delimiters`, at most `capacity` - 1 characters, and
// terminates. A backslash before
// ";" or "\" makes a pair that is copied whole and ends nothing. Returns the delimiter's position,
// or the text's end.
const char* LINE_CopyToken(char* dst, std::size_t capacity, const char* src,
                           const char* delimiters) noexcept;

// The same, but of such a pair only the second character is copied.
const char* STR_CopyUnescaped(char* dst, std::size_t capacity, const char* src,
                              const char* delimiters) noexcept;

// Copies at most `count` characters, padded with zeros, and terminates: `dst` holds `count` + 1.
void STR_CopyBounded(char* dst, const char* src, std::size_t count) noexcept;

// Copies into a field that may be full without a terminator, padded with zeros.
template <std::size_t size>
void STR_CopyField(char (&field)[size], const char* src) noexcept {
  std::size_t i = 0;
  for (; i < size && src[i] != '\0'; ++i) field[i] = src[i];
  for (; i < size; ++i) field[i] = '\0';
}

// The text of such a field.
template <std::size_t size>
[[nodiscard]] std::string_view STR_FieldText(const char (&field)[size]) noexcept {
  std::size_t length = 0;
  while (length < size && field[length] != '\0') ++length;
  return {field, length};
}

// Takes the next token of the text at `*cursor`: terminates it at the first unescaped character of
// `delimiters` (a backslash takes the character after it along) and moves the cursor behind that,
// or to null when none follows. Returns null for a null cursor.
[[nodiscard]] char* STR_NextToken(char** cursor, const char* delimiters) noexcept;

}  // namespace tamu

#endif  // TAMU_TEXT_TOKENS_H_
