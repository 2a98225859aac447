// platform/linux/mapi_buffer.h - the blocks that the messaging store gives away: one root that all
// further blocks of an answer hang on, freed together.
#ifndef TAMU_PLATFORM_LINUX_MAPI_BUFFER_H_
#define TAMU_PLATFORM_LINUX_MAPI_BUFFER_H_

#include <cstddef>
#include <cstdint>

namespace tamu::platform {

// A root block of `size` zeroed bytes, aligned for any value; null when memory runs out.
[[nodiscard]] void* AllocateMapiBuffer(std::size_t size) noexcept;
// A further block that is freed with `root`, which comes from AllocateMapiBuffer.
[[nodiscard]] void* AllocateMapiMore(std::size_t size, void* root) noexcept;
// Frees a root with all that hangs on it; null does nothing.
void FreeMapiBuffer(void* root) noexcept;
// Roots that live now, for tests.
[[nodiscard]] std::int64_t LiveMapiBuffers() noexcept;

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_LINUX_MAPI_BUFFER_H_
