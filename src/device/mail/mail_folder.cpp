#include <algorithm>
#include <iterator>
#include <utility>

#include "device/mail/entry_id.h"
#include "device/mail/mail_objects.h"
#include "device/mail/no_memory.h"
#include "device/mail/prop_object.h"
#include "device/mail/property_values.h"

namespace tamu::device {
namespace {

using platform::ENTRYID;
using platform::ENTRYLIST;
using platform::GUID;
using platform::HRESULT;

constexpr std::uint32_t kContentsColumns[] = {
    platform::PR_ENTRYID, platform::PR_SUBJECT, platform::PR_MESSAGE_DELIVERY_TIME,
    platform::PR_SENDER_EMAIL_ADDRESS, platform::PR_MESSAGE_FLAGS};

constexpr const char16_t* NameOf(MailFolder folder) noexcept {
  switch (folder) {
    case MailFolder::kInbox:
      return u"Inbox";
    case MailFolder::kOutbox:
      return u"Outbox";
    case MailFolder::kSentItems:
      return u"Sent Items";
  }
  return u"";
}

// The folder's second interface: it lies in the folder and counts references there.
class ExactFind final : public platform::IExactMailFind {
 public:
  ExactFind(platform::IUnknown* owner, const MailStorePtr& store, MailFolder folder) noexcept
      : owner_(owner), store_(store), folder_(folder) {}

  HRESULT TAMU_COM_CALL QueryInterface(const GUID& iid, void** object) override {
    return owner_->QueryInterface(iid, object);
  }
  std::uint32_t TAMU_COM_CALL AddRef() override { return owner_->AddRef(); }
  std::uint32_t TAMU_COM_CALL Release() override { return owner_->Release(); }

  HRESULT TAMU_COM_CALL FindMessage(std::uint64_t first, std::uint64_t count,
                                    const char16_t* subject, std::uint32_t length, std::uint8_t* id,
                                    std::uint32_t* found) override {
    if (found == nullptr) return platform::hr::kInvalidArgument;
    *found = 0;
    TAMU_DEVICE_CALL("IExactMailFind::FindMessage");
    if (id == nullptr || (subject == nullptr && length != 0)) {
      return platform::hr::kInvalidArgument;
    }
    const ExactMail mail{first, count, std::u16string_view(subject, length)};
    MailId message = 0;
    const HRESULT result = store_->FindExact(folder_, mail, &message);
    if (platform::Failed(result) || message == 0) return result;
    const EntryIdBytes bytes = PackEntryId(MessageEntryId(message));
    std::copy(bytes.begin(), bytes.end(), id);
    *found = 1;
    return result;
  }

 private:
  platform::IUnknown* const owner_;
  const MailStorePtr& store_;
  const MailFolder folder_;
};

class Folder final : public PropObject<Folder, platform::IMAPIFolder> {
 public:
  static constexpr PropMethodNames kNames = TAMU_PROP_METHOD_NAMES("IMAPIFolder");

  Folder(const MailStorePtr& store, MailFolder folder) noexcept : store_(store), folder_(folder) {}

  [[nodiscard]] bool Implements(const GUID& iid) const noexcept {
    return iid == platform::IID_IMAPIFolder || iid == platform::IID_IMAPIContainer ||
           iid == platform::IID_IMAPIProp;
  }
  void* OtherInterface(const GUID& iid) noexcept {
    return iid == platform::IID_IExactMailFind ? static_cast<platform::IExactMailFind*>(&find_)
                                               : nullptr;
  }

  HRESULT TAMU_COM_CALL GetProps(platform::SPropTagArray* tags, std::uint32_t flags,
                                 std::uint32_t* count, platform::SPropValue** values) override;
  HRESULT TAMU_COM_CALL GetContentsTable(std::uint32_t flags,
                                         platform::IMAPITable** table) override;
  HRESULT TAMU_COM_CALL OpenEntry(std::uint32_t size, ENTRYID* entry_id, const GUID* iid,
                                  std::uint32_t flags, std::uint32_t* type,
                                  platform::IUnknown** object) override;
  HRESULT TAMU_COM_CALL CreateMessage(const GUID* iid, std::uint32_t flags,
                                      platform::IMessage** message) override;
  HRESULT TAMU_COM_CALL DeleteMessages(ENTRYLIST* messages, std::uintptr_t ui, void* progress,
                                       std::uint32_t flags) override;

  HRESULT TAMU_COM_CALL OpenProperty(std::uint32_t, const GUID*, std::uint32_t, std::uint32_t,
                                     platform::IUnknown** stream) override {
    return Unsupported("IMAPIFolder::OpenProperty", stream);
  }
  HRESULT TAMU_COM_CALL SetProps(std::uint32_t, platform::SPropValue*,
                                 platform::SPropProblemArray** problems) override {
    return Unsupported("IMAPIFolder::SetProps", problems);
  }
  HRESULT TAMU_COM_CALL DeleteProps(platform::SPropTagArray*,
                                    platform::SPropProblemArray** problems) override {
    return Unsupported("IMAPIFolder::DeleteProps", problems);
  }
  HRESULT TAMU_COM_CALL GetHierarchyTable(std::uint32_t, platform::IMAPITable** table) override {
    return Unsupported("IMAPIFolder::GetHierarchyTable", table);
  }
  HRESULT TAMU_COM_CALL SetSearchCriteria(platform::SRestriction*, ENTRYLIST*,
                                          std::uint32_t) override {
    return Unsupported("IMAPIFolder::SetSearchCriteria");
  }
  HRESULT TAMU_COM_CALL GetSearchCriteria(std::uint32_t, platform::SRestriction** restriction,
                                          ENTRYLIST** containers, std::uint32_t* state) override {
    return Unsupported("IMAPIFolder::GetSearchCriteria", restriction, containers, state);
  }
  HRESULT TAMU_COM_CALL CopyMessages(ENTRYLIST*, const GUID*, void*, std::uintptr_t, void*,
                                     std::uint32_t) override {
    return Unsupported("IMAPIFolder::CopyMessages");
  }
  HRESULT TAMU_COM_CALL CreateFolder(std::uint32_t, char16_t*, char16_t*, const GUID*,
                                     std::uint32_t, platform::IMAPIFolder** folder) override {
    return Unsupported("IMAPIFolder::CreateFolder", folder);
  }
  HRESULT TAMU_COM_CALL CopyFolder(std::uint32_t, ENTRYID*, const GUID*, void*, char16_t*,
                                   std::uintptr_t, void*, std::uint32_t) override {
    return Unsupported("IMAPIFolder::CopyFolder");
  }
  HRESULT TAMU_COM_CALL DeleteFolder(std::uint32_t, ENTRYID*, std::uintptr_t, void*,
                                     std::uint32_t) override {
    return Unsupported("IMAPIFolder::DeleteFolder");
  }
  HRESULT TAMU_COM_CALL SetReadFlags(ENTRYLIST*, std::uintptr_t, void*, std::uint32_t) override {
    return Unsupported("IMAPIFolder::SetReadFlags");
  }
  HRESULT TAMU_COM_CALL GetMessageStatus(std::uint32_t, ENTRYID*, std::uint32_t,
                                         std::uint32_t* status) override {
    return Unsupported("IMAPIFolder::GetMessageStatus", status);
  }
  HRESULT TAMU_COM_CALL SetMessageStatus(std::uint32_t, ENTRYID*, std::uint32_t, std::uint32_t,
                                         std::uint32_t* old_status) override {
    return Unsupported("IMAPIFolder::SetMessageStatus", old_status);
  }
  HRESULT TAMU_COM_CALL SaveContentsSort(platform::SSortOrderSet*, std::uint32_t) override {
    return Unsupported("IMAPIFolder::SaveContentsSort");
  }
  HRESULT TAMU_COM_CALL EmptyFolder(std::uintptr_t, void*, std::uint32_t) override {
    return Unsupported("IMAPIFolder::EmptyFolder");
  }

 private:
  const MailStorePtr store_;
  const MailFolder folder_;
  ExactFind find_{this, store_, folder_};
};

HRESULT Folder::GetProps(platform::SPropTagArray* tags, std::uint32_t, std::uint32_t* count,
                         platform::SPropValue** values) {
  if (count == nullptr || values == nullptr) return platform::hr::kInvalidArgument;
  *count = 0;
  *values = nullptr;
  TAMU_DEVICE_CALL("IMAPIFolder::GetProps");
  std::span<const std::uint32_t> wanted;
  if (const HRESULT result = TagsOf(tags, &wanted); platform::Failed(result)) return result;
  std::uint32_t messages = 0;
  if (const HRESULT result = store_->Count(folder_, kLastMail, &messages);
      platform::Failed(result)) {
    return result;
  }
  return CatchNoMemory([&] {
    const MailProperty own[] = {
        EntryIdProperty(platform::PR_ENTRYID, FolderEntryId(folder_)),
        EntryIdProperty(platform::PR_PARENT_ENTRYID, kStoreEntryId),
        NumberProperty(platform::PR_OBJECT_TYPE, platform::kObjectFolder),
        TextProperty(platform::PR_DISPLAY_NAME, NameOf(folder_)),
        NumberProperty(platform::PR_CONTENT_COUNT, messages),
    };
    const HRESULT result = MakeValues(wanted, own, values);
    if (platform::Succeeded(result)) *count = static_cast<std::uint32_t>(wanted.size());
    return result;
  });
}

HRESULT Folder::GetContentsTable(std::uint32_t, platform::IMAPITable** table) {
  if (table == nullptr) return platform::hr::kInvalidArgument;
  *table = nullptr;
  TAMU_DEVICE_CALL("IMAPIFolder::GetContentsTable");
  return CatchNoMemory([&] {
    return CreateTable(ContentsRows(store_, folder_), kContentsColumns, TableColumns::kSettable,
                       table);
  });
}

HRESULT Folder::OpenEntry(std::uint32_t size, ENTRYID* entry_id, const GUID*, std::uint32_t,
                          std::uint32_t* type, platform::IUnknown** object) {
  if (type != nullptr) *type = 0;
  if (object == nullptr) return platform::hr::kInvalidArgument;
  *object = nullptr;
  TAMU_DEVICE_CALL("IMAPIFolder::OpenEntry");
  return OpenMailEntry(store_, size, entry_id, type, object);
}

HRESULT Folder::CreateMessage(const GUID*, std::uint32_t, platform::IMessage** message) {
  if (message == nullptr) return platform::hr::kInvalidArgument;
  *message = nullptr;
  TAMU_DEVICE_CALL("IMAPIFolder::CreateMessage");
  return CreateNewMessage(store_, folder_, message);
}

HRESULT Folder::DeleteMessages(ENTRYLIST* messages, std::uintptr_t, void*, std::uint32_t) {
  TAMU_DEVICE_CALL("IMAPIFolder::DeleteMessages");
  if (messages == nullptr || (messages->lpbin == nullptr && messages->cValues != 0)) {
    return platform::hr::kInvalidArgument;
  }
  return CatchNoMemory([&]() -> HRESULT {
    std::vector<MailId> ids;
    for (const platform::SBinary& bytes : std::span(messages->lpbin, messages->cValues)) {
      EntryId id;
      if (const HRESULT parsed = ParseEntryId(bytes.cb, bytes.lpb, &id); platform::Failed(parsed)) {
        return parsed;
      }
      if (id.kind != platform::kObjectMessage) return platform::hr::kNotFound;
      ids.push_back(id.number);
    }
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    if (ids.empty()) return platform::hr::kOk;
    const HRESULT result = store_->DeleteMessages(folder_, ids);
    return result == platform::hr::kItemNotFound ? platform::hr::kNotFound : result;
  });
}

}  // namespace

HRESULT CreateFolder(const MailStorePtr& store, MailFolder folder,
                     platform::IMAPIFolder** out) noexcept {
  *out = NewObject<Folder>(store, folder);
  return *out == nullptr ? platform::hr::kOutOfMemory : platform::hr::kOk;
}

}  // namespace tamu::device
