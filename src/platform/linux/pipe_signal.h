// platform/linux/pipe_signal.h - keeps SIGPIPE from a process that merely writes to a pipe without
// a reader.
#ifndef TAMU_PLATFORM_LINUX_PIPE_SIGNAL_H_
#define TAMU_PLATFORM_LINUX_PIPE_SIGNAL_H_

#include <signal.h>

namespace tamu::platform {

// While it lives, writing to a pipe without a reader is only the error EPIPE; the process keeps its
// signal handling.
class PipeSignalBlock {
 public:
  // Does nothing unless `needed`, so that files cost no system call.
  explicit PipeSignalBlock(bool needed) noexcept;
  ~PipeSignalBlock();
  PipeSignalBlock(const PipeSignalBlock&) = delete;
  PipeSignalBlock& operator=(const PipeSignalBlock&) = delete;

 private:
  bool active_ = false;
  sigset_t before_;
};

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_LINUX_PIPE_SIGNAL_H_
