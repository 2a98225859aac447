#include "text/tokens.h"

#include <cassert>
#include <cstring>

namespace tamu {
namespace {

bool IsBlank(char character) noexcept { return character == ' ' || character == '\t'; }

bool IsEscapePair(const char* text) noexcept {
  return text[0] == '\\' && (text[1] == ';' || text[1] == '\\');
}

// A set of one or two delimiters, as all of these texts have them; none is the terminator, where
// every scan ends.
class Delimiters {
 public:
  explicit Delimiters(const char* set) noexcept
      : first_(set[0]), second_(set[0] != '\0' && set[1] != '\0' ? set[1] : set[0]) {
    assert(std::strlen(set) <= 2 && "only two delimiters are looked for");
  }
  [[nodiscard]] bool Contain(char character) const noexcept {
    return character == first_ || character == second_;
  }

 private:
  char first_;
  char second_;
};

template <bool keep_backslash>
const char* CopyToken(char* dst, std::size_t capacity, const char* src, const char* set) noexcept {
  const Delimiters delimiters(set);
  char* const last = dst + capacity - 1;
  const auto put = [&](char character) {
    if (dst != last) *dst++ = character;
  };
  while (*src != '\0') {
    if (IsEscapePair(src)) {
      if constexpr (keep_backslash) put(*src);
      put(src[1]);
      src += 2;
    } else if (delimiters.Contain(*src)) {
      break;
    } else {
      put(*src++);
    }
  }
  *dst = '\0';
  return src;
}

}  // namespace

char* LINE_Split(char* name_out, char* params_out, char* line) noexcept {
  *params_out = '\0';
  const char* delimiter = LINE_CopyToken(name_out, kNameSize, line, ";:");
  if (*delimiter == ';') {
    delimiter = LINE_CopyToken(params_out, kParamsSize, delimiter + 1, ":");
  }
  return line + (delimiter - line) + 1;
}

char* LINE_StripBlanks(char* text) noexcept {
  char* out = text;
  for (const char* p = text; *p != '\0'; ++p) {
    if (!IsBlank(*p)) *out++ = *p;
  }
  *out = '\0';
  return text;
}

char* LINE_TrimLeadingBlanks(char* text) noexcept {
  if (!IsBlank(*text)) return text;
  const std::size_t blanks = std::strspn(text, " \t");
  std::memmove(text, text + blanks, std::strlen(text + blanks) + 1);
  return text;
}

const char* LINE_CopyToken(char* dst, std::size_t capacity, const char* src,
                           const char* delimiters) noexcept {
  return CopyToken<true>(dst, capacity, src, delimiters);
}

const char* STR_CopyUnescaped(char* dst, std::size_t capacity, const char* src,
                              const char* delimiters) noexcept {
  return CopyToken<false>(dst, capacity, src, delimiters);
}

void STR_CopyBounded(char* dst, const char* src, std::size_t count) noexcept {
  const std::size_t length = strnlen(src, count);
  std::memcpy(dst, src, length);
  std::memset(dst + length, 0, count - length + 1);
}

char* STR_NextToken(char** cursor, const char* set) noexcept {
  const Delimiters delimiters(set);
  char* const token = *cursor;
  if (token == nullptr) return nullptr;
  for (char* p = token; *p != '\0'; ++p) {
    if (delimiters.Contain(*p)) {
      *p = '\0';
      *cursor = p + 1;
      return token;
    }
    if (*p == '\\' && *++p == '\0') break;
  }
  *cursor = nullptr;
  return token;
}

}  // namespace tamu
