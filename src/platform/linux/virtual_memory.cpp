#include "platform/virtual_memory.h"

#include <errno.h>
#include <sys/mman.h>

#include <limits>

#include "platform/linux/errors.h"

namespace tamu::platform {
namespace {

constexpr int kProtection = PROT_READ | PROT_WRITE;
constexpr int kFlags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE;

bool IsMultiple(std::size_t number) noexcept { return number % kPageGranularity == 0; }
std::uintptr_t Number(const void* address) noexcept {
  return reinterpret_cast<std::uintptr_t>(address);
}

// Wherever there is room: maps a granule more than asked for and gives the ends back, so that the
// start is a multiple.
void* MapAnywhere(std::size_t size) noexcept {
  if (size > std::numeric_limits<std::size_t>::max() - kPageGranularity) {
    return FailWith<void*>(kErrorNotEnoughMemory, nullptr);
  }
  void* mapped = ::mmap(nullptr, size + kPageGranularity, kProtection, kFlags, -1, 0);
  if (mapped == MAP_FAILED) return FailWith<void*>(ErrorFromErrno(errno), nullptr);
  auto* start = static_cast<unsigned char*>(mapped);
  const std::size_t before =
      (kPageGranularity - Number(start) % kPageGranularity) % kPageGranularity;
  if (before > 0) ::munmap(start, before);
  ::munmap(start + before + size, kPageGranularity - before);
  return start + before;
}

void* MapAt(void* address, std::size_t size) noexcept {
  void* mapped = ::mmap(address, size, kProtection, kFlags | MAP_FIXED_NOREPLACE, -1, 0);
  if (mapped == address) return mapped;
  const int number = errno;
  if (mapped == MAP_FAILED) {
    return FailWith<void*>(number == EEXIST ? kErrorInvalidAddress : ErrorFromErrno(number),
                           nullptr);
  }
  ::munmap(mapped, size);  // a system that takes the address for a hint only
  return FailWith<void*>(kErrorInvalidAddress, nullptr);
}

void* Allocate(void* address, std::size_t size, std::uint32_t type, std::uint32_t protection) {
  if (size == 0 || !IsMultiple(size) || !IsMultiple(Number(address)) || type != kMemReserveCommit ||
      protection != kPageReadWrite) {
    return FailWith<void*>(kErrorInvalidParameter, nullptr);
  }
  return address ? MapAt(address, size) : MapAnywhere(size);
}

std::int32_t Release(void* address, std::size_t size, std::uint32_t type) {
  if (address == nullptr || size == 0 || !IsMultiple(size) || !IsMultiple(Number(address)) ||
      type != kMemRelease) {
    return FailWith(kErrorInvalidParameter, 0);
  }
  return ::munmap(address, size) == 0 ? 1 : FailWith(ErrorFromErrno(errno), 0);
}

}  // namespace

constinit Service<void*(void*, std::size_t, std::uint32_t, std::uint32_t)> VirtualAlloc{
    "VirtualAlloc", &Allocate, nullptr};
constinit Service<std::int32_t(void*, std::size_t, std::uint32_t)> VirtualFree{"VirtualFree",
                                                                               &Release, 0};

}  // namespace tamu::platform
