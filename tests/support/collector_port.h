// support/collector_port.h - the one port that diagnostic lines go to, for one test at a time:
// tests of several programs run side by side.
#ifndef TAMU_TESTS_SUPPORT_COLLECTOR_PORT_H_
#define TAMU_TESTS_SUPPORT_COLLECTOR_PORT_H_

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

namespace tamu::testing {

// Waits until no other test has the port.
class ScopedCollectorPort {
 public:
  ScopedCollectorPort() {
    const char* const folder = std::getenv("TMPDIR");
    const std::string path = std::string(folder == nullptr ? "/tmp" : folder) + "/tamu-test-38182";
    descriptor_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (descriptor_ < 0 || ::flock(descriptor_, LOCK_EX) != 0) std::abort();
  }
  ~ScopedCollectorPort() { ::close(descriptor_); }
  ScopedCollectorPort(const ScopedCollectorPort&) = delete;
  ScopedCollectorPort& operator=(const ScopedCollectorPort&) = delete;

 private:
  int descriptor_;
};

}  // namespace tamu::testing

#endif  // TAMU_TESTS_SUPPORT_COLLECTOR_PORT_H_
