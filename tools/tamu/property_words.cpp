#include "property_words.h"

#include <algorithm>
#include <string_view>

#include "display_text.h"
#include "text/charset.h"
#include "text/string_tools.h"

namespace tamu::tool {
namespace {

// Parameters that say how a value is written, not what it is.
constexpr std::string_view kTechnical[] = {"QUOTED-PRINTABLE", "BASE64", "8BIT", "7BIT"};
constexpr std::string_view kTechnicalNames[] = {"ENCODING=", "CHARSET="};
constexpr std::string_view kTypeName = "TYPE=";

struct TypeRow {
  std::string_view type;
  std::string_view words;
};
// vCard 2.1, sections 2.2 and 2.3. Any other type is shown in small letters.
constexpr TypeRow kTypes[] = {
    {"CELL", "mobile"},        {"PREF", "preferred"}, {"MSG", "answering machine"},
    {"BBS", "bulletin board"}, {"DOM", "domestic"},   {"INTL", "international"},
    {"ISDN", "ISDN"},          {"PARCEL", "parcels"}, {"POSTAL", "letters"},
    {"INTERNET", "internet"},  {"X400", "X.400"},
};

bool IsTechnical(std::string_view param) noexcept {
  const auto equals = [&](std::string_view word) { return STR_EqualNoCase(param, word); };
  const auto begins = [&](std::string_view name) { return STR_BeginsNoCase(param, name); };
  return std::any_of(std::begin(kTechnical), std::end(kTechnical), equals) ||
         std::any_of(std::begin(kTechnicalNames), std::end(kTechnicalNames), begins);
}

std::string WordsOf(std::string_view type) {
  for (const TypeRow& row : kTypes) {
    if (STR_EqualNoCase(type, row.type)) return std::string(row.words);
  }
  std::string words = DISPLAY_Bytes(type);
  for (char& character : words) {
    if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
  }
  return words;
}

void AddType(std::string_view type, std::vector<std::string>* types) {
  const std::size_t begin = type.find_first_not_of(" \t");
  if (begin == std::string_view::npos) return;
  type = type.substr(begin, type.find_last_not_of(" \t") + 1 - begin);
  std::string words = WordsOf(type);
  if (std::find(types->begin(), types->end(), words) == types->end()) {
    types->push_back(std::move(words));
  }
}

bool HoldsReplacement(const PropertyView& property) noexcept {
  constexpr char16_t kReplacement = 0xFFFD;
  for (const auto& component : property.components) {
    if (component && component->text.find(kReplacement) != std::u16string::npos) return true;
  }
  return false;
}

}  // namespace

std::vector<std::string> WORDS_Types(const PropertyView& property) {
  std::vector<std::string> types;
  for (std::string_view param : property.params) {
    if (IsTechnical(param)) continue;
    if (STR_BeginsNoCase(param, kTypeName)) param.remove_prefix(kTypeName.size());
    while (!param.empty()) {
      const std::size_t comma = param.find(',');
      AddType(param.substr(0, comma), &types);
      if (comma == std::string_view::npos) break;
      param.remove_prefix(comma + 1);
    }
  }
  return types;
}

std::vector<std::string> WORDS_Doubts(const PropertyView& property) {
  std::vector<std::string> doubts;
  if (property.charset && CHARSET_FromName(*property.charset) == 0 && property.code_page != 0) {
    doubts.push_back("character set '" + DISPLAY_Bytes(*property.charset) +
                     "' is unknown, read as code page " + std::to_string(property.code_page));
  }
  if (HoldsReplacement(property)) {
    doubts.push_back("not all of it is valid in code page " + std::to_string(property.code_page));
  }
  return doubts;
}

std::string WORDS_Base64(const PropertyView& property) {
  std::size_t digits = 0;
  for (const auto& component : property.components) {
    if (!component) continue;
    for (const char character : component->raw) {
      const char upper = STR_ToUpper(character);
      const bool digit = (upper >= 'A' && upper <= 'Z') || (upper >= '0' && upper <= '9') ||
                         upper == '+' || upper == '/';
      if (digit) ++digits;
    }
  }
  return "[base64, " + std::to_string(digits * 3 / 4) + " bytes]";
}

}  // namespace tamu::tool
