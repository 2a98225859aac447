// device/com_object.h - the reference-counted base of the device's objects.
//   An object is made with one reference and deletes itself with the last. `ComObject` is for
//   interfaces over IUnknown, `DispatchObject` for those over IDispatch, whose late-bound methods
//   answer kNotImplemented.
//   Threads    none: an object belongs to one thread, as the platform's do.
#ifndef TAMU_DEVICE_COM_OBJECT_H_
#define TAMU_DEVICE_COM_OBJECT_H_

#include <cstdint>

#include "platform/com.h"

namespace tamu::device {

// Objects that live now, for tests.
[[nodiscard]] std::int64_t LiveObjects() noexcept;

namespace com_object_detail {
void CountObject(std::int64_t difference) noexcept;
}  // namespace com_object_detail

// `Derived` has `bool Implements(const GUID& iid)` for the interfaces beside IUnknown that are this
// object's `Interface` pointer, and may shadow `void* OtherInterface(const GUID& iid)` to give
// interfaces that lie elsewhere in the object.
template <typename Derived, typename Interface>
class ComObject : public Interface {
 public:
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  platform::HRESULT TAMU_COM_CALL QueryInterface(const platform::GUID& iid,
                                                 void** object) override {
    if (object == nullptr) return platform::hr::kPointer;
    *object = nullptr;
    auto* self = static_cast<Derived*>(this);
    if (iid == platform::IID_IUnknown || self->Implements(iid)) {
      *object = static_cast<Interface*>(self);
    } else {
      *object = self->OtherInterface(iid);
    }
    if (*object == nullptr) return platform::hr::kNoInterface;
    this->AddRef();
    return platform::hr::kOk;
  }

  std::uint32_t TAMU_COM_CALL AddRef() override { return ++references_; }

  std::uint32_t TAMU_COM_CALL Release() override {
    const std::uint32_t left = --references_;
    if (left == 0) delete static_cast<Derived*>(this);
    return left;
  }

  void* OtherInterface(const platform::GUID&) noexcept { return nullptr; }

 protected:
  ComObject() noexcept { com_object_detail::CountObject(1); }
  ~ComObject() { com_object_detail::CountObject(-1); }

 private:
  std::uint32_t references_ = 1;
};

template <typename Derived, typename Interface>
class DispatchObject : public ComObject<Derived, Interface> {
 public:
  platform::HRESULT TAMU_COM_CALL GetTypeInfoCount(std::uint32_t* count) override {
    if (count != nullptr) *count = 0;
    return platform::hr::kOk;
  }
  platform::HRESULT TAMU_COM_CALL GetTypeInfo(std::uint32_t, std::uint32_t,
                                              void** type_info) override {
    if (type_info != nullptr) *type_info = nullptr;
    return platform::hr::kNotImplemented;
  }
  platform::HRESULT TAMU_COM_CALL GetIDsOfNames(const platform::GUID&, platform::BSTR*,
                                                std::uint32_t, std::uint32_t,
                                                std::int32_t*) override {
    return platform::hr::kNotImplemented;
  }
  platform::HRESULT TAMU_COM_CALL Invoke(std::int32_t, const platform::GUID&, std::uint32_t,
                                         std::uint16_t, void*, void*, void*,
                                         std::uint32_t*) override {
    return platform::hr::kNotImplemented;
  }

 protected:
  ~DispatchObject() = default;
};

}  // namespace tamu::device

#endif  // TAMU_DEVICE_COM_OBJECT_H_
