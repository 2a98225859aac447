// platform/linux/code_pages/page.h - one row a code page, and what a conversion of any family is
// asked and answers.
//   Units      byte counts for 8-bit text, UTF-16 units for wide text.
//   Ownership  everything a job points at is the caller's.
//   Errors     in Outcome::error; kErrorSuccess (0) with the number of bytes or units produced.
#ifndef TAMU_PLATFORM_LINUX_CODE_PAGES_PAGE_H_
#define TAMU_PLATFORM_LINUX_CODE_PAGES_PAGE_H_

#include <cstddef>
#include <cstdint>

#include "platform/code_pages.h"
#include "platform/last_error.h"
#include "platform/linux/code_pages/tables.h"

namespace tamu::platform::code_pages {

struct Outcome {
  std::size_t count = 0;
  std::uint32_t error = kErrorSuccess;
};

struct PageRow;

// Bytes to units. `units` is null when the result is only measured.
struct DecodeJob {
  const PageRow& page;
  const std::uint8_t* bytes;
  std::size_t byte_count;
  char16_t* units;
  std::size_t capacity;
  bool strict;  // malformed input fails
};

// Units to bytes. `bytes` is null when the result is only measured.
struct EncodeJob {
  const PageRow& page;
  const char16_t* units;
  std::size_t unit_count;
  char* bytes;
  std::size_t capacity;
  bool strict;               // lone surrogates fail (UTF-8)
  bool no_best_fit;          // look-alikes count as unmapped
  const char* default_char;  // replaces unmapped units; null for "?"
  bool used_default;         // set when a unit was replaced
};

using DecodeFunction = Outcome (*)(const DecodeJob& job);
using EncodeFunction = Outcome (*)(EncodeJob& job);

struct PageRow {
  std::uint32_t number;
  DecodeFunction decode;
  EncodeFunction encode;
  std::uint32_t decode_flags;  // those that the page knows
  std::uint32_t encode_flags;  // those that the page knows
  bool may_replace = true;     // a default character may be given and its use asked for
  const SingleByteTable* single = nullptr;
  const DoubleByteTable* pairs = nullptr;
};

// The row of a page, or null for one that cannot be converted.
[[nodiscard]] const PageRow* FindPage(std::uint32_t number) noexcept;

// The families. Each measures and converts in one pass, stops with 122 at the first character that
// does not fit, and never writes a part of a character.
[[nodiscard]] Outcome DecodeSingleByte(const DecodeJob& job);
[[nodiscard]] Outcome EncodeSingleByte(EncodeJob& job);
[[nodiscard]] Outcome DecodeDoubleByte(const DecodeJob& job);
[[nodiscard]] Outcome EncodeDoubleByte(EncodeJob& job);
[[nodiscard]] Outcome DecodeEucJapanese(const DecodeJob& job);
[[nodiscard]] Outcome EncodeEucJapanese(EncodeJob& job);
[[nodiscard]] Outcome DecodeIso2022Japanese(const DecodeJob& job);
[[nodiscard]] Outcome EncodeIso2022Japanese(EncodeJob& job);
[[nodiscard]] Outcome DecodeIso2022Korean(const DecodeJob& job);
[[nodiscard]] Outcome EncodeIso2022Korean(EncodeJob& job);
[[nodiscard]] Outcome DecodeHz(const DecodeJob& job);
[[nodiscard]] Outcome EncodeHz(EncodeJob& job);
[[nodiscard]] Outcome DecodeUtf7(const DecodeJob& job);
[[nodiscard]] Outcome EncodeUtf7(EncodeJob& job);
[[nodiscard]] Outcome DecodeUtf8(const DecodeJob& job);
[[nodiscard]] Outcome EncodeUtf8(EncodeJob& job);

}  // namespace tamu::platform::code_pages

#endif  // TAMU_PLATFORM_LINUX_CODE_PAGES_PAGE_H_
