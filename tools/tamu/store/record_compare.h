// store/record_compare.h - whether two records hold the same object, and what differs.
//   What counts is what the records say, not how: the properties with their decoded texts, the
//   fields and the body of a message, the identifier, the version. A parameter text "HOME;VOICE" is
//   the same as "HOME" and "VOICE", a value is the same with empty components at its end, and an
//   empty property the same as none. The order of properties of different names does not count.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_STORE_RECORD_COMPARE_H_
#define TAMU_TOOLS_STORE_RECORD_COMPARE_H_

#include <string>
#include <vector>

#include "tamu/tamu.h"

namespace tamu::tool {

// One thing that a record says.
struct CanonicalLine {
  std::string name;  // "TEL", "From", "the text"
  std::string text;  // UTF-8, for comparing

  friend bool operator==(const CanonicalLine&, const CanonicalLine&) = default;
};

struct CanonicalForm {
  ObjectKind kind = KIND_CONTACT;
  std::vector<CanonicalLine> lines;  // those of one name stand together
};

// What a record says. Decoding settles code pages in the record and changes nothing else.
// `written` is of a message that stands in a file, whose writer has ended its text with a line end.
enum class RecordState : unsigned char { kFetched, kWritten };
[[nodiscard]] CanonicalForm RECORD_Canonical(ObjectKind kind, ObjectRecord* record,
                                             RecordState state);

// What of `expected` is different in `actual`, a text for people each, safe to show: "FN came back
// as 'A'", "NOTE is missing". Empty for equal forms.
[[nodiscard]] std::vector<std::string> RECORD_Differences(const CanonicalForm& expected,
                                                          const CanonicalForm& actual);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_STORE_RECORD_COMPARE_H_
