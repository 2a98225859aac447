#include "device/ink/ink_decoder.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "device/ink/ink_blocks.h"
#include "device/ink/ink_bytes.h"
#include "device/ink/ink_format.h"
#include "device/ink/ink_stream.h"
#include "device/ink/ink_text.h"
#include "platform/code_pages.h"

namespace tamu::device {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::u16string_view kParagraphBreak = u"\r\n";
// A list of 8-byte entries could ask for gigabytes of empty lines.
constexpr std::size_t kMaxBlankLines = 4096;
constexpr std::size_t kMaxStream = 0xFFFF;

bool StartsWith(Bytes file, std::string_view start) {
  return file.size() >= start.size() &&
         std::equal(start.begin(), start.end(), file.begin(),
                    [](char character, std::uint8_t byte) {
                      return static_cast<std::uint8_t>(character) == byte;
                    });
}

// Text made of paragraphs, one after the other.
class TextBuilder {
 public:
  // Appends a paragraph block's text.
  void PutParagraph(Bytes body) {
    const Bytes all = body.subspan(kInkParagraphHeaderSize);
    const std::size_t announced = ReadU16(body, 2);
    const std::size_t before = BeginParagraph();
    InkStream stream = INK_AppendText(all.first(std::min(announced, all.size())), &result_.text);
    if (!stream.ended) {
      // The length may be wrong where the stream is whole.
      result_.damaged = true;
      std::u16string longer;
      const InkStream whole = INK_AppendText(all, &longer);
      if (whole.ended) {
        result_.text.replace(before, std::u16string::npos, longer);
        stream = whole;
      }
    }
    const bool known = !stream.objects && !stream.strange;
    if (known && stream.characters + 1 != ReadU16(body, 0)) result_.damaged = true;
    EndParagraph(stream);
  }

  // Appends a stream that was found without its block; returns its size.
  std::size_t PutStream(Bytes bytes) {
    BeginParagraph();
    const InkStream stream = INK_AppendText(bytes, &result_.text);
    EndParagraph(stream);
    return stream.size;
  }

  void PutBlankLines(std::size_t count) {
    const std::size_t lines = std::min(count, blank_lines_left_);
    blank_lines_left_ -= lines;
    for (std::size_t i = 0; i < lines; ++i) BeginParagraph();
  }

  InkText Take() {
    if (continues_) result_.damaged = true;  // the rest is missing
    return std::move(result_);
  }
  void SetDamaged() { result_.damaged = true; }
  void SetObjects() { result_.objects = true; }

 private:
  // Returns where the paragraph's text begins.
  std::size_t BeginParagraph() {
    if (!first_ && !continues_) result_.text += kParagraphBreak;
    first_ = false;
    continues_ = false;
    return result_.text.size();
  }

  void EndParagraph(const InkStream& stream) {
    if (stream.strange) result_.damaged = true;
    if (stream.objects) result_.objects = true;
    continues_ = stream.continues;
  }

  InkText result_;
  bool first_ = true;
  bool continues_ = false;
  std::size_t blank_lines_left_ = kMaxBlankLines;
};

// Paragraph numbers by id, or nothing when ids repeat.
using ParagraphIndex = std::unordered_map<std::uint16_t, std::size_t>;

bool IndexParagraphs(const InkBlocks& blocks, ParagraphIndex* index) {
  for (std::size_t i = 0; i < blocks.paragraphs.size(); ++i) {
    if (!index->emplace(blocks.paragraphs[i].id, i).second) return false;
  }
  return true;
}

// Whether the list leads to paragraphs, to each at most once.
bool ListIsUsable(const InkBlocks& blocks, const ParagraphIndex& index) {
  std::vector<bool> taken(blocks.paragraphs.size());
  for (const InkListEntry& entry : blocks.entries) {
    if (entry.id == 0) continue;
    const auto found = index.find(entry.id);
    if (found == index.end() || taken[found->second]) return false;
    taken[found->second] = true;
  }
  return !blocks.entries.empty();
}

void PutInListOrder(const InkBlocks& blocks, const ParagraphIndex& index, TextBuilder* text) {
  std::vector<bool> taken(blocks.paragraphs.size());
  for (const InkListEntry& entry : blocks.entries) {
    if (entry.id == 0) {
      text->PutBlankLines(entry.lines);
    } else {
      const std::size_t number = index.at(entry.id);
      taken[number] = true;
      text->PutParagraph(blocks.paragraphs[number].body);
    }
  }
  // What the list forgot is not lost.
  for (std::size_t i = 0; i < taken.size(); ++i) {
    if (!taken[i]) text->PutParagraph(blocks.paragraphs[i].body);
  }
}

InkText TextOfBlocks(const InkBlocks& blocks) {
  TextBuilder text;
  ParagraphIndex index;
  if (IndexParagraphs(blocks, &index) && ListIsUsable(blocks, index)) {
    PutInListOrder(blocks, index, &text);
  } else {
    for (const InkParagraphBlock& paragraph : blocks.paragraphs) text.PutParagraph(paragraph.body);
  }
  const auto named = static_cast<std::size_t>(std::ranges::count_if(
      blocks.entries, [](const InkListEntry& entry) { return entry.id != 0; }));
  if (blocks.broken || blocks.inconsistent || named != blocks.paragraphs.size() ||
      blocks.entries.empty()) {
    text.SetDamaged();
  }
  if (blocks.objects) text.SetObjects();
  return text.Take();
}

// Whether a paragraph's stream begins here: a font, then a size.
bool BeginsStream(Bytes bytes) {
  return bytes.size() >= std::size(kInkParagraphStart) && bytes[0] == kInkParagraphStart[0] &&
         bytes[2] == 0 && bytes[3] == kInkParagraphStart[3] && bytes[5] == 0;
}

// The paragraphs that can be found without the chain.
InkText Rescue(Bytes file) {
  TextBuilder text;
  text.SetDamaged();
  for (std::size_t at = 0; at < file.size();) {
    if (!BeginsStream(file.subspan(at))) {
      ++at;
      continue;
    }
    at += text.PutStream(file.subspan(at, std::min(file.size() - at, kMaxStream)));
  }
  return text.Take();
}

InkText DecodeDocument(Bytes file) {
  const InkBlocks blocks = INK_WalkBlocks(file);
  InkText text = TextOfBlocks(blocks);
  if (blocks.broken) {
    InkText rescued = Rescue(file);
    if (rescued.text.size() > text.text.size()) {
      rescued.objects = rescued.objects || text.objects;
      return rescued;
    }
  }
  return text;
}

Bytes WithoutZeros(Bytes bytes) {
  while (!bytes.empty() && bytes.back() == 0) bytes = bytes.first(bytes.size() - 1);
  return bytes;
}

std::u16string FromUtf16(Bytes bytes) {
  std::u16string text = INK_FromUtf16(bytes);
  while (text.ends_with(u'\0')) text.pop_back();
  return text;
}

// Whether the bytes look like UTF-16: text in a code page has no zeros inside.
bool HasManyZeros(Bytes bytes) {
  const auto zeros = static_cast<std::size_t>(std::ranges::count(bytes, std::uint8_t{0}));
  return zeros > 0 && zeros >= bytes.size() / 8;
}

InkText DecodePlainText(Bytes file) {
  InkText result;
  result.source = InkSource::kPlainText;
  const Bytes text = WithoutZeros(file);
  if (text.empty()) {
    result.damaged = !file.empty();  // zeros that a crash left
  } else if (StartsWith(file, "\xFF\xFE")) {
    result.text = FromUtf16(file.subspan(2));
  } else if (StartsWith(file, "\xEF\xBB\xBF")) {
    result.damaged = !INK_FromCodePage(platform::kCpUtf8, text.subspan(3), &result.text);
  } else if (HasManyZeros(text)) {
    result.text = FromUtf16(file);
  } else {
    const bool filled = text.size() % 2 == 0 && text.back() == 3;
    result.damaged = !INK_FromCodePage(platform::kCpAcp,
                                       filled ? text.first(text.size() - 1) : text, &result.text);
  }
  return result;
}

}  // namespace

InkText INK_Decode(std::span<const std::uint8_t> file) {
  if (StartsWith(file, kInkSignature)) return DecodeDocument(file);
  if (StartsWith(file, "{\\rtf") || StartsWith(file, "{\\pwd")) {
    InkText other;
    other.source = InkSource::kOtherFormat;
    return other;
  }
  return DecodePlainText(file);
}

}  // namespace tamu::device
