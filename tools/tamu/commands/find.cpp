// The command "find".
#include <nlohmann/json.hpp>

#include "commands.h"
#include "display_text.h"
#include "object_reader.h"
#include "platform/paths.h"
#include "store/device_session.h"
#include "store/error_lines.h"
#include "store/object_label.h"
#include "store/recognition.h"
#include "store/stored_kind.h"
#include "store/storing.h"

namespace tamu::tool {
namespace {

using Json = nlohmann::ordered_json;

// What the device says of an object.
struct Answer {
  FindOutcome found;
  std::string missing;  // what it would be found by
};

Answer Ask(const DeliveredObject& object) {
  Answer answer;
  {
    const ErrorLines ignored;
    if (!RECOGNITION_Key(object.kind, object.record, &answer.missing)) return answer;
  }
  answer.found = STORE_Find(object.kind, object.record);
  return answer;
}

class Finder final : public ObjectHandler {
 public:
  Finder(const InputFile& input, bool json, Console* console)
      : input_(input), json_(json), console_(console) {}

  void TakeObject(const DeliveredObject& object) override {
    const Answer answer = Ask(object);
    all_found_ = all_found_ && answer.found.found == Found::kYes;
    const std::string label = LABEL_At(input_.shown(), object.line, LABEL_Object(object));
    if (answer.found.found == Found::kFailed) {
      console_->Tell(label + ": " + answer.found.problem);
      return;
    }
    console_->Print(json_ ? JsonLine(object, answer) : label + ": " + Text(answer) + "\n");
    console_->ExitIfBroken();
  }
  void TakeWarning(const Message& warning) override {
    console_->Tell(MESSAGE_Warning(input_.shown(), warning));
  }

  [[nodiscard]] bool all_found() const noexcept { return all_found_; }

 private:
  static std::string Text(const Answer& answer) {
    if (answer.found.found == Found::kYes) return DISPLAY_Bytes(answer.found.id);
    if (answer.missing.empty()) return "not on the device";
    return "not to be found: " + answer.missing;
  }

  std::string JsonLine(const DeliveredObject& object, const Answer& answer) const {
    Json line;
    line["file"] = DISPLAY_ToUtf8(platform::PathFromNative(input_.argument()));
    line["line"] = object.line;
    line["kind"] = STORED_Words(STORED_KindOf(object.kind, *object.record)).one;
    line["name"] = LABEL_Name(object);
    line["found"] = answer.found.found == Found::kYes;
    if (answer.found.found == Found::kYes) line["id"] = answer.found.id;
    if (!answer.missing.empty()) line["missing"] = answer.missing;
    return DISPLAY_Json(line.dump()) + "\n";
  }

  const InputFile& input_;
  bool json_;
  Console* console_;
  bool all_found_ = true;
};

// True when all of the file was read and all of its objects are on the device.
bool FindFile(const std::string& name, bool json, Console* console) {
  InputFile input;
  std::string reason;
  if (!input.Open(name, Reading::kOnce, &reason)) {
    console->TellError(PROBLEM_Text(input.shown(), {0, reason}));
    return false;
  }
  Finder finder(input, json, console);
  const ReadOutcome outcome = READ_Objects(input, finder);
  if (outcome.problem) console->TellError(PROBLEM_Text(input.shown(), *outcome.problem));
  return !outcome.problem && finder.all_found();
}

}  // namespace

int COMMAND_Find(const FindOptions& options, Console* console) {
  DeviceSession device;
  std::string problem;
  if (!device.Open(&problem)) {
    console->TellError(problem);
    return kExitFailure;
  }
  bool all_found = true;
  for (const std::string& name : options.files) {
    if (!FindFile(name, options.json, console)) all_found = false;
  }
  return all_found ? kExitSuccess : kExitFailure;
}

}  // namespace tamu::tool
