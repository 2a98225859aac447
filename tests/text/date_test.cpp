#include "text/date.h"

#include <gtest/gtest.h>

#include <string>

#include "core/memory.h"
#include "platform/code_pages.h"
#include "support/charset_setup.h"
#include "support/dates.h"
#include "support/log_capture.h"
#include "support/properties.h"
#include "support/time_zone.h"

namespace tamu {
namespace {

using testing::Date;
using testing::kBerlinZone;
using testing::kPlusOneZone;
using testing::LogCapture;
using testing::OwnedProperty;
using testing::ScopedTimeZone;
using testing::Texts;
using testing::TextsOf;
using Lines = std::vector<std::string>;

const DateValue kLastSecond = Date(2003, 12, 31, 23, 59, 59);

class DateToText : public ::testing::Test {
 protected:
  static std::u16string Text(const DateValue& date, DateForm form) {
    const DateText text = DATE_ToText(date, form);
    EXPECT_EQ(text.c_str()[text.size()], u'\0');
    return std::u16string(text.view());
  }
  static void ExpectRefused(const DateValue& date, DateForm form) {
    const LogCapture log;
    EXPECT_TRUE(DATE_ToText(date, form).empty());
    EXPECT_EQ(log.texts(), Lines{"TAMU:  Error converting date"});
  }

 private:
  ScopedTimeZone zone_{kPlusOneZone};
};

TEST_F(DateToText, TheDateAloneIsNotConverted) {
  EXPECT_EQ(Text(kLastSecond, DateForm::kDate), u"20031231");
  EXPECT_EQ(Text(Date(2003, 1, 2), DateForm::kDate), u"20030102");
}

TEST_F(DateToText, LocalTimeIsTheValuesOwn) {
  EXPECT_EQ(Text(kLastSecond, DateForm::kLocal), u"20031231T235959");
  EXPECT_EQ(Text(Date(2003, 1, 2, 3, 4, 5), DateForm::kLocal), u"20030102T030405");
}

TEST_F(DateToText, UtcIsConverted) {
  EXPECT_EQ(Text(kLastSecond, DateForm::kUtc), u"20031231T225959Z");
  EXPECT_EQ(Text(Date(2004, 1, 1), DateForm::kUtc), u"20031231T230000Z");
}

TEST_F(DateToText, UtcFollowsTheRulesOfTheDate) {
  const ScopedTimeZone zone(kBerlinZone);
  EXPECT_EQ(Text(Date(2003, 7, 1, 12), DateForm::kUtc), u"20030701T100000Z");
  EXPECT_EQ(Text(Date(2003, 12, 1, 12), DateForm::kUtc), u"20031201T110000Z");
  EXPECT_EQ(Text(Date(2003, 10, 26, 2, 30), DateForm::kUtc), u"20031026T003000Z");
  EXPECT_EQ(Text(Date(2003, 3, 30, 2, 30), DateForm::kUtc), u"20030330T013000Z");
}

TEST_F(DateToText, TheMailFormHasItsOwnOrderAndNoZone) {
  EXPECT_EQ(Text(kLastSecond, DateForm::kMail), u"Wed, Dec 31 23:59:59 2003");
  EXPECT_EQ(Text(Date(2004, 2, 1, 3, 4, 5), DateForm::kMail), u"Sun, Feb 01 03:04:05 2004");
}

TEST_F(DateToText, TheMailFormReadsBack) {
  for (const DateValue& date : {kLastSecond, Date(1000, 1, 1), Date(9999, 12, 31, 23, 59, 59)}) {
    std::string text;
    for (const char16_t unit : Text(date, DateForm::kMail)) text += static_cast<char>(unit);
    EXPECT_EQ(DATE_FromMailText(text.c_str()), date) << text;
  }
}

TEST_F(DateToText, InTheMailFormATimeThatTheClocksLeaveOutMovesForward) {
  const ScopedTimeZone zone(kBerlinZone);
  EXPECT_EQ(Text(Date(2003, 3, 30, 2, 30), DateForm::kMail), u"Sun, Mar 30 03:30:00 2003");
  EXPECT_EQ(Text(Date(2003, 10, 26, 2, 30), DateForm::kMail), u"Sun, Oct 26 02:30:00 2003");
}

TEST_F(DateToText, YearsOfThreeDigitsArePaddedWithABlank) {
  EXPECT_EQ(Text(Date(999, 1, 2), DateForm::kDate), u" 9990102");
  EXPECT_EQ(Text(Date(100, 1, 1), DateForm::kMail), u"Fri, Jan 01 00:00:00  100");
}

TEST_F(DateToText, WhatHasNoUtcTimeIsEmptyAndLogged) {
  ExpectRefused(Date(1600, 12, 31), DateForm::kUtc);
  ExpectRefused(Date(1601, 1, 1, 0, 59, 59), DateForm::kUtc);
  EXPECT_EQ(Text(Date(1601, 1, 1, 1), DateForm::kUtc), u"16010101T000000Z");
  const ScopedTimeZone zone(testing::kMinusFiveZone);
  ExpectRefused(Date(9999, 12, 31, 19), DateForm::kUtc);
}

TEST_F(DateToText, AnInvalidDateIsEmptyAndLogged) {
  for (const DateForm form : {DateForm::kMail, DateForm::kDate, DateForm::kLocal, DateForm::kUtc}) {
    ExpectRefused(kDateInvalid, form);
    ExpectRefused({1e10, true}, form);
  }
}

TEST_F(DateToText, EachConversionToUtcCanFail) {
  for (platform::ServiceBase* service :
       {static_cast<platform::ServiceBase*>(&platform::SystemTimeToFileTime),
        static_cast<platform::ServiceBase*>(&platform::LocalFileTimeToFileTime),
        static_cast<platform::ServiceBase*>(&platform::FileTimeToSystemTime)}) {
    const platform::ScopedFailure failure(*service);
    ExpectRefused(kLastSecond, DateForm::kUtc);
  }
}

class DateProperty : public testing::CharsetSetup {
 private:
  ScopedTimeZone zone_{kPlusOneZone};
};
using DateToProperty = DateProperty;
using DateFromProperty = DateProperty;

TEST_F(DateToProperty, StoresTheTextAsTheFirstComponent) {
  const OwnedProperty property;
  DATE_ToProperty(kLastSecond, property.get(), DateForm::kUtc);
  EXPECT_EQ(TextsOf(property->values), Texts{"20031231T225959Z"});
  EXPECT_EQ(property->params, nullptr);
}

TEST_F(DateToProperty, ReplacesTheFirstComponentAlone) {
  const OwnedProperty property("old;kept", "");
  DATE_ToProperty(kLastSecond, property.get(), DateForm::kMail);
  EXPECT_EQ(TextsOf(property->values), (Texts{"Wed, Dec 31 23:59:59 2003", "kept"}));
}

TEST_F(DateToProperty, ADateThatCannotBeWrittenIsAnEmptyComponent) {
  const OwnedProperty property("old", "");
  DATE_ToProperty(kDateInvalid, property.get(), DateForm::kDate);
  EXPECT_EQ(TextsOf(property->values), Texts{""});
}

TEST_F(DateToProperty, WithoutAPropertyNothingHappens) {
  const LogCapture log;
  DATE_ToProperty(kDateInvalid, nullptr, DateForm::kUtc);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(DateToProperty, WithoutMemoryThePropertyKeepsWhatItHad) {
  const std::size_t blocks = MEM_LiveBlocks();
  {
    const OwnedProperty property("old", "");
    MEM_FailNth(1);
    DATE_ToProperty(kLastSecond, property.get(), DateForm::kDate);
    EXPECT_TRUE(MEM_FailureStruck());
    MEM_FailNth(0);
    EXPECT_EQ(TextsOf(property->values), Texts{"old"});
    for (const std::uint64_t call : {1U, 2U}) {
      const platform::ScopedFailure failure(platform::WideCharToMultiByte, call);
      DATE_ToProperty(kLastSecond, property.get(), DateForm::kDate);
      EXPECT_EQ(TextsOf(property->values), Texts{"old"});
    }
    const OwnedProperty fresh;
    for (std::uint64_t n = 1; n <= 2; ++n) {
      MEM_FailNth(n);
      DATE_ToProperty(kLastSecond, fresh.get(), DateForm::kDate);
      EXPECT_TRUE(MEM_FailureStruck());
      MEM_FailNth(0);
      EXPECT_EQ(DATE_FromProperty(fresh.get()), DATE_NONE);
    }
  }
  EXPECT_EQ(MEM_LiveBlocks(), blocks);
}

TEST_F(DateFromProperty, ReadsTheFirstComponent) {
  EXPECT_EQ(DATE_FromProperty(OwnedProperty("20031231T120000Z;20040101", "").get()),
            Date(2003, 12, 31, 13));
}

TEST_F(DateFromProperty, ReadsTheComponentRaw) {
  const LogCapture log;
  EXPECT_EQ(DATE_FromProperty(OwnedProperty("=32=30031231", "QUOTED-PRINTABLE").get()), DATE_NONE);
  EXPECT_EQ(log.texts(), Lines{"TAMU:  Error in date '=32=30031231' - cannot convert from 8601"});
}

TEST_F(DateFromProperty, WhatIsMissingIsNoDate) {
  const LogCapture log;
  EXPECT_EQ(DATE_FromProperty(nullptr), DATE_NONE);
  const OwnedProperty without_components;
  EXPECT_EQ(DATE_FromProperty(without_components.get()), DATE_NONE);
  const OwnedProperty without_text;
  PROP_SetValue(without_text.get(), MEM_CopyText("20031231"), 1);
  EXPECT_EQ(DATE_FromProperty(without_text.get()), DATE_NONE);
  EXPECT_EQ(DATE_FromProperty(OwnedProperty("", "").get()), DATE_NONE);
  EXPECT_TRUE(log.lines().empty());
}

}  // namespace
}  // namespace tamu
