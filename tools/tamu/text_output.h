// text_output.h - objects as labelled lines for people.
//   An object is a heading and below it a label and a value a line; further lines of a value stand
//   under its first. All text is UTF-8 and safe to show.
//   Errors     functions throw std::bad_alloc when memory runs out.
#ifndef TAMU_TOOLS_TEXT_OUTPUT_H_
#define TAMU_TOOLS_TEXT_OUTPUT_H_

#include <string>
#include <string_view>
#include <vector>

#include "console.h"
#include "object_view.h"

namespace tamu::tool {

// The lines of one object, growing.
class TextLines {
 public:
  explicit TextLines(const Style& style) : style_(style) {}

  void AddHeading(std::string_view text);
  // `lines` are the value's, `notes` stand behind its first line in brackets. Nothing is added for
  // a value without lines.
  void AddValue(std::string_view label, const std::vector<std::string>& lines,
                const std::vector<std::string>& notes);

  [[nodiscard]] const std::string& text() const noexcept { return text_; }

 private:
  Style style_;
  std::string text_;
};

// The whole text of an object, an empty line behind it.
[[nodiscard]] std::string TEXT_Object(const ObjectView& object, const Style& style);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_TEXT_OUTPUT_H_
