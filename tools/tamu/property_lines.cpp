#include "property_lines.h"

#include "display_text.h"
#include "property_words.h"

namespace tamu::tool {
namespace {

std::string_view Raw(const PropertyView& property, std::size_t index) noexcept {
  if (index >= property.components.size() || !property.components[index]) return {};
  return property.components[index]->raw;
}

void AddAll(std::vector<std::string> from, std::vector<std::string>* to) {
  for (std::string& text : from) to->push_back(std::move(text));
}

}  // namespace

std::string LINES_Join(const std::vector<std::string>& parts, std::string_view separator) {
  std::string text;
  for (const std::string& part : parts) {
    if (part.empty()) continue;
    if (!text.empty()) text += separator;
    text += part;
  }
  return text;
}

std::vector<std::string> LINES_Notes(const PropertyView& property) {
  std::vector<std::string> notes = WORDS_Types(property);
  AddAll(WORDS_Doubts(property), &notes);
  return notes;
}

std::string LINES_Part(const PropertyView& property, std::size_t index) {
  return DISPLAY_Line(property.Text(index));
}

std::u16string LINES_Text(const PropertyView& property) {
  std::u16string text;
  for (std::size_t i = 0; i < property.components.size(); ++i) {
    if (i != 0) text += u';';
    text += property.Text(i);
  }
  return text;
}

ValueText LINES_Plain(const PropertyView& property) {
  return {DISPLAY_Lines(LINES_Text(property)), LINES_Notes(property)};
}

ValueText LINES_List(const PropertyView& property) {
  std::vector<std::string> parts;
  for (std::size_t i = 0; i < property.components.size(); ++i) {
    parts.push_back(LINES_Part(property, i));
  }
  return {{LINES_Join(parts, ", ")}, LINES_Notes(property)};
}

std::optional<DateReading> LINES_ReadDate(const PropertyView& property, std::size_t index) {
  return DATE_ReadIso(Raw(property, index));
}

std::string LINES_DateNote(const PropertyView& property, std::size_t index,
                           const DateReading& date) {
  return date.plain ? "" : LINES_Part(property, index);
}

std::string LINES_Date(const PropertyView& property, std::size_t index, std::string* note) {
  const std::optional<DateReading> date = LINES_ReadDate(property, index);
  *note = date ? LINES_DateNote(property, index, *date) : "";
  return date ? DATE_Words(*date) : LINES_Part(property, index);
}

ValueText LINES_Dates(const PropertyView& property) {
  ValueText text;
  for (std::size_t i = 0; i < property.components.size(); ++i) {
    std::string note;
    std::string date = LINES_Date(property, i, &note);
    if (date.empty()) continue;
    // Notes stand behind the first line alone.
    if (!note.empty() && !text.lines.empty()) date += " (" + note + ")";
    if (!note.empty() && text.lines.empty()) text.notes.push_back(note);
    text.lines.push_back(std::move(date));
  }
  AddAll(LINES_Notes(property), &text.notes);
  return text;
}

const PropertyView* LINES_Find(const ObjectView& object, std::string_view property) {
  for (const PropertyView& view : object.properties) {
    if (view.name == property && !view.IsEmpty()) return &view;
  }
  return nullptr;
}

void LINES_AddProperty(const LabelRow& row, const PropertyView& property, TextLines* lines) {
  if (property.IsEmpty()) return;
  if (property.encoding == ValueEncoding::kBase64) {
    return lines->AddValue(row.label, {WORDS_Base64(property)}, WORDS_Types(property));
  }
  const ValueText text = row.text(property);
  lines->AddValue(row.label, text.lines, text.notes);
}

void LINES_AddRow(const LabelRow& row, const ObjectView& object, TextLines* lines) {
  for (const PropertyView& property : object.properties) {
    if (property.name == row.property) LINES_AddProperty(row, property, lines);
  }
}

void LINES_AddSummary(const LabelRow& row, const ObjectView& object, TextLines* lines) {
  const PropertyView* const summary = LINES_Find(object, row.property);
  const std::string heading = summary != nullptr ? DISPLAY_Line(LINES_Text(*summary)) : "";
  lines->AddHeading(heading.empty() ? "(no title)" : heading);
  for (const PropertyView& property : object.properties) {
    if (property.name != row.property) continue;
    if (&property != summary || !WORDS_Doubts(property).empty()) {
      LINES_AddProperty(row, property, lines);
    }
  }
}

void LINES_AddIdentifier(const ObjectView& object, TextLines* lines) {
  if (!object.luid.empty()) lines->AddValue("Identifier", {DISPLAY_Bytes(object.luid)}, {});
}

}  // namespace tamu::tool
