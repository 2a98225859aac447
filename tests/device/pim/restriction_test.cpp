#include "device/pim/restriction.h"

#include <gtest/gtest.h>

#include <string>

#include "device/pim/item_state.h"

namespace tamu::device {
namespace {

namespace hr = platform::hr;

ItemRecord Contact(const std::u16string& last_name, const std::u16string& first_name = u"") {
  ItemRecord item = EmptyItem(ItemKind::kContact);
  item.oid = 7;
  TextOf(item, static_cast<std::size_t>(ContactProperty::LastName)) = last_name;
  TextOf(item, static_cast<std::size_t>(ContactProperty::FirstName)) = first_name;
  return item;
}

ItemRecord Task(double due, std::int32_t importance, bool complete) {
  ItemRecord item = EmptyItem(ItemKind::kTask);
  item.oid = -3;
  DateOf(item, static_cast<std::size_t>(TaskProperty::DueDate)) = due;
  NumberOf(item, static_cast<std::size_t>(TaskProperty::Importance)) = importance;
  NumberOf(item, static_cast<std::size_t>(TaskProperty::Complete)) =
      complete ? platform::kVariantTrue : platform::kVariantFalse;
  return item;
}

bool Matches(const ItemRecord& item, const std::u16string& text) {
  Restriction restriction;
  EXPECT_EQ(Restriction::Parse(item.kind, text, &restriction), hr::kOk);
  return restriction.Matches(item);
}

bool IsGood(const std::u16string& text, ItemKind kind = ItemKind::kContact) {
  Restriction restriction;
  const platform::HRESULT result = Restriction::Parse(kind, text, &restriction);
  EXPECT_TRUE(result == hr::kOk || result == hr::kInvalidArgument);
  return result == hr::kOk;
}

TEST(Restriction, TextComparesWithoutRegardToCaseOverUnicode) {
  EXPECT_TRUE(Matches(Contact(u"\u00c4RGER"), u"[LastName] = \"\u00e4rger\""));
  EXPECT_TRUE(Matches(Contact(u"\u03a3\u03a3"), u"[lastname]=\"\u03c3\u03c2\""));
  EXPECT_TRUE(Matches(Contact(u"\U00010400"), u"[LastName]=\"\U00010428\""));
  EXPECT_FALSE(Matches(Contact(u"arger"), u"[LastName]=\"\u00e4rger\""));
  EXPECT_FALSE(Matches(Contact(u"ab"), u"[LastName]=\"abc\""));
}

TEST(Restriction, EveryOperatorCompares) {
  const ItemRecord item = Contact(u"Moss");
  struct Case {
    const char16_t* op;
    bool less;
    bool equal;
    bool greater;
  };
  const Case kCases[] = {{u"=", false, true, false}, {u"<>", true, false, true},
                         {u"<", true, false, false}, {u"<=", true, true, false},
                         {u">", false, false, true}, {u">=", false, true, true}};
  for (const Case& each : kCases) {
    const std::u16string begin = std::u16string(u"[LastName] ") + each.op;
    EXPECT_EQ(Matches(item, begin + u" \"moth\""), each.less);
    EXPECT_EQ(Matches(item, begin + u"\"MOSS\""), each.equal);
    EXPECT_EQ(Matches(item, begin + u" \"MOS\""), each.greater);
  }
}

TEST(Restriction, EmptyFieldsNeverMatch) {
  for (const char16_t* op : {u"=", u"<>", u"<", u"<=", u">", u">="}) {
    const std::u16string name = u"[MiddleName]" + std::u16string(op);
    EXPECT_FALSE(Matches(Contact(u"x"), name + u"\"a\""));
    EXPECT_FALSE(Matches(Contact(u"x"), name + u"\"\""));
    const std::u16string due = u"[DueDate]" + std::u16string(op) + u"\"1/1/2004\"";
    EXPECT_FALSE(Matches(Task(platform::kNoDate, 1, false), due));
  }
}

TEST(Restriction, EmptyRestrictionHoldsForAll) {
  EXPECT_TRUE(Matches(Contact(u""), u""));
  EXPECT_TRUE(Matches(Contact(u""), u" \r\n\t "));
}

TEST(Restriction, JoinsAreEvaluatedFromLeftToRight) {
  const ItemRecord item = Contact(u"a", u"b");
  const std::u16string yes = u"[LastName]=\"a\"";
  const std::u16string no = u"[LastName]=\"z\"";
  EXPECT_TRUE(Matches(item, yes + u" AND " + yes));
  EXPECT_FALSE(Matches(item, yes + u" and " + no));
  // With AND before OR this would hold.
  EXPECT_FALSE(Matches(item, yes + u" OR " + no + u" AND " + no));
  EXPECT_TRUE(Matches(item, yes + u" OR (" + no + u" AND " + no + u")"));
  EXPECT_TRUE(Matches(item, no + u" AND " + no + u" OR " + yes));
  EXPECT_FALSE(Matches(item, no + u" AND(" + no + u" oR " + yes + u")"));
  EXPECT_TRUE(Matches(item, u"((" + yes + u")) AND ((" + no + u") OR (" + yes + u" ) )"));
}

TEST(Restriction, ClosingQuoteIsTheOneThatEndsTheTerm) {
  EXPECT_TRUE(Matches(Contact(u"a\"b"), u"[LastName]=\"a\"b\""));
  EXPECT_TRUE(Matches(Contact(u"\""), u"[LastName]=\"\"\""));
  EXPECT_TRUE(
      Matches(Contact(u"a\" AND b", u"c"), u"[LastName]=\"a\" AND b\" AND [FirstName]=\"c\""));
  EXPECT_TRUE(Matches(Contact(u"a\" OR", u"c"), u"[LastName]=\"a\" OR\" AND [FirstName]=\"c\""));
  EXPECT_TRUE(Matches(Contact(u"a\")"), u"[LastName]=\"a\")\""));
  EXPECT_TRUE(Matches(Contact(u"a"), u"([LastName]=\"a\" )"));
  EXPECT_TRUE(Matches(Contact(u"a", u"b"), u"[LastName]=\"a\"AND([FirstName]=\"b\")"));
  EXPECT_TRUE(Matches(Contact(u"a\" ANDROID [x", u"b"), u"[LastName]=\"a\" ANDROID [x\""));
}

TEST(Restriction, BareWordsAreText) {
  EXPECT_TRUE(Matches(Contact(u"ada@example.com"), u"[LastName] = ada@example.com"));
  EXPECT_TRUE(Matches(Contact(u"a", u"b"), u"([LastName] = a) AND [FirstName] = b "));
  EXPECT_TRUE(Matches(Contact(u"a)"), u"[LastName]=a)"));
}

TEST(Restriction, NumbersFlagsAndIdsCompare) {
  const ItemRecord task = Task(38000.5, 2, true);
  EXPECT_TRUE(Matches(task, u"[Importance] > 1"));
  EXPECT_FALSE(Matches(task, u"[Importance] = \"1\""));
  EXPECT_TRUE(Matches(task, u"[Oid] = -3"));
  EXPECT_TRUE(Matches(task, u"[oid] < +1"));
  for (const char16_t* yes : {u"TRUE", u"true", u"-1", u"1"}) {
    EXPECT_TRUE(Matches(task, u"[Complete] = " + std::u16string(yes)));
    EXPECT_FALSE(Matches(task, u"[IsRecurring] = " + std::u16string(yes)));
    EXPECT_FALSE(Matches(task, u"[Complete] <> " + std::u16string(yes)));
  }
  for (const char16_t* no : {u"FALSE", u"False", u"0"}) {
    EXPECT_FALSE(Matches(task, u"[Complete] = " + std::u16string(no)));
  }
  EXPECT_FALSE(IsGood(u"[Complete] = yes", ItemKind::kTask));
  for (const char16_t* bad : {u"x", u"1.5", u"2147483648", u"-2147483649", u"99999999999", u"-"}) {
    EXPECT_FALSE(IsGood(u"[Importance] = " + std::u16string(bad), ItemKind::kTask));
  }
  EXPECT_TRUE(IsGood(u"[Importance] = -2147483648", ItemKind::kTask));
}

TEST(Restriction, DatesCompareToTheSecond) {
  // 14 January 2004, 12:00.
  const ItemRecord task = Task(38000.5, 1, false);
  for (const char16_t* same : {u"1/14/2004 12:00", u"01/14/2004 12:00:00", u"2004-01-14T12:00",
                               u"2004-01-14 12:00:00", u"2004-1-14  12:0"}) {
    EXPECT_TRUE(Matches(task, u"[DueDate] = \"" + std::u16string(same) + u"\""));
  }
  EXPECT_TRUE(Matches(task, u"[DueDate] > \"1/14/2004\""));
  EXPECT_TRUE(Matches(task, u"[DueDate] < \"2004-01-14 12:00:01\""));
  EXPECT_TRUE(Matches(task, u"[DueDate] > 1/14/2004"));
  EXPECT_TRUE(Matches(Task(38000.5 + 1e-9, 1, false), u"[DueDate] = \"1/14/2004 12:00\""));
  for (const char16_t* bad :
       {u"", u"x", u"13/1/2004", u"2/30/2004", u"1/14", u"1/14/2004 24:00", u"1/14/2004 12",
        u"1/14/2004 12:00 PM", u"2004-01-14T12:00Z", u"1/14/0004", u"14.1.2004"}) {
    EXPECT_FALSE(IsGood(u"[DueDate] = \"" + std::u16string(bad) + u"\"", ItemKind::kTask));
  }
}

TEST(Restriction, WhatIsNoRestrictionIsRefused) {
  for (const char16_t* bad : {u"LastName=\"a\"",
                              u"[LastName=\"a\"",
                              u"[LastName]\"a\"",
                              u"[LastName]=",
                              u"[LastName]=\"a",
                              u"[LastName]==\"a\"",
                              u"[LastName]=\"a\" AND",
                              u"[LastName]=a XOR [LastName]=a",
                              u"AND [LastName]=\"a\"",
                              u"[LastName]=a [LastName]=a",
                              u"()",
                              u"([LastName]=\"a\"",
                              u"[LastName]=\"a\")",
                              u"[]=\"a\"",
                              u"[Importance]=1",
                              u"[IsRecurring]=0",
                              u"[ItemId]=1",
                              u"[BodyInk]=\"a\"",
                              u"NOT [LastName]=\"a\"",
                              u"[LastName] LIKE \"a\"",
                              u"]",
                              u"\""}) {
    EXPECT_FALSE(IsGood(bad)) << std::string(bad, bad + std::u16string_view(bad).size());
  }
  EXPECT_FALSE(IsGood(u"[ReminderTime]=\"1/1/2004\"", ItemKind::kTask));
}

TEST(Restriction, DepthIsBounded) {
  const auto nested = [](std::size_t depth) {
    return std::u16string(depth, u'(') + u"[LastName]=\"a\"" + std::u16string(depth, u')');
  };
  EXPECT_TRUE(Matches(Contact(u"a"), nested(Restriction::kMaxDepth)));
  EXPECT_FALSE(IsGood(nested(Restriction::kMaxDepth + 1)));
  EXPECT_FALSE(IsGood(std::u16string(1 << 20, u'(')));
  // A left side waits in every parenthesis.
  std::u16string deep;
  for (std::size_t i = 0; i < Restriction::kMaxDepth; ++i) deep += u"[LastName]=\"z\" OR (";
  deep += u"[LastName]=\"a\"" + std::u16string(Restriction::kMaxDepth, u')');
  EXPECT_TRUE(Matches(Contact(u"a"), deep));
  EXPECT_FALSE(Matches(Contact(u"b"), deep));
}

TEST(Restriction, BigOnesAreReadInOnePass) {
  std::u16string many = u"[LastName]=\"a\"";
  for (int i = 0; i < 50000; ++i) many += u" OR [LastName]=\"b\"";
  EXPECT_TRUE(Matches(Contact(u"b"), many));
  std::u16string value;
  for (int i = 0; i < 200000; ++i) value += u"\"  ) ";
  EXPECT_TRUE(Matches(Contact(value), u"[LastName]=\"" + value + u"\""));
  EXPECT_TRUE(Matches(Contact(value), u"(([LastName]=\"" + value + u"\"))"));
}

TEST(Restriction, OnlyChainsOfEqualTextsNarrowASearch) {
  const auto count = [](const std::u16string& text) {
    Restriction restriction;
    EXPECT_EQ(Restriction::Parse(ItemKind::kContact, text, &restriction), hr::kOk);
    std::vector<SearchTerm> terms;
    restriction.AppendSearchTerms(&terms);
    for (const SearchTerm& term : terms) {
      EXPECT_FALSE(term.exact);
      EXPECT_EQ(term.text, u"Aa");
      EXPECT_EQ(term.property, static_cast<std::size_t>(ContactProperty::LastName));
    }
    return terms.size();
  };
  EXPECT_EQ(count(u"[LastName]=\"Aa\""), 1U);
  EXPECT_EQ(count(u"[LastName]=\"Aa\" AND ([FirstName]>\"b\" AND [LastName]=\"Aa\")"), 2U);
  EXPECT_EQ(count(u"[Birthday]=\"1/1/2004\" AND [Oid]=4"), 0U);
  EXPECT_EQ(count(u"[LastName]=\"Aa\" OR [LastName]=\"Aa\""), 0U);
  EXPECT_EQ(count(u""), 0U);
}

}  // namespace
}  // namespace tamu::device
