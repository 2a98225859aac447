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

}  // namespace
}  // namespace tamu::testing
