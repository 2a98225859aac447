// platform/linux/code_pages/euc_japanese.cpp - code page 51932: the characters of page 932 in
// extended Unix code.
//   A1-FE + A1-FE is a JIS code with both high bits set, 8E + A1-DF half-width katakana; 80, A0 and
//   FF are what they are in page 932. The platform has no third character set: 8F and the pair
//   after it are one undefined character. Undefined sequences are treated as in the double-byte
//   pages, with U+30FB.
#include "platform/linux/code_pages/japanese_codes.h"
#include "platform/linux/code_pages/output.h"
#include "platform/linux/code_pages/page.h"
#include "platform/linux/code_pages/units.h"

namespace tamu::platform::code_pages {
namespace {

constexpr std::uint8_t kKatakanaShift = 0x8E;
constexpr std::uint8_t kThirdSetShift = 0x8F;
constexpr std::uint16_t kHighBits = 0x8080;
constexpr std::uint16_t kMiddleDot = 0xA1A6;  // U+30FB's own code

constexpr bool IsHigh(std::uint8_t byte) { return byte >= 0xA1 && byte <= 0xFE; }
constexpr bool IsLead(std::uint8_t byte) { return IsHigh(byte) || byte == kKatakanaShift; }
constexpr bool IsSingle(std::uint16_t code) {
  return code < 0x80 || code == 0x80 || code == 0xA0 || code == 0xFF;
}
constexpr std::uint8_t Low(std::uint8_t byte) { return byte & 0x7F; }

struct Character {
  char16_t unit;
  std::uint8_t length;
  bool valid;
};

constexpr char16_t kDefault = 0x30FB;

Character ReadPair(std::uint8_t lead, std::uint8_t trail) {
  if (lead == kKatakanaShift) {
    return IsKatakanaByte(trail) ? Character{kTable932.units[trail], 2, true}
                                 : Character{kDefault, 2, false};
  }
  if (!IsHigh(trail)) return {kDefault, 2, false};
  const char16_t unit = UnitFromJis(Low(lead), Low(trail));
  return {unit, 2, unit != kDefault || ((lead << 8) | trail) == kMiddleDot};
}

Character ReadCharacter(const std::uint8_t* text, std::size_t size) {
  const std::uint8_t byte = text[0];
  if (IsSingle(byte)) {
    const char16_t unit = kTable932.units[byte];
    return {unit, 1, !IsPrivateUse(unit)};
  }
  if (byte == kThirdSetShift && size > 2 && IsHigh(text[1]) && IsHigh(text[2])) {
    return {kDefault, 3, false};
  }
  if (!IsLead(byte) || size < 2 || text[1] == 0) return {kDefault, 1, false};
  return ReadPair(byte, text[1]);
}

bool HasUndefined(const DecodeJob& job) {
  for (std::size_t i = 0; i < job.byte_count;) {
    const Character character = ReadCharacter(job.bytes + i, job.byte_count - i);
    if (!character.valid) return true;
    i += character.length;
  }
  return false;
}

// 0 when the unit has no code.
std::uint16_t CodeOf(char16_t unit, bool no_best_fit) {
  const std::uint16_t code = kTable932.CodeOf(unit, no_best_fit);
  if (code >= 0x100) {
    const std::uint16_t jis = JisFromCode932(code);
    return jis == 0 ? jis : static_cast<std::uint16_t>(jis | kHighBits);
  }
  if (IsKatakanaByte(code)) return static_cast<std::uint16_t>((kKatakanaShift << 8) | code);
  return IsSingle(code) ? code : std::uint16_t{0};
}

}  // namespace

Outcome DecodeEucJapanese(const DecodeJob& job) {
  if (job.strict && HasUndefined(job)) return {0, kErrorNoUnicodeTranslation};
  Output<char16_t> out(job.units, job.capacity);
  for (std::size_t i = 0; i < job.byte_count && !out.full();) {
    i += out.PutAscii(job.bytes + i, job.byte_count - i);
    if (i == job.byte_count) break;
    const Character character = ReadCharacter(job.bytes + i, job.byte_count - i);
    out.Put(character.unit);
    i += character.length;
  }
  return out.Result();
}

Outcome EncodeEucJapanese(EncodeJob& job) {
  const bool pair_replaces =
      job.default_char && IsLead(static_cast<std::uint8_t>(*job.default_char));
  Output<char> out(job.bytes, job.capacity);
  for (std::size_t i = 0; i < job.unit_count && !out.full();) {
    i += out.PutAscii(job.units + i, job.unit_count - i);
    if (i == job.unit_count) break;
    const char16_t unit = job.units[i++];
    const std::uint16_t code = CodeOf(unit, job.no_best_fit);
    if (code != 0 || unit == 0) {
      PutCode(code, out);
    } else {
      PutDefault(job, out, pair_replaces);
    }
  }
  return out.Result();
}

}  // namespace tamu::platform::code_pages
