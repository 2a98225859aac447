#include "text/logical_line.h"

#include <cstdint>
#include <cstring>
#include <string_view>

#include "core/log.h"

namespace tamu {
namespace {

bool IsBlank(char character) noexcept { return character == ' ' || character == '\t'; }

// "=" takes the character after it along, so in a row of them only every other one can break the
// line.
bool EndsInOpenEqualsSign(std::string_view content) noexcept {
  std::size_t row = 0;
  while (row < content.size() && content[content.size() - 1 - row] == '=') ++row;
  return row % 2 != 0;
}

// One physical line of a logical one, as positions in the window.
struct PhysicalLine {
  std::size_t content_end = 0;  // where its line end stands, or the end of the file
  std::size_t next = 0;         // behind its line end
  bool ended = false;           // by a line end
};

// The position of the first CR or LF from `from` on, or the text's size. Looks for both in one stretch
// after the other, so that neither is looked for through all of a file that lacks it.
std::size_t FindCrOrLf(std::string_view text, std::size_t from) noexcept {
  constexpr std::size_t kStretch = 1024;
  for (; from < text.size(); from += kStretch) {
    std::string_view stretch = text.substr(from, kStretch);
    const std::size_t line_feed = stretch.find('\n');
    stretch = stretch.substr(0, line_feed);
    const std::size_t carriage_return = stretch.find('\r');
    if (carriage_return != std::string_view::npos) return from + carriage_return;
    if (line_feed != std::string_view::npos) return from + line_feed;
  }
  return text.size();
}

// The line end at or behind `begin`: LF, or CR with the character after it, whatever that is. False
// when the text ends before both are there; it is the file's end when `all` is set.
bool FindLineEnd(std::string_view text, std::size_t begin, std::size_t scanned, bool all,
                 PhysicalLine* line) noexcept {
  line->content_end = FindCrOrLf(text, scanned < begin ? begin : scanned);
  line->ended = line->content_end < text.size();
  if (!line->ended) {
    line->next = text.size();
    return all;
  }
  line->next = line->content_end + (text[line->content_end] == '\r' ? 2 : 1);
  if (line->next <= text.size()) return true;
  line->next = text.size();
  return all;
}

// Where a logical line lies in the window, and what becomes of it.
struct Extent {
  std::size_t first_content_end = 0;  // of its first physical line
  std::size_t consumed = 0;           // bytes up to the next logical line
  std::size_t length = 0;             // of its text
  std::uint32_t lines = 0;            // line ends
  bool joined = false;                // of more than one physical line
  bool met_end = false;
  bool out_of_memory = false;
};

// Finds a logical line's extent in one pass, extending the window as far as the line reaches.
class Measurer {
 public:
  explicit Measurer(File* file) noexcept : file_(file) {}

  Extent Run() noexcept {
    while (TakePhysicalLine()) {
    }
    return extent_;
  }

 private:
  // False when there is nothing behind `position`, or no memory to look.
  bool HasCharacter(std::size_t position) noexcept {
    while (position >= file_->Window().size()) {
      if (!Extend()) return false;
    }
    return true;
  }
  bool Extend() noexcept {
    const File::Extension extension = file_->ExtendWindow();
    extent_.out_of_memory = extension == File::Extension::kOutOfMemory;
    at_end_ = extension == File::Extension::kEnd;
    return extension == File::Extension::kMore;
  }

  // Returns true when the logical line goes on.
  bool TakePhysicalLine() noexcept {
    PhysicalLine line;
    for (std::size_t scanned = begin_;
         !FindLineEnd(file_->Window(), begin_, scanned, at_end_, &line);
         scanned = line.content_end) {
      if (!Extend() && !at_end_) return false;
    }
    if (!extent_.joined) extent_.first_content_end = line.content_end;
    const bool soft = TakeContent(line);
    extent_.consumed = line.next;
    if (line.ended) ++extent_.lines;
    const bool more = line.ended && HasCharacter(line.next);
    if (extent_.out_of_memory) return false;
    extent_.met_end = !more;
    const bool folded = more && !soft && IsBlank(file_->Window()[line.next]);
    if (!more || (!soft && !folded)) return false;
    if (folded) {
      ++extent_.length;
      ++extent_.consumed;
    }
    extent_.joined = true;
    begin_ = extent_.consumed;
    return true;
  }

  // Counts the text of a physical line; true when it ends in a soft line break.
  bool TakeContent(const PhysicalLine& line) noexcept {
    const std::string_view content = file_->Window().substr(begin_, line.content_end - begin_);
    const bool soft = EndsInOpenEqualsSign(content);
    extent_.length += content.size() - (soft ? 1 : 0);
    if (soft && !extent_.joined) extent_.first_content_end -= 1;
    return soft;
  }

  File* file_;
  Extent extent_;
  std::size_t begin_ = 0;
  bool at_end_ = false;
};

// Copies what was measured, one physical line after the other.
void CopyJoined(std::string_view text, char* out) noexcept {
  for (std::size_t begin = 0; begin < text.size();) {
    PhysicalLine line;
    FindLineEnd(text, begin, begin, true, &line);
    std::string_view content = text.substr(begin, line.content_end - begin);
    const bool soft = EndsInOpenEqualsSign(content);
    if (soft) content.remove_suffix(1);
    std::memcpy(out, content.data(), content.size());
    out += content.size();
    begin = line.next;
    if (!soft && begin < text.size()) {
      *out++ = ' ';
      ++begin;
    }
  }
}

// Passes over a line that there is no memory for, character by character, so that reading goes on
// with the next one.
void SkipLine(File* file) noexcept {
  for (;;) {
    int character = file->GetChar();
    bool soft = false;
    if (character == '=') {
      character = file->GetChar();
      soft = true;
    }
    if (character == '\r') character = file->GetChar() < 0 ? -1 : '\n';
    if (character < 0) return;
    if (character != '\n' || soft) continue;
    const int next = file->PeekChar();
    if (next < 0) file->GetChar();  // meets the end
    if (next != ' ' && next != '\t') return;
  }
}

// A NUL that the line holds ends its text, so the second terminator belongs behind it.
void Terminate(char* text, std::size_t length) noexcept {
  text[length] = text[length + 1] = '\0';
  void* const nul = std::memchr(text, '\0', length);
  if (nul != nullptr) static_cast<char*>(nul)[1] = '\0';
}

}  // namespace

MemPtr<char> FileLine(File* file) noexcept {
  LOG_SetSourceLine(file->Tell().line);
  const Extent extent = Measurer(file).Run();
  MemPtr<char> line;
  if (!extent.out_of_memory) line.reset(static_cast<char*>(MEM_Alloc(extent.length + 2)));
  if (!line) {
    // The size is that of the line as it stands, and the character behind it.
    const std::size_t size = (extent.out_of_memory ? file->Window().size() : extent.consumed) + 1;
    LOG_Error("TAMU:  Memory allocation of %d bytes failed in 'FileLine'",
              static_cast<std::uint32_t>(size));
    SkipLine(file);
    return line;
  }
  const std::string_view text = file->Window().substr(0, extent.consumed);
  if (extent.joined) {
    CopyJoined(text, line.get());
  } else {
    std::memcpy(line.get(), text.data(), extent.first_content_end);
  }
  Terminate(line.get(), extent.length);
  file->Advance(extent.consumed, extent.lines, extent.met_end);
  return line;
}

}  // namespace tamu
