// Opening and closing the messaging store.
#include "mailstore/mail_adapter_fixture.h"
#include "mailstore/mail_errors.h"

namespace tamu {
namespace {

using namespace platform;
using namespace tamu::testing;

class MailSession : public MailAdapter {};
INSTANTIATE_TEST_SUITE_P(Devices, MailSession, ::testing::ValuesIn(MailDeviceKinds()),
                         NameOfMailKind);

constexpr HRESULT kStrange = static_cast<HRESULT>(0x80041234U);

TEST_P(MailSession, InitOpensTheThreeFolders) {
  const LogCapture log;
  EXPECT_EQ(MAPI_Init(), TAMU_OK);
  EXPECT_NE(gpSession, nullptr);
  EXPECT_NE(gpInBoxFolder, nullptr);
  EXPECT_NE(gpSentBoxFolder, nullptr);
  EXPECT_NE(gpOutBoxFolder, nullptr);
  ASSERT_EQ(log.lines().size(), 2U);
  EXPECT_EQ(log.lines()[0].text, "MAPI:  MAPI_Init() called");
  EXPECT_EQ(log.lines()[1].text, "MAPI:  MAPI_Init() finished");
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kInformation);
  EXPECT_EQ(log.lines()[1].severity, LogSeverity::kInformation);
}

TEST_P(MailSession, DeInitClearsEveryHandle) {
  ASSERT_EQ(MAPI_Init(), TAMU_OK);
  const LogCapture log;
  EXPECT_EQ(MAPI_DeInit(), TAMU_OK);
  EXPECT_EQ(gpSession, nullptr);
  EXPECT_EQ(gpInBoxFolder, nullptr);
  EXPECT_EQ(gpSentBoxFolder, nullptr);
  EXPECT_EQ(gpOutBoxFolder, nullptr);
  EXPECT_EQ(log.texts(), (std::vector<std::string>{"MAPI:  MAPI_DeInit() called"}));
}

TEST_P(MailSession, DeInitWithoutInitReturnsZero) {
  const std::uint64_t before = MAPIUninitialize.calls();
  EXPECT_EQ(MAPI_DeInit(), TAMU_OK);
  EXPECT_EQ(MAPIUninitialize.calls(), before + 1);
}

TEST_P(MailSession, InitializeThatFailsGives14AndItsCodeInDecimal) {
  const ScopedFailure failure(MAPIInitialize);
  const LogCapture log;
  EXPECT_EQ(MAPI_Init(), TAMU_GENERAL_PIM_ERROR);
  EXPECT_EQ(log.texts(),
            (std::vector<std::string>{"MAPI:  MAPI_Init() called",
                                      "MAPI:  MAPIInitialize failed with code: -2147467259",
                                      "MAPI:  MAPI_Init() finished"}));
  EXPECT_EQ(log.lines()[1].severity, LogSeverity::kError);
}

TEST_P(MailSession, LogonThatFailsGives14AndItsCodeInDecimal) {
  const ScopedFailure failure(MAPILogonEx);
  const LogCapture log;
  EXPECT_EQ(MAPI_Init(), TAMU_GENERAL_PIM_ERROR);
  EXPECT_TRUE(log.Has("MAPI:  MAPILogonEx failed with code: -2147467259"));
  EXPECT_EQ(gpSession, nullptr);
}

TEST_P(MailSession, StoresTableThatFailsGives14AndItsCodeInDecimal) {
  CallHookScope calls;
  calls.Answer("IMAPISession::GetMsgStoresTable", kStrange);
  const LogCapture log;
  EXPECT_EQ(MAPI_Init(), TAMU_GENERAL_PIM_ERROR);
  EXPECT_TRUE(
      log.Has("MAPI:  gpSession->GetMsgStoresTable failed with code: " + std::to_string(kStrange)));
}

TEST_P(MailSession, ColumnsThatFailAreReportedAndTheStepsGoOn) {
  CallHookScope calls;
  calls.Answer("IMAPITable::SetColumns", kStrange);
  const LogCapture log;
  EXPECT_EQ(MAPI_Init(), TAMU_OK);
  EXPECT_TRUE(log.Has("MAPI:  lptblStores->SetColumns failed with code: 0x80041234"));
}

TEST_P(MailSession, RowsThatFailAreReportedAndLeaveTheFoldersNull) {
  CallHookScope calls;
  calls.Answer("IMAPITable::QueryRows", kStrange);
  const LogCapture log;
  EXPECT_EQ(MAPI_Init(), TAMU_OK);
  EXPECT_TRUE(log.Has("MAPI:  lptblStores->QueryRows failed with code: 0x80041234"));
  EXPECT_EQ(gpInBoxFolder, nullptr);
}

TEST_P(MailSession, StoreThatFailsIsReportedThroughTheSession) {
  CallHookScope calls;
  calls.Answer("IMAPISession::OpenMsgStore", kStrange);
  const LogCapture log;
  EXPECT_EQ(MAPI_Init(), TAMU_OK);
  EXPECT_TRUE(log.Has("MAPI:  gpSession->OpenMsgStore failed with code: 0x80041234"));
  EXPECT_EQ(gpInBoxFolder, nullptr);
}

TEST_P(MailSession, ReceiveFolderThatFailsLeavesTheInboxNull) {
  CallHookScope calls;
  calls.Answer("IMsgStore::GetReceiveFolder", kStrange);
  const LogCapture log;
  EXPECT_EQ(MAPI_Init(), TAMU_OK);
  EXPECT_TRUE(log.Has("MAPI:  lpMDB->GetReceiveFolder failed with code: 0x80041234"));
  EXPECT_EQ(gpInBoxFolder, nullptr);
  EXPECT_NE(gpSentBoxFolder, nullptr);
}

TEST_P(MailSession, FoldersThatCannotBeOpenedAreLoggedWithTheirOwnTexts) {
  CallHookScope calls;
  calls.Answer("IMsgStore::OpenEntry", kStrange);
  const LogCapture log;
  EXPECT_EQ(MAPI_Init(), TAMU_OK);
  EXPECT_EQ(log.texts(), (std::vector<std::string>{
                             "MAPI:  MAPI_Init() called",
                             "MAPI:  lpMDB->OpenEntry for InBox failed with code: 0x80041234",
                             "MAPI:  lpMDB->OpenEntry for Mailbox failed with code: 0x80041234",
                             "MAPI:  lpMDB->OpenEntry for Mailbox failed with code: 0x80041234",
                             "MAPI:  MAPI_Init() finished"}));
}

TEST_P(MailSession, StorePropertiesThatFailAreLogged) {
  CallHookScope calls;
  calls.Answer("IMsgStore::GetProps", kStrange);
  const LogCapture log;
  EXPECT_EQ(MAPI_Init(), TAMU_OK);
  EXPECT_TRUE(log.Has("MAPI:  lpMDB->GetProps failed with code: 0x80041234"));
  EXPECT_NE(gpInBoxFolder, nullptr);
  EXPECT_EQ(gpOutBoxFolder, nullptr);
}

TEST_P(MailSession, LogoffThatFailsGives14AndReleasesAllTheSame) {
  ASSERT_EQ(MAPI_Init(), TAMU_OK);
  CallHookScope calls;
  calls.Answer("IMAPISession::Logoff", kStrange);
  const LogCapture log;
  EXPECT_EQ(MAPI_DeInit(), TAMU_GENERAL_PIM_ERROR);
  EXPECT_TRUE(log.Has("MAPI:  gpSession->Logoff failed with code: " + std::to_string(kStrange)));
  EXPECT_EQ(gpSession, nullptr);
}

TEST_P(MailSession, EveryCallFailingReleasesEverything) {
  for (std::uint64_t n = 1;; ++n) {
    const LiveCounts before;
    CallHookScope calls;
    calls.AnswerNth(n, kStrange);
    static_cast<void>(MAPI_Init());
    static_cast<void>(MAPI_DeInit());
    EXPECT_EQ(LiveCounts(), before) << n << " " << calls.struck();
    if (calls.struck().empty()) break;
    ASSERT_LT(n, 1000U);
  }
}

// Over the device in memory, which can be told to lack things.

TEST(MailSessionOfADevice, MissingSentItemsIdIsLoggedAndInitStillReturnsZero) {
  ScopedMailDevice device;
  device.store().Lack(tamu::device::MailFolder::kSentItems);
  const LogCapture log;
  EXPECT_EQ(MAPI_Init(), TAMU_OK);
  EXPECT_TRUE(log.Has("MAPI:  Message Store has no valid PR_IPM_*_ENTRYID"));
  EXPECT_EQ(gpSentBoxFolder, nullptr);
  EXPECT_NE(gpOutBoxFolder, nullptr);
  EXPECT_EQ(MAPI_DeInit(), TAMU_OK);
}

TEST(MailSessionOfADevice, NoRowsInTheStoresTableGiveZeroWithAllFoldersNull) {
  ScopedMailDevice device;
  device.device().RemoveStore();
  const LogCapture log;
  EXPECT_EQ(MAPI_Init(), TAMU_OK);
  EXPECT_TRUE(log.Has("MAPI:  No rows in MsgStoreTable"));
  EXPECT_EQ(gpInBoxFolder, nullptr);
  EXPECT_EQ(gpSentBoxFolder, nullptr);
  EXPECT_EQ(gpOutBoxFolder, nullptr);
  EXPECT_EQ(MAPI_DeInit(), TAMU_OK);
}

TEST(MailSessionOfADevice, SecondInitOverwritesItsHandles) {
  ScopedMailDevice device;
  const std::int64_t before = tamu::device::LiveObjects();
  ASSERT_EQ(MAPI_Init(), TAMU_OK);
  const std::int64_t once = tamu::device::LiveObjects() - before;
  IUnknown* const lost[] = {gpSession, gpInBoxFolder, gpSentBoxFolder, gpOutBoxFolder};
  ASSERT_EQ(MAPI_Init(), TAMU_OK);
  EXPECT_EQ(tamu::device::LiveObjects() - before, 2 * once);
  EXPECT_EQ(MAPI_DeInit(), TAMU_OK);
  EXPECT_EQ(tamu::device::LiveObjects() - before, once);
  for (IUnknown* const object : lost) object->Release();
  MAPIUninitialize();
  EXPECT_EQ(tamu::device::LiveObjects(), before);
}

TEST(MAPI_LogError, WithoutASessionSaysSo) {
  const LogCapture log;
  MAPI_LogError(u"gpSession->OpenMsgStore", kStrange);
  EXPECT_EQ(log.texts(), (std::vector<std::string>{
                             "MAPI:  gpSession->OpenMsgStore failed with code: 0x80041234",
                             "MAPI:  Can't call GetLastError failed - gpSession is NULL"}));
  EXPECT_EQ(log.lines()[1].severity, LogSeverity::kError);
}

}  // namespace
}  // namespace tamu
