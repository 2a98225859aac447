#include "system/process.h"

#include <fcntl.h>
#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

#include <utility>

namespace tamu::tool {
namespace {

constexpr int kEndingSignals[] = {SIGINT, SIGTERM, SIGHUP};

// What the handler deletes; it changes only while the signals are blocked.
const char* volatile g_path_to_delete = nullptr;

void DeleteAndEnd(int signal_number) {
  if (const char* const path = g_path_to_delete) ::unlink(path);
  // The handler was reset when it was called: now the signal ends the process as it always would.
  ::raise(signal_number);
}

class SignalsBlocked {
 public:
  SignalsBlocked() noexcept {
    sigset_t blocked;
    ::sigemptyset(&blocked);
    for (const int number : kEndingSignals) ::sigaddset(&blocked, number);
    ::sigprocmask(SIG_BLOCK, &blocked, &before_);
  }
  ~SignalsBlocked() { ::sigprocmask(SIG_SETMASK, &before_, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t before_;
};

void CatchEndingSignals() noexcept {
  for (const int number : kEndingSignals) {
    struct sigaction action = {};
    // Who started the program with a signal ignored (nohup) means it.
    if (::sigaction(number, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) continue;
    action = {};
    action.sa_handler = &DeleteAndEnd;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    ::sigaction(number, &action, nullptr);
  }
}

}  // namespace

void PROCESS_Prepare() noexcept {
  ::signal(SIGPIPE, SIG_IGN);
  ::signal(SIGXFSZ, SIG_IGN);
}

std::string PROCESS_Number() { return std::to_string(::getpid()); }

bool PROCESS_IsTerminal(std::FILE* stream) noexcept { return ::isatty(::fileno(stream)) == 1; }

FileUntilDone::~FileUntilDone() {
  if (path_.empty()) return;
  const SignalsBlocked blocked;
  ::unlink(path_.c_str());
  g_path_to_delete = nullptr;
}

int FileUntilDone::Make(const std::string& folder) {
  std::string path = folder + "/.tamu-XXXXXX";
  const SignalsBlocked blocked;
  const int descriptor = ::mkostemp(path.data(), O_CLOEXEC);
  if (descriptor < 0) return -1;
  path_ = std::move(path);
  g_path_to_delete = path_.c_str();
  CatchEndingSignals();
  return descriptor;
}

void FileUntilDone::Keep() noexcept {
  const SignalsBlocked blocked;
  g_path_to_delete = nullptr;
  path_.clear();
}

}  // namespace tamu::tool
