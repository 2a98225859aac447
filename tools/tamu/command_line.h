// command_line.h - the commands of the program as the command line has them: options, help, and
// which function runs.
#ifndef TAMU_TOOLS_COMMAND_LINE_H_
#define TAMU_TOOLS_COMMAND_LINE_H_

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

#include "commands.h"

namespace tamu::tool {

// What the command line says.
struct Arguments {
  ReadOptions read;
  CheckOptions check;
  RewriteOptions rewrite;
  RuleOptions rule;
  std::vector<std::string> codes;
  bool config_json = false;
  std::string config_name;
  std::string config_value;
  LogOptions log;
  ListOptions list;
  ShowOptions show;
  ExportOptions export_options;
  bool doctor_json = false;
  ImportOptions import_files;
  FindOptions find;
  UpdateOptions update;
  DeleteOptions delete_objects;
};

// Adds every command with its options, which `arguments` receive when the line is parsed.
void COMMANDLINE_Describe(CLI::App* app, Arguments* arguments);

// The commands that look at the device's stores. Running gives none when the line names another one.
void COMMANDLINE_DescribeViews(CLI::App* app, Arguments* arguments);
[[nodiscard]] std::optional<int> COMMANDLINE_RunView(const CLI::App& app,
                                                     const Arguments& arguments, Console* console);

// Runs the command that the line named. Returns the exit code.
[[nodiscard]] int COMMANDLINE_Run(const CLI::App& app, const Arguments& arguments,
                                  Console* console);

// The part of the two above that is about the device's stores. No exit code: the line named none of
// these commands.
void COMMANDLINE_DescribeStores(CLI::App* app, Arguments* arguments);
[[nodiscard]] std::optional<int> COMMANDLINE_RunStores(const CLI::App& app,
                                                       const Arguments& arguments,
                                                       Console* console);

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_COMMAND_LINE_H_
