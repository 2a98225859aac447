#include "open_ends.h"

#include <cstdint>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "core/memory.h"
#include "formats/vcalendar_properties.h"
#include "formats/vcard_properties.h"
#include "formats/vnote_properties.h"
#include "text/property.h"
#include "text/tokens.h"

namespace tamu::tool {
namespace {

// "=" takes the character after it along: of a row of them an odd one out breaks the line.
bool EndsOpen(std::string_view text) noexcept {
  std::size_t row = 0;
  while (row < text.size() && text[text.size() - 1 - row] == '=') ++row;
  return row % 2 != 0;
}

class Closer {
 public:
  [[nodiscard]] bool any() const noexcept { return any_; }

  template <std::size_t size>
  void CloseField(char (&field)[size]) noexcept {
    const std::size_t length = STR_FieldText(field).size();
    if (!EndsOpen({field, length})) return;
    any_ = true;
    if (length + 1 < size) {
      field[length] = ' ';
      field[length + 1] = '\0';
    } else {
      field[length - 1] = '\0';
    }
  }

  // Only the last component ends a line.
  void CloseChain(Property* property) {
    for (; property != nullptr; property = property->next) {
      if (property->values == nullptr) continue;
      std::uint32_t index = 0;
      const StringItem* item = property->values;
      for (; item->next != nullptr; item = item->next) ++index;
      if (item->text == nullptr || !EndsOpen(item->text.get())) continue;
      MemPtr<char> text = MEM_CopyText(std::string(item->text.get()) + ' ');
      if (!text || !PROP_SetValue(property, std::move(text), index)) throw std::bad_alloc();
      any_ = true;
    }
  }

 private:
  bool any_ = false;
};

void CloseCalendarItem(ObjectRecord* record, Closer* closer) {
  const bool is_event = record->event.component == COMPONENT_EVENT;
  for (const VcalRow* const row : VCAL_WrittenRows(record->event.component)) {
    closer->CloseChain(is_event ? record->event.*row->event_field : record->todo.*row->todo_field);
  }
}

void CloseMessage(MessageShape* message, Closer* closer) noexcept {
  closer->CloseField(message->luid);
  closer->CloseField(message->version);
  closer->CloseField(message->status);
  closer->CloseField(message->type);
  closer->CloseField(message->folder);
  closer->CloseField(message->return_path);
  closer->CloseField(message->date);
  closer->CloseField(message->from);
  closer->CloseField(message->to);
  closer->CloseField(message->cc);
  closer->CloseField(message->reply_to);
  closer->CloseField(message->subject);
  closer->CloseField(message->body.content_type);
  closer->CloseField(message->body.transfer_encoding);
}

}  // namespace

bool OPENENDS_Close(ObjectKind kind, ObjectRecord* record) {
  Closer closer;
  if (kind > KIND_NOTE) {
    CloseMessage(&record->message, &closer);
    return closer.any();
  }
  // At the same place in all three shapes.
  closer.CloseField(record->note.luid);
  closer.CloseField(record->note.version);
  if (kind == KIND_CONTACT) {
    for (const VcardRow& row : VCARD_Rows()) closer.CloseChain(record->contact.*row.field);
  } else if (kind == KIND_CALENDAR) {
    CloseCalendarItem(record, &closer);
  } else {
    for (const VnoteRow& row : VNOTE_Rows()) closer.CloseChain(record->note.*row.field);
  }
  return closer.any();
}

}  // namespace tamu::tool
