#include "tool/store_files.h"

#include "tool/program.h"

namespace tamu::tool {

std::string CalendarItem(const std::string& component, const std::string& lines) {
  return "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:" + component + "\r\n" + lines +
         "END:" + component + "\r\nEND:VCALENDAR\r\n";
}

std::string Event(const std::string& start, const std::string& summary) {
  return CalendarItem("VEVENT", "SUMMARY:" + summary + "\r\nDESCRIPTION:-\r\nDTSTART:" + start +
                                    "\r\nDTEND:" + start + "\r\n");
}

std::string Todo(const std::string& summary) {
  return CalendarItem("VTODO", "SUMMARY:" + summary +
                                   "\r\nDESCRIPTION:-\r\nPRIORITY:1\r\nSTATUS:NEEDS ACTION\r\n"
                                   "CATEGORIES:-\r\nCOMPLETED:20040228\r\nDUE:20040301\r\n");
}

std::string Note(const std::string& title, const std::string& body) {
  const std::string summary = title.empty() ? "" : "SUMMARY:" + title + "\r\n";
  return "BEGIN:VNOTE\r\nVERSION:1.1\r\n" + summary + "BODY:" + body + "\r\nEND:VNOTE\r\n";
}

std::string Mail(const std::string& date, const std::string& subject, const std::string& body) {
  const std::string header = date.empty() ? "" : "Date: " + date + "\r\n";
  return "BEGIN:VMSG\r\nVERSION:1.1\r\nX-IRMC-STATUS:READ\r\nX-IRMC-TYPE:INET\r\n"
         "X-BT-FOLDER:INBOX\r\nBEGIN:VENV\r\nBEGIN:VBODY\r\n" +
         header + "From: anna@example.org\r\nTo: bert@example.org\r\nSubject: " + subject +
         "\r\n\r\n" + body + "\r\nEND:VBODY\r\nEND:VENV\r\nEND:VMSG\r\n";
}

std::string Contacts(unsigned count) {
  std::string text;
  for (unsigned i = 0; i < count; ++i) {
    const std::string number = std::to_string(i);
    text += "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Family" + number + ";Given;;;\r\nTEL;CELL:+49 " +
            number + "\r\nEMAIL;INTERNET:given" + number + "@example.org\r\nEND:VCARD\r\n";
  }
  return text;
}

}  // namespace tamu::tool
