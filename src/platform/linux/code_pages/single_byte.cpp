// platform/linux/code_pages/single_byte.cpp - pages of one byte a character, by table.
//   A byte that a page leaves undefined still decodes (to the control character of its number, to a
//   private-use unit, or to "?"), so that with no flag every text converts.
#include <algorithm>

#include "platform/linux/code_pages/ascii.h"
#include "platform/linux/code_pages/output.h"
#include "platform/linux/code_pages/page.h"
#include "platform/linux/code_pages/units.h"

namespace tamu::platform::code_pages {
namespace {

// What the strict flag refuses: private-use units, and "?" that does not come from a question mark.
bool HasUndefined(const SingleByteTable& table, const DecodeJob& job) {
  return std::any_of(job.bytes, job.bytes + job.byte_count, [&table](std::uint8_t byte) {
    const char16_t unit = table.units[byte];
    return IsPrivateUse(unit) || (unit == u'?' && byte != '?');
  });
}

}  // namespace

Outcome DecodeSingleByte(const DecodeJob& job) {
  const SingleByteTable& table = *job.page.single;
  if (job.strict && HasUndefined(table, job)) return {0, kErrorNoUnicodeTranslation};
  if (!job.units) return {job.byte_count};
  const std::size_t count = std::min(job.byte_count, job.capacity);
  std::size_t i = table.ascii ? CopyAscii(job.bytes, count, job.units) : 0;
  for (; i < count; ++i) job.units[i] = table.units[job.bytes[i]];
  return {count, count < job.byte_count ? kErrorInsufficientBuffer : kErrorSuccess};
}

Outcome EncodeSingleByte(EncodeJob& job) {
  const std::size_t count = job.bytes ? std::min(job.unit_count, job.capacity) : job.unit_count;
  // A copy: the bytes that are written could otherwise be the table itself, as far as the compiler
  // knows.
  const SingleByteTable table = *job.page.single;
  const char replacement = job.default_char ? *job.default_char : '?';
  const bool no_best_fit = job.no_best_fit;
  const char16_t* const units = job.units;
  char* const bytes = job.bytes;
  bool used_default = false;
  for (std::size_t i = 0; i < count;) {
    if (table.ascii && units[i] < 0x80) {
      i += bytes ? CopyAscii(units + i, count - i, bytes + i) : CountAscii(units + i, count - i);
      continue;
    }
    const char16_t unit = units[i];
    const std::uint8_t code = table.CodeOf(unit);
    const bool mapped = (code != 0 || unit == 0) && (!no_best_fit || table.units[code] == unit);
    used_default |= !mapped;
    if (bytes) bytes[i] = mapped ? static_cast<char>(code) : replacement;
    ++i;
  }
  job.used_default = used_default;
  return {count, count < job.unit_count ? kErrorInsufficientBuffer : kErrorSuccess};
}

}  // namespace tamu::platform::code_pages
