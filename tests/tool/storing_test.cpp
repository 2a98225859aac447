// Storing over a device in memory whose calls fail: what the library's results do not tell.
#include "store/storing.h"

#include <gtest/gtest.h>

#include <string>

#include "pimstore/store_session.h"
#include "text/tokens.h"

namespace tamu::tool {
namespace {

class Storing : public testing::SessionTest {
 protected:
  Storing() {
    STR_CopyField(mail_.message.date, "Wed, 31 Dec 2003 23:59:59 GMT");
    STR_CopyField(mail_.message.subject, "Hello");
    STR_CopyField(mail_.message.from, "anna@example.org");
    STR_CopyField(mail_.message.to, "bert@example.org");
  }

  ObjectRecord mail_ = {{0}};
};

TEST_F(Storing, AMessageOfWhichAPropertyFailsIsStoredIncompletely) {
  for (const char* const method : {"IMessage::SetProps", "IMessage::ModifyRecipients"}) {
    StoreOutcome outcome;
    {
      const testing::CallWatch watch{std::string(method)};
      outcome = STORE_Add(KIND_MSG_INBOX, &mail_);
    }
    EXPECT_TRUE(outcome.failure.starts_with("stored incompletely: ")) << outcome.failure;
    EXPECT_NE(outcome.failure.find("failed with code: 0x"), std::string::npos) << outcome.failure;
  }
  EXPECT_EQ(STORE_Add(KIND_MSG_INBOX, &mail_).failure, "");
}

TEST_F(Storing, AFailedSaveIsAFailureAndNothingIsLeft) {
  testing::Card card;
  card.With(&ContactShape::prop_n, "Berg;Anna;;;");
  {
    const testing::CallWatch watch{std::string("IContact::Save")};
    EXPECT_NE(STORE_Add(KIND_CONTACT, card.get()).failure, "");
  }
  EXPECT_EQ(STORE_Find(KIND_CONTACT, card.get()).found, Found::kNo);
  EXPECT_EQ(STORE_Add(KIND_CONTACT, card.get()).failure, "");
  const FindOutcome found = STORE_Find(KIND_CONTACT, card.get());
  EXPECT_EQ(found.found, Found::kYes);
  EXPECT_EQ(found.id.size(), 8U);
}

// Else an import would add everything once more.
TEST_F(Storing, ASearchThatFailsIsNotTakenForNothingFound) {
  ASSERT_EQ(STORE_Add(KIND_MSG_INBOX, &mail_).failure, "");
  const testing::CallWatch watch{std::string("IMAPIFolder::GetContentsTable")};
  const FindOutcome found = STORE_Find(KIND_MSG_INBOX, &mail_);
  EXPECT_EQ(found.found, Found::kFailed);
  EXPECT_NE(found.problem.find("GetContentsTable failed"), std::string::npos) << found.problem;
}

}  // namespace
}  // namespace tamu::tool
