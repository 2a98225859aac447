// mailstore/mail_adapter_fixture.h - the library's mail functions over each kind of device. Nothing
// may be left when a test ends.
#ifndef TAMU_TESTS_MAILSTORE_MAIL_ADAPTER_FIXTURE_H_
#define TAMU_TESTS_MAILSTORE_MAIL_ADAPTER_FIXTURE_H_

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "core/memory.h"
#include "core/records.h"
#include "device/com_object.h"
#include "mailstore/mail_operations.h"
#include "mailstore/session.h"
#include "platform/bstr.h"
#include "platform/com_ptr.h"
#include "platform/linux/mapi_buffer.h"
#include "support/call_hook.h"
#include "support/log_capture.h"
#include "support/mail_device.h"
#include "support/time_zone.h"
#include "text/tokens.h"

namespace tamu::testing {

// Every object of the device, block and string that is alive now.
struct LiveCounts {
  std::int64_t objects = device::LiveObjects();
  std::int64_t buffers = platform::LiveMapiBuffers();
  std::int64_t strings = platform::SysLiveStrings();
  std::size_t blocks = MEM_LiveBlocks();

  friend bool operator==(const LiveCounts&, const LiveCounts&) = default;
  friend void PrintTo(const LiveCounts& counts, std::ostream* out) {
    *out << counts.objects << " objects, " << counts.buffers << " buffers, " << counts.strings
         << " strings, " << counts.blocks << " blocks";
  }
};

// A message record that frees itself.
class MessageRecord {
 public:
  MessageRecord() { STR_CopyField(shape().type, "MSG"); }
  ~MessageRecord() { RECORD_Free(KIND_MSG_INBOX, &record_); }
  MessageRecord(const MessageRecord&) = delete;
  MessageRecord& operator=(const MessageRecord&) = delete;

  [[nodiscard]] MessageShape& shape() { return record_.message; }
  [[nodiscard]] const MessageShape* get() { return &record_.message; }
  [[nodiscard]] ObjectRecord* record() { return &record_; }

  void SetBody(const std::string& text, const char* content_type = "text/plain",
               const char* transfer_encoding = "") {
    MEM_Free(shape().body.text);
    shape().body.text = MEM_CopyText(text).release();
    STR_CopyField(shape().body.content_type, content_type);
    STR_CopyField(shape().body.transfer_encoding, transfer_encoding);
  }

 private:
  ObjectRecord record_ = {{0}};
};

// A message that is filled in every field that is stored.
inline void FillMessage(MessageRecord* record, const char* subject = "Meeting",
                        const char* date = "Wed, 31 Dec 2003 23:59:59 GMT") {
  MessageShape& shape = record->shape();
  STR_CopyField(shape.subject, subject);
  STR_CopyField(shape.date, date);
  STR_CopyField(shape.status, "READ");
  STR_CopyField(shape.from, "Ada <ada@example.org>");
  STR_CopyField(shape.to, "bob@example.org; carol@example.org");
  STR_CopyField(shape.cc, "dan@example.org");
  record->SetBody("first line\nsecond line\n");
}

class MailAdapter : public ::testing::TestWithParam<MailDeviceKind> {
 protected:
  void SetUp() override {
    Active() = this;
    device_ = GetParam().make();
    logon_ = std::make_unique<LogonOverride>(platform::MAPILogonEx, &Logon);
    before_ = LiveCounts();
  }
  void TearDown() override {
    EXPECT_EQ(MAPI_DeInit(), TAMU_OK);
    EXPECT_EQ(LiveCounts(), before_);
    logon_.reset();
    device_.reset();
  }

  // The rows of an open folder: subject, sender, body, flags.
  struct Stored {
    std::u16string subject;
    std::u16string sender;
    std::u16string body;  // with its terminator
    std::int32_t flags = -1;
    std::uint64_t delivered = 0;
    std::vector<std::pair<std::int32_t, std::u16string>> recipients;
  };
  static std::vector<Stored> Messages(platform::IMAPIFolder* folder);

  const ScopedTimeZone zone_{kUtcZone};
  std::unique_ptr<MailDevice> device_;

 private:
  using LogonOverride = platform::ScopedOverride<platform::HRESULT(
      std::uintptr_t, char16_t*, char16_t*, std::uint32_t, platform::IMAPISession**)>;

  static MailAdapter*& Active() {
    static MailAdapter* active = nullptr;
    return active;
  }
  static platform::HRESULT Logon(std::uintptr_t, char16_t*, char16_t*, std::uint32_t,
                                 platform::IMAPISession** session) {
    const platform::HRESULT result = Active()->device_->Logon(session);
    return result;
  }
  static Stored ReadMessage(platform::IMAPIFolder* folder, const platform::SBinary& id);
  static void ReadRecipients(platform::IMessage* message, Stored* stored);

  std::unique_ptr<LogonOverride> logon_;
  LiveCounts before_;
};

inline std::u16string ReadBody(platform::IMessage* message) {
  platform::ComPtr<platform::IUnknown> opened;
  if (platform::Failed(message->OpenProperty(platform::PR_BODY, &platform::IID_IStream,
                                             platform::kStorageRead, 0, opened.put()))) {
    return u"(none)";
  }
  auto* const stream = static_cast<platform::IStream*>(opened.get());
  platform::STATSTG stat{};
  EXPECT_EQ(stream->Stat(&stat, 1), 0);
  std::u16string body(static_cast<std::size_t>(stat.cbSize / 2), u'\0');
  std::uint32_t read = 0;
  EXPECT_EQ(stream->Read(body.data(), static_cast<std::uint32_t>(stat.cbSize), &read), 0);
  EXPECT_EQ(read, stat.cbSize);
  return body;
}

inline void MailAdapter::ReadRecipients(platform::IMessage* message, Stored* stored) {
  platform::ComPtr<platform::IMAPITable> table;
  if (platform::Failed(message->GetRecipientTable(0, table.put()))) return;
  for (;;) {
    platform::SRowSet* rows = nullptr;
    if (platform::Failed(table->QueryRows(10, 0, &rows)) || rows->cRows == 0) {
      platform::FreeProws(rows);
      return;
    }
    for (std::uint32_t i = 0; i < rows->cRows; ++i) {
      stored->recipients.emplace_back(rows->aRow[i].lpProps[4].Value.l,
                                      rows->aRow[i].lpProps[2].Value.lpszW);
    }
    platform::FreeProws(rows);
  }
}

inline MailAdapter::Stored MailAdapter::ReadMessage(platform::IMAPIFolder* folder,
                                                    const platform::SBinary& id) {
  Stored stored;
  platform::ComPtr<platform::IUnknown> object;
  EXPECT_EQ(folder->OpenEntry(id.cb, static_cast<platform::ENTRYID*>(static_cast<void*>(id.lpb)),
                              nullptr, 0, nullptr, object.put()),
            0);
  auto* const message = static_cast<platform::IMessage*>(object.get());
  platform::SizedPropTagArray<4> tags{
      4,
      {platform::PR_SUBJECT, platform::PR_SENDER_EMAIL_ADDRESS, platform::PR_MESSAGE_FLAGS,
       platform::PR_MESSAGE_DELIVERY_TIME}};
  std::uint32_t count = 0;
  platform::SPropValue* values = nullptr;
  EXPECT_TRUE(platform::Succeeded(message->GetProps(tags.get(), 0, &count, &values)));
  if (values[0].ulPropTag == platform::PR_SUBJECT) stored.subject = values[0].Value.lpszW;
  if (values[1].ulPropTag == platform::PR_SENDER_EMAIL_ADDRESS) {
    stored.sender = values[1].Value.lpszW;
  }
  if (values[2].ulPropTag == platform::PR_MESSAGE_FLAGS) stored.flags = values[2].Value.l;
  if (values[3].ulPropTag == platform::PR_MESSAGE_DELIVERY_TIME) {
    stored.delivered =
        std::uint64_t{values[3].Value.ft.dwHighDateTime} << 32 | values[3].Value.ft.dwLowDateTime;
  }
  platform::MAPIFreeBuffer(values);
  stored.body = ReadBody(message);
  ReadRecipients(message, &stored);
  return stored;
}

inline std::vector<MailAdapter::Stored> MailAdapter::Messages(platform::IMAPIFolder* folder) {
  std::vector<Stored> messages;
  platform::ComPtr<platform::IMAPITable> table;
  EXPECT_EQ(folder->GetContentsTable(0, table.put()), 0);
  platform::SizedPropTagArray<1> columns{1, {platform::PR_ENTRYID}};
  EXPECT_EQ(table->SetColumns(columns.get(), 0), 0);
  for (;;) {
    platform::SRowSet* rows = nullptr;
    EXPECT_EQ(table->QueryRows(50, 0, &rows), 0);
    for (std::uint32_t i = 0; i < rows->cRows; ++i) {
      messages.push_back(ReadMessage(folder, rows->aRow[i].lpProps[0].Value.bin));
    }
    const bool end = rows->cRows == 0;
    platform::FreeProws(rows);
    if (end) return messages;
  }
}

inline std::string NameOfMailKind(const ::testing::TestParamInfo<MailDeviceKind>& kind) {
  return kind.param.name;
}

}  // namespace tamu::testing

#endif  // TAMU_TESTS_MAILSTORE_MAIL_ADAPTER_FIXTURE_H_
