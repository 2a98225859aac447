// The bytes of a logical line, and the objects behind it.
#include <algorithm>
#include <array>

#include "check/check_walk.h"
#include "text/string_tools.h"

namespace tamu::tool {
namespace {

// One physical line of a logical one.
struct PhysicalLine {
  std::string_view content;  // without its end
  std::string_view end;      // "" at the end of the file
};

PhysicalLine TakePhysicalLine(std::string_view* raw) noexcept {
  const std::size_t content = std::min(raw->find_first_of("\r\n"), raw->size());
  std::size_t end = std::min<std::size_t>(raw->size() - content, 1);
  // Whatever follows a carriage return goes with it.
  if (end != 0 && (*raw)[content] == '\r') end = std::min<std::size_t>(raw->size() - content, 2);
  const PhysicalLine line = {raw->substr(0, content), raw->substr(content, end)};
  raw->remove_prefix(content + end);
  return line;
}

// "=" takes the character after it along: of a row of them an odd one out breaks the line.
bool EndsInSoftBreak(std::string_view content) noexcept {
  std::size_t row = 0;
  while (row < content.size() && content[content.size() - 1 - row] == '=') ++row;
  return row % 2 != 0;
}

// Whether a line ends in "=?charset?encoding?text?=" (RFC 2047), whatever its words are: even where
// an "=" at the end breaks the line, such a one was meant otherwise.
bool EndsInEncodedWord(std::string_view content) noexcept {
  if (!content.ends_with("?=")) return false;
  content.remove_suffix(2);
  // From its end: the text, the letter of the encoding, the character set.
  const std::size_t encoding_end = content.rfind('?');
  if (encoding_end == std::string_view::npos || encoding_end < 2) return false;
  if (content[encoding_end - 2] != '?') return false;
  content.remove_suffix(content.size() - (encoding_end - 2));
  const std::size_t begin = content.rfind("=?");
  if (begin == std::string_view::npos) return false;
  const std::string_view charset = content.substr(begin + 2);
  return !charset.empty() && charset.find_first_of("? \t") == std::string_view::npos;
}

// True for lines that no text is likely to hold: "END:VCARD", "BEGIN:VEVENT".
bool IsBoundary(std::string_view content) noexcept {
  return content.starts_with("BEGIN:V") || content.starts_with("END:V");
}

bool IsQuotedPrintable(const SourceLine& line) noexcept {
  return STR_FindNoCase(line.params.data(), "QUOTED-PRINTABLE") != nullptr;
}

class BytesCheck {
 public:
  explicit BytesCheck(CheckWalk* walk) noexcept
      : walk_(walk), number_(walk->line().number()), encoded_(IsQuotedPrintable(walk->line())) {}

  void Run() {
    std::string_view rest = walk_->line().raw;
    while (!rest.empty()) {
      const bool first = number_ == walk_->line().number();
      CheckOne(TakePhysicalLine(&rest), first, rest);
      ++number_;
    }
  }

 private:
  void CheckOne(const PhysicalLine& line, bool first, std::string_view rest) {
    if (joined_ && IsBoundary(line.content)) {
      walk_->AddAt(number_, FindingKind::kJoinedBoundary, {SHOWN_Text(line.content)});
    }
    if (!nul_told_ && line.content.find('\0') != std::string_view::npos) {
      walk_->AddAt(number_, FindingKind::kNulByte);
      nul_told_ = true;
    }
    if (line.end.size() == 2 && line.end[1] != '\n') {
      walk_->AddAt(number_, FindingKind::kLoneCarriageReturn);
    }
    joined_ = EndsInSoftBreak(line.content);
    if (joined_) CheckJoin(line.content, rest.empty());
    if (first && line.content.empty() && !rest.empty()) {
      walk_->AddAt(number_, FindingKind::kFoldedBlank);
    }
  }

  void CheckJoin(std::string_view content, bool ends_file) {
    const bool is_word = EndsInEncodedWord(content);
    if (encoded_ && !is_word) return;
    walk_->AddAt(number_, ends_file ? FindingKind::kFinalEquals
                          : is_word ? FindingKind::kJoinedWord
                                    : FindingKind::kJoinedLine);
  }

  CheckWalk* walk_;
  std::uint32_t number_;
  bool encoded_;
  bool joined_ = false;
  bool nul_told_ = false;
};

// Lines behind the position, as far as they tell where objects begin.
class ObjectCount {
 public:
  explicit ObjectCount(std::string_view open_object) noexcept
      : in_message_(open_object == "VMSG"), card_depth_(open_object == "VCARD" ? 1 : 0) {}

  void TakeLine(std::string_view line) noexcept {
    if (line == "BEGIN:VMSG") in_message_ = true;
    if (line == "END:VMSG") in_message_ = false;
    if (line == "BEGIN:VCARD" && !in_message_ && card_depth_++ == 0) ++count_;
    if (line == "END:VCARD" && card_depth_ != 0) --card_depth_;
    if (line == "BEGIN:VMSG" || line == "BEGIN:VEVENT" || line == "BEGIN:VTODO" ||
        line == "BEGIN:VNOTE") {
      ++count_;
    }
  }
  [[nodiscard]] std::uint64_t count() const noexcept { return count_; }

 private:
  bool in_message_;
  std::uint64_t card_depth_;
  std::uint64_t count_ = 0;
};

// The next physical line without blanks, as far as it fits; longer ones are none of interest.
class ShortLine {
 public:
  // Returns false at the end of the file.
  [[nodiscard]] bool Read(File* file) noexcept {
    size_ = 0;
    int character = file->GetChar();
    if (character < 0) return false;
    for (; character >= 0 && character != '\n'; character = file->GetChar()) {
      const bool is_blank = character == ' ' || character == '\t' || character == '\r';
      if (!is_blank && size_ < text_.size()) text_[size_++] = static_cast<char>(character);
    }
    return true;
  }
  [[nodiscard]] std::string_view text() const noexcept { return {text_.data(), size_}; }

 private:
  std::array<char, 16> text_{};
  std::size_t size_ = 0;
};

}  // namespace

void BYTES_Check(CheckWalk* walk) { BytesCheck(walk).Run(); }

std::uint64_t OBJECTS_CountBehind(File* file, std::string_view open_object) {
  const File::Place place = file->Tell();
  const bool met_end = file->AtEnd();
  if (met_end) return 0;
  ObjectCount objects(open_object);
  for (ShortLine line; line.Read(file);) objects.TakeLine(line.text());
  static_cast<void>(file->Seek(place));
  return objects.count();
}

}  // namespace tamu::tool
