// pimstore/operations.cpp - adding, modifying and fetching single objects.
#include <array>
#include <cstring>
#include <optional>

#include "core/log.h"
#include "mailstore/mail_operations.h"
#include "pimstore/appointment_map.h"
#include "pimstore/contact_map.h"
#include "pimstore/item_access.h"
#include "pimstore/item_types.h"
#include "pimstore/notes.h"
#include "pimstore/session.h"
#include "pimstore/task_map.h"
#include "platform/code_pages.h"
#include "platform/files.h"
#include "text/charset.h"
#include "text/string_tools.h"

namespace tamu {
namespace {

using platform::BStr;
using platform::ComPtr;
using platform::IAppointment;
using platform::IContact;
using platform::IDispatch;
using platform::ITask;

using ObjectId = std::int32_t;

// A message id, which is told to nobody, is written here: twice the length of an entry id.
constexpr std::size_t kMessageIdLength = 2048;

// The number that an object id begins with, as "%x" reads it: blanks, a sign and "0x" may stand in
// front.
std::optional<ObjectId> ParseObjectId(const char* id) noexcept {
  while (*id == ' ' || (*id >= '\t' && *id <= '\r')) ++id;
  const bool negative = *id == '-';
  if (*id == '-' || *id == '+') ++id;
  if (id[0] == '0' && (id[1] == 'x' || id[1] == 'X') && HEX_DigitValue(id[2]) < 16) id += 2;
  if (HEX_DigitValue(*id) >= 16) return std::nullopt;
  std::uint32_t number = 0;
  for (; HEX_DigitValue(*id) < 16; ++id) number = number << 4 | HEX_DigitValue(*id);
  return static_cast<ObjectId>(negative ? 0U - number : number);
}

// A note's id is its title and is not parsed.
bool IsReadableId(ObjectKind kind, const char* id) noexcept {
  return id != nullptr && (kind == KIND_NOTE || ParseObjectId(id).has_value());
}

TamuResult ResultOfSave(platform::HRESULT result) noexcept {
  return platform::Failed(result) ? TamuResult{TAMU_GENERAL_PIM_ERROR} : TamuResult{TAMU_OK};
}

// A new, unsaved item; null when it cannot be had.
template <typename Item>
ComPtr<Item> NewItem() {
  ComPtr<IDispatch> item;
  if (platform::Failed(POL_Application()->CreateItem(kItemType<Item>, item.put()))) return {};
  return ItemAs<Item>(item.get());
}

// The stored item with the id; null when there is none.
ComPtr<IDispatch> ItemOf(ObjectId oid) {
  ComPtr<IDispatch> item;
  if (platform::Failed(POL_Application()->GetItemFromOid(oid, item.put()))) item.reset();
  return item;
}

template <typename Item, typename Shape>
TamuResult Add(void (*fill)(Item*, const Shape&) noexcept, const Shape& record,
               std::optional<ObjectId>* oid) {
  if (POL_Application() == nullptr) return TAMU_PIM_NOT_OPENED;
  const ComPtr<Item> item = NewItem<Item>();
  if (!item) return TAMU_GENERAL_PIM_ERROR;
  fill(item.get(), record);
  const TamuResult result = ResultOfSave(item->Save());
  ObjectId number = 0;
  if (result == TAMU_OK && platform::Succeeded(item->get_Oid(&number))) *oid = number;
  return result;
}

bool HasTitle(const NoteShape& record) noexcept { return !WideOf(record.prop_summary).empty(); }

// What became of the file is not asked.
TamuResult AddNote(const NoteShape& record) {
  if (!HasTitle(record)) return TAMU_MISSING_FIELD;
  pol_PutNote(record);
  return TAMU_OK;
}

TamuResult AddMessage(const MessageShape& record, bool wants_id) {
  std::array<char, kMessageIdLength> id{};
  return MAPI_AddMail(&record, wants_id ? id.data() : nullptr);
}

TamuResult AddOfKind(ObjectKind kind, const ObjectRecord* record, bool wants_id,
                     std::optional<ObjectId>* oid) {
  switch (kind) {
    case KIND_CONTACT:
      return Add<IContact>(&ContactToStore, record->contact, oid);
    case KIND_CALENDAR:
      if (record->event.component == COMPONENT_EVENT) {
        return Add<IAppointment>(&AppointmentToStore, record->event, oid);
      }
      return Add<ITask>(&TaskToStore, record->todo, oid);
    case KIND_NOTE:
      return AddNote(record->note);
    case KIND_MSG_INBOX:
    case KIND_MSG_SENT:
    case KIND_MSG_OUTBOX:
      return AddMessage(record->message, wants_id);
    default:
      return TAMU_UNSUPPORTED_TYPE;
  }
}

TamuResult ModifyContact(ObjectId oid, const ContactShape& record) {
  if (POL_Application() == nullptr) return TAMU_PIM_NOT_OPENED;
  const ComPtr<IContact> item = ItemAs<IContact>(ItemOf(oid).get());
  if (!item) return TAMU_OBJECT_NOT_FOUND;
  ContactToStore(item.get(), record);
  return ResultOfSave(item->Save());
}

// An item that is not what the record is for is saved as it is.
TamuResult ModifyCalendarItem(ObjectId oid, const ObjectRecord& record) {
  if (POL_Application() == nullptr) return TAMU_PIM_NOT_OPENED;
  const ComPtr<IDispatch> item = ItemOf(oid);
  const bool event = record.event.component == COMPONENT_EVENT;
  if (const ComPtr<IAppointment> appointment = ItemAs<IAppointment>(item.get())) {
    if (event) AppointmentToStore(appointment.get(), record.event);
    return ResultOfSave(appointment->Save());
  }
  if (const ComPtr<ITask> task = ItemAs<ITask>(item.get())) {
    if (!event) TaskToStore(task.get(), record.todo);
    return ResultOfSave(task->Save());
  }
  return TAMU_OBJECT_NOT_FOUND;
}

TamuResult ModifyNote(const char* id, const NoteShape& record) {
  if (!HasTitle(record)) return TAMU_MISSING_FIELD;
  BStr old_title;
  CHARSET_ToWide(platform::kCpAcp, id, &old_title);
  platform::DeleteFileW(NOTE_PathFromTitle(old_title.c_str()).data());
  pol_PutNote(record);
  return TAMU_OK;
}

TamuResult FetchContact(ObjectId oid, ContactShape* record) {
  if (POL_Application() == nullptr) return TAMU_PIM_NOT_OPENED;
  const ComPtr<IContact> item = ItemAs<IContact>(ItemOf(oid).get());
  if (!item) return TAMU_OBJECT_NOT_FOUND;
  ContactFromStore(item.get(), record);
  return TAMU_OK;
}

TamuResult FetchCalendarItem(ObjectId oid, ObjectRecord* record) {
  if (POL_Application() == nullptr) return TAMU_PIM_NOT_OPENED;
  const ComPtr<IDispatch> item = ItemOf(oid);
  if (const ComPtr<IAppointment> appointment = ItemAs<IAppointment>(item.get())) {
    AppointmentFromStore(appointment.get(), &record->event);
    return TAMU_OK;
  }
  if (const ComPtr<ITask> task = ItemAs<ITask>(item.get())) {
    TaskFromStore(task.get(), &record->todo);
    return TAMU_OK;
  }
  return TAMU_OBJECT_NOT_FOUND;
}

}  // namespace

TamuResult POL_AddObject(ObjectKind kind, const ObjectRecord* record, char* id_out) noexcept {
  LOG_Info("TAMU:  POL_AddObject()");
  std::optional<ObjectId> oid;
  const TamuResult result = AddOfKind(kind, record, id_out != nullptr, &oid);
  if (id_out == nullptr) return result;
  if (result == TAMU_OK && oid) {
    const auto text = ObjectIdText(*oid);
    std::memcpy(id_out, text.data(), text.size());
  } else {
    *id_out = '\0';
  }
  return result;
}

TamuResult POL_ModifyObject(ObjectKind kind, const char* id, const ObjectRecord* record) noexcept {
  LOG_Info("TAMU:  POL_ModifyObject()");
  if (!IsReadableId(kind, id)) return TAMU_INVALID_ID;
  switch (kind) {
    case KIND_CONTACT:
      return ModifyContact(*ParseObjectId(id), record->contact);
    case KIND_CALENDAR:
      return ModifyCalendarItem(*ParseObjectId(id), *record);
    case KIND_NOTE:
      return ModifyNote(id, record->note);
    case KIND_MSG_INBOX:
    case KIND_MSG_SENT:
    case KIND_MSG_OUTBOX:
      return MAPI_ModifyMail(&record->message, id);
    default:
      return TAMU_UNSUPPORTED_TYPE;
  }
}

TamuResult POL_GetObjectById(ObjectKind kind, const char* id, ObjectRecord* record_out) noexcept {
  LOG_Info("TAMU:  POL_GetObjectById('%s')", id);
  if (!IsReadableId(kind, id)) return TAMU_INVALID_ID;
  switch (kind) {
    case KIND_CONTACT:
      return FetchContact(*ParseObjectId(id), &record_out->contact);
    case KIND_CALENDAR:
      return FetchCalendarItem(*ParseObjectId(id), record_out);
    default:
      return TAMU_UNSUPPORTED_TYPE;
  }
}

}  // namespace tamu
