#include "contact_text.h"

#include <string>
#include <string_view>
#include <vector>

#include "display_text.h"
#include "property_lines.h"
#include "property_words.h"

namespace tamu::tool {
namespace {

using Lines = std::vector<std::string>;

void AddIfFilled(std::string text, Lines* lines) {
  if (!text.empty()) lines->push_back(std::move(text));
}

// As directories have it: "Family, Prefix Given Additional, Suffix".
ValueText NameText(const PropertyView& property) {
  enum : std::size_t { kFamily, kGiven, kAdditional, kPrefix, kSuffix };
  const std::string own = LINES_Join({LINES_Part(property, kPrefix), LINES_Part(property, kGiven),
                                      LINES_Part(property, kAdditional)},
                                     " ");
  Lines lines;
  AddIfFilled(LINES_Join({LINES_Part(property, kFamily), own, LINES_Part(property, kSuffix)}, ", "),
              &lines);
  return {lines, LINES_Notes(property)};
}

// As on an envelope.
ValueText AddressText(const PropertyView& property) {
  enum : std::size_t { kPostBox, kExtended, kStreet, kTown, kRegion, kPostCode, kCountry };
  Lines lines;
  for (const std::size_t index : {kPostBox, kExtended, kStreet}) {
    for (std::string& line : DISPLAY_Lines(property.Text(index))) {
      AddIfFilled(std::move(line), &lines);
    }
  }
  AddIfFilled(LINES_Join({LINES_Part(property, kPostCode), LINES_Part(property, kTown)}, " "),
              &lines);
  AddIfFilled(LINES_Part(property, kRegion), &lines);
  AddIfFilled(LINES_Part(property, kCountry), &lines);
  return {lines, LINES_Notes(property)};
}

ValueText OrganisationText(const PropertyView& property) {
  Lines lines;
  AddIfFilled(LINES_Join({LINES_Part(property, 0), LINES_Part(property, 1)}, ", "), &lines);
  return {lines, LINES_Notes(property)};
}

// In the order in which they are shown.
constexpr LabelRow kLabels[] = {
    {"FN", "Shown as", &LINES_Plain},
    {"N", "Name", &NameText},
    {"NICKNAME", "Nickname", &LINES_Plain},
    {"ORG", "Organisation", &OrganisationText},
    {"TITLE", "Title", &LINES_Plain},
    {"ROLE", "Role", &LINES_Plain},
    {"TEL", "Phone", &LINES_Plain},
    {"EMAIL", "E-mail", &LINES_Plain},
    {"URL", "Web page", &LINES_Plain},
    {"ADR", "Address", &AddressText},
    {"BDAY", "Birthday", &LINES_Dates},
    {"X-ANNIVERSARY", "Anniversary", &LINES_Dates},
    {"X-SPOUSE", "Spouse", &LINES_Plain},
    {"X-CHILDREN", "Children", &LINES_Plain},
    {"X-ASSISTANT", "Assistant", &LINES_Plain},
    {"X-CAT", "Category", &LINES_Plain},
    {"NOTE", "Note", &LINES_Plain},
};

}  // namespace

void TEXT_AddContact(const ObjectView& contact, TextLines* lines) {
  const std::string name = DISPLAY_Line(contact.name);
  lines->AddHeading(name.empty() ? "(no name)" : name);
  for (const LabelRow& row : kLabels) {
    for (const PropertyView& property : contact.properties) {
      if (property.name != row.property) continue;
      // The heading shows it already.
      const bool is_heading = row.property == "FN" && property.Text(0) == contact.name &&
                              WORDS_Doubts(property).empty();
      if (!is_heading) LINES_AddProperty(row, property, lines);
    }
  }
  LINES_AddIdentifier(contact, lines);
}

}  // namespace tamu::tool
