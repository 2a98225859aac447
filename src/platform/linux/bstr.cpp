#include "platform/bstr.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "platform/linux/errors.h"

namespace tamu::platform {
namespace {

// The length stands in the last four of these bytes; eight keep the text as aligned as the C
// library's blocks allow.
constexpr std::size_t kPrefixBytes = 8;
constexpr std::size_t kLengthBytes = 4;

// Most units of one string: the length in bytes has 32 bits, and the block has to stay below half
// of the memory.
constexpr std::uint32_t kMaxUnits = static_cast<std::uint32_t>(
    (std::min<std::uint64_t>(std::numeric_limits<std::uint32_t>::max(),
                             std::numeric_limits<std::ptrdiff_t>::max()) -
     kPrefixBytes - sizeof(char16_t)) /
    sizeof(char16_t));
static_assert(std::uint64_t{kMaxUnits} * sizeof(char16_t) + kPrefixBytes + sizeof(char16_t) <=
              std::uint64_t{std::numeric_limits<std::size_t>::max()});

std::atomic<std::intptr_t> live_strings{0};

char16_t* AllocateLength(const char16_t* text, std::uint32_t length) {
  if (length > kMaxUnits) return FailWith<char16_t*>(kErrorNotEnoughMemory, nullptr);
  const std::uint32_t bytes = length * std::uint32_t{sizeof(char16_t)};
  auto* block = static_cast<unsigned char*>(std::malloc(kPrefixBytes + bytes + sizeof(char16_t)));
  if (block == nullptr) return FailWith<char16_t*>(kErrorNotEnoughMemory, nullptr);
  unsigned char* string = block + kPrefixBytes;
  std::memcpy(string - kLengthBytes, &bytes, kLengthBytes);
  if (text && bytes) std::memcpy(string, text, bytes);
  std::memset(string + bytes, 0, sizeof(char16_t));
  live_strings.fetch_add(1, std::memory_order_relaxed);
  return static_cast<char16_t*>(static_cast<void*>(string));
}

char16_t* AllocateTerminated(const char16_t* text) {
  if (text == nullptr) return nullptr;
  const std::size_t length = std::u16string_view(text).size();
  if (length > kMaxUnits) return FailWith<char16_t*>(kErrorNotEnoughMemory, nullptr);
  return AllocateLength(text, static_cast<std::uint32_t>(length));
}

}  // namespace

constinit Service<char16_t*(const char16_t*)> SysAllocString{"SysAllocString", &AllocateTerminated,
                                                             nullptr};
constinit Service<char16_t*(const char16_t*, std::uint32_t)> SysAllocStringLen{
    "SysAllocStringLen", &AllocateLength, nullptr};

void SysFreeString(char16_t* string) noexcept {
  if (string == nullptr) return;
  live_strings.fetch_sub(1, std::memory_order_relaxed);
  std::free(static_cast<unsigned char*>(static_cast<void*>(string)) - kPrefixBytes);
}

std::uint32_t SysStringLen(const char16_t* string) noexcept {
  if (string == nullptr) return 0;
  std::uint32_t bytes = 0;
  std::memcpy(&bytes,
              static_cast<const unsigned char*>(static_cast<const void*>(string)) - kLengthBytes,
              kLengthBytes);
  return bytes / std::uint32_t{sizeof(char16_t)};
}

std::int64_t SysLiveStrings() noexcept { return live_strings.load(std::memory_order_relaxed); }

}  // namespace tamu::platform
