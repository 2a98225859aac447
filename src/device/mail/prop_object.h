// device/mail/prop_object.h - what the messaging store's objects have in common: a base for those
// with properties, and the answer of what the platform does not support.
#ifndef TAMU_DEVICE_MAIL_PROP_OBJECT_H_
#define TAMU_DEVICE_MAIL_PROP_OBJECT_H_

#include <cstdint>

#include "device/call_gate.h"
#include "device/com_object.h"
#include "platform/cemapi.h"

namespace tamu::device {

// The answer of a method that the platform lists without supporting it. Out-parameters (null ones
// are passed over) are emptied.
template <typename... Out>
[[nodiscard]] platform::HRESULT Unsupported(const char* method, Out*... out) {
  (static_cast<void>(out != nullptr ? static_cast<void>(*out = Out{}) : static_cast<void>(0)), ...);
  TAMU_DEVICE_CALL(method);
  return platform::hr::kNoSupport;
}

// There are no extended errors.
[[nodiscard]] inline platform::HRESULT NoLastError(const char* method,
                                                   platform::MAPIERROR** error) {
  if (error == nullptr) return platform::hr::kInvalidArgument;
  *error = nullptr;
  TAMU_DEVICE_CALL(method);
  return platform::hr::kOk;
}

// `Derived::kNames` names the methods that classes share, for the gate.
struct PropMethodNames {
  const char* get_last_error;
  const char* save_changes;
  const char* get_prop_list;
  const char* copy_to;
  const char* copy_props;
  const char* get_names;
  const char* get_ids;
};

#define TAMU_PROP_METHOD_NAMES(interface_name)                                                   \
  ::tamu::device::PropMethodNames {                                                              \
    interface_name "::GetLastError", interface_name "::SaveChanges",                             \
        interface_name "::GetPropList", interface_name "::CopyTo", interface_name "::CopyProps", \
        interface_name "::GetNamesFromIDs", interface_name "::GetIDsFromNames"                   \
  }

template <typename Derived, typename Interface>
class PropObject : public ComObject<Derived, Interface> {
 public:
  platform::HRESULT TAMU_COM_CALL GetLastError(platform::HRESULT, std::uint32_t,
                                               platform::MAPIERROR** error) override {
    return NoLastError(Derived::kNames.get_last_error, error);
  }
  platform::HRESULT TAMU_COM_CALL SaveChanges(std::uint32_t) override {
    return Unsupported(Derived::kNames.save_changes);
  }
  platform::HRESULT TAMU_COM_CALL GetPropList(std::uint32_t,
                                              platform::SPropTagArray** tags) override {
    return Unsupported(Derived::kNames.get_prop_list, tags);
  }
  platform::HRESULT TAMU_COM_CALL CopyTo(std::uint32_t, const platform::GUID*,
                                         platform::SPropTagArray*, std::uintptr_t, void*,
                                         const platform::GUID*, void*, std::uint32_t,
                                         platform::SPropProblemArray** problems) override {
    return Unsupported(Derived::kNames.copy_to, problems);
  }
  platform::HRESULT TAMU_COM_CALL CopyProps(platform::SPropTagArray*, std::uintptr_t, void*,
                                            const platform::GUID*, void*, std::uint32_t,
                                            platform::SPropProblemArray** problems) override {
    return Unsupported(Derived::kNames.copy_props, problems);
  }
  platform::HRESULT TAMU_COM_CALL GetNamesFromIDs(platform::SPropTagArray**, platform::GUID*,
                                                  std::uint32_t, std::uint32_t* count,
                                                  void*** names) override {
    return Unsupported(Derived::kNames.get_names, count, names);
  }
  platform::HRESULT TAMU_COM_CALL GetIDsFromNames(std::uint32_t, void**, std::uint32_t,
                                                  platform::SPropTagArray** tags) override {
    return Unsupported(Derived::kNames.get_ids, tags);
  }

 protected:
  ~PropObject() = default;
};

}  // namespace tamu::device

#endif  // TAMU_DEVICE_MAIL_PROP_OBJECT_H_
