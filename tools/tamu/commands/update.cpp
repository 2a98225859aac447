// The command "update".
#include "commands.h"
#include "device/batch.h"
#include "display_text.h"
#include "object_reader.h"
#include "store/device_session.h"
#include "store/error_lines.h"
#include "store/fetch.h"
#include "store/object_label.h"
#include "store/stored_item.h"
#include "store/stored_kind.h"
#include "store/storing.h"

namespace tamu::tool {
namespace {

// What a file holds, before anything of it is used.
class Looker final : public ObjectHandler {
 public:
  Looker(const InputFile& input, Console* console) : input_(input), console_(console) {}

  void TakeObject(const DeliveredObject& object) override {
    ++objects_;
    kind_ = STORED_KindOf(object.kind, *object.record);
  }
  void TakeWarning(const Message& warning) override {
    console_->Tell(MESSAGE_Warning(input_.shown(), warning));
  }

  [[nodiscard]] std::uint64_t objects() const noexcept { return objects_; }
  [[nodiscard]] StoredKind kind() const noexcept { return kind_; }

 private:
  const InputFile& input_;
  Console* console_;
  std::uint64_t objects_ = 0;
  StoredKind kind_ = StoredKind::kContact;
};

// False, told, unless the file holds one object of the kind and nothing else.
bool HoldsOne(const InputFile& input, StoredKind kind, Console* console) {
  Looker looker(input, console);
  const ReadOutcome outcome = READ_Objects(input, looker);
  const std::string wanted(STORED_Words(kind).one);
  if (outcome.problem) {
    console->TellError(PROBLEM_Text(input.shown(), *outcome.problem));
  } else if (looker.objects() != 1) {
    console->TellError(input.shown() + ": it holds " +
                       KIND_Count(looker.objects(), {"object", "objects"}) +
                       ", and one is needed: the new form of the " + wanted);
  } else if (looker.kind() != kind) {
    console->TellError(input.shown() + ": it holds a different kind of object: " +
                       std::string(STORED_Words(looker.kind()).one) + ", not " + wanted);
  } else {
    return true;
  }
  return false;
}

// Several saves count as one, so that a failure in the middle changes nothing.
StoreOutcome UpdateAsOne(const ObjectId& id, const DeliveredObject& object) {
  device::Batch batch;
  {
    const ErrorLines logged;
    if (platform::Failed(batch.Begin())) {
      StoreOutcome refused;
      refused.failure = logged.empty() ? "the device cannot be written" : logged.Text();
      return refused;
    }
  }
  StoreOutcome outcome = STORE_Update(object.kind, id.Text(), object.record);
  const ErrorLines logged;
  if (!outcome.failure.empty()) {
    static_cast<void>(batch.Rollback());
  } else if (platform::Failed(batch.Commit())) {
    outcome.failure = logged.Text();
  }
  return outcome;
}

class Updater final : public ObjectHandler {
 public:
  Updater(const InputFile& input, const ObjectId& id, Console* console)
      : input_(input), id_(id), console_(console) {}

  void TakeObject(const DeliveredObject& object) override {
    const std::string label = LABEL_Object(object);
    const StoreOutcome outcome = id_.kind == StoredKind::kNote
                                     ? STORE_UpdateNote(id_.title, object.record)
                                     : UpdateAsOne(id_, object);
    for (const std::string& remark : outcome.remarks) {
      console_->Tell(LABEL_At(input_.shown(), object.line, "warning: " + label) + ": " + remark);
    }
    updated_ = outcome.failure.empty();
    if (updated_) {
      console_->Print(label + ": updated (" + DISPLAY_Bytes(id_.Text()) + ")\n");
    } else {
      console_->TellError(LABEL_At(input_.shown(), object.line, label) + ": " + outcome.failure);
    }
  }
  void TakeWarning(const Message& /*warning*/) override {}  // told when the file was looked at

  [[nodiscard]] bool updated() const noexcept { return updated_; }

 private:
  const InputFile& input_;
  const ObjectId& id_;
  Console* console_;
  bool updated_ = false;
};

bool Update(const InputFile& input, const ObjectId& id, Console* console) {
  DeviceSession device;
  std::string problem;
  if (!device.Open(&problem)) {
    console->TellError(problem);
    return false;
  }
  if (!ITEM_Exists(device, id, &problem)) {
    console->TellError(std::string(STORED_Words(id.kind).one) + " " + DISPLAY_Bytes(id.Text()) +
                       ": " + problem);
    return false;
  }
  Updater updater(input, id, console);
  const ReadOutcome outcome = READ_Objects(input, updater);
  if (outcome.problem) console->TellError(PROBLEM_Text(input.shown(), *outcome.problem));
  return updater.updated() && !outcome.problem;
}

}  // namespace

int COMMAND_Update(const UpdateOptions& options, Console* console) {
  const StoredKind kind = STORED_KindsNamed(options.kind).front();
  ObjectId id;
  std::string problem;
  if (!ID_Parse(kind, options.id, &id, &problem)) {
    console->TellError(problem);
    return kExitUsage;
  }
  InputFile input;
  if (!input.Open(options.file, Reading::kTwice, &problem)) {
    console->TellError(PROBLEM_Text(input.shown(), {0, problem}));
    return kExitFailure;
  }
  const bool updated = HoldsOne(input, kind, console) && Update(input, id, console);
  return updated ? kExitSuccess : kExitFailure;
}

}  // namespace tamu::tool
