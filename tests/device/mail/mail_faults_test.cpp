// Lets calls fail, one after the other: each failure reaches the caller, nothing is left behind, and
// what failed changed nothing.
#include <set>

#include "device/call_gate.h"
#include "device/mail/mail_scenario.h"

namespace tamu::testing {
namespace {

namespace hr = platform::hr;

constexpr HRESULT kFault = static_cast<HRESULT>(0x8004DEADU);

// Lets the n-th call through the gate fail while it lives; 0 none.
class NthCall {
 public:
  explicit NthCall(int n) : left_(n) { device::SetCallHook(&Hook, this); }
  ~NthCall() { device::SetCallHook(nullptr); }
  NthCall(const NthCall&) = delete;
  NthCall& operator=(const NthCall&) = delete;

  [[nodiscard]] bool struck() const { return struck_; }
  [[nodiscard]] const std::set<std::string>& methods() const { return methods_; }

 private:
  static HRESULT Hook(const char* method, void* context) {
    auto* const self = static_cast<NthCall*>(context);
    self->methods_.insert(method);
    if (self->left_ == 0 || --self->left_ != 0) return hr::kOk;
    self->struck_ = true;
    return kFault;
  }

  int left_;
  bool struck_ = false;
  std::set<std::string> methods_;
};

class MailFaults : public ::testing::TestWithParam<MailDeviceKind> {};

TEST_P(MailFaults, EveryFailingCallReachesTheCallerAndLeavesNothing) {
  const std::unique_ptr<MailDevice> device = GetParam().make();
  int n = 1;
  for (; n < 200; ++n) {
    const std::int64_t objects = device::LiveObjects();
    const std::int64_t buffers = platform::LiveMapiBuffers();
    const NthCall call(n);
    const HRESULT result = MailScenario::Run(*device);
    EXPECT_EQ(device::LiveObjects(), objects) << n;
    EXPECT_EQ(platform::LiveMapiBuffers(), buffers) << n;
    if (!call.struck()) {
      EXPECT_EQ(result, hr::kOk);
      break;
    }
    EXPECT_EQ(result, kFault) << n;
  }
  EXPECT_GT(n, 30);
  EXPECT_LT(n, 200);
}

TEST_P(MailFaults, MethodsPassTheGateByTheirNames) {
  const std::unique_ptr<MailDevice> device = GetParam().make();
  const NthCall call(0);
  ASSERT_EQ(MailScenario::Run(*device), hr::kOk);
  for (const char* const name : {"IMAPISession::GetMsgStoresTable",
                                 "IMAPISession::OpenMsgStore",
                                 "IMAPISession::OpenEntry",
                                 "IMAPISession::CompareEntryIDs",
                                 "IMAPISession::Logoff",
                                 "IMAPITable::SetColumns",
                                 "IMAPITable::SeekRow",
                                 "IMAPITable::QueryRows",
                                 "IMAPITable::GetRowCount",
                                 "IMAPITable::QueryPosition",
                                 "IMsgStore::GetReceiveFolder",
                                 "IMsgStore::GetProps",
                                 "IMsgStore::OpenEntry",
                                 "IMAPIFolder::GetContentsTable",
                                 "IMAPIFolder::CreateMessage",
                                 "IMAPIFolder::OpenEntry",
                                 "IMAPIFolder::DeleteMessages",
                                 "IMAPIFolder::GetProps",
                                 "IMessage::GetProps",
                                 "IMessage::SetProps",
                                 "IMessage::DeleteProps",
                                 "IMessage::OpenProperty",
                                 "IMessage::ModifyRecipients",
                                 "IMessage::GetRecipientTable",
                                 "IStream::Read",
                                 "IStream::Write",
                                 "IStream::Seek",
                                 "IStream::SetSize",
                                 "IStream::Stat",
                                 "IStream::Commit",
                                 "IExactMailFind::FindMessage"}) {
    EXPECT_TRUE(call.methods().contains(name)) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(Devices, MailFaults, ::testing::ValuesIn(MailDeviceKinds()), &NameOfKind);

// --- A store that fails -----------------------------------------------------

TEST(MailStoreFaults, EveryFailureOfTheStoreReachesTheCaller) {
  MemoryMailDevice device;
  int n = 1;
  for (; n < 200; ++n) {
    const std::int64_t objects = device::LiveObjects();
    const std::int64_t buffers = platform::LiveMapiBuffers();
    device.store().FailNth(static_cast<std::uint64_t>(n), hr::kDiskFull);
    const HRESULT result = MailScenario::Run(device);
    const bool struck = !device.store().Armed();
    device.store().FailNth(0, hr::kOk);
    EXPECT_EQ(device::LiveObjects(), objects) << n;
    EXPECT_EQ(platform::LiveMapiBuffers(), buffers) << n;
    if (!struck) {
      EXPECT_EQ(result, hr::kOk);
      break;
    }
    EXPECT_EQ(result, hr::kDiskFull) << n;
  }
  EXPECT_GT(n, 15);
  EXPECT_LT(n, 200);
}

class MailStoreFaultsOfAMessage : public MailContract {
 protected:
  MemoryMailStore& store() { return static_cast<MemoryMailDevice&>(*device_).store(); }
};

TEST_P(MailStoreFaultsOfAMessage, FailedSetPropsChangesNothingAndHasNoProblems) {
  const ComPtr<IMessage> message = Create(inbox_, u"before", 1);
  std::u16string text = u"after";
  SPropValue values[] = {TextValue(platform::PR_SUBJECT, text),
                         LongValue(platform::PR_OBJECT_TYPE, 1)};
  platform::SPropProblemArray* problems = nullptr;
  store().FailNth(1, hr::kLocked);
  EXPECT_EQ(message->SetProps(2, values, &problems), hr::kLocked);
  EXPECT_EQ(problems, nullptr);
  EXPECT_EQ(TextOf(message.get(), platform::PR_SUBJECT), u"before");
}

TEST_P(MailStoreFaultsOfAMessage, FailedCreateMessageGivesNoMessage) {
  store().FailNth(1, hr::kLocked);
  ComPtr<IMessage> message;
  EXPECT_EQ(inbox_->CreateMessage(nullptr, 0, message.put()), hr::kLocked);
  EXPECT_FALSE(message);
  Rows rows;
  Query(Contents(inbox_).get(), 50, &rows);
  EXPECT_EQ(rows.size(), 0U);
}

TEST_P(MailStoreFaultsOfAMessage, FailedCommitIsToldAndTheReleaseTriesAgain) {
  const ComPtr<IMessage> message = Create(inbox_);
  {
    ComPtr<platform::IUnknown> object;
    ASSERT_EQ(message->OpenProperty(platform::PR_BODY, nullptr, 1, 3, object.put()), hr::kOk);
    const ComPtr<IStream> stream(static_cast<IStream*>(object.release()));
    ASSERT_EQ(stream->Write(u"body", 8, nullptr), hr::kOk);
    store().FailNth(1, hr::kLocked);
    EXPECT_EQ(stream->Commit(0), hr::kLocked);
    EXPECT_EQ(TextOf(message.get(), platform::PR_BODY), u"(missing)");
  }
  EXPECT_EQ(TextOf(message.get(), platform::PR_BODY), u"body");
}

TEST_P(MailStoreFaultsOfAMessage, FailedReleaseKeepsWhatWasThere) {
  const ComPtr<IMessage> message = Create(inbox_);
  ASSERT_EQ(SetText(message.get(), platform::PR_BODY, u"before"), hr::kOk);
  {
    ComPtr<platform::IUnknown> object;
    ASSERT_EQ(message->OpenProperty(platform::PR_BODY, nullptr, 1, 3, object.put()), hr::kOk);
    const ComPtr<IStream> stream(static_cast<IStream*>(object.release()));
    ASSERT_EQ(stream->Write(u"after", 10, nullptr), hr::kOk);
    store().FailNth(1, hr::kLocked);
  }
  EXPECT_EQ(TextOf(message.get(), platform::PR_BODY), u"before");
}

TEST_P(MailStoreFaultsOfAMessage, FailedQueryLeavesThePosition) {
  static_cast<void>(Create(inbox_, u"one", 1));
  const ComPtr<IMAPITable> table = Contents(inbox_);
  store().FailNth(1, hr::kLocked);
  Rows failed;
  Query(table.get(), 50, &failed);
  EXPECT_EQ(failed.result, hr::kLocked);
  EXPECT_EQ(failed.set, nullptr);
  Rows rows;
  Query(table.get(), 50, &rows);
  EXPECT_EQ(rows.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Memory, MailStoreFaultsOfAMessage,
                         ::testing::Values(MailDeviceKinds().front()), &NameOfKind);

TEST(CreateMailSession, GivesTheOpenersFailure) {
  IMAPISession* session = nullptr;
  EXPECT_EQ(device::CreateMailSession(
                [](std::shared_ptr<device::MailStore>*) -> HRESULT { return hr::kNewerVersion; },
                &session),
            hr::kNewerVersion);
  EXPECT_EQ(session, nullptr);
}

}  // namespace
}  // namespace tamu::testing
