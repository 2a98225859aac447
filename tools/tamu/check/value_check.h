// check/value_check.h - whether what a line holds is kept and read as it was meant.
//   Charsets, encodings, dates and rules are read by the library's own functions.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_CHECK_VALUE_CHECK_H_
#define TAMU_TOOLS_CHECK_VALUE_CHECK_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "check/check_walk.h"
#include "check/record_format.h"

namespace tamu::tool {

// The name of a property that is known: whether parameters or the value are lost.
void HEAD_Check(CheckWalk* walk);

// A property that is not known.
void UNKNOWN_Add(CheckWalk* walk);

struct VersionRule {
  std::string_view words;  // of the object: "card"
  double highest;
  std::size_t kept;  // characters that count
  FindingKind finding = FindingKind::kWrongVersion;
};
// Returns false, after a finding, for a version that is too high, or none.
[[nodiscard]] bool VERSION_Check(CheckWalk* walk, const VersionRule& rule);

// The value of a property that is kept.
void VALUE_Check(CheckWalk* walk, const LineTraits& traits);

// A value that is kept to so many characters.
void LENGTH_Check(CheckWalk* walk, std::string_view value, std::size_t kept);

// The date of a mail.
void MAILDATE_Check(CheckWalk* walk, const char* text);
// A date of any other kind; an empty one is none.
void ISODATE_Check(CheckWalk* walk, const char* text);

// How bytes are read as text.
struct TextReading {
  std::uint32_t code_page = 0;
  bool quoted_printable = false;
  bool announced = false;                         // by a CHARSET, known or not
  std::string_view advice = "Add CHARSET=UTF-8";  // when it looks like UTF-8
};

// The code page that a CHARSET parameter's text names, known or not.
[[nodiscard]] std::uint32_t CHARSET_OfParam(const char* param_text) noexcept;
// The same, with findings when it names none.
[[nodiscard]] TextReading CHARSET_Check(CheckWalk* walk, const char* param_text);

// Bytes as they stand in the file; `what` names them in findings: "'NOTE'". Looks at their codes,
// their characters, and NULs among them; tells each once a line.
class TextCheck {
 public:
  TextCheck(CheckWalk* walk, const TextReading& reading, std::string what)
      : walk_(walk), reading_(reading), what_(std::move(what)) {}

  void Take(std::string_view raw);
  // The bytes behind the last text's codes.
  [[nodiscard]] const std::string& decoded() const noexcept { return decoded_; }

 private:
  void Add(FindingKind kind, std::vector<std::string> arguments);
  void CheckCodes(std::string_view raw);
  void CheckCharacters();

  CheckWalk* walk_;
  TextReading reading_;
  std::string what_;
  std::string decoded_;
  std::uint32_t told_line_ = 0;
  std::uint64_t told_ = 0;  // kinds, a bit each
};

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_CHECK_VALUE_CHECK_H_
