#include "platform/linux/registry_value_text.h"

#include <gtest/gtest.h>

#include "platform/registry.h"

namespace tamu::platform {
namespace {

using Bytes = std::vector<std::uint8_t>;

RegistryEntry Parsed(std::u16string_view text) {
  RegistryEntry entry;
  const char* error = ParseRegistryEntry(text, 0, entry);
  EXPECT_EQ(error, nullptr) << error;
  return entry;
}

bool IsDamaged(std::u16string_view text) {
  RegistryEntry entry;
  return ParseRegistryEntry(text, 0, entry) != nullptr;
}

RegistryData String(std::u16string_view text) {
  RegistryData data{kRegSz, {}};
  for (const char16_t unit : text) {
    data.bytes.push_back(static_cast<std::uint8_t>(unit & 0xFF));
    data.bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
  }
  data.bytes.insert(data.bytes.end(), 2, 0);
  return data;
}

TEST(ParseRegistryEntry, ReadsStringsWithEscapes) {
  const RegistryEntry entry = Parsed(u"\"A \\\"name\\\"\"=\"C:\\\\x \\\"y\\\" ; [z]\"\r\n");
  EXPECT_EQ(entry.name, u"A \"name\"");
  EXPECT_EQ(entry.data.type, kRegSz);
  EXPECT_EQ(entry.data.bytes, String(u"C:\\x \"y\" ; [z]").bytes);
  EXPECT_FALSE(entry.removal);
  EXPECT_EQ(Parsed(u"\"a\"=\"\"").data.bytes, (Bytes{0, 0}));
}

TEST(ParseRegistryEntry, ABackslashThatEscapesNothingIsOne) {
  EXPECT_EQ(Parsed(u"\"a\"=\"C:\\temp\"").data.bytes, String(u"C:\\temp").bytes);
}

TEST(ParseRegistryEntry, ReadsNumbersLeastSignificantByteFirst) {
  EXPECT_EQ(Parsed(u"\"n\"=dword:7f000001").data.bytes, (Bytes{1, 0, 0, 0x7F}));
  EXPECT_EQ(Parsed(u"\"n\"=DWORD:A").data.bytes, (Bytes{10, 0, 0, 0}));
  EXPECT_EQ(Parsed(u"\"n\"=dword:FFFFFFFF").data.type, kRegDword);
}

TEST(ParseRegistryEntry, ReadsHexadecimalDataOverSeveralLines) {
  const RegistryEntry entry =
      Parsed(u"@=hex(7):61,00,\\\r\n  62,0,\\\r\n  00\r\n\"next\"=\"x\"\r\n");
  EXPECT_EQ(entry.name, u"");
  EXPECT_EQ(entry.data.type, 7U);
  EXPECT_EQ(entry.data.bytes, (Bytes{0x61, 0, 0x62, 0, 0}));
  EXPECT_EQ(Parsed(u"\"b\"=hex:").data.type, 3U);
  EXPECT_TRUE(Parsed(u"\"b\"=hex:").data.bytes.empty());
  EXPECT_EQ(Parsed(u"\"b\"=hex(100000b):ff").data.type, 0x0100000BU);
}

TEST(ParseRegistryEntry, AStringInHexadecimalGetsItsTerminator) {
  EXPECT_EQ(Parsed(u"@=hex(1):41,00").data.bytes, (Bytes{0x41, 0, 0, 0}));
  EXPECT_EQ(Parsed(u"@=hex(1):41,00,00,00").data.bytes, (Bytes{0x41, 0, 0, 0}));
  EXPECT_EQ(Parsed(u"@=hex(1):").data.bytes, (Bytes{0, 0}));
  EXPECT_TRUE(IsDamaged(u"@=hex(1):41,00,00"));
}

TEST(ParseRegistryEntry, ReadsRemovals) {
  EXPECT_TRUE(Parsed(u"\"gone\"=-").removal);
  EXPECT_TRUE(Parsed(u"@=- ; comment").removal);
}

TEST(ParseRegistryEntry, EndsBehindTheEntrySoThatACommentStays) {
  EXPECT_EQ(Parsed(u"\"a\"=\"b\"  ; why\r\n").end, 7U);
  EXPECT_EQ(Parsed(u"\"a\"=dword:1\t;").end, 11U);
  EXPECT_EQ(Parsed(u"\"a\" = hex:01,02 ; why").end, 15U);
}

TEST(ParseRegistryEntry, ATextMayHoldLineEndsButSwallowsNoOtherEntry) {
  EXPECT_EQ(Parsed(u"\"a\"=\"one\r\ntwo\"\r\n").data.bytes, String(u"one\r\ntwo").bytes);
  EXPECT_EQ(Parsed(u"\"a\"=\"one\n\"\n").data.bytes, String(u"one\n").bytes);
  EXPECT_EQ(Parsed(u"\"a\"=\"one\n[two]\n@three\"\n").data.bytes,
            String(u"one\n[two]\n@three").bytes);
  EXPECT_TRUE(IsDamaged(u"\"a\"=\"one\r\n\"b\"=\"two\"\r\n"));
  EXPECT_TRUE(IsDamaged(u"\"a\"=\"one\n[HKEY_USERS\\k]\n\"b\"=\"two\"\n"));
  EXPECT_TRUE(IsDamaged(u"\"a\"=\"one\n@=\"two\"\n"));
  EXPECT_TRUE(IsDamaged(u"\"a\"=\"one\n"));
}

TEST(ParseRegistryEntry, AnInterruptedContinuationSwallowsNoOtherEntry) {
  RegistryEntry entry;
  const std::u16string text = u"\"a\"=hex:01,\\\r\n  02,\\\r\n\"b\"=\"x\"\r\n";
  EXPECT_NE(ParseRegistryEntry(text, 0, entry), nullptr);
  EXPECT_LT(entry.end, text.find(u"\"b\""));
  EXPECT_GT(entry.end, text.find(u"  02"));
}

TEST(ParseRegistryEntry, TellsDamage) {
  for (const std::u16string_view text : {u"\"a",
                                         u"\"a\"",
                                         u"\"a\"=",
                                         u"\"a\"=x",
                                         u"\"a\"=\"b",
                                         u"\"a\"=\"b\"c",
                                         u"\"a\"=dword:",
                                         u"\"a\"=dword:g",
                                         u"\"a\"=dword:123456789",
                                         u"\"a\"=dword:1 2",
                                         u"\"a\"=hex:1,",
                                         u"\"a\"=hex:,1",
                                         u"\"a\"=hex:123",
                                         u"\"a\"=hex:1 2",
                                         u"\"a\"=hex(",
                                         u"\"a\"=hex():1",
                                         u"\"a\"=hex(7:1",
                                         u"\"a\"=hex(7)",
                                         u"\"a\"=hex:1,\\",
                                         u"\"a\"=--",
                                         u"@",
                                         u"@x=\"\"",
                                         u"\"a\nb\"=\"\""}) {
    EXPECT_TRUE(IsDamaged(text)) << std::string(text.begin(), text.end());
  }
  EXPECT_TRUE(IsDamaged(std::u16string_view(u"\"a\"=\"b\0\"", 8)));
}

TEST(FormatRegistryEntry, WritesStringsQuotedAndNumbersAsNumbers) {
  EXPECT_EQ(FormatRegistryEntry(u"a\\\"b", String(u"\"C:\\x\" \u00E9"), u"\n"),
            u"\"a\\\\\\\"b\"=\"\\\"C:\\\\x\\\" \u00E9\"");
  EXPECT_EQ(FormatRegistryEntry(u"", {kRegDword, {1, 0, 0, 0x7F}}, u"\n"), u"@=dword:7f000001");
  EXPECT_EQ(FormatRegistryEntry(u"a", {3, {1, 0xAB}}, u"\n"), u"\"a\"=hex:01,ab");
  EXPECT_EQ(FormatRegistryEntry(u"a", {3, {}}, u"\n"), u"\"a\"=hex:");
  EXPECT_EQ(FormatRegistryEntry(u"a", {kRegDword, {1}}, u"\n"), u"\"a\"=hex(4):01");
}

TEST(FormatRegistryEntry, WhatAQuotedTextCannotHoldIsHexadecimal) {
  EXPECT_EQ(FormatRegistryEntry(u"a", String(u"x\n"), u"\n"), u"\"a\"=hex(1):78,00,0a,00,00,00");
  EXPECT_EQ(FormatRegistryEntry(u"a", String(u"\xD800"), u"\n"), u"\"a\"=hex(1):00,d8,00,00");
  EXPECT_EQ(FormatRegistryEntry(u"a", String(std::u16string(1, u'\0')), u"\n"),
            u"\"a\"=hex(1):00,00,00,00");
}

TEST(FormatRegistryEntry, LongDataIsFoldedAndReadsBack) {
  RegistryData data{0xABCDEF01U, {}};
  for (int i = 0; i < 1000; ++i) data.bytes.push_back(static_cast<std::uint8_t>(i * 7));
  const std::u16string text = FormatRegistryEntry(u"name", data, u"\r\n");
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = LineFeedFrom(text, at);
    EXPECT_LE(end - at, 80U);
    at = end + 1;
  }
  const RegistryEntry entry = Parsed(text);
  EXPECT_EQ(entry.data.type, data.type);
  EXPECT_EQ(entry.data.bytes, data.bytes);
  EXPECT_EQ(entry.end, text.size());
}

TEST(FormatRegistryEntry, EveryUnitInAStringReadsBack) {
  for (std::uint32_t unit = 0; unit < 0x10000; ++unit) {
    const RegistryData data = String(std::u16string{u'"', static_cast<char16_t>(unit), u'\\'});
    const RegistryEntry entry = Parsed(FormatRegistryEntry(u"n", data, u"\n"));
    ASSERT_EQ(entry.data.bytes, data.bytes) << unit;
    ASSERT_EQ(entry.data.type, kRegSz) << unit;
  }
}

}  // namespace
}  // namespace tamu::platform
