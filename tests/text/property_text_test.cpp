#include "text/property_text.h"

#include <gtest/gtest.h>

#include <string>

#include "core/memory.h"
#include "platform/code_pages.h"
#include "support/charset_setup.h"
#include "support/properties.h"
#include "text/charset.h"

namespace tamu {
namespace {

using testing::OwnedProperty;
using testing::Texts;
using testing::TextsOf;

// Every test starts without registry values, in a locale of code page 1252.
class PropertyText : public testing::CharsetSetup {
 protected:
  static std::u16string Wide(const OwnedProperty& property, std::uint32_t index = 0) {
    platform::BStr text(platform::SysAllocString(u"before"));
    PROP_GetWide(property.get(), index, &text);
    return std::u16string(text.view());
  }
  static std::u16string Wide(const std::string& value, const std::string& params) {
    return Wide(OwnedProperty(value, params));
  }
  static std::u16string Text(const char* value, const char* charset, const char* encoding) {
    platform::BStr text;
    TEXT_ToWide(value, charset, encoding, &text);
    return std::u16string(text.view());
  }
};
using PropGetWide = PropertyText;
using PropSetWide = PropertyText;
using TextToWide = PropertyText;

TEST_F(PropGetWide, TheNamedCharsetDecides) {
  EXPECT_EQ(Wide("\x80", "CHARSET=iso-8859-1"), u"\u20AC");
  EXPECT_EQ(Wide("\xA4", "CHARSET=ISO-8859-15"), u"\u20AC");
  EXPECT_EQ(Wide("\xC3\xBC", "CHARSET=UTF-8"), u"\u00FC");
  EXPECT_EQ(Wide("\x93\xFA", "CHARSET=SHIFT-JIS"), u"\u65E5");
}

TEST_F(PropGetWide, AnUnknownCharsetIsTheInputCodePage) {
  EXPECT_EQ(Wide("\x80", "CHARSET=FOO"), u"\u20AC");
}

TEST_F(PropGetWide, QuotesBelongToTheCharsetNameWhichIsThenUnknown) {
  EXPECT_EQ(Wide("\xC3\xBC", "CHARSET=\"UTF-8\""), u"\u00C3\u00BC");
}

TEST_F(PropGetWide, WithoutACharsetItIsTheInputCodePage) {
  EXPECT_EQ(Wide("M\xFCller", ""), u"M\u00FCller");
  Configure("UTF-8", "");
  EXPECT_EQ(Wide("M\xC3\xBCller", ""), u"M\u00FCller");
}

TEST_F(PropGetWide, QuotedPrintableIsDecodedWhereverItIsDeclared) {
  EXPECT_EQ(Wide("M=FCller", "ENCODING=QUOTED-PRINTABLE"), u"M\u00FCller");
  EXPECT_EQ(Wide("M=FCller", "quoted-printable"), u"M\u00FCller");
  EXPECT_EQ(Wide("M=FCller", ""), u"M=FCller");
  OwnedProperty added_later("M=FCller", "");
  PROP_AddParam(added_later.get(), "Quoted-Printable");
  EXPECT_EQ(Wide(added_later), u"M\u00FCller");
}

TEST_F(PropGetWide, AnEncodedLineBreakIsOneWithoutAnyEncoding) {
  EXPECT_EQ(Wide("Line1=0D=0ALine2", ""), u"Line1\r\nLine2");
  EXPECT_EQ(Wide("a=0D=0Ab=41=0D=0A", ""), u"a\r\nb=41\r\n");
  EXPECT_EQ(Wide("a=0Ab", ""), u"a=0Ab");
}

TEST_F(PropGetWide, BackslashesAreRemovedAfterDecoding) {
  EXPECT_EQ(Wide(R"(a\;b\\c\nd)", ""), u"a;b\\cnd");
  EXPECT_EQ(Wide("a=5C=3Bb", "QUOTED-PRINTABLE"), u"a;b");
  EXPECT_EQ(Wide("ab\\", ""), u"ab");
  EXPECT_EQ(Wide("\\", ""), u"");
}

TEST_F(PropGetWide, BackslashesOfShiftJisTrailBytesAreNotEscapes) {
  EXPECT_EQ(Wide("\x95\x5C", "CHARSET=SHIFT-JIS"), u"\u8868");
}

TEST_F(PropGetWide, MissingComponentsAreEmpty) {
  const OwnedProperty property("a;b", "");
  EXPECT_EQ(Wide(property, 1), u"b");
  EXPECT_EQ(Wide(property, 2), u"");
  platform::BStr text(platform::SysAllocString(u"before"));
  PROP_GetWide(nullptr, 0, &text);
  EXPECT_TRUE(text.empty());
  PROP_SetValue(property.get(), MEM_CopyText("d"), 3);
  EXPECT_EQ(Wide(property, 2), u"");
  EXPECT_EQ(Wide(property, 3), u"d");
}

TEST_F(PropGetWide, TheFirstConversionSettlesTheCodePage) {
  const OwnedProperty property("\x80;\x80", "CHARSET=ISO-8859-1");
  EXPECT_EQ(property->code_page, 0U);
  Wide(property, 0);
  EXPECT_EQ(property->code_page, 1252U);
  property->code_page = 850 + 2;  // 852
  EXPECT_EQ(Wide(property, 1), u"\u00C7");
}

TEST_F(PropGetWide, AMissingComponentSettlesNothing) {
  const OwnedProperty property("a", "");
  Wide(property, 5);
  EXPECT_EQ(property->code_page, 0U);
}

TEST_F(PropGetWide, ACodePageThePlatformLacksIsReadAsTheAnsiOne) {
  EXPECT_EQ(Wide("\x80", "CHARSET=_AUTODETECT"), u"\u20AC");
}

TEST_F(PropGetWide, Utf8ThatThePlatformLacksIsDecodedByTheLibrary) {
  const platform::ScopedOverride<std::int32_t(std::uint32_t)> without(
      platform::IsValidCodePage, [](std::uint32_t page) -> std::int32_t { return page != 65001; });
  EXPECT_EQ(Wide("M\xC3\xBCller", "CHARSET=UTF-8"), u"M\u00FCller");
  // The limits of the library's own decoder show that it was used.
  EXPECT_EQ(Wide("a\x80"
                 "b",
                 "CHARSET=UTF-8"),
            u"a");
}

TEST_F(PropGetWide, Base64IsConvertedAsItsText) {
  EXPECT_EQ(Wide("QUJD", "ENCODING=BASE64"), u"QUJD");
}

TEST_F(PropGetWide, WithoutMemoryTheResultIsEmptyAndNothingIsLost) {
  const std::size_t blocks = MEM_LiveBlocks();
  const std::int64_t strings = platform::SysLiveStrings();
  {
    const OwnedProperty property("a=5C=3Bb", "QUOTED-PRINTABLE");
    const OwnedProperty raw("a=0D=0Ab", "");
    for (const OwnedProperty* each : {&property, &raw}) {
      MEM_FailNth(1);
      EXPECT_EQ(Wide(*each), u"");
      MEM_FailNth(0);
    }
    {
      // The second string is the one without backslashes.
      const platform::ScopedFailure failure(platform::SysAllocStringLen, 2);
      EXPECT_EQ(Wide(property), u"");
    }
    for (std::uint64_t n = 2; n <= 3; ++n) {  // the first one is the test's own
      const platform::ScopedFailure failure(
          n == 2 ? static_cast<platform::ServiceBase&>(platform::SysAllocStringLen)
                 : platform::MultiByteToWideChar);
      EXPECT_EQ(Wide(property), u"");
    }
    EXPECT_EQ(Wide(property), u"a;b");
  }
  EXPECT_EQ(MEM_LiveBlocks(), blocks);
  EXPECT_EQ(platform::SysLiveStrings(), strings);
}

TEST_F(TextToWide, EncodingAndCharsetAreTextsOfTheirOwn) {
  EXPECT_EQ(Text("M=C3=BCller", "text/plain; CHARSET=UTF-8", "quoted-printable"), u"M\u00FCller");
  EXPECT_EQ(Text("M\xFCller", "text/plain", "8bit"), u"M\u00FCller");
  EXPECT_EQ(Text("M\xFCller", nullptr, nullptr), u"M\u00FCller");
  EXPECT_EQ(Text(nullptr, nullptr, nullptr), u"");
}

TEST_F(TextToWide, BackslashesStay) { EXPECT_EQ(Text(R"(a\;b)", nullptr, nullptr), u"a\\;b"); }

TEST_F(TextToWide, EncodedLineBreaksAreLineBreaks) {
  EXPECT_EQ(Text("a=0D=0Ab", nullptr, nullptr), u"a\r\nb");
}

TEST_F(PropSetWide, AnAsciiValueNeedsNoCharset) {
  const OwnedProperty property;
  PROP_SetWide(u"Smith", property.get(), 0, 0);
  EXPECT_EQ(property->params, nullptr);
  EXPECT_EQ(TextsOf(property->values), Texts({"Smith"}));
  EXPECT_EQ(property->code_page, 0U);
}

TEST_F(PropSetWide, AnyOtherValueIsUtf8AndSaysSo) {
  const OwnedProperty property;
  PROP_SetWide(u"M\u00FCller", property.get(), 0, 0);
  EXPECT_EQ(TextsOf(property->params), Texts({"CHARSET=UTF-8"}));
  EXPECT_EQ(TextsOf(property->values), Texts({"M\xC3\xBCller"}));
  EXPECT_EQ(property->flags, static_cast<std::uint32_t>(PROP_CHARSET));
  EXPECT_EQ(property->code_page, 65001U);
}

TEST_F(PropSetWide, WhereAllowedItGoesOutQuotedPrintable) {
  const OwnedProperty property;
  PROP_SetWide(u"M\u00FCller", property.get(), kAllowQuotedPrintable, 0);
  EXPECT_EQ(TextsOf(property->params), Texts({"CHARSET=UTF-8", "ENCODING=QUOTED-PRINTABLE"}));
  EXPECT_EQ(TextsOf(property->values), Texts({"M=C3=BCller"}));
  EXPECT_EQ(property->flags, static_cast<std::uint32_t>(PROP_CHARSET | PROP_QP));
}

TEST_F(PropSetWide, SemicolonsAndBackslashesAreEscaped) {
  const OwnedProperty plain;
  PROP_SetWide(u"a;b\\c,d:e", plain.get(), 0, 0);
  EXPECT_EQ(TextsOf(plain->values), Texts({R"(a\;b\\c,d:e)"}));
  EXPECT_EQ(plain->params, nullptr);
  const OwnedProperty encoded;
  PROP_SetWide(u"a;b", encoded.get(), kAllowQuotedPrintable, 0);
  EXPECT_EQ(TextsOf(encoded->values), Texts({"a=5C=3Bb"}));
  EXPECT_EQ(TextsOf(encoded->params), Texts({"ENCODING=QUOTED-PRINTABLE"}));
}

TEST_F(PropSetWide, AValueThatNeedsNoEncodingGetsNone) {
  const OwnedProperty property;
  PROP_SetWide(u"plain text", property.get(), kAllowQuotedPrintable, 0);
  EXPECT_EQ(property->params, nullptr);
  EXPECT_EQ(property->flags, 0U);
}

// The parameter is added for every component that is encoded. Kept on purpose.
TEST_F(PropSetWide, EachEncodedComponentAddsTheEncodingAgain) {
  const OwnedProperty property;
  PROP_SetWide(u"\u00E4", property.get(), kAllowQuotedPrintable, 0);
  PROP_SetWide(u"\u00F6", property.get(), kAllowQuotedPrintable, 1);
  EXPECT_EQ(TextsOf(property->params),
            Texts({"CHARSET=UTF-8", "ENCODING=QUOTED-PRINTABLE", "ENCODING=QUOTED-PRINTABLE"}));
  EXPECT_EQ(TextsOf(property->values), Texts({"=C3=A4", "=C3=B6"}));
}

TEST_F(PropSetWide, TheCodePageOfAnEarlierComponentStays) {
  const OwnedProperty property;
  property->code_page = 1251;
  PROP_SetWide(u"\u0416", property.get(), 0, 0);
  EXPECT_EQ(TextsOf(property->values), Texts({"\xC6"}));
  EXPECT_EQ(property->params, nullptr);
}

TEST_F(PropSetWide, AnAsciiComponentAfterAnotherStaysInItsCodePage) {
  const OwnedProperty property;
  PROP_SetWide(u"\u00E4", property.get(), 0, 0);
  PROP_SetWide(u"a", property.get(), 0, 1);
  EXPECT_EQ(TextsOf(property->params), Texts({"CHARSET=UTF-8"}));
  EXPECT_EQ(property->code_page, 65001U);
}

TEST_F(PropSetWide, ACharsetThatIsThereIsNotAddedAgain) {
  const OwnedProperty property;
  PROP_AddParam(property.get(), "charset=utf-8");
  PROP_SetWide(u"\u00E4", property.get(), 0, 0);
  EXPECT_EQ(TextsOf(property->params), Texts({"charset=utf-8"}));
}

TEST_F(PropSetWide, TheConfiguredCharsetIsUsedAndNamed) {
  Configure("", "SHIFT-JIS");
  const OwnedProperty property;
  PROP_SetWide(u"\u65E5", property.get(), 0, 0);
  EXPECT_EQ(TextsOf(property->params), Texts({"CHARSET=SHIFT-JIS"}));
  EXPECT_EQ(TextsOf(property->values), Texts({"\x93\xFA"}));
}

TEST_F(PropSetWide, CodePage1252IsNeverAnnounced) {
  Configure("", "ISO-8859-1");
  const OwnedProperty property;
  PROP_SetWide(u"\u00E4", property.get(), 0, 0);
  EXPECT_EQ(property->params, nullptr);
  EXPECT_EQ(TextsOf(property->values), Texts({"\xE4"}));
  EXPECT_EQ(property->code_page, 0U);
}

TEST_F(PropSetWide, AnOutputCodePageThePlatformLacksIsReplacedByUtf8) {
  Configure("", "_AUTODETECT");
  const OwnedProperty property;
  PROP_SetWide(u"\u00E4", property.get(), 0, 0);
  EXPECT_EQ(TextsOf(property->params), Texts({"CHARSET=UTF-8"}));
  EXPECT_EQ(property->code_page, 65001U);
}

TEST_F(PropSetWide, WithoutCodePage1252AnAsciiValueIsAnnouncedToo) {
  const platform::ScopedOverride<std::int32_t(std::uint32_t)> without(
      platform::IsValidCodePage, [](std::uint32_t page) -> std::int32_t { return page != 1252; });
  const OwnedProperty property;
  PROP_SetWide(u"a", property.get(), 0, 0);
  EXPECT_EQ(TextsOf(property->params), Texts({"CHARSET=UTF-8"}));
}

TEST_F(PropSetWide, WithoutUtf8OnThePlatformTheLibraryEncodes) {
  const platform::ScopedOverride<std::int32_t(std::uint32_t)> without(
      platform::IsValidCodePage, [](std::uint32_t page) -> std::int32_t { return page != 65001; });
  const OwnedProperty property;
  PROP_SetWide(u"\u0800", property.get(), 0, 0);
  EXPECT_EQ(TextsOf(property->values), Texts({"\xE0\x80"}));
}

TEST_F(PropSetWide, NothingHappensWithoutAValueOrProperty) {
  const OwnedProperty property;
  PROP_SetWide(nullptr, property.get(), 0, 0);
  PROP_SetWide(u"", property.get(), 0, 0);
  PROP_SetWide(u"a", nullptr, 0, 0);
  EXPECT_EQ(property->values, nullptr);
}

TEST_F(PropSetWide, WhenAnyAllocationFailsThePropertyStaysAsItWas) {
  const std::size_t before = MEM_LiveBlocks();
  for (const std::uint32_t index : {0U, 3U}) {
    for (std::uint64_t n = 1;; ++n) {
      ASSERT_LT(n, 20U);
      const OwnedProperty property("", "HOME");
      const Texts values_before = TextsOf(property->values);
      MEM_FailNth(n);
      PROP_SetWide(u"M\u00FCller", property.get(), kAllowQuotedPrintable, index);
      const bool struck = MEM_FailureStruck();
      MEM_FailNth(0);
      if (!struck) {
        EXPECT_EQ(TextsOf(property->values).back(), "M=C3=BCller");
        break;
      }
      EXPECT_EQ(TextsOf(property->values), values_before) << n;
      EXPECT_EQ(TextsOf(property->params), Texts({"HOME"})) << n;
      EXPECT_EQ(property->flags, 0U) << n;
      EXPECT_EQ(property->code_page, 0U) << n;
    }
  }
  EXPECT_EQ(MEM_LiveBlocks(), before);
}

TEST_F(PropSetWide, ATextThatCannotBeEncodedIsNotStoredInPart) {
  const platform::ScopedOverride<std::int32_t(std::uint32_t)> without(
      platform::IsValidCodePage, [](std::uint32_t page) -> std::int32_t { return page != 65001; });
  const OwnedProperty property;
  PROP_SetWide(u"ab\U0001F600cd", property.get(), 0, 0);
  EXPECT_EQ(property->values, nullptr);
  EXPECT_EQ(property->params, nullptr);
  EXPECT_EQ(property->flags, 0U);
}

TEST_F(PropSetWide, WhatIsWrittenReadsBack) {
  const std::u16string texts[] = {
      u"plain", u"a;b\\;c\\\\", u"l1\r\nl2", u"\u00E4=\u00F6:", u"\u65E5\u672C", u"\U0001F600",
      u" \t",   u"\\",          u";"};
  for (const std::u16string& text : texts) {
    for (const std::uint32_t options : {0U, kAllowQuotedPrintable}) {
      const OwnedProperty property;
      PROP_SetWide(text.c_str(), property.get(), options, 2);
      EXPECT_EQ(Wide(property, 2), text);
    }
  }
}

}  // namespace
}  // namespace tamu
