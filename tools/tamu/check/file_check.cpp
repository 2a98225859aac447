#include "check/file_check.h"

#include <string>
#include <string_view>

#include "check/check_walk.h"
#include "check/object_walks.h"
#include "check/record_format.h"
#include "formats/object_file.h"
#include "formats/vcard_properties.h"

namespace tamu::tool {
namespace {

using namespace std::string_view_literals;

void WalkCard(CheckWalk* walk) { RECORD_Walk(walk, kCardFormat, RecordUse::kDelivered); }
void WalkNote(CheckWalk* walk) { RECORD_Walk(walk, kNoteFormat, RecordUse::kDelivered); }

// The kinds of files.
struct FileFormat {
  std::string_view begin_value;
  bool any_value;  // in a file of this kind whatever begins is taken for such an object
  void (*walk)(CheckWalk* walk);
};
constexpr FileFormat kFormats[] = {
    {"VCARD", true, &WalkCard},
    {"VCALENDAR", false, &CALENDAR_Walk},
    {"VNOTE", false, &WalkNote},
    {"VMSG", false, &MESSAGE_Walk},
};

const FileFormat* FindFormat(std::string_view begin_value) noexcept {
  for (const FileFormat& format : kFormats) {
    if (format.begin_value == begin_value) return &format;
  }
  return nullptr;
}

// Texts that are no object file, by their first bytes.
struct BeginningRow {
  std::string_view bytes;
  FindingKind finding;
  bool is_readable;  // behind these bytes
};
constexpr BeginningRow kBeginnings[] = {
    {"\xEF\xBB\xBF"sv, FindingKind::kByteOrderMark, true},
    {"\xFF\xFE"sv, FindingKind::kUtf16, false},
    {"\xFE\xFF"sv, FindingKind::kUtf16, false},
    {"B\0E\0"sv, FindingKind::kUtf16, false},
    {"\0B\0E"sv, FindingKind::kUtf16, false},
};
constexpr std::size_t kLongestBeginning = 4;

std::string FirstBytes(File* file) {
  std::string bytes;
  while (bytes.size() < kLongestBeginning) {
    const int character = file->GetChar();
    if (character < 0) break;
    bytes.push_back(static_cast<char>(character));
  }
  file->Rewind();
  return bytes;
}

const BeginningRow* FindBeginning(std::string_view bytes) noexcept {
  for (const BeginningRow& row : kBeginnings) {
    if (bytes.starts_with(row.bytes)) return &row;
  }
  return nullptr;
}

class FileCheck {
 public:
  FileCheck(File* file, Report* report) : file_(file), report_(report), walk_(file, report) {}

  void Run() {
    if (!TakeBeginning()) return report_->Flush();
    for (bool more = TakeFirstLine(); more; more = FindNext()) {
      const ObjectScope scope(report_, walk_.line().number());
      format_->walk(&walk_);
      report_->Flush();
    }
    report_->Flush();
  }

 private:
  // The first bytes. Returns false when nothing can be read behind them.
  bool TakeBeginning() {
    walk_.SetNumber(1);
    const std::string bytes = FirstBytes(file_);
    if (bytes.empty()) {
      walk_.Add(FindingKind::kEmptyFile);
      return false;
    }
    const ObjectName name = OBJECTFILE_PeekName(file_);
    format_ = FindFormat(name.data());
    const BeginningRow* const row = FindBeginning(bytes);
    if (row == nullptr) return true;
    walk_.Add(row->finding);
    if (!row->is_readable) return false;
    walk_.Stop();
    return file_->Seek({row->bytes.size(), 1});
  }

  // Returns true at the BEGIN of an object.
  bool TakeFirstLine() {
    walk_.ReadLine();
    if (format_ != nullptr && Begins()) return true;
    if (!walk_.stopped()) {
      walk_.Add(FindingKind::kNotAnObject, {ShownLine()});
      if (TakesOther()) {
        StopBefore(walk_.line().begin);
      } else {
        walk_.Stop();
      }
    }
    return TakesOther() || Resume(nullptr);
  }

  // Whether the current line begins an object of the file's kind.
  bool Begins() {
    SourceLine& line = walk_.line();
    char* const name = line.name.data();
    format_->any_value ? LINE_TrimLeadingBlanks(name) : LINE_StripBlanks(name);
    if (VCARD_FindName(name).line != VcardLine::kBegin) return false;
    const std::string_view value = LINE_StripBlanks(line.value);
    if (format_->any_value) {
      if (value != format_->begin_value) {
        walk_.Add(FindingKind::kReadAsCard, {SHOWN_Text(value)});
      }
      return true;
    }
    return value == format_->begin_value;
  }

  // Whether the current line begins an object of any known kind, which the file is of from now on.
  bool TakesOther() {
    SourceLine& line = walk_.line();
    if (VCARD_FindName(LINE_StripBlanks(line.name.data())).line != VcardLine::kBegin) return false;
    const FileFormat* const format = FindFormat(LINE_StripBlanks(line.value));
    if (format != nullptr) format_ = format;
    return format != nullptr;
  }

  // What follows an object. Returns true at the BEGIN of the next one.
  bool FindNext() {
    walk_.ReadLine();
    if (IsNothing()) return false;
    if (Begins()) return true;
    if (TakesOther()) {
      walk_.Add(FindingKind::kOtherFormat, {SHOWN_Text(format_->begin_value)});
      StopBefore(walk_.line().begin);
      return true;
    }
    const std::string text = ShownLine();
    return Resume(&text);
  }

  // Passes over lines up to the next that begins an object. `first_line` is the text of the one at
  // which the library's reading ends; null when that has been told. Returns false at the end.
  bool Resume(const std::string* first_line) {
    const std::uint32_t number = walk_.number();
    bool any_text = !walk_.line().blank();
    bool found = false;
    while (!found && !walk_.AtEnd()) {
      walk_.ReadLine();
      found = TakesOther();
      any_text = any_text || !walk_.line().blank();
    }
    if (first_line == nullptr || !any_text) return found;
    const std::uint32_t resumed = walk_.number();
    walk_.SetNumber(number);
    walk_.Add(found ? FindingKind::kTextBetween : FindingKind::kTextBehindEnd, {*first_line});
    if (found) StopBefore(walk_.line().begin);
    walk_.SetNumber(resumed);
    return found;
  }

  // Notes that the library's reading has ended before the line that begins at `place`, which has
  // been read.
  void StopBefore(const File::Place& place) {
    const File::Place behind = file_->Tell();
    const bool met_end = file_->AtEnd();
    if (met_end || !file_->Seek(place)) return;
    walk_.Stop();
    static_cast<void>(file_->Seek(behind));
  }

  [[nodiscard]] bool IsNothing() { return walk_.line().blank() && walk_.AtEnd(); }

  std::string ShownLine() {
    if (walk_.line().blank()) return "it is blank";
    return "'" + SHOWN_Text(walk_.line().text.get()) + "'";
  }

  File* file_;
  Report* report_;
  CheckWalk walk_;
  const FileFormat* format_ = nullptr;
};

}  // namespace

void FILE_Check(File* file, Report* report) { FileCheck(file, report).Run(); }

}  // namespace tamu::tool
