#include "device/mail/mail_session.h"

#include <cstring>

#include "device/mail/entry_id.h"
#include "device/mail/mail_objects.h"
#include "device/mail/message_store.h"
#include "device/mail/no_memory.h"
#include "device/mail/prop_object.h"
#include "device/mail/property_values.h"

namespace tamu::device {
namespace {

using platform::ENTRYID;
using platform::GUID;
using platform::HRESULT;
using platform::IMessage;
using platform::IMsgStore;

constexpr std::uint32_t kStoreColumns[] = {platform::PR_ENTRYID, platform::PR_DEFAULT_STORE,
                                           platform::PR_DISPLAY_NAME,
                                           platform::PR_PROVIDER_DISPLAY};

class MailSession final : public ComObject<MailSession, platform::IMAPISession> {
 public:
  explicit MailSession(const MailStorePtr& store) noexcept : store_(store) {}

  [[nodiscard]] bool Implements(const GUID& iid) const noexcept {
    return iid == platform::IID_IMAPISession;
  }

  HRESULT TAMU_COM_CALL GetLastError(HRESULT, std::uint32_t, platform::MAPIERROR** error) override {
    return NoLastError("IMAPISession::GetLastError", error);
  }
  HRESULT TAMU_COM_CALL GetMsgStoresTable(std::uint32_t flags,
                                          platform::IMAPITable** table) override;
  HRESULT TAMU_COM_CALL OpenMsgStore(std::uintptr_t ui, std::uint32_t size, ENTRYID* entry_id,
                                     const GUID* iid, std::uint32_t flags,
                                     IMsgStore** store) override;
  HRESULT TAMU_COM_CALL OpenEntry(std::uint32_t size, ENTRYID* entry_id, const GUID* iid,
                                  std::uint32_t flags, std::uint32_t* type,
                                  platform::IUnknown** object) override;
  HRESULT TAMU_COM_CALL CompareEntryIDs(std::uint32_t size1, ENTRYID* id1, std::uint32_t size2,
                                        ENTRYID* id2, std::uint32_t flags,
                                        std::uint32_t* result) override;
  // Nothing is open that the last Release would not close.
  HRESULT TAMU_COM_CALL Logoff(std::uintptr_t, std::uint32_t, std::uint32_t) override {
    TAMU_DEVICE_CALL("IMAPISession::Logoff");
    return platform::hr::kOk;
  }

  HRESULT TAMU_COM_CALL OpenAddressBook(std::uintptr_t, const GUID*, std::uint32_t,
                                        void** book) override {
    return Unsupported("IMAPISession::OpenAddressBook", book);
  }
  HRESULT TAMU_COM_CALL OpenProfileSection(const GUID*, const GUID*, std::uint32_t,
                                           void** profile) override {
    return Unsupported("IMAPISession::OpenProfileSection", profile);
  }
  HRESULT TAMU_COM_CALL GetStatusTable(std::uint32_t, platform::IMAPITable** table) override {
    return Unsupported("IMAPISession::GetStatusTable", table);
  }
  HRESULT TAMU_COM_CALL Advise(std::uint32_t, ENTRYID*, std::uint32_t, void*,
                               std::uint32_t* connection) override {
    return Unsupported("IMAPISession::Advise", connection);
  }
  HRESULT TAMU_COM_CALL Unadvise(std::uint32_t) override {
    return Unsupported("IMAPISession::Unadvise");
  }
  HRESULT TAMU_COM_CALL MessageOptions(std::uintptr_t, std::uint32_t, char16_t*,
                                       IMessage*) override {
    return Unsupported("IMAPISession::MessageOptions");
  }
  HRESULT TAMU_COM_CALL QueryDefaultMessageOpt(char16_t*, std::uint32_t, std::uint32_t* count,
                                               platform::SPropValue** values) override {
    return Unsupported("IMAPISession::QueryDefaultMessageOpt", count, values);
  }
  HRESULT TAMU_COM_CALL EnumAdrTypes(std::uint32_t, std::uint32_t* count,
                                     char16_t*** types) override {
    return Unsupported("IMAPISession::EnumAdrTypes", count, types);
  }
  HRESULT TAMU_COM_CALL QueryIdentity(std::uint32_t* size, ENTRYID** entry_id) override {
    return Unsupported("IMAPISession::QueryIdentity", size, entry_id);
  }
  HRESULT TAMU_COM_CALL SetDefaultStore(std::uint32_t, std::uint32_t, ENTRYID*) override {
    return Unsupported("IMAPISession::SetDefaultStore");
  }
  HRESULT TAMU_COM_CALL AdminServices(std::uint32_t, void** services) override {
    return Unsupported("IMAPISession::AdminServices", services);
  }
  HRESULT TAMU_COM_CALL ShowForm(std::uintptr_t, IMsgStore*, platform::IMAPIFolder*, const GUID*,
                                 std::uint32_t, IMessage*, std::uint32_t, std::uint32_t,
                                 std::uint32_t, std::uint32_t, char*) override {
    return Unsupported("IMAPISession::ShowForm");
  }
  HRESULT TAMU_COM_CALL PrepareForm(const GUID*, IMessage*, std::uint32_t* token) override {
    return Unsupported("IMAPISession::PrepareForm", token);
  }

 private:
  const MailStorePtr store_;  // null when the device has none
};

HRESULT MailSession::GetMsgStoresTable(std::uint32_t, platform::IMAPITable** table) {
  if (table == nullptr) return platform::hr::kInvalidArgument;
  *table = nullptr;
  TAMU_DEVICE_CALL("IMAPISession::GetMsgStoresTable");
  return CatchNoMemory([&] {
    std::vector<MailRow> rows;
    if (store_ != nullptr) rows.push_back({1, MessageStoreProperties(*store_)});
    return CreateTable(FixedRows(std::move(rows)), kStoreColumns, TableColumns::kSettable, table);
  });
}

HRESULT MailSession::OpenMsgStore(std::uintptr_t, std::uint32_t size, ENTRYID* entry_id,
                                  const GUID*, std::uint32_t, IMsgStore** store) {
  if (store == nullptr) return platform::hr::kInvalidArgument;
  *store = nullptr;
  TAMU_DEVICE_CALL("IMAPISession::OpenMsgStore");
  EntryId id;
  if (const HRESULT parsed = ParseEntryId(size, entry_id, &id); platform::Failed(parsed)) {
    return parsed;
  }
  if (store_ == nullptr || id != kStoreEntryId) return platform::hr::kNotFound;
  return CreateMessageStore(store_, store);
}

HRESULT MailSession::OpenEntry(std::uint32_t size, ENTRYID* entry_id, const GUID*, std::uint32_t,
                               std::uint32_t* type, platform::IUnknown** object) {
  if (type != nullptr) *type = 0;
  if (object == nullptr) return platform::hr::kInvalidArgument;
  *object = nullptr;
  TAMU_DEVICE_CALL("IMAPISession::OpenEntry");
  return OpenMailEntry(store_, size, entry_id, type, object);
}

HRESULT MailSession::CompareEntryIDs(std::uint32_t size1, ENTRYID* id1, std::uint32_t size2,
                                     ENTRYID* id2, std::uint32_t, std::uint32_t* result) {
  if (result == nullptr) return platform::hr::kInvalidArgument;
  *result = 0;
  TAMU_DEVICE_CALL("IMAPISession::CompareEntryIDs");
  EntryId first;
  EntryId second;
  if (const HRESULT parsed = ParseEntryId(size1, id1, &first); platform::Failed(parsed)) {
    return parsed;
  }
  if (const HRESULT parsed = ParseEntryId(size2, id2, &second); platform::Failed(parsed)) {
    return parsed;
  }
  *result = first == second ? 1 : 0;
  return platform::hr::kOk;
}

}  // namespace

HRESULT CreateMailSession(MailStoreOpener opener, platform::IMAPISession** session) noexcept {
  *session = nullptr;
  MailStorePtr store;
  if (const HRESULT opened = opener(&store); platform::Failed(opened)) return opened;
  *session = NewObject<MailSession>(store);
  return *session == nullptr ? platform::hr::kOutOfMemory : platform::hr::kOk;
}

}  // namespace tamu::device
