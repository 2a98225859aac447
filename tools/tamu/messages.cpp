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

// Lines about failures that the program sees, and tells, itself.
constexpr std::string_view kToldElsewhere[] = {
    "TAMU:  Unable to put string to file",
    "TAMU:  Unable to open file '",
    "TAMU:  Unable to close file '",
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
