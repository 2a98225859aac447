// platform/code_pages_support.h - the conversion services as functions from text to text, for
// tests.
#ifndef TAMU_TESTS_PLATFORM_CODE_PAGES_SUPPORT_H_
#define TAMU_TESTS_PLATFORM_CODE_PAGES_SUPPORT_H_

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/code_pages.h"
#include "platform/last_error.h"

namespace tamu::platform::testing {

inline constexpr std::uint32_t kUntouched = 4711;  // a last error that nothing here sets

inline constexpr std::uint32_t kAllPages[] = {
    65001, 65000, 1250,  1251,  1252,  1253,  1254,  1255,  1256,  1257,
    1258,  874,   932,   936,   949,   950,   852,   866,   20866, 28591,
    28592, 28593, 28594, 28595, 28596, 28597, 28598, 28599, 28605, 20105,
    20106, 20107, 20108, 50220, 50221, 50222, 50225, 52936, 51949, 51932};

inline std::int32_t Size(std::size_t size) { return static_cast<std::int32_t>(size); }

// Bytes to units by measuring and converting. Both must agree; the last error must be left alone.
// Text that decodes to nothing, and failure, are both empty: the last error tells them apart.
inline std::u16string Decode(std::uint32_t page, std::string_view bytes, std::uint32_t flags = 0) {
  SetLastError(kUntouched);
  const std::int32_t size =
      MultiByteToWideChar(page, flags, bytes.data(), Size(bytes.size()), nullptr, 0);
  if (size == 0) return {};
  std::u16string units(static_cast<std::size_t>(size), u'\xFFFF');
  EXPECT_EQ(size,
            MultiByteToWideChar(page, flags, bytes.data(), Size(bytes.size()), units.data(), size));
  EXPECT_EQ(kUntouched, GetLastError());
  return units;
}

struct Encoded {
  std::string bytes;
  bool used_default = false;
};

inline Encoded EncodeWith(std::uint32_t page, std::u16string_view units, std::uint32_t flags,
                          const char* default_char) {
  const bool may_replace = page != kCpUtf7 && page != kCpUtf8;
  std::int32_t used = -1;
  std::int32_t* const used_default = may_replace ? &used : nullptr;
  SetLastError(kUntouched);
  const std::int32_t size = WideCharToMultiByte(page, flags, units.data(), Size(units.size()),
                                                nullptr, 0, default_char, used_default);
  if (size == 0) return {};
  const std::int32_t measured_used = used;
  Encoded result{std::string(static_cast<std::size_t>(size), '\xAA'), false};
  EXPECT_EQ(size, WideCharToMultiByte(page, flags, units.data(), Size(units.size()),
                                      result.bytes.data(), size, default_char, used_default));
  EXPECT_EQ(measured_used, used);
  EXPECT_EQ(kUntouched, GetLastError());
  result.used_default = used == 1;
  return result;
}

inline std::string Encode(std::uint32_t page, std::u16string_view units, std::uint32_t flags = 0,
                          const char* default_char = nullptr) {
  return EncodeWith(page, units, flags, default_char).bytes;
}

}  // namespace tamu::platform::testing

#endif  // TAMU_TESTS_PLATFORM_CODE_PAGES_SUPPORT_H_
