// The command "check".
#include "check/check_output.h"
#include "check/file_check.h"
#include "commands.h"
#include "core/file.h"
#include "object_reader.h"
#include "platform/last_error.h"
#include "system/input_file.h"

namespace tamu::tool {
namespace {

class Shower final : public FindingHandler {
 public:
  Shower(const InputFile& input, bool json, Console* console)
      : input_(input), json_(json), console_(console) {}

  void TakeFinding(const Finding& finding) override {
    console_->Print(json_ ? CHECK_JsonLine(finding, input_.argument())
                          : CHECK_TextLine(finding, input_.shown()));
    console_->ExitIfBroken();
  }

 private:
  const InputFile& input_;
  bool json_;
  Console* console_;
};

// Returns false, with the reason, when not all of the file could be read.
bool CheckFile(const InputFile& input, Report* report, Problem* problem) {
  File file;
  if (!file.Open(input.path(), u"rb")) {
    *problem = {0, std::string("cannot open it: ") + platform::ErrorText(platform::GetLastError())};
    return false;
  }
  FILE_Check(&file, report);
  const std::uint32_t error = file.TakeError();
  if (error == 0) return true;
  *problem = {file.Tell().line, std::string("reading failed here: ") + platform::ErrorText(error)};
  return false;
}

}  // namespace

int COMMAND_Check(const CheckOptions& options, Console* console) {
  CheckSum sum;
  for (const std::string& name : options.files) {
    ++sum.files;
    InputFile input;
    Problem problem;
    Shower shower(input, options.json, console);
    Report report(&shower);
    if (!input.Open(name, Reading::kTwice, &problem.text) || !CheckFile(input, &report, &problem)) {
      console->TellError(PROBLEM_Text(input.shown(), problem));
      ++sum.unreadable;
    }
    bool any = false;
    for (std::size_t i = 0; i < kSeverities; ++i) {
      sum.counts[i] += report.counts()[i];
      any = any || report.counts()[i] != 0;
    }
    sum.with_findings += any ? 1U : 0U;
  }
  console->Tell(CHECK_SumLine(sum));
  return sum.with_findings == 0 && sum.unreadable == 0 ? kExitSuccess : kExitFailure;
}

}  // namespace tamu::tool
