#include "mail_text.h"

#include <algorithm>
#include <optional>

#include "platform/bstr.h"
#include "text/charset.h"
#include "text/quoted_printable.h"
#include "text/string_tools.h"

namespace tamu::tool {
namespace {

constexpr std::string_view kBlanks = " \t";

std::string_view Trim(std::string_view text) noexcept {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

// 0 to 63, 64 for any other character.
std::uint32_t Base64Digit(char digit) noexcept {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  return static_cast<std::uint32_t>(std::min<std::size_t>(kDigits.find(digit), kDigits.size()));
}

// Characters that are no digits do not count, "=" ends the text, and what does not fill a byte then
// is dropped.
std::string DecodeBase64(std::string_view text) {
  std::string bytes;
  std::uint32_t bits = 0;
  int count = 0;
  for (const char character : text) {
    if (character == '=') break;
    const std::uint32_t digit = Base64Digit(character);
    if (digit > 63) continue;
    bits = (bits << 6 | digit) & 0xFFFFFF;
    count += 6;
    if (count < 8) continue;
    count -= 8;
    bytes.push_back(static_cast<char>(bits >> count & 0xFF));
  }
  return bytes;
}

std::string DecodeQuotedPrintable(std::string_view text) {
  std::string bytes(QP_Decode(text, nullptr, 0) + 1, '\0');
  bytes.resize(QP_Decode(text, bytes.data(), bytes.size()));
  return bytes;
}

// "=?charset?encoding?text?=" at the start of a text.
struct EncodedWord {
  std::uint32_t code_page;
  std::string bytes;
  std::size_t length;  // of the whole word
};

std::optional<EncodedWord> ReadEncodedWord(std::string_view text) {
  if (!text.starts_with("=?")) return std::nullopt;
  const std::size_t charset_end = text.find('?', 2);
  if (charset_end == std::string_view::npos || charset_end + 3 > text.size() ||
      text[charset_end + 2] != '?') {
    return std::nullopt;
  }
  const std::size_t begin = charset_end + 3;
  const std::size_t end = text.find("?=", begin);
  if (end == std::string_view::npos) return std::nullopt;
  // RFC 2231: a language may follow the name.
  const std::string_view charset = text.substr(2, charset_end - 2);
  EncodedWord word{CHARSET_FromName(charset.substr(0, charset.find('*'))), {}, end + 2};
  if (word.code_page == 0) return std::nullopt;
  std::string content(text.substr(begin, end - begin));
  switch (STR_ToUpper(text[charset_end + 1])) {
    case 'B':
      word.bytes = DecodeBase64(content);
      return word;
    case 'Q':
      std::replace(content.begin(), content.end(), '_', ' ');
      word.bytes = DecodeQuotedPrintable(content);
      return word;
    default:
      return std::nullopt;
  }
}

// Where the text's next encoded word begins, or its end.
std::size_t FindEncodedWord(std::string_view text) {
  std::size_t place = text.find("=?");
  while (place != std::string_view::npos && !ReadEncodedWord(text.substr(place))) {
    place = text.find("=?", place + 2);
  }
  return std::min(place, text.size());
}

// The value of a parameter that begins a text.
std::string_view ParameterValue(std::string_view text) noexcept {
  text = Trim(text);
  if (text.starts_with('"')) {
    text.remove_prefix(1);
    return text.substr(0, text.find('"'));
  }
  return text.substr(0, text.find_first_of("; \t"));
}

}  // namespace

std::string MAIL_Parameter(std::string_view content_type, std::string_view name) {
  std::string upper(name);
  std::transform(upper.begin(), upper.end(), upper.begin(), &STR_ToUpper);
  for (std::size_t place = content_type.find(';'); place != std::string_view::npos;
       place = content_type.find(';', place + 1)) {
    const std::string_view parameter = Trim(content_type.substr(place + 1));
    const std::size_t equals = parameter.find('=');
    if (equals == std::string_view::npos) continue;
    if (STR_EqualNoCase(Trim(parameter.substr(0, equals)), upper)) {
      return std::string(ParameterValue(parameter.substr(equals + 1)));
    }
  }
  return {};
}

std::uint32_t MAIL_CodePage(std::string_view content_type) {
  const std::uint32_t named = CHARSET_FromName(MAIL_Parameter(content_type, "charset"));
  return named != 0 ? named : CHARSET_GetInputCodePage();
}

std::u16string MAIL_DecodeHeader(std::string_view value, std::uint32_t code_page) {
  std::u16string text;
  value = Trim(value);
  for (bool behind_word = false; !value.empty();) {
    const std::size_t place = FindEncodedWord(value);
    const std::string_view before = value.substr(0, place);
    value.remove_prefix(place);
    // Blanks between two words only keep them apart.
    const bool gap = behind_word && !value.empty() && Trim(before).empty();
    if (!gap) text += MAIL_ToWide(before, code_page);
    const std::optional<EncodedWord> word = ReadEncodedWord(value);
    if (!word) break;
    text += MAIL_ToWide(word->bytes, word->code_page);
    value.remove_prefix(word->length);
    behind_word = true;
  }
  return text;
}

std::string MAIL_DecodeTransfer(std::string_view text, std::string_view encoding) {
  encoding = Trim(encoding);
  if (STR_EqualNoCase(encoding, "BASE64")) return DecodeBase64(text);
  if (STR_EqualNoCase(encoding, "QUOTED-PRINTABLE")) return DecodeQuotedPrintable(text);
  return std::string(text);
}

std::u16string MAIL_ToWide(std::string_view bytes, std::uint32_t code_page) {
  platform::BStr wide;
  CHARSET_ToWide(code_page, std::string(bytes).c_str(), &wide);
  return std::u16string(wide.view());
}

}  // namespace tamu::tool
