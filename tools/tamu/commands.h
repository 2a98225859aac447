// commands.h - the program's commands, one file each under commands/.
//   Each takes what the command line says and returns the exit code; output and messages go through
//   the console.
//   Errors     told; std::bad_alloc.
#ifndef TAMU_TOOLS_COMMANDS_H_
#define TAMU_TOOLS_COMMANDS_H_

#include <cstdint>
#include <string>
#include <vector>

#include "console.h"

namespace tamu::tool {

struct ReadOptions {
  std::vector<std::string> files;
  bool json = false;
};
// Shows the objects of files.
[[nodiscard]] int COMMAND_Read(const ReadOptions& options, Console* console);

struct RewriteOptions {
  std::string in;
  std::string out;
  bool append = false;
  bool keep_going = false;
};
// Reads all objects of a file and writes them to another.
[[nodiscard]] int COMMAND_Rewrite(const RewriteOptions& options, Console* console);

struct RuleOptions {
  std::vector<std::string> rules;
  bool json = false;
};
// Explains recurrence rules.
[[nodiscard]] int COMMAND_Rule(const RuleOptions& options, Console* console);

struct CheckOptions {
  std::vector<std::string> files;
  bool json = false;
};
// Says what is wrong in files, or will be misread.
[[nodiscard]] int COMMAND_Check(const CheckOptions& options, Console* console);

// Prints the texts of result codes.
[[nodiscard]] int COMMAND_Code(const std::vector<std::uint32_t>& codes, Console* console);

// Shows the device's settings.
[[nodiscard]] int COMMAND_ConfigList(bool json, Console* console);
// Prints the value of one setting, its default when it is not set.
[[nodiscard]] int COMMAND_ConfigGet(const std::string& name, Console* console);
// Changes a setting.
[[nodiscard]] int COMMAND_ConfigSet(const std::string& name, const std::string& value,
                                    Console* console);

struct LogOptions {
  bool raw = false;
  bool json = false;
  std::uint64_t count = 0;  // lines until the end, 0 for no end
};
// Receives diagnostic lines and prints them.
[[nodiscard]] int COMMAND_Log(const LogOptions& options, Console* console);

// What happens to objects that the device has already.
enum class OnDuplicate : std::uint8_t { kSkip, kUpdate, kAdd };

struct ImportOptions {
  std::vector<std::string> files;
  OnDuplicate on_duplicate = OnDuplicate::kSkip;
  bool dry_run = false;
  bool verbose = false;
};
// Brings the objects of files into the device's stores.
[[nodiscard]] int COMMAND_Import(const ImportOptions& options, Console* console);

struct FindOptions {
  std::vector<std::string> files;
  bool json = false;
};
// Says which objects of files the device has.
[[nodiscard]] int COMMAND_Find(const FindOptions& options, Console* console);

struct UpdateOptions {
  std::string kind;  // one of STORED_KindsNamed
  std::string id;
  std::string file;
};
// Replaces an object of the device.
[[nodiscard]] int COMMAND_Update(const UpdateOptions& options, Console* console);

struct DeleteOptions {
  std::string kind;  // as STORED_KindsNamed has it
  std::vector<std::string> ids;
};
// Deletes objects of the device.
[[nodiscard]] int COMMAND_Delete(const DeleteOptions& options, Console* console);

struct ListOptions {
  std::vector<std::string> kinds;  // names of kinds, none for all
  bool json = false;
};
// Lists what is on the device.
[[nodiscard]] int COMMAND_List(const ListOptions& options, Console* console);

struct ShowOptions {
  std::string kind;
  std::string id;
  bool json = false;
};
// Shows one object of the device.
[[nodiscard]] int COMMAND_Show(const ShowOptions& options, Console* console);

struct ExportOptions {
  std::vector<std::string> kinds;  // names of kinds, none for all
  std::string out = "-";           // a file, or a folder
};
// Writes objects of the device to files, and reads them back to say what does not come back.
[[nodiscard]] int COMMAND_Export(const ExportOptions& options, Console* console);

// Says what of the device works.
[[nodiscard]] int COMMAND_Doctor(bool json, Console* console);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_COMMANDS_H_
