#include "device/call_gate.h"
#include "device/pim/guarded.h"
#include "device/pim/item_values.h"
#include "device/pim/pim_objects.h"

namespace tamu::device {
namespace {

using platform::HRESULT;
namespace hr = platform::hr;

class Contact final : public ItemObject<Contact, platform::IContact> {
 public:
  explicit Contact(std::shared_ptr<ItemState> state) noexcept : ItemObject(std::move(state)) {}

  [[nodiscard]] bool Implements(const platform::GUID& iid) const noexcept {
    return iid == platform::IID_IDispatch || iid == platform::IID_IContact;
  }

#define TAMU_DATE(name) TAMU_ITEM_DATE(IContact, ContactProperty, name)
#define TAMU_TEXT(name) TAMU_ITEM_TEXT(IContact, ContactProperty, name)
  TAMU_CONTACT_PROPERTIES(TAMU_DATE, TAMU_TEXT)
#undef TAMU_DATE
#undef TAMU_TEXT
  TAMU_ITEM_INK(IContact, ContactProperty)

  HRESULT TAMU_COM_CALL Save() override {
    TAMU_DEVICE_CALL("IContact::Save");
    return SaveItem(&state());
  }
  HRESULT TAMU_COM_CALL Delete() override {
    TAMU_DEVICE_CALL("IContact::Delete");
    return DeleteItem(&state());
  }
  HRESULT TAMU_COM_CALL Copy(platform::IContact** copy) override {
    TAMU_DEVICE_OUT(copy, nullptr);
    TAMU_DEVICE_CALL("IContact::Copy");
    return Guarded([&] { return MakeContact(CopyState(state()), copy); });
  }
  HRESULT TAMU_COM_CALL Display() override {
    TAMU_DEVICE_CALL("IContact::Display");
    return hr::kNotImplemented;
  }
  HRESULT TAMU_COM_CALL get_Oid(std::int32_t* oid) override {
    return GetOid("IContact::get_Oid", state(), oid);
  }
  HRESULT TAMU_COM_CALL get_Application(platform::IPOutlookApp** application) override {
    return GetApplication("IContact::get_Application", state().application.get(), application);
  }
};

}  // namespace

HRESULT MakeContact(std::shared_ptr<ItemState> state, platform::IContact** out) noexcept {
  return MakeObject<Contact>(out, std::move(state));
}

}  // namespace tamu::device
