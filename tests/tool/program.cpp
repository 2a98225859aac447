#include "tool/program.h"

#include <fcntl.h>
#include <pty.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace tamu::tool {
namespace {

constexpr int kFailedToStart = 126;

std::string NewFolder(const char* pattern) {
  std::string name = pattern;
  if (::mkdtemp(name.data()) == nullptr) ::abort();
  // Also for those who are not root.
  ::chmod(name.c_str(), 0777);
  return name;
}

void Redirect(const std::string& path, int flags, int descriptor) {
  const int opened = ::open(path.c_str(), flags, 0666);
  if (opened < 0 || ::dup2(opened, descriptor) < 0) ::_exit(kFailedToStart);
  ::close(opened);
}

void RedirectToPipeWithoutReader(int descriptor) {
  int ends[2];
  if (::pipe(ends) != 0 || ::dup2(ends[1], descriptor) < 0) ::_exit(kFailedToStart);
  ::close(ends[0]);
  ::close(ends[1]);
}

int ExitCodeOf(int status) {
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace

std::string ReadFileBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> FileNames(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string Card(const std::string& name) {
  return "BEGIN:VCARD\r\nVERSION:2.1\r\nN:" + name + "\r\nEND:VCARD\r\n";
}

Program::Program()
    : folder_(NewFolder("/tmp/tamu_tool_XXXXXX")), home_(NewFolder("/tmp/tamu_home_XXXXXX")) {}

Program::~Program() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
  std::filesystem::remove_all(home_, ignored);
}

void Program::Write(const std::string& name, const std::string& bytes) const {
  std::ofstream(Path(name), std::ios::binary) << bytes;
}

std::string Program::Read(const std::string& name) const { return ReadFileBytes(Path(name)); }

bool Program::Exists(const std::string& name) const {
  struct stat status = {};
  return ::lstat(Path(name).c_str(), &status) == 0;
}

std::vector<std::string> Program::Names() const { return FileNames(folder_); }

void Program::Become(const std::vector<std::string>& arguments) const {
  // Only what a test sets reaches the program, and what a sanitizer's runtime listens to.
  for (const char* const name : {"LC_ALL", "LC_CTYPE", "LC_NUMERIC", "NO_COLOR", "XDG_DATA_HOME"}) {
    ::unsetenv(name);
  }
  ::setenv("LANG", "C.UTF-8", 1);
  ::setenv("TERM", "xterm", 1);
  // A zone with summer time that is spelled out, so that no data base of zones is needed.
  ::setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
  ::setenv("TAMU_HOME", home_.c_str(), 1);
  for (const auto& [name, value] : environment_) ::setenv(name.c_str(), value.c_str(), 1);
  if (::chdir(folder_.c_str()) != 0) ::_exit(kFailedToStart);
  if (drop_privileges_ && (::setgid(65534) != 0 || ::setuid(65534) != 0)) ::_exit(kFailedToStart);
  if (file_size_limit_ != 0) {
    const rlimit limit = {file_size_limit_, file_size_limit_};
    if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) ::_exit(kFailedToStart);
  }
  ::umask(022);
  std::vector<char*> words = {const_cast<char*>(TAMU_PROGRAM)};
  for (const std::string& argument : arguments)
    words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  ::execv(TAMU_PROGRAM, words.data());
  ::_exit(kFailedToStart);
}

ProgramResult Program::Run(const std::vector<std::string>& arguments) const {
  const std::string in = home_ + "/stdin", out = home_ + "/stdout", err = home_ + "/stderr";
  std::ofstream(in, std::ios::binary) << input_;
  const pid_t child = ::fork();
  if (child == 0) {
    Redirect(in, O_RDONLY, STDIN_FILENO);
    Redirect(output_.empty() ? out : output_, O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
    if (output_has_no_reader_) RedirectToPipeWithoutReader(STDOUT_FILENO);
    Redirect(err, O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
    Become(arguments);
  }
  int status = 0;
  if (child < 0 || ::waitpid(child, &status, 0) != child) ::abort();
  return {ExitCodeOf(status), output_.empty() ? ReadFileBytes(out) : "", ReadFileBytes(err)};
}

std::string Program::RunOnTerminal(const std::vector<std::string>& arguments) const {
  int terminal = -1;
  const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
  if (child == 0) Become(arguments);
  if (child < 0) ::abort();
  std::string shown;
  char buffer[4096];
  // Reading fails when the program has ended.
  for (ssize_t count = 0; (count = ::read(terminal, buffer, sizeof buffer)) > 0;) {
    shown.append(buffer, static_cast<std::size_t>(count));
  }
  ::close(terminal);
  int status = 0;
  ::waitpid(child, &status, 0);
  return shown;
}

pid_t Program::Start(const std::vector<std::string>& arguments, int* input) const {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) ::abort();
  const pid_t child = ::fork();
  if (child == 0) {
    ::dup2(ends[0], STDIN_FILENO);
    Redirect(output_.empty() ? "/dev/null" : output_, O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
    Redirect(errors_.empty() ? "/dev/null" : errors_, O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
    Become(arguments);
  }
  ::close(ends[0]);
  *input = ends[1];
  return child;
}

int Program::Wait(pid_t child) {
  int status = 0;
  if (::waitpid(child, &status, 0) != child) ::abort();
  return ExitCodeOf(status);
}

}  // namespace tamu::tool
