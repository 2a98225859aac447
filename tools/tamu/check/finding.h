// check/finding.h - what "tamu check" can find in a file: one table row a kind.
//   An id is a promise: it keeps its meaning. docs/check.md explains each of them to users.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_CHECK_FINDING_H_
#define TAMU_TOOLS_CHECK_FINDING_H_

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tamu::tool {

enum class Severity : std::uint8_t {
  kError,    // objects are not read
  kWarning,  // something is lost or misread
  kNote,     // worth knowing; nothing is lost
};
inline constexpr std::size_t kSeverities = 3;

// In the order of the table.
enum class FindingKind : std::uint8_t {
  // The file.
  kEmptyFile,
  kUtf16,
  kByteOrderMark,
  kNotAnObject,
  kOtherFormat,
  kReadAsCard,
  kTextBetween,
  kTextBehindEnd,
  kUnreadObjects,
  // Lines.
  kNulByte,
  kLoneCarriageReturn,
  kJoinedLine,
  kJoinedWord,
  kFinalEquals,
  kJoinedBoundary,
  kFoldedBlank,
  kBlankLine,
  kNameCut,
  kParametersCut,
  kNoColon,
  kUnknownProperty,
  kNoPlace,
  kNestedObject,
  // Objects.
  kMissingEnd,
  kMissingProperty,
  kMissingMandatory,
  kWrongVersion,
  kEmptyCalendar,
  kUnknownPart,
  kMissingEnvelope,
  kMissingBody,
  // Values.
  kComponentsDropped,
  kValueCut,
  kRepeatedValue,
  kUnknownCharset,
  kUnavailableCharset,
  kUndecodable,
  kUnannouncedUtf8,
  kBadQuotedPrintable,
  kLineBreakCode,
  kBackslash,
  kBase64,
  kBadDate,
  kDatePartlyRead,
  kDateBehindBlank,
  kBadRule,
  kRuleTail,
  kAllDayValue,
  // Messages.
  kHeaderParameters,
  kCardGivenUp,
  kFieldsLost,
  kSecondBody,
  kSecondEnvelope,
  kMultipartAsText,
  kPartSkipped,
  kPartHeader,
  kMissingMarker,
  kContentCut,
};

struct FindingRow {
  FindingKind kind;
  std::string_view id;
  Severity severity;
  std::string_view text;    // "%1" to "%9" stand for what varies
  std::string_view advice;  // a sentence; "" when the text says it all
};

[[nodiscard]] std::span<const FindingRow> FINDING_Rows() noexcept;
[[nodiscard]] const FindingRow& FINDING_Row(FindingKind kind) noexcept;

// "error", "warning", "note".
[[nodiscard]] std::string_view SEVERITY_Word(Severity severity) noexcept;

struct Finding {
  FindingKind kind;
  std::uint32_t line = 0;         // physical, from 1
  std::uint32_t object_line = 0;  // where the object begins that it stands in; 0 between objects
  std::vector<std::string> arguments;
};

// The row's text with its arguments, which have to be safe to show.
[[nodiscard]] std::string FINDING_Text(const Finding& finding);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_CHECK_FINDING_H_
