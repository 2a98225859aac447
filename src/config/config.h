// config/config.h - the stack's configuration block in the registry.
//   The values of "Software\Velmora\BTConfig\General" under HKEY_LOCAL_MACHINE as one fixed record.
//   The library itself uses the two charset names only.
//   Units      sizes of texts are characters with their terminator: bytes in the ANSI code page, or
//              UTF-16 units.
//   Ownership  the block is the caller's and owns nothing.
//   Errors     a value that is missing, of another type, too long or not convertible leaves its
//              default.
#ifndef TAMU_CONFIG_CONFIG_H_
#define TAMU_CONFIG_CONFIG_H_

#include <cstddef>
#include <cstdint>

namespace tamu {

inline constexpr std::size_t kConfigPathSize = 260;
inline constexpr std::size_t kConfigDeviceNameSize = 248 + 1;
inline constexpr std::size_t kConfigUnnamedDeviceNameSize = 49 + 1;

struct ConfigBlock {
  const char16_t* key_path;
  const char16_t* subkey;

  char device_name[kConfigDeviceNameSize];
  std::uint32_t minor_class;
  std::uint32_t security_type;
  std::uint32_t country_code;
  std::uint32_t force_dev_class_major;
  std::uint32_t force_dev_class_minor;
  std::uint32_t max_simult_connections;
  std::uint32_t no_sleeping_while_connected;
  std::uint32_t dont_show_advanced;
  char16_t default_status_dll[kConfigPathSize];
  char16_t default_properties_dll[kConfigPathSize];
  char unnamed_device_name[kConfigUnnamedDeviceNameSize];
  char default_input_charset[kConfigPathSize];
  char default_output_charset[kConfigPathSize];
};

// Sets the key's path and every default: minor class 4, security type 2, one simultaneous
// connection, "<No Name>" for unnamed devices, 0 and empty for the rest.
void CONFIG_Init(ConfigBlock& block) noexcept;

// Reads every value of the block's key over what the block holds. Returns the registry's status of
// opening the key (0 success, 2 no such key, ...); with another status than 0 the block is as it
// was.
[[nodiscard]] std::int32_t CONFIG_Read(ConfigBlock& block) noexcept;

}  // namespace tamu

#endif  // TAMU_CONFIG_CONFIG_H_
