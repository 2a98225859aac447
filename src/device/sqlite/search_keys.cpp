#include "device/sqlite/search_keys.h"

#include <string>

#include "text/unicode.h"

namespace tamu::device {
namespace {

// FNV-1a, a unit at a time.
constexpr std::uint64_t kPrime = 0x100000001B3U;

constexpr std::uint64_t Mix(std::uint64_t hash, std::uint64_t number) noexcept {
  return (hash ^ number) * kPrime;
}

}  // namespace

void ExactKey::Add(std::u16string_view text) noexcept {
  for (const char16_t unit : text) hash_ = Mix(hash_, unit);
  hash_ = Mix(hash_, 0x10000U + text.size());  // so that the ends of the texts count
}

std::int64_t FoldedKey(std::u16string_view text) {
  ExactKey key;
  key.Add(UNICODE_FoldText(text));
  return key.value();
}

}  // namespace tamu::device
