#include "platform/linux/pipe_signal.h"

#include <errno.h>
#include <time.h>

namespace tamu::platform {
namespace {

sigset_t OnlyPipeSignal() noexcept {
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGPIPE);
  return set;
}

bool PipeSignalPending() noexcept {
  sigset_t pending;
  sigemptyset(&pending);
  return sigpending(&pending) == 0 && sigismember(&pending, SIGPIPE) == 1;
}

}  // namespace

PipeSignalBlock::PipeSignalBlock(bool needed) noexcept : before_() {
  // One that waits already is somebody else's, and a second one would merge with it: nothing to do.
  if (!needed || PipeSignalPending()) return;
  const sigset_t pipe_signal = OnlyPipeSignal();
  active_ = pthread_sigmask(SIG_BLOCK, &pipe_signal, &before_) == 0;
}

PipeSignalBlock::~PipeSignalBlock() {
  if (!active_) return;
  const int number = errno;
  const sigset_t pipe_signal = OnlyPipeSignal();
  const timespec now = {};
  while (sigtimedwait(&pipe_signal, nullptr, &now) < 0 && errno == EINTR) {
  }
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  errno = number;
}

}  // namespace tamu::platform
