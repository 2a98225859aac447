#include "device/mail/message_store.h"

#include <algorithm>

#include "device/mail/entry_id.h"
#include "device/mail/mail_objects.h"
#include "device/mail/no_memory.h"
#include "device/mail/prop_object.h"
#include "device/mail/property_values.h"
#include "platform/linux/mapi_buffer.h"

namespace tamu::device {
namespace {

using platform::ENTRYID;
using platform::GUID;
using platform::HRESULT;

// The properties by which the store names its folders.
struct FolderProperty {
  std::uint32_t tag;
  MailFolder folder;
};
constexpr std::uint32_t kInboxEntryId = 0x81060102;  // PR_CE_IPM_INBOX_ENTRYID
constexpr FolderProperty kFolderProperties[] = {
    {platform::PR_IPM_OUTBOX_ENTRYID, MailFolder::kOutbox},
    {platform::PR_IPM_SENTMAIL_ENTRYID, MailFolder::kSentItems},
    {kInboxEntryId, MailFolder::kInbox},
};

class MessageStore final : public PropObject<MessageStore, platform::IMsgStore> {
 public:
  static constexpr PropMethodNames kNames = TAMU_PROP_METHOD_NAMES("IMsgStore");

  explicit MessageStore(const MailStorePtr& store) noexcept : store_(store) {}

  [[nodiscard]] bool Implements(const GUID& iid) const noexcept {
    return iid == platform::IID_IMsgStore || iid == platform::IID_IMAPIProp;
  }

  HRESULT TAMU_COM_CALL GetProps(platform::SPropTagArray* tags, std::uint32_t flags,
                                 std::uint32_t* count, platform::SPropValue** values) override;
  HRESULT TAMU_COM_CALL OpenEntry(std::uint32_t size, ENTRYID* entry_id, const GUID* iid,
                                  std::uint32_t flags, std::uint32_t* type,
                                  platform::IUnknown** object) override;
  HRESULT TAMU_COM_CALL GetReceiveFolder(char16_t* message_class, std::uint32_t flags,
                                         std::uint32_t* size, ENTRYID** entry_id,
                                         char16_t** explicit_class) override;

  HRESULT TAMU_COM_CALL OpenProperty(std::uint32_t, const GUID*, std::uint32_t, std::uint32_t,
                                     platform::IUnknown** stream) override {
    return Unsupported("IMsgStore::OpenProperty", stream);
  }
  HRESULT TAMU_COM_CALL SetProps(std::uint32_t, platform::SPropValue*,
                                 platform::SPropProblemArray** problems) override {
    return Unsupported("IMsgStore::SetProps", problems);
  }
  HRESULT TAMU_COM_CALL DeleteProps(platform::SPropTagArray*,
                                    platform::SPropProblemArray** problems) override {
    return Unsupported("IMsgStore::DeleteProps", problems);
  }
  HRESULT TAMU_COM_CALL Advise(std::uint32_t, ENTRYID*, std::uint32_t, void*,
                               std::uint32_t* connection) override {
    return Unsupported("IMsgStore::Advise", connection);
  }
  HRESULT TAMU_COM_CALL Unadvise(std::uint32_t) override {
    return Unsupported("IMsgStore::Unadvise");
  }
  HRESULT TAMU_COM_CALL CompareEntryIDs(std::uint32_t, ENTRYID*, std::uint32_t, ENTRYID*,
                                        std::uint32_t, std::uint32_t* result) override {
    return Unsupported("IMsgStore::CompareEntryIDs", result);
  }
  HRESULT TAMU_COM_CALL SetReceiveFolder(char16_t*, std::uint32_t, std::uint32_t,
                                         ENTRYID*) override {
    return Unsupported("IMsgStore::SetReceiveFolder");
  }
  HRESULT TAMU_COM_CALL GetReceiveFolderTable(std::uint32_t,
                                              platform::IMAPITable** table) override {
    return Unsupported("IMsgStore::GetReceiveFolderTable", table);
  }
  HRESULT TAMU_COM_CALL StoreLogoff(std::uint32_t*) override {
    return Unsupported("IMsgStore::StoreLogoff");
  }
  HRESULT TAMU_COM_CALL AbortSubmit(std::uint32_t, ENTRYID*, std::uint32_t) override {
    return Unsupported("IMsgStore::AbortSubmit");
  }
  HRESULT TAMU_COM_CALL GetOutgoingQueue(std::uint32_t, platform::IMAPITable** table) override {
    return Unsupported("IMsgStore::GetOutgoingQueue", table);
  }
  HRESULT TAMU_COM_CALL SetLockState(void*, std::uint32_t) override {
    return Unsupported("IMsgStore::SetLockState");
  }
  HRESULT TAMU_COM_CALL FinishedMsg(std::uint32_t, std::uint32_t, ENTRYID*) override {
    return Unsupported("IMsgStore::FinishedMsg");
  }
  HRESULT TAMU_COM_CALL NotifyNewMail(void*) override {
    return Unsupported("IMsgStore::NotifyNewMail");
  }

 private:
  const MailStorePtr store_;
};

HRESULT MessageStore::GetProps(platform::SPropTagArray* tags, std::uint32_t, std::uint32_t* count,
                               platform::SPropValue** values) {
  if (count == nullptr || values == nullptr) return platform::hr::kInvalidArgument;
  *count = 0;
  *values = nullptr;
  TAMU_DEVICE_CALL("IMsgStore::GetProps");
  std::span<const std::uint32_t> wanted;
  if (const HRESULT result = TagsOf(tags, &wanted); platform::Failed(result)) return result;
  return CatchNoMemory([&] {
    const HRESULT result = MakeValues(wanted, MessageStoreProperties(*store_), values);
    if (platform::Succeeded(result)) *count = static_cast<std::uint32_t>(wanted.size());
    return result;
  });
}

HRESULT MessageStore::OpenEntry(std::uint32_t size, ENTRYID* entry_id, const GUID*, std::uint32_t,
                                std::uint32_t* type, platform::IUnknown** object) {
  if (type != nullptr) *type = 0;
  if (object == nullptr) return platform::hr::kInvalidArgument;
  *object = nullptr;
  TAMU_DEVICE_CALL("IMsgStore::OpenEntry");
  return OpenMailEntry(store_, size, entry_id, type, object);
}

HRESULT MessageStore::GetReceiveFolder(char16_t* message_class, std::uint32_t, std::uint32_t* size,
                                       ENTRYID** entry_id, char16_t** explicit_class) {
  if (explicit_class != nullptr) *explicit_class = nullptr;
  if (size == nullptr || entry_id == nullptr) return platform::hr::kInvalidArgument;
  *size = 0;
  *entry_id = nullptr;
  TAMU_DEVICE_CALL("IMsgStore::GetReceiveFolder");
  if (message_class != nullptr) return platform::hr::kInvalidArgument;
  if (!store_->HasFolder(MailFolder::kInbox)) return platform::hr::kNotFound;
  void* const block = platform::AllocateMapiBuffer(kEntryIdSize);
  if (block == nullptr) return platform::hr::kOutOfMemory;
  const EntryIdBytes bytes = PackEntryId(FolderEntryId(MailFolder::kInbox));
  std::copy(bytes.begin(), bytes.end(), static_cast<std::uint8_t*>(block));
  *entry_id = static_cast<ENTRYID*>(block);
  *size = kEntryIdSize;
  return platform::hr::kOk;
}

}  // namespace

std::vector<MailProperty> MessageStoreProperties(const MailStore& store) {
  std::vector<MailProperty> properties{
      NumberProperty(platform::PR_DEFAULT_STORE, 1),
      NumberProperty(platform::PR_OBJECT_TYPE, platform::kObjectStore),
      TextProperty(platform::PR_DISPLAY_NAME, u"Mail"),
      TextProperty(platform::PR_PROVIDER_DISPLAY, u"tamu"),
      EntryIdProperty(platform::PR_ENTRYID, kStoreEntryId),
  };
  for (const FolderProperty& row : kFolderProperties) {
    if (!store.HasFolder(row.folder)) continue;
    properties.push_back(EntryIdProperty(row.tag, FolderEntryId(row.folder)));
  }
  return properties;
}

HRESULT CreateMessageStore(const MailStorePtr& store, platform::IMsgStore** out) noexcept {
  *out = NewObject<MessageStore>(store);
  return *out == nullptr ? platform::hr::kOutOfMemory : platform::hr::kOk;
}

}  // namespace tamu::device
