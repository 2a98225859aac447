// platform/linux/code_pages/pages.cpp - the code pages that can be converted, one row each.
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include "platform/linux/code_pages/page.h"

namespace tamu::platform::code_pages {
namespace {

constexpr std::uint32_t kNoFlags = 0;

// The platform's other flags of these two functions ask for composed, decomposed or glyph
// characters, which no caller of ours does: they are refused like unknown ones rather than ignored.
constexpr std::uint32_t kTableDecodeFlags = kMbPrecomposed | kMbErrInvalidChars;
constexpr std::uint32_t kTableEncodeFlags = kWcNoBestFitChars;

constexpr PageRow Single(std::uint32_t number, const SingleByteTable& table) {
  return {.number = number,
          .decode = DecodeSingleByte,
          .encode = EncodeSingleByte,
          .decode_flags = kTableDecodeFlags,
          .encode_flags = kTableEncodeFlags,
          .single = &table};
}

constexpr PageRow Double(std::uint32_t number, const DoubleByteTable& table) {
  return {.number = number,
          .decode = DecodeDoubleByte,
          .encode = EncodeDoubleByte,
          .decode_flags = kTableDecodeFlags,
          .encode_flags = kTableEncodeFlags,
          .pairs = &table};
}

constexpr PageRow Derived(std::uint32_t number, DecodeFunction decode, EncodeFunction encode) {
  return {.number = number,
          .decode = decode,
          .encode = encode,
          .decode_flags = kTableDecodeFlags,
          .encode_flags = kTableEncodeFlags};
}

constexpr PageRow Escaped(std::uint32_t number, DecodeFunction decode, EncodeFunction encode) {
  return {.number = number,
          .decode = decode,
          .encode = encode,
          .decode_flags = kNoFlags,
          .encode_flags = kNoFlags};
}

constexpr PageRow kPages[] = {
    Single(852, kTable852),
    Single(866, kTable866),
    Single(874, kTable874),
    Double(932, kTable932),
    Double(936, kTable936),
    Double(949, kTable949),
    Double(950, kTable950),
    Single(1250, kTable1250),
    Single(1251, kTable1251),
    Single(1252, kTable1252),
    Single(1253, kTable1253),
    Single(1254, kTable1254),
    Single(1255, kTable1255),
    Single(1256, kTable1256),
    Single(1257, kTable1257),
    Single(1258, kTable1258),
    Single(20105, kTable20105),
    Single(20106, kTable20106),
    Single(20107, kTable20107),
    Single(20108, kTable20108),
    Single(20866, kTable20866),
    Single(28591, kTable28591),
    Single(28592, kTable28592),
    Single(28593, kTable28593),
    Single(28594, kTable28594),
    Single(28595, kTable28595),
    Single(28596, kTable28596),
    Single(28597, kTable28597),
    Single(28598, kTable28598),
    Single(28599, kTable28599),
    Single(28605, kTable28605),
    Escaped(50220, DecodeIso2022Japanese, EncodeIso2022Japanese),
    Escaped(50221, DecodeIso2022Japanese, EncodeIso2022Japanese),
    Escaped(50222, DecodeIso2022Japanese, EncodeIso2022Japanese),
    Escaped(50225, DecodeIso2022Korean, EncodeIso2022Korean),
    Derived(51932, DecodeEucJapanese, EncodeEucJapanese),
    Double(51949, kTable20949),
    Derived(52936, DecodeHz, EncodeHz),
    {.number = kCpUtf7,
     .decode = DecodeUtf7,
     .encode = EncodeUtf7,
     .decode_flags = kNoFlags,
     .encode_flags = kNoFlags,
     .may_replace = false},
    {.number = kCpUtf8,
     .decode = DecodeUtf8,
     .encode = EncodeUtf8,
     .decode_flags = kMbErrInvalidChars,
     .encode_flags = kWcErrInvalidChars,
     .may_replace = false},
};

// Every conversion starts with a look-up, so it takes one step: the numbers differ by their
// remainders.
constexpr bool TellsApart(std::uint32_t divisor) {
  for (const PageRow& row : kPages) {
    for (const PageRow* other = kPages; other != &row; ++other) {
      if (row.number % divisor == other->number % divisor) return false;
    }
  }
  return true;
}

constexpr std::uint32_t SmallestDivisor() {
  std::uint32_t divisor = std::size(kPages);
  while (!TellsApart(divisor)) ++divisor;
  return divisor;
}

constexpr std::uint32_t kDivisor = SmallestDivisor();

constexpr std::array<std::uint8_t, kDivisor> MakeRowOf() {
  std::array<std::uint8_t, kDivisor> row_of{};
  for (std::size_t i = 0; i < std::size(kPages); ++i) {
    row_of[kPages[i].number % kDivisor] = static_cast<std::uint8_t>(i);
  }
  return row_of;
}

constexpr std::array<std::uint8_t, kDivisor> kRowOf = MakeRowOf();
static_assert(kDivisor < 1024 && std::size(kPages) <= 256);

}  // namespace

const PageRow* FindPage(std::uint32_t number) noexcept {
  const PageRow& row = kPages[kRowOf[number % kDivisor]];
  return row.number == number ? &row : nullptr;
}

}  // namespace tamu::platform::code_pages
