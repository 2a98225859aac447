#include "text/version.h"

#include <charconv>
#include <cstring>

namespace tamu {
namespace {

// std::from_chars does not look at the locale, but leaves out what atof allows in front of the
// digits.
double ToNumber(const char* text) noexcept {
  text += std::strspn(text, " \t\n\v\f\r");
  const bool negative = *text == '-';
  if (negative || *text == '+') ++text;
  if (*text == '-') return 0;
  const bool hexadecimal = text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
  const auto format = hexadecimal ? std::chars_format::hex : std::chars_format::general;
  const char* const digits = hexadecimal ? text + 2 : text;
  const char* const end = digits + std::strlen(digits);
  double value = 0;
  // A number out of range leaves 0: too large or too small, it is no version that could be read.
  std::from_chars(digits, end, value, format);
  return negative ? -value : value;
}

}  // namespace

bool VERSION_IsSupported(const char* text, double highest) noexcept {
  const double version = ToNumber(text);
  return version != 0 && version <= highest;
}

}  // namespace tamu
