// property_lines.h - properties as labelled lines: what the text of every kind of object is made
// of.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_PROPERTY_LINES_H_
#define TAMU_TOOLS_PROPERTY_LINES_H_

#include <string>
#include <string_view>
#include <vector>

#include "date_words.h"
#include "object_view.h"
#include "text_output.h"

namespace tamu::tool {

// A value for people: its lines, and what has to be said about it.
struct ValueText {
  std::vector<std::string> lines;
  std::vector<std::string> notes;
};

// How the occurrences of a property are shown.
struct LabelRow {
  std::string_view property;
  std::string_view label;
  ValueText (*text)(const PropertyView& property);
};

// Joins what is not empty.
[[nodiscard]] std::string LINES_Join(const std::vector<std::string>& parts,
                                     std::string_view separator);

// What the parameters and the decoding say about a value: types and doubts.
[[nodiscard]] std::vector<std::string> LINES_Notes(const PropertyView& property);

// A component on one line.
[[nodiscard]] std::string LINES_Part(const PropertyView& property, std::size_t index);

// The whole value: a ";" that stands unescaped in a text parts it, and belongs to it all the same.
[[nodiscard]] std::u16string LINES_Text(const PropertyView& property);

// The whole value, line by line.
[[nodiscard]] ValueText LINES_Plain(const PropertyView& property);
// All components in a row: "one, two".
[[nodiscard]] ValueText LINES_List(const PropertyView& property);
// Dates, a line each: for people where they read, as in the file where not.
[[nodiscard]] ValueText LINES_Dates(const PropertyView& property);

// The date of a component: "Wed 31 Dec 2003 23:59", and its own text in `*note` where that says
// more. A date that does not read is shown as it stands.
[[nodiscard]] std::string LINES_Date(const PropertyView& property, std::size_t index,
                                     std::string* note);
// The first component as a date, none when it does not read.
[[nodiscard]] std::optional<DateReading> LINES_ReadDate(const PropertyView& property,
                                                        std::size_t index);
// The property's own text where a date, read from it, leaves something unsaid; else "".
[[nodiscard]] std::string LINES_DateNote(const PropertyView& property, std::size_t index,
                                         const DateReading& date);

// The first occurrence of a property, null when there is none with a text.
[[nodiscard]] const PropertyView* LINES_Find(const ObjectView& object, std::string_view property);

// Adds one occurrence, or all of them. Empty ones are left out, base64 is counted.
void LINES_AddProperty(const LabelRow& row, const PropertyView& property, TextLines* lines);
void LINES_AddRow(const LabelRow& row, const ObjectView& object, TextLines* lines);

// Adds the heading that a summary gives, and behind it what a heading does not show: doubts about its
// decoding, further summaries.
void LINES_AddSummary(const LabelRow& row, const ObjectView& object, TextLines* lines);

// Adds the identifier that a synchronising device gave the object, if there is one.
void LINES_AddIdentifier(const ObjectView& object, TextLines* lines);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_PROPERTY_LINES_H_
