// The program "tamu": its command line.
#include <CLI/CLI.hpp>
#include <new>
#include <sstream>
#include <string>

#include "command_line.h"
#include "console.h"
#include "display_text.h"
#include "platform/registry.h"
#include "system/process.h"

namespace tamu::tool {
namespace {

constexpr const char* kDescription =
    "Reads and writes the object files of handhelds: contacts (vCard 2.1), events and to-dos\n"
    "(vCalendar 1.0), notes (vNote 1.1) and messages (vMessage 1.1), and keeps them in stores of\n"
    "its own.";

std::string CommandNames(const CLI::App& app) {
  std::string names;
  for (const CLI::App* const command : app.get_subcommands([](const CLI::App*) { return true; })) {
    names += (names.empty() ? "" : ", ") + command->get_name();
  }
  return names;
}

// Help and version are asked for; anything else is a mistake, told with where to look.
int FinishWithout(const CLI::App& app, const CLI::ParseError& error, Console* console) {
  if (error.get_exit_code() == 0) {
    std::ostringstream out;
    std::ostringstream ignored;
    app.exit(error, out, ignored);
    console->Print(out.str());
    return kExitSuccess;
  }
  std::string command = "tamu";
  const CLI::App* innermost = &app;
  while (!innermost->get_subcommands().empty()) {
    innermost = innermost->get_subcommands().front();
    command += " " + innermost->get_name();
  }
  if (innermost->get_require_subcommand_min() != 0) {
    const std::vector<std::string> words = app.remaining(true);
    const std::string unknown =
        words.empty() ? "" : "'" + DISPLAY_Bytes(words.front()) + "' is unknown. ";
    console->TellError(unknown + "Say what to do: " + CommandNames(*innermost));
  } else {
    console->TellError(DISPLAY_Bytes(error.what()));
  }
  console->Tell("Try '" + command + " --help'.");
  return kExitUsage;
}

// The settings that commands needed may have been damaged.
void TellRegistryProblems(Console* console) {
  for (const platform::RegistryProblem& problem : platform::RegistryProblems()) {
    std::string text = DISPLAY_FileName(problem.file);
    if (problem.line != 0) text += ":" + std::to_string(problem.line);
    console->Tell(text + ": warning: passed over: " + DISPLAY_Bytes(problem.reason));
  }
}

int Run(int argc, char** argv, Console* console) {
  Arguments arguments;
  CLI::App app(kDescription, "tamu");
  COMMANDLINE_Describe(&app, &arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return FinishWithout(app, error, console);
  }
  const int exit_code = COMMANDLINE_Run(app, arguments, console);
  TellRegistryProblems(console);
  return exit_code;
}

}  // namespace
}  // namespace tamu::tool

int main(int argc, char** argv) {
  using namespace tamu::tool;
  PROCESS_Prepare();
  Console console;
  int exit_code = kExitFailure;
  try {
    exit_code = Run(argc, argv, &console);
  } catch (const std::bad_alloc&) {
    console.TellError("memory ran out");
  } catch (const std::exception& error) {
    console.TellError(error.what());
  }
  return console.Finish(exit_code);
}
