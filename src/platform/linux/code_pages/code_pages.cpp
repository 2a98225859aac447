// platform/linux/code_pages/code_pages.cpp - the three services: arguments, flags and errors; the
// families do the rest.
#include "platform/code_pages.h"

#include <iterator>
#include <limits>
#include <string>

#include "platform/linux/code_pages/page.h"

namespace tamu::platform {
namespace {

using code_pages::DecodeJob;
using code_pages::EncodeJob;
using code_pages::FindPage;
using code_pages::Outcome;
using code_pages::PageRow;

constexpr std::uint32_t kFallbackPage = 1252;
constexpr std::size_t kMostResults = std::numeric_limits<std::int32_t>::max();

std::int32_t Fail(std::uint32_t error) {
  SetLastError(error);
  return 0;
}

// The page of the locale, as the service below tells it; 1252 when that is none that converts. What
// goes wrong on the way is no error of the conversion.
const PageRow* AnsiPage() {
  const std::uint32_t last_error = GetLastError();
  char16_t text[16] = {};
  const std::int32_t size = GetLocaleInfoW(kLocaleSystemDefault, kLocaleIDefaultAnsiCodePage, text,
                                           static_cast<std::int32_t>(std::size(text)));
  SetLastError(last_error);
  std::uint32_t number = 0;
  for (std::int32_t i = 0; i + 1 < size; ++i) number = number * 10 + text[i] - u'0';
  const PageRow* const page = FindPage(number);
  return page ? page : FindPage(kFallbackPage);
}

const PageRow* PageOf(std::uint32_t code_page) {
  return code_page == kCpAcp ? AnsiPage() : FindPage(code_page);
}

// True when text and buffer are what both directions ask for; the two may not be the same memory.
bool AreArgumentsRight(const void* text, std::int32_t text_count, const void* buffer,
                       std::int32_t capacity) {
  if (!text || text_count == 0 || capacity < 0) return false;
  return buffer != text && (capacity == 0 || buffer);
}

// A negative count means up to the terminator and with it.
template <typename Character>
std::size_t LengthOf(const Character* text, std::int32_t count) {
  if (count >= 0) return static_cast<std::size_t>(count);
  return std::char_traits<Character>::length(text) + 1;
}

std::int32_t Conclude(Outcome outcome) {
  if (outcome.error != kErrorSuccess) return Fail(outcome.error);
  // More than the result can say: such a text has to be converted in parts.
  if (outcome.count > kMostResults) return Fail(kErrorInvalidParameter);
  return static_cast<std::int32_t>(outcome.count);
}

std::int32_t SystemIsValidCodePage(std::uint32_t code_page) { return FindPage(code_page) ? 1 : 0; }

std::int32_t SystemMultiByteToWideChar(std::uint32_t code_page, std::uint32_t flags,
                                       const char* bytes, std::int32_t byte_count, char16_t* units,
                                       std::int32_t unit_count) {
  if (!AreArgumentsRight(bytes, byte_count, units, unit_count)) return Fail(kErrorInvalidParameter);
  const PageRow* const page = PageOf(code_page);
  if (!page) return Fail(kErrorInvalidParameter);
  if ((flags & ~page->decode_flags) != 0) return Fail(kErrorInvalidFlags);
  const DecodeJob job = {.page = *page,
                         .bytes = reinterpret_cast<const std::uint8_t*>(bytes),
                         .byte_count = LengthOf(bytes, byte_count),
                         .units = unit_count == 0 ? nullptr : units,
                         .capacity = static_cast<std::size_t>(unit_count),
                         .strict = (flags & kMbErrInvalidChars) != 0};
  return Conclude(page->decode(job));
}

std::int32_t SystemWideCharToMultiByte(std::uint32_t code_page, std::uint32_t flags,
                                       const char16_t* units, std::int32_t unit_count, char* bytes,
                                       std::int32_t byte_count, const char* default_char,
                                       std::int32_t* used_default) {
  if (!AreArgumentsRight(units, unit_count, bytes, byte_count)) return Fail(kErrorInvalidParameter);
  const PageRow* const page = PageOf(code_page);
  if (!page) return Fail(kErrorInvalidParameter);
  if (!page->may_replace && (default_char || used_default)) return Fail(kErrorInvalidParameter);
  if ((flags & ~page->encode_flags) != 0) return Fail(kErrorInvalidFlags);
  EncodeJob job = {.page = *page,
                   .units = units,
                   .unit_count = LengthOf(units, unit_count),
                   .bytes = byte_count == 0 ? nullptr : bytes,
                   .capacity = static_cast<std::size_t>(byte_count),
                   .strict = (flags & kWcErrInvalidChars) != 0,
                   .no_best_fit = (flags & kWcNoBestFitChars) != 0,
                   .default_char = default_char,
                   .used_default = false};
  const Outcome outcome = page->encode(job);
  if (used_default) *used_default = job.used_default ? 1 : 0;
  return Conclude(outcome);
}

}  // namespace

constinit Service<std::int32_t(std::uint32_t)> IsValidCodePage{"IsValidCodePage",
                                                               &SystemIsValidCodePage, 0};

constinit Service<std::int32_t(std::uint32_t, std::uint32_t, const char*, std::int32_t, char16_t*,
                               std::int32_t)>
    MultiByteToWideChar{"MultiByteToWideChar", &SystemMultiByteToWideChar, 0};

constinit Service<std::int32_t(std::uint32_t, std::uint32_t, const char16_t*, std::int32_t, char*,
                               std::int32_t, const char*, std::int32_t*)>
    WideCharToMultiByte{"WideCharToMultiByte", &SystemWideCharToMultiByte, 0};

}  // namespace tamu::platform
