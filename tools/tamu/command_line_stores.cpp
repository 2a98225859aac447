// The commands on the device's stores, their options and help.
#include <map>

#include "command_line.h"
#include "display_text.h"
#include "store/stored_kind.h"

namespace tamu::tool {
namespace {

constexpr const char* kDeleteFooter =
    "IDs are those that 'tamu list' and 'tamu find' show; a note's is its title.\n"
    "Examples:\n"
    "  tamu delete contact 0000001a 0000001b\n"
    "  tamu delete calendar 00000003              an event or a to-do\n"
    "  tamu delete note \"Shopping list\"";
constexpr const char* kFindFooter =
    "Exit codes: 0 the device has all objects, 1 it lacks some or a file cannot be read, 2 wrong\n"
    "use.\n"
    "Examples:\n"
    "  tamu find contacts.vcf               the id of each contact on the device\n"
    "  tamu find --json a.vcf b.vcs         one JSON object a line";
constexpr const char* kImportFooter =
    "The device knows contacts by their name (N), to-dos by SUMMARY, events by start and SUMMARY,\n"
    "notes by title, messages by folder, date and subject. What lacks that is added each time.\n"
    "Ctrl-C ends the import behind the object at hand; importing again goes on with the rest.\n"
    "Exit codes: 0 everything was stored or is there already, 1 something was not, 2 wrong use.\n"
    "Examples:\n"
    "  tamu import contacts.vcf calendar.vcs notes.vnt\n"
    "  tamu import --dry-run -v contacts.vcf          say what would become of each object\n"
    "  tamu import --on-duplicate update phone.vcf    replace what is there\n"
    "  phone-backup | tamu import -                   from standard input";
constexpr const char* kUpdateFooter =
    "FILE holds one object of the kind. A note's ID is the title that it has on the device; the\n"
    "new one may have another title.\n"
    "Examples:\n"
    "  tamu update contact 0000001a anna.vcf\n"
    "  tamu update note \"Shopping list\" shopping.vnt";

const std::map<std::string, OnDuplicate> kOnDuplicate = {
    {"skip", OnDuplicate::kSkip}, {"update", OnDuplicate::kUpdate}, {"add", OnDuplicate::kAdd}};

std::string CheckKind(const std::string& text) {
  if (!STORED_KindsNamed(text).empty()) return {};
  return "'" + DISPLAY_Bytes(text) + "' is no kind of object: " + std::string(STORED_KindNames());
}

// One kind, where the object's new form is given.
std::string CheckSingleKind(const std::string& text) {
  if (STORED_KindsNamed(text).size() < 2) return CheckKind(text);
  return "'" + DISPLAY_Bytes(text) + "' is two kinds: say event or todo";
}

std::string CheckOnDuplicate(const std::string& text) {
  if (kOnDuplicate.count(text) != 0) return {};
  return "'" + DISPLAY_Bytes(text) + "' is unknown: skip, update or add";
}

void DescribeDelete(CLI::App* app, Arguments* arguments) {
  CLI::App* const command = app->add_subcommand("delete", "Delete objects of the device");
  command->add_option("KIND", arguments->delete_objects.kind, "What they are")
      ->required()
      ->check(CLI::Validator(CheckKind, ""));
  command->add_option("ID", arguments->delete_objects.ids, "Which")->required();
  command->footer(kDeleteFooter);
}

void DescribeFind(CLI::App* app, Arguments* arguments) {
  CLI::App* const command =
      app->add_subcommand("find", "Say which objects of files the device has");
  command->add_option("FILE", arguments->find.files, "Files to read; - is standard input")
      ->required();
  command->add_flag("--json", arguments->find.json, "Print one JSON object a line");
  command->footer(kFindFooter);
}

void DescribeImport(CLI::App* app, Arguments* arguments) {
  ImportOptions& options = arguments->import_files;
  CLI::App* const command =
      app->add_subcommand("import", "Bring the objects of files into the device");
  command->add_option("FILE", options.files, "Files to read; - is standard input")->required();
  command
      ->add_option_function<std::string>(
          "--on-duplicate",
          [&options](const std::string& text) { options.on_duplicate = kOnDuplicate.at(text); },
          "What becomes of an object that the device has: skip (also without this), update, add")
      ->check(CLI::Validator(CheckOnDuplicate, ""));
  command->add_flag("--dry-run", options.dry_run, "Change nothing; say what would be done");
  command->add_flag("-v,--verbose", options.verbose, "Say of each object what became of it");
  command->footer(kImportFooter);
}

void DescribeUpdate(CLI::App* app, Arguments* arguments) {
  CLI::App* const command = app->add_subcommand("update", "Replace an object of the device");
  command->add_option("KIND", arguments->update.kind, "What it is")
      ->required()
      ->check(CLI::Validator(CheckSingleKind, ""));
  command->add_option("ID", arguments->update.id, "Which")->required();
  command->add_option("FILE", arguments->update.file, "Its new form; - is standard input")
      ->required();
  command->footer(kUpdateFooter);
}

}  // namespace

void COMMANDLINE_DescribeStores(CLI::App* app, Arguments* arguments) {
  DescribeDelete(app, arguments);
  DescribeFind(app, arguments);
  DescribeImport(app, arguments);
  DescribeUpdate(app, arguments);
}

std::optional<int> COMMANDLINE_RunStores(const CLI::App& app, const Arguments& arguments,
                                         Console* console) {
  if (app.got_subcommand("delete")) return COMMAND_Delete(arguments.delete_objects, console);
  if (app.got_subcommand("find")) return COMMAND_Find(arguments.find, console);
  if (app.got_subcommand("import")) return COMMAND_Import(arguments.import_files, console);
  if (app.got_subcommand("update")) return COMMAND_Update(arguments.update, console);
  return std::nullopt;
}

}  // namespace tamu::tool
