// platform/linux/registry_names.h - names of registry keys and values: how they compare and what
// they may hold.
//   Units      UTF-16 units.
#ifndef TAMU_PLATFORM_LINUX_REGISTRY_NAMES_H_
#define TAMU_PLATFORM_LINUX_REGISTRY_NAMES_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/registry.h"

namespace tamu::platform {

inline constexpr std::size_t kMaxKeyName = 255;
inline constexpr std::size_t kMaxKeyDepth = 512;
inline constexpr std::size_t kMaxValueName = 16383;

// The four keys at the top, in the order of their numbers.
inline constexpr std::size_t kRegistryRoots = 4;

// The name in the one spelling that all names equal to it share: capitals, by a table of its own,
// so that the process locale has no say.
[[nodiscard]] std::u16string FoldName(std::u16string_view name);

// Splits a path at its backslashes; an empty path has no segments. Nothing when a segment is empty
// or too long, or when there are too many.
[[nodiscard]] std::optional<std::vector<std::u16string>> SplitKeyPath(std::u16string_view path);

// True when the name can be written down: no control characters, no lone surrogates.
[[nodiscard]] bool IsWritableName(std::u16string_view name) noexcept;
// True for a surrogate at `at` that is not half of a pair.
[[nodiscard]] bool IsLoneSurrogate(std::u16string_view text, std::size_t at) noexcept;

// "HKEY_LOCAL_MACHINE" and so on, for an index below kRegistryRoots.
[[nodiscard]] std::u16string_view RootName(std::size_t index) noexcept;
[[nodiscard]] std::optional<std::size_t> RootFromName(std::u16string_view name);
[[nodiscard]] std::optional<std::size_t> RootFromKey(RegistryKey key) noexcept;

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_LINUX_REGISTRY_NAMES_H_
