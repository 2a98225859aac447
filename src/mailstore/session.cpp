#include "mailstore/session.h"

#include "core/log.h"
#include "mailstore/mail_errors.h"
#include "platform/com_ptr.h"

namespace tamu {

using namespace platform;

platform::IMAPISession* gpSession = nullptr;
platform::IMAPIFolder* gpInBoxFolder = nullptr;
platform::IMAPIFolder* gpSentBoxFolder = nullptr;
platform::IMAPIFolder* gpOutBoxFolder = nullptr;

namespace {

constexpr std::int32_t kMostStores = 50;
constexpr std::uint32_t kLogonFlags = kMapiUnicode | kMapiNoMail | kMapiUseDefault | kMapiExtended;
static_assert(kLogonFlags == 0x80008060U);

// The texts in which the inbox and the other folders differ.
struct FolderTexts {
  void (*open_failed)(HRESULT result);
  void (*no_folder)();
};

constexpr FolderTexts kInboxTexts = {
    [](HRESULT result) {
      LOG_Error("MAPI:  lpMDB->OpenEntry for InBox failed with code: 0x%08x", result);
    },
    [] { LOG_Info("MAPI:  ulObjType of OpenEntry on gpInBoxFolder != MAPI_FOLDER"); }};
constexpr FolderTexts kMailboxTexts = {
    [](HRESULT result) {
      LOG_Error("MAPI:  lpMDB->OpenEntry for Mailbox failed with code: 0x%08x", result);
    },
    [] { LOG_Info("MAPI:  ulObjType of OpenEntry on Mailbox != MAPI_FOLDER"); }};

IMAPIFolder* OpenFolder(IMsgStore* store, std::uint32_t size, ENTRYID* entry_id,
                        const FolderTexts& texts) noexcept {
  std::uint32_t type = 0;
  ComPtr<IUnknown> object;
  const HRESULT result =
      store->OpenEntry(size, entry_id, nullptr, kMapiBestAccess, &type, object.put());
  if (Failed(result) || !object) {
    texts.open_failed(result);
    return nullptr;
  }
  if (type != kObjectFolder) {
    texts.no_folder();
    return nullptr;
  }
  // Without an interface id an entry opens as its own interface.
  return static_cast<IMAPIFolder*>(object.release());
}

IMAPIFolder* OpenInbox(IMsgStore* store) noexcept {
  std::uint32_t size = 0;
  ENTRYID* entry_id = nullptr;
  const HRESULT result = store->GetReceiveFolder(nullptr, 0, &size, &entry_id, nullptr);
  if (Failed(result)) {
    LOG_Error("MAPI:  lpMDB->GetReceiveFolder failed with code: 0x%08x", result);
    return nullptr;
  }
  IMAPIFolder* const folder = OpenFolder(store, size, entry_id, kInboxTexts);
  MAPIFreeBuffer(entry_id);
  return folder;
}

// The folder whose entry id is the store's property `tag`.
IMAPIFolder* OpenFolderByProperty(IMsgStore* store, std::uint32_t tag) noexcept {
  SizedPropTagArray<1> tags{1, {tag}};
  std::uint32_t count = 0;
  SPropValue* values = nullptr;
  IMAPIFolder* folder = nullptr;
  const HRESULT result = store->GetProps(tags.get(), 0, &count, &values);
  if (Failed(result)) {
    LOG_Error("MAPI:  lpMDB->GetProps failed with code: 0x%08x", result);
  } else if (count == 0 || values == nullptr || values->ulPropTag != tag) {
    LOG_Error("MAPI:  Message Store has no valid PR_IPM_*_ENTRYID");
  } else {
    const SBinary& id = values->Value.bin;
    folder =
        OpenFolder(store, id.cb, static_cast<ENTRYID*>(static_cast<void*>(id.lpb)), kMailboxTexts);
  }
  if (values != nullptr) MAPIFreeBuffer(values);
  return folder;
}

// Opens the store of the table's first row; null, logged, when there is none.
ComPtr<IMsgStore> OpenFirstStore(const SRowSet& rows) noexcept {
  constexpr std::uint32_t kEntryIdColumn = 3;
  ComPtr<IMsgStore> store;
  SBinary id{0, nullptr};
  if (rows.aRow[0].cValues > kEntryIdColumn &&
      rows.aRow[0].lpProps[kEntryIdColumn].ulPropTag == PR_ENTRYID) {
    id = rows.aRow[0].lpProps[kEntryIdColumn].Value.bin;
  }
  const HRESULT result =
      gpSession->OpenMsgStore(0, id.cb, static_cast<ENTRYID*>(static_cast<void*>(id.lpb)), nullptr,
                              kStoreNoDialog | kStoreWrite, store.put());
  if (Failed(result)) MAPI_LogError(u"gpSession->OpenMsgStore", result);
  return store;
}

// Opens the folders of the first store of the table.
void OpenFolders(IMAPITable* table) noexcept {
  SizedPropTagArray<4> columns{
      4, {PR_DEFAULT_STORE, PR_DISPLAY_NAME, PR_PROVIDER_DISPLAY, PR_ENTRYID}};
  HRESULT result = table->SetColumns(columns.get(), 0);
  if (Failed(result)) MAPI_LogObjectError(table, u"lptblStores->SetColumns", result);
  SRowSet* rows = nullptr;
  result = table->QueryRows(kMostStores, 0, &rows);
  if (Failed(result)) {
    MAPI_LogObjectError(table, u"lptblStores->QueryRows", result);
  } else if (rows == nullptr || rows->cRows == 0) {
    LOG_Info("MAPI:  No rows in MsgStoreTable");
  } else if (const ComPtr<IMsgStore> store = OpenFirstStore(*rows)) {
    gpInBoxFolder = OpenInbox(store.get());
    gpSentBoxFolder = OpenFolderByProperty(store.get(), PR_IPM_SENTMAIL_ENTRYID);
    gpOutBoxFolder = OpenFolderByProperty(store.get(), PR_IPM_OUTBOX_ENTRYID);
  }
  if (rows != nullptr) FreeProws(rows);
}

// Logs on, and opens what can be opened.
TamuResult OpenSession() noexcept {
  HRESULT result = MAPIInitialize(nullptr);
  if (result != hr::kOk) {
    LOG_Error("MAPI:  MAPIInitialize failed with code: %d", result);
    return TAMU_GENERAL_PIM_ERROR;
  }
  result = MAPILogonEx(0, nullptr, nullptr, kLogonFlags, &gpSession);
  if (result != hr::kOk) {
    LOG_Error("MAPI:  MAPILogonEx failed with code: %d", result);
    return TAMU_GENERAL_PIM_ERROR;
  }
  ComPtr<IMAPITable> table;
  result = gpSession->GetMsgStoresTable(0, table.put());
  if (Failed(result)) {
    LOG_Error("MAPI:  gpSession->GetMsgStoresTable failed with code: %d", result);
    return TAMU_GENERAL_PIM_ERROR;
  }
  OpenFolders(table.get());
  return TAMU_OK;
}

template <typename Interface>
void ReleaseHandle(Interface*& handle) noexcept {
  if (handle == nullptr) return;
  handle->Release();
  handle = nullptr;
}

}  // namespace

TamuResult MAPI_Init() noexcept {
  LOG_Info("MAPI:  MAPI_Init() called");
  const TamuResult result = OpenSession();
  LOG_Info("MAPI:  MAPI_Init() finished");
  return result;
}

TamuResult MAPI_DeInit() noexcept {
  LOG_Info("MAPI:  MAPI_DeInit() called");
  TamuResult code = TAMU_OK;
  if (gpSession != nullptr) {
    const HRESULT result = gpSession->Logoff(0, 0, 0);
    if (Failed(result)) {
      LOG_Error("MAPI:  gpSession->Logoff failed with code: %d", result);
      code = TAMU_GENERAL_PIM_ERROR;
    }
  }
  ReleaseHandle(gpInBoxFolder);
  ReleaseHandle(gpSentBoxFolder);
  ReleaseHandle(gpOutBoxFolder);
  ReleaseHandle(gpSession);
  MAPIUninitialize();
  return code;
}

}  // namespace tamu
