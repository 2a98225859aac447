#include "check/check_walk.h"

#include <cstring>
#include <new>
#include <utility>

#include "display_text.h"
#include "text/logical_line.h"

namespace tamu::tool {
namespace {

constexpr std::size_t kMostShown = 60;

// The number of characters up to a delimiter, by the library's rules for escapes.
std::size_t TokenLength(const char* text, const char* delimiters) noexcept {
  char nothing;
  return static_cast<std::size_t>(LINE_CopyToken(&nothing, 1, text, delimiters) - text);
}

}  // namespace

std::string SHOWN_Text(std::string_view bytes) {
  if (bytes.size() <= kMostShown) return DISPLAY_Bytes(bytes);
  // No character of UTF-8 is cut in two.
  std::size_t size = kMostShown;
  while (size > kMostShown - 4 && (static_cast<unsigned char>(bytes[size]) & 0xC0) == 0x80) --size;
  return DISPLAY_Bytes(bytes.substr(0, size)) + "...";
}

std::string_view FILE_ViewAgain(File* file, const File::Place& place) {
  const File::Place end = file->Tell();
  const bool met_end = file->AtEnd();
  const auto size = static_cast<std::size_t>(end.offset - place.offset);
  if (!file->Seek(place)) return {};
  // The bytes are in memory still; a window that were shorter would be read again.
  while (file->Window().size() < size && file->ExtendWindow() == File::Extension::kMore) {
  }
  const std::string_view view = file->Window().substr(0, size);
  file->Advance(view.size(), end.line - place.line, met_end);
  return view;
}

void CheckWalk::ReadLine() {
  line_.begin = file_->Tell();
  line_.text = FileLine(file_);
  if (!line_.text) throw std::bad_alloc();
  number_ = line_.begin.line;
  line_.raw = FILE_ViewAgain(file_, line_.begin);
  SplitLine();
  if (report_->object_line() != 0) BYTES_Check(this);
}

void CheckWalk::SplitLine() noexcept {
  char* const text = line_.text.get();
  line_.value = LINE_Split(line_.name.data(), line_.params.data(), text);
  line_.name_length = TokenLength(text, ";:");
  const bool has_params = text[line_.name_length] == ';';
  line_.params_length = has_params ? TokenLength(text + line_.name_length + 1, ":") : 0;
  line_.has_colon = line_.value[-1] == ':';
}

bool CheckWalk::NextLine(std::string_view object_words) {
  ReadLine();
  if (!line_.blank()) return true;
  // Behind a content that ends with the file there is no line at all.
  if (!line_.raw.empty()) Add(FindingKind::kBlankLine, {std::string(object_words)});
  return false;
}

void CheckWalk::AddAt(std::uint32_t line, FindingKind kind, std::vector<std::string> arguments) {
  // What a failed read took for the end of the file is none.
  if (file_->error() != 0) return;
  report_->Add({kind, line, 0, std::move(arguments)});
}

void CheckWalk::AddMissingEnd(std::string_view object_words, std::uint32_t begin_line,
                              std::string_view end_value) {
  if (!std::exchange(end_told_, true)) {
    Add(FindingKind::kMissingEnd,
        {std::string(object_words), std::to_string(begin_line), std::string(end_value)});
  }
  Stop();
}

void CheckWalk::Stop(std::string_view open_object) {
  if (std::exchange(stopped_, true)) return;
  const std::uint64_t count = OBJECTS_CountBehind(file_, open_object);
  if (count == 0) return;
  Add(FindingKind::kUnreadObjects,
      {count == 1 ? "1 object" : std::to_string(count) + " objects", count == 1 ? "is" : "are"});
}

}  // namespace tamu::tool
