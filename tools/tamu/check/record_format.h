// check/record_format.h - the lines of objects that hold properties and nothing else: cards, events,
// to-dos and notes. Built from the library's own tables.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_CHECK_RECORD_FORMAT_H_
#define TAMU_TOOLS_CHECK_RECORD_FORMAT_H_

#include <cstdint>
#include <string_view>
#include <vector>

#include "check/finding.h"
#include "text/property.h"

namespace tamu::tool {

// What a line is.
enum class LineRole : std::uint8_t {
  kUnknown,
  kBegin,
  kEnd,
  kVersion,
  kLuid,
  kAllDay,   // the flag of an event
  kNoPlace,  // known, but not kept in this object
  kValue,
};

// How a property's value is read later on.
enum class ValueForm : std::uint8_t { kText, kDate, kDates, kRule };

struct LineTraits {
  LineRole role = LineRole::kUnknown;
  std::uint32_t components = kAnyComponents;  // kept, of kValue
  ValueForm form = ValueForm::kText;
};

struct RecordFormat {
  std::string_view words;        // "card"
  std::string_view begin_value;  // "VCARD"
  // Blanks before the name are removed, else all in it.
  bool trims_name;
  LineTraits (*find)(std::string_view name) noexcept;
  double highest_version;  // 0 where VERSION is not looked at
  // Lines that there have to be; what a missing one is, and whether one in a nested object will do.
  std::vector<std::string_view> (*mandatory)();
  FindingKind missing;
  bool nested_counts;
};

extern const RecordFormat kCardFormat;
extern const RecordFormat kEventFormat;
extern const RecordFormat kToDoFormat;
extern const RecordFormat kNoteFormat;

class CheckWalk;

enum class RecordUse : std::uint8_t {
  kDelivered,
  kDropped,  // a card in a message: the library reads it, and goes on whatever becomes of it
};

// Walks through a record from behind its BEGIN line, which is the walk's current one, to its END.
void RECORD_Walk(CheckWalk* walk, const RecordFormat& format, RecordUse use);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_CHECK_RECORD_FORMAT_H_
