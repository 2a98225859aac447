#include "device/mail/mail_session.h"

#include "device/mail/mail_fixture.h"

namespace tamu::testing {
namespace {

namespace hr = platform::hr;

class MailSession : public MailContract {};

// --- The table of stores ----------------------------------------------------

TEST_P(MailSession, StoresTableHasOneDefaultStore) {
  ComPtr<IMAPITable> stores;
  ASSERT_EQ(session_->GetMsgStoresTable(0, stores.put()), hr::kOk);
  Tags columns{platform::PR_DEFAULT_STORE, platform::PR_DISPLAY_NAME, platform::PR_PROVIDER_DISPLAY,
               platform::PR_ENTRYID};
  ASSERT_EQ(stores->SetColumns(columns.get(), 0), hr::kOk);

  Rows rows;
  Query(stores.get(), 50, &rows);
  EXPECT_EQ(rows.result, hr::kOk);
  ASSERT_EQ(rows.size(), 1U);
  ASSERT_EQ(rows.set->aRow[0].cValues, 4U);
  EXPECT_EQ(rows.cell(0, 0).ulPropTag, platform::PR_DEFAULT_STORE);
  EXPECT_EQ(rows.cell(0, 0).Value.b, 1);
  EXPECT_EQ(rows.cell(0, 1).ulPropTag, platform::PR_DISPLAY_NAME);
  EXPECT_NE(std::u16string(rows.cell(0, 1).Value.lpszW), u"");
  EXPECT_EQ(rows.cell(0, 2).ulPropTag, platform::PR_PROVIDER_DISPLAY);
  EXPECT_NE(std::u16string(rows.cell(0, 2).Value.lpszW), u"");
  EXPECT_EQ(rows.cell(0, 3).ulPropTag, platform::PR_ENTRYID);
  EXPECT_EQ(BinaryOf(rows.cell(0, 3)), store_id_);

  Rows end;
  Query(stores.get(), 50, &end);
  EXPECT_EQ(end.result, hr::kOk);
  ASSERT_NE(end.set, nullptr);
  EXPECT_EQ(end.size(), 0U);
}

TEST_P(MailSession, StoresTableStartsWithTheEntryIdWithoutColumnsSet) {
  ComPtr<IMAPITable> stores;
  ASSERT_EQ(session_->GetMsgStoresTable(0, stores.put()), hr::kOk);
  Rows rows;
  Query(stores.get(), 1, &rows);
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_EQ(rows.cell(0, 0).ulPropTag, platform::PR_ENTRYID);
}

// --- Opening ----------------------------------------------------------------

TEST_P(MailSession, OpensItsStoreWithAnyFlagsAndInterface) {
  ComPtr<IMsgStore> store;
  EXPECT_EQ(
      session_->OpenMsgStore(7, 16, IdPointer(store_id_), &platform::IID_IMessage, 5, store.put()),
      hr::kOk);
  EXPECT_TRUE(store);
}

TEST_P(MailSession, OpenMsgStoreOfAnotherObjectFindsNothing) {
  ComPtr<IMsgStore> store;
  EXPECT_EQ(session_->OpenMsgStore(0, 16, IdPointer(inbox_id_), nullptr, 0, store.put()),
            hr::kNotFound);
  EXPECT_FALSE(store);
}

TEST_P(MailSession, OpenMsgStoreWithoutAnIdIsInvalid) {
  ComPtr<IMsgStore> store;
  EXPECT_EQ(session_->OpenMsgStore(0, 16, nullptr, nullptr, 0, store.put()), hr::kInvalidArgument);
  EXPECT_EQ(session_->OpenMsgStore(0, 16, IdPointer(store_id_), nullptr, 0, nullptr),
            hr::kInvalidArgument);
}

TEST_P(MailSession, OpenMsgStoreOfForeignBytesDoesNotKnowThem) {
  std::string foreign(16, 'x');
  ComPtr<IMsgStore> store;
  EXPECT_EQ(session_->OpenMsgStore(0, 16, IdPointer(foreign), nullptr, 0, store.put()),
            hr::kUnknownEntryId);
  EXPECT_EQ(session_->OpenMsgStore(0, 15, IdPointer(store_id_), nullptr, 0, store.put()),
            hr::kUnknownEntryId);
}

// Any id opens through session, store and folder alike.
TEST_P(MailSession, EveryIdOpensThroughEveryObject) {
  const ComPtr<IMessage> message = Create(sent_);
  const std::string message_id = EntryIdOf(message.get());
  const struct {
    std::string id;
    std::uint32_t kind;
  } cases[] = {{store_id_, platform::kObjectStore},
               {inbox_id_, platform::kObjectFolder},
               {outbox_id_, platform::kObjectFolder},
               {sent_id_, platform::kObjectFolder},
               {message_id, platform::kObjectMessage}};
  for (const auto& each : cases) {
    std::string id = each.id;
    std::uint32_t types[3] = {};
    ComPtr<platform::IUnknown> opened[3];
    EXPECT_EQ(session_->OpenEntry(16, IdPointer(id), nullptr, 0, &types[0], opened[0].put()), 0);
    EXPECT_EQ(store_->OpenEntry(16, IdPointer(id), nullptr, 17, &types[1], opened[1].put()), 0);
    EXPECT_EQ(inbox_->OpenEntry(16, IdPointer(id), nullptr, 16, &types[2], opened[2].put()), 0);
    for (int i = 0; i < 3; ++i) {
      ASSERT_TRUE(opened[i]);
      EXPECT_EQ(types[i], each.kind);
      ComPtr<platform::IMAPIProp> object;
      ASSERT_EQ(opened[i]->QueryInterface(platform::IID_IMAPIProp, object.put_void()), hr::kOk);
      EXPECT_EQ(EntryIdOf(object.get()), each.id);
    }
  }
}

TEST_P(MailSession, OpenEntryTakesNoTypePointer) {
  ComPtr<platform::IUnknown> object;
  EXPECT_EQ(session_->OpenEntry(16, IdPointer(inbox_id_), nullptr, 0, nullptr, object.put()), 0);
  EXPECT_TRUE(object);
}

TEST_P(MailSession, OpenEntryOfWhatIsNotThereFindsNothing) {
  std::string gone;
  {
    const ComPtr<IMessage> message = Create(inbox_);
    gone = EntryIdOf(message.get());
  }
  platform::SBinary one{16, static_cast<std::uint8_t*>(static_cast<void*>(gone.data()))};
  platform::ENTRYLIST list{1, &one};
  ASSERT_EQ(inbox_->DeleteMessages(&list, 0, nullptr, 0), hr::kOk);

  std::string no_folder = inbox_id_;
  no_folder.back() = 9;
  std::string no_store = store_id_;
  no_store.back() = 9;
  for (std::string id : {gone, no_folder, no_store}) {
    ComPtr<platform::IUnknown> object;
    std::uint32_t type = 77;
    EXPECT_EQ(session_->OpenEntry(16, IdPointer(id), nullptr, 0, &type, object.put()),
              hr::kNotFound);
    EXPECT_FALSE(object);
    EXPECT_EQ(type, 0U);
  }
}

TEST_P(MailSession, OpenEntryOfBytesOfAnotherFormDoesNotKnowThem) {
  std::string empty;
  std::string longer = inbox_id_ + '\0';
  std::string flagged = inbox_id_;
  flagged[0] = 1;
  std::string provider = inbox_id_;
  provider[4] = static_cast<char>(~provider[4]);
  std::string kind = inbox_id_;
  kind[8] = 99;
  for (std::string id : {empty, longer, inbox_id_.substr(0, 15), flagged, provider, kind}) {
    ComPtr<platform::IUnknown> object;
    EXPECT_EQ(inbox_->OpenEntry(static_cast<std::uint32_t>(id.size()), IdPointer(id), nullptr, 0,
                                nullptr, object.put()),
              hr::kUnknownEntryId);
    EXPECT_FALSE(object);
  }
}

TEST_P(MailSession, OpenEntryWithoutPointersIsInvalid) {
  ComPtr<platform::IUnknown> object;
  for (const auto result :
       {session_->OpenEntry(16, nullptr, nullptr, 0, nullptr, object.put()),
        session_->OpenEntry(16, IdPointer(inbox_id_), nullptr, 0, nullptr, nullptr),
        store_->OpenEntry(16, nullptr, nullptr, 0, nullptr, object.put()),
        store_->OpenEntry(16, IdPointer(inbox_id_), nullptr, 0, nullptr, nullptr),
        inbox_->OpenEntry(16, nullptr, nullptr, 0, nullptr, object.put()),
        inbox_->OpenEntry(16, IdPointer(inbox_id_), nullptr, 0, nullptr, nullptr)}) {
    EXPECT_EQ(result, hr::kInvalidArgument);
  }
}

// --- Comparing, errors, the end ---------------------------------------------

TEST_P(MailSession, CompareEntryIdsTellsEqualFromDifferent) {
  std::string copy = inbox_id_;
  std::uint32_t same = 77;
  EXPECT_EQ(session_->CompareEntryIDs(16, IdPointer(inbox_id_), 16, IdPointer(copy), 0, &same), 0);
  EXPECT_EQ(same, 1U);
  EXPECT_EQ(session_->CompareEntryIDs(16, IdPointer(inbox_id_), 16, IdPointer(sent_id_), 0, &same),
            hr::kOk);
  EXPECT_EQ(same, 0U);
}

TEST_P(MailSession, CompareEntryIdsRefusesWhatIsNone) {
  std::string foreign(16, 'x');
  std::uint32_t same = 77;
  EXPECT_EQ(session_->CompareEntryIDs(16, IdPointer(foreign), 16, IdPointer(sent_id_), 0, &same),
            hr::kUnknownEntryId);
  EXPECT_EQ(session_->CompareEntryIDs(16, IdPointer(sent_id_), 3, IdPointer(sent_id_), 0, &same),
            hr::kUnknownEntryId);
  EXPECT_EQ(session_->CompareEntryIDs(16, nullptr, 16, IdPointer(sent_id_), 0, &same),
            hr::kInvalidArgument);
  EXPECT_EQ(same, 0U);
  EXPECT_EQ(session_->CompareEntryIDs(16, IdPointer(sent_id_), 16, IdPointer(sent_id_), 0, nullptr),
            hr::kInvalidArgument);
}

TEST_P(MailSession, LastErrorsAreNone) {
  const ComPtr<IMAPITable> table = Contents(inbox_);
  const ComPtr<IMessage> message = Create(inbox_);
  platform::MAPIERROR mark{};
  const auto expect_none = [&](auto* object) {
    platform::MAPIERROR* error = &mark;
    EXPECT_EQ(object->GetLastError(hr::kFail, platform::kMapiUnicode, &error), hr::kOk);
    EXPECT_EQ(error, nullptr);
    EXPECT_EQ(object->GetLastError(hr::kFail, 0, nullptr), hr::kInvalidArgument);
  };
  expect_none(session_.get());
  expect_none(table.get());
  expect_none(store_.get());
  expect_none(inbox_.get());
  expect_none(message.get());
}

TEST_P(MailSession, LogoffSucceedsAndFoldersOutliveIt) {
  EXPECT_EQ(session_->Logoff(0, 0, 0), hr::kOk);
  session_.reset();
  store_.reset();
  const ComPtr<IMessage> message = Create(inbox_);
  EXPECT_TRUE(message);
}

TEST_P(MailSession, InterfacesAreAnsweredHonestly) {
  const ComPtr<IMAPITable> table = Contents(inbox_);
  const ComPtr<IMessage> message = Create(inbox_);
  const auto has = [](platform::IUnknown* object, const platform::GUID& iid) {
    ComPtr<platform::IUnknown> other;
    const HRESULT result = object->QueryInterface(iid, other.put_void());
    EXPECT_EQ(static_cast<bool>(other), result == hr::kOk);
    if (result != hr::kOk) {
      EXPECT_EQ(result, hr::kNoInterface);
    }
    return result == hr::kOk;
  };
  EXPECT_TRUE(has(session_.get(), platform::IID_IMAPISession));
  EXPECT_FALSE(has(session_.get(), platform::IID_IMsgStore));
  EXPECT_TRUE(has(store_.get(), platform::IID_IMsgStore));
  EXPECT_FALSE(has(store_.get(), platform::IID_IMAPIFolder));
  EXPECT_TRUE(has(inbox_.get(), platform::IID_IMAPIFolder));
  EXPECT_TRUE(has(inbox_.get(), platform::IID_IMAPIContainer));
  EXPECT_FALSE(has(inbox_.get(), platform::IID_IMessage));
  EXPECT_TRUE(has(message.get(), platform::IID_IMessage));
  EXPECT_TRUE(has(message.get(), platform::IID_IMAPIProp));
  EXPECT_FALSE(has(message.get(), platform::IID_IMAPIFolder));
  EXPECT_FALSE(has(message.get(), platform::IID_IExactMailFind));
  EXPECT_TRUE(has(table.get(), platform::IID_IMAPITable));
  EXPECT_FALSE(has(table.get(), platform::IID_IMAPIProp));
}

INSTANTIATE_TEST_SUITE_P(Devices, MailSession, ::testing::ValuesIn(MailDeviceKinds()), &NameOfKind);

}  // namespace
}  // namespace tamu::testing
