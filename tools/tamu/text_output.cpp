#include "text_output.h"

#include "calendar_text.h"
#include "contact_text.h"
#include "message_text.h"
#include "note_text.h"

namespace tamu::tool {
namespace {

constexpr std::size_t kLabelWidth = 14;
constexpr std::string_view kIndent = "  ";

}  // namespace

void TextLines::AddHeading(std::string_view text) {
  text_ += style_.heading;
  text_ += text;
  text_ += style_.plain;
  text_ += '\n';
}

void TextLines::AddValue(std::string_view label, const std::vector<std::string>& lines,
                         const std::vector<std::string>& notes) {
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string_view head = i == 0 ? label : std::string_view();
    if (head.empty() && lines[i].empty()) {
      text_ += '\n';
      continue;
    }
    text_ += kIndent;
    text_ += style_.faint;
    text_ += head;
    text_ += style_.plain;
    text_.append(head.size() < kLabelWidth ? kLabelWidth - head.size() : 1, ' ');
    text_ += lines[i];
    if (i == 0) {
      for (std::size_t n = 0; n < notes.size(); ++n) {
        text_ += n == 0 ? " (" : ", ";
        text_ += notes[n];
      }
      if (!notes.empty()) text_ += ')';
    }
    text_ += '\n';
  }
}

std::string TEXT_Object(const ObjectView& object, const Style& style) {
  TextLines lines(style);
  switch (object.kind) {
    case KIND_CONTACT:
      TEXT_AddContact(object, &lines);
      break;
    case KIND_CALENDAR:
      TEXT_AddCalendarItem(object, &lines);
      break;
    case KIND_NOTE:
      TEXT_AddNote(object, &lines);
      break;
    default:
      TEXT_AddMessage(object, &lines);
      break;
  }
  return lines.text() + "\n";
}

}  // namespace tamu::tool
