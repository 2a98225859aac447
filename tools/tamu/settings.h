// settings.h - the device's settings: one table of what they are called, where they are kept, and
// what they may be.
//   Errors     texts for people; std::bad_alloc.
#ifndef TAMU_TOOLS_SETTINGS_H_
#define TAMU_TOOLS_SETTINGS_H_

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tamu::tool {

enum class SettingType : std::uint8_t {
  kText,
  kNumber,    // decimal, or hexadecimal behind "0x"
  kCharset,   // a character set name, NATIVE, or nothing
  kCodePage,  // the number of a code page
  kAddress,   // an IPv4 address, or "off"
};

struct Setting {
  std::string_view name;
  const char16_t* key;  // below HKEY_LOCAL_MACHINE
  const char16_t* value;
  SettingType type;
  std::uint32_t most_characters;  // of a text
  std::string_view default_text;  // as people write it; "" for none
  std::string_view meaning;
};

[[nodiscard]] std::span<const Setting> SETTING_All() noexcept;

// The setting with this name, without regard to case, or null.
[[nodiscard]] const Setting* SETTING_Find(std::string_view name) noexcept;

// What the registry holds, as people write it, UTF-8; none when it is not set or of another type.
[[nodiscard]] std::optional<std::string> SETTING_Read(const Setting& setting);

// Stores a value. False, with the reason in `*problem`, for one that the setting cannot have, and
// when the registry cannot be written.
[[nodiscard]] bool SETTING_Write(const Setting& setting, const std::string& text,
                                 std::string* problem);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_SETTINGS_H_
