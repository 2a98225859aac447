#include <cstdlib>
#include <limits>

#include "device/pim/pim_fixture.h"

namespace tamu::testing {
namespace {

using ContactContract = PimContract;
TAMU_OVER_PIM_DEVICES(ContactContract);

// A text for each property, beyond ASCII.
std::u16string Numbered(const char16_t* name, int number) {
  return name + std::u16string(1, static_cast<char16_t>(0x3b1 + number));
}

TEST_P(ContactContract, IsUnsavedAndEmptyWhenCreated) {
  const ComPtr<IContact> contact = NewContact();
  EXPECT_EQ(Got(contact, &IContact::get_Oid), 0);
  EXPECT_EQ(GotText(contact, &IContact::get_FileAs), u"");
  EXPECT_EQ(Got(contact, &IContact::get_Birthday), kNoDate);
  EXPECT_EQ(Got(Contacts(), &IPOutlookItemCollection::get_Count), 0);
}

TEST_P(ContactContract, EveryPropertyIsKept) {
  const ComPtr<IContact> contact = NewContact();
  int number = 0;
#define TAMU_PUT_DATE(name) EXPECT_EQ(contact->put_##name(20000.25 + ++number), hr::kOk);
#define TAMU_PUT_TEXT(name) EXPECT_EQ(contact->put_##name(Arg(Numbered(u"" #name, ++number))), 0);
  TAMU_CONTACT_PROPERTIES(TAMU_PUT_DATE, TAMU_PUT_TEXT)
#undef TAMU_PUT_DATE
#undef TAMU_PUT_TEXT
  ASSERT_EQ(contact->Save(), hr::kOk);
  EXPECT_EQ(Got(contact, &IContact::get_Oid), 1);
  LogonAgain();
  const ComPtr<IContact> stored = Open<IContact>(1);
  number = 0;
#define TAMU_GET_DATE(name) EXPECT_EQ(Got(stored, &IContact::get_##name), 20000.25 + ++number);
#define TAMU_GET_TEXT(name) \
  EXPECT_EQ(GotText(stored, &IContact::get_##name), Numbered(u"" #name, ++number));
  TAMU_CONTACT_PROPERTIES(TAMU_GET_DATE, TAMU_GET_TEXT)
#undef TAMU_GET_DATE
#undef TAMU_GET_TEXT
}

TEST_P(ContactContract, TextsArriveAsTheyCame) {
  std::u16string text = u" \r\n\t\"[a]\" AND % ' \\ \x00e9\x0065\x0301 ";
  text += char16_t{0xD800};
  text += u"x";
  text += char16_t{0xDC00};
  const std::u16string big(1 << 20, u'\x4e2d');
  const ComPtr<IContact> contact = NewContact();
  ASSERT_EQ(contact->put_LastName(Arg(text)), hr::kOk);
  ASSERT_EQ(contact->put_Body(Arg(big)), hr::kOk);
  ASSERT_EQ(contact->put_FileAs(nullptr), hr::kOk);
  ASSERT_EQ(contact->Save(), hr::kOk);
  const ComPtr<IContact> stored = Reopen(contact);
  EXPECT_EQ(GotText(stored, &IContact::get_LastName), text);
  EXPECT_EQ(GotText(stored, &IContact::get_Body), big);
  EXPECT_EQ(GotText(stored, &IContact::get_FileAs), u"");
}

TEST_P(ContactContract, CountedTextEndsAtItsFirstNul) {
  const BStr counted(platform::SysAllocStringLen(u"ab\0cd", 5));
  const ComPtr<IContact> contact = NewContact();
  ASSERT_EQ(contact->put_LastName(counted.get()), hr::kOk);
  EXPECT_EQ(GotText(contact, &IContact::get_LastName), u"ab");
}

TEST_P(ContactContract, NothingIsInvented) {
  const ComPtr<IContact> contact = AddContact(u"Lovelace", u"Ada");
  EXPECT_EQ(GotText(Reopen(contact), &IContact::get_FileAs), u"");
}

TEST_P(ContactContract, WhatIsPutReachesTheStoreWithSave) {
  const ComPtr<IContact> contact = AddContact(u"before");
  ASSERT_EQ(contact->put_LastName(Arg(u"after")), hr::kOk);
  EXPECT_EQ(GotText(Reopen(contact), &IContact::get_LastName), u"before");
  ASSERT_EQ(contact->Save(), hr::kOk);
  EXPECT_EQ(GotText(Reopen(contact), &IContact::get_LastName), u"after");
  EXPECT_EQ(Got(contact, &IContact::get_Oid), 1);
}

TEST_P(ContactContract, DatesAreTheExactDouble) {
  const ComPtr<IContact> contact = NewContact();
  for (const double date : {0.0, -1.25, 38000.123456789012, 1e300, 5e-324, 949997.99999999988}) {
    ASSERT_EQ(contact->put_Birthday(date), hr::kOk);
    ASSERT_EQ(contact->Save(), hr::kOk);
    EXPECT_EQ(Got(Reopen(contact), &IContact::get_Birthday), date);
  }
  EXPECT_EQ(contact->put_Birthday(std::numeric_limits<double>::quiet_NaN()), hr::kInvalidArgument);
  EXPECT_EQ(contact->put_Birthday(std::numeric_limits<double>::infinity()), hr::kInvalidArgument);
  EXPECT_EQ(Got(contact, &IContact::get_Birthday), 949997.99999999988);
}

TEST_P(ContactContract, InkIsBytes) {
  std::vector<std::uint8_t> bytes = {0, 1, 0, 255, 128};
  platform::CEBLOB ink{static_cast<std::uint32_t>(bytes.size()), bytes.data()};
  const ComPtr<IContact> contact = NewContact();
  ASSERT_EQ(contact->put_BodyInk(&ink), hr::kOk);
  ASSERT_EQ(contact->Save(), hr::kOk);
  const ComPtr<IContact> stored = Reopen(contact);
  platform::CEBLOB got{};
  ASSERT_EQ(stored->get_BodyInk(&got), hr::kOk);
  EXPECT_EQ(std::vector<std::uint8_t>(got.lpb, got.lpb + got.cb), bytes);
  std::free(got.lpb);
  platform::CEBLOB bad{4, nullptr};
  EXPECT_EQ(stored->put_BodyInk(&bad), hr::kInvalidArgument);
  ASSERT_EQ(stored->put_BodyInk(nullptr), hr::kOk);
  ASSERT_EQ(stored->get_BodyInk(&got), hr::kOk);
  EXPECT_EQ(got.cb, 0U);
  EXPECT_EQ(got.lpb, nullptr);
}

TEST_P(ContactContract, CopyIsAnUnsavedItem) {
  const ComPtr<IContact> contact = AddContact(u"Original");
  ComPtr<IContact> copy;
  ASSERT_EQ(contact->Copy(copy.put()), hr::kOk);
  EXPECT_EQ(Got(copy, &IContact::get_Oid), 0);
  EXPECT_EQ(Got(Contacts(), &IPOutlookItemCollection::get_Count), 1);
  ASSERT_EQ(copy->put_LastName(Arg(u"Copy")), hr::kOk);
  ASSERT_EQ(copy->Save(), hr::kOk);
  EXPECT_EQ(GotText(Reopen(contact), &IContact::get_LastName), u"Original");
  EXPECT_EQ(GotText(Open<IContact>(2), &IContact::get_LastName), u"Copy");
}

TEST_P(ContactContract, DeletedItemCannotBeSaved) {
  const ComPtr<IContact> contact = AddContact(u"Gone");
  const ComPtr<IContact> second = Reopen(contact);
  ASSERT_EQ(contact->Delete(), hr::kOk);
  EXPECT_EQ(contact->Save(), hr::kItemNotFound);
  EXPECT_EQ(second->Save(), hr::kItemNotFound);
  EXPECT_EQ(contact->Delete(), hr::kItemNotFound);
  EXPECT_EQ(second->Delete(), hr::kItemNotFound);
  EXPECT_EQ(NewContact()->Delete(), hr::kItemNotFound);
  IDispatch* item = nullptr;
  EXPECT_EQ(application_->GetItemFromOid(1, &item), hr::kItemNotFound);
}

TEST_P(ContactContract, NullPlacesAreRefused) {
  const ComPtr<IContact> contact = NewContact();
  EXPECT_EQ(contact->get_LastName(nullptr), hr::kPointer);
  EXPECT_EQ(contact->get_Birthday(nullptr), hr::kPointer);
  EXPECT_EQ(contact->get_Oid(nullptr), hr::kPointer);
  EXPECT_EQ(contact->Copy(nullptr), hr::kPointer);
  EXPECT_EQ(contact->get_BodyInk(nullptr), hr::kPointer);
}

TEST_P(ContactContract, MemoryThatRunsOutIsReported) {
  const ComPtr<IContact> contact = NewContact();
  const platform::ScopedFailure failure(platform::SysAllocStringLen);
  BSTR text = Arg(u"not touched");
  EXPECT_EQ(contact->get_LastName(&text), hr::kOutOfMemory);
  EXPECT_EQ(text, nullptr);
}

TEST_P(ContactContract, KeepsTheApplicationAlive) {
  const ComPtr<IContact> contact = AddContact(u"Alive");
  application_.reset();
  EXPECT_EQ(contact->Save(), hr::kOk);
  EXPECT_TRUE(GotPart(contact, &IContact::get_Application));
  EXPECT_EQ(contact->Display(), hr::kNotImplemented);
}

}  // namespace
}  // namespace tamu::testing
