// The mail of a message: its headers, and its content by physical lines.
#include <cstring>
#include <new>
#include <string>

#include "check/object_walks.h"
#include "check/value_check.h"
#include "formats/vmessage_content.h"
#include "formats/vmessage_multipart.h"
#include "text/charset.h"
#include "text/string_tools.h"

namespace tamu::tool {
namespace {

constexpr std::string_view kBodyEnd = "END:VBODY";

// What is looked at in the lines of a content.
enum class ContentUse : std::uint8_t { kText, kFile, kBase64, kSkipped };

// A header of a mail or a part that says how the content is read.
void CheckContentType(CheckWalk* walk, const char* content_type) {
  const bool names_charset = STR_FindNoCase(content_type, "CHARSET") != nullptr;
  if (names_charset && STR_FindNoCase(content_type, "MULTIPART") == nullptr) {
    static_cast<void>(CHARSET_Check(walk, content_type));
  }
}

// How the text of a part is read; what is wrong with its character set has been told.
TextReading ReadingOf(const BodyPart& part) {
  TextReading reading;
  reading.quoted_printable = STR_FindNoCase(part.transfer_encoding, "QUOTED-PRINTABLE") != nullptr;
  reading.announced = STR_FindNoCase(part.content_type, "CHARSET") != nullptr;
  reading.code_page =
      reading.announced ? CHARSET_OfParam(part.content_type) : CHARSET_GetInputCodePage();
  return reading;
}

class ContentWalk {
 public:
  ContentWalk(CheckWalk* walk, const BodyPart& part, std::size_t part_number)
      : walk_(walk),
        part_number_(part_number),
        use_(UseOf(part, part_number)),
        reading_(ReadingOf(part)),
        text_(walk, reading_, "this line"),
        begin_line_(walk->file()->Tell().line) {}

  // Returns false when the file ends before the marker's line does. `*last` (may be null) is set
  // when that is the last one.
  bool Run(std::string_view marker, bool* last) {
    bool found = false;
    while (!found && !walk_->AtEnd()) {
      const File::Place place = walk_->file()->Tell();
      std::string_view line;
      if (!VMSG_ReadRawLine(walk_->file(), &line)) throw std::bad_alloc();
      const std::string_view raw(
          line.data(), static_cast<std::size_t>(walk_->file()->Tell().offset - place.offset));
      walk_->SetNumber(place.line);
      found = line.starts_with(marker);
      if (found && last != nullptr) *last = line.substr(marker.size()) == "--";
      if (!found && !raw.empty()) TakeLine(line, raw);
    }
    CheckText();
    // The library tells of a content by its first line.
    walk_->SetNumber(begin_line_);
    if (!walk_->AtEnd()) return true;
    if (!found) walk_->Add(FindingKind::kMissingMarker, {SHOWN_Text(marker)});
    return false;
  }

 private:
  static ContentUse UseOf(const BodyPart& part, std::size_t part_number) noexcept {
    if (part_number != 1) return ContentUse::kSkipped;
    if (std::strstr(part.content_type, "name=") != nullptr) return ContentUse::kFile;
    const bool base64 = STR_FindNoCase(part.transfer_encoding, "BASE64") != nullptr;
    return base64 ? ContentUse::kBase64 : ContentUse::kText;
  }

  void TakeLine(std::string_view line, std::string_view raw) {
    if (use_ == ContentUse::kSkipped) return TellOnce(FindingKind::kPartSkipped, line);
    CheckCut(line, raw);
    if (use_ == ContentUse::kBase64) TellOnce(FindingKind::kBase64, line);
    if (use_ != ContentUse::kText) return;
    if (joined_.empty()) joined_line_ = walk_->number();
    const bool joins = line.ends_with('=');
    if (joins) line.remove_suffix(1);
    joined_ += line;
    if (!joins) return CheckText();
    if (!reading_.quoted_printable) walk_->Add(FindingKind::kJoinedLine);
  }

  // Lines that are joined are looked at as one: their ends may stand inside of a character.
  void CheckText() {
    if (joined_.empty()) return;
    walk_->SetNumber(joined_line_);
    text_.Take(joined_);
    joined_.clear();
  }

  // What stands behind a carriage return or a NUL.
  void CheckCut(std::string_view line, std::string_view raw) {
    if (line.size() == raw.size() || raw[line.size()] == '\n') return;
    if (raw[line.size()] == '\0') return walk_->Add(FindingKind::kNulByte);
    const std::string_view behind = raw.substr(line.size() + 1);
    if (!behind.empty() && behind != "\n") walk_->Add(FindingKind::kContentCut);
  }

  void TellOnce(FindingKind kind, std::string_view line) {
    if (told_ || line.empty()) return;
    told_ = true;
    walk_->Add(kind, {kind == FindingKind::kBase64 ? "the content of the mail"
                                                   : std::to_string(part_number_)});
  }

  CheckWalk* walk_;
  std::size_t part_number_;
  ContentUse use_;
  TextReading reading_;
  TextCheck text_;
  std::uint32_t begin_line_;
  std::string joined_;  // the text that goes on in the next line
  std::uint32_t joined_line_ = 0;
  bool told_ = false;
};

// The parts of a mail. Where the library gives up, so does this.
class PartsWalk {
 public:
  PartsWalk(CheckWalk* walk, MessageShape* message, const VmsgBoundary& boundary)
      : walk_(walk), message_(message), marker_("--" + std::string(boundary.data())) {}

  // Returns false when it gave up.
  bool Run() {
    // The first part's headers take the place of the mail's.
    BodyPart part = message_->body;
    Skip(marker_);
    for (std::size_t number = 1; !walk_->AtEnd(); ++number) {
      if (number != 1) part = BodyPart{};
      if (!ReadHeaders(&part)) return walk_->AtEnd();
      bool last = false;
      if (!ContentWalk(walk_, part, number).Run(marker_, &last)) return true;
      if (!last) continue;
      Skip(kBodyEnd);
      return true;
    }
    return true;
  }

 private:
  // Passes over lines up to and with the one that is wanted.
  void Skip(std::string_view wanted) {
    while (!walk_->AtEnd()) {
      std::string_view line;
      if (!VMSG_ReadRawLine(walk_->file(), &line)) throw std::bad_alloc();
      if (line == wanted) return;
    }
    walk_->Add(FindingKind::kMissingMarker, {SHOWN_Text(wanted)});
  }

  // Returns true at the empty line behind the headers.
  bool ReadHeaders(BodyPart* part) {
    while (!walk_->AtEnd()) {
      walk_->ReadLine();
      SourceLine& line = walk_->line();
      if (line.blank()) {
        if (!line.raw.empty()) return true;
        continue;
      }
      const char* const name = LINE_StripBlanks(line.name.data());
      const VmsgRow* const row = VMSG_FindRow(name);
      if (row == nullptr || !VMSG_IsPartHeader(row->code)) {
        walk_->Add(FindingKind::kPartHeader, {"'" + SHOWN_Text(name) + "' is no header of one"});
        return false;
      }
      HEADER_Check(walk_, *row);
      if (!VMSG_KeepValue(*row, line.value, message_, part)) {
        walk_->Add(FindingKind::kPartHeader, {"the value of '" + SHOWN_Text(name) + "' is cut"});
        return false;
      }
      if (row->code == VmsgCode::kContentType) CheckContentType(walk_, part->content_type);
    }
    return false;
  }

  CheckWalk* walk_;
  MessageShape* message_;
  std::string marker_;
};

class MailWalk {
 public:
  MailWalk(CheckWalk* walk, MessageShape* message)
      : walk_(walk), message_(message), begin_line_(walk->line().number()) {}

  bool Run() {
    while (!ended_ && !walk_->AtEnd()) TakeLine();
    if (!ended_) walk_->AddMissingEnd("mail", begin_line_, "VBODY, END:VENV and END:VMSG");
    return read_;
  }

 private:
  void TakeLine() {
    walk_->ReadLine();
    SourceLine& line = walk_->line();
    if (line.blank()) return TakeContent();
    const VmsgRow* const row = VMSG_FindRow(LINE_StripBlanks(line.name.data()));
    const VmsgCode code = row != nullptr ? row->code : VmsgCode::kUnknown;
    if (VMSG_IsMailHeader(code)) {
      TakeHeader(*row);
    } else if (code == VmsgCode::kEnd) {
      LENGTH_Check(walk_, line.value, row->kept);
      ended_ = true;
    } else {
      UNKNOWN_Add(walk_);
    }
  }

  void TakeHeader(const VmsgRow& row) {
    HEADER_Check(walk_, row);
    HEADER_Keep(walk_, row, message_, &message_->body);
    if (!VMSG_IsPartHeader(row.code)) CheckText(row);
    if (row.code == VmsgCode::kDate) MAILDATE_Check(walk_, message_->date);
    if (row.code == VmsgCode::kContentType) {
      type_line_ = walk_->number();
      CheckContentType(walk_, message_->body.content_type);
    }
  }

  // What is kept of a header is read in the device's own code page.
  void CheckText(const VmsgRow& row) {
    TextReading reading;
    reading.code_page = CHARSET_GetNativeCodePage();
    reading.advice = "Write it in that code page";
    TextCheck text(walk_, reading, "the value of '" + std::string(row.name) + "'");
    text.Take(row.field(message_, &message_->body));
  }

  void TakeContent() {
    ended_ = true;
    const char* const type = message_->body.content_type;
    VmsgBoundary boundary;
    if (VMSG_FindBoundary(type, &boundary)) {
      read_ = PartsWalk(walk_, message_, boundary).Run();
    } else {
      if (STR_BeginsNoCase(type + std::strspn(type, " \t"), "MULTIPART/")) {
        walk_->AddAt(type_line_, FindingKind::kMultipartAsText);
      }
      ContentWalk(walk_, message_->body, 1).Run(kBodyEnd, nullptr);
    }
  }

  CheckWalk* walk_;
  MessageShape* message_;
  std::uint32_t begin_line_;
  std::uint32_t type_line_ = 0;
  bool read_ = true;
  bool ended_ = false;
};

}  // namespace

bool MAIL_Walk(CheckWalk* walk, MessageShape* message) { return MailWalk(walk, message).Run(); }

}  // namespace tamu::tool
