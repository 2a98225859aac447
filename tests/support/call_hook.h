// support/call_hook.h - the calls of the device's objects as a test sees them: in order, and with
// any of them made to answer something else.
#ifndef TAMU_TESTS_SUPPORT_CALL_HOOK_H_
#define TAMU_TESTS_SUPPORT_CALL_HOOK_H_

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "device/call_gate.h"

namespace tamu::testing {

class CallHookScope {
 public:
  CallHookScope() { device::SetCallHook(&Hook, this); }
  ~CallHookScope() { device::SetCallHook(nullptr); }
  CallHookScope(const CallHookScope&) = delete;
  CallHookScope& operator=(const CallHookScope&) = delete;

  // Lets every call of the method answer `result`.
  void Answer(const std::string& method, platform::HRESULT result) { answers_[method] = result; }
  // Lets the n-th call from now (1 is the next) answer `result`.
  void AnswerNth(std::uint64_t n, platform::HRESULT result) {
    nth_ = n;
    nth_result_ = result;
    struck_.clear();
  }
  // The method that AnswerNth struck, "" when it has not yet.
  [[nodiscard]] const std::string& struck() const { return struck_; }
  [[nodiscard]] const std::vector<std::string>& calls() const { return calls_; }
  void Forget() { calls_.clear(); }

 private:
  static platform::HRESULT Hook(const char* method, void* context) {
    auto* const self = static_cast<CallHookScope*>(context);
    self->calls_.emplace_back(method);
    if (self->nth_ != 0 && --self->nth_ == 0) {
      self->struck_ = method;
      return self->nth_result_;
    }
    const auto answer = self->answers_.find(method);
    return answer == self->answers_.end() ? platform::hr::kOk : answer->second;
  }

  std::map<std::string, platform::HRESULT> answers_;
  std::vector<std::string> calls_;
  std::uint64_t nth_ = 0;
  platform::HRESULT nth_result_ = 0;
  std::string struck_;
};

}  // namespace tamu::testing

#endif  // TAMU_TESTS_SUPPORT_CALL_HOOK_H_
