// tool/program.h - runs the built program and collects what it says.
#ifndef TAMU_TESTS_TOOL_PROGRAM_H_
#define TAMU_TESTS_TOOL_PROGRAM_H_

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tamu::tool {

struct ProgramResult {
  int exit_code = -1;  // 128 + the signal's number when one ended it
  std::string out;
  std::string err;
};

// A folder of the test's own, in which the program runs. Its environment is fixed: a UTF-8 locale,
// the time of Central Europe, an empty device folder, and what `Set` adds.
class Program {
 public:
  Program();
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  [[nodiscard]] const std::string& folder() const { return folder_; }
  // The device's folder.
  [[nodiscard]] const std::string& home() const { return home_; }
  [[nodiscard]] std::string Path(const std::string& name) const { return folder_ + "/" + name; }
  void Write(const std::string& name, const std::string& bytes) const;
  [[nodiscard]] std::string Read(const std::string& name) const;
  [[nodiscard]] bool Exists(const std::string& name) const;
  // Names in the folder, sorted.
  [[nodiscard]] std::vector<std::string> Names() const;

  void Set(const std::string& variable, const std::string& value) {
    environment_.emplace_back(variable, value);
  }
  void SetInput(std::string bytes) { input_ = std::move(bytes); }
  // Standard output goes to this file instead of being collected.
  void SetOutput(std::string path) { output_ = std::move(path); }
  // Standard output is a pipe whose reader is gone.
  void SetOutputWithoutReader() { output_has_no_reader_ = true; }
  // Where standard error of a started program goes; nowhere without it.
  void SetErrors(std::string path) { errors_ = std::move(path); }
  // No file may grow beyond so many bytes.
  void SetFileSizeLimit(std::uint64_t bytes) { file_size_limit_ = bytes; }
  // Runs as somebody who is not root.
  void DropPrivileges() { drop_privileges_ = true; }

  // Runs with a terminal for all three streams and returns what appears on it.
  [[nodiscard]] std::string RunOnTerminal(const std::vector<std::string>& arguments) const;

  [[nodiscard]] ProgramResult Run(const std::vector<std::string>& arguments) const;
  // Starts the program and does not wait; its standard input is the read end of a pipe whose write
  // end is stored; standard output and standard error go to the files that were set or nowhere.
  [[nodiscard]] pid_t Start(const std::vector<std::string>& arguments, int* input) const;
  // Waits for a started program; 128 + the signal's number when one ended it.
  [[nodiscard]] static int Wait(pid_t child);

 private:
  [[noreturn]] void Become(const std::vector<std::string>& arguments) const;

  std::string folder_;
  std::string home_;
  std::string input_;
  std::string output_;
  std::string errors_;
  std::uint64_t file_size_limit_ = 0;
  std::vector<std::pair<std::string, std::string>> environment_;
  bool output_has_no_reader_ = false;
  bool drop_privileges_ = false;
};

// Names in a folder, sorted.
[[nodiscard]] std::vector<std::string> FileNames(const std::string& folder);

[[nodiscard]] std::string ReadFileBytes(const std::string& path);

// A vCard with this name.
[[nodiscard]] std::string Card(const std::string& name);

}  // namespace tamu::tool

#endif  // TAMU_TESTS_TOOL_PROGRAM_H_
