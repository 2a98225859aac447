#include "check/finding.h"

#include <array>
#include <iterator>

namespace tamu::tool {
namespace {

using enum FindingKind;
using enum Severity;

constexpr std::string_view kSaveAsUtf8 = "Save the file as UTF-8 without a byte-order mark.";
constexpr std::string_view kRemoveText = "Remove what stands between END and BEGIN lines.";
constexpr std::string_view kNameSet = "Name one that is known, without quotes: CHARSET=UTF-8.";

constexpr FindingRow kRows[] = {
    {kEmptyFile, "empty-file", kError, "the file is empty: there is nothing to read", ""},
    {kUtf16, "utf-16", kError, "this is UTF-16 text, of which nothing is read", kSaveAsUtf8},
    {kByteOrderMark, "byte-order-mark", kError,
     "the file starts with a byte-order mark, so that its first line begins no object",
     kSaveAsUtf8},
    {kNotAnObject, "not-an-object", kError, "the file's first line begins no object: %1",
     "It must be BEGIN:VCARD, BEGIN:VCALENDAR, BEGIN:VNOTE or BEGIN:VMSG, in capitals."},
    {kOtherFormat, "other-format", kError,
     "reading ends here: BEGIN:%1 is another kind of object than the file's first",
     "Keep each kind in a file of its own."},
    {kReadAsCard, "read-as-card", kWarning, "BEGIN:%1 in a file of cards is read as a card",
     "Keep each kind in a file of its own."},
    {kTextBetween, "text-between", kError, "reading ends at this line, which begins no object: %1",
     kRemoveText},
    {kTextBehindEnd, "text-behind-end", kWarning,
     "reading ends at this line, which begins no object: %1", ""},
    {kUnreadObjects, "unread-objects", kError, "%1 behind this line %2 not read because of it", ""},

    {kNulByte, "nul-byte", kWarning, "a NUL byte ends the text here; what stands behind it is lost",
     ""},
    {kLoneCarriageReturn, "lone-cr", kWarning,
     "a carriage return without a line feed ends the line and takes the next character along",
     "End lines with CR LF or LF."},
    {kJoinedLine, "joined-line", kWarning,
     "the line ends in '=', so that this is lost and the next line is joined to it, although it "
     "is not quoted-printable",
     ""},
    {kJoinedWord, "joined-word", kWarning,
     "the line ends in an encoded word, whose last '=' is lost and the next line is joined to it",
     "Put a blank behind it."},
    {kFinalEquals, "final-equals", kWarning, "the '=' that ends the file is lost", ""},
    {kJoinedBoundary, "joined-boundary", kWarning,
     "'%1' is taken for text: the line before it ends in '='",
     "Remove that '=', or put the rest of the value behind it."},
    {kFoldedBlank, "folded-blank", kWarning,
     "a blank line before an indented line is folded into it", ""},
    {kBlankLine, "blank-line", kWarning, "a blank line inside the %1 was passed over", ""},
    {kNameCut, "name-cut", kWarning,
     "the property name has %1 characters and only 51 are looked at: it is not known and was left "
     "out",
     ""},
    {kParametersCut, "parameters-cut", kWarning,
     "of the parameters of '%1' only 127 of %2 characters are kept", ""},
    {kNoColon, "no-colon", kWarning, "the line of '%1' has no ':' and so no value", ""},
    {kUnknownProperty, "unknown-property", kWarning,
     "the property '%1' is not known and was left out", ""},
    {kNoPlace, "no-place", kWarning, "'%1' has no place in %2 and was left out", ""},
    {kNestedObject, "nested-object", kWarning,
     "the object that begins here is skipped: it stands inside the %1 of line %2", ""},

    {kMissingEnd, "missing-end", kError, "the file ends without an END of the %1 of line %2",
     "Add END:%3 or remove the object."},
    {kMissingProperty, "missing-property", kError,
     "the %1 of line %2 ends here without %3: %4 not read", ""},
    {kMissingMandatory, "missing-mandatory", kWarning, "the %1 of line %2 ends here without %3",
     ""},
    {kWrongVersion, "wrong-version", kError,
     "the %1 has version '%2', and only versions up to %3 are read", ""},
    {kEmptyCalendar, "empty-calendar", kError,
     "the calendar of line %1 ends here without an event or a to-do", ""},
    {kUnknownPart, "unknown-part", kError, "a %1 that holds '%2' is not read", ""},
    {kMissingEnvelope, "missing-envelope", kError,
     "the message of line %1 ends here without an envelope (BEGIN:VENV), and is not read", ""},
    {kMissingBody, "missing-body", kError,
     "the envelope of line %1 ends here without a mail (BEGIN:VBODY), and its message is not read",
     ""},

    {kComponentsDropped, "components-dropped", kWarning,
     "'%1' keeps %2, and this line has text in %3 more",
     "Put a backslash before a ';' that belongs to the text."},
    {kValueCut, "value-cut", kWarning, "of the value of '%1' only %2 of %3 characters are kept",
     ""},
    {kRepeatedValue, "repeated-value", kWarning,
     "'%1' stands here once more, and its earlier value is lost", ""},
    {kUnknownCharset, "unknown-charset", kWarning,
     "the character set '%1' is not known; the text is read in code page %2", kNameSet},
    {kUnavailableCharset, "unavailable-charset", kWarning,
     "the character set '%1' cannot be converted; the text is read in the device's code page",
     kNameSet},
    {kUndecodable, "undecodable", kWarning, "%1 has bytes that are no characters in code page %2",
     ""},
    {kUnannouncedUtf8, "unannounced-utf8", kWarning,
     "%1 looks like UTF-8, but names no character set and is read in code page %2", "%3."},
    {kBadQuotedPrintable, "bad-quoted-printable", kWarning,
     "'%1' in %2 is no quoted-printable code", "Write '=' itself as =3D."},
    {kLineBreakCode, "line-break-code", kNote,
     "'=0D=0A' in '%1' is read as a line break, although the value is not quoted-printable", ""},
    {kBackslash, "backslash", kWarning, "the backslash of '\\%1' in '%2' is dropped",
     "Write a backslash as two."},
    {kBase64, "base64", kNote, "%1 is base64; it is kept as it stands and not decoded", ""},
    {kBadDate, "bad-date", kWarning, "'%1' is no date that can be read", "Write it as %2."},
    {kDatePartlyRead, "date-partly-read", kWarning, "of the date '%1' not everything is read",
     "Write it as %2."},
    {kDateBehindBlank, "date-behind-blank", kWarning,
     "'%1' is no date that can be read because of the blank before it", "Remove the blank."},
    {kBadRule, "bad-rule", kWarning, "the recurrence rule cannot be read from '%1' on", ""},
    {kRuleTail, "rule-tail", kWarning, "of the recurrence rule '%1' is ignored", ""},
    {kAllDayValue, "all-day-value", kWarning,
     "'%1' is not TRUE in capitals, so that the event does not count as an all-day one", ""},

    {kHeaderParameters, "header-parameters", kWarning,
     "the parameters of '%1' are lost, and its value is kept as it stands",
     "Write the header without them."},
    {kCardGivenUp, "card-given-up", kWarning,
     "the %1 has version '%2', not one up to %3: its further lines are read as the message's", ""},
    {kFieldsLost, "fields-lost", kWarning,
     "what stands before this card is lost to the message: %1", "Put it behind the cards."},
    {kSecondBody, "second-body", kWarning, "a second mail in one message is not read", ""},
    {kSecondEnvelope, "second-envelope", kWarning,
     "a second envelope in one message: its mail takes the place of the first one's",
     "Make two messages of it."},
    {kMultipartAsText, "multipart-as-text", kWarning,
     "the mail's parts are not told apart but kept as one text",
     "In its Content-Type 'multipart' and, behind it, 'boundary' must be in small letters."},
    {kPartSkipped, "part-skipped", kWarning,
     "the content of part %1 is not kept, only that of the first part is", ""},
    {kPartHeader, "part-header", kWarning, "no further part of the mail is read: %1", ""},
    {kMissingMarker, "missing-marker", kError,
     "the file ends before the line '%1' that should follow this one", ""},
    {kContentCut, "content-cut", kWarning,
     "what stands behind the carriage return in this line is lost", "End lines with CR LF or LF."},
};

constexpr bool RowsAreInOrder() {
  std::size_t place = 0;
  for (const FindingRow& row : kRows) {
    if (static_cast<std::size_t>(row.kind) != place++) return false;
  }
  return place == static_cast<std::size_t>(kContentCut) + 1;
}
static_assert(RowsAreInOrder());

constexpr std::array<std::string_view, kSeverities> kWords = {"error", "warning", "note"};

void AppendFilled(std::string_view text, const std::vector<std::string>& arguments,
                  std::string* out) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%' || i + 1 == text.size()) {
      out->push_back(text[i]);
      continue;
    }
    const auto argument = static_cast<std::size_t>(text[++i] - '1');
    if (argument < arguments.size()) *out += arguments[argument];
  }
}

}  // namespace

std::span<const FindingRow> FINDING_Rows() noexcept { return kRows; }

const FindingRow& FINDING_Row(FindingKind kind) noexcept {
  return kRows[static_cast<std::size_t>(kind)];
}

std::string_view SEVERITY_Word(Severity severity) noexcept {
  return kWords[static_cast<std::size_t>(severity)];
}

std::string FINDING_Text(const Finding& finding) {
  const FindingRow& row = FINDING_Row(finding.kind);
  std::string text;
  AppendFilled(row.text, finding.arguments, &text);
  if (row.advice.empty()) return text;
  text += ". ";
  AppendFilled(row.advice, finding.arguments, &text);
  // The line goes on behind it.
  if (text.ends_with('.')) text.pop_back();
  return text;
}

}  // namespace tamu::tool
