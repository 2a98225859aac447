// device/mail/no_memory.h - what every method with a container inside ends with: memory that runs
// out becomes its result.
#ifndef TAMU_DEVICE_MAIL_NO_MEMORY_H_
#define TAMU_DEVICE_MAIL_NO_MEMORY_H_

#include <new>
#include <stdexcept>

#include "platform/com.h"

namespace tamu::device {

// Runs `work`, which answers a result; kOutOfMemory when it throws for want of memory.
template <typename Work>
[[nodiscard]] platform::HRESULT CatchNoMemory(const Work& work) noexcept {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    return platform::hr::kOutOfMemory;
  } catch (const std::length_error&) {  // more than any container holds
    return platform::hr::kOutOfMemory;
  }
}

// A new object, null when memory runs out.
template <typename Object, typename... Arguments>
[[nodiscard]] Object* NewObject(Arguments&&... arguments) noexcept {
  return new (std::nothrow) Object(static_cast<Arguments&&>(arguments)...);
}

}  // namespace tamu::device

#endif  // TAMU_DEVICE_MAIL_NO_MEMORY_H_
