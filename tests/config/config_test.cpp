#include "config/config.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "platform/code_pages.h"
#include "platform/registry.h"
#include "platform/test_folder.h"

namespace tamu {
namespace {

using platform::ScopedFailure;
using platform::ScopedVariable;
using platform::TestDevice;
using platform::WriteBytes;

constexpr char kHead[] = "REGEDIT4\n[HKEY_LOCAL_MACHINE\\Software\\Velmora\\BTConfig\\General]\n";

// Every value, other than its default.
constexpr char kEveryValue[] =
    "\"DeviceName\"=\"My handheld\"\n"
    "\"MinorClass\"=dword:00000011\n"
    "\"SecurityType\"=dword:00000012\n"
    "\"CountryCode\"=dword:00000013\n"
    "\"ForceDevClassMajor\"=dword:00000014\n"
    "\"ForceDevClassMinor\"=dword:00000015\n"
    "\"MaxSimultConnections\"=dword:00000016\n"
    "\"NoSleepingWhileConnected\"=dword:00000017\n"
    "\"DontShowAdvanced\"=dword:fffffff8\n"
    "\"DefaultStatusDll\"=\"\\\\Windows\\\\status.dll\"\n"
    "\"DefaultPropertiesDll\"=\"\\\\Windows\\\\properties.dll\"\n"
    "\"UnnamedDeviceName\"=\"nobody\"\n"
    "\"DefaultInputCharset\"=\"ISO-8859-2\"\n"
    "\"DefaultOutputCharset\"=\"NATIVE\"\n";

// The block as text, a line a value, so that a difference shows.
std::string Shown(const ConfigBlock& block) {
  std::string text = std::string("DeviceName=") + block.device_name + "\n";
  const std::pair<const char*, std::uint32_t> numbers[] = {
      {"MinorClass", block.minor_class},
      {"SecurityType", block.security_type},
      {"CountryCode", block.country_code},
      {"ForceDevClassMajor", block.force_dev_class_major},
      {"ForceDevClassMinor", block.force_dev_class_minor},
      {"MaxSimultConnections", block.max_simult_connections},
      {"NoSleepingWhileConnected", block.no_sleeping_while_connected},
      {"DontShowAdvanced", block.dont_show_advanced},
  };
  for (const auto& [name, number] : numbers)
    text += std::string(name) + "=" + std::to_string(number) + "\n";
  text += "DefaultStatusDll=" + platform::PathToNative(block.default_status_dll) + "\n";
  text += "DefaultPropertiesDll=" + platform::PathToNative(block.default_properties_dll) + "\n";
  text += std::string("UnnamedDeviceName=") + block.unnamed_device_name + "\n";
  text += std::string("DefaultInputCharset=") + block.default_input_charset + "\n";
  text += std::string("DefaultOutputCharset=") + block.default_output_charset + "\n";
  return text;
}

constexpr char kDefaults[] =
    "DeviceName=\nMinorClass=4\nSecurityType=2\nCountryCode=0\nForceDevClassMajor="
    "0\nForceDevClassMinor=0\n"
    "MaxSimultConnections=1\nNoSleepingWhileConnected=0\nDontShowAdvanced=0\nDefaultStatusDll=\n"
    "DefaultPropertiesDll=\nUnnamedDeviceName=<No "
    "Name>\nDefaultInputCharset=\nDefaultOutputCharset=\n";

constexpr char kEveryValueShown[] =
    "DeviceName=My "
    "handheld\nMinorClass=17\nSecurityType=18\nCountryCode=19\nForceDevClassMajor=20\n"
    "ForceDevClassMinor=21\nMaxSimultConnections=22\nNoSleepingWhileConnected=23\nDontShowAdvanced="
    "4294967288\n"
    "DefaultStatusDll=\\Windows\\status.dll\nDefaultPropertiesDll=\\Windows\\properties.dll\n"
    "UnnamedDeviceName=nobody\nDefaultInputCharset=ISO-8859-2\nDefaultOutputCharset=NATIVE\n";

// A device whose ANSI code page is 1252 whatever the environment says.
class ConfigRead : public ::testing::Test {
 protected:
  void SetUp() override {
    std::memset(static_cast<void*>(&block_), 0xA5, sizeof block_);
    CONFIG_Init(block_);
  }
  void Values(const std::string& values) { WriteBytes(device_.registry(), kHead + values); }
  std::string Read() {
    status_ = CONFIG_Read(block_);
    return Shown(block_);
  }

  TestDevice device_;
  ScopedVariable all_{"LC_ALL", "C"};
  ConfigBlock block_;
  std::int32_t status_ = -1;
};

// The defaults, one line replaced.
std::string DefaultsBut(const std::string& name, const std::string& value) {
  std::string text = kDefaults;
  const std::size_t at = text.find(name + "=") + name.size() + 1;
  return text.replace(at, text.find('\n', at) - at, value);
}

std::string Repeated(const std::string& text, std::size_t count) {
  std::string repeated;
  for (; count > 0; --count) repeated += text;
  return repeated;
}

TEST_F(ConfigRead, InitSetsPathAndDefaults) {
  EXPECT_EQ(std::u16string(block_.key_path), u"Software\\Velmora\\BTConfig");
  EXPECT_EQ(std::u16string(block_.subkey), u"General");
  EXPECT_EQ(Shown(block_), kDefaults);
}

TEST_F(ConfigRead, ReadsEveryValue) {
  Values(kEveryValue);
  EXPECT_EQ(Read(), kEveryValueShown);
  EXPECT_EQ(status_, 0);
}

TEST_F(ConfigRead, AMissingKeyAnswersItsStatusAndLeavesTheDefaults) {
  EXPECT_EQ(Read(), kDefaults);
  EXPECT_EQ(status_, 2);
}

TEST_F(ConfigRead, AKeyWithoutValuesLeavesTheDefaults) {
  Values("");
  EXPECT_EQ(Read(), kDefaults);
  EXPECT_EQ(status_, 0);
}

TEST_F(ConfigRead, EachValueAloneChangesItsFieldAlone) {
  const std::string all = kEveryValue;
  for (std::size_t at = 0; at < all.size();) {
    const std::size_t end = all.find('\n', at);
    const std::string name = all.substr(at + 1, all.find('"', at + 1) - at - 1);
    Values(all.substr(at, end - at + 1));
    SetUp();
    const std::string shown = kEveryValueShown;
    const std::size_t value = shown.find(name + "=") + name.size() + 1;
    EXPECT_EQ(Read(), DefaultsBut(name, shown.substr(value, shown.find('\n', value) - value)))
        << name;
    at = end + 1;
  }
}

TEST_F(ConfigRead, ValuesOfAnotherTypeLeaveTheDefaults) {
  std::string values = kEveryValue;
  std::string swapped;
  for (std::size_t at = 0; at < values.size();) {
    const std::size_t end = values.find('\n', at);
    const std::string line = values.substr(at, end - at);
    const std::string name = line.substr(0, line.find('=') + 1);
    swapped += name + (line.find("dword") == std::string::npos ? "dword:00000041" : "\"7\"") + "\n";
    at = end + 1;
  }
  Values(swapped);
  EXPECT_EQ(Read(), kDefaults);
}

TEST_F(ConfigRead, NumbersOfAnotherSizeLeaveTheDefaults) {
  Values(
      "\"MinorClass\"=hex(4):01,02\n\"SecurityType\"=hex:01,00,00,00\n\"CountryCode\"=hex(4):\n");
  EXPECT_EQ(Read(), kDefaults);
}

TEST_F(ConfigRead, TextsOfTheLongestSizeAreReadAndLongerOnesLeaveTheDefaults) {
  const struct {
    const char* name;
    std::size_t longest;  // characters that fit the query with their terminator
  } kLimits[] = {{"DeviceName", 247},           {"DefaultStatusDll", 259},
                 {"DefaultPropertiesDll", 259}, {"UnnamedDeviceName", 49},
                 {"DefaultInputCharset", 259},  {"DefaultOutputCharset", 259}};
  for (const auto& limit : kLimits) {
    const std::string longest = Repeated("x", limit.longest);
    Values("\"" + std::string(limit.name) + "\"=\"" + longest + "\"\n");
    SetUp();
    EXPECT_EQ(Read(), DefaultsBut(limit.name, longest)) << limit.name;
    Values("\"" + std::string(limit.name) + "\"=\"" + longest + "x\"\n");
    SetUp();
    EXPECT_EQ(Read(), kDefaults) << limit.name;
  }
}

TEST_F(ConfigRead, ATextEndsAtItsFirstTerminator) {
  Values(
      "\"DefaultInputCharset\"=hex(1):41,00,00,00,42,00,00,00\n"
      "\"DefaultStatusDll\"=hex(1):41,00,00,00,42,00,00,00\n");
  EXPECT_EQ(Read(), [] {
    std::string text = DefaultsBut("DefaultInputCharset", "A");
    return text.replace(text.find("StatusDll=") + 10, 0, "A");
  }());
}

TEST_F(ConfigRead, AnEmptyTextReplacesItsDefault) {
  Values("\"UnnamedDeviceName\"=\"\"\n");
  EXPECT_EQ(Read(), DefaultsBut("UnnamedDeviceName", ""));
}

TEST_F(ConfigRead, NamesHaveNoCase) {
  Values("\"minorclass\"=dword:9\n");
  EXPECT_EQ(Read(), DefaultsBut("MinorClass", "9"));
}

TEST_F(ConfigRead, TextsAreConvertedWithTheAnsiCodePage) {
  Values("\"AnsiCodePage\"=\"1252\"\n\"DeviceName\"=\"M\xC3\xBCller\"\n");
  EXPECT_EQ(Read(), DefaultsBut("DeviceName", "M\xFCller"));
  Values("\"AnsiCodePage\"=\"65001\"\n\"DeviceName\"=\"M\xC3\xBCller\"\n");
  SetUp();
  EXPECT_EQ(Read(), DefaultsBut("DeviceName", "M\xC3\xBCller"));
}

TEST_F(ConfigRead, ATextTooLongOnlyAfterConversionLeavesItsDefaultWhole) {
  // 49 characters fit the query, 98 bytes of UTF-8 do not fit the field.
  Values("\"AnsiCodePage\"=\"65001\"\n\"UnnamedDeviceName\"=\"" + Repeated("\xC3\xBC", 49) +
         "\"\n");
  EXPECT_EQ(Read(), kDefaults);
  Values("\"AnsiCodePage\"=\"65001\"\n\"UnnamedDeviceName\"=\"" + Repeated("\xC3\xBC", 24) +
         "\"\n");
  SetUp();
  EXPECT_EQ(Read(), DefaultsBut("UnnamedDeviceName", Repeated("\xC3\xBC", 24)));
}

TEST_F(ConfigRead, AKeyThatDoesNotOpenAnswersItsStatusAndNothingIsAskedOrClosed) {
  Values(kEveryValue);
  const ScopedFailure failure(platform::RegOpenKeyExW);
  platform::RegQueryValueExW.ResetCount();
  platform::RegCloseKey.ResetCount();
  EXPECT_EQ(Read(), kDefaults);
  EXPECT_EQ(status_, 5);
  EXPECT_EQ(platform::RegQueryValueExW.calls(), 0U);
  EXPECT_EQ(platform::RegCloseKey.calls(), 0U);
}

// The names asked for, in order, of which one is made to fail.
std::vector<std::u16string> asked;
std::size_t failing = 0;
std::uint32_t queried_bytes[16] = {};

std::int32_t RecordingQuery(platform::RegistryKey key, const char16_t* name,
                            std::uint32_t* reserved, std::uint32_t* type, std::uint8_t* data,
                            std::uint32_t* size) {
  if (std::u16string_view(name) == u"AnsiCodePage") {
    return platform::RegQueryValueExW.system_function()(key, name, reserved, type, data, size);
  }
  asked.emplace_back(name);
  if (asked.size() <= std::size(queried_bytes)) queried_bytes[asked.size() - 1] = *size;
  if (asked.size() == failing) return 31;
  return platform::RegQueryValueExW.system_function()(key, name, reserved, type, data, size);
}

std::vector<platform::RegistryKey> opened;
std::vector<platform::RegistryKey> closed;

std::int32_t RecordingOpen(platform::RegistryKey root, const char16_t* path, std::uint32_t options,
                           std::uint32_t access, platform::RegistryKey* key) {
  const std::int32_t status =
      platform::RegOpenKeyExW.system_function()(root, path, options, access, key);
  if (status == 0) opened.push_back(*key);
  return status;
}

std::int32_t RecordingClose(platform::RegistryKey key) {
  closed.push_back(key);
  return platform::RegCloseKey.system_function()(key);
}

TEST_F(ConfigRead, AQueryThatFailsLeavesItsFieldAndTheKeyIsClosedAllTheSame) {
  Values(kEveryValue);
  const platform::ScopedOverride query(platform::RegQueryValueExW, &RecordingQuery);
  const platform::ScopedOverride open(platform::RegOpenKeyExW, &RecordingOpen);
  const platform::ScopedOverride close(platform::RegCloseKey, &RecordingClose);
  for (failing = 1; failing <= 14; ++failing) {
    SetUp();
    asked.clear();
    opened.clear();
    closed.clear();
    const std::string shown = Read();
    EXPECT_EQ(status_, 0);
    ASSERT_EQ(asked.size(), 14U);
    const std::string name = platform::PathToNative(asked[failing - 1]);
    const auto value_in = [&](const std::string& text) {
      const std::size_t at = text.find(name + "=") + name.size() + 1;
      return text.substr(at, text.find('\n', at) - at);
    };
    std::string expected = kEveryValueShown;
    const std::size_t at = expected.find(name + "=") + name.size() + 1;
    expected.replace(at, expected.find('\n', at) - at, value_in(kDefaults));
    EXPECT_EQ(shown, expected);
    std::sort(opened.begin(), opened.end());
    std::sort(closed.begin(), closed.end());
    EXPECT_EQ(opened, closed);
    EXPECT_FALSE(opened.empty());
  }
}

TEST_F(ConfigRead, AsksInOrderWithTheFieldsSizes) {
  Values("");
  const platform::ScopedOverride query(platform::RegQueryValueExW, &RecordingQuery);
  asked.clear();
  failing = 0;
  static_cast<void>(Read());
  const std::vector<std::u16string> names = {u"DeviceName",           u"MinorClass",
                                             u"SecurityType",         u"CountryCode",
                                             u"ForceDevClassMajor",   u"ForceDevClassMinor",
                                             u"MaxSimultConnections", u"NoSleepingWhileConnected",
                                             u"DontShowAdvanced",     u"DefaultStatusDll",
                                             u"DefaultPropertiesDll", u"UnnamedDeviceName",
                                             u"DefaultInputCharset",  u"DefaultOutputCharset"};
  EXPECT_EQ(asked, names);
  const std::vector<std::uint32_t> sizes = {496, 4, 4, 4, 4, 4, 4, 4, 4, 520, 520, 100, 520, 520};
  EXPECT_EQ(std::vector<std::uint32_t>(queried_bytes, queried_bytes + 14), sizes);
}

TEST_F(ConfigRead, OnlyTextsThatWereReadAreConverted) {
  Values("\"DefaultInputCharset\"=\"UTF-8\"\n");
  platform::WideCharToMultiByte.ResetCount();
  static_cast<void>(Read());
  EXPECT_EQ(platform::WideCharToMultiByte.calls(), 1U);
}

TEST_F(ConfigRead, AConversionThatFailsLeavesItsField) {
  const char* const names[] = {"DeviceName", "UnnamedDeviceName", "DefaultInputCharset",
                               "DefaultOutputCharset"};
  Values(
      "\"DeviceName\"=\"x\"\n\"UnnamedDeviceName\"=\"x\"\n\"DefaultInputCharset\"=\"x\"\n"
      "\"DefaultOutputCharset\"=\"x\"\n");
  for (std::uint64_t n = 1; n <= 4; ++n) {
    SetUp();
    const ScopedFailure failure(platform::WideCharToMultiByte, n);
    std::string expected = kDefaults;
    for (std::size_t i = 0; i < 4; ++i) {
      if (i + 1 == n) continue;
      const std::size_t at = expected.find("\n" + std::string(names[i]) + "=");
      const std::size_t value = (i == 0 ? 0 : at + 1) + std::strlen(names[i]) + 1;
      expected.replace(value, expected.find('\n', value) - value, "x");
    }
    EXPECT_EQ(Read(), expected) << n;
  }
}

TEST_F(ConfigRead, ACloseThatFailsChangesNothing) {
  Values(kEveryValue);
  const ScopedFailure failure(platform::RegCloseKey);
  EXPECT_EQ(Read(), kEveryValueShown);
  EXPECT_EQ(status_, 0);
}

TEST_F(ConfigRead, APathThatIsTooLongIsRefused) {
  Values(kEveryValue);
  const std::u16string path(300, u'x');
  block_.key_path = path.c_str();
  EXPECT_EQ(Read(), kDefaults);
  EXPECT_EQ(status_, 87);
}

}  // namespace
}  // namespace tamu
