// The command "show".
#include "commands.h"
#include "display_text.h"
#include "json_output.h"
#include "store/fetch.h"
#include "text_output.h"

namespace tamu::tool {
namespace {

// "note 'Groceries'", "contact 0000001a".
std::string NameOf(const ObjectId& id) {
  const std::string kind(STORED_Words(id.kind).one);
  const std::string text = DISPLAY_Bytes(id.Text());
  return id.kind == StoredKind::kNote ? kind + " '" + text + "'" : kind + " " + text;
}

// "calendar" names an event's id as well as a to-do's.
bool FetchOneOf(const DeviceSession& device, const ShowOptions& options, ObjectId* id,
                FetchedObject* object, std::string* problem) {
  for (const StoredKind kind : STORED_KindsNamed(options.kind)) {
    if (!ID_Parse(kind, options.id, id, problem)) return false;
    if (FETCH_Object(device, *id, object, problem)) return true;
    *problem = NameOf(*id) + ": " + *problem;
  }
  return false;
}

}  // namespace

int COMMAND_Show(const ShowOptions& options, Console* console) {
  ObjectId id;
  std::string problem;
  if (!ID_Parse(STORED_KindsNamed(options.kind).front(), options.id, &id, &problem)) {
    console->TellError(problem);
    return kExitUsage;
  }
  DeviceSession device;
  if (!device.Open(&problem)) {
    console->TellError(problem);
    return kExitFailure;
  }
  FetchedObject object;
  if (!FetchOneOf(device, options, &id, &object, &problem)) {
    console->TellError(problem + ". 'tamu list " + "--kind " + options.kind +
                       "' shows what there is");
    return kExitFailure;
  }
  const ObjectView view = VIEW_Make({object.kind(), object.record(), TAMU_PARSE_OK, 0});
  console->Print(options.json ? JSON_StoredObject(view, id.Text(), object.losses)
                              : TEXT_Object(view, console->style()));
  for (const std::string& loss : object.losses) console->Tell(NameOf(id) + ": " + loss);
  return kExitSuccess;
}

}  // namespace tamu::tool
