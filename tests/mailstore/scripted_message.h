// mailstore/scripted_message.h - a message that stores nothing and answers what a test says.
#ifndef TAMU_TESTS_MAILSTORE_SCRIPTED_MESSAGE_H_
#define TAMU_TESTS_MAILSTORE_SCRIPTED_MESSAGE_H_

#include "device/com_object.h"
#include "platform/cemapi.h"
#include "platform/linux/mapi_buffer.h"

namespace tamu::testing {

#define TAMU_REFUSED(name, ...) \
  platform::HRESULT TAMU_COM_CALL name(__VA_ARGS__) override { return platform::hr::kNoSupport; }

class ScriptedMessage final : public device::ComObject<ScriptedMessage, platform::IMessage> {
 public:
  [[nodiscard]] bool Implements(const platform::GUID& iid) const noexcept {
    return iid == platform::IID_IMessage;
  }

  // The properties that have a problem when they are set.
  std::uint32_t problem_tag = 0;
  // Whether a stream was asked for; there never is one.
  int open_property_calls = 0;

  platform::HRESULT TAMU_COM_CALL SetProps(std::uint32_t, platform::SPropValue* values,
                                           platform::SPropProblemArray** problems) override {
    if (values->ulPropTag != problem_tag || problems == nullptr) return platform::hr::kOk;
    *problems = static_cast<platform::SPropProblemArray*>(
        platform::AllocateMapiBuffer(sizeof(platform::SPropProblemArray)));
    (*problems)->cProblem = 1;
    (*problems)->aProblem[0] = {0, problem_tag, platform::hr::kComputed};
    return platform::hr::kOk;
  }
  platform::HRESULT TAMU_COM_CALL OpenProperty(std::uint32_t, const platform::GUID*, std::uint32_t,
                                               std::uint32_t, platform::IUnknown**) override {
    ++open_property_calls;
    return platform::hr::kNoSupport;
  }
  platform::HRESULT TAMU_COM_CALL ModifyRecipients(std::uint32_t, platform::ADRLIST*) override {
    return platform::hr::kOk;
  }
  TAMU_REFUSED(GetLastError, platform::HRESULT, std::uint32_t, platform::MAPIERROR**)
  TAMU_REFUSED(SaveChanges, std::uint32_t)
  TAMU_REFUSED(GetProps, platform::SPropTagArray*, std::uint32_t, std::uint32_t*,
               platform::SPropValue**)
  TAMU_REFUSED(GetPropList, std::uint32_t, platform::SPropTagArray**)
  TAMU_REFUSED(DeleteProps, platform::SPropTagArray*, platform::SPropProblemArray**)
  TAMU_REFUSED(CopyTo, std::uint32_t, const platform::GUID*, platform::SPropTagArray*,
               std::uintptr_t, void*, const platform::GUID*, void*, std::uint32_t,
               platform::SPropProblemArray**)
  TAMU_REFUSED(CopyProps, platform::SPropTagArray*, std::uintptr_t, void*, const platform::GUID*,
               void*, std::uint32_t, platform::SPropProblemArray**)
  TAMU_REFUSED(GetNamesFromIDs, platform::SPropTagArray**, platform::GUID*, std::uint32_t,
               std::uint32_t*, void***)
  TAMU_REFUSED(GetIDsFromNames, std::uint32_t, void**, std::uint32_t, platform::SPropTagArray**)
  TAMU_REFUSED(GetAttachmentTable, std::uint32_t, platform::IMAPITable**)
  TAMU_REFUSED(OpenAttach, std::uint32_t, const platform::GUID*, std::uint32_t,
               platform::IUnknown**)
  TAMU_REFUSED(CreateAttach, const platform::GUID*, std::uint32_t, std::uint32_t*,
               platform::IUnknown**)
  TAMU_REFUSED(DeleteAttach, std::uint32_t, std::uintptr_t, void*, std::uint32_t)
  TAMU_REFUSED(GetRecipientTable, std::uint32_t, platform::IMAPITable**)
  TAMU_REFUSED(SubmitMessage, std::uint32_t)
  TAMU_REFUSED(SetReadFlag, std::uint32_t)
};

#undef TAMU_REFUSED

}  // namespace tamu::testing

#endif  // TAMU_TESTS_MAILSTORE_SCRIPTED_MESSAGE_H_
