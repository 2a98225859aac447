#include "platform/linux/registry_names.h"

#include <gtest/gtest.h>

#include <clocale>

namespace tamu::platform {
namespace {

TEST(FoldName, IgnoresCaseOfTheScriptsWithCase) {
  EXPECT_EQ(FoldName(u"DeviceName"), FoldName(u"DEVICEnAME"));
  EXPECT_EQ(FoldName(u"Ger\u00E4tename \u00FF"), FoldName(u"GER\u00C4TENAME \u0178"));
  EXPECT_EQ(FoldName(u"\u0159\u017E\u0142"), FoldName(u"\u0158\u017D\u0141"));  // Czech, Polish
  EXPECT_EQ(FoldName(u"\u03B1\u03AC\u03CE\u03C2"), FoldName(u"\u0391\u0386\u038F\u03A3"));  // Greek
  EXPECT_EQ(FoldName(u"\u0438\u0439\u0451\u045F\u0491"),
            FoldName(u"\u0418\u0419\u0401\u040F\u0490"));           // Cyrillic
  EXPECT_EQ(FoldName(u"\u0561\u0586"), FoldName(u"\u0531\u0556"));  // Armenian
  EXPECT_EQ(FoldName(u"\uFF41\uFF5A"), FoldName(u"\uFF21\uFF3A"));  // full width
}

TEST(FoldName, KeepsLettersApart) {
  EXPECT_NE(FoldName(u"\u00F7"), FoldName(u"\u00D7"));  // division and multiplication
  EXPECT_NE(FoldName(u"\u00DF"), FoldName(u"\u1E9E"));
  EXPECT_NE(FoldName(u"i"), FoldName(u"\u0130"));
  EXPECT_NE(FoldName(u"\u0131"), FoldName(u"I"));
  EXPECT_NE(FoldName(u"@"), FoldName(u"`"));
  EXPECT_NE(FoldName(u"["), FoldName(u"{"));
}

TEST(FoldName, IsStableAndOfTheSameLength) {
  for (std::uint32_t unit = 0; unit < 0x10000; ++unit) {
    const std::u16string name(1, static_cast<char16_t>(unit));
    ASSERT_EQ(FoldName(FoldName(name)), FoldName(name)) << unit;
  }
}

TEST(FoldName, HasNoRegardToTheLocale) {
  const std::u16string before = FoldName(u"istanbul");
  const char* turkish = std::setlocale(LC_ALL, "tr_TR.UTF-8");
  EXPECT_EQ(FoldName(u"istanbul"), before);
  if (turkish) std::setlocale(LC_ALL, "C");
}

TEST(SplitKeyPath, SplitsAtBackslashes) {
  EXPECT_EQ(SplitKeyPath(u"")->size(), 0U);
  EXPECT_EQ(*SplitKeyPath(u"One"), (std::vector<std::u16string>{u"One"}));
  EXPECT_EQ(*SplitKeyPath(u"One\\Two words\\3/4"),
            (std::vector<std::u16string>{u"One", u"Two words", u"3/4"}));
}

TEST(SplitKeyPath, RefusesEmptyAndTooLongNamesAndTooManyOfThem) {
  EXPECT_FALSE(SplitKeyPath(u"\\One"));
  EXPECT_FALSE(SplitKeyPath(u"One\\"));
  EXPECT_FALSE(SplitKeyPath(u"One\\\\Two"));
  EXPECT_TRUE(SplitKeyPath(std::u16string(kMaxKeyName, u'n')));
  EXPECT_FALSE(SplitKeyPath(std::u16string(kMaxKeyName + 1, u'n')));
  std::u16string deep = u"n";
  for (std::size_t i = 1; i < kMaxKeyDepth; ++i) deep += u"\\n";
  EXPECT_TRUE(SplitKeyPath(deep));
  EXPECT_FALSE(SplitKeyPath(deep + u"\\n"));
}

TEST(IsWritableName, RefusesControlsAndLoneSurrogates) {
  EXPECT_TRUE(IsWritableName(u""));
  EXPECT_TRUE(IsWritableName(u"\"\\]; \U0001F600"));
  EXPECT_FALSE(IsWritableName(u"a\nb"));
  EXPECT_FALSE(IsWritableName(u"a\x7F"));
  EXPECT_FALSE(IsWritableName(u"\xD83D"));
  EXPECT_FALSE(IsWritableName(u"\xDE00\xD83D"));
}

TEST(RootFromName, KnowsTheFourRootsInAnyCase) {
  EXPECT_EQ(RootFromName(u"hkey_local_machine"), RootFromKey(kHkeyLocalMachine));
  for (std::size_t root = 0; root < kRegistryRoots; ++root)
    EXPECT_EQ(RootFromName(RootName(root)), root);
  EXPECT_FALSE(RootFromName(u"HKLM"));
  EXPECT_FALSE(RootFromName(u""));
  EXPECT_FALSE(RootFromKey(1));
  EXPECT_FALSE(RootFromKey(kHkeyUsers + 1));
}

}  // namespace
}  // namespace tamu::platform
