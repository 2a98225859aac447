#include "store/recognition.h"

#include <array>
#include <bit>

#include "mailstore/mail_folder.h"
#include "pimstore/item_access.h"
#include "pimstore/notes.h"
#include "text/date.h"

namespace tamu::tool {
namespace {

using Key = std::optional<std::u16string>;

// Parts stand behind each other with their lengths, so that no two lists of parts are alike.
void AddPart(std::u16string_view part, std::u16string* key) {
  *key += static_cast<char16_t>(part.size() >> 16);
  *key += static_cast<char16_t>(part.size() & 0xFFFF);
  *key += part;
}

void AddDate(const DateValue& date, std::u16string* key) {
  const auto bits = std::bit_cast<std::uint64_t>(date.days);
  for (int shift = 0; shift < 64; shift += 16) *key += static_cast<char16_t>(bits >> shift);
}

bool IsDate(const DateValue& date) noexcept { return date.valid && !DATE_IsNone(date); }

Key ContactKey(const ContactShape& contact, std::string* missing) {
  constexpr std::uint32_t kNameParts = 5;
  std::u16string key;
  bool any = false;
  for (std::uint32_t i = 0; i < kNameParts; ++i) {
    const platform::BStr part = WideOf(contact.prop_n, i);
    any = any || !part.empty();
    AddPart(part.view(), &key);
  }
  if (any) return key;
  *missing = "it has no name in N";
  return std::nullopt;
}

Key TodoKey(const ToDoShape& todo, std::string* missing) {
  const platform::BStr subject = WideOf(todo.prop_summary);
  if (!subject.empty()) return std::u16string(subject.view());
  *missing = "it has no SUMMARY";
  return std::nullopt;
}

Key EventKey(const EventShape& event, std::string* missing) {
  if (!HasText(event.prop_dtstart)) {
    *missing = "it has no DTSTART";
    return std::nullopt;
  }
  const DateValue start = DATE_FromProperty(event.prop_dtstart);
  if (!IsDate(start)) {
    *missing = "its DTSTART cannot be read";
    return std::nullopt;
  }
  const platform::BStr subject = WideOf(event.prop_summary);
  const platform::BStr body = subject.empty() ? WideOf(event.prop_description) : platform::BStr();
  if (subject.empty() && body.empty()) {
    *missing = "it has neither SUMMARY nor DESCRIPTION";
    return std::nullopt;
  }
  std::u16string key;
  AddDate(start, &key);
  AddPart(subject.view(), &key);
  AddPart(body.view(), &key);
  return key;
}

Key NoteKey(NoteShape* note, std::string* missing) {
  if (WideOf(note->prop_summary).empty()) {
    *missing = "it has no title (SUMMARY)";
    return std::nullopt;
  }
  return NOTE_StoredTitle(note);
}

// The folder that the library chooses for the text.
char16_t FolderMark(std::string_view folder) noexcept {
  return folder == "OUTBOX" ? u'O' : folder == "SENTBOX" ? u'S' : u'I';
}

Key MessageKey(const MessageShape& message, std::string* missing) {
  if (message.date[0] == '\0') {
    *missing = "it has no date";
    return std::nullopt;
  }
  const DateValue date = DATE_FromMailText(message.date);
  if (!IsDate(date)) {
    *missing = "its date cannot be read";
    return std::nullopt;
  }
  platform::BStr subject;
  MAIL_HeaderToWide(message.subject, &subject);
  std::u16string key;
  key += FolderMark(message.folder);
  AddDate(date, &key);
  AddPart(subject.view(), &key);
  return key;
}

}  // namespace

Key RECOGNITION_Key(ObjectKind kind, ObjectRecord* record, std::string* missing) {
  switch (kind) {
    case KIND_CONTACT:
      return ContactKey(record->contact, missing);
    case KIND_CALENDAR:
      return record->event.component == COMPONENT_EVENT ? EventKey(record->event, missing)
                                                        : TodoKey(record->todo, missing);
    case KIND_NOTE:
      return NoteKey(&record->note, missing);
    default:
      return MessageKey(record->message, missing);
  }
}

std::u16string NOTE_StoredTitle(NoteShape* note) {
  std::array<char16_t, kNoteTitleLength> title{};
  NOTE_CleanTitle(WideOf(note->prop_summary).c_str(), title.data(), title.size());
  return title.data();
}

}  // namespace tamu::tool
