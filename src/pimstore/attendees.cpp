#include "pimstore/attendees.h"

#include <string_view>

#include "core/log.h"
#include "pimstore/item_access.h"
#include "platform/com_ptr.h"
#include "text/property.h"
#include "text/property_text.h"

namespace tamu {
namespace {

using platform::BStr;
using platform::ComPtr;
using platform::IRecipient;
using platform::IRecipients;

struct Attendee {
  std::u16string_view name;
  std::u16string_view address;
};

Attendee Split(std::u16string_view text) noexcept {
  const std::size_t open = text.find(u'<');
  const std::size_t close = text.find(u'>');
  if (open == std::u16string_view::npos || close == std::u16string_view::npos) return {text, text};
  if (close < open) return {text.substr(0, open), {}};
  return {text.substr(0, open), text.substr(open + 1, close - open - 1)};
}

BStr Copy(std::u16string_view text) noexcept {
  return BStr(platform::SysAllocStringLen(text.data(), static_cast<std::uint32_t>(text.size())));
}

void Add(IRecipients* recipients, std::u16string_view text) {
  const Attendee attendee = Split(text);
  const BStr name = Copy(attendee.name);
  const BStr address = Copy(attendee.address);
  if (name.get() == nullptr || address.get() == nullptr) return;
  ComPtr<IRecipient> recipient;
  if (platform::Failed(recipients->Add(name.get(), recipient.put())) || !recipient) return;
  recipient->put_Address(address.get());
}

void RemoveAll(IRecipients* recipients) {
  std::int32_t count = GetValue(recipients, &IRecipients::get_Count, 0);
  if (count <= 0) return;
  LOG_Info("TAMU:  %d attendees will be removed.", count);
  for (; count > 0; --count) recipients->Remove(count);
}

ComPtr<IRecipients> RecipientsOf(platform::IAppointment* item) {
  ComPtr<IRecipients> recipients;
  if (platform::Failed(item->get_Recipients(recipients.put()))) recipients.reset();
  return recipients;
}

// "name <address>"; empty when memory runs out.
BStr Join(std::u16string_view name, std::u16string_view address) noexcept {
  const std::size_t length = name.size() + address.size() + 3;
  BStr text(platform::SysAllocStringLen(nullptr, static_cast<std::uint32_t>(length)));
  if (text.get() == nullptr) return text;
  char16_t* out = text.get();
  out += name.copy(out, name.size());
  *out++ = u' ';
  *out++ = u'<';
  out += address.copy(out, address.size());
  *out = u'>';
  return text;
}

void Append(IRecipient* recipient, Ref<Property>* chain) {
  const BStr name = GetText(recipient, &IRecipient::get_Name);
  const BStr address = GetText(recipient, &IRecipient::get_Address);
  const BStr joined =
      name.view() == address.view() ? Copy(name.view()) : Join(name.view(), address.view());
  Property* const property = PROP_Append(chain);
  PROP_AddParam(property, "ROLE=ATTENDEE");
  PROP_SetWide(joined.c_str(), property, 0, 0);
}

}  // namespace

void AttendeesToStore(platform::IAppointment* item, Property* first) noexcept {
  const ComPtr<IRecipients> recipients = RecipientsOf(item);
  if (!recipients) return;
  RemoveAll(recipients.get());
  for (Property* entry = first; entry != nullptr; entry = entry->next) {
    const BStr text = WideOf(entry);
    if (!text.empty()) Add(recipients.get(), text.view());
  }
}

void AttendeesFromStore(platform::IAppointment* item, Ref<Property>* chain) noexcept {
  const ComPtr<IRecipients> recipients = RecipientsOf(item);
  if (!recipients) return;
  const std::int32_t count = GetValue(recipients.get(), &IRecipients::get_Count, 0);
  for (std::int32_t i = 1; i <= count; ++i) {
    ComPtr<IRecipient> recipient;
    if (platform::Failed(recipients->Item(i, recipient.put())) || !recipient) continue;
    Append(recipient.get(), chain);
  }
}

}  // namespace tamu
