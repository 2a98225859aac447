#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>

#include "core/records.h"
#include "platform/bstr.h"
#include "platform/code_pages.h"
#include "support/scratch_folder.h"
#include "tamu/tamu.h"
#include "text/property.h"

namespace tamu {
namespace {

// A record that frees itself.
class NameTest : public ::testing::Test {
 protected:
  ~NameTest() override { RECORD_Free(kind_, &record_); }

  static void Set(Ref<Property>* field, const char* value, const char* params = "") {
    PROP_SetFromText(value, params, kAnyComponents, PROP_Append(field));
  }
  std::u16string Name() {
    std::array<TamuWchar, 200> name;
    name.fill(u'#');
    const uint32_t length = TAMU_GetObjectName(kind_, &record_, name.data(), name.size());
    std::u16string result(reinterpret_cast<const char16_t*>(name.data()));
    EXPECT_EQ(result.size(), length);
    return result;
  }

  ObjectKind kind_ = KIND_CONTACT;
  ObjectRecord record_{};
};

TEST_F(NameTest, ContactWithoutFnIsPrefixGivenAdditionalFamilySuffix) {
  Set(&record_.contact.prop_n, "Doe;John;Q.;Dr.;jr.");
  EXPECT_EQ(Name(), u"Dr. John Q. Doe jr.");
}

TEST_F(NameTest, EmptyComponentsLeaveNoBlank) {
  Set(&record_.contact.prop_n, ";John;;Dr.");
  EXPECT_EQ(Name(), u"Dr. John");
}

TEST_F(NameTest, ASmallBufferGetsTheBeginningAndTheLengthIsWhole) {
  Set(&record_.contact.prop_n, ";John;;Dr.");
  std::array<TamuWchar, 5> name = {u'#', u'#', u'#', u'#', u'#'};
  EXPECT_EQ(TAMU_GetObjectName(KIND_CONTACT, &record_, name.data(), 3), 8U);
  EXPECT_EQ(name, (std::array<TamuWchar, 5>{u'D', u'r', 0, u'#', u'#'}));
}

TEST_F(NameTest, WithoutABufferTheLengthIsReturned) {
  Set(&record_.contact.prop_n, ";John;;Dr.");
  EXPECT_EQ(TAMU_GetObjectName(KIND_CONTACT, &record_, nullptr, 0), 8U);
  EXPECT_EQ(TAMU_GetObjectName(KIND_CONTACT, &record_, nullptr, 100), 8U);
}

TEST_F(NameTest, CapacityZeroTouchesNothing) {
  Set(&record_.contact.prop_n, ";John;;Dr.");
  TamuWchar guard = u'#';
  EXPECT_EQ(TAMU_GetObjectName(KIND_CONTACT, &record_, &guard, 0), 8U);
  EXPECT_EQ(guard, u'#');
}

TEST_F(NameTest, ContactWithFnIsThatAlone) {
  Set(&record_.contact.prop_n, "Doe;John");
  Set(&record_.contact.prop_fn, "Johnny D.");
  EXPECT_EQ(Name(), u"Johnny D.");
}

TEST_F(NameTest, AnEmptyFnDoesNotCount) {
  Set(&record_.contact.prop_n, "Doe;John");
  Set(&record_.contact.prop_fn, "");
  EXPECT_EQ(Name(), u"John Doe");
}

TEST_F(NameTest, ValuesAreDecoded) {
  Set(&record_.contact.prop_fn, "J=C3=BCrgen", "CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE");
  EXPECT_EQ(Name(), u"J\u00FCrgen");
}

TEST_F(NameTest, AnEmptyRecordHasNoName) {
  std::array<TamuWchar, 3> name = {u'#', u'#', u'#'};
  EXPECT_EQ(TAMU_GetObjectName(KIND_CONTACT, &record_, name.data(), 3), 0U);
  EXPECT_EQ(name[0], 0);
  EXPECT_EQ(name[2], u'#');
}

TEST_F(NameTest, EventIsSummaryAndLocation) {
  kind_ = KIND_CALENDAR;
  record_.event.component = COMPONENT_EVENT;
  Set(&record_.event.prop_summary, "Lunch");
  EXPECT_EQ(Name(), u"Lunch");
  Set(&record_.event.prop_location, "Caf\xE9");
  EXPECT_EQ(Name(), u"Lunch (Caf\u00E9)");
}

TEST_F(NameTest, ToDoIsTheSummaryAlone) {
  kind_ = KIND_CALENDAR;
  record_.todo.component = COMPONENT_TODO;
  Set(&record_.todo.prop_summary, "Shop");
  Set(&record_.todo.prop_dalarm, "20000101");
  EXPECT_EQ(Name(), u"Shop");
}

TEST_F(NameTest, NoteIsItsSummary) {
  kind_ = KIND_NOTE;
  Set(&record_.note.prop_summary, "List");
  Set(&record_.note.prop_body, "Milk");
  EXPECT_EQ(Name(), u"List");
}

TEST_F(NameTest, MessageIsSenderAndSubject) {
  const testing::ScopedEnvironment locale("LC_ALL", "C");
  for (const ObjectKind kind : {KIND_MSG_INBOX, KIND_MSG_SENT, KIND_MSG_OUTBOX}) {
    kind_ = kind;
    std::strcpy(record_.message.from, "J\xFCrgen");
    std::strcpy(record_.message.subject, "Hi");
    EXPECT_EQ(Name(), u"J\u00FCrgen - Hi");
  }
}

TEST_F(NameTest, MessageWithoutSenderIsTheSubjectAlone) {
  kind_ = KIND_MSG_INBOX;
  std::strcpy(record_.message.subject, "Hi");
  EXPECT_EQ(Name(), u"Hi");
}

TEST_F(NameTest, AMessageFilledToTheBrimIsReadToTheBrim) {
  kind_ = KIND_MSG_INBOX;
  std::memset(record_.message.subject, 'x', sizeof record_.message.subject);
  record_.message.unused[0] = 'y';
  EXPECT_EQ(TAMU_GetObjectName(kind_, &record_, nullptr, 0), 1024U);
  record_.message.unused[0] = 0;
}

TEST_F(NameTest, AnUnknownKindHasNoName) {
  kind_ = 6;
  TamuWchar name[2] = {u'#', u'#'};
  EXPECT_EQ(TAMU_GetObjectName(6, &record_, name, 2), 0U);
  EXPECT_EQ(name[0], 0);
}

TEST_F(NameTest, NoCountedStringIsLeft) {
  Set(&record_.contact.prop_n, "Doe;John");
  const std::int64_t before = platform::SysLiveStrings();
  Name();
  EXPECT_EQ(platform::SysLiveStrings(), before);
}

}  // namespace
}  // namespace tamu
