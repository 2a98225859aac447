#include "display_text.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "platform/paths.h"

namespace tamu::tool {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

struct Range {
  char32_t first;
  char32_t last;
};
// Characters that steer a terminal or the direction of text instead of showing something.
constexpr Range kUnsafe[] = {
    {0x00, 0x1F},     {0x7F, 0x9F},     {0x061C, 0x061C}, {0x200E, 0x200F},
    {0x2028, 0x202E}, {0x2066, 0x2069}, {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB},
};

bool IsUnsafe(char32_t code) noexcept {
  if (code >= 0x20 && code < 0x7F) return false;
  for (const Range& range : kUnsafe) {
    if (code >= range.first && code <= range.last) return true;
  }
  return false;
}

bool IsHigh(char16_t unit) noexcept { return (unit & 0xFC00) == 0xD800; }
bool IsLow(char16_t unit) noexcept { return (unit & 0xFC00) == 0xDC00; }
bool IsSurrogate(char32_t code) noexcept { return code >= 0xD800 && code <= 0xDFFF; }

// Calls `take` with each code point, a lone surrogate as itself.
template <typename Take>
void ForEachCodePoint(std::u16string_view text, Take take) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t code = text[i];
    if (IsHigh(text[i]) && i + 1 < text.size() && IsLow(text[i + 1])) {
      code = 0x10000 + ((code & 0x3FF) << 10) + (char32_t{text[++i]} & 0x3FF);
    }
    take(code);
  }
}

void AppendUtf8(std::string& out, char32_t code) {
  const auto push = [&](char32_t bits) { out.push_back(static_cast<char>(bits)); };
  if (code < 0x80) return push(code);
  if (code < 0x800) {
    push(0xC0 | code >> 6);
  } else {
    if (code < 0x10000) {
      push(0xE0 | code >> 12);
    } else {
      push(0xF0 | code >> 18);
      push(0x80 | (code >> 12 & 0x3F));
    }
    push(0x80 | (code >> 6 & 0x3F));
  }
  push(0x80 | (code & 0x3F));
}

void AppendEscape(std::string& out, char32_t code) {
  std::array<char, 16> text;
  const auto number = static_cast<unsigned>(code);
  const int length = code < 0x100 ? std::snprintf(text.data(), text.size(), "\\x%02x", number)
                                  : std::snprintf(text.data(), text.size(), "\\u%04x", number);
  out.append(text.data(), static_cast<std::size_t>(length));
}

void AppendVisible(std::string& out, char32_t code) {
  if (IsUnsafe(code)) return AppendEscape(out, code);
  AppendUtf8(out, IsSurrogate(code) ? kReplacement : code);
}

// Bytes of the character that begins with this one; the text is known to be valid.
std::size_t LengthByLead(std::uint8_t lead) noexcept {
  return lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

char32_t DecodeValid(std::string_view character) noexcept {
  const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(character[i]); };
  if (character.size() == 1) return byte(0);
  char32_t code = byte(0) & (0xFFU >> (character.size() + 1));
  for (std::size_t i = 1; i < character.size(); ++i) code = code << 6 | (byte(i) & 0x3F);
  return code;
}

}  // namespace

std::string DISPLAY_ToUtf8(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  ForEachCodePoint(
      text, [&](char32_t code) { AppendUtf8(out, IsSurrogate(code) ? kReplacement : code); });
  return out;
}

std::string DISPLAY_BytesToUtf8(std::string_view bytes) {
  std::string out;
  out.reserve(bytes.size());
  for (const char byte : bytes) AppendUtf8(out, static_cast<unsigned char>(byte));
  return out;
}

std::string DISPLAY_Line(std::u16string_view text) {
  std::string out;
  out.reserve(text.size());
  ForEachCodePoint(text, [&](char32_t code) { AppendVisible(out, code == '\t' ? U' ' : code); });
  return out;
}

std::vector<std::string> DISPLAY_Lines(std::u16string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = text.find_first_of(u"\r\n");
    lines.push_back(DISPLAY_Line(text.substr(0, end)));
    if (end == std::u16string_view::npos) break;
    text.remove_prefix(text.substr(end).starts_with(u"\r\n") ? end + 2 : end + 1);
  }
  while (!lines.empty() && lines.back().empty()) lines.pop_back();
  return lines;
}

std::string DISPLAY_Bytes(std::string_view bytes) {
  // The conversion of paths marks a byte that is not part of UTF-8 by a lone surrogate.
  constexpr char32_t kStrayFirst = 0xDC80, kStrayLast = 0xDCFF, kStrayBase = 0xDC00;
  std::string out;
  out.reserve(bytes.size());
  ForEachCodePoint(platform::PathFromNative(bytes), [&](char32_t code) {
    const bool stray = code >= kStrayFirst && code <= kStrayLast;
    stray ? AppendEscape(out, code - kStrayBase) : AppendVisible(out, code);
  });
  return out;
}

std::string DISPLAY_FileName(std::string_view name) {
  return name.empty() ? "''" : DISPLAY_Bytes(name);
}

std::string DISPLAY_Json(std::string_view json) {
  std::string out;
  out.reserve(json.size());
  while (!json.empty()) {
    const std::string_view character =
        json.substr(0, LengthByLead(static_cast<std::uint8_t>(json.front())));
    const char32_t code = DecodeValid(character);
    if (IsUnsafe(code)) {
      std::array<char, 8> escape;
      std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(code));
      out += escape.data();
    } else {
      out += character;
    }
    json.remove_prefix(character.size());
  }
  return out;
}

}  // namespace tamu::tool
