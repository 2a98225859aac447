#include "core/log_format.h"

#include <array>
#include <climits>
#include <cstring>
#include <string_view>

#include "platform/code_pages.h"

namespace tamu {
namespace {

// Text that is cut at the end of its buffer.
class BoundedText {
 public:
  explicit BoundedText(std::span<char> out) noexcept : out_(out.first(out.size() - 1)), all_(out) {}

  void Append(std::string_view text) noexcept {
    const std::size_t count = text.size() < room() ? text.size() : room();
    if (count != 0) std::memcpy(out_.data() + used_, text.data(), count);
    used_ += count;
  }
  void Fill(char character, std::size_t count) noexcept {
    for (; count != 0 && room() != 0; --count) out_[used_++] = character;
  }
  [[nodiscard]] std::size_t room() const noexcept { return out_.size() - used_; }
  std::size_t Finish() noexcept {
    all_[used_] = '\0';
    return used_;
  }

 private:
  std::span<char> out_;
  std::span<char> all_;
  std::size_t used_ = 0;
};

void AppendPadded(BoundedText& out, std::string_view sign, std::string_view digits,
                  const LogConversion& conversion) noexcept {
  const std::size_t length = sign.size() + digits.size();
  const std::size_t padding = conversion.width > length ? conversion.width - length : 0;
  if (!conversion.zero) out.Fill(' ', padding);
  out.Append(sign);
  if (conversion.zero) out.Fill('0', padding);
  out.Append(digits);
}

void AppendNumber(BoundedText& out, const LogConversion& conversion, std::uint32_t value) noexcept {
  const bool hexadecimal = conversion.letter == 'x' || conversion.letter == 'X';
  const char* const digits = conversion.letter == 'X' ? "0123456789ABCDEF" : "0123456789abcdef";
  const std::uint32_t base = hexadecimal ? 16 : 10;
  const bool negative = conversion.letter == 'd' && value > static_cast<std::uint32_t>(INT32_MAX);
  std::uint32_t rest = negative ? 0U - value : value;
  std::array<char, 12> text;
  std::size_t begin = text.size();
  do {
    text[--begin] = digits[rest % base];
    rest /= base;
  } while (rest != 0);
  AppendPadded(out, negative ? "-" : "", {text.data() + begin, text.size() - begin}, conversion);
}

// Converts piece by piece, so that a text of any length needs no memory.
void AppendWide(BoundedText& out, const char16_t* text) noexcept {
  if (text == nullptr) return out.Append("(null)");
  std::size_t rest = std::char_traits<char16_t>::length(text);
  while (rest != 0 && out.room() != 0) {
    std::size_t units = rest < 64 ? rest : 64;
    const bool splits_pair = units < rest && (text[units - 1] & 0xFC00) == 0xD800;
    if (splits_pair) --units;
    std::array<char, 512> bytes;
    const std::int32_t count = platform::WideCharToMultiByte(
        platform::kCpAcp, 0, text, static_cast<std::int32_t>(units), bytes.data(),
        static_cast<std::int32_t>(bytes.size()), nullptr, nullptr);
    if (count <= 0) return;
    out.Append({bytes.data(), static_cast<std::size_t>(count)});
    text += units;
    rest -= units;
  }
}

void AppendArgument(BoundedText& out, const LogConversion& conversion,
                    const LogArgument& argument) noexcept {
  switch (conversion.letter) {
    case 's':
      AppendPadded(out, "", argument.text() != nullptr ? argument.text() : "(null)", conversion);
      break;
    case 'S':
      AppendWide(out, argument.wide_text());
      break;
    case 'c':
      out.Fill(static_cast<char>(argument.number()), 1);
      break;
    default:
      AppendNumber(out, conversion, argument.number());
  }
}

}  // namespace

std::size_t LOG_Format(std::span<char> out, const char* format,
                       std::span<const LogArgument> arguments) noexcept {
  BoundedText text(out);
  std::size_t next = 0;
  while (*format != '\0') {
    const std::size_t plain = std::strcspn(format, "%");
    text.Append({format, plain});
    format += plain;
    if (*format == '\0') break;
    const LogConversion conversion = LOG_ParseConversion(format);
    if (conversion.letter == '%') {
      text.Append("%");
    } else if (next < arguments.size()) {
      AppendArgument(text, conversion, arguments[next++]);
    }
    format = conversion.end;
  }
  return text.Finish();
}

}  // namespace tamu
