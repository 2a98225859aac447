#include "console.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "system/process.h"

namespace tamu::tool {
namespace {

constexpr Style kTerminalStyle = {"\x1b[1m", "\x1b[2m", "\x1b[0m"};

bool WantsStyle() noexcept {
  if (!PROCESS_IsTerminal(stdout)) return false;
  const char* const no_color = std::getenv("NO_COLOR");
  if (no_color != nullptr && *no_color != '\0') return false;
  const char* const terminal = std::getenv("TERM");
  return terminal != nullptr && std::strcmp(terminal, "dumb") != 0;
}

void Put(std::FILE* stream, std::string_view text) noexcept {
  // Nobody is left to tell when standard error fails.
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stream));
}

}  // namespace

Console::Console() noexcept : style_(WantsStyle() ? kTerminalStyle : Style{}) {}

void Console::NoteError() noexcept {
  if (error_ == 0) error_ = errno != 0 ? errno : EIO;
}

void Console::Print(std::string_view text) noexcept {
  if (error_ != 0 || text.empty()) return;
  printed_ = true;
  errno = 0;
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) NoteError();
}

void Console::FlushOutput() noexcept {
  errno = 0;
  if (error_ == 0 && std::fflush(stdout) != 0) NoteError();
}

void Console::Tell(std::string_view line) noexcept {
  FlushOutput();
  Put(stderr, line);
  Put(stderr, "\n");
}

void Console::TellError(std::string_view line) noexcept {
  FlushOutput();
  Put(stderr, "tamu: ");
  Put(stderr, line);
  Put(stderr, "\n");
}

void Console::TellBroken() noexcept {
  if (error_ == EPIPE) return;
  Put(stderr, "tamu: standard output: writing failed: ");
  Put(stderr, std::strerror(error_));
  Put(stderr, "\n");
}

void Console::ExitIfBroken() noexcept {
  if (error_ == 0) return;
  TellBroken();
  std::_Exit(kExitFailure);
}

int Console::Finish(int exit_code) noexcept {
  errno = 0;
  const bool closed = std::fclose(stdout) == 0;
  // Whoever closes standard output before a command that prints nothing means it.
  if (!closed && printed_) NoteError();
  if (error_ == 0) return exit_code;
  TellBroken();
  return kExitFailure;
}

}  // namespace tamu::tool
