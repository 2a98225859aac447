#include "read_failure.h"

#include <string>
#include <string_view>

#include "card_scan.h"
#include "display_text.h"
#include "message_scan.h"
#include "object_scan.h"
#include "platform/last_error.h"
#include "text/string_tools.h"

namespace tamu::tool {
namespace {

// --- The first line ---

// Files that are no object files, known by their first bytes.
struct BeginningRow {
  std::string_view bytes;
  std::string_view text;
};
constexpr BeginningRow kBeginnings[] = {
    {"\xFF\xFE", "this is UTF-16 text. Save it as UTF-8 without a byte-order mark."},
    {"\xFE\xFF", "this is UTF-16 text. Save it as UTF-8 without a byte-order mark."},
    {"\xEF\xBB\xBF", "the file starts with a byte-order mark. Save it as UTF-8 without one."},
    {"\r", "the file starts with a blank line. Remove it: the first line must begin an object."},
    {"\n", "the file starts with a blank line. Remove it: the first line must begin an object."},
    {"begin:", "the first line is not in capitals. It must be, as in BEGIN:VCARD."},
};
constexpr std::size_t kLongestBeginning = 6;

constexpr const char* kFirstLines = "BEGIN:VCARD, BEGIN:VCALENDAR, BEGIN:VNOTE or BEGIN:VMSG";

std::string FirstBytes(File* file) {
  std::string bytes;
  file->Rewind();
  while (bytes.size() < kLongestBeginning) {
    const int character = file->GetChar();
    if (character < 0) break;
    bytes.push_back(static_cast<char>(character));
  }
  return bytes;
}

const BeginningRow* FindBeginning(File* file) {
  std::string bytes = FirstBytes(file);
  for (const BeginningRow& row : kBeginnings) {
    if (bytes.starts_with(row.bytes)) return &row;
  }
  return nullptr;
}

Problem NoObject(const FailedReading& reading) {
  if (FirstBytes(reading.file).empty()) return {0, "the file is empty: there is nothing to read"};
  if (const BeginningRow* const row = FindBeginning(reading.file)) {
    return {1, std::string(row->text)};
  }
  const std::string_view name = reading.object_name.data();
  if (name.empty()) {
    return {1, std::string("this is not an object file: its first line must be ") + kFirstLines};
  }
  return {1, "the file begins with '" + DISPLAY_Bytes(name) +
                 "', which is no known kind of object: " + kFirstLines + " would be one"};
}

// --- A broken object ---

// "12 contacts before it were read, nothing after it was".
std::string ReadSoFar(const ReadOutcome& outcome) {
  if (outcome.objects == 0) return "nothing was read";
  return KIND_Count(outcome.objects, KIND_Words(outcome.kind)) + " before it " +
         (outcome.objects == 1 ? "was" : "were") + " read, nothing after it was";
}

// Lines that an object lacks, and what to add.
class MissingLines {
 public:
  void AddUnless(bool found, std::string_view what, std::string_view line) {
    if (found) return;
    what_ += (what_.empty() ? "" : " and ") + std::string(what);
    lines_ += (lines_.empty() ? "" : " and ") + std::string(line);
  }

  [[nodiscard]] Problem ProblemAt(std::uint32_t begin_line, std::string_view object,
                                  const ReadOutcome& outcome) const {
    if (what_.empty()) {
      return {begin_line, "the " + std::string(object) + " that begins here cannot be read; " +
                              ReadSoFar(outcome)};
    }
    return {begin_line, "the " + std::string(object) + " that begins here has " + what_ + "; " +
                            ReadSoFar(outcome) + ". Add " + lines_ + " or remove the " +
                            std::string(object) + "."};
  }

 private:
  std::string what_;
  std::string lines_;
};

Problem IncompleteCard(const FailedReading& reading, const ReadOutcome& outcome) {
  const CardParts found = CARD_Scan(reading.file, nullptr);
  MissingLines missing;
  missing.AddUnless(found.end, "no END line", "END:VCARD");
  missing.AddUnless(found.version, "no VERSION line", "VERSION:2.1");
  missing.AddUnless(found.n, "no N line (the name)", "a line such as N:Family;Given");
  return missing.ProblemAt(reading.begin_line, "card", outcome);
}

Problem IncompleteNote(const FailedReading& reading, const ReadOutcome& outcome) {
  const NoteParts found = NOTE_Scan(reading.file, nullptr);
  MissingLines missing;
  missing.AddUnless(found.end, "no END line", "END:VNOTE");
  missing.AddUnless(found.version, "no VERSION line", "VERSION:1.1");
  return missing.ProblemAt(reading.begin_line, "note", outcome);
}

// Its components may have been read, so that it is looked for from the start.
Problem IncompleteCalendar(const FailedReading& reading, const ReadOutcome& outcome) {
  CalendarParts found;
  reading.file->Rewind();
  do {
    found = CALENDAR_Scan(reading.file, nullptr);
  } while (found.version && found.component && found.end && !reading.file->AtEnd());
  MissingLines missing;
  missing.AddUnless(found.end, "no END line", "END:VCALENDAR");
  missing.AddUnless(found.version, "no VERSION line", "VERSION:1.0");
  missing.AddUnless(found.component, "neither event nor to-do", "one");
  return missing.ProblemAt(found.begin_line, "calendar", outcome);
}

// What the library says nothing about.
Problem BrokenMessage(const FailedReading& reading, const ReadOutcome& outcome) {
  const MessageParts found = MESSAGE_Scan(reading.file, nullptr);
  if (found.stray_line != 0) {
    return {found.stray_line, "'BEGIN:" + DISPLAY_Bytes(found.stray) +
                                  "' has no place in a message; " + ReadSoFar(outcome) +
                                  ". Remove what stands between it and its END."};
  }
  MissingLines missing;
  missing.AddUnless(found.envelope, "no envelope", "BEGIN:VENV and what follows it");
  missing.AddUnless(found.end, "no END line", "END:VMSG");
  return missing.ProblemAt(reading.begin_line, "message", outcome);
}

struct ScanRow {
  std::string_view object_name;
  Problem (*explain)(const FailedReading& reading, const ReadOutcome& outcome);
};
constexpr ScanRow kScans[] = {{"VCARD", &IncompleteCard},
                              {"VCALENDAR", &IncompleteCalendar},
                              {"VNOTE", &IncompleteNote},
                              {"VMSG", &BrokenMessage}};

// An object that lacks a line it needs: the lines are looked through once more.
Problem IncompleteObject(const FailedReading& reading, const ReadOutcome& outcome) {
  if (reading.file->Seek(outcome.end)) {
    for (const ScanRow& row : kScans) {
      if (row.object_name == reading.object_name.data()) return row.explain(reading, outcome);
    }
  }
  // A pipe does not go back: which line it is stays unsaid.
  static_cast<void>(reading.file->TakeError());
  const std::string what = reading.error != nullptr
                               ? reading.error->text + " (it begins here)"
                               : "the object that begins here lacks a line that it needs";
  return {reading.begin_line, what + "; " + ReadSoFar(outcome)};
}

Problem BrokenObject(const FailedReading& reading, const ReadOutcome& outcome) {
  if (reading.error == nullptr || reading.error->kind == MessageKind::kIncomplete) {
    return IncompleteObject(reading, outcome);
  }
  if (outcome.objects == 0 && reading.error->line <= 1) {
    if (const BeginningRow* const row = FindBeginning(reading.file)) {
      return {1, std::string(row->text)};
    }
  }
  const Message& error = *reading.error;
  const std::string advice = error.advice.empty() ? "" : ". " + std::string(error.advice);
  const std::uint32_t line = error.kind == MessageKind::kUnended ? reading.begin_line : error.line;
  return {line, error.text + "; " + ReadSoFar(outcome) + advice};
}

// --- What lies behind the last object ---

// A physical line as far as it tells whether an object begins or ends.
struct LineStart {
  std::string text;
  bool blank = true;
};

// Returns false at the end of the file.
bool ReadLineStart(File* file, LineStart* line) {
  constexpr std::size_t kEnough = 16;
  *line = {};
  int character = file->GetChar();
  if (character < 0) return false;
  for (; character >= 0 && character != '\n'; character = file->GetChar()) {
    const bool is_blank = character == ' ' || character == '\t' || character == '\r';
    if (!is_blank) line->blank = false;
    if (!line->blank && line->text.size() < kEnough) {
      line->text.push_back(static_cast<char>(character));
    }
  }
  return true;
}

struct Rest {
  std::uint64_t objects = 0;
  bool first_is_blank = false;
  bool any = false;
  bool any_text = false;
};

Rest LookThroughRest(File* file) {
  Rest rest;
  LineStart line;
  for (std::uint64_t depth = 0; ReadLineStart(file, &line); rest.any = true) {
    if (!rest.any) rest.first_is_blank = line.blank;
    if (line.blank) continue;
    rest.any_text = true;
    if (STR_BeginsNoCase(line.text, "BEGIN:")) {
      if (depth++ == 0) ++rest.objects;
    } else if (STR_BeginsNoCase(line.text, "END:") && depth != 0) {
      --depth;
    }
  }
  return rest;
}

// The library ends its reading without a word where a line behind an object begins no other one.
std::optional<Problem> UnreadRest(const FailedReading& reading, ReadOutcome* outcome) {
  File* const file = reading.file;
  if (file->Seek(outcome->end)) {
    // Of a calendar the last component was handed on, not its own end.
    if (outcome->objects != 0 && outcome->kind == KIND_CALENDAR) {
      CALENDAR_SkipEnd(file);
      outcome->end = file->Tell();
    }
  } else {
    // On a pipe that cannot go back, what has not been read yet is looked through.
    static_cast<void>(file->TakeError());
  }
  const Rest rest = LookThroughRest(file);
  outcome->rest = rest.any_text ? RestOfFile::kText
                  : rest.any    ? RestOfFile::kBlankLines
                                : RestOfFile::kNothing;
  if (!rest.any_text) return std::nullopt;
  std::string text = rest.first_is_blank ? "reading ends at this blank line behind an object; "
                                         : "reading ends at this line, which begins no object; ";
  if (rest.objects == 0) {
    outcome->rest_warning = {MessageKind::kWarning, outcome->end.line,
                             text + "no object follows it"};
    return std::nullopt;
  }
  text += rest.objects == 1
              ? "the object behind it was not read"
              : "the " + std::to_string(rest.objects) + " objects behind it were not read";
  return Problem{outcome->end.line, text + ". Remove what stands between END and BEGIN lines."};
}

}  // namespace

std::optional<Problem> FAILURE_Explain(const FailedReading& reading, ReadOutcome* outcome) {
  if (const std::uint32_t error = reading.file->TakeError()) {
    const std::uint32_t line = reading.file->Tell().line;
    return Problem{line, std::string("reading failed here: ") + platform::ErrorText(error) + "; " +
                             ReadSoFar(*outcome)};
  }
  if (reading.out_of_memory) {
    return Problem{reading.begin_line, "memory ran out; " + ReadSoFar(*outcome)};
  }
  switch (reading.result) {
    case TAMU_PARSE_OK:
    case TAMU_PARSE_WARNING:
      return UnreadRest(reading, outcome);
    case TAMU_NO_VALID_OBJECT:
      return NoObject(reading);
    default:
      return BrokenObject(reading, *outcome);
  }
}

}  // namespace tamu::tool
