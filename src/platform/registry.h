// platform/registry.h - the device's registry: keys that hold named values.
//   Units      value sizes are bytes; strings are UTF-16 and stored with their terminator.
//   Ownership  an opened key is the caller's until RegCloseKey; buffers are the caller's.
//   Errors     the status is the result itself (0, 2 not found, 5, 87, 234 more data, ...), not
//   GetLastError.
#ifndef TAMU_PLATFORM_REGISTRY_H_
#define TAMU_PLATFORM_REGISTRY_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/service.h"

namespace tamu::platform {

using RegistryKey = std::uintptr_t;  // the platform's HKEY

inline constexpr RegistryKey kHkeyClassesRoot = 0x80000000U;
inline constexpr RegistryKey kHkeyCurrentUser = 0x80000001U;
inline constexpr RegistryKey kHkeyLocalMachine = 0x80000002U;
inline constexpr RegistryKey kHkeyUsers = 0x80000003U;

inline constexpr std::uint32_t kRegSz = 1;
inline constexpr std::uint32_t kRegDword = 4;

inline constexpr std::uint32_t kKeyRead = 0x20019;
inline constexpr std::uint32_t kKeyWrite = 0x20006;

// Opens the key at `path` (segments between backslashes, without regard to case) below `root`.
extern Service<std::int32_t(RegistryKey root, const char16_t* path, std::uint32_t options,
                            std::uint32_t access, RegistryKey* key)>
    RegOpenKeyExW;

// Reads a value: `*type` (may be null) and, when `data` is given, at most `*size` bytes of it;
// `*size` becomes the value's size. A buffer that is too small gives 234 and is left alone.
extern Service<std::int32_t(RegistryKey key, const char16_t* name, std::uint32_t* reserved,
                            std::uint32_t* type, std::uint8_t* data, std::uint32_t* size)>
    RegQueryValueExW;

// Stores a value durably: when 0 is returned, the change is on disk in one piece.
extern Service<std::int32_t(RegistryKey key, const char16_t* name, std::uint32_t reserved,
                            std::uint32_t type, const std::uint8_t* data, std::uint32_t size)>
    RegSetValueExW;

// Opens the key, making it and the keys above it where they are missing; `*disposition` (may be
// null) is 1 for a new key and 2 for one that was there.
extern Service<std::int32_t(RegistryKey root, const char16_t* path, std::uint32_t reserved,
                            char16_t* class_name, std::uint32_t options, std::uint32_t access,
                            void* security, RegistryKey* key, std::uint32_t* disposition)>
    RegCreateKeyExW;

extern Service<std::int32_t(RegistryKey key)> RegCloseKey;

// One place of the registry's own storage that could not be read and was passed over.
struct RegistryProblem {
  std::string file;  // as the system spells it
  std::uint32_t line = 0;
  std::string reason;
};

// What was passed over since the registry was first read; always empty on a system that keeps the
// registry itself.
[[nodiscard]] std::vector<RegistryProblem> RegistryProblems();

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_REGISTRY_H_
