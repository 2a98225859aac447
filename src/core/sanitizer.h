// core/sanitizer.h - AddressSanitizer's poisoning, and nothing where it is not built in.
#ifndef TAMU_CORE_SANITIZER_H_
#define TAMU_CORE_SANITIZER_H_

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__)
#define TAMU_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TAMU_ADDRESS_SANITIZER 1
#endif
#endif

#ifdef TAMU_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#endif

namespace tamu {

#ifdef TAMU_ADDRESS_SANITIZER
inline constexpr bool kAddressSanitizer = true;
inline void PoisonMemory(const void* start, std::size_t size) noexcept {
  __asan_poison_memory_region(start, size);
}
inline void UnpoisonMemory(const void* start, std::size_t size) noexcept {
  __asan_unpoison_memory_region(start, size);
}
inline bool MemoryIsPoisoned(const void* address) noexcept {
  return __asan_address_is_poisoned(address) != 0;
}
#else
inline constexpr bool kAddressSanitizer = false;
inline void PoisonMemory(const void*, std::size_t) noexcept {}
inline void UnpoisonMemory(const void*, std::size_t) noexcept {}
inline bool MemoryIsPoisoned(const void*) noexcept { return false; }
#endif

}  // namespace tamu

#endif  // TAMU_CORE_SANITIZER_H_
