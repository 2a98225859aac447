// device/call_gate.h - the gate that every method of the device's objects passes first.
//   A test installs a hook there: it sees the calls in their order, by name ("IContact::Save"), and
//   lets any of them answer a result of its choice instead of doing its work. Without a hook a call
//   costs one comparison.
//   Threads    none: hooks are installed between calls.
#ifndef TAMU_DEVICE_CALL_GATE_H_
#define TAMU_DEVICE_CALL_GATE_H_

#include "platform/com.h"

namespace tamu::device {

// Called with the method's name; anything but kOk is answered in the method's place, with its
// out-parameters empty.
using CallHook = platform::HRESULT (*)(const char* method, void* context);

namespace call_gate_detail {
extern CallHook hook;
extern void* context;
}  // namespace call_gate_detail

// Null removes the hook.
inline void SetCallHook(CallHook hook, void* context = nullptr) noexcept {
  call_gate_detail::hook = hook;
  call_gate_detail::context = context;
}

[[nodiscard]] inline platform::HRESULT EnterCall(const char* method) {
  const CallHook hook = call_gate_detail::hook;
  return hook == nullptr ? platform::hr::kOk : hook(method, call_gate_detail::context);
}

}  // namespace tamu::device

// First statement of a method, after its out-parameters are cleared.
#define TAMU_DEVICE_CALL(method)                                                  \
  do {                                                                            \
    if (const ::tamu::platform::HRESULT gate = ::tamu::device::EnterCall(method); \
        gate != ::tamu::platform::hr::kOk) {                                      \
      return gate;                                                                \
    }                                                                             \
  } while (false)

#endif  // TAMU_DEVICE_CALL_GATE_H_
