// platform/linux/code_pages/tables.h - the constant tables of the pages that are converted by
// table.
//   They are made at build time by make_tables.cpp from data/*.txt and live in read-only memory;
//   nothing is computed at start-up. Codes are a byte, or lead byte * 256 + trail byte.
#ifndef TAMU_PLATFORM_LINUX_CODE_PAGES_TABLES_H_
#define TAMU_PLATFORM_LINUX_CODE_PAGES_TABLES_H_

#include <cstddef>
#include <cstdint>

namespace tamu::platform::code_pages {

// Codes are looked up by unit in two steps: the unit's upper bits name a block, its lower bits an
// entry of the block. Code 0 means "not in the page" for every unit but U+0000.
inline constexpr unsigned kBlockBits = 6;
inline constexpr std::size_t kBlockMask = (std::size_t{1} << kBlockBits) - 1;

struct SingleByteTable {
  bool ascii;                    // bytes 00 to 7F are ASCII
  const char16_t* units;         // by byte; "?" where the byte is undefined
  const std::uint8_t* block_of;  // by unit >> kBlockBits
  const std::uint8_t* codes;

  [[nodiscard]] std::uint8_t CodeOf(char16_t unit) const noexcept {
    return codes[(std::size_t{block_of[unit >> kBlockBits]} << kBlockBits) + (unit & kBlockMask)];
  }
};

struct DoubleByteTable {
  char16_t default_unit;       // what undefined sequences decode to
  std::uint16_t default_code;  // the one code that stands for that unit itself
  std::uint8_t first_trail;    // rows start with this trail byte; pairs below it are undefined
  const char16_t* units;       // by single byte
  const std::uint8_t* row_of;  // by lead byte: 1 + row; 0 for a byte that is not a lead byte
  const char16_t* rows;
  const std::uint16_t* block_of;  // by unit >> kBlockBits
  const std::uint16_t* codes;

  [[nodiscard]] bool IsLead(std::uint8_t byte) const noexcept { return row_of[byte] != 0; }

  [[nodiscard]] char16_t UnitOfPair(std::uint8_t lead, std::uint8_t trail) const noexcept {
    if (trail < first_trail) return default_unit;
    const std::size_t width = std::size_t{256} - first_trail;
    return rows[(row_of[lead] - std::size_t{1}) * width + (trail - std::size_t{first_trail})];
  }

  // `code` is one that CodeOf answers.
  [[nodiscard]] char16_t UnitOf(std::uint16_t code) const noexcept {
    if (code < 0x100) return units[code];
    return UnitOfPair(static_cast<std::uint8_t>(code >> 8), static_cast<std::uint8_t>(code & 0xFF));
  }

  [[nodiscard]] std::uint16_t CodeOf(char16_t unit) const noexcept {
    return codes[(std::size_t{block_of[unit >> kBlockBits]} << kBlockBits) + (unit & kBlockMask)];
  }

  // As CodeOf, but 0 also for a unit that only has a look-alike in the page.
  [[nodiscard]] std::uint16_t CodeOf(char16_t unit, bool no_best_fit) const noexcept {
    const std::uint16_t code = CodeOf(unit);
    return no_best_fit && UnitOf(code) != unit ? std::uint16_t{0} : code;
  }
};

extern const SingleByteTable kTable1250, kTable1251, kTable1252, kTable1253, kTable1254, kTable1255,
    kTable1256, kTable1257, kTable1258, kTable852, kTable866, kTable874, kTable20105, kTable20106,
    kTable20107, kTable20108, kTable20866, kTable28591, kTable28592, kTable28593, kTable28594,
    kTable28595, kTable28596, kTable28597, kTable28598, kTable28599, kTable28605;
extern const DoubleByteTable kTable932, kTable936, kTable949, kTable950, kTable20949;

}  // namespace tamu::platform::code_pages

#endif  // TAMU_PLATFORM_LINUX_CODE_PAGES_TABLES_H_
