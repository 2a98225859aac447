// The command "delete".
#include "commands.h"
#include "display_text.h"
#include "store/device_session.h"
#include "store/fetch.h"
#include "store/stored_item.h"
#include "store/stored_kind.h"

namespace tamu::tool {
namespace {

// The ids for each kind that is meant; false, told, when one cannot be an id.
bool ParseIds(const DeleteOptions& options, const std::vector<StoredKind>& kinds,
              std::vector<ObjectId>* ids, Console* console) {
  for (const std::string& text : options.ids) {
    ObjectId id;
    std::string problem;
    if (!ID_Parse(kinds.front(), text, &id, &problem)) {
      console->TellError(problem);
      return false;
    }
    ids->push_back(std::move(id));
  }
  return true;
}

// Deletes an object that may be of any of the kinds, which are more than one for calendar items.
bool Delete(const DeviceSession& device, const std::vector<StoredKind>& kinds, ObjectId id,
            Console* console) {
  std::string problem;
  for (const StoredKind kind : kinds) {
    id.kind = kind;
    if (!ITEM_Delete(device, id, &problem)) continue;
    console->Print(std::string(STORED_Words(kind).one) + " " + DISPLAY_Bytes(id.Text()) +
                   ": deleted\n");
    return true;
  }
  const std::string what(kinds.size() == 1 ? STORED_Words(kinds.front()).one : "calendar item");
  console->TellError(what + " " + DISPLAY_Bytes(id.Text()) + ": " + problem);
  return false;
}

}  // namespace

int COMMAND_Delete(const DeleteOptions& options, Console* console) {
  const std::vector<StoredKind> kinds = STORED_KindsNamed(options.kind);
  std::vector<ObjectId> ids;
  if (!ParseIds(options, kinds, &ids, console)) return kExitUsage;
  DeviceSession device;
  std::string problem;
  if (!device.Open(&problem)) {
    console->TellError(problem);
    return kExitFailure;
  }
  bool all_deleted = true;
  for (const ObjectId& id : ids) all_deleted = Delete(device, kinds, id, console) && all_deleted;
  return all_deleted ? kExitSuccess : kExitFailure;
}

}  // namespace tamu::tool
