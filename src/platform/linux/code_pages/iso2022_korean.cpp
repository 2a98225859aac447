// platform/linux/code_pages/iso2022_korean.cpp - code page 50225: ISO-2022-KR (RFC 1557) over the
// pairs A1A1 to FEFE of page 949.
//   The designator ESC $ ) C is written before the first Korean character only, plain text stays as
//   it is; reading does without it. Ours where the platform's corners are not known: blanks and
//   control characters pass through inside shift-out and are never half of a pair, bytes from 80 up
//   and undefined pairs become "?".
#include <string_view>

#include "platform/linux/code_pages/output.h"
#include "platform/linux/code_pages/page.h"

namespace tamu::platform::code_pages {
namespace {

constexpr std::uint8_t kShiftOut = 0x0E;
constexpr std::uint8_t kShiftIn = 0x0F;
constexpr std::string_view kDesignator = "\x1B$)C";

constexpr bool IsGraphic(std::uint8_t byte) { return byte > 0x20 && byte < 0x7F; }
constexpr std::uint8_t High(std::uint8_t byte) { return byte | 0x80; }

bool IsKorean(std::uint16_t code) { return (code >> 8) >= 0xA1 && (code & 0xFF) >= 0xA1; }

class Writer {
 public:
  Writer(EncodeJob& job, Output<char>& out) : job_(job), out_(out) {}

  void Write(char16_t unit) {
    const std::uint16_t code = kTable949.CodeOf(unit, job_.no_best_fit);
    if (IsKorean(code)) {
      ShiftOut();
      PutCode(code & 0x7F7F, out_);
    } else {
      ShiftIn();
      if (code < 0x80 && (code != 0 || unit == 0)) {
        out_.Put(static_cast<char>(code));
      } else {
        PutDefault(job_, out_);
      }
    }
  }

  void ShiftIn() {
    if (shifted_) out_.Put(static_cast<char>(kShiftIn));
    shifted_ = false;
  }

 private:
  void ShiftOut() {
    if (!designated_) out_.Put({kDesignator[0], kDesignator[1], kDesignator[2], kDesignator[3]});
    designated_ = true;
    if (!shifted_) out_.Put(static_cast<char>(kShiftOut));
    shifted_ = true;
  }

  EncodeJob& job_;
  Output<char>& out_;
  bool designated_ = false;
  bool shifted_ = false;
};

}  // namespace

Outcome DecodeIso2022Korean(const DecodeJob& job) {
  Output<char16_t> out(job.units, job.capacity);
  const std::string_view text(reinterpret_cast<const char*>(job.bytes), job.byte_count);
  bool shifted = false;
  for (std::size_t i = 0; i < job.byte_count && !out.full();) {
    if (text.substr(i).starts_with(kDesignator)) {
      i += kDesignator.size();
      continue;
    }
    const std::uint8_t byte = job.bytes[i++];
    if (byte == kShiftOut || byte == kShiftIn) {
      shifted = byte == kShiftOut;
    } else if (byte >= 0x80) {
      out.Put(kTable949.default_unit);
    } else if (!shifted || !IsGraphic(byte)) {
      out.Put(byte);
    } else if (i == job.byte_count || !IsGraphic(job.bytes[i])) {
      out.Put(kTable949.default_unit);
    } else {
      out.Put(kTable949.UnitOfPair(High(byte), High(job.bytes[i++])));
    }
  }
  return out.Result();
}

Outcome EncodeIso2022Korean(EncodeJob& job) {
  Output<char> out(job.bytes, job.capacity);
  Writer writer(job, out);
  for (std::size_t i = 0; i < job.unit_count && !out.full(); ++i) writer.Write(job.units[i]);
  writer.ShiftIn();
  return out.Result();
}

}  // namespace tamu::platform::code_pages
