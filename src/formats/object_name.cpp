#include "formats/object_name.h"

#include <cstring>
#include <string_view>

#include "core/memory.h"
#include "platform/bstr.h"
#include "platform/code_pages.h"
#include "text/charset.h"
#include "text/property_text.h"

namespace tamu {
namespace {

std::u16string Component(Property* property, std::uint32_t index) {
  platform::BStr text;
  PROP_GetWide(property, index, &text);
  return std::u16string(text.view());
}

std::u16string ContactName(ContactShape& contact) {
  std::u16string name = Component(contact.prop_fn, 0);
  if (!name.empty()) return name;
  constexpr std::uint32_t kPrefix = 3, kGiven = 1, kAdditional = 2, kFamily = 0, kSuffix = 4;
  for (const std::uint32_t index : {kPrefix, kGiven, kAdditional, kFamily, kSuffix}) {
    const std::u16string part = Component(contact.prop_n, index);
    if (part.empty()) continue;
    if (!name.empty()) name += u' ';
    name += part;
  }
  return name;
}

std::u16string CalendarName(ObjectRecord& record) {
  std::u16string name = Component(record.event.prop_summary, 0);
  if (record.event.component != COMPONENT_EVENT) return name;
  const std::u16string location = Component(record.event.prop_location, 0);
  if (!location.empty()) name += u" (" + location + u")";
  return name;
}

// A message's inline text; a caller may have filled it to the brim.
template <std::size_t size>
std::u16string InlineText(const char (&field)[size]) {
  const MemPtr<char> text = MEM_CopyText({field, strnlen(field, size)});
  platform::BStr wide;
  if (text) CHARSET_ToWide(platform::kCpAcp, text.get(), &wide);
  return std::u16string(wide.view());
}

std::u16string MessageName(const MessageShape& message) {
  const std::u16string from = InlineText(message.from);
  const std::u16string subject = InlineText(message.subject);
  return from.empty() ? subject : from + u" - " + subject;
}

}  // namespace

std::u16string OBJECT_ComposeName(ObjectKind kind, ObjectRecord* record) {
  switch (kind) {
    case KIND_CONTACT:
      return ContactName(record->contact);
    case KIND_CALENDAR:
      return CalendarName(*record);
    case KIND_NOTE:
      return Component(record->note.prop_summary, 0);
    case KIND_MSG_INBOX:
    case KIND_MSG_SENT:
    case KIND_MSG_OUTBOX:
      return MessageName(record->message);
    default:
      return {};
  }
}

}  // namespace tamu
