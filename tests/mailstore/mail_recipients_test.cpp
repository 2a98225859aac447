#include "mailstore/mail_recipients.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace tamu {
namespace {

using namespace platform;

using Row = std::pair<std::int32_t, std::u16string>;

BStr Wide(const char16_t* text) { return BStr(SysAllocString(text)); }

std::vector<Row> Rows(const char16_t* to, const char16_t* cc) {
  const MemPtr<ADRLIST> list = MAIL_MakeRecipients(Wide(to), Wide(cc));
  std::vector<Row> rows;
  for (std::uint32_t i = 0; i < list->cEntries; ++i) {
    const ADRENTRY& entry = list->aEntries[i];
    EXPECT_EQ(entry.cValues, 3U);
    EXPECT_EQ(entry.rgPropVals[0].ulPropTag, PR_RECIPIENT_TYPE);
    EXPECT_EQ(entry.rgPropVals[1].ulPropTag, PR_ADDRTYPE);
    EXPECT_EQ(entry.rgPropVals[2].ulPropTag, PR_EMAIL_ADDRESS);
    EXPECT_EQ(std::u16string(entry.rgPropVals[1].Value.lpszW), u"SMTP");
    rows.emplace_back(entry.rgPropVals[0].Value.l, entry.rgPropVals[2].Value.lpszW);
  }
  return rows;
}

TEST(MAIL_MakeRecipients, SemicolonAtTheEndAddsNoRow) {
  EXPECT_EQ(Rows(u"one; two;", u""), (std::vector<Row>{{1, u"one"}, {1, u"two"}}));
}

TEST(MAIL_MakeRecipients, LeadingBlanksAreSkipped) {
  EXPECT_EQ(Rows(u" one", u""), (std::vector<Row>{{1, u"one"}}));
}

TEST(MAIL_MakeRecipients, TrailingBlanksAndDisplayNamesAreKept) {
  EXPECT_EQ(Rows(u"Ada Lovelace <ada@example.org> ; b ", u""),
            (std::vector<Row>{{1, u"Ada Lovelace <ada@example.org> "}, {1, u"b "}}));
}

TEST(MAIL_MakeRecipients, CopiesStandBehindRecipients) {
  EXPECT_EQ(Rows(u"a;b", u"c"), (std::vector<Row>{{1, u"a"}, {1, u"b"}, {2, u"c"}}));
}

TEST(MAIL_MakeRecipients, EmptyPieceInTheMiddleIsARowWithoutAddress) {
  EXPECT_EQ(Rows(u"a;;b", u"; ;c"),
            (std::vector<Row>{{1, u"a"}, {1, u""}, {1, u"b"}, {2, u""}, {2, u""}, {2, u"c"}}));
}

TEST(MAIL_MakeRecipients, BlankPieceAtTheEndAddsNoRow) {
  EXPECT_EQ(Rows(u"a;  ", u"   "), (std::vector<Row>{{1, u"a"}}));
}

TEST(MAIL_MakeRecipients, TabsAreNoBlanks) {
  EXPECT_EQ(Rows(u"\ta", u""), (std::vector<Row>{{1, u"\ta"}}));
}

TEST(MAIL_MakeRecipients, EmptyTextsGiveAnEmptyList) { EXPECT_TRUE(Rows(u"", u"").empty()); }

TEST(MAIL_MakeRecipients, OddAndEvenCountsAreAligned) {
  std::u16string to = u"x";
  for (int count = 1; count < 40; ++count) {
    EXPECT_EQ(Rows(to.c_str(), u"cc").size(), static_cast<std::size_t>(count) + 1);
    to += u";x";
  }
}

TEST(MAIL_MakeRecipients, GivesNullWhenMemoryRunsOut) {
  MEM_FailNth(1);
  EXPECT_EQ(MAIL_MakeRecipients(Wide(u"a"), BStr()), nullptr);
  MEM_FailNth(0);
}

}  // namespace
}  // namespace tamu
