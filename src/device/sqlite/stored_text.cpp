#include "device/sqlite/stored_text.h"

#include <cstddef>

namespace tamu::device {
namespace {

constexpr char kEscape = 0x1B;
constexpr std::size_t kEscapeDigits = 4;
constexpr char kDigits[] = "0123456789ABCDEF";
constexpr char16_t kReplacement = 0xFFFD;

constexpr bool IsHigh(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool IsLow(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// The digit's value, 16 for another character. Only the case that is written counts.
constexpr unsigned DigitValue(char digit) {
  if (digit >= '0' && digit <= '9') return static_cast<unsigned>(digit - '0');
  if (digit >= 'A' && digit <= 'F') return static_cast<unsigned>(digit - 'A' + 10);
  return 16;
}

void AppendEscape(char16_t unit, std::string* out) {
  const char escape[] = {kEscape, kDigits[unit >> 12], kDigits[unit >> 8 & 15],
                         kDigits[unit >> 4 & 15], kDigits[unit & 15]};
  out->append(escape, sizeof escape);
}

void AppendUtf8(char32_t code, std::string* out) {
  char bytes[4];
  std::size_t count = 0;
  const auto push = [&](char32_t bits) { bytes[count++] = static_cast<char>(bits); };
  if (code < 0x80) {
    push(code);
  } else if (code < 0x800) {
    push(0xC0 | code >> 6);
    push(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    push(0xE0 | code >> 12);
    push(0x80 | (code >> 6 & 0x3F));
    push(0x80 | (code & 0x3F));
  } else {
    push(0xF0 | code >> 18);
    push(0x80 | (code >> 12 & 0x3F));
    push(0x80 | (code >> 6 & 0x3F));
    push(0x80 | (code & 0x3F));
  }
  out->append(bytes, count);
}

// An escape at the start of the text, or -1.
std::int32_t DecodeEscape(std::string_view text) {
  if (text.size() < 1 + kEscapeDigits || text[0] != kEscape) return -1;
  unsigned unit = 0;
  for (std::size_t i = 1; i <= kEscapeDigits; ++i) {
    const unsigned digit = DigitValue(text[i]);
    if (digit > 15) return -1;
    unit = unit << 4 | digit;
  }
  return static_cast<std::int32_t>(unit);
}

struct Decoded {
  char32_t code = kReplacement;
  std::size_t bytes = 1;
};

// One character of well-formed UTF-8 (Unicode, table 3-7); a byte that starts none is replaced.
Decoded DecodeUtf8(std::string_view text) {
  const auto byte = [&](std::size_t i) {
    return i < text.size() ? static_cast<std::uint8_t>(text[i]) : std::uint8_t{0};
  };
  const std::uint8_t lead = byte(0);
  const std::size_t length = lead < 0x80                   ? 1
                             : lead >= 0xC2 && lead < 0xE0 ? 2
                             : lead >= 0xE0 && lead < 0xF0 ? 3
                             : lead >= 0xF0 && lead < 0xF5 ? 4
                                                           : 0;
  if (length == 0) return {};
  if (length == 1) return {lead, 1};
  char32_t code = lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return {};
    code = code << 6 | (byte(i) & 0x3FU);
  }
  constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < kLeast[length] || code > 0x10FFFF || surrogate) return {};
  return {code, length};
}

void AppendUtf16(char32_t code, std::u16string* out) {
  if (code < 0x10000) {
    out->push_back(static_cast<char16_t>(code));
  } else {
    out->push_back(static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10)));
    out->push_back(static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF)));
  }
}

}  // namespace

void ToStoredText(std::u16string_view text, std::string* stored) {
  stored->resize(text.size());
  std::size_t at = 0;  // most text is ASCII: a byte for each unit
  for (; at < text.size(); ++at) {
    const char16_t unit = text[at];
    if (unit == 0 || unit == kEscape || unit >= 0x80) break;
    (*stored)[at] = static_cast<char>(unit);
  }
  if (at == text.size()) return;
  stored->resize(at);
  stored->reserve(text.size() + (text.size() - at) / 2);
  for (; at < text.size(); ++at) {
    const char16_t unit = text[at];
    if (IsHigh(unit) && at + 1 < text.size() && IsLow(text[at + 1])) {
      AppendUtf8(0x10000 + (static_cast<char32_t>(unit - 0xD800) << 10) +
                     static_cast<char32_t>(text[at + 1] - 0xDC00),
                 stored);
      ++at;
    } else if (unit == 0 || unit == kEscape || IsHigh(unit) || IsLow(unit)) {
      AppendEscape(unit, stored);
    } else {
      AppendUtf8(unit, stored);
    }
  }
}

std::u16string FromStoredText(std::string_view stored) {
  std::u16string text(stored.size(), u'\0');
  std::size_t at = 0;
  for (; at < stored.size(); ++at) {
    const auto byte = static_cast<std::uint8_t>(stored[at]);
    if (byte == kEscape || byte >= 0x80) break;
    text[at] = byte;
  }
  if (at == stored.size()) return text;
  text.resize(at);
  while (at < stored.size()) {
    const std::string_view rest = stored.substr(at);
    if (const std::int32_t unit = DecodeEscape(rest); unit >= 0) {
      text.push_back(static_cast<char16_t>(unit));
      at += 1 + kEscapeDigits;
      continue;
    }
    const Decoded decoded = DecodeUtf8(rest);
    AppendUtf16(decoded.code, &text);
    at += decoded.bytes;
  }
  return text;
}

void ToStoredBytes(const std::vector<std::uint8_t>& bytes, std::string* stored) {
  stored->resize(bytes.size() * 2);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    (*stored)[2 * i] = kDigits[bytes[i] >> 4];
    (*stored)[2 * i + 1] = kDigits[bytes[i] & 15];
  }
}

std::vector<std::uint8_t> FromStoredBytes(std::string_view stored) {
  std::vector<std::uint8_t> bytes;
  bytes.reserve(stored.size() / 2);
  for (std::size_t i = 0; i + 1 < stored.size(); i += 2) {
    const unsigned high = DigitValue(stored[i]);
    const unsigned low = DigitValue(stored[i + 1]);
    if (high > 15 || low > 15) break;
    bytes.push_back(static_cast<std::uint8_t>(high << 4 | low));
  }
  return bytes;
}

}  // namespace tamu::device
