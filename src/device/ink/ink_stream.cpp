#include "device/ink/ink_stream.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace tamu::device {
namespace {

constexpr std::uint8_t kWideUnit = 0xC0;
constexpr std::uint8_t kLatin1 = 0xC1;
constexpr std::uint8_t kInkWordReference = 0xC2;
constexpr std::uint8_t kObjectReference = 0xC5;
constexpr std::uint8_t kControl = 0xC4;
constexpr std::uint8_t kItalic = 0xE9;
constexpr std::uint8_t kUnderline = 0xEA;

constexpr std::uint8_t kControlEnd = 0x00;
constexpr std::uint8_t kControlTab = 0x04;

constexpr char16_t kFirstWideUnit = 0x4000;
constexpr std::uint8_t kUnknown = 0xFF;

// Parameter bytes of the commands from 0xC0 on.
constexpr std::array<std::uint8_t, 64> kParameters = [] {
  std::array<std::uint8_t, 64> counts;
  counts.fill(kUnknown);
  const auto set = [&](std::size_t command, std::uint8_t count) { counts[command - 0xC0] = count; };
  set(kWideUnit, 2);
  set(kLatin1, 1);
  set(kInkWordReference, 2);
  set(0xC3, 2);  // gap between ink words
  set(kControl, 1);
  set(kObjectReference, 2);
  set(0xE5, 2);  // font
  set(0xE6, 2);  // size
  set(0xE7, 2);  // colour
  set(0xE8, 2);  // weight
  set(kItalic, 1);
  set(kUnderline, 1);
  set(0xEB, 1);  // struck through
  set(0xEC, 1);  // highlighted
  set(0xEF, 3);  // seen, not understood
  set(0xF1, 7);
  return counts;
}();

// Bytes that follow a control's number.
constexpr std::size_t MoreOfControl(std::uint8_t control) {
  return control == 0x19 ? 2 : control == 0x1B ? 6 : 0;
}

class StreamReader {
 public:
  StreamReader(std::span<const std::uint8_t> stream, std::u16string* text)
      : stream_(stream), text_(text), length_before_(text->size()) {}

  InkStream Read() {
    while (at_ < stream_.size() && !result_.ended && stream_[at_] != 0) ReadItem();
    result_.characters = text_->size() - length_before_;
    result_.size = at_;
    return result_;
  }

 private:
  // One character or command.
  void ReadItem() {
    const std::uint8_t lead = stream_[at_];
    if (lead >= 0xC0) return ReadCommand(lead);
    if (lead >= 0x80) {
      // 14 bits: six in the lead, eight in the byte that follows, whatever it is.
      if (!Has(2)) return Cut();
      Put(static_cast<char16_t>((lead & 0x3F) | stream_[at_ + 1] << 6));
      return Skip(2);
    }
    if (lead >= 0x20) {
      Put(lead);
    } else {
      result_.strange = true;
    }
    Skip(1);
  }

  void ReadCommand(std::uint8_t command) {
    const std::uint8_t parameters = kParameters[command - 0xC0U];
    if (parameters == kUnknown) {
      result_.strange = true;
      return Skip(1);
    }
    std::size_t size = 1U + parameters;
    if (!Has(size)) return Cut();
    switch (command) {
      case kWideUnit:
        Put(static_cast<char16_t>(stream_[at_ + 1] | stream_[at_ + 2] << 8));
        break;
      case kLatin1:
        Put(stream_[at_ + 1]);
        break;
      case kInkWordReference:
      case kObjectReference:
        result_.objects = true;
        break;
      case kControl:
        if (stream_[at_ + 1] == kControlEnd) return End();
        if (stream_[at_ + 1] == kControlTab) {
          Put(u'\t');
        } else {
          result_.strange = true;
          size += MoreOfControl(stream_[at_ + 1]);
          if (!Has(size)) return Cut();
        }
        break;
      default:
        break;
    }
    const bool may_continue = command == kItalic || command == kUnderline;
    const std::size_t item = at_;
    Skip(size);
    styles_from_ = may_continue ? std::min(styles_from_, item) : kNone;
  }

  void Put(char16_t unit) {
    text_->push_back(unit);
    styles_from_ = kNone;
  }

  void Skip(std::size_t size) { at_ += size; }
  void Cut() { at_ = stream_.size(); }

  void End() {
    constexpr std::size_t kMark = std::size(kInkContinues);
    result_.ended = true;
    result_.continues = styles_from_ != kNone && at_ - styles_from_ >= kMark &&
                        std::ranges::equal(stream_.subspan(at_ - kMark, kMark), kInkContinues);
    Skip(std::size(kInkParagraphEnd));
  }

  [[nodiscard]] bool Has(std::size_t count) const { return stream_.size() - at_ >= count; }

  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  std::span<const std::uint8_t> stream_;
  std::u16string* text_;
  std::size_t length_before_;
  std::size_t at_ = 0;
  std::size_t styles_from_ = kNone;  // where the italic and underline commands began that end here
  InkStream result_;
};

}  // namespace

void INK_AppendUnit(char16_t unit, std::vector<std::uint8_t>* stream) {
  const auto push = [&](unsigned byte) { stream->push_back(static_cast<std::uint8_t>(byte)); };
  if (unit >= 0x20 && unit <= 0x7F) {
    push(unit);
  } else if (unit == u'\t') {
    push(kControl);
    push(kControlTab);
  } else if (unit >= 0x80 && unit <= 0xFF) {
    push(kLatin1);
    push(unit);
  } else if (unit < kFirstWideUnit) {
    push(0x80U | (unit & 0x3FU));
    push(unit >> 6U);
  } else if constexpr (kInkWideUnits) {
    push(kWideUnit);
    push(unit & 0xFFU);
    push(unit >> 8U);
  } else {
    push(u'?');
  }
}

InkStream INK_AppendText(std::span<const std::uint8_t> stream, std::u16string* text) {
  return StreamReader(stream, text).Read();
}

}  // namespace tamu::device
