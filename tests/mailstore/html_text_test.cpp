#include "mailstore/html_text.h"

#include <gtest/gtest.h>

#include <string>

namespace tamu {
namespace {

std::u16string Text(const std::u16string& html) {
  std::u16string text;
  EXPECT_EQ(HTML_ToText(html.c_str(), &text), 1);
  return text;
}
// Inside of the body.
std::u16string Body(const std::u16string& html) { return Text(u"<body>" + html); }

TEST(HtmlToText, KeepsTheBodysTextAndBreaksAtBr) {
  EXPECT_EQ(Text(u"<html><body>Hi<br>there</body></html>"), u"Hi\r\nthere");
}

TEST(HtmlToText, NullIsNothingAndIsDone) {
  std::u16string text = u"before";
  EXPECT_EQ(HTML_ToText(nullptr, &text), 1);
  EXPECT_EQ(text, u"before");
}

TEST(HtmlToText, AppendsToWhatIsThere) {
  std::u16string text = u"before ";
  EXPECT_EQ(HTML_ToText(u"<body>after", &text), 1);
  EXPECT_EQ(text, u"before after");
  EXPECT_EQ(HTML_ToText(u"", &text), 1);
  EXPECT_EQ(text, u"before after");
}

TEST(HtmlToText, TextOutsideOfTheBodyIsDropped) {
  EXPECT_EQ(Text(u"head<body>in</body>behind"), u"in");
  EXPECT_EQ(Text(u"no body at all"), u"");
}

TEST(HtmlToText, EntitiesAndLineBreaksOutsideOfTheBodyAreKept) {
  EXPECT_EQ(Text(u"a&amp;b<br>c</p>"), u"&\r\n\r\n");
}

TEST(HtmlToText, BodiesNest) { EXPECT_EQ(Text(u"<body>1<body>2</body>3</body>4"), u"123"); }

TEST(HtmlToText, ANegativeDepthKeepsText) { EXPECT_EQ(Text(u"0</body>1<body>2<body>3"), u"13"); }

TEST(HtmlToText, TagsBeginningWithBodyCount) {
  EXPECT_EQ(Text(u"<BoDy bgcolor=red>1</bOdY >2"), u"1");
  EXPECT_EQ(Text(u"<bodywork>1</bodyguard>2"), u"1");
  EXPECT_EQ(Text(u"< body>1"), u"");
  EXPECT_EQ(Text(u"<bod>1"), u"");
}

TEST(HtmlToText, ParagraphsDivisionsAndBreaksBreakTheLine) {
  EXPECT_EQ(Body(u"a</div>b</p>c<br>d<BR/>e</P >f</DIV>g"), u"a\r\nb\r\nc\r\nd\r\ne\r\nf\r\ng");
  EXPECT_EQ(Body(u"a<div>b<p>c</br>d</di>e"), u"abcde");
}

TEST(HtmlToText, TableCellsAndListItemsNeverBreakWhileAClosingPreDoes) {
  EXPECT_EQ(Body(u"a</td>b</TD>c</li>d</LI>e"), u"abcde");
  EXPECT_EQ(Body(u"a<pre>b</pre>c</param>d"), u"ab\r\nc\r\nd");
}

TEST(HtmlToText, OnlyTheBeginningOfATagCounts) {
  EXPECT_EQ(Body(u"a<brother>b</paragraph>c</divide>d"), u"a\r\nb\r\nc\r\nd");
}

TEST(HtmlToText, OtherTagsAreDropped) {
  EXPECT_EQ(Body(u"a<b>b</b><>c</>d<!-- x -->e<b\nr>f"), u"abcdef");
}

TEST(HtmlToText, ATagEndsAtTheFirstGreaterSign) {
  EXPECT_EQ(Body(u"<a title='1>2'>x"), u"2'>x");
  EXPECT_EQ(Body(u"<<br>x"), u"x");
  EXPECT_EQ(Body(u"1 > 0"), u"1 > 0");
}

TEST(HtmlToText, EntitiesAreDecoded) {
  EXPECT_EQ(Body(u"&lt;b&gt;&nbsp;M&uuml;ller&#8364;&#x20AC;"),
            u"<b>\u00A0M\u00FCller\u20AC\u20AC");
  EXPECT_EQ(Body(u"&Eacute;&eacute;&EACUTE;."), u"\u00C9\u00E9 .");
  EXPECT_EQ(Body(u"a&;b"), u"ab");
}

TEST(HtmlToText, ADecodedCharacterIsNotReadAgain) {
  EXPECT_EQ(Body(u"&lt;br&gt;&amp;amp;&#10;  x"), u"<br>&amp;\n  x");
}

TEST(HtmlToText, ANumericEntityOf0AppendsIt) {
  EXPECT_EQ(Body(u"a&#0;b&#X41;c"), std::u16string(u"a\0b\0c", 5));
}

TEST(HtmlToText, AnEntityEndsAtTheFirstSemicolonHoweverFar) {
  EXPECT_EQ(Body(u"a & b <br> c; d"), u"a   d");
}

TEST(HtmlToText, WhatIsLeftOpenIsDropped) {
  EXPECT_EQ(Body(u"a<br"), u"a");
  EXPECT_EQ(Body(u"a&amp"), u"a");
  EXPECT_EQ(Body(u"a &b; c & d"), u"a   c ");
}

TEST(HtmlToText, ALineBreakOfTheSourceVanishesWithItsIndentation) {
  EXPECT_EQ(Body(u"Hello\n    world"), u"Helloworld");
  EXPECT_EQ(Body(u"Hello\r\n\t \tworld"), u"Helloworld");
  EXPECT_EQ(Body(u"a \n\n \n  b"), u"a b");
}

TEST(HtmlToText, BehindTheIndentationEverythingIsReadAsUsual) {
  EXPECT_EQ(Body(u"a\n  <br>\n  &amp;\n  b"), u"a\r\n&b");
}

TEST(HtmlToText, ACarriageReturnEndsTheIndentation) { EXPECT_EQ(Body(u"a\n\r  b\rc"), u"a  bc"); }

TEST(HtmlToText, InsideOfTagsAndEntitiesLineBreaksAreTheirText) {
  EXPECT_EQ(Body(u"a<\nbr>b&\namp;c"), u"ab c");
}

TEST(HtmlToText, TheShortestInputsGiveNoMoreThanTheyAre) {
  std::u16string html;
  std::u16string expected;
  for (int i = 0; i < 1000; ++i) {
    html += u"<br></p>&#9;";
    expected += u"\r\n\r\n\t";
  }
  EXPECT_EQ(Text(html), expected);
}

TEST(HtmlToText, LoneSurrogatesPass) {
  const std::u16string lone = {u'a', char16_t{0xD800}, u'b', char16_t{0xDC00}};
  EXPECT_EQ(Body(lone), lone);
}

}  // namespace
}  // namespace tamu
