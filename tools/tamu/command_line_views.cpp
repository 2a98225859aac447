// The commands that look at the device's stores, their options and help.
#include "command_line.h"
#include "display_text.h"
#include "store/stored_kind.h"

namespace tamu::tool {
namespace {

constexpr const char* kListFooter =
    "Dates are local: an event's start, a to-do's due date, a message's delivery, a note's last\n"
    "change. The id of a note is its title.\n"
    "Examples:\n"
    "  tamu list                            everything, an object a line\n"
    "  tamu list --kind contact             the contacts\n"
    "  tamu list --kind event --json        one JSON object a line";
constexpr const char* kShowFooter =
    "Examples:\n"
    "  tamu show contact 80000001           one contact, by the id that 'tamu list' shows\n"
    "  tamu show note \"Shopping list\"       a note, by its title\n"
    "  tamu show message 0A00...7F --json   a message as JSON";
constexpr const char* kExportFooter =
    "A file holds objects of one kind: contacts (.vcf), calendar items (.vcs), notes (.vnt) or\n"
    "messages (.vmg). A folder (one that is there, or a name that ends in /) gets a file for each\n"
    "object. What was written is read back; objects that do not come back as they are on the\n"
    "device are named, and the exit code is 1. A file appears whole or not at all.\n"
    "Examples:\n"
    "  tamu export --kind contact -o all.vcf    the contacts into one file\n"
    "  tamu export -o backup/                   everything, a file for each object\n"
    "  tamu export --kind calendar | less       events and to-dos to standard output";
constexpr const char* kDoctorFooter =
    "Each line says what was looked at, whether it is ok, and what to do where it is not.\n"
    "Exit codes: 0 all is well, 1 there is a problem, 2 wrong use.\n"
    "Examples:\n"
    "  tamu doctor\n"
    "  tamu doctor --json                   one JSON object a line";

std::string CheckKind(const std::string& text) {
  if (!STORED_KindsNamed(std::string_view(text)).empty()) return {};
  return "'" + DISPLAY_Bytes(text) + "' is no kind of object: " + std::string(STORED_KindNames());
}

CLI::Validator KindValidator() { return CLI::Validator(CheckKind, ""); }

void DescribeList(CLI::App* app, Arguments* arguments) {
  CLI::App* const list = app->add_subcommand("list", "List what is on the device");
  list->add_option("--kind", arguments->list.kinds,
                   "Only this kind: " + std::string(STORED_KindNames()) + "; may be repeated")
      ->check(KindValidator());
  list->add_flag("--json", arguments->list.json, "Print one JSON object a line");
  list->footer(kListFooter);
}

void DescribeShow(CLI::App* app, Arguments* arguments) {
  CLI::App* const show = app->add_subcommand("show", "Show one object of the device");
  show->add_option("KIND", arguments->show.kind, "What it is: " + std::string(STORED_KindNames()))
      ->required()
      ->check(KindValidator());
  show->add_option("ID", arguments->show.id, "Its id, of a note its title")->required();
  show->add_flag("--json", arguments->show.json, "Print it as JSON");
  show->footer(kShowFooter);
}

void DescribeExport(CLI::App* app, Arguments* arguments) {
  ExportOptions* const options = &arguments->export_options;
  CLI::App* const command = app->add_subcommand("export", "Write what is on the device to files");
  command
      ->add_option("--kind", options->kinds,
                   "Only this kind: " + std::string(STORED_KindNames()) + "; may be repeated")
      ->check(KindValidator());
  command->add_option("-o,--output", options->out,
                      "File or folder to write to; without it standard output");
  command->footer(kExportFooter);
}

void DescribeDoctor(CLI::App* app, Arguments* arguments) {
  CLI::App* const doctor = app->add_subcommand("doctor", "Say what of the device works");
  doctor->add_flag("--json", arguments->doctor_json, "Print one JSON object a line");
  doctor->footer(kDoctorFooter);
}

}  // namespace

void COMMANDLINE_DescribeViews(CLI::App* app, Arguments* arguments) {
  DescribeList(app, arguments);
  DescribeShow(app, arguments);
  DescribeExport(app, arguments);
  DescribeDoctor(app, arguments);
}

std::optional<int> COMMANDLINE_RunView(const CLI::App& app, const Arguments& arguments,
                                       Console* console) {
  if (app.got_subcommand("list")) return COMMAND_List(arguments.list, console);
  if (app.got_subcommand("show")) return COMMAND_Show(arguments.show, console);
  if (app.got_subcommand("export")) return COMMAND_Export(arguments.export_options, console);
  if (app.got_subcommand("doctor")) return COMMAND_Doctor(arguments.doctor_json, console);
  return std::nullopt;
}

}  // namespace tamu::tool
