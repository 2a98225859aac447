#include "contact_text.h"

#include <string>
#include <string_view>
#include <vector>

#include "display_text.h"
#include "property_words.h"

namespace tamu::tool {
namespace {

using Lines = std::vector<std::string>;

std::string Part(const PropertyView& property, std::size_t index) {
  return DISPLAY_Line(property.Text(index));
}

// Joins what is not empty.
std::string Join(const Lines& parts, std::string_view separator) {
  std::string text;
  for (const std::string& part : parts) {
    if (part.empty()) continue;
    if (!text.empty()) text += separator;
    text += part;
  }
  return text;
}

void AddIfFilled(std::string text, Lines* lines) {
  if (!text.empty()) lines->push_back(std::move(text));
}

Lines PlainLines(const PropertyView& property) { return DISPLAY_Lines(property.Text(0)); }

// As directories have it: "Family, Prefix Given Additional, Suffix".
Lines NameLines(const PropertyView& property) {
  enum : std::size_t { kFamily, kGiven, kAdditional, kPrefix, kSuffix };
  const std::string own =
      Join({Part(property, kPrefix), Part(property, kGiven), Part(property, kAdditional)}, " ");
  Lines lines;
  AddIfFilled(Join({Part(property, kFamily), own, Part(property, kSuffix)}, ", "), &lines);
  return lines;
}

// As on an envelope.
Lines AddressLines(const PropertyView& property) {
  enum : std::size_t { kPostBox, kExtended, kStreet, kTown, kRegion, kPostCode, kCountry };
  Lines lines;
  for (const std::size_t index : {kPostBox, kExtended, kStreet}) {
    for (std::string& line : DISPLAY_Lines(property.Text(index))) {
      AddIfFilled(std::move(line), &lines);
    }
  }
  AddIfFilled(Join({Part(property, kPostCode), Part(property, kTown)}, " "), &lines);
  AddIfFilled(Part(property, kRegion), &lines);
  AddIfFilled(Part(property, kCountry), &lines);
  return lines;
}

Lines OrganisationLines(const PropertyView& property) {
  Lines lines;
  AddIfFilled(Join({Part(property, 0), Part(property, 1)}, ", "), &lines);
  return lines;
}

struct LabelRow {
  std::string_view property;
  std::string_view label;
  Lines (*lines)(const PropertyView&);
};
// In the order in which they are shown.
constexpr LabelRow kLabels[] = {
    {"FN", "Shown as", &PlainLines},
    {"N", "Name", &NameLines},
    {"NICKNAME", "Nickname", &PlainLines},
    {"ORG", "Organisation", &OrganisationLines},
    {"TITLE", "Title", &PlainLines},
    {"ROLE", "Role", &PlainLines},
    {"TEL", "Phone", &PlainLines},
    {"EMAIL", "E-mail", &PlainLines},
    {"URL", "Web page", &PlainLines},
    {"ADR", "Address", &AddressLines},
    {"BDAY", "Birthday", &PlainLines},
    {"X-ANNIVERSARY", "Anniversary", &PlainLines},
    {"X-SPOUSE", "Spouse", &PlainLines},
    {"X-CHILDREN", "Children", &PlainLines},
    {"X-ASSISTANT", "Assistant", &PlainLines},
    {"X-CAT", "Category", &PlainLines},
    {"NOTE", "Note", &PlainLines},
};

Lines NotesOn(const PropertyView& property) {
  Lines notes = WORDS_Types(property);
  for (std::string& doubt : WORDS_Doubts(property)) notes.push_back(std::move(doubt));
  return notes;
}

void AddProperty(const LabelRow& row, const PropertyView& property, TextLines* lines) {
  if (property.IsEmpty()) return;
  if (property.encoding == ValueEncoding::kBase64) {
    return lines->AddValue(row.label, {WORDS_Base64(property)}, WORDS_Types(property));
  }
  lines->AddValue(row.label, row.lines(property), NotesOn(property));
}

}  // namespace

void TEXT_AddContact(const ObjectView& contact, TextLines* lines) {
  for (const LabelRow& row : kLabels) {
    for (const PropertyView& property : contact.properties) {
      if (property.name != row.property) continue;
      // The heading shows it already.
      const bool is_heading = row.property == "FN" && property.Text(0) == contact.name &&
                              WORDS_Doubts(property).empty();
      if (!is_heading) AddProperty(row, property, lines);
    }
  }
  if (!contact.luid.empty()) lines->AddValue("Identifier", {DISPLAY_Bytes(contact.luid)}, {});
}

}  // namespace tamu::tool
