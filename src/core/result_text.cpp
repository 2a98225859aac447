#include "core/result_text.h"

#include <array>

#include "core/log_format.h"

namespace tamu {
namespace {

struct ResultRow {
  TamuResult code;
  const char16_t* text;
};
// Memory running out (11) has no text of its own.
constexpr ResultRow kResults[] = {
    {TAMU_OK, u"OK"},
    {TAMU_GENERAL_FAILURE, u"General failure"},
    {TAMU_STORE_NOT_OPENED, u"The object store is not opened"},
    {TAMU_END_OF_STORE, u"Reached the end-of-store"},
    {TAMU_OBJECT_NOT_FOUND, u"The object was not found"},
    {TAMU_FILE_NOT_OPENED, u"Could not open the file"},
    {TAMU_NO_VALID_OBJECT, u"The stream of data does not contain a valid object"},
    {TAMU_INVALID_ID, u"The object id is invalid"},
    {TAMU_MISSING_FIELD, u"The object is missing a required field"},
    {TAMU_GENERAL_PIM_ERROR, u"General PIM Error"},
    {TAMU_PIM_NOT_OPENED, u"The PIM is not opened"},
    {TAMU_UNSUPPORTED_TYPE, u"The type is not supported"},
    {TAMU_PARSE_OK, u"Parsing successful"},
    {TAMU_PARSE_WARNING, u"Parsing warning"},
    {TAMU_PARSE_ERROR, u"Parsing error"},
};

}  // namespace

const char16_t* RESULT_Text(TamuResult code) noexcept {
  for (const ResultRow& row : kResults) {
    if (row.code == code) return row.text;
  }
  static std::array<char16_t, 48> unknown;
  std::array<char, unknown.size()> text;
  const LogArgument argument(code);
  LOG_Format(text, "Unknown TAMU error, code=%d", {&argument, 1});
  for (std::size_t i = 0; i < text.size(); ++i) {
    unknown[i] = static_cast<char16_t>(text[i]);
    if (text[i] == '\0') break;
  }
  return unknown.data();
}

}  // namespace tamu
