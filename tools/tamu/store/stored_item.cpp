#include "store/stored_item.h"

#include "platform/cemapi.h"
#include "platform/com_ptr.h"
#include "platform/poom.h"
#include "store/error_lines.h"
#include "store/note_file.h"
#include "store/store_lines.h"

namespace tamu::tool {
namespace {

using namespace platform;

constexpr const char* kNone = "there is none on the device";

// Why something of the device failed: what it logged, else `otherwise`.
std::string ReasonOf(const ErrorLines& logged, const char* otherwise) {
  const std::string failure = STORELINES_From(logged).failure;
  return failure.empty() ? otherwise : failure;
}

template <typename Item>
ComPtr<Item> As(const ComPtr<IDispatch>& object, const GUID& iid) {
  ComPtr<Item> item;
  if (object && Failed(object->QueryInterface(iid, item.put_void()))) item.reset();
  return item;
}

struct Item {
  ComPtr<IContact> contact;
  ComPtr<IAppointment> event;
  ComPtr<ITask> todo;

  // What it is; only of an item that was opened.
  [[nodiscard]] StoredKind kind() const noexcept {
    return contact ? StoredKind::kContact : event ? StoredKind::kEvent : StoredKind::kTodo;
  }
  [[nodiscard]] HRESULT Delete() const {
    if (contact) return contact->Delete();
    return event ? event->Delete() : todo->Delete();
  }
};

bool OpenItem(const DeviceSession& device, const ObjectId& id, Item* item, std::string* problem) {
  const ErrorLines logged;
  ComPtr<IDispatch> object;
  if (Failed(device.application()->GetItemFromOid(id.oid, object.put())) || !object) {
    *problem = ReasonOf(logged, kNone);
    return false;
  }
  item->contact = As<IContact>(object, IID_IContact);
  item->event = As<IAppointment>(object, IID_IAppointment);
  item->todo = As<ITask>(object, IID_ITask);
  if (!item->contact && !item->event && !item->todo) {
    *problem = kNone;
    return false;
  }
  if (item->kind() == id.kind) return true;
  *problem =
      "the object with this id is of another kind: " + std::string(STORED_Words(item->kind()).one);
  return false;
}

bool DeleteMessage(const ObjectId& id, std::string* problem) {
  const ErrorLines logged;
  std::vector<std::uint8_t> bytes = id.entry_id;
  SBinary entry{static_cast<std::uint32_t>(bytes.size()), bytes.data()};
  ENTRYLIST list{1, &entry};
  // Each folder deletes its own.
  for (const MailBox box : kMailBoxes) {
    IMAPIFolder* const folder = DeviceSession::Folder(box);
    if (folder != nullptr && Succeeded(folder->DeleteMessages(&list, 0, nullptr, 0))) return true;
  }
  *problem = ReasonOf(logged, kNone);
  return false;
}

}  // namespace

bool ITEM_Exists(const DeviceSession& device, const ObjectId& id, std::string* problem) {
  Item item;
  FetchedObject fetched;
  switch (id.kind) {
    case StoredKind::kNote:
    case StoredKind::kMessage:
      return FETCH_Object(device, id, &fetched, problem);
    default:
      return OpenItem(device, id, &item, problem);
  }
}

bool ITEM_Delete(const DeviceSession& device, const ObjectId& id, std::string* problem) {
  if (id.kind == StoredKind::kNote) return NOTEFILE_Delete(id.title, problem);
  if (id.kind == StoredKind::kMessage) return DeleteMessage(id, problem);
  Item item;
  if (!OpenItem(device, id, &item, problem)) return false;
  const ErrorLines logged;
  if (Succeeded(item.Delete())) return true;
  *problem = ReasonOf(logged, "the device refuses to delete it");
  return false;
}

}  // namespace tamu::tool
