// "tamu config".
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "tool/program.h"

namespace tamu::tool {
namespace {

constexpr const char* kUnknownSetting =
    "tamu: 'Nope' is no setting. 'tamu config list' shows all of them\n";

TEST(Config, ListShowsDefaultsOfAnEmptyDevice) {
  const Program program;
  const ProgramResult result = program.Run({"config", "list"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_NE(result.out.find("DefaultInputCharset       windows-1252        default"),
            std::string::npos);
  EXPECT_NE(result.out.find("UnnamedDeviceName         <No Name>           default"),
            std::string::npos);
  EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 16);
}

TEST(Config, SetIsSeenByGetAndList) {
  const Program program;
  ASSERT_EQ(program.Run({"config", "set", "defaultinputcharset", "WINDOWS-1251"}).exit_code, 0);
  EXPECT_EQ(program.Run({"config", "get", "DefaultInputCharset"}).out, "WINDOWS-1251\n");
  std::istringstream lines(program.Run({"config", "list", "--json"}).out);
  std::string line;
  ASSERT_TRUE(std::getline(lines, line));
  EXPECT_EQ(nlohmann::json::parse(line)["value"], "WINDOWS-1251");
}

TEST(Config, SetChangesHowFilesAreRead) {
  const Program program;
  program.Write("card.vcf", "BEGIN:VCARD\r\nVERSION:2.1\r\nN:\xC8\xE2\xE0\xED\r\nEND:VCARD\r\n");
  ASSERT_EQ(program.Run({"config", "set", "DefaultInputCharset", "WINDOWS-1251"}).exit_code, 0);
  EXPECT_NE(program.Run({"read", "card.vcf"}).out.find("\u0418\u0432\u0430\u043d"),
            std::string::npos);
}

TEST(Config, AddressesAreWrittenAsPeopleDo) {
  const Program program;
  ASSERT_EQ(program.Run({"config", "set", "LogIPAddr", "192.168.0.17"}).exit_code, 0);
  EXPECT_EQ(program.Run({"config", "get", "LogIPAddr"}).out, "192.168.0.17\n");
  ASSERT_EQ(program.Run({"config", "set", "LogIPAddr", "off"}).exit_code, 0);
  EXPECT_EQ(program.Run({"config", "get", "LogIPAddr"}).out, "off\n");
}

TEST(Config, NumbersMayBeHexadecimal) {
  const Program program;
  ASSERT_EQ(program.Run({"config", "set", "MinorClass", "0x10"}).exit_code, 0);
  EXPECT_EQ(program.Run({"config", "get", "MinorClass"}).out, "16\n");
}

TEST(Config, WrongValuesAreRefusedAndNothingIsStored) {
  const Program program;
  const std::pair<const char*, std::string> wrong[] = {{"DefaultInputCharset", "nonsense"},
                                                       {"AnsiCodePage", "99"},
                                                       {"AnsiCodePage", "utf-8"},
                                                       {"LogIPAddr", "1.2.3"},
                                                       {"LogIPAddr", "1.2.3.256"},
                                                       {"LogIPAddr", "1.2.3.4.5"},
                                                       {"LogIPAddr", "localhost"},
                                                       {"MinorClass", "-1"},
                                                       {"MinorClass", "4294967296"},
                                                       {"DeviceName", std::string(249, 'x')},
                                                       {"UnnamedDeviceName", std::string(50, 'x')}};
  for (const auto& [name, value] : wrong) {
    const ProgramResult result = program.Run({"config", "set", "--", name, value});
    EXPECT_EQ(result.exit_code, 1) << name << " " << value;
    EXPECT_EQ(result.err.find("tamu: " + std::string(name) + ": '"), 0U) << result.err;
  }
  EXPECT_EQ(program.Run({"config", "list"}).out.find("  set  "), std::string::npos);
}

TEST(Config, UnknownSettingIsWrongUse) {
  const Program program;
  const ProgramResult get = program.Run({"config", "get", "Nope"});
  EXPECT_EQ(get.exit_code, 2);
  EXPECT_EQ(get.err, kUnknownSetting);
  const ProgramResult set = program.Run({"config", "set", "Nope", "1"});
  EXPECT_EQ(set.exit_code, 2);
  EXPECT_EQ(set.err, kUnknownSetting);
}

TEST(Config, AloneSaysWhatCanBeDone) {
  const Program program;
  const ProgramResult result = program.Run({"config"});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_EQ(result.err, "tamu: Say what to do: list, get, set\nTry 'tamu config --help'.\n");
  EXPECT_EQ(program.Run({"config", "set"}).err,
            "tamu: NAME is required\nTry 'tamu config set --help'.\n");
}

}  // namespace
}  // namespace tamu::tool
