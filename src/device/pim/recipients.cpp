#include <algorithm>

#include "device/call_gate.h"
#include "device/pim/guarded.h"
#include "device/pim/item_values.h"
#include "device/pim/pim_objects.h"

namespace tamu::device {
namespace {

using platform::BSTR;
using platform::HRESULT;
namespace hr = platform::hr;

// After this one element can be added without a failure.
template <typename Element>
void MakeRoom(std::vector<Element>* elements) {
  if (elements->size() == elements->capacity()) elements->reserve(2 * elements->size() + 1);
}

// One recipient of an item in hand; kItemNotFound from all its properties once it is removed.
class Recipient final : public ItemObject<Recipient, platform::IRecipient> {
 public:
  Recipient(std::shared_ptr<ItemState> state, std::uint32_t id) noexcept
      : ItemObject(std::move(state)), id_(id) {}

  [[nodiscard]] bool Implements(const platform::GUID& iid) const noexcept {
    return iid == platform::IID_IDispatch || iid == platform::IID_IRecipient;
  }

  HRESULT TAMU_COM_CALL put_Address(BSTR address) override {
    TAMU_DEVICE_CALL("IRecipient::put_Address");
    return Guarded([&] {
      RecipientRecord* recipient = Find();
      if (recipient == nullptr) return hr::kItemNotFound;
      recipient->address = std::u16string(ArgumentText(address));
      return hr::kOk;
    });
  }
  HRESULT TAMU_COM_CALL get_Address(BSTR* address) override {
    TAMU_DEVICE_OUT(address, nullptr);
    TAMU_DEVICE_CALL("IRecipient::get_Address");
    const RecipientRecord* recipient = Find();
    return recipient ? GiveText(recipient->address, address) : hr::kItemNotFound;
  }
  HRESULT TAMU_COM_CALL get_Name(BSTR* name) override {
    TAMU_DEVICE_OUT(name, nullptr);
    TAMU_DEVICE_CALL("IRecipient::get_Name");
    const RecipientRecord* recipient = Find();
    return recipient ? GiveText(recipient->name, name) : hr::kItemNotFound;
  }
  HRESULT TAMU_COM_CALL get_Application(platform::IPOutlookApp** application) override {
    return GetApplication("IRecipient::get_Application", state().application.get(), application);
  }

 private:
  [[nodiscard]] RecipientRecord* Find() const noexcept {
    const std::vector<std::uint32_t>& ids = state().recipient_ids;
    const auto found = std::find(ids.begin(), ids.end(), id_);
    return found == ids.end() ? nullptr
                              : &record().recipients[static_cast<std::size_t>(found - ids.begin())];
  }

  std::uint32_t id_;
};

// A recipient's name may be empty, as one that came without is.
class Recipients final : public ItemObject<Recipients, platform::IRecipients> {
 public:
  explicit Recipients(std::shared_ptr<ItemState> state) noexcept : ItemObject(std::move(state)) {}

  [[nodiscard]] bool Implements(const platform::GUID& iid) const noexcept {
    return iid == platform::IID_IDispatch || iid == platform::IID_IRecipients;
  }

  HRESULT TAMU_COM_CALL Add(BSTR name, platform::IRecipient** recipient) override {
    TAMU_DEVICE_OUT(recipient, nullptr);
    TAMU_DEVICE_CALL("IRecipients::Add");
    return Guarded([&] {
      ItemState& item = state();
      MakeRoom(&item.recipient_ids);
      MakeRoom(&record().recipients);
      RecipientRecord added{std::u16string(ArgumentText(name)), {}};
      TAMU_DEVICE_TRY(MakeObject<Recipient>(recipient, shared_state(), item.next_recipient_id));
      record().recipients.push_back(std::move(added));
      item.recipient_ids.push_back(item.next_recipient_id++);
      return hr::kOk;
    });
  }
  HRESULT TAMU_COM_CALL Item(std::int32_t index, platform::IRecipient** recipient) override {
    TAMU_DEVICE_OUT(recipient, nullptr);
    TAMU_DEVICE_CALL("IRecipients::Item");
    if (!IsIndex(index)) return hr::kInvalidArgument;
    return MakeObject<Recipient>(recipient, shared_state(),
                                 state().recipient_ids[static_cast<std::size_t>(index) - 1]);
  }
  HRESULT TAMU_COM_CALL Remove(std::int32_t index) override {
    TAMU_DEVICE_CALL("IRecipients::Remove");
    if (!IsIndex(index)) return hr::kInvalidArgument;
    record().recipients.erase(record().recipients.begin() + index - 1);
    state().recipient_ids.erase(state().recipient_ids.begin() + index - 1);
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL get_Count(std::int32_t* count) override {
    TAMU_DEVICE_OUT(count, 0);
    TAMU_DEVICE_CALL("IRecipients::get_Count");
    *count = static_cast<std::int32_t>(record().recipients.size());
    return hr::kOk;
  }
  HRESULT TAMU_COM_CALL get__NewEnum(platform::IUnknown** enumerator) override {
    TAMU_DEVICE_OUT(enumerator, nullptr);
    TAMU_DEVICE_CALL("IRecipients::get__NewEnum");
    return hr::kNotImplemented;
  }
  HRESULT TAMU_COM_CALL get_Application(platform::IPOutlookApp** application) override {
    return GetApplication("IRecipients::get_Application", state().application.get(), application);
  }

 private:
  [[nodiscard]] bool IsIndex(std::int32_t index) const noexcept {
    return index >= 1 && static_cast<std::size_t>(index) <= record().recipients.size();
  }
};

}  // namespace

HRESULT MakeRecipients(std::shared_ptr<ItemState> state, platform::IRecipients** out) noexcept {
  return MakeObject<Recipients>(out, std::move(state));
}

}  // namespace tamu::device
