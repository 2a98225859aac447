// support/failing_new.h - the program's own allocation, with a seam: after so many more allocations
// every one fails.
//   Replaces operator new for the whole program: included by one source file of it.
#ifndef TAMU_TESTS_SUPPORT_FAILING_NEW_H_
#define TAMU_TESTS_SUPPORT_FAILING_NEW_H_

#include <cstddef>
#include <cstdlib>
#include <new>

namespace tamu::testing {

inline int allocations_left = -1;  // negative: as many as wanted

// Counts one allocation; false when it has to fail.
inline bool MayAllocate() noexcept {
  if (allocations_left < 0) return true;
  if (allocations_left == 0) return false;
  --allocations_left;
  return true;
}

inline void* AllocateOrNull(std::size_t size) noexcept {
  return MayAllocate() ? std::malloc(size > 0 ? size : 1) : nullptr;
}

}  // namespace tamu::testing

[[gnu::noinline]] void* operator new(std::size_t size) {
  void* const memory = tamu::testing::AllocateOrNull(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return tamu::testing::AllocateOrNull(size);
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

#endif  // TAMU_TESTS_SUPPORT_FAILING_NEW_H_
