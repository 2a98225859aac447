// platform/linux/code_pages/iso2022_japanese.cpp - code pages 50220 to 50222: ISO-2022-JP (RFC
// 1468) over the characters of page 932.
//   The three read alike: every escape sequence of the family is understood, katakana may come by
//   ESC ( I, by shift-out, as bytes A1 to DF, or in row 2A. They differ in how they write
//   half-width katakana: full width, by ESC ( I, or between shift-out and shift-in. Ours where the
//   platform's corners are not known: a control character ends no mode and is never half of a pair;
//   an escape sequence that is unknown or cut off is text; what is undefined becomes U+30FB, as in
//   page 932.
#include <string_view>

#include "platform/linux/code_pages/japanese_codes.h"
#include "platform/linux/code_pages/output.h"
#include "platform/linux/code_pages/page.h"

namespace tamu::platform::code_pages {
namespace {

constexpr std::uint8_t kShiftOut = 0x0E;
constexpr std::uint8_t kShiftIn = 0x0F;
constexpr std::uint8_t kEscape = 0x1B;
constexpr std::uint8_t kDelete = 0x7F;
constexpr std::uint8_t kKatakanaRow = 0x2A;
constexpr std::uint8_t kLastKatakana = 0x5F;  // 21 to 5F, without the high bit

enum class Set { kAscii, kKatakana, kKanji };

struct EscapeRow {
  std::string_view text;  // after ESC
  Set set;
  bool selects;
};
constexpr EscapeRow kEscapes[] = {
    {"(B", Set::kAscii, true},    {"(J", Set::kAscii, true},  {"(H", Set::kAscii, true},
    {"(I", Set::kKatakana, true}, {"$B", Set::kKanji, true},  {"$@", Set::kKanji, true},
    {"$(D", Set::kKanji, true},   {"&@", Set::kAscii, false},  // announces a revision; ESC $ B
                                                               // follows
};

constexpr bool IsGraphic(std::uint8_t byte) { return byte > 0x20 && byte < kDelete; }

class Reader {
 public:
  Reader(const DecodeJob& job, Output<char16_t>& out)
      : next_(job.bytes), end_(job.bytes + job.byte_count), out_(out) {}

  void ReadAll() {
    while (next_ != end_ && !out_.full()) {
      if (*next_ != kEscape || !ReadEscape()) ReadByte(*next_++);
    }
  }

 private:
  bool ReadEscape() {
    const std::string_view rest(reinterpret_cast<const char*>(next_ + 1),
                                static_cast<std::size_t>(end_ - next_ - 1));
    for (const EscapeRow& row : kEscapes) {
      if (!rest.starts_with(row.text)) continue;
      next_ += 1 + row.text.size();
      if (row.selects) designated_ = active_ = row.set;
      return true;
    }
    return false;
  }

  void ReadByte(std::uint8_t byte) {
    if (byte == kShiftOut) {
      active_ = Set::kKatakana;
    } else if (byte == kShiftIn) {
      active_ = designated_;
    } else if (byte >= 0x80) {
      out_.Put(IsKatakanaByte(byte) ? kTable932.units[byte] : kTable932.default_unit);
    } else if (!IsGraphic(byte) || active_ == Set::kAscii) {
      out_.Put(byte);
    } else if (active_ == Set::kKatakana) {
      out_.Put(Katakana(byte));
    } else if (next_ == end_ || !IsGraphic(*next_)) {
      out_.Put(kTable932.default_unit);
    } else {
      const std::uint8_t cell = *next_++;
      out_.Put(byte == kKatakanaRow ? Katakana(cell) : UnitFromJis(byte, cell));
    }
  }

  static char16_t Katakana(std::uint8_t byte) {
    return byte <= kLastKatakana ? kTable932.units[byte | 0x80] : kTable932.default_unit;
  }

  const std::uint8_t* next_;
  const std::uint8_t* end_;
  Output<char16_t>& out_;
  Set designated_ = Set::kAscii;  // what the last escape sequence chose
  Set active_ = Set::kAscii;      // what bytes mean now
};

// How a page writes half-width katakana.
enum class KatakanaForm { kFullWidth, kEscaped, kShifted };

KatakanaForm FormOf(std::uint32_t page) {
  switch (page) {
    case 50221:
      return KatakanaForm::kEscaped;
    case 50222:
      return KatakanaForm::kShifted;
    default:
      return KatakanaForm::kFullWidth;
  }
}

class Writer {
 public:
  Writer(EncodeJob& job, Output<char>& out)
      : job_(job), out_(out), form_(FormOf(job.page.number)) {}

  void Write(char16_t unit) {
    const std::uint16_t code = kTable932.CodeOf(unit, job_.no_best_fit);
    if (code < 0x80 && (code != 0 || unit == 0)) {
      Select(Set::kAscii);
      out_.Put(static_cast<char>(code));
    } else if (IsKatakanaByte(code)) {
      WriteKatakana(code);
    } else if (const std::uint16_t jis = code < 0x100 ? std::uint16_t{0} : JisFromCode932(code);
               jis != 0) {
      Select(Set::kKanji);
      PutCode(jis, out_);
    } else {
      Select(Set::kAscii);
      PutDefault(job_, out_);
    }
  }

  // Text ends as it starts, in ASCII.
  void Finish() { Select(Set::kAscii); }

 private:
  void WriteKatakana(std::uint16_t byte) {
    switch (form_) {
      case KatakanaForm::kFullWidth:
        Select(Set::kKanji);
        PutCode(FullWidthJis(byte), out_);
        return;
      case KatakanaForm::kEscaped:
        Select(Set::kKatakana);
        break;
      case KatakanaForm::kShifted:
        if (!shifted_) out_.Put(static_cast<char>(kShiftOut));
        shifted_ = true;
        break;
    }
    out_.Put(static_cast<char>(byte & 0x7F));
  }

  void Select(Set set) {
    if (shifted_) out_.Put(static_cast<char>(kShiftIn));
    shifted_ = false;
    if (set == selected_) return;
    selected_ = set;
    const char escape = static_cast<char>(kEscape);
    switch (set) {
      case Set::kAscii:
        out_.Put({escape, '(', 'B'});
        break;
      case Set::kKatakana:
        out_.Put({escape, '(', 'I'});
        break;
      case Set::kKanji:
        out_.Put({escape, '$', 'B'});
        break;
    }
  }

  EncodeJob& job_;
  Output<char>& out_;
  KatakanaForm form_;
  Set selected_ = Set::kAscii;
  bool shifted_ = false;
};

}  // namespace

Outcome DecodeIso2022Japanese(const DecodeJob& job) {
  Output<char16_t> out(job.units, job.capacity);
  Reader(job, out).ReadAll();
  return out.Result();
}

Outcome EncodeIso2022Japanese(EncodeJob& job) {
  Output<char> out(job.bytes, job.capacity);
  Writer writer(job, out);
  for (std::size_t i = 0; i < job.unit_count && !out.full(); ++i) writer.Write(job.units[i]);
  writer.Finish();
  return out.Result();
}

}  // namespace tamu::platform::code_pages
