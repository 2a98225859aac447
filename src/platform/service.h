// platform/service.h - one free function of the platform, and the seam through which a test
// replaces it or makes it fail.
//   Every function that the library asks of its platform is a `Service` object under the platform's
//   own name: it is called like the function, forwards to the system's implementation, and counts
//   its calls. A test swaps the function with `Override`, or lets the n-th call fail with
//   `FailNth`; services.h lists them all by name.
//   Threads    none: tests arm and disarm services between calls.
#ifndef TAMU_PLATFORM_SERVICE_H_
#define TAMU_PLATFORM_SERVICE_H_

#include <cstdint>

#include "platform/last_error.h"

namespace tamu::platform {

// What all services share: the name they are found by, how often they were called, and which call
// fails.
class ServiceBase {
 public:
  constexpr explicit ServiceBase(const char* name) noexcept : name_(name) {}
  ServiceBase(const ServiceBase&) = delete;
  ServiceBase& operator=(const ServiceBase&) = delete;

  [[nodiscard]] const char* name() const noexcept { return name_; }

  // Number of calls since the program started or since `ResetCount`.
  [[nodiscard]] std::uint64_t calls() const noexcept { return calls_; }
  void ResetCount() noexcept { calls_ = 0; }

  // Lets the n-th call from now (1 is the next one) fail with the last error `error`; 0 disarms.
  void FailNth(std::uint64_t n, std::uint32_t error = kErrorAccessDenied) noexcept {
    fail_in_ = n;
    fail_error_ = error;
  }

 protected:
  // Counts one call; true when it is the one that has to fail.
  bool CountAndFail() noexcept {
    ++calls_;
    if (fail_in_ == 0 || --fail_in_ != 0) return false;
    SetLastError(fail_error_);
    return true;
  }

 private:
  const char* name_;
  std::uint64_t calls_ = 0;
  std::uint64_t fail_in_ = 0;
  std::uint32_t fail_error_ = kErrorAccessDenied;
};

template <typename Signature>
class Service;

template <typename Result, typename... Arguments>
class Service<Result(Arguments...)> final : public ServiceBase {
 public:
  using Function = Result (*)(Arguments...);

  // `implementation` is the system's own, `failure` what a call that is made to fail answers.
  constexpr Service(const char* name, Function implementation, Result failure) noexcept
      : ServiceBase(name), system_(implementation), current_(implementation), failure_(failure) {}

  Result operator()(Arguments... arguments) {
    if (CountAndFail()) return failure_;
    return current_(arguments...);
  }

  // Replaces the implementation until the next `Override`; null restores the system's own.
  void Override(Function function) noexcept { current_ = function ? function : system_; }
  [[nodiscard]] Function system_function() const noexcept { return system_; }

 private:
  Function system_;
  Function current_;
  Result failure_;
};

// A function without a result: a call that is made to fail does nothing.
template <typename... Arguments>
class Service<void(Arguments...)> final : public ServiceBase {
 public:
  using Function = void (*)(Arguments...);

  constexpr Service(const char* name, Function implementation) noexcept
      : ServiceBase(name), system_(implementation), current_(implementation) {}

  void operator()(Arguments... arguments) {
    if (!CountAndFail()) current_(arguments...);
  }

  void Override(Function function) noexcept { current_ = function ? function : system_; }
  [[nodiscard]] Function system_function() const noexcept { return system_; }

 private:
  Function system_;
  Function current_;
};

// Replaces one service while it lives.
template <typename Signature>
class ScopedOverride {
 public:
  ScopedOverride(Service<Signature>& service,
                 typename Service<Signature>::Function function) noexcept
      : service_(service) {
    service_.Override(function);
  }
  ~ScopedOverride() { service_.Override(nullptr); }
  ScopedOverride(const ScopedOverride&) = delete;
  ScopedOverride& operator=(const ScopedOverride&) = delete;

 private:
  Service<Signature>& service_;
};

// Lets the n-th call of one service fail while it lives.
class ScopedFailure {
 public:
  explicit ScopedFailure(ServiceBase& service, std::uint64_t n = 1,
                         std::uint32_t error = kErrorAccessDenied) noexcept
      : service_(service) {
    service_.FailNth(n, error);
  }
  ~ScopedFailure() { service_.FailNth(0); }
  ScopedFailure(const ScopedFailure&) = delete;
  ScopedFailure& operator=(const ScopedFailure&) = delete;

 private:
  ServiceBase& service_;
};

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_SERVICE_H_
