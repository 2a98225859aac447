// device/mail/mail_scenario.h - one run through everything that the messaging store can do, for
// tests that let some of it fail. It allocates nothing itself.
#ifndef TAMU_TESTS_DEVICE_MAIL_MAIL_SCENARIO_H_
#define TAMU_TESTS_DEVICE_MAIL_MAIL_SCENARIO_H_

#include <algorithm>
#include <array>

#include "device/mail/mail_fixture.h"

namespace tamu::testing {

class MailScenario {
 public:
  // The first failure, or kOk.
  [[nodiscard]] static HRESULT Run(MailDevice& device) {
    MailScenario scenario;
    HRESULT result = device.Logon(scenario.session_.put());
    if (platform::Succeeded(result)) result = scenario.FindStore();
    if (platform::Succeeded(result)) result = scenario.OpenFolders();
    if (platform::Succeeded(result)) result = scenario.WriteMessage();
    if (platform::Succeeded(result)) result = scenario.WriteBody();
    if (platform::Succeeded(result)) result = scenario.AddRecipient();
    if (platform::Succeeded(result)) result = scenario.ReadContents();
    if (platform::Succeeded(result)) result = scenario.FindAndDelete();
    if (platform::Succeeded(result)) result = scenario.session_->Logoff(0, 0, 0);
    return result;
  }

 private:
  // An entry id where it stays when its block is freed.
  using Id = std::array<std::uint8_t, 16>;
  static ENTRYID* Pointer(Id& id) { return static_cast<ENTRYID*>(static_cast<void*>(id.data())); }
  static void Keep(const void* bytes, Id* id) {
    std::copy_n(static_cast<const std::uint8_t*>(bytes), id->size(), id->begin());
  }
  static HRESULT ReadId(platform::IMAPIProp* object, std::uint32_t tag, Id* id) {
    platform::SizedPropTagArray<1> tags{1, {tag}};
    Props props;
    props.result = object->GetProps(tags.get(), 0, &props.count, &props.values);
    if (props.result == platform::hr::kOk) Keep(props[0].Value.bin.lpb, id);
    return props.result;
  }

  HRESULT FindStore() {
    ComPtr<IMAPITable> stores;
    HRESULT result = session_->GetMsgStoresTable(0, stores.put());
    if (platform::Failed(result)) return result;
    platform::SizedPropTagArray<2> columns{2, {platform::PR_DEFAULT_STORE, platform::PR_ENTRYID}};
    result = stores->SetColumns(columns.get(), 0);
    if (platform::Failed(result)) return result;
    Rows rows;
    Query(stores.get(), 50, &rows);
    if (platform::Failed(rows.result)) return rows.result;
    Id id;
    Keep(rows.cell(0, 1).Value.bin.lpb, &id);
    result = session_->OpenMsgStore(0, 16, Pointer(id), nullptr, 0, store_.put());
    std::uint32_t same = 0;
    return platform::Failed(result)
               ? result
               : session_->CompareEntryIDs(16, Pointer(id), 16, Pointer(id), 0, &same);
  }

  HRESULT OpenFolders() {
    std::uint32_t size = 0;
    ENTRYID* inbox = nullptr;
    HRESULT result = store_->GetReceiveFolder(nullptr, 0, &size, &inbox, nullptr);
    if (platform::Failed(result)) return result;
    platform::IUnknown* object = nullptr;
    result = store_->OpenEntry(size, inbox, nullptr, 0, nullptr, &object);
    platform::MAPIFreeBuffer(inbox);
    inbox_ = ComPtr<IMAPIFolder>(static_cast<IMAPIFolder*>(object));
    if (platform::Failed(result)) return result;
    Id sent;
    result = ReadId(store_.get(), platform::PR_IPM_SENTMAIL_ENTRYID, &sent);
    if (platform::Failed(result)) return result;
    ComPtr<platform::IUnknown> sent_items;
    result = session_->OpenEntry(16, Pointer(sent), nullptr, 0, nullptr, sent_items.put());
    return platform::Failed(result) ? result : ReadId(inbox_.get(), platform::PR_ENTRYID, &sent);
  }

  HRESULT WriteMessage() {
    HRESULT result = inbox_->CreateMessage(nullptr, 0, message_.put());
    if (platform::Failed(result)) return result;
    char16_t subject[] = u"a subject that is longer than what fits into a text without a block";
    SPropValue values[3] = {TimeValue(platform::PR_MESSAGE_DELIVERY_TIME, 5),
                            LongValue(platform::PR_OBJECT_TYPE, 1),
                            LongValue(platform::PR_MESSAGE_FLAGS, 33)};
    platform::SPropProblemArray* problems = nullptr;
    result = message_->SetProps(3, values, &problems);
    platform::MAPIFreeBuffer(problems);
    if (platform::Failed(result)) return result;
    values[0].ulPropTag = platform::PR_SUBJECT;
    values[0].Value.lpszW = subject;
    result = message_->SetProps(1, values, nullptr);
    if (platform::Failed(result)) return result;
    platform::SizedPropTagArray<1> flags{1, {platform::PR_MESSAGE_FLAGS}};
    result = message_->DeleteProps(flags.get(), nullptr);
    return platform::Failed(result) ? result : ReadId(message_.get(), platform::PR_ENTRYID, &id_);
  }

  HRESULT WriteBody() {
    platform::IUnknown* object = nullptr;
    HRESULT result = message_->OpenProperty(platform::PR_BODY, nullptr, 1, 3, &object);
    const ComPtr<IStream> stream(static_cast<IStream*>(object));
    if (platform::Failed(result)) return result;
    result = stream->Write(u"body", 10, nullptr);
    if (platform::Failed(result)) return result;
    result = stream->SetSize(8);
    if (platform::Failed(result)) return result;
    result = stream->Seek(0, 0, nullptr);
    if (platform::Failed(result)) return result;
    platform::STATSTG stat;
    result = stream->Stat(&stat, 1);
    if (platform::Failed(result)) return result;
    char16_t read[8];
    result = stream->Read(read, sizeof read, nullptr);
    return platform::Failed(result) ? result : stream->Commit(0);
  }

  HRESULT AddRecipient() {
    char16_t address[] = u"somebody.with.a.long.name@example.org";
    SPropValue values[2] = {LongValue(platform::PR_RECIPIENT_TYPE, 1), {}};
    values[1].ulPropTag = platform::PR_EMAIL_ADDRESS;
    values[1].Value.lpszW = address;
    platform::ADRLIST list{1, {{0, 2, values}}};
    HRESULT result = message_->ModifyRecipients(platform::kRecipientsAdd, &list);
    if (platform::Failed(result)) return result;
    ComPtr<IMAPITable> table;
    result = message_->GetRecipientTable(0, table.put());
    if (platform::Failed(result)) return result;
    Rows rows;
    Query(table.get(), 50, &rows);
    return rows.result;
  }

  HRESULT ReadContents() {
    ComPtr<IMAPITable> table;
    HRESULT result = inbox_->GetContentsTable(0, table.put());
    if (platform::Failed(result)) return result;
    result = table->SeekRow(platform::kBookmarkBeginning, 1, nullptr);
    if (platform::Failed(result)) return result;
    std::uint32_t numbers[3];
    result = table->GetRowCount(0, &numbers[0]);
    if (platform::Failed(result)) return result;
    result = table->QueryPosition(&numbers[0], &numbers[1], &numbers[2]);
    if (platform::Failed(result)) return result;
    result = table->SeekRow(platform::kBookmarkBeginning, 0, nullptr);
    if (platform::Failed(result)) return result;
    Rows rows;
    Query(table.get(), 50, &rows);
    return rows.result;
  }

  HRESULT FindAndDelete() {
    ComPtr<platform::IExactMailFind> find;
    HRESULT result = inbox_->QueryInterface(platform::IID_IExactMailFind, find.put_void());
    if (platform::Failed(result)) return result;
    Id id;
    std::uint32_t found = 0;
    result = find->FindMessage(5, 1, u"none", 4, id.data(), &found);
    if (platform::Failed(result)) return result;
    ComPtr<platform::IUnknown> opened;
    result = inbox_->OpenEntry(16, Pointer(id_), nullptr, 17, nullptr, opened.put());
    if (platform::Failed(result)) return result;
    platform::SBinary one{16, id_.data()};
    platform::ENTRYLIST list{1, &one};
    return inbox_->DeleteMessages(&list, 0, nullptr, 0);
  }

  ComPtr<IMAPISession> session_;
  ComPtr<IMsgStore> store_;
  ComPtr<IMAPIFolder> inbox_;
  ComPtr<IMessage> message_;
  Id id_{};
};

}  // namespace tamu::testing

#endif  // TAMU_TESTS_DEVICE_MAIL_MAIL_SCENARIO_H_
