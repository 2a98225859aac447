#include "formats/vmessage_content.h"

#include <cstring>
#include <utility>

#include "core/log.h"
#include "core/memory.h"
#include "core/wide.h"

namespace tamu {
namespace {

static_assert(sizeof(BodyPart::temp_file) / sizeof(TamuWchar) == kTempPathUnits);

std::string_view CutAtEnd(std::string_view line) noexcept {
  line = line.substr(0, line.find('\r'));
  return line.substr(0, line.find('\0'));
}

// Hands each line before the marker's to `take`, which returns false to give up. Returns false when
// it did, or when memory ran out.
template <typename Take>
bool ReadToMarker(File* file, std::string_view marker, bool* last, Take take) noexcept {
  while (!file->AtEnd()) {
    std::string_view line;
    if (!VMSG_ReadRawLine(file, &line)) return false;
    if (line.starts_with(marker)) {
      if (last != nullptr) *last = line.substr(marker.size()) == "--";
      return true;
    }
    if (!take(line)) return false;
  }
  return true;
}

// A text that grows line by line.
class ContentText {
 public:
  // Returns false when memory runs out.
  [[nodiscard]] bool AddLine(std::string_view line) noexcept {
    const bool joined = line.ends_with('=');
    if (joined) line.remove_suffix(1);
    if (capacity_ - length_ < line.size() + 1 && !Grow(line.size() + 1)) return false;
    if (!line.empty()) std::memcpy(text_.get() + length_, line.data(), line.size());
    length_ += line.size();
    if (!joined) text_.get()[length_++] = '\n';
    return true;
  }

  // The text in a block of its size; null when memory runs out.
  [[nodiscard]] MemPtr<char> Finish() const noexcept {
    return MEM_CopyText({text_.get(), length_});
  }

 private:
  [[nodiscard]] bool Grow(std::size_t more) noexcept {
    constexpr std::size_t kFirstCapacity = 4096;
    const std::size_t doubled = capacity_ < kFirstCapacity ? kFirstCapacity : capacity_ * 2;
    const std::size_t capacity = doubled - length_ < more ? length_ + more : doubled;
    MemPtr<char> grown(static_cast<char*>(MEM_Alloc(capacity)));
    if (!grown) return false;
    if (length_ != 0) std::memcpy(grown.get(), text_.get(), length_);
    text_ = std::move(grown);
    capacity_ = capacity;
    return true;
  }

  MemPtr<char> text_;
  std::size_t length_ = 0;
  std::size_t capacity_ = 0;
};

TamuResult ResultOf(bool read) noexcept { return read ? TAMU_PARSE_OK : TAMU_OUT_OF_MEMORY; }

TamuResult SkipContent(File* file, std::string_view marker, bool* last) noexcept {
  return ResultOf(ReadToMarker(file, marker, last, [](std::string_view) { return true; }));
}

TamuResult ReadToText(File* file, BodyPart* part, std::string_view marker, bool* last) noexcept {
  ContentText content;
  if (!ReadToMarker(file, marker, last,
                    [&content](std::string_view line) { return content.AddLine(line); })) {
    return TAMU_OUT_OF_MEMORY;
  }
  MemPtr<char> text = content.Finish();
  if (!text) return TAMU_OUT_OF_MEMORY;
  MEM_Free(part->text);
  part->text = text.release();
  return TAMU_PARSE_OK;
}

void DropTempFile(BodyPart* part) noexcept {
  if (part->temp_file[0] == 0) return;
  FILE_Remove(AsUtf16(part->temp_file));
  part->temp_file[0] = 0;
}

// Makes the temporary file of a part and opens it; on failure the part has none.
bool OpenTempFile(BodyPart* part, File* file) noexcept {
  DropTempFile(part);
  char16_t path[kTempPathUnits] = {};
  if (FILE_TempFilename(nullptr, path) != 0) return false;
  static_assert(sizeof part->temp_file == sizeof path);
  std::memcpy(part->temp_file, path, sizeof path);
  if (FILE_Open(path, u"w", file) == 0) return true;
  // It was made when it was named. Empty, it would pass for the content.
  DropTempFile(part);
  return false;
}

TamuResult ReadToFile(File* file, BodyPart* part, std::string_view marker, bool* last) noexcept {
  File output;
  if (!OpenTempFile(part, &output)) {
    const TamuResult skipped = SkipContent(file, marker, last);
    return skipped == TAMU_PARSE_OK ? TamuResult{TAMU_PARSE_WARNING} : skipped;
  }
  bool written = true;
  const bool read = ReadToMarker(file, marker, last, [&](std::string_view line) {
    if (FILE_PutLine(&output, line) != 0) written = false;
    return true;
  });
  if (FILE_Close(&output, AsUtf16(part->temp_file)) != 0) written = false;
  if (!read) return TAMU_OUT_OF_MEMORY;
  return written ? TAMU_PARSE_OK : TAMU_PARSE_WARNING;
}

}  // namespace

bool VMSG_ReadRawLine(File* file, std::string_view* line) noexcept {
  for (std::size_t scanned = 0;;) {
    const std::string_view window = file->Window();
    const std::size_t line_feed = window.find('\n', scanned);
    if (line_feed != std::string_view::npos) {
      *line = CutAtEnd(window.substr(0, line_feed));
      file->Advance(line_feed + 1, 1, false);
      return true;
    }
    scanned = window.size();
    switch (file->ExtendWindow()) {
      case File::Extension::kMore:
        break;
      case File::Extension::kOutOfMemory:
        return false;
      case File::Extension::kEnd:
        *line = CutAtEnd(file->Window());
        file->Advance(scanned, 0, true);
        return true;
    }
  }
}

TamuResult VMSG_ReadContent(File* file, BodyPart* part, std::string_view marker, bool* last,
                            bool keep) noexcept {
  // What is wrong with the content is said of the line on which it begins.
  LOG_SetSourceLine(file->Tell().line);
  if (last != nullptr) *last = false;
  TamuResult result;
  if (!keep) {
    result = SkipContent(file, marker, last);
  } else if (std::strstr(part->content_type, "name=") != nullptr) {
    result = ReadToFile(file, part, marker, last);
  } else {
    result = ReadToText(file, part, marker, last);
  }
  if (result == TAMU_OUT_OF_MEMORY || !file->AtEnd()) return result;
  LOG_Error("TAMU:  Error - reached EOF while parsing CONTENT of vMsg");
  return TAMU_PARSE_ERROR;
}

}  // namespace tamu
