// platform/linux/code_pages/utf8.cpp - code page 65001.
//   Malformed sequences become U+FFFD. A lead byte C2 to F4 takes the continuation byte after it
//   even when the two together can start no character (E0 80, ED A0, F4 90): that is one U+FFFD,
//   and reading goes on behind them. Otherwise one U+FFFD stands for the longest part that could
//   have become a character, and the byte after that part is read anew; at the end of the text as
//   well, where some systems drop what follows a broken lead byte.
#include "platform/linux/code_pages/output.h"
#include "platform/linux/code_pages/page.h"
#include "platform/linux/code_pages/units.h"

namespace tamu::platform::code_pages {
namespace {

struct Sequence {
  char32_t scalar;
  std::uint8_t length;
  bool valid = true;
};

constexpr Sequence Malformed(std::uint8_t length) { return {kReplacementUnit, length, false}; }

bool IsContinuation(std::uint8_t byte) { return (byte & 0xC0) == 0x80; }

// Which quarters of the continuation bytes (80-8F, 90-9F, A0-AF, B0-BF; the lowest bit is the
// first) may follow a lead byte E0 to F4: overlong forms, surrogates and numbers past U+10FFFF show
// in the second byte.
constexpr std::uint8_t kQuarters[] = {
    0b1100, 0b1111, 0b1111, 0b1111, 0b1111, 0b1111, 0b1111, 0b1111,  // E0
    0b1111, 0b1111, 0b1111, 0b1111, 0b1111, 0b0011, 0b1111, 0b1111,  // E8
    0b1110, 0b1111, 0b1111, 0b1111, 0b0001,                          // F0
};

bool CanStart(std::uint8_t lead, std::uint8_t second) {
  return ((kQuarters[lead - 0xE0] >> ((second >> 4) & 3)) & 1) != 0;
}

// The sequence that starts with a byte from 80 up; `size` is what is left of the text.
Sequence ReadSequence(const std::uint8_t* text, std::size_t size) {
  const std::uint8_t lead = text[0];
  if (lead < 0xC2 || lead > 0xF4 || size < 2 || !IsContinuation(text[1])) return Malformed(1);
  const char32_t tail = text[1] & 0x3FU;
  if (lead < 0xE0) return {((lead & 0x1FU) << 6) | tail, 2};
  if (!CanStart(lead, text[1]) || size < 3 || !IsContinuation(text[2])) return Malformed(2);
  const char32_t tails = (tail << 6) | (text[2] & 0x3FU);
  if (lead < 0xF0) return {((lead & 0x0FU) << 12) | tails, 3};
  if (size < 4 || !IsContinuation(text[3])) return Malformed(3);
  return {((lead & 0x07U) << 18) | (tails << 6) | (text[3] & 0x3FU), 4};
}

void PutScalar(char32_t scalar, Output<char16_t>& out) {
  if (scalar < 0x10000) {
    out.Put(static_cast<char16_t>(scalar));
  } else {
    // A pair that does not fit as a whole is not begun: text never ends in half a character.
    out.Put({static_cast<char16_t>(0xD7C0 + (scalar >> 10)),
             static_cast<char16_t>(0xDC00 | (scalar & 0x3FF))});
  }
}

constexpr char Byte(char32_t value) { return static_cast<char>(value); }

void PutBytes(char32_t scalar, Output<char>& out) {
  if (scalar < 0x80) {
    out.Put(Byte(scalar));
  } else if (scalar < 0x800) {
    out.Put({Byte(0xC0 | (scalar >> 6)), Byte(0x80 | (scalar & 0x3F))});
  } else if (scalar < 0x10000) {
    out.Put({Byte(0xE0 | (scalar >> 12)), Byte(0x80 | ((scalar >> 6) & 0x3F)),
             Byte(0x80 | (scalar & 0x3F))});
  } else {
    out.Put({Byte(0xF0 | (scalar >> 18)), Byte(0x80 | ((scalar >> 12) & 0x3F)),
             Byte(0x80 | ((scalar >> 6) & 0x3F)), Byte(0x80 | (scalar & 0x3F))});
  }
}

// A buffer that is too short outranks malformed text: both directions write all the same and report
// at the end.
Outcome Conclude(Outcome outcome, bool refused) {
  if (outcome.error == kErrorSuccess && refused) return {0, kErrorNoUnicodeTranslation};
  return outcome;
}

}  // namespace

Outcome DecodeUtf8(const DecodeJob& job) {
  Output<char16_t> out(job.units, job.capacity);
  const std::uint8_t* next = job.bytes;
  const std::uint8_t* const end = next + job.byte_count;
  bool malformed = false;
  while (next != end && !out.full()) {
    next += out.PutAscii(next, static_cast<std::size_t>(end - next));
    if (next != end && !out.Reserve(1)) break;
    while (next != end && *next >= 0x80 && !out.full()) {
      const Sequence sequence = ReadSequence(next, static_cast<std::size_t>(end - next));
      PutScalar(sequence.scalar, out);
      malformed |= !sequence.valid;
      next += sequence.length;
    }
  }
  return Conclude(out.Result(), job.strict && malformed);
}

Outcome EncodeUtf8(EncodeJob& job) {
  Output<char> out(job.bytes, job.capacity);
  const char16_t* next = job.units;
  const char16_t* const end = next + job.unit_count;
  bool lone = false;
  while (next != end && !out.full()) {
    next += out.PutAscii(next, static_cast<std::size_t>(end - next));
    if (next != end && !out.Reserve(1)) break;
    while (next != end && *next >= 0x80 && !out.full()) {
      const char16_t unit = *next++;
      char32_t scalar = unit;
      if (IsHighSurrogate(unit) && next != end && IsLowSurrogate(*next)) {
        scalar = 0x10000U + ((unit & 0x3FFU) << 10) + (*next++ & 0x3FFU);
      } else if (IsHighSurrogate(unit) || IsLowSurrogate(unit)) {
        scalar = kReplacementUnit;
        lone = true;
      }
      PutBytes(scalar, out);
    }
  }
  return Conclude(out.Result(), job.strict && lone);
}

}  // namespace tamu::platform::code_pages
