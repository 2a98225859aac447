// tool/store_files.h - object files for tests of the device's stores.
#ifndef TAMU_TESTS_TOOL_STORE_FILES_H_
#define TAMU_TESTS_TOOL_STORE_FILES_H_

#include <string>

namespace tamu::tool {

// A calendar of one component: "VEVENT" or "VTODO" with these lines, each with its line end.
[[nodiscard]] std::string CalendarItem(const std::string& component, const std::string& lines);
[[nodiscard]] std::string Event(const std::string& start, const std::string& summary);
[[nodiscard]] std::string Todo(const std::string& summary);

// A note; no title line for an empty title.
[[nodiscard]] std::string Note(const std::string& title, const std::string& body);

// A message of the inbox; no Date line for an empty date.
[[nodiscard]] std::string Mail(const std::string& date, const std::string& subject,
                               const std::string& body);

// So many different contacts.
[[nodiscard]] std::string Contacts(unsigned count);

}  // namespace tamu::tool

#endif  // TAMU_TESTS_TOOL_STORE_FILES_H_
