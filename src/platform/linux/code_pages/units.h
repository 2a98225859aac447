// platform/linux/code_pages/units.h - the classes of UTF-16 units that conversions ask for.
#ifndef TAMU_PLATFORM_LINUX_CODE_PAGES_UNITS_H_
#define TAMU_PLATFORM_LINUX_CODE_PAGES_UNITS_H_

namespace tamu::platform::code_pages {

inline constexpr char16_t kReplacementUnit = 0xFFFD;

[[nodiscard]] constexpr bool IsPrivateUse(char16_t unit) noexcept {
  return unit >= 0xE000 && unit <= 0xF8FF;
}
[[nodiscard]] constexpr bool IsHighSurrogate(char16_t unit) noexcept {
  return (unit & 0xFC00) == 0xD800;
}
[[nodiscard]] constexpr bool IsLowSurrogate(char16_t unit) noexcept {
  return (unit & 0xFC00) == 0xDC00;
}

}  // namespace tamu::platform::code_pages

#endif  // TAMU_PLATFORM_LINUX_CODE_PAGES_UNITS_H_
