#include "check/value_check.h"

#include <cstring>
#include <new>

#include "core/records.h"
#include "recurrence/rule_parser.h"
#include "text/charset.h"
#include "text/property.h"
#include "text/string_tools.h"

namespace tamu::tool {
namespace {

constexpr std::string_view kEncodedLineBreak = "=0D=0A";

std::string Quoted(std::string_view text) { return "'" + SHOWN_Text(text) + "'"; }

// A line's property as the library makes it, but with all of its components.
class WholeProperty {
 public:
  explicit WholeProperty(const SourceLine& line) : property_(PROP_Append(&chain_)) {
    if (property_ == nullptr) throw std::bad_alloc();
    PROP_SetFromText(line.value, line.params.data(), kAnyComponents, property_);
  }
  ~WholeProperty() { PROP_Free(chain_); }
  WholeProperty(const WholeProperty&) = delete;
  WholeProperty& operator=(const WholeProperty&) = delete;

  [[nodiscard]] const Property& get() const noexcept { return *property_; }

 private:
  Ref<Property> chain_ = nullptr;
  Property* property_;
};

std::string_view TextOf(const StringItem& item) noexcept {
  return item.text != nullptr ? item.text.get() : "";
}

TextReading ReadingOf(CheckWalk* walk, const Property& property) {
  TextReading reading;
  const StringItem* const charset =
      (property.flags & PROP_CHARSET) != 0 ? PROP_FindParam(property.params, "CHARSET") : nullptr;
  if (charset != nullptr) {
    reading = CHARSET_Check(walk, charset->text);
  } else {
    reading.code_page = CHARSET_GetInputCodePage();
  }
  reading.quoted_printable = (property.flags & PROP_QP) != 0 ||
                             PROP_FindParam(property.params, "QUOTED-PRINTABLE") != nullptr;
  return reading;
}

// A backslash is dropped wherever it stands; before a letter or a digit it was meant otherwise.
// Second bytes of two-byte characters can look like one, so text beyond ASCII is left alone.
void CheckBackslashes(CheckWalk* walk, std::string_view name, std::string_view text) {
  for (const char byte : text) {
    if (static_cast<unsigned char>(byte) >= 0x80) return;
  }
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != '\\') continue;
    const char next = text[++i];
    const char upper = STR_ToUpper(next);
    if ((upper < 'A' || upper > 'Z') && (next < '0' || next > '9')) continue;
    walk->Add(FindingKind::kBackslash, {SHOWN_Text({&next, 1}), SHOWN_Text(name)});
    return;
  }
}

void CheckRule(CheckWalk* walk, const std::string& text, const StringItem* more) {
  ErgRule rule{};
  std::string_view rest;
  const TamuResult result = ERG_Parse(text.c_str(), &rule, &rest);
  if (result == TAMU_OUT_OF_MEMORY) throw std::bad_alloc();
  ERG_Free(&rule);
  if (result != TAMU_OK) {
    walk->Add(FindingKind::kBadRule, {SHOWN_Text(rest)});
    return;
  }
  if (rest.empty() && more != nullptr) rest = TextOf(*more);
  if (!rest.empty()) walk->Add(FindingKind::kRuleTail, {SHOWN_Text(rest)});
}

void CheckComponents(CheckWalk* walk, const Property& property, const LineTraits& traits) {
  std::uint32_t index = 0;
  std::uint32_t dropped = 0;
  for (const StringItem* item = property.values; item != nullptr; item = item->next) {
    if (index++ >= traits.components && !TextOf(*item).empty()) ++dropped;
  }
  if (dropped == 0) return;
  const std::string kept =
      traits.components == 1 ? "one component" : std::to_string(traits.components) + " components";
  walk->Add(FindingKind::kComponentsDropped,
            {SHOWN_Text(walk->line().name.data()), kept, std::to_string(dropped)});
}

void CheckForm(CheckWalk* walk, const Property& property, ValueForm form,
               const std::string& first_text) {
  const StringItem* item = property.values;
  if (item == nullptr) return;
  switch (form) {
    case ValueForm::kText:
      break;
    case ValueForm::kDate:
      ISODATE_Check(walk, PROP_GetValue(&property, 0));
      break;
    case ValueForm::kDates:
      for (; item != nullptr; item = item->next) ISODATE_Check(walk, TextOf(*item).data());
      break;
    case ValueForm::kRule:
      if (!first_text.empty()) CheckRule(walk, first_text, item->next);
      break;
  }
}

}  // namespace

void HEAD_Check(CheckWalk* walk) {
  const SourceLine& line = walk->line();
  const std::string name = SHOWN_Text(line.name.data());
  if (!line.has_colon) walk->Add(FindingKind::kNoColon, {name});
  if (line.params_length >= kParamsSize) {
    walk->Add(FindingKind::kParametersCut, {name, std::to_string(line.params_length)});
  }
}

void LENGTH_Check(CheckWalk* walk, std::string_view value, std::size_t kept) {
  if (value.size() <= kept) return;
  walk->Add(FindingKind::kValueCut, {SHOWN_Text(walk->line().name.data()), std::to_string(kept),
                                     std::to_string(value.size())});
}

void VALUE_Check(CheckWalk* walk, const LineTraits& traits) {
  HEAD_Check(walk);
  const WholeProperty whole(walk->line());
  const Property& property = whole.get();
  const std::string_view name = walk->line().name.data();
  CheckComponents(walk, property, traits);
  const TextReading reading = ReadingOf(walk, property);
  if ((property.flags & PROP_BASE64) != 0) {
    walk->Add(FindingKind::kBase64, {"the value of " + Quoted(name)});
    return;
  }
  if (!reading.quoted_printable &&
      std::string_view(walk->line().value).find(kEncodedLineBreak) != std::string_view::npos) {
    walk->Add(FindingKind::kLineBreakCode, {SHOWN_Text(name)});
  }
  TextCheck text(walk, reading, "the value of " + Quoted(name));
  std::string first_text;
  std::uint32_t index = 0;
  const StringItem* item = property.values;
  for (; item != nullptr && index < traits.components; item = item->next, ++index) {
    text.Take(TextOf(*item));
    if (index == 0) first_text = text.decoded();
    if (traits.form == ValueForm::kText) CheckBackslashes(walk, name, text.decoded());
  }
  CheckForm(walk, property, traits.form, first_text);
}

}  // namespace tamu::tool
