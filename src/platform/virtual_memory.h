// platform/virtual_memory.h - pages of memory at chosen addresses.
//   Units      bytes; addresses and sizes are multiples of kPageGranularity.
#ifndef TAMU_PLATFORM_VIRTUAL_MEMORY_H_
#define TAMU_PLATFORM_VIRTUAL_MEMORY_H_

#include <cstddef>
#include <cstdint>

#include "platform/service.h"

namespace tamu::platform {

inline constexpr std::size_t kPageGranularity = 64 * 1024;
inline constexpr std::uint32_t kMemReserveCommit = 0x3000;
inline constexpr std::uint32_t kMemRelease = 0x8000;
inline constexpr std::uint32_t kPageReadWrite = 0x04;

// Maps zeroed memory at exactly `address`, or returns null when it is taken or there is none.
extern Service<void*(void* address, std::size_t size, std::uint32_t type, std::uint32_t protection)>
    VirtualAlloc;
// Gives back what one VirtualAlloc call mapped; `size` is that call's (0 on systems that know it).
extern Service<std::int32_t(void* address, std::size_t size, std::uint32_t type)> VirtualFree;

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_VIRTUAL_MEMORY_H_
