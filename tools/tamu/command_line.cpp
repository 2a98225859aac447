// The commands of the program, their options and help.
#include "command_line.h"

#include <charconv>

#include "display_text.h"

namespace tamu::tool {
namespace {

constexpr const char* kFooter =
    "Exit codes: 0 success (also with warnings), 1 the work failed, 2 wrong use.\n"
    "Examples:\n"
    "  tamu read contacts.vcf\n"
    "  tamu rewrite contacts.vcf copy.vcf\n"
    "  tamu import contacts.vcf\n"
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
constexpr const char* kConfigFooter =
    "Settings are kept in the device's folder (registry.reg) and count for programs that start\n"
    "afterwards.\n"
    "Examples:\n"
    "  tamu config list\n"
    "  tamu config get DefaultInputCharset\n"
    "  tamu config set DefaultInputCharset WINDOWS-1251\n"
    "  tamu config set LogIPAddr 127.0.0.1            diagnostic lines for 'tamu log'";
constexpr const char* kLogFooter =
    "Lines come from programs that use the library, once they are told where to send them:\n"
    "  tamu config set LogIPAddr 127.0.0.1\n"
    "Examples:\n"
    "  tamu log                 time, category and text of each line, until Ctrl-C\n"
    "  tamu log --raw           the texts alone\n"
    "  tamu log --json -n 10    ten lines as JSON";
constexpr const char* kCodeFooter =
    "Examples:\n"
    "  tamu code 19\n"
    "  tamu code 0 8 0x10";

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

void DescribeConfig(CLI::App* app, Arguments* arguments) {
  CLI::App* const config = app->add_subcommand("config", "Show and change the device's settings");
  config->require_subcommand(1);
  config->footer(kConfigFooter);
  CLI::App* const list = config->add_subcommand("list", "Show all settings");
  list->add_flag("--json", arguments->config_json, "Print one JSON object a line");
  CLI::App* const get = config->add_subcommand("get", "Print the value of one setting");
  get->add_option("NAME", arguments->config_name, "The setting's name")->required();
  CLI::App* const set = config->add_subcommand("set", "Change a setting");
  set->add_option("NAME", arguments->config_name, "The setting's name")->required();
  set->add_option("VALUE", arguments->config_value, "Its new value; \"\" empties a text")
      ->required();
}

void DescribeLog(CLI::App* app, Arguments* arguments) {
  CLI::App* const log = app->add_subcommand("log", "Receive diagnostic lines and print them");
  CLI::Option* const raw = log->add_flag("--raw", arguments->log.raw, "Print the texts alone");
  log->add_flag("--json", arguments->log.json, "Print one JSON object a line")->excludes(raw);
  log->add_option("-n,--count", arguments->log.count, "End after so many lines");
  log->footer(kLogFooter);
}

int RunConfig(const CLI::App& config, const Arguments& arguments, Console* console) {
  if (config.got_subcommand("list")) return COMMAND_ConfigList(arguments.config_json, console);
  if (config.got_subcommand("get")) return COMMAND_ConfigGet(arguments.config_name, console);
  return COMMAND_ConfigSet(arguments.config_name, arguments.config_value, console);
}

}  // namespace

void COMMANDLINE_Describe(CLI::App* app, Arguments* arguments) {
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

  COMMANDLINE_DescribeViews(app, arguments);
  COMMANDLINE_DescribeStores(app, arguments);
  DescribeConfig(app, arguments);
  DescribeLog(app, arguments);

  CLI::App* const code = app->add_subcommand("code", "Print the texts of result codes");
  code->add_option("N", arguments->codes, "Result codes, decimal or hexadecimal (0x13)")
      ->required()
      ->check(CLI::Validator(CheckCode, ""));
  code->footer(kCodeFooter);
}

int COMMANDLINE_Run(const CLI::App& app, const Arguments& arguments, Console* console) {
  if (app.got_subcommand("read")) return COMMAND_Read(arguments.read, console);
  if (app.got_subcommand("check")) return COMMAND_Check(arguments.check, console);
  if (app.got_subcommand("rewrite")) return COMMAND_Rewrite(arguments.rewrite, console);
  if (app.got_subcommand("rrule")) return COMMAND_Rule(arguments.rule, console);
  if (const std::optional<int> code = COMMANDLINE_RunView(app, arguments, console)) return *code;
  if (app.got_subcommand("config")) {
    return RunConfig(*app.get_subcommand("config"), arguments, console);
  }
  if (app.got_subcommand("log")) return COMMAND_Log(arguments.log, console);
  if (const std::optional<int> exit_code = COMMANDLINE_RunStores(app, arguments, console)) {
    return *exit_code;
  }
  std::vector<std::uint32_t> codes;
  for (const std::string& text : arguments.codes) {
    std::uint32_t code = 0;
    static_cast<void>(ParseCode(text, &code));
    codes.push_back(code);
  }
  return COMMAND_Code(codes, console);
}

}  // namespace tamu::tool
