#include "device/ink/ink_text.h"

#include <cstddef>
#include <limits>

#include "device/ink/ink_bytes.h"
#include "platform/code_pages.h"

namespace tamu::device {
namespace {

constexpr std::size_t kLongest = std::numeric_limits<std::int32_t>::max();

}  // namespace

bool INK_FromCodePage(std::uint32_t page, std::span<const std::uint8_t> bytes,
                      std::u16string* text) {
  text->clear();
  if (bytes.empty()) return true;
  if (bytes.size() > kLongest) return false;
  const auto* const characters = reinterpret_cast<const char*>(bytes.data());
  const auto size = static_cast<std::int32_t>(bytes.size());
  const std::int32_t units = platform::MultiByteToWideChar(page, 0, characters, size, nullptr, 0);
  if (units <= 0) return false;
  text->resize(static_cast<std::size_t>(units));
  if (platform::MultiByteToWideChar(page, 0, characters, size, text->data(), units) == units) {
    return true;
  }
  text->clear();
  return false;
}

bool INK_ToCodePage(std::uint32_t page, std::u16string_view text,
                    std::vector<std::uint8_t>* bytes) {
  bytes->clear();
  if (text.empty()) return true;
  if (text.size() > kLongest) return false;
  const auto units = static_cast<std::int32_t>(text.size());
  const std::int32_t size =
      platform::WideCharToMultiByte(page, 0, text.data(), units, nullptr, 0, nullptr, nullptr);
  if (size <= 0) return false;
  bytes->resize(static_cast<std::size_t>(size));
  if (platform::WideCharToMultiByte(page, 0, text.data(), units,
                                    reinterpret_cast<char*>(bytes->data()), size, nullptr,
                                    nullptr) == size) {
    return true;
  }
  bytes->clear();
  return false;
}

std::u16string INK_FromUtf16(std::span<const std::uint8_t> bytes) {
  std::u16string text;
  text.reserve(bytes.size() / 2);
  for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) text.push_back(ReadU16(bytes, at));
  return text;
}

std::vector<std::uint8_t> INK_ToUtf16(std::u16string_view text) {
  std::vector<std::uint8_t> bytes;
  bytes.reserve(text.size() * 2);
  for (const char16_t unit : text) {
    bytes.push_back(static_cast<std::uint8_t>(unit & 0xFF));
    bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
  }
  return bytes;
}

}  // namespace tamu::device
