#include "note_text.h"

#include "calendar_words.h"
#include "property_lines.h"

namespace tamu::tool {
namespace {

constexpr LabelRow kLabels[] = {
    {"DCREATED", "Created", &LINES_Dates},
    {"LAST-MODIFIED", "Modified", &LINES_Dates},
    {"CATEGORIES", "Categories", &LINES_List},
    {"CLASS", "Access", &CALWORDS_Class},
    {"BODY", "Text", &LINES_Plain},
};
constexpr LabelRow kSummary = {"SUMMARY", "Summary", &LINES_Plain};

}  // namespace

void TEXT_AddNote(const ObjectView& note, TextLines* lines) {
  LINES_AddSummary(kSummary, note, lines);
  for (const LabelRow& row : kLabels) LINES_AddRow(row, note, lines);
  LINES_AddIdentifier(note, lines);
}

}  // namespace tamu::tool
