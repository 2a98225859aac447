#include "text/property.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "core/memory.h"
#include "support/properties.h"

namespace tamu {
namespace {

using testing::OwnedProperty;
using testing::Texts;
using testing::TextsOf;

TEST(PropSetFromText, ParametersAndComponentsInOrder) {
  const OwnedProperty property("a;b;c", "HOME;CHARSET=UTF-8", 5);
  EXPECT_EQ(TextsOf(property->params), Texts({"HOME", "CHARSET=UTF-8"}));
  EXPECT_EQ(TextsOf(property->values), Texts({"a", "b", "c"}));
  EXPECT_EQ(property->flags, static_cast<std::uint32_t>(PROP_CHARSET));
  EXPECT_EQ(property->params->used, 1);
}

TEST(PropSetFromText, ComponentsBeyondTheLimitAreDropped) {
  const OwnedProperty property("a;b;c", "", 2);
  EXPECT_EQ(TextsOf(property->values), Texts({"a", "b"}));
}

TEST(PropSetFromText, WithoutParametersThereIsNoNode) {
  const OwnedProperty property("a", "");
  EXPECT_EQ(property->params, nullptr);
}

TEST(PropSetFromText, EmptyPiecesAreKept) {
  const OwnedProperty property(";a;;", ";HOME;;");
  EXPECT_EQ(TextsOf(property->params), Texts({"", "HOME", "", ""}));
  EXPECT_EQ(TextsOf(property->values), Texts({"", "a", "", ""}));
}

TEST(PropSetFromText, AnEmptyValueIsOneEmptyComponent) {
  const OwnedProperty property("", "");
  EXPECT_EQ(TextsOf(property->values), Texts({""}));
}

TEST(PropSetFromText, EscapedSemicolonsNeverSplitAndBackslashesStay) {
  const OwnedProperty property(R"(a\;b;c\\;d\x;e\)", R"(X=\;Y;Z)");
  EXPECT_EQ(TextsOf(property->values), Texts({R"(a\;b)", R"(c\\)", R"(d\x)", R"(e\)"}));
  EXPECT_EQ(TextsOf(property->params), Texts({R"(X=\;Y)", "Z"}));
}

TEST(PropSetFromText, AnEncodedSemicolonNeverSplits) {
  const OwnedProperty property("a=3Bb", "QUOTED-PRINTABLE");
  EXPECT_EQ(TextsOf(property->values), Texts({"a=3Bb"}));
}

std::uint32_t FlagsOf(const std::string& params) { return OwnedProperty("x", params)->flags; }

TEST(PropSetFromText, AnEncodingCountsWhereverItStandsInAnyCase) {
  EXPECT_EQ(FlagsOf("ENCODING=QUOTED-PRINTABLE"), static_cast<std::uint32_t>(PROP_QP));
  EXPECT_EQ(FlagsOf("quoted-printable"), static_cast<std::uint32_t>(PROP_QP));
  EXPECT_EQ(FlagsOf("HOME;xxQuoted-Printablexx"), static_cast<std::uint32_t>(PROP_QP));
  EXPECT_EQ(FlagsOf("ENCODING=base64"), static_cast<std::uint32_t>(PROP_BASE64));
  EXPECT_EQ(FlagsOf("ENCODING=8Bit"), static_cast<std::uint32_t>(PROP_8BIT));
  EXPECT_EQ(FlagsOf("HOME;charset=x"), static_cast<std::uint32_t>(PROP_CHARSET));
  EXPECT_EQ(FlagsOf("BASE6"), 0U);
}

TEST(PropSetFromText, OfSeveralEncodingsTheFirstOfTheOrderWins) {
  EXPECT_EQ(FlagsOf("8BIT;BASE64;CHARSET=x"),
            static_cast<std::uint32_t>(PROP_BASE64 | PROP_CHARSET));
  EXPECT_EQ(FlagsOf("8BIT;BASE64;QUOTED-PRINTABLE"), static_cast<std::uint32_t>(PROP_QP));
  EXPECT_EQ(FlagsOf("BASE64QUOTED-PRINTABLE"), static_cast<std::uint32_t>(PROP_QP));
}

TEST(PropSetFromText, NothingHappensWithoutOneOfTheArguments) {
  const OwnedProperty property;
  PROP_SetFromText(nullptr, "HOME", 1, property.get());
  PROP_SetFromText("a", nullptr, 1, property.get());
  PROP_SetFromText("a", "HOME", 0, property.get());
  PROP_SetFromText("a", "HOME", 1, nullptr);
  EXPECT_EQ(property->values, nullptr);
  EXPECT_EQ(property->params, nullptr);
}

TEST(PropSetFromText, AMillionComponentsCostNoWalking) {
  const std::uint64_t before = g_list_steps;
  const OwnedProperty property(std::string(1000000, ';'), std::string(1000, ';'));
  EXPECT_EQ(g_list_steps, before);
  EXPECT_EQ(TextsOf(property->values).size(), 1000001U);
}

TEST(PropSetFromText, WhenAnyAllocationFailsThePieceIsMissingAndTheOthersKeepTheirPlaces) {
  const std::size_t before = MEM_LiveBlocks();
  for (std::uint64_t n = 1;; ++n) {
    OwnedProperty property;
    MEM_FailNth(n);
    PROP_SetFromText("a;b;c", "HOME;WORK", 3, property.get());
    const bool struck = MEM_FailureStruck();
    MEM_FailNth(0);
    const Texts values = TextsOf(property->values);
    const Texts whole = {"a", "b", "c"};
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (values[i]) {
        EXPECT_EQ(values[i], whole[i]) << n;
      }
    }
    if (!struck) {
      EXPECT_EQ(values, whole);
      EXPECT_EQ(n, 6U);
      break;
    }
    EXPECT_LT(values.size() + TextsOf(property->params).size(), 6U) << n;
  }
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

TEST(PropSetValue, MissingComponentsBeforeItBecomeEmpty) {
  const OwnedProperty property;
  PROP_SetValue(property.get(), MEM_CopyText("d"), 3);
  EXPECT_EQ(TextsOf(property->values), Texts({std::nullopt, std::nullopt, std::nullopt, "d"}));
  EXPECT_EQ(property->values->used, 1);
}

TEST(PropSetValue, AReplacedTextIsFreedWhereverItCameFrom) {
  const std::size_t before = MEM_LiveBlocks();
  {
    const OwnedProperty property("a;b", "");
    PROP_SetValue(property.get(), MEM_CopyText("x"), 1);
    PROP_SetValue(property.get(), MEM_CopyText("y"), 1);
    EXPECT_EQ(TextsOf(property->values), Texts({"a", "y"}));
  }
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

TEST(PropSetFromText, AParameterThatIsNotStoredSetsNoFlag) {
  const OwnedProperty property;
  MEM_FailNth(1);
  PROP_SetFromText("x", "QUOTED-PRINTABLE;CHARSET=y", 1, property.get());
  MEM_FailNth(0);
  EXPECT_EQ(TextsOf(property->params), Texts({"CHARSET=y"}));
  EXPECT_EQ(property->flags, static_cast<std::uint32_t>(PROP_CHARSET));
}

TEST(PropSetValue, WhenMemoryRunsOutNoEmptyComponentIsLeft) {
  const OwnedProperty property("a", "");
  MemPtr<char> text = MEM_CopyText("d");
  MEM_FailNth(3);
  EXPECT_FALSE(PROP_SetValue(property.get(), std::move(text), 3));
  MEM_FailNth(0);
  EXPECT_EQ(TextsOf(property->values), Texts({"a"}));
}

TEST(PropSetValue, NothingHappensWithoutPropertyOrText) {
  const std::size_t before = MEM_LiveBlocks();
  PROP_SetValue(nullptr, MEM_CopyText("x"), 0);
  const OwnedProperty property("a", "");
  PROP_SetValue(property.get(), nullptr, 0);
  EXPECT_EQ(TextsOf(property->values), Texts({"a"}));
  EXPECT_EQ(MEM_LiveBlocks(), before + 2);
}

TEST(PropAddParam, AppendsACopyOrTheTextItself) {
  const OwnedProperty property;
  PROP_AddParam(property.get(), "HOME");
  MemPtr<char> text = MEM_CopyText("CHARSET=UTF-8");
  const char* const pointer = text.get();
  PROP_AddParam(property.get(), std::move(text));
  EXPECT_EQ(TextsOf(property->params), Texts({"HOME", "CHARSET=UTF-8"}));
  EXPECT_EQ(property->params->next->text.get(), pointer);
}

TEST(PropAddParam, TheListIsUnchangedWhenMemoryRunsOut) {
  const OwnedProperty property;
  PROP_AddParam(property.get(), "HOME");
  MemPtr<char> text = MEM_CopyText("WORK");
  MEM_FailNth(1);
  PROP_AddParam(property.get(), std::move(text));
  MEM_FailNth(1);
  PROP_AddParam(property.get(), "FAX");
  MEM_FailNth(0);
  EXPECT_EQ(TextsOf(property->params), Texts({"HOME"}));
}

TEST(PropFindParam, FindsTheFirstThatContainsTheNeedleInAnyCase) {
  const OwnedProperty property("x", "TYPE=HOME;home;PREF");
  EXPECT_EQ(PROP_FindParam(property->params, "HOME"), property->params);
  EXPECT_EQ(PROP_FindParam(property->params->next, "HOME"), property->params->next);
  EXPECT_STREQ(PROP_FindParam(property->params, "PREF")->text, "PREF");
  EXPECT_EQ(PROP_FindParam(property->params, "WORK"), nullptr);
  EXPECT_EQ(PROP_FindParam(nullptr, "HOME"), nullptr);
}

std::string ValueOf(const char* param, std::size_t size = 300) {
  std::string out(size, '#');
  out.resize(PARAM_GetValue(param, out.data(), size));
  return out;
}

TEST(ParamGetValue, WhatFollowsTheFirstEqualsSign) {
  EXPECT_EQ(ValueOf("CHARSET=UTF-8"), "UTF-8");
  EXPECT_EQ(ValueOf("CHARSET=a=b"), "a=b");
  EXPECT_EQ(ValueOf("CHARSET= UTF-8"), "");
  EXPECT_EQ(ValueOf("CHARSET=UTF-8 x"), "UTF-8");
  EXPECT_EQ(ValueOf("CHARSET=UTF-8\tx"), "UTF-8");
  EXPECT_EQ(ValueOf("CHARSET"), "");
}

TEST(ParamGetValue, QuotesAndSemicolonsBelongToIt) {
  EXPECT_EQ(ValueOf("CHARSET=\"UTF-8\";x"), "\"UTF-8\";x");
}

TEST(ParamGetValue, IsCutAt260CharactersAndAtTheBuffer) {
  const std::string param = "X=" + std::string(400, 'y');
  EXPECT_EQ(ValueOf(param.c_str(), 500), std::string(260, 'y'));
  EXPECT_EQ(ValueOf(param.c_str(), 4), "yyy");
}

}  // namespace
}  // namespace tamu
