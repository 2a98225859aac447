#include "text/utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace tamu {
namespace {

std::string FromWide(const std::u16string& text) {
  std::string out(text.size() * 4 + 1, '#');
  const std::size_t count =
      UTF8_FromWide(text.data(), static_cast<std::int32_t>(text.size()), out.data(), out.size());
  return count == 0 ? "failed" : out.substr(0, count - 1);
}
std::u16string ToWide(const std::string& bytes) {
  std::u16string out(bytes.size() + 1, u'#');
  out.resize(
      UTF8_ToWide(bytes.data(), static_cast<std::int32_t>(bytes.size()), out.data(), out.size()));
  return out;
}

TEST(Utf8FromWide, ShortFormsOfOneAndTwoBytes) {
  EXPECT_EQ(FromWide(u"a\u007F"), "a\x7F");
  EXPECT_EQ(FromWide(u"\u0080\u07FF"), "\xC2\x80\xDF\xBF");
}

// Three bytes begin at U+1000 only. Kept on purpose.
TEST(Utf8FromWide, UnitsBelow1000HexTakeTwoBytes) {
  EXPECT_EQ(FromWide(u"\u0800"), "\xE0\x80");
  EXPECT_EQ(FromWide(u"\u0FFF"), "\xFF\xBF");
  EXPECT_EQ(FromWide(u"\u1000"), "\xE1\x80\x80");
  EXPECT_EQ(FromWide(u"\uFFFF"), "\xEF\xBF\xBF");
}

TEST(Utf8FromWide, ASurrogateFailsTheWholeConversion) {
  EXPECT_EQ(FromWide(u"ab\xD800"), "failed");
  EXPECT_EQ(FromWide(u"\xDFFF"), "failed");
}

TEST(Utf8FromWide, MissingArgumentsAndEmptyTextGive0) {
  char out[4];
  EXPECT_EQ(UTF8_FromWide(nullptr, -1, out, 4), 0U);
  EXPECT_EQ(UTF8_FromWide(u"a", -1, nullptr, 4), 0U);
  EXPECT_EQ(UTF8_FromWide(u"a", -1, out, 0), 0U);
  EXPECT_EQ(UTF8_FromWide(u"", -1, out, 4), 0U);
}

TEST(Utf8FromWide, TheResultIsOneMoreThanTheBytes) {
  char out[8];
  EXPECT_EQ(UTF8_FromWide(u"ab", -1, out, sizeof out), 3U);
  EXPECT_STREQ(out, "ab");
}

TEST(Utf8FromWide, ASequenceIsCutAtTheBuffersEndAndTheRestIsZero) {
  char out[5] = {'#', '#', '#', '#', '#'};
  EXPECT_EQ(UTF8_FromWide(u"a\u1000", -1, out, 4), 4U);
  EXPECT_EQ(std::string(out, 5), std::string("a\xE1\x80\0#", 5));
}

TEST(Utf8ToWide, SequencesByTheirLead) {
  EXPECT_EQ(ToWide("a"), u"a");
  EXPECT_EQ(ToWide("\xC3\xBC"), u"\u00FC");
  EXPECT_EQ(ToWide("\xE2\x82\xAC"), u"\u20AC");
}

TEST(Utf8ToWide, LeadsFromF0OnAreThreeByteLeads) { EXPECT_EQ(ToWide("\xF0\x9F\x98"), u"\u07D8"); }

TEST(Utf8ToWide, ContinuationsAreNotChecked) {
  EXPECT_EQ(ToWide("\xC3"
                   "A"),
            u"\u00C1");
}

TEST(Utf8ToWide, AContinuationInLeadPositionEndsIt) {
  EXPECT_EQ(ToWide("ab\x80"
                   "cd"),
            u"ab");
}

TEST(Utf8ToWide, ACutSequenceReadsZeros) {
  EXPECT_EQ(ToWide("\xE2\x82"), u"\u2080");
  EXPECT_EQ(ToWide("\xC3"), u"\u00C0");
}

TEST(Utf8ToWide, TheBufferEndsItAndTheRestIsZero) {
  char16_t out[3] = {u'#', u'#', u'#'};
  EXPECT_EQ(UTF8_ToWide("abc", -1, out, 2), 2U);
  EXPECT_EQ(std::u16string(out, 3), std::u16string(u"ab#"));
  EXPECT_EQ(UTF8_ToWide("a", -1, out, 3), 1U);
  EXPECT_EQ(out[1], 0);
  EXPECT_EQ(out[2], 0);
}

TEST(Utf8ToWide, MissingArgumentsGive0) {
  char16_t out[2];
  EXPECT_EQ(UTF8_ToWide(nullptr, -1, out, 2), 0U);
  EXPECT_EQ(UTF8_ToWide("a", -1, nullptr, 2), 0U);
}

}  // namespace
}  // namespace tamu
