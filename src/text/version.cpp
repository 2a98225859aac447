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
  // Nothing but digits, and a point before or among them, is a number here.
  const char first = *text == '.' ? text[1] : *text;
  if (first < '0' || first > '9') return 0;
  double value = 0;
  // A number out of range leaves 0: too large or too small, it is no version that could be read.
  std::from_chars(text, text + std::strlen(text), value);
  return negative ? -value : value;
}

}  // namespace

bool VERSION_IsSupported(const char* text, double highest) noexcept {
  const double version = ToNumber(text);
  return version != 0 && version <= highest;
}

}  // namespace tamu
