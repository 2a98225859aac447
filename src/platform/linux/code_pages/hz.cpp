// platform/linux/code_pages/hz.cpp - code page 52936: HZ (RFC 1843) over the pairs A1A1 to F7FE of
// page 936.
//   "~{" and "~}" enclose pairs, "~~" is a tilde, "~" and a line feed are a line that goes on. Ours
//   where the platform's corners are not known: a tilde with anything else after it is text outside
//   of "~{", bytes from 80 up and undefined pairs become "?", and all of these fail with the strict
//   flag. Inside "~{" control characters and blanks are themselves, and a character's second half
//   may be a blank: U+3000.
#include "platform/linux/code_pages/output.h"
#include "platform/linux/code_pages/page.h"

namespace tamu::platform::code_pages {
namespace {

constexpr char16_t kIdeographicSpace = 0x3000;

constexpr bool IsGraphic(std::uint8_t byte) { return byte > 0x20 && byte < 0x7F; }
constexpr std::uint8_t High(std::uint8_t byte) { return byte | 0x80; }

bool IsChinese(std::uint16_t code) {
  return code >= 0xA1A1 && code <= 0xF7FE && (code & 0xFF) >= 0xA1;
}

class Reader {
 public:
  Reader(const DecodeJob& job, Output<char16_t>& out)
      : next_(job.bytes), end_(job.bytes + job.byte_count), out_(out) {}

  // False when something was malformed.
  bool ReadAll() {
    while (next_ != end_ && !out_.full()) {
      const std::uint8_t byte = *next_++;
      if (byte == '~' && next_ != end_ && ReadEscape(*next_)) {
        ++next_;
      } else if (byte >= 0x80) {
        PutMalformed(kTable936.default_unit);
      } else if (!chinese_ && byte == '~') {
        PutMalformed(u'~');
      } else if (!chinese_ || !IsGraphic(byte)) {
        out_.Put(byte);
      } else {
        ReadPair(byte);
      }
    }
    return !malformed_;
  }

 private:
  bool ReadEscape(std::uint8_t byte) {
    switch (byte) {
      case '{':
        chinese_ = true;
        return true;
      case '}':
        chinese_ = false;
        return true;
      case '~':
        out_.Put(u'~');
        return true;
      case '\n':
        return true;
      default:
        return false;
    }
  }

  void ReadPair(std::uint8_t lead) {
    if (next_ == end_ || (*next_ != ' ' && !IsGraphic(*next_))) {
      PutMalformed(kTable936.default_unit);
      return;
    }
    const std::uint8_t trail = *next_++;
    if (trail == ' ') {
      out_.Put(kIdeographicSpace);
      return;
    }
    const bool chinese = IsChinese(static_cast<std::uint16_t>((High(lead) << 8) | High(trail)));
    const char16_t unit =
        chinese ? kTable936.UnitOfPair(High(lead), High(trail)) : kTable936.default_unit;
    if (unit == kTable936.default_unit) {
      PutMalformed(unit);
    } else {
      out_.Put(unit);
    }
  }

  void PutMalformed(char16_t unit) {
    malformed_ = true;
    out_.Put(unit);
  }

  const std::uint8_t* next_;
  const std::uint8_t* end_;
  Output<char16_t>& out_;
  bool chinese_ = false;
  bool malformed_ = false;
};

class Writer {
 public:
  Writer(EncodeJob& job, Output<char>& out) : job_(job), out_(out) {}

  void Write(char16_t unit) {
    const std::uint16_t code = kTable936.CodeOf(unit, job_.no_best_fit);
    if (IsChinese(code)) {
      if (!chinese_) out_.Put({'~', '{'});
      chinese_ = true;
      PutCode(code & 0x7F7F, out_);
      return;
    }
    Finish();
    if (code == '~') {
      out_.Put({'~', '~'});
    } else if (code < 0x80 && (code != 0 || unit == 0)) {
      out_.Put(static_cast<char>(code));
    } else {
      PutDefault(job_, out_);
    }
  }

  void Finish() {
    if (chinese_) out_.Put({'~', '}'});
    chinese_ = false;
  }

 private:
  EncodeJob& job_;
  Output<char>& out_;
  bool chinese_ = false;
};

}  // namespace

Outcome DecodeHz(const DecodeJob& job) {
  if (job.strict) {
    Output<char16_t> nowhere(nullptr, 0);
    if (!Reader(job, nowhere).ReadAll()) return {0, kErrorNoUnicodeTranslation};
  }
  Output<char16_t> out(job.units, job.capacity);
  static_cast<void>(Reader(job, out).ReadAll());
  return out.Result();
}

Outcome EncodeHz(EncodeJob& job) {
  Output<char> out(job.bytes, job.capacity);
  Writer writer(job, out);
  for (std::size_t i = 0; i < job.unit_count && !out.full(); ++i) writer.Write(job.units[i]);
  writer.Finish();
  return out.Result();
}

}  // namespace tamu::platform::code_pages
