// device/pim/guarded.h - what keeps exceptions inside the methods of the object model.
#ifndef TAMU_DEVICE_PIM_GUARDED_H_
#define TAMU_DEVICE_PIM_GUARDED_H_

#include <new>
#include <stdexcept>
#include <utility>

#include "platform/com.h"

namespace tamu::device {

// Runs `work`, which gives a result; kOutOfMemory when memory runs out in it.
template <typename Work>
[[nodiscard]] platform::HRESULT Guarded(Work&& work) noexcept {
  try {
    return std::forward<Work>(work)();
  } catch (const std::bad_alloc&) {
    return platform::hr::kOutOfMemory;
  } catch (const std::length_error&) {
    return platform::hr::kOutOfMemory;
  }
}

// Makes an object and gives its interface away with one reference; kOutOfMemory and null when
// memory runs out.
template <typename Object, typename Interface, typename... Arguments>
[[nodiscard]] platform::HRESULT MakeObject(Interface** out, Arguments&&... arguments) noexcept {
  *out = nullptr;
  return Guarded([&] {
    *out = new Object(std::forward<Arguments>(arguments)...);
    return platform::hr::kOk;
  });
}

}  // namespace tamu::device

// First statement of a method that gives something: a null place for it is refused, and the place
// is emptied before anything can fail.
#define TAMU_DEVICE_OUT(out, empty)                              \
  do {                                                           \
    if ((out) == nullptr) return ::tamu::platform::hr::kPointer; \
    *(out) = (empty);                                            \
  } while (false)

// Leaves a function with a result that is a failure.
#define TAMU_DEVICE_TRY(expression)                                                              \
  do {                                                                                           \
    if (const ::tamu::platform::HRESULT tried = (expression); ::tamu::platform::Failed(tried)) { \
      return tried;                                                                              \
    }                                                                                            \
  } while (false)

#endif  // TAMU_DEVICE_PIM_GUARDED_H_
