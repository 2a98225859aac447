#include <gtest/gtest.h>

#include <string>

#include "platform/bstr.h"
#include "platform/com.h"
#include "platform/time.h"
#include "support/scratch_folder.h"

namespace tamu::platform {
namespace {

using tamu::testing::ScopedEnvironment;

std::u16string TextOf(double date) {
  BStr text;
  EXPECT_EQ(VarBstrFromDate(date, kLocaleUserDefault, 0, text.put()), hr::kOk);
  return std::u16string(text.view());
}

TEST(VarBstrFromDate, WritesDateAndTime) {
  const ScopedEnvironment locale("LC_ALL", "C");
  EXPECT_EQ(TextOf(37986.75), u"12/31/2003 18:00:00");
}

TEST(VarBstrFromDate, MidnightIsTheDateAlone) {
  const ScopedEnvironment locale("LC_ALL", "C");
  EXPECT_EQ(TextOf(37986), u"12/31/2003");
}

TEST(VarBstrFromDate, DayZeroIsTheTimeAlone) {
  const ScopedEnvironment locale("LC_ALL", "C");
  EXPECT_EQ(TextOf(0), u"00:00:00");
  EXPECT_EQ(TextOf(0.25), u"06:00:00");
}

TEST(VarBstrFromDate, UnknownLocaleIsWrittenAsC) {
  const ScopedEnvironment locale("LC_ALL", "xx_XX.nowhere");
  EXPECT_EQ(TextOf(37986.75), u"12/31/2003 18:00:00");
}

TEST(VarBstrFromDate, RefusesWhatIsNoDate) {
  BStr text;
  EXPECT_EQ(VarBstrFromDate(1e9, kLocaleUserDefault, 0, text.put()), hr::kInvalidArgument);
  EXPECT_EQ(text.get(), nullptr);
}

TEST(VarBstrFromDate, GivesNoTextWhenMemoryRunsOut) {
  const ScopedFailure failure(SysAllocStringLen);
  BStr text;
  EXPECT_EQ(VarBstrFromDate(1, kLocaleUserDefault, 0, text.put()), hr::kOutOfMemory);
  EXPECT_EQ(text.get(), nullptr);
}

}  // namespace
}  // namespace tamu::platform
