// device/mail/mail_fixture.h - the contract tests' fixture: a session over each kind of device, and
// short ways to do what every test needs. Nothing may be left when a test ends.
#ifndef TAMU_TESTS_DEVICE_MAIL_MAIL_FIXTURE_H_
#define TAMU_TESTS_DEVICE_MAIL_MAIL_FIXTURE_H_

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "device/com_object.h"
#include "platform/cemapi.h"
#include "platform/com_ptr.h"
#include "platform/linux/mapi_buffer.h"
#include "support/mail_device.h"

namespace tamu::testing {

using platform::ComPtr;
using platform::ENTRYID;
using platform::HRESULT;
using platform::IMAPIFolder;
using platform::IMAPISession;
using platform::IMAPITable;
using platform::IMessage;
using platform::IMsgStore;
using platform::IStream;
using platform::SPropValue;

// A tag array of any length.
class Tags {
 public:
  Tags(std::initializer_list<std::uint32_t> tags)
      : words_{static_cast<std::uint32_t>(tags.size())} {
    words_.insert(words_.end(), tags);
  }
  [[nodiscard]] platform::SPropTagArray* get() {
    return static_cast<platform::SPropTagArray*>(static_cast<void*>(words_.data()));
  }

 private:
  std::vector<std::uint32_t> words_;
};

// An answer of GetProps; frees itself.
class Props {
 public:
  Props() = default;
  Props(const Props&) = delete;
  Props& operator=(const Props&) = delete;
  ~Props() { platform::MAPIFreeBuffer(values); }
  const SPropValue& operator[](std::size_t i) const { return values[i]; }

  HRESULT result = 0;
  std::uint32_t count = 0;
  SPropValue* values = nullptr;
};

// A row set; frees itself.
class Rows {
 public:
  Rows() = default;
  Rows(const Rows&) = delete;
  Rows& operator=(const Rows&) = delete;
  ~Rows() { platform::FreeProws(set); }
  [[nodiscard]] std::uint32_t size() const { return set == nullptr ? 0 : set->cRows; }
  const SPropValue& cell(std::size_t row, std::size_t column) const {
    return set->aRow[row].lpProps[column];
  }

  HRESULT result = 0;
  platform::SRowSet* set = nullptr;
};

inline void Fill(platform::IMAPIProp* object, Tags tags, Props* props) {
  props->result = object->GetProps(tags.get(), 0, &props->count, &props->values);
}

inline void Query(IMAPITable* table, std::int32_t rows, Rows* out) {
  out->result = table->QueryRows(rows, 0, &out->set);
}

inline std::string BinaryOf(const SPropValue& value) {
  return {static_cast<const char*>(static_cast<const void*>(value.Value.bin.lpb)),
          value.Value.bin.cb};
}

inline ENTRYID* IdPointer(std::string& bytes) {
  return static_cast<ENTRYID*>(static_cast<void*>(bytes.data()));
}

inline SPropValue TextValue(std::uint32_t tag, std::u16string& text) {
  SPropValue value{};
  value.ulPropTag = tag;
  value.Value.lpszW = text.data();
  return value;
}

inline SPropValue LongValue(std::uint32_t tag, std::int32_t number) {
  SPropValue value{};
  value.ulPropTag = tag;
  value.Value.l = number;
  return value;
}

inline SPropValue TimeValue(std::uint32_t tag, std::uint64_t time) {
  SPropValue value{};
  value.ulPropTag = tag;
  value.Value.ft = {static_cast<std::uint32_t>(time), static_cast<std::uint32_t>(time >> 32)};
  return value;
}

inline HRESULT SetText(IMessage* message, std::uint32_t tag, std::u16string text) {
  SPropValue value = TextValue(tag, text);
  return message->SetProps(1, &value, nullptr);
}

inline HRESULT SetTime(IMessage* message, std::uint32_t tag, std::uint64_t time) {
  SPropValue value = TimeValue(tag, time);
  return message->SetProps(1, &value, nullptr);
}

// What a store property names, as bytes.
inline std::string EntryIdOf(platform::IMAPIProp* object,
                             std::uint32_t tag = platform::PR_ENTRYID) {
  Props props;
  Fill(object, {tag}, &props);
  EXPECT_EQ(props.result, platform::hr::kOk);
  if (props.count != 1 || props[0].ulPropTag != tag) return {};
  return BinaryOf(props[0]);
}

inline std::string NameOfKind(const ::testing::TestParamInfo<MailDeviceKind>& kind) {
  return kind.param.name;
}

class MailContract : public ::testing::TestWithParam<MailDeviceKind> {
 protected:
  void SetUp() override {
    objects_ = device::LiveObjects();
    buffers_ = platform::LiveMapiBuffers();
    device_ = GetParam().make();
    LogonAgain();
  }

  void TearDown() override {
    CloseAll();
    device_.reset();
    EXPECT_EQ(device::LiveObjects(), objects_);
    EXPECT_EQ(platform::LiveMapiBuffers(), buffers_);
  }

  void CloseAll() {
    inbox_.reset();
    outbox_.reset();
    sent_.reset();
    store_.reset();
    session_.reset();
  }

  // Gives everything up and opens it anew.
  void LogonAgain() {
    CloseAll();
    ASSERT_EQ(device_->Logon(session_.put()), platform::hr::kOk);
    ComPtr<IMAPITable> stores;
    ASSERT_EQ(session_->GetMsgStoresTable(0, stores.put()), platform::hr::kOk);
    Rows rows;
    Query(stores.get(), 50, &rows);
    ASSERT_EQ(rows.size(), 1U);
    store_id_ = BinaryOf(rows.cell(0, 0));
    ASSERT_EQ(session_->OpenMsgStore(0, 16, IdPointer(store_id_), nullptr, 0, store_.put()),
              platform::hr::kOk);
    std::uint32_t size = 0;
    ENTRYID* inbox = nullptr;
    ASSERT_EQ(store_->GetReceiveFolder(nullptr, 0, &size, &inbox, nullptr), platform::hr::kOk);
    inbox_id_.assign(static_cast<const char*>(static_cast<const void*>(inbox)), size);
    platform::MAPIFreeBuffer(inbox);
    outbox_id_ = EntryIdOf(store_.get(), platform::PR_IPM_OUTBOX_ENTRYID);
    sent_id_ = EntryIdOf(store_.get(), platform::PR_IPM_SENTMAIL_ENTRYID);
    inbox_ = Open<IMAPIFolder>(inbox_id_);
    outbox_ = Open<IMAPIFolder>(outbox_id_);
    sent_ = Open<IMAPIFolder>(sent_id_);
  }

  // Opens what is known to be of that kind.
  template <typename Interface>
  ComPtr<Interface> Open(std::string id) {
    platform::IUnknown* object = nullptr;
    EXPECT_EQ(store_->OpenEntry(static_cast<std::uint32_t>(id.size()), IdPointer(id), nullptr, 0,
                                nullptr, &object),
              platform::hr::kOk);
    return ComPtr<Interface>(static_cast<Interface*>(object));
  }

  static ComPtr<IMessage> Create(const ComPtr<IMAPIFolder>& folder) {
    ComPtr<IMessage> message;
    EXPECT_EQ(folder->CreateMessage(nullptr, 0, message.put()), platform::hr::kOk);
    return message;
  }

  static ComPtr<IMessage> Create(const ComPtr<IMAPIFolder>& folder, std::u16string_view subject,
                                 std::uint64_t time) {
    ComPtr<IMessage> message = Create(folder);
    EXPECT_EQ(SetText(message.get(), platform::PR_SUBJECT, std::u16string(subject)), 0);
    EXPECT_EQ(SetTime(message.get(), platform::PR_MESSAGE_DELIVERY_TIME, time), 0);
    return message;
  }

  static ComPtr<IMAPITable> Contents(const ComPtr<IMAPIFolder>& folder) {
    ComPtr<IMAPITable> table;
    EXPECT_EQ(folder->GetContentsTable(0, table.put()), platform::hr::kOk);
    return table;
  }

  static std::u16string TextOf(IMessage* message, std::uint32_t tag) {
    Props props;
    Fill(message, {tag}, &props);
    if (props.result != platform::hr::kOk || props[0].ulPropTag != tag) return u"(missing)";
    return props[0].Value.lpszW;
  }

  std::unique_ptr<MailDevice> device_;
  ComPtr<IMAPISession> session_;
  ComPtr<IMsgStore> store_;
  ComPtr<IMAPIFolder> inbox_;
  ComPtr<IMAPIFolder> outbox_;
  ComPtr<IMAPIFolder> sent_;
  std::string store_id_;
  std::string inbox_id_;
  std::string outbox_id_;
  std::string sent_id_;

 private:
  std::int64_t objects_ = 0;
  std::int64_t buffers_ = 0;
};

}  // namespace tamu::testing

#endif  // TAMU_TESTS_DEVICE_MAIL_MAIL_FIXTURE_H_
