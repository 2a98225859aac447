// platform/linux/code_pages/ascii.h - the ASCII stretches of a text, eight characters at a time.
//   Units      the functions take and return numbers of characters: bytes on one side, UTF-16 units
//              on the other.
//   Errors     none.
#ifndef TAMU_PLATFORM_LINUX_CODE_PAGES_ASCII_H_
#define TAMU_PLATFORM_LINUX_CODE_PAGES_ASCII_H_

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tamu::platform::code_pages {

inline constexpr std::size_t kAsciiStep = 8;

#if defined(__SSE2__)

// By hand: compilers take the tested word apart byte by byte when the steps are written as loops.
[[nodiscard]] inline bool StepIsAscii(const std::uint8_t* bytes) noexcept {
  return (_mm_movemask_epi8(_mm_loadu_si64(bytes)) & 0xFF) == 0;
}

[[nodiscard]] inline __m128i LoadUnits(const char16_t* units) noexcept {
  return _mm_loadu_si128(static_cast<const __m128i*>(static_cast<const void*>(units)));
}

[[nodiscard]] inline bool StepIsAscii(const char16_t* units) noexcept {
  const __m128i high = _mm_and_si128(LoadUnits(units), _mm_set1_epi16(-0x80));
  return _mm_movemask_epi8(_mm_cmpeq_epi16(high, _mm_setzero_si128())) == 0xFFFF;
}

inline void CopyStep(const std::uint8_t* from, char16_t* to) noexcept {
  const __m128i units = _mm_unpacklo_epi8(_mm_loadu_si64(from), _mm_setzero_si128());
  _mm_storeu_si128(static_cast<__m128i*>(static_cast<void*>(to)), units);
}

inline void CopyStep(const char16_t* from, char* to) noexcept {
  _mm_storeu_si64(to, _mm_packus_epi16(LoadUnits(from), _mm_setzero_si128()));
}

#else

[[nodiscard]] inline bool StepIsAscii(const std::uint8_t* bytes) noexcept {
  std::uint64_t word;
  std::memcpy(&word, bytes, sizeof word);
  return (word & 0x8080808080808080U) == 0;
}

[[nodiscard]] inline bool StepIsAscii(const char16_t* units) noexcept {
  std::uint64_t words[2];
  std::memcpy(words, units, sizeof words);
  return ((words[0] | words[1]) & 0xFF80FF80FF80FF80U) == 0;
}

template <typename From, typename To>
inline void CopyStep(const From* from, To* to) noexcept {
  for (std::size_t i = 0; i < kAsciiStep; ++i) to[i] = static_cast<To>(from[i]);
}

#endif

// Number of characters below 80 that `text` starts with, at most `count`.
template <typename From>
[[nodiscard]] inline std::size_t CountAscii(const From* text, std::size_t count) noexcept {
  std::size_t i = 0;
  while (count - i >= kAsciiStep && StepIsAscii(text + i)) i += kAsciiStep;
  while (i < count && text[i] < 0x80) ++i;
  return i;
}

// As CountAscii, and copies them.
template <typename From, typename To>
[[nodiscard]] inline std::size_t CopyAscii(const From* text, std::size_t count, To* to) noexcept {
  std::size_t i = 0;
  for (; count - i >= kAsciiStep && StepIsAscii(text + i); i += kAsciiStep) {
    CopyStep(text + i, to + i);
  }
  for (; i < count && text[i] < 0x80; ++i) to[i] = static_cast<To>(text[i]);
  return i;
}

}  // namespace tamu::platform::code_pages

#endif  // TAMU_PLATFORM_LINUX_CODE_PAGES_ASCII_H_
