#include "text/version.h"

#include <gtest/gtest.h>

#include <clocale>

namespace tamu {
namespace {

TEST(VersionIsSupported, UpToTheHighestAndNotZero) {
  EXPECT_TRUE(VERSION_IsSupported("2.1", kVcardVersion));
  EXPECT_TRUE(VERSION_IsSupported("2.0", kVcardVersion));
  EXPECT_TRUE(VERSION_IsSupported("1.0", kVcardVersion));
  EXPECT_FALSE(VERSION_IsSupported("3.0", kVcardVersion));
  EXPECT_FALSE(VERSION_IsSupported("2.2", kVcardVersion));
  EXPECT_TRUE(VERSION_IsSupported("1.0", kVmessageVersion));
  EXPECT_TRUE(VERSION_IsSupported("1.1", kVmessageVersion));
  EXPECT_FALSE(VERSION_IsSupported("1.1", kVcalendarVersion));
}

TEST(VersionIsSupported, ATextThatIsNoNumberIsNot) {
  for (const char* text : {"", "abc", "v2.1", ".", "-", "+", "--1", "+-1", "0", "0.0", "nan",
                           "-inf", "-infinity", "0x2", "0x-1", "-0xinf"}) {
    EXPECT_FALSE(VERSION_IsSupported(text, kVcardVersion)) << text;
  }
}

TEST(VersionIsSupported, ANumberBelowTheHighestIs) {
  EXPECT_TRUE(VERSION_IsSupported("0.5", kVnoteVersion));
}

TEST(VersionIsSupported, TheNumberIsWhatTheTextBeginsWith) {
  for (const char* text : {"2.1 beta", " 2.1", "\t+2.1", "2.1.3", "2", ".5", "1e0", "-3"}) {
    EXPECT_TRUE(VERSION_IsSupported(text, kVcardVersion)) << text;
  }
  EXPECT_FALSE(VERSION_IsSupported("1e9", kVcardVersion));
  EXPECT_FALSE(VERSION_IsSupported("1e999", kVcardVersion));
  EXPECT_FALSE(VERSION_IsSupported("1e-999", kVcardVersion));
  EXPECT_FALSE(VERSION_IsSupported("inf", kVcardVersion));
}

TEST(VersionIsSupported, ADecimalCommaOfTheLocaleChangesNothing) {
  const bool comma = setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
  EXPECT_FALSE(VERSION_IsSupported("1.2", kVnoteVersion)) << comma;
  EXPECT_TRUE(VERSION_IsSupported("0.5", kVnoteVersion)) << comma;
  setlocale(LC_NUMERIC, "C");
}

}  // namespace
}  // namespace tamu
