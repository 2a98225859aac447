// core/log_format.h - the formatter of log lines: the conversions that the library's texts use,
// over typed arguments.
//   %s 8-bit text, %S UTF-16 text (through the ANSI code page), %d %u %lu %x 32-bit numbers, with a
//   zero flag and width as the C library has them (%08x, %02X, %4d), %c a character, %%
//   a percent sign. Conversions and arguments are checked against each other when the line is
//   compiled.
//   Units      bytes.
//   Ownership  arguments are borrowed for the call.
#ifndef TAMU_CORE_LOG_FORMAT_H_
#define TAMU_CORE_LOG_FORMAT_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

namespace tamu {

// One argument of a line.
class LogArgument {
 public:
  enum class Type : std::uint8_t { kText, kWideText, kNumber };

  constexpr LogArgument(const char* text) noexcept : type_(Type::kText), text_(text) {}
  constexpr LogArgument(const char16_t* text) noexcept : type_(Type::kWideText), wide_text_(text) {}
  constexpr LogArgument(std::int32_t number) noexcept
      : type_(Type::kNumber), number_(static_cast<std::uint32_t>(number)) {}
  constexpr LogArgument(std::uint32_t number) noexcept : type_(Type::kNumber), number_(number) {}
  constexpr LogArgument(char character) noexcept
      : type_(Type::kNumber), number_(static_cast<unsigned char>(character)) {}

  [[nodiscard]] constexpr Type type() const noexcept { return type_; }
  // The texts may be null.
  [[nodiscard]] constexpr const char* text() const noexcept { return text_; }
  [[nodiscard]] constexpr const char16_t* wide_text() const noexcept { return wide_text_; }
  [[nodiscard]] constexpr std::uint32_t number() const noexcept { return number_; }

 private:
  Type type_;
  union {
    const char* text_;
    const char16_t* wide_text_;
    std::uint32_t number_;
  };
};

// One "%..." of a format.
struct LogConversion {
  char letter = 0;  // 0: not a conversion that is known
  bool zero = false;
  std::uint16_t width = 0;
  const char* end = nullptr;  // behind it
};

// Reads the conversion that begins at `percent`.
[[nodiscard]] constexpr LogConversion LOG_ParseConversion(const char* percent) noexcept {
  LogConversion result;
  const char* p = percent + 1;
  if (*p == '0') {
    result.zero = true;
    ++p;
  }
  while (*p >= '0' && *p <= '9')
    result.width = static_cast<std::uint16_t>(result.width * 10 + (*p++ - '0'));
  if (*p == 'l') ++p;
  for (const char known : {'s', 'S', 'd', 'u', 'x', 'X', 'c', '%'}) {
    if (*p == known) result.letter = known;
  }
  result.end = *p == '\0' ? p : p + 1;
  return result;
}

// A format whose conversions fit `Arguments`; anything else does not compile.
template <typename... Arguments>
class LogFormat {
 public:
  consteval LogFormat(const char* text)
      : text_(text) {  // NOLINT: implicit, as a format is a literal
    const char expected[] = {LetterClass<Arguments>()..., '\0'};
    std::size_t next = 0;
    for (const char* p = text; *p != '\0';) {
      if (*p != '%') {
        ++p;
        continue;
      }
      const LogConversion conversion = LOG_ParseConversion(p);
      p = conversion.end;
      if (conversion.letter == '%') continue;
      const char wanted =
          conversion.letter == 's' || conversion.letter == 'S' ? conversion.letter : 'd';
      if (conversion.letter == 0 || next >= sizeof...(Arguments) || expected[next] != wanted)
        Mismatch();
      ++next;
    }
    if (next != sizeof...(Arguments)) Mismatch();
  }
  [[nodiscard]] constexpr const char* text() const noexcept { return text_; }

 private:
  template <typename Argument>
  static consteval char LetterClass() {
    if (std::is_convertible_v<Argument, const char*>) return 's';
    if (std::is_convertible_v<Argument, const char16_t*>) return 'S';
    return 'd';
  }
  static void Mismatch() {}  // not constexpr: reaching it ends the compilation

  const char* text_;
};

// Writes the line to `out`, cut at its size, with a terminator. Returns the bytes written without
// it.
std::size_t LOG_Format(std::span<char> out, const char* format,
                       std::span<const LogArgument> arguments) noexcept;

}  // namespace tamu

#endif  // TAMU_CORE_LOG_FORMAT_H_
