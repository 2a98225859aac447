#include "device/call_gate.h"

namespace tamu::device::call_gate_detail {

CallHook hook = nullptr;
void* context = nullptr;

}  // namespace tamu::device::call_gate_detail
