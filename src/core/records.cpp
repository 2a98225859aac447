#include "core/records.h"

#include <cstddef>
#include <cstring>
#include <utility>

#include "core/file.h"
#include "core/memory.h"
#include "core/wide.h"

namespace tamu {
namespace {

static_assert(sizeof(ObjectRecord) == 9792);
static_assert(sizeof(Property) == 20);
static_assert(sizeof(StringItem) == 12);
static_assert(sizeof(BodyPart) == 700);
static_assert(offsetof(ContactShape, prop_n) == 544 && sizeof(ContactShape) == 612);
static_assert(offsetof(EventShape, component) == 541 && sizeof(EventShape) == 608);
static_assert(offsetof(EventShape, prop_location) == offsetof(ToDoShape, prop_dalarm));
static_assert(offsetof(NoteShape, prop_summary) == 564);
static_assert(offsetof(MessageShape, body) == 9092 && sizeof(MessageShape) == 9792);
static_assert(offsetof(BodyPart, temp_file) == 184 && offsetof(BodyPart, next) == 696);

using ContactField = Ref<Property> ContactShape::*;
constexpr ContactField kContactFields[] = {
    &ContactShape::prop_n,         &ContactShape::prop_fn,          &ContactShape::prop_nickname,
    &ContactShape::prop_adr,       &ContactShape::prop_org,         &ContactShape::prop_title,
    &ContactShape::prop_role,      &ContactShape::prop_tel,         &ContactShape::prop_url,
    &ContactShape::prop_email,     &ContactShape::prop_note,        &ContactShape::prop_bday,
    &ContactShape::prop_spouse,    &ContactShape::prop_anniversary, &ContactShape::prop_children,
    &ContactShape::prop_assistant, &ContactShape::prop_category,
};
static_assert(std::size(kContactFields) == 17);

constexpr Ref<Property> EventShape::*kEventFields[] = {
    &EventShape::prop_summary,  &EventShape::prop_description, &EventShape::prop_dtstart,
    &EventShape::prop_dtend,    &EventShape::prop_class,       &EventShape::prop_priority,
    &EventShape::prop_status,   &EventShape::prop_location,    &EventShape::prop_categories,
    &EventShape::prop_dalarm,   &EventShape::prop_rrule,       &EventShape::prop_exdate,
    &EventShape::prop_attendee,
};
static_assert(std::size(kEventFields) == 13);

constexpr Ref<Property> ToDoShape::*kToDoFields[] = {
    &ToDoShape::prop_categories,  &ToDoShape::prop_class,   &ToDoShape::prop_completed,
    &ToDoShape::prop_description, &ToDoShape::prop_dtstart, &ToDoShape::prop_due,
    &ToDoShape::prop_priority,    &ToDoShape::prop_status,  &ToDoShape::prop_summary,
    &ToDoShape::prop_dalarm,      &ToDoShape::prop_rrule,   &ToDoShape::prop_exdate,
    &ToDoShape::prop_attendee,
};
static_assert(std::size(kToDoFields) == 13);

constexpr Ref<Property> NoteShape::*kNoteFields[] = {
    &NoteShape::prop_dcreated, &NoteShape::prop_last_modified, &NoteShape::prop_categories,
    &NoteShape::prop_class,    &NoteShape::prop_body,          &NoteShape::prop_summary,
};

template <typename Shape, std::size_t count>
void FreeFields(Shape& shape, Ref<Property> Shape::*const (&fields)[count]) noexcept {
  for (const auto field : fields) PROP_Free(std::exchange(shape.*field, nullptr));
}

// Turns a list around in place, so that it can be freed from its tail in one pass without
// recursion.
template <typename Node>
Node* Reversed(Node* node) noexcept {
  Node* reversed = nullptr;
  while (node != nullptr) {
    Node* const next = node->next;
    node->next = reversed;
    reversed = node;
    node = next;
  }
  return reversed;
}

Property* AppendAfter(Ref<Property>* field, Property* last) noexcept {
  Property* const node = MEM_New<Property>().release();
  if (node == nullptr) return nullptr;
  if (last != nullptr) {
    last->next = node;
  } else {
    *field = node;
  }
  return node;
}

// A name that a caller has filled to the brim has no end and names no file.
void RemoveTempFile(const BodyPart& part) noexcept {
  constexpr std::size_t kLast = sizeof part.temp_file / sizeof part.temp_file[0] - 1;
  bool ends = false;
  for (std::size_t i = 0; i <= kLast && !ends; ++i) ends = part.temp_file[i] == 0;
  if (part.temp_file[0] != 0 && ends) FILE_Remove(AsUtf16(part.temp_file));
}

}  // namespace

Property* PROP_Append(Ref<Property>* field) noexcept {
  if (field == nullptr) return nullptr;
  Property* last = *field;
  while (last != nullptr && last->next != nullptr) {
    last = last->next;
    ++g_list_steps;
  }
  return AppendAfter(field, last);
}

Property* PropertyChainEnd::Append(Ref<Property>* field) noexcept {
  if (last_ == nullptr) return last_ = PROP_Append(field);
  Property* const node = AppendAfter(field, last_);
  if (node != nullptr) last_ = node;
  return node;
}

void ITEM_FreeText(StringItem* item) noexcept {
  if (item->text != ITEM_OwnText(item)) MEM_Free(item->text);
}

void ITEM_FreeList(StringItem* item) noexcept {
  for (StringItem* last = Reversed(item); last != nullptr;) {
    StringItem* const previous = last->next;
    ITEM_FreeText(last);
    MEM_Free(last);
    last = previous;
  }
}

void PROP_Free(Property* node) noexcept {
  for (Property* last = Reversed(node); last != nullptr;) {
    Property* const previous = last->next;
    ITEM_FreeList(last->params);
    ITEM_FreeList(last->values);
    MEM_Free(last);
    last = previous;
  }
}

void BODY_FreeParts(ObjectRecord* record) noexcept {
  BodyPart& first = record->message.body;
  MEM_Free(std::exchange(first.text, nullptr));
  RemoveTempFile(first);
  first.temp_file[0] = 0;
  for (BodyPart* part = std::exchange(first.next, nullptr); part != nullptr;) {
    MEM_Free(part->text);
    // A further part's own name need not be cleared: the part goes.
    RemoveTempFile(*part);
    BodyPart* const next = part->next;
    MEM_Free(part);
    part = next;
  }
}

void RECORD_Free(ObjectKind kind, ObjectRecord* record) noexcept {
  switch (kind) {
    case KIND_CONTACT:
      FreeFields(record->contact, kContactFields);
      break;
    case KIND_CALENDAR:
      if (record->event.component == COMPONENT_EVENT) FreeFields(record->event, kEventFields);
      if (record->event.component == COMPONENT_TODO) FreeFields(record->todo, kToDoFields);
      break;
    case KIND_NOTE:
      FreeFields(record->note, kNoteFields);
      break;
    case KIND_MSG_INBOX:
    case KIND_MSG_SENT:
    case KIND_MSG_OUTBOX:
      BODY_FreeParts(record);
      break;
    default:
      break;
  }
  std::memset(record->bytes, 0, sizeof record->bytes);
}

}  // namespace tamu
