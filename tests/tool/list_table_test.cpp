// The columns of a list.
#include "store/list_table.h"

#include <gtest/gtest.h>

namespace tamu::tool {
namespace {

TEST(ListWidth, LatinGreekAndCyrillicTakeAColumnEach) {
  EXPECT_EQ(LIST_Width("Anna"), 4U);
  EXPECT_EQ(LIST_Width("Änne"), 4U);
  EXPECT_EQ(LIST_Width("Остап"), 5U);
}

TEST(ListWidth, EastAsianCharactersAndEmojiTakeTwo) {
  EXPECT_EQ(LIST_Width("山田"), 4U);
  EXPECT_EQ(LIST_Width("김민서"), 6U);
  EXPECT_EQ(LIST_Width("ｱ"), 1U);
  EXPECT_EQ(LIST_Width("🎻!"), 3U);
}

TEST(ListWidth, MarksTakeNone) {
  EXPECT_EQ(LIST_Width("e\xCC\x81"), 1U);
  EXPECT_EQ(LIST_Width(""), 0U);
}

CatalogueEntry EntryOf(StoredKind kind, double when) {
  CatalogueEntry entry;
  entry.id.kind = kind;
  entry.when = when;
  return entry;
}

TEST(ListDate, MidnightIsADayOfToDosAndOfWholeDaysAlone) {
  EXPECT_EQ(LIST_Date(EntryOf(StoredKind::kTodo, 37987)), "2004-01-01");
  EXPECT_EQ(LIST_Date(EntryOf(StoredKind::kTodo, 37987.5)), "2004-01-01T12:00:00");
  EXPECT_EQ(LIST_Date(EntryOf(StoredKind::kEvent, 37987)), "2004-01-01T00:00:00");
  CatalogueEntry event = EntryOf(StoredKind::kEvent, 37987);
  event.state = "all day";
  EXPECT_EQ(LIST_Date(event), "2004-01-01");
}

TEST(ListDate, NoDateAndImpossibleDatesAreEmpty) {
  EXPECT_EQ(LIST_Date(CatalogueEntry()), "");
  EXPECT_EQ(LIST_Date(EntryOf(StoredKind::kEvent, 1e9)), "");
}

TEST(ListTitle, OnlyMessagesHaveEncodedWords) {
  CatalogueEntry entry = EntryOf(StoredKind::kMessage, 0);
  entry.title = u" =?UTF-8?Q?Caf=C3=A9?=";
  EXPECT_EQ(LIST_Title(entry), u"Café");
  entry.id.kind = StoredKind::kEvent;
  EXPECT_EQ(LIST_Title(entry), u" =?UTF-8?Q?Caf=C3=A9?=");
}

}  // namespace
}  // namespace tamu::tool
