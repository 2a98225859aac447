#include "store/store_lines.h"

#include <algorithm>
#include <string_view>

#include "display_text.h"

namespace tamu::tool {
namespace {

// Lines about what the file says. "%" stands for the text in quotes of the library's line.
struct RemarkRow {
  std::string_view beginning;
  std::string_view text;
};
constexpr RemarkRow kRemarks[] = {
    {"Error in date '", "the date '%' cannot be read and was left out"},
    {"Error converting date", "a date cannot be kept and was left out"},
    {"Could not find Appointment for '", "'%' is no occurrence of it: the exception was left out"},
    {"ERG_Parse failed", "its recurrence rule cannot be read: it is stored as happening once"},
    {"Reminder date/time is after",
     "its alarm is not before it, or cannot be read: it was left out"},
    {"DALARM '", "its alarm is more than 45 days before it and was left out"},
    {"Registry input CHARSET '",
     "DefaultInputCharset names the unknown character set '%'; the native code page is used"},
    {"Registry output CHARSET '",
     "DefaultOutputCharset names the unknown character set '%'; the native code page is used"},
};
constexpr std::string_view kDevicePrefix = "device: ";

std::string_view Quoted(std::string_view line) noexcept {
  const std::size_t begin = line.find('\'');
  if (begin == std::string_view::npos) return {};
  const std::size_t end = line.find('\'', begin + 1);
  return line.substr(begin + 1, end == std::string_view::npos ? end : end - begin - 1);
}

const RemarkRow* FindRow(std::string_view line) noexcept {
  for (const RemarkRow& row : kRemarks) {
    if (line.starts_with(row.beginning)) return &row;
  }
  return nullptr;
}

std::string Fill(std::string_view text, std::string_view line) {
  const std::size_t mark = text.find('%');
  if (mark == std::string_view::npos) return std::string(text);
  return std::string(text.substr(0, mark)) + DISPLAY_Bytes(Quoted(line)) +
         std::string(text.substr(mark + 1));
}

}  // namespace

StoreLines STORELINES_From(const ErrorLines& lines) {
  StoreLines sorted;
  std::vector<std::string> failures;
  for (const std::string& line : lines.lines()) {
    const RemarkRow* const row = FindRow(line);
    std::string_view text = line;
    if (text.starts_with(kDevicePrefix)) text.remove_prefix(kDevicePrefix.size());
    const std::string told = row == nullptr ? DISPLAY_Bytes(text) : Fill(row->text, line);
    std::vector<std::string>& list = row == nullptr ? failures : sorted.remarks;
    if (std::ranges::find(list, told) == list.end()) list.push_back(told);
  }
  for (const std::string& text : failures) {
    sorted.failure += (sorted.failure.empty() ? "" : "; ") + text;
  }
  return sorted;
}

}  // namespace tamu::tool
