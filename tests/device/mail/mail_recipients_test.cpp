#include "device/mail/mail_fixture.h"

namespace tamu::testing {
namespace {

namespace hr = platform::hr;

struct Recipient {
  std::int32_t type;
  std::u16string address;
};

class MailRecipients : public MailContract {
 protected:
  // Adds them as the library does: one block of the caller's, given up right after the call.
  static HRESULT Add(IMessage* message, std::vector<Recipient> recipients,
                     std::uint32_t flags = platform::kRecipientsAdd) {
    std::u16string smtp = u"SMTP";
    std::vector<SPropValue> values;
    for (Recipient& each : recipients) {
      values.push_back(LongValue(platform::PR_RECIPIENT_TYPE, each.type));
      values.push_back(TextValue(platform::PR_ADDRTYPE, smtp));
      values.push_back(TextValue(platform::PR_EMAIL_ADDRESS, each.address));
    }
    std::vector<platform::ADRENTRY> entries(recipients.size() + 1);
    for (std::size_t i = 0; i < recipients.size(); ++i) entries[i] = {0, 3, &values[3 * i]};
    return AddEntries(message, entries, recipients.size(), flags);
  }

  static HRESULT AddEntries(IMessage* message, const std::vector<platform::ADRENTRY>& entries,
                            std::size_t count, std::uint32_t flags = platform::kRecipientsAdd) {
    std::vector<platform::ADRLIST> block(entries.size() + 1);
    block[0].cEntries = static_cast<std::uint32_t>(count);
    std::copy(entries.begin(), entries.end(), &block[0].aEntries[0]);
    return message->ModifyRecipients(flags, block.data());
  }

  // "to:one cc:two "
  static std::u16string ListOf(IMessage* message) {
    ComPtr<IMAPITable> table;
    const HRESULT result = message->GetRecipientTable(0, table.put());
    if (result == hr::kNoRecipients) return u"(none)";
    EXPECT_EQ(result, hr::kOk);
    std::u16string list;
    for (;;) {
      Rows rows;
      Query(table.get(), 50, &rows);
      EXPECT_GE(rows.result, 0);
      if (rows.size() == 0) return list;
      for (std::size_t i = 0; i < rows.size(); ++i) {
        list += rows.cell(i, 4).Value.l == platform::kRecipientTo ? u"to:" : u"cc:";
        list += std::u16string(rows.cell(i, 2).Value.lpszW) + u" ";
      }
    }
  }
};

TEST_P(MailRecipients, NewMessageHasNone) { EXPECT_EQ(ListOf(Create(inbox_).get()), u"(none)"); }

TEST_P(MailRecipients, AddAppends) {
  const ComPtr<IMessage> message = Create(inbox_);
  EXPECT_EQ(Add(message.get(), {{1, u"one"}, {2, u"two"}}), hr::kOk);
  EXPECT_EQ(Add(message.get(), {{1, u"one"}, {1, u"three"}}), hr::kOk);
  EXPECT_EQ(ListOf(message.get()), u"to:one cc:two to:one to:three ");
}

TEST_P(MailRecipients, TakeEffectAtOnceAndStay) {
  const ComPtr<IMessage> message = Create(inbox_);
  const std::string id = EntryIdOf(message.get());
  EXPECT_EQ(Add(message.get(), {{1, u"\"A\" <a@b>"}, {2, u"trailing blanks  "}}), hr::kOk);
  EXPECT_EQ(ListOf(Open<IMessage>(id).get()), u"to:\"A\" <a@b> cc:trailing blanks   ");
  LogonAgain();
  EXPECT_EQ(ListOf(Open<IMessage>(id).get()), u"to:\"A\" <a@b> cc:trailing blanks   ");
}

TEST_P(MailRecipients, ManyAreKeptInTheirOrder) {
  std::vector<Recipient> many;
  std::u16string expected;
  for (int i = 0; i < 180; ++i) {
    many.push_back({1, std::u16string(1, static_cast<char16_t>(0x4E00 + i))});
    expected += u"to:" + many.back().address + u" ";
  }
  const ComPtr<IMessage> message = Create(inbox_);
  EXPECT_EQ(Add(message.get(), many), hr::kOk);
  EXPECT_EQ(ListOf(message.get()), expected);
}

TEST_P(MailRecipients, TableHasFiveFixedColumns) {
  std::u16string name = u"A Name";
  std::u16string address = u"a@b";
  std::u16string kind = u"SMTP";
  SPropValue values[] = {
      TextValue(platform::PR_DISPLAY_NAME, name), TextValue(platform::PR_EMAIL_ADDRESS, address),
      TextValue(platform::PR_ADDRTYPE, kind), LongValue(platform::PR_RECIPIENT_TYPE, 2)};
  SPropValue only_type[] = {LongValue(platform::PR_RECIPIENT_TYPE, 1)};
  const ComPtr<IMessage> message = Create(inbox_);
  ASSERT_EQ(AddEntries(message.get(), {{0, 4, values}, {0, 1, only_type}}, 2), hr::kOk);
  ComPtr<IMAPITable> table;
  ASSERT_EQ(message->GetRecipientTable(0, table.put()), hr::kOk);
  Tags columns{platform::PR_EMAIL_ADDRESS};
  EXPECT_EQ(table->SetColumns(columns.get(), 0), hr::kNoSupport);
  std::uint32_t count = 0;
  EXPECT_EQ(table->GetRowCount(0, &count), hr::kOk);
  EXPECT_EQ(count, 2U);

  Rows rows;
  Query(table.get(), 50, &rows);
  EXPECT_EQ(rows.result, hr::kErrorsReturned);
  ASSERT_EQ(rows.size(), 2U);
  ASSERT_EQ(rows.set->aRow[0].cValues, 5U);
  EXPECT_EQ(rows.cell(0, 0).ulPropTag, platform::PR_ROWID);
  EXPECT_EQ(rows.cell(0, 0).Value.l, 0);
  EXPECT_EQ(std::u16string(rows.cell(0, 1).Value.lpszW), u"A Name");
  EXPECT_EQ(std::u16string(rows.cell(0, 2).Value.lpszW), u"a@b");
  EXPECT_EQ(std::u16string(rows.cell(0, 3).Value.lpszW), u"SMTP");
  EXPECT_EQ(rows.cell(0, 4).Value.l, 2);
  EXPECT_EQ(rows.cell(1, 0).Value.l, 1);
  EXPECT_EQ(platform::PropType(rows.cell(1, 1).ulPropTag), platform::kTypeError);
  EXPECT_EQ(platform::PropType(rows.cell(1, 2).ulPropTag), platform::kTypeError);
  EXPECT_EQ(platform::PropType(rows.cell(1, 3).ulPropTag), platform::kTypeError);
  EXPECT_EQ(rows.cell(1, 4).Value.l, 1);
}

TEST_P(MailRecipients, EntriesWithoutPropertiesAreNobody) {
  SPropValue type[] = {LongValue(platform::PR_RECIPIENT_TYPE, 1)};
  const ComPtr<IMessage> message = Create(inbox_);
  EXPECT_EQ(AddEntries(message.get(), {{0, 0, nullptr}, {0, 0, type}}, 2), hr::kOk);
  EXPECT_EQ(ListOf(message.get()), u"(none)");
  EXPECT_EQ(AddEntries(message.get(), {}, 0), hr::kOk);
  EXPECT_EQ(ListOf(message.get()), u"(none)");
}

TEST_P(MailRecipients, BadListAddsNobody) {
  std::u16string good = u"good";
  SPropValue whole[] = {TextValue(platform::PR_EMAIL_ADDRESS, good)};
  SPropValue hollow[] = {TextValue(platform::PR_EMAIL_ADDRESS, good)};
  hollow[0].Value.lpszW = nullptr;
  const ComPtr<IMessage> message = Create(inbox_);
  EXPECT_EQ(AddEntries(message.get(), {{0, 1, whole}, {0, 1, hollow}}, 2), hr::kInvalidArgument);
  EXPECT_EQ(AddEntries(message.get(), {{0, 1, whole}, {0, 1, nullptr}}, 2), hr::kInvalidArgument);
  EXPECT_EQ(message->ModifyRecipients(platform::kRecipientsAdd, nullptr), hr::kInvalidArgument);
  EXPECT_EQ(ListOf(message.get()), u"(none)");
}

TEST_P(MailRecipients, OtherModesAreNotSupported) {
  const ComPtr<IMessage> message = Create(inbox_);
  for (const std::uint32_t flags : {0U, 4U, 8U}) {
    EXPECT_EQ(Add(message.get(), {{1, u"one"}}, flags), hr::kNoSupport);
  }
  EXPECT_EQ(ListOf(message.get()), u"(none)");
}

TEST_P(MailRecipients, GetRecipientTableNeedsAPointer) {
  EXPECT_EQ(Create(inbox_)->GetRecipientTable(0, nullptr), hr::kInvalidArgument);
}

INSTANTIATE_TEST_SUITE_P(Devices, MailRecipients, ::testing::ValuesIn(MailDeviceKinds()),
                         &NameOfKind);

}  // namespace
}  // namespace tamu::testing
