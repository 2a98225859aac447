// platform/linux/descriptor.h - an owned file descriptor, and system calls that a signal
// interrupts.
#ifndef TAMU_PLATFORM_LINUX_DESCRIPTOR_H_
#define TAMU_PLATFORM_LINUX_DESCRIPTOR_H_

#include <errno.h>
#include <unistd.h>

#include <utility>

namespace tamu::platform {

// Calls until the call is not interrupted; the result is -1 with errno on failure.
template <typename Call>
[[nodiscard]] auto Uninterrupted(Call&& call) noexcept {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

class Descriptor {
 public:
  explicit Descriptor(int owned) noexcept : number_(owned) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }

  [[nodiscard]] int get() const noexcept { return number_; }
  [[nodiscard]] explicit operator bool() const noexcept { return number_ >= 0; }

  // Closes now; false with errno when the system reports an error. After EINTR the descriptor is
  // gone like after 0.
  [[nodiscard]] bool Close() noexcept {
    return ::close(std::exchange(number_, -1)) == 0 || errno == EINTR;
  }

 private:
  int number_;
};

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_LINUX_DESCRIPTOR_H_
