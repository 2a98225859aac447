// The messaging store's session over devices that answer otherwise than the embedded one: what is
// asked for, and what is said about failures that a device explains.
#include <gtest/gtest.h>

#include "mailstore/mail_errors.h"
#include "mailstore/scripted_mail.h"
#include "mailstore/session.h"
#include "platform/com_ptr.h"
#include "support/log_capture.h"

namespace tamu {
namespace {

using namespace platform;
using testing::LogCapture;
using testing::ScopedScriptedMail;
using Strings = std::vector<std::string>;

constexpr HRESULT kStrange = static_cast<HRESULT>(0x80041234U);
constexpr HRESULT kStranger = static_cast<HRESULT>(0x80045678U);

class ScriptedMailSession : public ::testing::Test {
 protected:
  ScriptedMailSession() { mail_->rows = {{false, 17}, {true, 18}}; }
  ~ScriptedMailSession() override {
    EXPECT_EQ(MAPI_DeInit(), TAMU_OK);
    EXPECT_EQ(device::LiveObjects(), objects_);
    EXPECT_EQ(LiveMapiBuffers(), buffers_);
  }
  static void ExpectErrors(const LogCapture& log) {
    for (const LogCapture::Line& line : log.lines()) {
      EXPECT_EQ(line.severity, LogSeverity::kError) << line.text;
    }
  }
  static void Explain(testing::ScriptedError* error) {
    error->has_block = true;
    error->text = u"No room";
    error->component = u"Größe";
  }

  const std::int64_t objects_ = device::LiveObjects();
  const std::int64_t buffers_ = LiveMapiBuffers();
  ScopedScriptedMail mail_;
};

TEST_F(ScriptedMailSession, EveryCallHasItsArgumentsAndReleasesInOrder) {
  ASSERT_EQ(MAPI_Init(), TAMU_OK);
  EXPECT_EQ(mail_->calls,
            (Strings{"MAPILogonEx 0 null null 0x80008060", "GetMsgStoresTable 0",
                     "SetColumns 0 0x3400000b 0x3001001f 0x3006001f 0xfff0102", "QueryRows 50 0",
                     "OpenMsgStore 0 1 17 null 5", "GetReceiveFolder 0 null null",
                     "OpenEntry 1 1 null 0x10", "GetProps 0 1 0x35e40102",
                     "OpenEntry 1 2 null 0x10", "GetProps 0 1 0x35e20102",
                     "OpenEntry 1 3 null 0x10", "release store", "release table"}));
  mail_->calls.clear();
  EXPECT_EQ(MAPI_DeInit(), TAMU_OK);
  EXPECT_EQ(mail_->calls, (Strings{"Logoff 0 0 0", "release session"}));
}

TEST_F(ScriptedMailSession,
       TheFirstOfSeveralStoresIsUsedAlthoughTheSecondIsTheDefaultKeptOnPurpose) {
  ASSERT_EQ(MAPI_Init(), TAMU_OK);
  Strings opened;
  for (const std::string& call : mail_->calls) {
    if (call.starts_with("OpenMsgStore")) opened.push_back(call);
  }
  EXPECT_EQ(opened, Strings{"OpenMsgStore 0 1 17 null 5"});
}

TEST_F(ScriptedMailSession, EntriesThatAreNoFoldersAreReleasedAndLeaveTheirHandlesNull) {
  mail_->entry_type = kObjectMessage;
  const LogCapture log;
  EXPECT_EQ(MAPI_Init(), TAMU_OK);
  EXPECT_EQ(log.texts(), (Strings{"MAPI:  MAPI_Init() called",
                                  "MAPI:  ulObjType of OpenEntry on gpInBoxFolder != MAPI_FOLDER",
                                  "MAPI:  ulObjType of OpenEntry on Mailbox != MAPI_FOLDER",
                                  "MAPI:  ulObjType of OpenEntry on Mailbox != MAPI_FOLDER",
                                  "MAPI:  MAPI_Init() finished"}));
  for (const LogCapture::Line& line : log.lines()) {
    EXPECT_EQ(line.severity, LogSeverity::kInformation) << line.text;
  }
  EXPECT_EQ(gpInBoxFolder, nullptr);
  EXPECT_EQ(gpSentBoxFolder, nullptr);
  EXPECT_EQ(gpOutBoxFolder, nullptr);
  EXPECT_EQ(device::LiveObjects(), objects_ + 1) << "the session";
}

TEST_F(ScriptedMailSession, PropertiesOfAnotherTypeAreNoFolders) {
  mail_->lacks_folders = true;
  const LogCapture log;
  EXPECT_EQ(MAPI_Init(), TAMU_OK);
  ASSERT_EQ(log.texts(), (Strings{"MAPI:  MAPI_Init() called",
                                  "MAPI:  Message Store has no valid PR_IPM_*_ENTRYID",
                                  "MAPI:  Message Store has no valid PR_IPM_*_ENTRYID",
                                  "MAPI:  MAPI_Init() finished"}));
  EXPECT_EQ(log.lines()[1].severity, LogSeverity::kError);
  EXPECT_NE(gpInBoxFolder, nullptr);
  EXPECT_EQ(gpSentBoxFolder, nullptr);
  EXPECT_EQ(gpOutBoxFolder, nullptr);
}

TEST_F(ScriptedMailSession, LogonThatSucceedsWithAnotherCodeThan0Gives14) {
  const ScopedOverride<HRESULT(std::uintptr_t, char16_t*, char16_t*, std::uint32_t, IMAPISession**)>
      logon(MAPILogonEx,
            [](std::uintptr_t, char16_t*, char16_t*, std::uint32_t,
               IMAPISession** session) -> HRESULT {
              *session = nullptr;
              return 1;
            });
  const LogCapture log;
  EXPECT_EQ(MAPI_Init(), TAMU_GENERAL_PIM_ERROR);
  EXPECT_EQ(log.texts(),
            (Strings{"MAPI:  MAPI_Init() called", "MAPI:  MAPILogonEx failed with code: 1",
                     "MAPI:  MAPI_Init() finished"}));
}

TEST_F(ScriptedMailSession, AFailureThatTheSessionExplainsHasSixLines) {
  ASSERT_EQ(MAPI_Init(), TAMU_OK);
  Explain(&mail_->session_error);
  const LogCapture log;
  MAPI_LogError(u"gpSession->OpenMsgStore", kStrange);
  EXPECT_EQ(log.texts(),
            (Strings{"MAPI:  gpSession->OpenMsgStore failed.", "       LowLevelError = 3000000000",
                     "       Version       = 4294967295", "       Message       = No room",
                     "       Component     = Gr\xC3\xB6\xC3\x9F"
                     "e",
                     "       Context       = 7"}));
  ExpectErrors(log);
  EXPECT_EQ(mail_->session_error.asked_result, kStrange);
  EXPECT_EQ(mail_->session_error.asked_flags, kMapiUnicode);
}

TEST_F(ScriptedMailSession, TextsThatAnExplanationLacksAreNULL) {
  ASSERT_EQ(MAPI_Init(), TAMU_OK);
  mail_->session_error.has_block = true;
  const LogCapture log;
  MAPI_LogError(u"Call", kStrange);
  EXPECT_TRUE(log.Has("       Message       = NULL"));
  EXPECT_TRUE(log.Has("       Component     = NULL"));
}

TEST_F(ScriptedMailSession, AFailureThatTheSessionCannotExplainHasTwoLines) {
  ASSERT_EQ(MAPI_Init(), TAMU_OK);
  for (const HRESULT asked : {hr::kOk, kStranger}) {
    mail_->session_error.result = asked;
    const LogCapture log;
    MAPI_LogError(u"Call", kStrange);
    EXPECT_EQ(log.texts(),
              (Strings{"MAPI:  Call failed with code: 0x80041234",
                       "MAPI:  gpSession->GetLastError failed - lpMAPIError is NULL"}));
    ExpectErrors(log);
  }
  mail_->session_error.has_block = true;
  const LogCapture log;
  MAPI_LogError(u"Call", kStrange);
  EXPECT_EQ(log.texts(), (Strings{"MAPI:  Call failed with code: 0x80041234",
                                  "MAPI:  gpSession->GetLastError failed with code: 0x80045678"}));
  ExpectErrors(log);
}

TEST_F(ScriptedMailSession, AnObjectsOwnFailureIsExplainedByItself) {
  ASSERT_EQ(MAPI_Init(), TAMU_OK);
  const ComPtr<IMAPITable> table(new testing::ScriptedTable(mail_.operator->()));
  Explain(&mail_->table_error);
  {
    const LogCapture log;
    MAPI_LogObjectError(table.get(), u"lptblStores->QueryRows", kStrange);
    EXPECT_EQ(log.texts(),
              (Strings{"MAPI:  lptblStores->QueryRows failed.", "       LowLevelError = 3000000000",
                       "       Version       = 4294967295", "       Message       = No room",
                       "       Component     = Gr\xC3\xB6\xC3\x9F"
                       "e",
                       "       Context       = 7"}));
    ExpectErrors(log);
  }
  EXPECT_EQ(mail_->table_error.asked_result, kStrange);
  EXPECT_EQ(mail_->table_error.asked_flags, kMapiUnicode);
  mail_->table_error.result = kStranger;
  {
    const LogCapture log;
    MAPI_LogObjectError(table.get(), u"Call", kStrange);
    EXPECT_EQ(log.texts(), (Strings{"MAPI:  Call failed with code: 0x80041234",
                                    "MAPI:  GetLastError failed with code: 0x80045678"}));
    ExpectErrors(log);
  }
  mail_->table_error.has_block = false;
  const LogCapture log;
  MAPI_LogObjectError(table.get(), u"Call", kStrange);
  EXPECT_EQ(log.texts(),
            (Strings{"MAPI:  Call failed with code: 0x80041234",
                     "MAPI:  GetLastError failed - lpMAPIError is NULL (hr1=0x80045678)"}));
  ExpectErrors(log);
}

TEST_F(ScriptedMailSession, AStoreThatDoesNotOpenIsExplainedByTheSession) {
  mail_->open_store = kStrange;
  Explain(&mail_->session_error);
  Explain(&mail_->table_error);
  mail_->set_columns = kStranger;
  const LogCapture log;
  EXPECT_EQ(MAPI_Init(), TAMU_OK);
  EXPECT_TRUE(log.Has("MAPI:  lptblStores->SetColumns failed."));
  EXPECT_TRUE(log.Has("MAPI:  gpSession->OpenMsgStore failed."));
  EXPECT_EQ(mail_->table_error.asked_result, kStranger);
  EXPECT_EQ(mail_->session_error.asked_result, kStrange);
}

}  // namespace
}  // namespace tamu
