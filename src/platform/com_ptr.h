// platform/com_ptr.h - a pointer that holds one reference to an interface and releases it on every
// path.
#ifndef TAMU_PLATFORM_COM_PTR_H_
#define TAMU_PLATFORM_COM_PTR_H_

#include <utility>

#include "platform/com.h"

namespace tamu::platform {

template <typename Interface>
class ComPtr {
 public:
  ComPtr() noexcept = default;
  // Takes over a reference that somebody else acquired.
  explicit ComPtr(Interface* owned) noexcept : pointer_(owned) {}
  ComPtr(const ComPtr& other) noexcept : pointer_(other.pointer_) {
    if (pointer_ != nullptr) pointer_->AddRef();
  }
  ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~ComPtr() { reset(); }

  [[nodiscard]] Interface* get() const noexcept { return pointer_; }
  Interface* operator->() const noexcept { return pointer_; }
  explicit operator bool() const noexcept { return pointer_ != nullptr; }

  void reset(Interface* owned = nullptr) noexcept {
    if (Interface* old = std::exchange(pointer_, owned)) old->Release();
  }
  [[nodiscard]] Interface* release() noexcept { return std::exchange(pointer_, nullptr); }

  // Where a call stores an interface that it gives away; what was held is released first.
  [[nodiscard]] Interface** put() noexcept {
    reset();
    return &pointer_;
  }
  // The same for calls that give away a pointer without a type.
  [[nodiscard]] void** put_void() noexcept {
    reset();
    return static_cast<void**>(static_cast<void*>(&pointer_));
  }

 private:
  Interface* pointer_ = nullptr;
};

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_COM_PTR_H_
