#include "device/mail/entry_id.h"
#include "device/mail/mail_objects.h"
#include "platform/com_ptr.h"

namespace tamu::device {
namespace {

using platform::HRESULT;

HRESULT OpenStore(const MailStorePtr& store, std::uint32_t number, platform::IUnknown** out) {
  if (number != kStoreEntryId.number) return platform::hr::kNotFound;
  platform::IMsgStore* opened = nullptr;
  const HRESULT result = CreateMessageStore(store, &opened);
  *out = opened;
  return result;
}

HRESULT OpenFolder(const MailStorePtr& store, std::uint32_t number, platform::IUnknown** out) {
  for (const MailFolder folder : kMailFolders) {
    if (number != static_cast<std::uint32_t>(folder) || !store->HasFolder(folder)) continue;
    platform::IMAPIFolder* opened = nullptr;
    const HRESULT result = CreateFolder(store, folder, &opened);
    *out = opened;
    return result;
  }
  return platform::hr::kNotFound;
}

HRESULT OpenMessage(const MailStorePtr& store, std::uint32_t number, platform::IUnknown** out) {
  MailFolder folder{};
  const HRESULT found = store->FolderOf(number, &folder);
  if (found == platform::hr::kItemNotFound) return platform::hr::kNotFound;
  if (platform::Failed(found)) return found;
  platform::IMessage* opened = nullptr;
  const HRESULT result = CreateMessageObject(store, folder, number, &opened);
  *out = opened;
  return result;
}

}  // namespace

HRESULT OpenMailEntry(const MailStorePtr& store, std::uint32_t size,
                      const platform::ENTRYID* entry_id, std::uint32_t* type,
                      platform::IUnknown** out) noexcept {
  EntryId id;
  if (const HRESULT parsed = ParseEntryId(size, entry_id, &id); platform::Failed(parsed)) {
    return parsed;
  }
  if (store == nullptr) return platform::hr::kNotFound;
  const auto open = id.kind == platform::kObjectStore    ? &OpenStore
                    : id.kind == platform::kObjectFolder ? &OpenFolder
                                                         : &OpenMessage;
  const HRESULT result = open(store, id.number, out);
  if (platform::Succeeded(result) && type != nullptr) *type = id.kind;
  return result;
}

}  // namespace tamu::device
