#include "messages.h"

#include <string_view>

#include "display_text.h"

namespace tamu::tool {
namespace {

struct MessageRow {
  // The library's text is `before`, a text that varies, and `after`.
  std::string_view before;
  std::string_view after;
  MessageKind kind;
  // Ours; "%" stands for the text that varies.
  std::string_view text;
  std::string_view advice = {};
};

constexpr MessageRow kMessages[] = {
    {"TAMU:  Warning - Parser encountered unknown property: '", "'", MessageKind::kLeftOut,
     "the property '%' is not known and was left out"},
    {"TAMU:  Warning - Parser encounted a blank line in vCard", "", MessageKind::kHarmless,
     "a blank line inside the card was passed over"},
    {"TAMU:  Error - vCard version '", "' is not supported", MessageKind::kLine,
     "the card has version '%', and only vCards up to version 2.1 can be read",
     "Export it again as vCard 2.1."},
    {"TAMU:  Error - vCard does not have a BEGIN tag", "", MessageKind::kLine,
     "no card begins here", "Put BEGIN:VCARD on a line of its own."},
    {"TAMU:  Error - vCard missing END tago or does not contain required VERSION or N properties",
     "", MessageKind::kIncomplete, "the card lacks its END, VERSION or N line"},
    {"TAMU:  Warning - Parser encounted a blank line in vCalendar", "", MessageKind::kHarmless,
     "a blank line inside the calendar was passed over"},
    {"TAMU:  Warning - vCalendar contains unknown property: '", "'", MessageKind::kLeftOut,
     "the property '%' is not known and was left out"},
    {"TAMU:  Warning - vCalendar does not contain all mandetory properties", "",
     MessageKind::kHarmless,
     "the event or to-do that ends here lacks properties that it should have; 'tamu check' names "
     "them"},
    {"TAMU:  Error - vCalendar does not have a BEGIN tag", "", MessageKind::kLine,
     "no calendar begins here", "Put BEGIN:VCALENDAR on a line of its own."},
    {"TAMU:  Error - vCalendar version '", "' is not supported", MessageKind::kLine,
     "the calendar has version '%', and only vCalendar 1.0 can be read",
     "Export it again as vCalendar 1.0."},
    {"TAMU:  Error - Unknown BEGIN tag in vCalendar", "", MessageKind::kLine,
     "this BEGIN is neither VEVENT nor VTODO, and a calendar holds nothing else",
     "Remove what stands between it and its END."},
    {"TAMU:  Error - vCalendar missing END tag", "", MessageKind::kUnended,
     "the event or to-do that begins here has no END line",
     "Add END:VEVENT or END:VTODO, or remove it."},
    {"TAMU:  Error - vCalendar does not contain required VERSION property", "",
     MessageKind::kIncomplete, "the calendar lacks its VERSION or END line, or all content"},
    {"TAMU:  Warning - Parser encounted a blank line in vNote", "", MessageKind::kHarmless,
     "a blank line inside the note was passed over"},
    {"TAMU:  Error - vNote does not have a BEGIN tag", "", MessageKind::kLine,
     "no note begins here", "Put BEGIN:VNOTE on a line of its own."},
    {"TAMU:  Error - vNote version '", "' is not supported", MessageKind::kLine,
     "the note has version '%', and only vNotes up to version 1.1 can be read",
     "Export it again as vNote 1.1."},
    {"TAMU:  Error - vNote missing END tag or does not contain required VERSION property", "",
     MessageKind::kIncomplete, "the note lacks its END or VERSION line"},
    {"TAMU:  Warning - Parser encounted a blank line in vMSG", "", MessageKind::kHarmless,
     "a blank line inside the message was passed over"},
    {"TAMU:  Warning - Parser encounted a blank line in vEnv", "", MessageKind::kHarmless,
     "a blank line inside the message's envelope was passed over"},
    {"TAMU:  Warning - Parser encountered unexpected property: '", "'", MessageKind::kWarning,
     "the header '%' has no place in a part of a message: the parts behind it were not read"},
    {"TAMU:  Error - vMsg does not have a BEGIN tag", "", MessageKind::kLine,
     "no message begins here", "Put BEGIN:VMSG on a line of its own."},
    {"TAMU:  Error - vMsg version '", "' is not supported", MessageKind::kLine,
     "the message has version '%', and only vMessages up to version 1.1 can be read",
     "Export it again as vMessage 1.1."},
    {"TAMU:  Error - vMsg missing BODY section", "", MessageKind::kUnended,
     "the message that begins here has no mail (BEGIN:VBODY), or the file ends before END:VENV and "
     "END:VMSG",
     "Complete or remove the message."},
    {"TAMU:  Error - vBody missing END tag", "", MessageKind::kUnended,
     "the file ends among the headers of the message that begins here",
     "Complete or remove the message."},
    {"TAMU:  Error - reached EOF while parsing CONTENT of vMsg", "", MessageKind::kUnended,
     "the file ends within the content of the message that begins here: it has no END:VBODY line, "
     "or its last part no closing boundary",
     "Complete or remove the message."},
    {"TAMU: FILE_TempFilename; PATH error (", ")", MessageKind::kWarning,
     "there is no folder for temporary files (error %); the attachment's content was left out"},
    {"TAMU: FILE_TempFilename; FILE error (", ")", MessageKind::kWarning,
     "no temporary file could be made (error %); the attachment's content was left out"},
    {"TAMU:  Unable to open file '", "' for writing", MessageKind::kWarning,
     "the temporary file '%' could not be opened; the attachment's content was left out"},
    {"TAMU:  Unable to close file '", "'", MessageKind::kWarning,
     "the attachment could not be written to its temporary file in full"},
    {"TAMU:  Unable to remove file (file=", ")", MessageKind::kWarning,
     "the temporary file '%' of an attachment could not be deleted"},
    {"TAMU:  Error - Memory allocation error", "", MessageKind::kError, "memory ran out"},
    {"TAMU:  Memory allocation of ", " bytes failed in 'FileLine'", MessageKind::kWarning,
     "there is no memory for the line that begins here (% bytes); it was left out"},
    {"TAMU:  Insufficient memory to generate ", " string", MessageKind::kWarning,
     "there is no memory for a line of a %; it was not written"},
    {"TAMU:  Registry input CHARSET '", "' not valid, using native codepage",
     MessageKind::kSettings,
     "DefaultInputCharset names the unknown character set '%'; the native code page is used"},
    {"TAMU:  Registry output CHARSET '", "' not valid, using native codepage",
     MessageKind::kSettings,
     "DefaultOutputCharset names the unknown character set '%'; the native code page is used"},
};

// Lines about what the program sees, and tells, itself: failures of output; dates that do not read,
// which are shown as they stand; the number of an error that was just told of.
constexpr std::string_view kToldElsewhere[] = {
    "TAMU:  Unable to put string to file",
    "TAMU:  Error in date '",
    "TAMU:  Error converting date",
    "TAMU:  Error: 0x",
};

// What stands between the row's two texts; none when the line is another.
std::optional<std::string_view> Match(const MessageRow& row, std::string_view text) noexcept {
  if (text.size() < row.before.size() + row.after.size() || !text.starts_with(row.before) ||
      !text.ends_with(row.after)) {
    return std::nullopt;
  }
  text.remove_prefix(row.before.size());
  text.remove_suffix(row.after.size());
  return text;
}

std::string Fill(std::string_view text, std::string_view varying) {
  const std::size_t mark = text.find('%');
  if (mark == std::string_view::npos) return std::string(text);
  return std::string(text.substr(0, mark)) + DISPLAY_Bytes(varying) +
         std::string(text.substr(mark + 1));
}

// A line that the table does not know, without the library's prefix.
std::optional<Message> FromUnknown(const LogLine& line) {
  std::string_view text = line.text;
  constexpr std::string_view kPrefix = "TAMU:  ", kWarning = "Warning - ", kError = "Error - ";
  if (text.starts_with(kPrefix)) text.remove_prefix(kPrefix.size());
  const bool warning = text.starts_with(kWarning);
  if (line.severity == LogSeverity::kInformation && !warning) return std::nullopt;
  MessageKind kind = MessageKind::kWarning;
  if (warning) text.remove_prefix(kWarning.size());
  if (text.starts_with(kError)) {
    text.remove_prefix(kError.size());
    kind = MessageKind::kError;
  }
  return Message{kind, line.source_line, DISPLAY_Bytes(text), {}};
}

}  // namespace

std::optional<Message> MESSAGE_FromLog(const LogLine& line) {
  for (const std::string_view told : kToldElsewhere) {
    if (line.text.starts_with(told)) return std::nullopt;
  }
  for (const MessageRow& row : kMessages) {
    if (const std::optional<std::string_view> varying = Match(row, line.text)) {
      const std::uint32_t number = row.kind == MessageKind::kSettings ? 0 : line.source_line;
      return Message{row.kind, number, Fill(row.text, *varying), row.advice};
    }
  }
  return FromUnknown(line);
}

std::string MESSAGE_Warning(std::string_view file, const Message& message) {
  std::string text(message.kind == MessageKind::kSettings ? std::string_view("tamu") : file);
  if (message.line != 0) text += ":" + std::to_string(message.line);
  return text + ": warning: " + message.text;
}

}  // namespace tamu::tool
