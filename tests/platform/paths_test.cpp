#include "platform/paths.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/test_folder.h"

namespace tamu::platform {
namespace {

TEST(PathFromNative, DecodesEveryLengthOfUtf8) {
  EXPECT_EQ(PathFromNative("/a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), u"/a\u00E9\u20AC\U0001F600");
}

TEST(PathFromNative, BytesThatAreNotUtf8BecomeLoneSurrogates) {
  EXPECT_EQ(PathFromNative("M\xFCller"), u"M\xDCFCller");
  EXPECT_EQ(PathFromNative("\xC0\x80"), u"\xDCC0\xDC80");            // overlong
  EXPECT_EQ(PathFromNative("\xED\xA0\x80"), u"\xDCED\xDCA0\xDC80");  // an encoded surrogate
  EXPECT_EQ(PathFromNative("\xF4\x90\x80\x80"), u"\xDCF4\xDC90\xDC80\xDC80");  // beyond U+10FFFF
  EXPECT_EQ(PathFromNative("\xE2\x82"), u"\xDCE2\xDC82");                      // cut
}

TEST(PathToNative, OtherLoneSurrogatesStayApart) {
  EXPECT_EQ(PathToNative(u"\xD800"), "\xED\xA0\x80");
  EXPECT_EQ(PathToNative(u"\xDC00"), "\xED\xB0\x80");
  EXPECT_EQ(PathToNative(u"\xD83D\xDE00"), "\xF0\x9F\x98\x80");
}

TEST(PathToNative, EveryPairOfBytesComesBack) {
  for (int first = 1; first < 256; ++first) {
    for (int second = 1; second < 256; ++second) {
      const std::string native{static_cast<char>(first), static_cast<char>(second)};
      ASSERT_EQ(PathToNative(PathFromNative(native)), native) << first << ' ' << second;
    }
  }
}

TEST(PathToNative, RandomBytesComeBack) {
  std::mt19937 random(20240229);
  // Lead and continuation bytes are picked often, so that nearly valid sequences occur.
  const std::string likely =
      "\x80\xBF\xC2\xE0\xA0\xED\x9F\xF0\x90\xF4\x8F"
      "a/";
  for (int round = 0; round < 20000; ++round) {
    std::string native(random() % 24, ' ');
    for (char& byte : native) {
      byte =
          random() % 2 ? likely[random() % likely.size()] : static_cast<char>(1 + random() % 255);
    }
    ASSERT_EQ(PathToNative(PathFromNative(native)), native);
  }
}

TEST(DeviceFolder, IsLookedForInOrder) {
  const ScopedVariable home("HOME", "/home/somebody");
  const ScopedVariable data("XDG_DATA_HOME", nullptr);
  const ScopedVariable own("TAMU_HOME", nullptr);
  EXPECT_EQ(DeviceFolder(), u"/home/somebody/.local/share/tamu");
  const ScopedVariable with_data("XDG_DATA_HOME", "/data");
  EXPECT_EQ(DeviceFolder(), u"/data/tamu");
  const ScopedVariable with_own("TAMU_HOME", "/own/\xFF");
  EXPECT_EQ(DeviceFolder(), u"/own/\xDCFF");
}

TEST(DeviceFolder, EmptyVariablesAndRelativeDataFoldersDoNotCount) {
  const ScopedVariable home("HOME", "/home/somebody");
  const ScopedVariable data("XDG_DATA_HOME", "relative");
  const ScopedVariable own("TAMU_HOME", "");
  EXPECT_EQ(DeviceFolder(), u"/home/somebody/.local/share/tamu");
}

TEST(DeviceFolder, IsEmptyWithoutAHome) {
  const ScopedVariable home("HOME", nullptr);
  const ScopedVariable data("XDG_DATA_HOME", nullptr);
  const ScopedVariable own("TAMU_HOME", nullptr);
  EXPECT_EQ(DeviceFolder(), u"");
}

}  // namespace
}  // namespace tamu::platform
