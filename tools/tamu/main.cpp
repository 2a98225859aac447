// The program "tamu": its command line.
#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdio>
#include <new>
#include <sstream>
#include <string>

#include "commands.h"
#include "console.h"
#include "display_text.h"
#include "platform/registry.h"
#include "system/process.h"

namespace tamu::tool {
namespace {

constexpr const char* kDescription =
    "Reads and writes the object files of handhelds: contacts (vCard 2.1), events and to-dos\n"
    "(vCalendar 1.0), notes (vNote 1.1) and messages (vMessage 1.1).";
constexpr const char* kFooter =
    "Exit codes: 0 success (also with warnings), 1 the work failed, 2 wrong use.\n"
    "Examples:\n"
    "  tamu read contacts.vcf\n"
    "  tamu rewrite contacts.vcf copy.vcf\n"
    "  tamu rrule \"W1 MO TU 0900 FR #10\"\n"
    "Each command has its own help: tamu read --help";
constexpr const char* kReadFooter =
    "Examples:\n"
    "  tamu read contacts.vcf               show the contacts of a file\n"
    "  tamu read calendar.vcs notes.vnt     events, to-dos, notes; messages are .vmg\n"
    "  tamu read --json a.vcf b.vcf         one JSON object a line\n"
    "  phone-backup | tamu read -           read standard input";
constexpr const char* kCheckFooter =
    "Exit codes: 0 nothing was found, 1 there are findings or a file cannot be read, 2 wrong use.\n"
    "Examples:\n"
    "  tamu check contacts.vcf              a finding a line, with its place\n"
    "  tamu check --json a.vcf b.vcs        one JSON object a line\n"
    "  phone-backup | tamu check -          check standard input";
constexpr const char* kRewriteFooter =
    "OUT appears whole or not at all: when something fails, it stays as it was.\n"
    "Examples:\n"
    "  tamu rewrite phone.vcf clean.vcf               write a clean copy\n"
    "  tamu rewrite --append new.vcf all.vcf          add to a file\n"
    "  tamu rewrite --keep-going broken.vcf saved.vcf save what can be read\n"
    "  tamu rewrite - - < phone.vcf | less            from standard input to standard output";
constexpr const char* kRuleFooter =
    "A rule is shown in words, as the library writes it, and as a tree (JSON).\n"
    "Examples:\n"
    "  tamu rrule \"W1 MO TU 0900 FR #10\"    the quotes keep a rule with blanks together\n"
    "  tamu rrule --json \"D2 #0\" \"YM1 6\"     one JSON object a line";
constexpr const char* kCodeFooter =
    "Examples:\n"
    "  tamu code 19\n"
    "  tamu code 0 8 0x10";

struct Arguments {
  ReadOptions read;
  CheckOptions check;
  RewriteOptions rewrite;
  RuleOptions rule;
  std::vector<std::string> codes;
};

// A result code, decimal or hexadecimal behind "0x"; false for any other text.
bool ParseCode(std::string_view text, std::uint32_t* code) {
  const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (hexadecimal) text.remove_prefix(2);
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, *code, hexadecimal ? 16 : 10);
  return result.ec == std::errc() && result.ptr == end;
}

std::string CheckCode(const std::string& text) {
  std::uint32_t code = 0;
  if (ParseCode(text, &code)) return {};
  return "'" + DISPLAY_Bytes(text) + "' is no result code: give a number from 0 to 4294967295";
}

void Describe(CLI::App* app, Arguments* arguments) {
  app->require_subcommand(1);
  app->footer(kFooter);
  app->set_version_flag("--version", "tamu " TAMU_VERSION, "Print the version");

  CLI::App* const read = app->add_subcommand("read", "Show the objects of files");
  read->add_option("FILE", arguments->read.files, "Files to read; - is standard input")->required();
  read->add_flag("--json", arguments->read.json, "Print one JSON object a line");
  read->footer(kReadFooter);

  CLI::App* const check =
      app->add_subcommand("check", "Say what is wrong in files, or will be misread");
  check->add_option("FILE", arguments->check.files, "Files to check; - is standard input")
      ->required();
  check->add_flag("--json", arguments->check.json, "Print one JSON object a line");
  check->footer(kCheckFooter);

  CLI::App* const rewrite =
      app->add_subcommand("rewrite", "Read all objects of a file and write them to another");
  rewrite->add_option("IN", arguments->rewrite.in, "File to read; - is standard input")->required();
  rewrite->add_option("OUT", arguments->rewrite.out, "File to write; - is standard output")
      ->required();
  rewrite->add_flag("--append", arguments->rewrite.append, "Add to what OUT holds");
  rewrite->add_flag("--keep-going", arguments->rewrite.keep_going,
                    "Write what could be read when IN is broken; the exit code is 1 all the same");
  rewrite->footer(kRewriteFooter);

  CLI::App* const rule = app->add_subcommand("rrule", "Explain recurrence rules");
  rule->add_option("RULE", arguments->rule.rules, "Rules of a vCalendar 1.0, one an argument")
      ->required();
  rule->add_flag("--json", arguments->rule.json, "Print one JSON object a line");
  rule->footer(kRuleFooter);

  CLI::App* const code = app->add_subcommand("code", "Print the texts of result codes");
  code->add_option("N", arguments->codes, "Result codes, decimal or hexadecimal (0x13)")
      ->required()
      ->check(CLI::Validator(CheckCode, ""));
  code->footer(kCodeFooter);
}

int RunCommand(const CLI::App& app, const Arguments& arguments, Console* console) {
  if (app.got_subcommand("read")) return COMMAND_Read(arguments.read, console);
  if (app.got_subcommand("check")) return COMMAND_Check(arguments.check, console);
  if (app.got_subcommand("rewrite")) return COMMAND_Rewrite(arguments.rewrite, console);
  if (app.got_subcommand("rrule")) return COMMAND_Rule(arguments.rule, console);
  std::vector<std::uint32_t> codes;
  for (const std::string& text : arguments.codes) {
    std::uint32_t code = 0;
    static_cast<void>(ParseCode(text, &code));
    codes.push_back(code);
  }
  return COMMAND_Code(codes, console);
}

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
  if (app.get_subcommands().empty()) {
    const std::vector<std::string> words = app.remaining();
    const std::string unknown =
        words.empty() ? "" : "'" + DISPLAY_Bytes(words.front()) + "' is unknown. ";
    console->TellError(unknown + "Say what to do: " + CommandNames(app));
    console->Tell("Try 'tamu --help'.");
    return kExitUsage;
  }
  std::string command = "tamu";
  for (const CLI::App* const sub : app.get_subcommands()) command += " " + sub->get_name();
  console->TellError(DISPLAY_Bytes(error.what()));
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
  Describe(&app, &arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return FinishWithout(app, error, console);
  }
  const int exit_code = RunCommand(app, arguments, console);
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
