#include "store/error_lines.h"

#include <new>

#include "display_text.h"

namespace tamu::tool {
namespace {

constexpr std::size_t kMostLines = 100;

}  // namespace

void ErrorLines::Observe(const LogLine& line, void* user) {
  auto& lines = static_cast<ErrorLines*>(user)->lines_;
  if (line.severity != LogSeverity::kError || lines.size() == kMostLines) return;
  std::string_view text = line.text;
  for (const std::string_view prefix : {"TAMU:  ", "MAPI:  "}) {
    if (text.starts_with(prefix)) text.remove_prefix(prefix.size());
  }
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  try {
    lines.emplace_back(text);
  } catch (const std::bad_alloc&) {
    // The result of what failed is told all the same.
  }
}

std::string ErrorLines::Text() const {
  std::string text;
  for (const std::string& line : lines_) text += (text.empty() ? "" : "; ") + DISPLAY_Bytes(line);
  return text;
}

}  // namespace tamu::tool
