#include "platform/paths.h"

#include <stdlib.h>

#include <cstddef>
#include <cstdint>

namespace tamu::platform {
namespace {

constexpr char16_t kEscapeBase = 0xDC00;  // + a byte of 0x80 to 0xFF that is not part of UTF-8

struct Decoded {
  char32_t code_point = 0;
  std::size_t bytes = 0;  // 0: not well-formed at this place
};

constexpr bool IsContinuation(std::uint8_t byte) { return (byte & 0xC0) == 0x80; }

// One character of well-formed UTF-8 (Unicode, table 3-7) at `at`.
Decoded DecodeOne(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t offset) {
    return at + offset < text.size() ? static_cast<std::uint8_t>(text[at + offset])
                                     : std::uint8_t{0};
  };
  const std::uint8_t lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  if (lead >= 0xC2 && lead <= 0xDF && IsContinuation(byte(1))) {
    return {static_cast<char32_t>((lead & 0x1F) << 6 | (byte(1) & 0x3F)), 2};
  }
  if (lead >= 0xE0 && lead <= 0xEF && IsContinuation(byte(1)) && IsContinuation(byte(2))) {
    const auto code =
        static_cast<char32_t>((lead & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F));
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return code >= 0x800 && !surrogate ? Decoded{code, 3} : Decoded{};
  }
  if (lead >= 0xF0 && lead <= 0xF4 && IsContinuation(byte(1)) && IsContinuation(byte(2)) &&
      IsContinuation(byte(3))) {
    const auto code = static_cast<char32_t>((lead & 0x07) << 18 | (byte(1) & 0x3F) << 12 |
                                            (byte(2) & 0x3F) << 6 | (byte(3) & 0x3F));
    return code >= 0x10000 && code <= 0x10FFFF ? Decoded{code, 4} : Decoded{};
  }
  return {};
}

void AppendWide(std::u16string& out, char32_t code) {
  if (code < 0x10000) {
    out.push_back(static_cast<char16_t>(code));
    return;
  }
  out.push_back(static_cast<char16_t>(0xD800 + ((code - 0x10000) >> 10)));
  out.push_back(static_cast<char16_t>(0xDC00 + ((code - 0x10000) & 0x3FF)));
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

constexpr bool IsHigh(char16_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
constexpr bool IsLow(char16_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// A variable of the environment; an empty one counts as missing.
std::string Environment(const char* name) {
  const char* value = ::getenv(name);
  return value ? value : "";
}

}  // namespace

const char16_t kPathSeparator = u'/';

std::u16string PathFromNative(std::string_view native) {
  std::u16string path;
  path.reserve(native.size());
  for (std::size_t at = 0; at < native.size();) {
    const Decoded decoded = DecodeOne(native, at);
    if (decoded.bytes == 0) {
      path.push_back(static_cast<char16_t>(kEscapeBase + static_cast<std::uint8_t>(native[at])));
      ++at;
    } else {
      AppendWide(path, decoded.code_point);
      at += decoded.bytes;
    }
  }
  return path;
}

std::string PathToNative(std::u16string_view path) {
  std::string native;
  native.reserve(path.size());
  for (std::size_t at = 0; at < path.size(); ++at) {
    const char16_t unit = path[at];
    if (IsHigh(unit) && at + 1 < path.size() && IsLow(path[at + 1])) {
      AppendUtf8(native, 0x10000 + (static_cast<char32_t>(unit - 0xD800) << 10) +
                             static_cast<char32_t>(path[at + 1] - 0xDC00));
      ++at;
    } else if (unit >= kEscapeBase + 0x80 && unit <= kEscapeBase + 0xFF) {
      native.push_back(static_cast<char>(unit - kEscapeBase));
    } else {
      AppendUtf8(native, unit);  // other lone surrogates stay apart as three bytes each
    }
  }
  return native;
}

std::u16string DeviceFolder() {
  if (const std::string own = Environment("TAMU_HOME"); !own.empty()) return PathFromNative(own);
  // The base directory rules ask for relative paths to be ignored.
  if (const std::string data = Environment("XDG_DATA_HOME"); data.starts_with('/')) {
    return PathFromNative(data + "/tamu");
  }
  if (const std::string home = Environment("HOME"); !home.empty()) {
    return PathFromNative(home + "/.local/share/tamu");
  }
  return {};
}

}  // namespace tamu::platform
