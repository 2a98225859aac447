// platform/linux/code_pages/double_byte.cpp - pages of one and two bytes a character, by table.
//   A lead byte takes the byte after it, whatever that is, and gives the page's default unit when
//   the two are no character; only a NUL and the end of the text are never taken.
#include "platform/linux/code_pages/output.h"
#include "platform/linux/code_pages/page.h"
#include "platform/linux/code_pages/units.h"

namespace tamu::platform::code_pages {
namespace {

// What the strict flag refuses: undefined pairs, lone lead bytes, and private-use units from a
// single byte.
bool HasUndefined(const DoubleByteTable& table, const DecodeJob& job) {
  const std::uint8_t* const end = job.bytes + job.byte_count;
  for (const std::uint8_t* next = job.bytes; next != end; ++next) {
    if (!table.IsLead(*next)) {
      if (IsPrivateUse(table.units[*next])) return true;
      continue;
    }
    const std::uint8_t lead = *next;
    if (++next == end || *next == 0) return true;
    const bool is_default_itself = ((lead << 8) | *next) == table.default_code;
    if (table.UnitOfPair(lead, *next) == table.default_unit && !is_default_itself) return true;
  }
  return false;
}

}  // namespace

Outcome DecodeDoubleByte(const DecodeJob& job) {
  const DoubleByteTable& table = *job.page.pairs;
  if (job.strict && HasUndefined(table, job)) return {0, kErrorNoUnicodeTranslation};
  Output<char16_t> out(job.units, job.capacity);
  const std::uint8_t* next = job.bytes;
  const std::uint8_t* const end = next + job.byte_count;
  while (next != end && !out.full()) {
    next += out.PutAscii(next, static_cast<std::size_t>(end - next));
    if (next != end && !out.Reserve(1)) break;
    while (next != end && *next >= 0x80 && !out.full()) {
      const std::uint8_t byte = *next++;
      if (!table.IsLead(byte)) {
        out.Put(table.units[byte]);
      } else if (next == end || *next == 0) {
        out.Put(table.default_unit);
      } else {
        out.Put(table.UnitOfPair(byte, *next++));
      }
    }
  }
  return out.Result();
}

Outcome EncodeDoubleByte(EncodeJob& job) {
  // A copy: the bytes that are written could otherwise be the table itself, as far as the compiler
  // knows.
  const DoubleByteTable table = *job.page.pairs;
  const bool no_best_fit = job.no_best_fit;
  const bool pair_replaces =
      job.default_char && table.IsLead(static_cast<std::uint8_t>(*job.default_char));
  Output<char> out(job.bytes, job.capacity);
  const char16_t* next = job.units;
  const char16_t* const end = next + job.unit_count;
  while (next != end && !out.full()) {
    next += out.PutAscii(next, static_cast<std::size_t>(end - next));
    if (next != end && !out.Reserve(1)) break;
    while (next != end && *next >= 0x80 && !out.full()) {
      const std::uint16_t code = table.CodeOf(*next++, no_best_fit);
      if (code != 0) {
        PutCode(code, out);
      } else {
        PutDefault(job, out, pair_replaces);
      }
    }
  }
  return out.Result();
}

}  // namespace tamu::platform::code_pages
