// mailstore/scripted_mail.h - a messaging store that answers what a test says and notes what it is
// asked, for what the embedded device never does: several stores, extended errors, entries that are
// something else than a folder. Folders are those of a device in memory.
#ifndef TAMU_TESTS_MAILSTORE_SCRIPTED_MAIL_H_
#define TAMU_TESTS_MAILSTORE_SCRIPTED_MAIL_H_

#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "device/com_object.h"
#include "device/mail/mail_objects.h"
#include "platform/cemapi.h"
#include "platform/linux/mapi_buffer.h"
#include "support/memory_mail_store.h"

namespace tamu::testing {

#define TAMU_REFUSED(name, ...) \
  platform::HRESULT TAMU_COM_CALL name(__VA_ARGS__) override { return platform::hr::kNoSupport; }

// What GetLastError answers, for session and table alike.
struct ScriptedError {
  platform::HRESULT result = platform::hr::kOk;
  bool has_block = false;
  const char16_t* text = nullptr;
  const char16_t* component = nullptr;

  // What it was asked for last.
  platform::HRESULT asked_result = 0;
  std::uint32_t asked_flags = 0;

  platform::HRESULT Answer(platform::HRESULT failed, std::uint32_t flags,
                           platform::MAPIERROR** error) {
    asked_result = failed;
    asked_flags = flags;
    *error = nullptr;
    if (has_block) {
      *error = static_cast<platform::MAPIERROR*>(
          platform::AllocateMapiBuffer(sizeof(platform::MAPIERROR)));
      (*error)->ulVersion = 0xFFFFFFFF;
      (*error)->lpszError = const_cast<char16_t*>(text);
      (*error)->lpszComponent = const_cast<char16_t*>(component);
      (*error)->ulLowLevelError = 3000000000;
      (*error)->ulContext = 7;
    }
    return result;
  }
};

// A message store's row: whether it is the default one, and its entry id.
struct ScriptedRow {
  bool is_default;
  std::uint8_t id;
};

// What a test says and what was noted. Calls that succeed release nothing of it.
struct ScriptedMail {
  std::vector<ScriptedRow> rows;
  platform::HRESULT set_columns = platform::hr::kOk;
  platform::HRESULT open_store = platform::hr::kOk;
  std::uint32_t entry_type = platform::kObjectFolder;
  bool lacks_folders = false;  // properties are cells of another type
  ScriptedError session_error;
  ScriptedError table_error;

  std::vector<std::string> calls;  // with their arguments
  std::shared_ptr<MemoryMailStore> store = std::make_shared<MemoryMailStore>();

  void Note(std::string call) { calls.push_back(std::move(call)); }
};

inline std::string HexOf(std::uint32_t number) {
  std::array<char, 16> text{};
  std::snprintf(text.data(), text.size(), "0x%x", number);
  return text.data();
}

class ScriptedTable final : public device::ComObject<ScriptedTable, platform::IMAPITable> {
 public:
  explicit ScriptedTable(ScriptedMail* mail) : mail_(mail) {}
  ~ScriptedTable() { mail_->Note("release table"); }
  [[nodiscard]] bool Implements(const platform::GUID& iid) const noexcept {
    return iid == platform::IID_IMAPITable;
  }
  platform::HRESULT TAMU_COM_CALL GetLastError(platform::HRESULT result, std::uint32_t flags,
                                               platform::MAPIERROR** error) override {
    return mail_->table_error.Answer(result, flags, error);
  }
  platform::HRESULT TAMU_COM_CALL SetColumns(platform::SPropTagArray* tags,
                                             std::uint32_t flags) override {
    std::string call = "SetColumns " + std::to_string(flags);
    for (std::uint32_t i = 0; i < tags->cValues; ++i) call += ' ' + HexOf(tags->aulPropTag[i]);
    mail_->Note(call);
    return mail_->set_columns;
  }
  platform::HRESULT TAMU_COM_CALL QueryRows(std::int32_t count, std::uint32_t flags,
                                            platform::SRowSet** out) override {
    mail_->Note("QueryRows " + std::to_string(count) + ' ' + std::to_string(flags));
    const std::size_t rows = mail_->rows.size();
    auto* const set = static_cast<platform::SRowSet*>(platform::AllocateMapiBuffer(
        sizeof(platform::SRowSet) + (rows + 1) * sizeof(platform::SRow)));
    for (const ScriptedRow& row : mail_->rows) FillRow(row, set, &set->aRow[set->cRows]);
    *out = set;
    return platform::hr::kOk;
  }
  TAMU_REFUSED(Advise, std::uint32_t, void*, std::uint32_t*)
  TAMU_REFUSED(Unadvise, std::uint32_t)
  TAMU_REFUSED(GetStatus, std::uint32_t*, std::uint32_t*)
  TAMU_REFUSED(QueryColumns, std::uint32_t, platform::SPropTagArray**)
  TAMU_REFUSED(GetRowCount, std::uint32_t, std::uint32_t*)
  TAMU_REFUSED(SeekRow, std::uint32_t, std::int32_t, std::int32_t*)
  TAMU_REFUSED(SeekRowApprox, std::uint32_t, std::uint32_t)
  TAMU_REFUSED(QueryPosition, std::uint32_t*, std::uint32_t*, std::uint32_t*)
  TAMU_REFUSED(FindRow, platform::SRestriction*, std::uint32_t, std::uint32_t)
  TAMU_REFUSED(Restrict, platform::SRestriction*, std::uint32_t)
  TAMU_REFUSED(CreateBookmark, std::uint32_t*)
  TAMU_REFUSED(FreeBookmark, std::uint32_t)
  TAMU_REFUSED(SortTable, platform::SSortOrderSet*, std::uint32_t)
  TAMU_REFUSED(QuerySortOrder, platform::SSortOrderSet**)
  TAMU_REFUSED(Abort)
  TAMU_REFUSED(ExpandRow, std::uint32_t, std::uint8_t*, std::uint32_t, std::uint32_t,
               platform::SRowSet**, std::uint32_t*)
  TAMU_REFUSED(CollapseRow, std::uint32_t, std::uint8_t*, std::uint32_t, std::uint32_t*)
  TAMU_REFUSED(WaitForCompletion, std::uint32_t, std::uint32_t, std::uint32_t*)
  TAMU_REFUSED(GetCollapseState, std::uint32_t, std::uint32_t, std::uint8_t*, std::uint32_t*,
               std::uint8_t**)
  TAMU_REFUSED(SetCollapseState, std::uint32_t, std::uint32_t, std::uint8_t*, std::uint32_t*)

 private:
  // In the order of the columns; every row is a block of its own.
  static void FillRow(const ScriptedRow& row, platform::SRowSet* set, platform::SRow* out) {
    auto* const cells = static_cast<platform::SPropValue*>(
        platform::AllocateMapiBuffer(4 * sizeof(platform::SPropValue) + 8));
    cells[0].ulPropTag = platform::PR_DEFAULT_STORE;
    cells[0].Value.b = row.is_default ? 1 : 0;
    cells[1].ulPropTag = platform::PR_DISPLAY_NAME;
    cells[2].ulPropTag = platform::PR_PROVIDER_DISPLAY;
    cells[3].ulPropTag = platform::PR_ENTRYID;
    auto* const id = static_cast<std::uint8_t*>(static_cast<void*>(&cells[4]));
    *id = row.id;
    cells[3].Value.bin = {1, id};
    out->cValues = 4;
    out->lpProps = cells;
    ++set->cRows;
  }

  ScriptedMail* mail_;
};

class ScriptedStore final : public device::ComObject<ScriptedStore, platform::IMsgStore> {
 public:
  explicit ScriptedStore(ScriptedMail* mail) : mail_(mail) {}
  ~ScriptedStore() { mail_->Note("release store"); }
  [[nodiscard]] bool Implements(const platform::GUID& iid) const noexcept {
    return iid == platform::IID_IMsgStore;
  }
  platform::HRESULT TAMU_COM_CALL GetReceiveFolder(char16_t* message_class, std::uint32_t flags,
                                                   std::uint32_t* size, platform::ENTRYID** id,
                                                   char16_t** explicit_class) override {
    mail_->Note("GetReceiveFolder " + std::to_string(flags) +
                (message_class == nullptr && explicit_class == nullptr ? " null null" : ""));
    auto* const bytes = static_cast<std::uint8_t*>(platform::AllocateMapiBuffer(8));
    *bytes = 1;
    *size = 1;
    *id = static_cast<platform::ENTRYID*>(static_cast<void*>(bytes));
    return platform::hr::kOk;
  }
  platform::HRESULT TAMU_COM_CALL GetProps(platform::SPropTagArray* tags, std::uint32_t flags,
                                           std::uint32_t* count,
                                           platform::SPropValue** values) override {
    mail_->Note("GetProps " + std::to_string(flags) + ' ' + std::to_string(tags->cValues) + ' ' +
                HexOf(tags->aulPropTag[0]));
    auto* const value = static_cast<platform::SPropValue*>(
        platform::AllocateMapiBuffer(sizeof(platform::SPropValue) + 8));
    auto* const id = static_cast<std::uint8_t*>(static_cast<void*>(&value[1]));
    *id = tags->aulPropTag[0] == platform::PR_IPM_SENTMAIL_ENTRYID ? 2 : 3;
    value->ulPropTag = tags->aulPropTag[0];
    value->Value.bin = {1, id};
    if (mail_->lacks_folders) value->ulPropTag = platform::PropTag(platform::kTypeError, 0x35E4);
    *count = 1;
    *values = value;
    return mail_->lacks_folders ? platform::hr::kErrorsReturned : platform::hr::kOk;
  }
  platform::HRESULT TAMU_COM_CALL OpenEntry(std::uint32_t size, platform::ENTRYID* id,
                                            const platform::GUID* iid, std::uint32_t flags,
                                            std::uint32_t* type,
                                            platform::IUnknown** object) override {
    mail_->Note("OpenEntry " + std::to_string(size) + ' ' + std::to_string(id->abFlags[0]) +
                (iid == nullptr ? " null " : " iid ") + HexOf(flags));
    platform::IMAPIFolder* folder = nullptr;
    const platform::HRESULT result =
        device::CreateFolder(mail_->store, device::MailFolder::kInbox, &folder);
    *object = folder;
    *type = mail_->entry_type;
    return result;
  }
  TAMU_REFUSED(GetLastError, platform::HRESULT, std::uint32_t, platform::MAPIERROR**)
  TAMU_REFUSED(SaveChanges, std::uint32_t)
  TAMU_REFUSED(GetPropList, std::uint32_t, platform::SPropTagArray**)
  TAMU_REFUSED(OpenProperty, std::uint32_t, const platform::GUID*, std::uint32_t, std::uint32_t,
               platform::IUnknown**)
  TAMU_REFUSED(SetProps, std::uint32_t, platform::SPropValue*, platform::SPropProblemArray**)
  TAMU_REFUSED(DeleteProps, platform::SPropTagArray*, platform::SPropProblemArray**)
  TAMU_REFUSED(CopyTo, std::uint32_t, const platform::GUID*, platform::SPropTagArray*,
               std::uintptr_t, void*, const platform::GUID*, void*, std::uint32_t,
               platform::SPropProblemArray**)
  TAMU_REFUSED(CopyProps, platform::SPropTagArray*, std::uintptr_t, void*, const platform::GUID*,
               void*, std::uint32_t, platform::SPropProblemArray**)
  TAMU_REFUSED(GetNamesFromIDs, platform::SPropTagArray**, platform::GUID*, std::uint32_t,
               std::uint32_t*, void***)
  TAMU_REFUSED(GetIDsFromNames, std::uint32_t, void**, std::uint32_t, platform::SPropTagArray**)
  TAMU_REFUSED(Advise, std::uint32_t, platform::ENTRYID*, std::uint32_t, void*, std::uint32_t*)
  TAMU_REFUSED(Unadvise, std::uint32_t)
  TAMU_REFUSED(CompareEntryIDs, std::uint32_t, platform::ENTRYID*, std::uint32_t,
               platform::ENTRYID*, std::uint32_t, std::uint32_t*)
  TAMU_REFUSED(SetReceiveFolder, char16_t*, std::uint32_t, std::uint32_t, platform::ENTRYID*)
  TAMU_REFUSED(GetReceiveFolderTable, std::uint32_t, platform::IMAPITable**)
  TAMU_REFUSED(StoreLogoff, std::uint32_t*)
  TAMU_REFUSED(AbortSubmit, std::uint32_t, platform::ENTRYID*, std::uint32_t)
  TAMU_REFUSED(GetOutgoingQueue, std::uint32_t, platform::IMAPITable**)
  TAMU_REFUSED(SetLockState, void*, std::uint32_t)
  TAMU_REFUSED(FinishedMsg, std::uint32_t, std::uint32_t, platform::ENTRYID*)
  TAMU_REFUSED(NotifyNewMail, void*)

 private:
  ScriptedMail* mail_;
};

class ScriptedSession final : public device::ComObject<ScriptedSession, platform::IMAPISession> {
 public:
  explicit ScriptedSession(ScriptedMail* mail) : mail_(mail) {}
  ~ScriptedSession() { mail_->Note("release session"); }
  [[nodiscard]] bool Implements(const platform::GUID& iid) const noexcept {
    return iid == platform::IID_IMAPISession;
  }
  platform::HRESULT TAMU_COM_CALL GetLastError(platform::HRESULT result, std::uint32_t flags,
                                               platform::MAPIERROR** error) override {
    return mail_->session_error.Answer(result, flags, error);
  }
  platform::HRESULT TAMU_COM_CALL GetMsgStoresTable(std::uint32_t flags,
                                                    platform::IMAPITable** table) override {
    mail_->Note("GetMsgStoresTable " + std::to_string(flags));
    *table = new ScriptedTable(mail_);
    return platform::hr::kOk;
  }
  platform::HRESULT TAMU_COM_CALL OpenMsgStore(std::uintptr_t ui, std::uint32_t size,
                                               platform::ENTRYID* id, const platform::GUID* iid,
                                               std::uint32_t flags,
                                               platform::IMsgStore** store) override {
    mail_->Note("OpenMsgStore " + std::to_string(ui) + ' ' + std::to_string(size) + ' ' +
                std::to_string(id->abFlags[0]) + (iid == nullptr ? " null " : " iid ") +
                std::to_string(flags));
    *store = nullptr;
    if (platform::Succeeded(mail_->open_store)) *store = new ScriptedStore(mail_);
    return mail_->open_store;
  }
  platform::HRESULT TAMU_COM_CALL Logoff(std::uintptr_t ui, std::uint32_t flags,
                                         std::uint32_t reserved) override {
    mail_->Note("Logoff " + std::to_string(ui) + ' ' + std::to_string(flags) + ' ' +
                std::to_string(reserved));
    return platform::hr::kOk;
  }
  TAMU_REFUSED(OpenAddressBook, std::uintptr_t, const platform::GUID*, std::uint32_t, void**)
  TAMU_REFUSED(OpenProfileSection, const platform::GUID*, const platform::GUID*, std::uint32_t,
               void**)
  TAMU_REFUSED(GetStatusTable, std::uint32_t, platform::IMAPITable**)
  TAMU_REFUSED(OpenEntry, std::uint32_t, platform::ENTRYID*, const platform::GUID*, std::uint32_t,
               std::uint32_t*, platform::IUnknown**)
  TAMU_REFUSED(CompareEntryIDs, std::uint32_t, platform::ENTRYID*, std::uint32_t,
               platform::ENTRYID*, std::uint32_t, std::uint32_t*)
  TAMU_REFUSED(Advise, std::uint32_t, platform::ENTRYID*, std::uint32_t, void*, std::uint32_t*)
  TAMU_REFUSED(Unadvise, std::uint32_t)
  TAMU_REFUSED(MessageOptions, std::uintptr_t, std::uint32_t, char16_t*, platform::IMessage*)
  TAMU_REFUSED(QueryDefaultMessageOpt, char16_t*, std::uint32_t, std::uint32_t*,
               platform::SPropValue**)
  TAMU_REFUSED(EnumAdrTypes, std::uint32_t, std::uint32_t*, char16_t***)
  TAMU_REFUSED(QueryIdentity, std::uint32_t*, platform::ENTRYID**)
  TAMU_REFUSED(SetDefaultStore, std::uint32_t, std::uint32_t, platform::ENTRYID*)
  TAMU_REFUSED(AdminServices, std::uint32_t, void**)
  TAMU_REFUSED(ShowForm, std::uintptr_t, platform::IMsgStore*, platform::IMAPIFolder*,
               const platform::GUID*, std::uint32_t, platform::IMessage*, std::uint32_t,
               std::uint32_t, std::uint32_t, std::uint32_t, char*)
  TAMU_REFUSED(PrepareForm, const platform::GUID*, platform::IMessage*, std::uint32_t*)

 private:
  ScriptedMail* mail_;
};

#undef TAMU_REFUSED

// While it lives, logging on gives a scripted session.
class ScopedScriptedMail {
 public:
  ScopedScriptedMail() { Active() = this; }
  ~ScopedScriptedMail() { Active() = nullptr; }
  ScopedScriptedMail(const ScopedScriptedMail&) = delete;
  ScopedScriptedMail& operator=(const ScopedScriptedMail&) = delete;

  ScriptedMail* operator->() { return &mail_; }

 private:
  static ScopedScriptedMail*& Active() {
    static ScopedScriptedMail* active = nullptr;
    return active;
  }
  static platform::HRESULT Logon(std::uintptr_t ui, char16_t* profile, char16_t* password,
                                 std::uint32_t flags, platform::IMAPISession** session) {
    ScriptedMail& mail = Active()->mail_;
    mail.Note("MAPILogonEx " + std::to_string(ui) +
              (profile == nullptr && password == nullptr ? " null null " : " ") + HexOf(flags));
    *session = new ScriptedSession(&mail);
    return platform::hr::kOk;
  }

  ScriptedMail mail_;
  platform::ScopedOverride<platform::HRESULT(std::uintptr_t, char16_t*, char16_t*, std::uint32_t,
                                             platform::IMAPISession**)>
      logon_{platform::MAPILogonEx, &Logon};
};

}  // namespace tamu::testing

#endif  // TAMU_TESTS_MAILSTORE_SCRIPTED_MAIL_H_
