#include "text/logical_line.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "core/log.h"

namespace tamu {
namespace {

// How far a logical line can reach: the first pass, which only looks for line feeds.
struct Extent {
  // Bytes up to and with the line feed that ends it, or all to the end of the file.
  std::size_t content = 0;
  // Bytes looked at, one more at the end of the file: what is allocated.
  std::size_t measured = 0;
  std::size_t first_line_feed = std::string_view::npos;
  bool reaches_end = false;
  bool out_of_memory = false;
};

bool IsBlank(char character) noexcept { return character == ' ' || character == '\t'; }

// True when the line feed at `position` belongs to a soft line break.
bool IsSoftLineFeed(std::string_view text, std::size_t position) noexcept {
  if (position >= 1 && text[position - 1] == '=') return true;
  return position >= 2 && text[position - 1] == '\r' && text[position - 2] == '=';
}

// Makes sure that the character at `position` is in the window. Returns false at the end of the
// file or of memory.
bool WindowReaches(File* file, std::size_t position, Extent* extent) noexcept {
  while (position >= file->Window().size()) {
    switch (file->ExtendWindow()) {
      case File::Extension::kMore:
        break;
      case File::Extension::kOutOfMemory:
        extent->out_of_memory = true;
        extent->measured = file->Window().size();
        return false;
      case File::Extension::kEnd:
        extent->reaches_end = true;
        extent->content = file->Window().size();
        extent->measured = extent->content + 1;
        return false;
    }
  }
  return true;
}

Extent Measure(File* file) noexcept {
  Extent extent;
  for (std::size_t scanned = 0;;) {
    if (!WindowReaches(file, scanned, &extent)) return extent;
    const std::string_view window = file->Window();
    const std::size_t line_feed = window.find('\n', scanned);
    if (line_feed == std::string_view::npos) {
      scanned = window.size();
      continue;
    }
    if (line_feed < extent.first_line_feed) extent.first_line_feed = line_feed;
    scanned = line_feed + 1;
    if (IsSoftLineFeed(window, line_feed)) continue;
    if (!WindowReaches(file, scanned, &extent)) return extent;
    if (IsBlank(file->Window()[scanned])) continue;
    extent.content = line_feed + 1;
    extent.measured = line_feed + 2;
    return extent;
  }
}

// The second pass: copies one physical line after the other.
class Unfolder {
 public:
  Unfolder(std::string_view text, std::size_t first_line_feed, char* out) noexcept
      : text_(text), first_line_feed_(first_line_feed), begin_(out), out_(out) {}

  void Run() noexcept {
    while (CopyPhysicalLine()) {
    }
    out_[0] = out_[1] = '\0';
    CutAtNul();
  }

  [[nodiscard]] std::size_t consumed() const noexcept { return position_; }
  [[nodiscard]] std::uint32_t lines() const noexcept { return lines_; }
  // True when the text was used up while more was looked for.
  [[nodiscard]] bool met_end() const noexcept { return met_end_; }

 private:
  // A NUL that the line holds ends its text, so the second terminator belongs behind it.
  void CutAtNul() noexcept {
    void* const nul = std::memchr(begin_, '\0', static_cast<std::size_t>(out_ - begin_));
    if (nul != nullptr) static_cast<char*>(nul)[1] = '\0';
  }

  // Copies up to the next line end. Returns true when the logical line goes on behind it.
  bool CopyPhysicalLine() noexcept {
    const std::size_t line_end = FindLineEnd();
    std::string_view content = text_.substr(position_, line_end - position_);
    const bool soft = EndsInOpenEqualsSign(content);
    if (soft) content.remove_suffix(1);
    std::memcpy(out_, content.data(), content.size());
    out_ += content.size();
    position_ = line_end;
    const bool ended = PassLineEnd();
    if (position_ == text_.size()) met_end_ = true;
    if (!ended || met_end_) return false;
    if (soft) return true;
    if (!IsBlank(text_[position_])) return false;
    *out_++ = ' ';
    ++position_;
    return true;
  }

  std::size_t FindLineEnd() const noexcept {
    const std::size_t line_feed =
        position_ <= first_line_feed_ ? first_line_feed_ : text_.find('\n', position_);
    const std::string_view line = text_.substr(position_, line_feed - position_);
    const std::size_t carriage_return = line.find('\r');
    if (carriage_return != std::string_view::npos) return position_ + carriage_return;
    return line_feed != std::string_view::npos ? line_feed : text_.size();
  }

  // "=" takes the character after it along, so in a row of them only every other one can break the
  // line.
  static bool EndsInOpenEqualsSign(std::string_view content) noexcept {
    std::size_t row = 0;
    while (row < content.size() && content[content.size() - 1 - row] == '=') ++row;
    return row % 2 != 0;
  }

  // Moves past CR and the character after it, or past LF. Returns false when there is no line end.
  bool PassLineEnd() noexcept {
    if (position_ == text_.size()) return false;
    const std::size_t length = text_[position_] == '\r' ? 2 : 1;
    position_ += length < text_.size() - position_ ? length : text_.size() - position_;
    ++lines_;
    return true;
  }

  std::string_view text_;
  std::size_t first_line_feed_;
  char* begin_;
  char* out_;
  std::size_t position_ = 0;
  std::uint32_t lines_ = 0;
  bool met_end_ = false;
};

// Passes over a line that there is no memory for, so that reading goes on behind it.
void SkipLine(File* file, const Extent& extent) noexcept {
  const auto pass = [file](std::string_view text, bool met_end) {
    const auto lines = std::count(text.begin(), text.end(), '\n');
    file->Advance(text.size(), static_cast<std::uint32_t>(lines), met_end);
  };
  if (!extent.out_of_memory) {
    return pass(file->Window().substr(0, extent.content), extent.reaches_end);
  }
  // No window holds the line: drop what is there until a line feed comes.
  for (;;) {
    const std::string_view window = file->Window();
    const std::size_t line_feed = window.find('\n');
    if (line_feed != std::string_view::npos) return pass(window.substr(0, line_feed + 1), false);
    pass(window, false);
    if (file->ExtendWindow() != File::Extension::kMore) return pass({}, true);
  }
}

}  // namespace

MemPtr<char> FileLine(File* file) noexcept {
  LOG_SetSourceLine(file->Tell().line);
  const Extent extent = Measure(file);
  MemPtr<char> line;
  // One byte more than is measured, for the second terminator of a line that ends the file.
  if (!extent.out_of_memory) line.reset(static_cast<char*>(MEM_Alloc(extent.measured + 1)));
  if (!line) {
    LOG_Error("TAMU:  Memory allocation of %d bytes failed in 'FileLine'",
              static_cast<std::uint32_t>(extent.measured));
    SkipLine(file, extent);
    return line;
  }
  Unfolder unfolder(file->Window().substr(0, extent.content), extent.first_line_feed, line.get());
  unfolder.Run();
  file->Advance(unfolder.consumed(), unfolder.lines(), extent.reaches_end && unfolder.met_end());
  return line;
}

}  // namespace tamu
