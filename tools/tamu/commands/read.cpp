// The command "read".
#include "commands.h"
#include "json_output.h"
#include "object_reader.h"
#include "text_output.h"

namespace tamu::tool {
namespace {

class Shower final : public ObjectHandler {
 public:
  Shower(const InputFile& input, bool json, Console* console)
      : input_(input), json_(json), console_(console) {}

  void TakeObject(const DeliveredObject& object) override {
    const ObjectView view = VIEW_Make(object);
    console_->Print(json_ ? JSON_Object(view, input_.argument())
                          : TEXT_Object(view, console_->style()));
    // The library reads on whatever a callback says.
    console_->ExitIfBroken();
  }
  void TakeWarning(const Message& warning) override {
    console_->Tell(MESSAGE_Warning(input_.shown(), warning));
  }

 private:
  const InputFile& input_;
  bool json_;
  Console* console_;
};

// Returns false when not all of the file was read.
bool ShowFile(const std::string& name, const ReadOptions& options, Console* console) {
  InputFile input;
  std::string reason;
  if (!input.Open(name, Reading::kOnce, &reason)) {
    console->TellError(PROBLEM_Text(input.shown(), {0, reason}));
    return false;
  }
  if (options.files.size() > 1 && !options.json) {
    const Style& style = console->style();
    console->Print(std::string(style.faint) + input.shown() + ":" + std::string(style.plain) +
                   "\n\n");
  }
  Shower shower(input, options.json, console);
  const ReadOutcome outcome = READ_Objects(input, shower);
  if (!outcome.problem) return true;
  console->TellError(PROBLEM_Text(input.shown(), *outcome.problem));
  return false;
}

}  // namespace

int COMMAND_Read(const ReadOptions& options, Console* console) {
  bool all_read = true;
  for (const std::string& name : options.files) {
    if (!ShowFile(name, options, console)) all_read = false;
  }
  return all_read ? kExitSuccess : kExitFailure;
}

}  // namespace tamu::tool
