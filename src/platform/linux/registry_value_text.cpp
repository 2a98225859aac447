#include "platform/linux/registry_value_text.h"

#include <algorithm>

#include "platform/linux/registry_names.h"

namespace tamu::platform {
namespace {

constexpr std::uint32_t kRegBinary = 3;
constexpr std::size_t kColumns = 78;  // a line of hexadecimal data, its backslash included
constexpr const char* kDamagedString = "a quoted text has no closing quote";
constexpr const char* kDamagedHex = "hexadecimal data is malformed";

class EntryParser {
 public:
  EntryParser(std::u16string_view text, std::size_t start, RegistryEntry& entry)
      : text_(text), at_(start), entry_(entry) {}

  const char* Parse() {
    entry_ = RegistryEntry{};
    entry_.end = at_;
    if (const char* error = ParseName()) return error;
    at_ = SkipBlanks(text_, at_);
    if (Peek() != u'=') return "no \"=\" behind the name";
    at_ = SkipBlanks(text_, at_ + 1);
    if (const char* error = ParseData()) return error;
    if (!RestIsBlank(text_, at_)) return "unexpected text behind the value";
    entry_.end = at_;
    return nullptr;
  }

 private:
  // The unit at an offset; a line end behind the last one.
  char16_t Peek(std::size_t ahead = 0) const {
    return at_ + ahead < text_.size() ? text_[at_ + ahead] : u'\n';
  }

  const char* ParseName() {
    if (Peek() == u'@') {
      ++at_;
      return nullptr;
    }
    if (const char* error = ParseQuoted(entry_.name, false)) return error;
    const bool valid =
        entry_.name.size() <= kMaxValueName && entry_.name.find(u'\0') == std::u16string::npos;
    return valid ? nullptr : "the value's name is not allowed";
  }

  const char* ParseData() {
    if (Peek() == u'-') {
      ++at_;
      entry_.removal = true;
      return nullptr;
    }
    if (Peek() == u'"') return ParseString();
    if (TakeKeyword(u"dword:")) return ParseDword();
    if (TakeKeyword(u"hex")) return ParseHex();
    return "the type of the value is not known";
  }

  // Takes a keyword in any case.
  bool TakeKeyword(std::u16string_view keyword) {
    for (std::size_t i = 0; i < keyword.size(); ++i) {
      const char16_t unit = Peek(i);
      const bool capital = unit >= u'A' && unit <= u'Z';
      if ((capital ? static_cast<char16_t>(unit + 32) : unit) != keyword[i]) return false;
    }
    at_ += keyword.size();
    return true;
  }

  // A quoted text from its first quote to behind its last. Exported texts that hold line ends have
  // them as they are, so `several_lines` goes on over them. A text whose closing quote is lost ends
  // at the first quote of the next entry and has the rest of that entry behind it: it is damaged,
  // and the next entry is not.
  const char* ParseQuoted(std::u16string& out, bool several_lines) {
    for (++at_; at_ < text_.size(); ++at_) {
      const char16_t unit = text_[at_];
      if (unit == u'"') {
        ++at_;
        return nullptr;
      }
      if (unit == u'\n' && !several_lines) return kDamagedString;
      const bool escape = unit == u'\\' && (Peek(1) == u'\\' || Peek(1) == u'"');
      if (escape) ++at_;
      out.push_back(text_[at_]);
    }
    return kDamagedString;
  }

  const char* ParseString() {
    std::u16string value;
    if (const char* error = ParseQuoted(value, true)) return error;
    if (value.find(u'\0') != std::u16string::npos) return "a quoted text holds a NUL";
    value.push_back(u'\0');
    entry_.data.type = kRegSz;
    entry_.data.bytes.reserve(value.size() * 2);
    for (const char16_t unit : value) {
      entry_.data.bytes.push_back(static_cast<std::uint8_t>(unit & 0xFF));
      entry_.data.bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
    }
    return nullptr;
  }

  // Up to `most` hexadecimal digits; false when there is none.
  bool TakeDigits(int most, std::uint32_t& number) {
    number = 0;
    int count = 0;
    for (; count < most; ++count, ++at_) {
      const char16_t unit = Peek();
      std::uint32_t digit = 0;
      if (unit >= u'0' && unit <= u'9') {
        digit = unit - std::uint32_t{u'0'};
      } else if (const char16_t small = unit | 0x20; small >= u'a' && small <= u'f') {
        digit = small - std::uint32_t{u'a'} + 10;
      } else {
        break;
      }
      number = number << 4 | digit;
    }
    return count > 0;
  }

  const char* ParseDword() {
    std::uint32_t number = 0;
    at_ = SkipBlanks(text_, at_);
    if (!TakeDigits(8, number)) return "a number is malformed";
    entry_.data.type = kRegDword;
    for (int shift = 0; shift < 32; shift += 8) {
      entry_.data.bytes.push_back(static_cast<std::uint8_t>(number >> shift & 0xFF));
    }
    return nullptr;
  }

  const char* ParseHex() {
    entry_.data.type = kRegBinary;
    if (Peek() == u'(') {
      ++at_;
      if (!TakeDigits(8, entry_.data.type) || Peek() != u')') return kDamagedHex;
      ++at_;
    }
    if (Peek() != u':') return kDamagedHex;
    ++at_;
    if (const char* error = ParseHexBytes()) return error;
    return entry_.data.type == kRegSz ? FinishHexString() : nullptr;
  }

  // Bytes between commas. Whatever lines they reach into belong to the entry, also when it is
  // damaged.
  const char* ParseHexBytes() {
    std::vector<std::uint8_t>& bytes = entry_.data.bytes;
    if (!SkipToHex()) return nullptr;  // no bytes at all
    for (;;) {
      std::uint32_t byte = 0;
      if (!SkipToHex() || !TakeDigits(2, byte)) return kDamagedHex;
      bytes.push_back(static_cast<std::uint8_t>(byte));
      const std::size_t behind = at_;
      if (!SkipToHex() || Peek() != u',') {
        at_ = behind;
        return nullptr;
      }
      ++at_;
    }
  }

  // Skips blanks and line continuations to what follows in the data; false when the data ends
  // there. A continuation counts only when hexadecimal digits start the next line, so that a
  // damaged entry swallows no other.
  bool SkipToHex() {
    at_ = SkipBlanks(text_, at_);
    while (Peek() == u'\\') {
      std::size_t end = SkipBlanks(text_, at_ + 1);
      if (end < text_.size() && text_[end] == u'\r') ++end;
      if (end >= text_.size() || text_[end] != u'\n') return false;
      const std::size_t next = SkipBlanks(text_, end + 1);
      if (next >= text_.size() || !IsHexStart(text_[next])) return false;
      at_ = next;
      entry_.end = next;
    }
    return IsHexStart(Peek()) || Peek() == u',';
  }

  static bool IsHexStart(char16_t unit) {
    const char16_t small = unit | 0x20;
    return (unit >= u'0' && unit <= u'9') || (small >= u'a' && small <= u'f');
  }

  // Strings are whole units and always end in a terminator, whatever the file says.
  const char* FinishHexString() {
    std::vector<std::uint8_t>& bytes = entry_.data.bytes;
    if (bytes.size() % 2 != 0) return "a string in hexadecimal has an odd number of bytes";
    const bool terminated =
        !bytes.empty() && bytes[bytes.size() - 1] == 0 && bytes[bytes.size() - 2] == 0;
    if (!terminated) bytes.insert(bytes.end(), 2, 0);
    return nullptr;
  }

  std::u16string_view text_;
  std::size_t at_;
  RegistryEntry& entry_;
};

std::u16string Quoted(std::u16string_view text) {
  std::u16string out(1, u'"');
  for (const char16_t unit : text) {
    if (unit == u'"' || unit == u'\\') out.push_back(u'\\');
    out.push_back(unit);
  }
  out.push_back(u'"');
  return out;
}

void AppendHex(std::u16string& out, std::uint32_t number, int digits) {
  for (int shift = (digits - 1) * 4; shift >= 0; shift -= 4)
    out.push_back(u"0123456789abcdef"[number >> shift & 0xF]);
}

// The string without its terminator, when a quoted text can hold it.
bool AsQuotableText(const RegistryData& data, std::u16string& text) {
  if (data.type != kRegSz || data.bytes.empty() || data.bytes.size() % 2 != 0) return false;
  for (std::size_t i = 0; i < data.bytes.size(); i += 2) {
    text.push_back(static_cast<char16_t>(data.bytes[i] | data.bytes[i + 1] << 8));
  }
  if (text.back() != u'\0') return false;
  text.pop_back();
  return IsWritableName(text);
}

void AppendHexData(std::u16string& out, const RegistryData& data, std::u16string_view newline) {
  out += u"hex";
  if (data.type != kRegBinary) {
    const int digits = data.type < 0x10 ? 1 : 8;
    out.push_back(u'(');
    AppendHex(out, data.type, digits);
    out.push_back(u')');
  }
  out.push_back(u':');
  std::size_t column = out.size();
  for (std::size_t i = 0; i < data.bytes.size(); ++i) {
    AppendHex(out, data.bytes[i], 2);
    column += 3;
    if (i + 1 == data.bytes.size()) break;
    out.push_back(u',');
    if (column + 3 >= kColumns) {
      out.push_back(u'\\');
      out += newline;
      out += u"  ";
      column = 2;
    }
  }
}

}  // namespace

std::size_t LineFeedFrom(std::u16string_view text, std::size_t at) noexcept {
  return std::min(text.find(u'\n', at), text.size());
}

std::size_t SkipBlanks(std::u16string_view text, std::size_t at) noexcept {
  while (at < text.size() && (text[at] == u' ' || text[at] == u'\t')) ++at;
  return at;
}

bool RestIsBlank(std::u16string_view text, std::size_t at) noexcept {
  const std::size_t next = SkipBlanks(text, at);
  if (next >= text.size() || text[next] == u';' || text[next] == u'\n') return true;
  return text[next] == u'\r' && (next + 1 == text.size() || text[next + 1] == u'\n');
}

const char* ParseRegistryEntry(std::u16string_view text, std::size_t start, RegistryEntry& entry) {
  return EntryParser(text, start, entry).Parse();
}

std::u16string FormatRegistryEntry(std::u16string_view name, const RegistryData& data,
                                   std::u16string_view newline) {
  std::u16string out = name.empty() ? std::u16string(u"@") : Quoted(name);
  out.push_back(u'=');
  std::u16string text;
  if (AsQuotableText(data, text)) {
    out += Quoted(text);
  } else if (data.type == kRegDword && data.bytes.size() == 4) {
    out += u"dword:";
    for (std::size_t i = 4; i-- > 0;) AppendHex(out, data.bytes[i], 2);
  } else {
    AppendHexData(out, data, newline);
  }
  return out;
}

}  // namespace tamu::platform
