// platform/linux/code_pages/japanese_codes.cpp - the formula between JIS and shifted JIS, and the
// two places of the characters that the makers added.
#include "platform/linux/code_pages/japanese_codes.h"

namespace tamu::platform::code_pages {
namespace {

constexpr unsigned kFirstCell = 0x21;
constexpr unsigned kFirstTrail = 0x40;
constexpr unsigned kSkippedTrail = 0x7F;
constexpr unsigned kFirstLead = 0x81;
constexpr unsigned kLastLowLead = 0x9F;
constexpr unsigned kLeadGap = 0x40;  // between lead bytes 9F and E0
constexpr unsigned kLastJisLead = 0xEF;
constexpr unsigned kCellsPerLead = 188;

// Position of a code in the sequence of all codes, and back.
constexpr unsigned PositionOf(unsigned code) {
  const unsigned lead = code >> 8;
  const unsigned trail = code & 0xFF;
  return (lead - (lead > kLastLowLead ? kLeadGap : 0) - kFirstLead) * kCellsPerLead + trail -
         kFirstTrail - (trail > kSkippedTrail ? 1 : 0);
}

constexpr unsigned CodeAt(unsigned position) {
  const unsigned lead = position / kCellsPerLead + kFirstLead;
  const unsigned trail = position % kCellsPerLead + kFirstTrail;
  return ((lead + (lead > kLastLowLead ? kLeadGap : 0)) << 8) + trail +
         (trail >= kSkippedTrail ? 1 : 0);
}

static_assert(PositionOf(0x8140) == 0 && CodeAt(0) == 0x8140);
static_assert(PositionOf(0xE040) == 31 * kCellsPerLead && CodeAt(PositionOf(0xE080)) == 0xE080);
static_assert(CodeAt(PositionOf(0xFC4B)) == 0xFC4B);

// The area FA40 to FC4B repeats, code by code, characters that rows 13 and 89 to 92 hold as well.
struct Repeated {
  std::uint16_t first;
  std::uint16_t last;
  std::uint16_t original;
};
constexpr Repeated kRepeated[] = {
    {0xFA40, 0xFA49, 0xEEEF}, {0xFA4A, 0xFA53, 0x8754}, {0xFA54, 0xFA57, 0xEEF9},
    {0xFA58, 0xFA58, 0x878A}, {0xFA59, 0xFA59, 0x8782}, {0xFA5A, 0xFA5A, 0x8784},
    {0xFA5B, 0xFA5B, 0x879A}, {0xFA5C, 0xFC4B, 0xED40},
};

constexpr unsigned OriginalOf(unsigned code) {
  for (const Repeated& row : kRepeated) {
    if (code >= row.first && code <= row.last) {
      return CodeAt(PositionOf(row.original) + PositionOf(code) - PositionOf(row.first));
    }
  }
  return code;
}
static_assert(OriginalOf(0xFC4B) == 0xEEEC);

constexpr std::uint16_t kFullWidth[] = {
    0x2123, 0x2156, 0x2157, 0x2122, 0x2126, 0x2572, 0x2521, 0x2523, 0x2525, 0x2527, 0x2529,
    0x2563, 0x2565, 0x2567, 0x2543, 0x213C, 0x2522, 0x2524, 0x2526, 0x2528, 0x252A, 0x252B,
    0x252D, 0x252F, 0x2531, 0x2533, 0x2535, 0x2537, 0x2539, 0x253B, 0x253D, 0x253F, 0x2541,
    0x2544, 0x2546, 0x2548, 0x254A, 0x254B, 0x254C, 0x254D, 0x254E, 0x254F, 0x2552, 0x2555,
    0x2558, 0x255B, 0x255E, 0x255F, 0x2560, 0x2561, 0x2562, 0x2564, 0x2566, 0x2568, 0x2569,
    0x256A, 0x256B, 0x256C, 0x256D, 0x256F, 0x2573, 0x212B, 0x212C};
static_assert(sizeof kFullWidth / sizeof *kFullWidth == 0xDF - 0xA1 + 1);

}  // namespace

char16_t UnitFromJis(std::uint8_t row, std::uint8_t cell) noexcept {
  const unsigned rows = row - kFirstCell;
  const unsigned cells = cell - kFirstCell;
  const unsigned code =
      CodeAt((rows / 2) * kCellsPerLead + (rows % 2) * (kCellsPerLead / 2) + cells);
  return kTable932.UnitOf(static_cast<std::uint16_t>(code));
}

std::uint16_t JisFromCode932(std::uint16_t code) noexcept {
  const unsigned original = OriginalOf(code);
  if (original >> 8 > kLastJisLead) return 0;
  const unsigned position = PositionOf(original);
  const unsigned half = kCellsPerLead / 2;
  return static_cast<std::uint16_t>(((position / half + kFirstCell) << 8) + position % half +
                                    kFirstCell);
}

std::uint16_t FullWidthJis(std::uint16_t katakana_byte) noexcept {
  return kFullWidth[katakana_byte - 0xA1];
}

}  // namespace tamu::platform::code_pages
