#include "read_failure.h"

#include <string>
#include <string_view>

#include "card_scan.h"
#include "display_text.h"
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
    {"\r", "the file starts with a blank line. Remove it: the first line must be BEGIN:VCARD."},
    {"\n", "the file starts with a blank line. Remove it: the first line must be BEGIN:VCARD."},
    {"begin:", "the first line is not in capitals. It must be BEGIN:VCARD."},
};
constexpr std::size_t kLongestBeginning = 6;

// Formats that are known, but not read.
struct FormatRow {
  std::string_view object_name;
  std::string_view words;
};
constexpr FormatRow kFormats[] = {
    {"VCALENDAR", "a calendar (vCalendar)"},
    {"VNOTE", "a note (vNote)"},
    {"VMSG", "messages (vMessage)"},
};

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
    return {1, "this is not an object file: its first line must be BEGIN:VCARD"};
  }
  return {1, "the file begins with '" + DISPLAY_Bytes(name) +
                 "', which is no known kind of object. BEGIN:VCARD would be a contact."};
}

Problem NotReadYet(const FailedReading& reading) {
  for (const FormatRow& row : kFormats) {
    if (row.object_name == reading.object_name.data()) {
      return {1, "this is " + std::string(row.words) +
                     ", which this version does not read yet. It reads contacts (vCard 2.1)."};
    }
  }
  return {1, "this version does not read this kind of object yet"};
}

// --- A broken object ---

// "12 contacts before it were read, nothing after it was".
std::string ReadSoFar(const ReadOutcome& outcome) {
  if (outcome.objects == 0) return "nothing was read";
  return KIND_Count(outcome.objects, KIND_Words(outcome.kind)) + " before it " +
         (outcome.objects == 1 ? "was" : "were") + " read, nothing after it was";
}

struct PartRow {
  bool CardParts::*part;
  std::string_view what;
  std::string_view line;
};
constexpr PartRow kParts[] = {
    {&CardParts::end, "no END line", "END:VCARD"},
    {&CardParts::version, "no VERSION line", "VERSION:2.1"},
    {&CardParts::n, "no N line (the name)", "a line such as N:Family;Given"},
};

// A card that lacks a line it needs.
Problem IncompleteCard(const FailedReading& reading, const ReadOutcome& outcome) {
  CardParts found;
  if (!reading.file->Seek(outcome.end)) {
    // A pipe does not go back: which line it is stays unsaid.
    static_cast<void>(reading.file->TakeError());
    return {reading.begin_line,
            "the card that begins here lacks its END, VERSION or N line; " + ReadSoFar(outcome)};
  }
  found = CARD_FindParts(reading.file);
  std::string what;
  std::string missing;
  for (const PartRow& row : kParts) {
    if (found.*row.part) continue;
    what += (what.empty() ? "" : " and ") + std::string(row.what);
    missing += (missing.empty() ? "" : " and ") + std::string(row.line);
  }
  return {reading.begin_line, "the card that begins here has " + what + "; " + ReadSoFar(outcome) +
                                  ". Add " + missing + " or remove the card."};
}

Problem BrokenObject(const FailedReading& reading, const ReadOutcome& outcome) {
  if (reading.error == nullptr) {
    return {reading.begin_line,
            "the object that begins here cannot be read; " + ReadSoFar(outcome)};
  }
  if (reading.error->kind == MessageKind::kIncomplete) return IncompleteCard(reading, outcome);
  if (outcome.objects == 0 && reading.error->line <= 1) {
    if (const BeginningRow* const row = FindBeginning(reading.file)) {
      return {1, std::string(row->text)};
    }
  }
  const Message& error = *reading.error;
  const std::string advice = error.advice.empty() ? "" : ". " + std::string(error.advice);
  return {error.line, error.text + "; " + ReadSoFar(outcome) + advice};
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
  // On a pipe that cannot go back, what has not been read yet is looked through.
  if (!file->Seek(outcome->end)) static_cast<void>(file->TakeError());
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
    case TAMU_UNSUPPORTED_TYPE:
      return NotReadYet(reading);
    default:
      return BrokenObject(reading, *outcome);
  }
}

}  // namespace tamu::tool
