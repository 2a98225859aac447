#include "object_view.h"

#include <array>
#include <cstring>
#include <iterator>
#include <utility>

#include "core/records.h"
#include "formats/object_name.h"
#include "formats/vcalendar_properties.h"
#include "formats/vcard_properties.h"
#include "formats/vnote_properties.h"
#include "platform/bstr.h"
#include "text/property.h"
#include "text/property_text.h"
#include "text/tokens.h"

namespace tamu::tool {
namespace {

struct EncodingRow {
  std::uint32_t flag;
  ValueEncoding encoding;
};
constexpr EncodingRow kEncodings[] = {
    {PROP_QP, ValueEncoding::kQuotedPrintable},
    {PROP_BASE64, ValueEncoding::kBase64},
    {PROP_8BIT, ValueEncoding::k8Bit},
};

ValueEncoding EncodingOf(const Property& property) noexcept {
  for (const EncodingRow& row : kEncodings) {
    if ((property.flags & row.flag) != 0) return row.encoding;
  }
  return ValueEncoding::kNone;
}

std::optional<std::string> CharsetOf(const Property& property) {
  if ((property.flags & PROP_CHARSET) == 0) return std::nullopt;
  const StringItem* const param = PROP_FindParam(property.params, "CHARSET");
  if (param == nullptr) return std::nullopt;
  std::array<char, kParamValueLength + 1> name;
  const std::size_t length = PARAM_GetValue(param->text, name.data(), name.size());
  return std::string(name.data(), length);
}

// A text that the stores made can hold several parameters: "HOME;VOICE".
void AddParams(std::string_view text, std::vector<std::string_view>* params) {
  std::size_t begin = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\') {
      ++i;
    } else if (text[i] == ';') {
      params->push_back(text.substr(begin, i - begin));
      begin = i + 1;
    }
  }
  params->push_back(text.substr(begin));
}

PropertyView ViewOf(std::string_view name, Property* property) {
  PropertyView view;
  view.name = name;
  for (const StringItem* param = property->params; param != nullptr; param = param->next) {
    if (param->text != nullptr) AddParams(param->text.get(), &view.params);
  }
  std::uint32_t index = 0;
  for (const StringItem* value = property->values; value != nullptr; value = value->next) {
    std::optional<ComponentView> component;
    if (value->text != nullptr) {
      platform::BStr text;
      PROP_GetWide(property, index, &text);
      component = {value->text.get(), std::u16string(text.view())};
    }
    view.components.push_back(std::move(component));
    ++index;
  }
  view.encoding = EncodingOf(*property);
  view.charset = CharsetOf(*property);
  view.code_page = property->code_page;
  return view;
}

void AddChain(std::string_view name, Property* node, ObjectView* view) {
  for (; node != nullptr; node = node->next) view->properties.push_back(ViewOf(name, node));
}

void AddContact(ContactShape& contact, ObjectView* view) {
  view->luid = STR_FieldText(contact.luid);
  view->version = STR_FieldText(contact.version);
  for (const VcardRow& row : VCARD_Rows()) AddChain(row.name, contact.*row.field, view);
}

// What is kept of the property that the component has no place for when it is written comes last.
void AddCalendarItem(ObjectRecord& record, ObjectView* view) {
  view->luid = STR_FieldText(record.event.luid);
  view->version = STR_FieldText(record.event.version);
  view->component = record.event.component;
  const bool is_event = view->component == COMPONENT_EVENT;
  if (!is_event && view->component != COMPONENT_TODO) return;
  view->all_day = is_event && record.event.all_day != 0;
  const auto add = [&](const VcalRow& row) {
    if (is_event) {
      AddChain(row.name, record.event.*row.event_field, view);
    } else if (row.todo_field != nullptr) {
      AddChain(row.name, record.todo.*row.todo_field, view);
    }
  };
  for (const VcalRow* const row : VCAL_WrittenRows(view->component)) add(*row);
  for (const VcalRow& row : VCAL_Rows()) {
    if ((is_event ? row.event : row.todo).writing == VcalWriting::kNever) add(row);
  }
}

void AddNote(NoteShape& note, ObjectView* view) {
  view->luid = STR_FieldText(note.luid);
  view->version = STR_FieldText(note.version);
  for (const VnoteRow& row : VNOTE_Rows()) AddChain(row.name, note.*row.field, view);
}

void AddMessage(const MessageShape& message, ObjectView* view) {
  view->luid = STR_FieldText(message.luid);
  view->version = STR_FieldText(message.version);
  view->message = MESSAGE_View(message);
  const std::u16string from(view->message->Text("From"));
  const std::u16string_view subject = view->message->Text("Subject");
  view->name = from;
  if (!from.empty()) view->name += u" - ";
  view->name += subject;
}

constexpr KindWords kKindWords[] = {
    {"contact", "contacts"}, {"calendar item", "calendar items"},
    {"note", "notes"},       {"message", "messages"},
    {"message", "messages"}, {"message", "messages"},
};
static_assert(std::size(kKindWords) == KIND_MSG_OUTBOX + 1);

}  // namespace

std::u16string_view PropertyView::Text(std::size_t index) const noexcept {
  if (index >= components.size() || !components[index]) return {};
  return components[index]->text;
}

bool PropertyView::IsEmpty() const noexcept {
  for (const auto& component : components) {
    if (component && !component->raw.empty()) return false;
  }
  return true;
}

ObjectView VIEW_Make(const DeliveredObject& object) {
  ObjectView view;
  view.kind = object.kind;
  view.status = object.status;
  view.line = object.line;
  if (KIND_IsMessage(object.kind)) {
    AddMessage(object.record->message, &view);
    return view;
  }
  if (object.kind == KIND_CONTACT) AddContact(object.record->contact, &view);
  if (object.kind == KIND_CALENDAR) AddCalendarItem(*object.record, &view);
  if (object.kind == KIND_NOTE) AddNote(object.record->note, &view);
  view.name = OBJECT_ComposeName(object.kind, object.record);
  return view;
}

bool KIND_IsMessage(ObjectKind kind) noexcept {
  return kind == KIND_MSG_INBOX || kind == KIND_MSG_SENT || kind == KIND_MSG_OUTBOX;
}

KindWords KIND_Words(ObjectKind kind) noexcept {
  return kind < std::size(kKindWords) ? kKindWords[kind] : KindWords{"object", "objects"};
}

std::string KIND_Count(std::uint64_t count, const KindWords& words) {
  return std::to_string(count) + " " + std::string(count == 1 ? words.one : words.many);
}

}  // namespace tamu::tool
