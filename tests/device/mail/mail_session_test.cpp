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

INSTANTIATE_TEST_SUITE_P(Devices, MailSession, ::testing::ValuesIn(MailDeviceKinds()), &NameOfKind);

}  // namespace
}  // namespace tamu::testing
