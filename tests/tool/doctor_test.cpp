// "tamu doctor".
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "tool/program.h"
#include "tool/store_files.h"

namespace tamu::tool {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

class DoctorTest : public testing::Test {
 protected:
  DoctorTest() { program_.Set("TAMU_HOME", program_.Path("device")); }

  // The first line about each subject.
  std::map<std::string, Json> Examine(int exit_code) {
    const ProgramResult result = program_.Run({"doctor", "--json"});
    EXPECT_EQ(result.exit_code, exit_code) << result.out << result.err;
    std::map<std::string, Json> lines;
    std::istringstream stream(result.out);
    for (std::string line; std::getline(stream, line);) {
      const Json json = Json::parse(line);
      lines.emplace(json["subject"], json);
    }
    return lines;
  }

  void Import(const std::string& name, const std::string& bytes) {
    program_.Write(name, bytes);
    ASSERT_EQ(program_.Run({"import", name}).exit_code, 0);
  }

  // The first problem's text, "" when there is none.
  static std::string Problem(const std::map<std::string, Json>& lines, const char* subject) {
    const Json& line = lines.at(subject);
    if (line["state"] != "problem") return "";
    EXPECT_NE(line["advice"], "") << line;
    return line["text"];
  }

  Program program_;
};

TEST_F(DoctorTest, ANewDeviceIsMadeAndHealthy) {
  const std::map<std::string, Json> lines = Examine(0);
  EXPECT_EQ(lines.size(), 8U);
  for (const auto& [subject, line] : lines) EXPECT_EQ(line["state"], "ok") << line;
  EXPECT_EQ(lines.at("folder")["text"], program_.Path("device") + " (new), writable");
  EXPECT_EQ(lines.at("settings")["text"], "no registry.reg: every setting has its default");
  EXPECT_EQ(lines.at("stores")["text"], "0 contacts, 0 events, 0 todos, 0 notes, 0 messages");
  EXPECT_EQ(lines.at("code page")["text"], "ANSI code page 65001 (UTF-8)");
}

TEST_F(DoctorTest, WhatIsOnTheDeviceIsCounted) {
  Import("a.vcf", Card("A") + Card("B"));
  Import("c.vnt", Note("List", "milk"));
  EXPECT_EQ(Examine(0).at("stores")["text"], "2 contacts, 0 events, 0 todos, 1 note, 0 messages");
}

TEST_F(DoctorTest, TheTextHasALineForEachSubject) {
  const ProgramResult result = program_.Run({"doctor"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_TRUE(result.out.starts_with("folder     ok       " + program_.Path("device")))
      << result.out;
  EXPECT_TRUE(Contains(result.out, "\ndatabase   ok       device.db, version ")) << result.out;
  EXPECT_TRUE(Contains(result.out, ", whole (SQLite 3.")) << result.out;
}

TEST_F(DoctorTest, AFolderThatIsAFileIsAProblem) {
  program_.Write("device", "");
  const std::map<std::string, Json> lines = Examine(1);
  EXPECT_TRUE(Contains(Problem(lines, "folder"), " cannot be written to: ")) << lines.at("folder");
  EXPECT_NE(Problem(lines, "database"), "");
  EXPECT_NE(Problem(lines, "stores"), "");
}

TEST_F(DoctorTest, AFolderThatOthersOwnIsAProblem) {
  ASSERT_EQ(program_.Run({"doctor"}).exit_code, 0);
  ::chmod(program_.Path("device").c_str(), 0755);
  ::chmod(program_.Path("device/device.db").c_str(), 0644);
  program_.DropPrivileges();
  EXPECT_TRUE(Contains(Problem(Examine(1), "folder"), "Permission denied"));
}

TEST_F(DoctorTest, ADamagedLineOfTheSettingsIsToldWithItsPlace) {
  fs::create_directory(program_.Path("device"));
  program_.Write("device/registry.reg",
                 "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\Software]\r\n"
                 "\"a\"=nonsense\r\n");
  EXPECT_TRUE(Contains(Problem(Examine(1), "settings"), "registry.reg:4: passed over: "));
}

TEST_F(DoctorTest, AnotherProgramsDatabaseIsAProblem) {
  fs::create_directory(program_.Path("device"));
  program_.Write("device/device.db", std::string(5000, 'x'));
  const std::map<std::string, Json> lines = Examine(1);
  EXPECT_TRUE(Contains(Problem(lines, "database"), "device.db")) << lines.at("database");
}

TEST_F(DoctorTest, ADamagedPageOfTheDatabaseIsAProblem) {
  Import("a.vcf", Contacts(2000));
  const std::string file = program_.Path("device/device.db");
  // What is found by an index and is not in its table, and the other way round.
  std::fstream database(file, std::ios::in | std::ios::out | std::ios::binary);
  const auto size = static_cast<std::streamoff>(fs::file_size(file));
  constexpr std::streamoff kPage = 4096;
  ASSERT_GT(size, 40 * kPage);
  for (std::streamoff page = size / kPage / 2; page < size / kPage / 2 + 4; ++page) {
    database.seekp(page * kPage + kPage / 2);
    database << std::string(kPage / 2, '\x7f');
  }
  database.close();
  EXPECT_NE(Problem(Examine(1), "database"), "");
}

TEST_F(DoctorTest, ADamagedNoteIsAProblem) {
  Import("c.vnt", Note("Good", "one") + Note("Bad", "two"));
  std::ofstream(program_.Path("device/Documents/Bad.pwi"), std::ios::binary) << "{\\pwi";
  EXPECT_TRUE(
      Contains(Problem(Examine(1), "notes"), "the document of the note \"Bad\" is damaged"));
}

TEST_F(DoctorTest, TheLogAndTheCodePageAreSaidAsTheyAreSet) {
  ASSERT_EQ(program_.Run({"config", "set", "LogIPAddr", "127.0.0.1"}).exit_code, 0);
  ASSERT_EQ(program_.Run({"config", "set", "AnsiCodePage", "1251"}).exit_code, 0);
  const std::map<std::string, Json> lines = Examine(0);
  EXPECT_EQ(lines.at("log")["text"],
            "diagnostic lines go to 127.0.0.1, UDP port 38182 ('tamu log' receives them)");
  EXPECT_TRUE(Contains(lines.at("code page")["text"], "ANSI code page 1251; "));
  EXPECT_EQ(lines.at("settings")["text"], "registry.reg, 2 of 16 settings are set");
}

TEST_F(DoctorTest, AnUnknownTimeZoneIsAProblem) {
  program_.Set("TZ", "Europe/Nowhere");
  EXPECT_TRUE(Contains(Problem(Examine(1), "time zone"), "TZ=Europe/Nowhere is unknown here"));
  program_.Set("TZ", "EST5EDT");
  EXPECT_EQ(Examine(0).at("time zone")["state"], "ok");
}

}  // namespace
}  // namespace tamu::tool
