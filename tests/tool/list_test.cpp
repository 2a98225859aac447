// "tamu list".
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "tool/program.h"
#include "tool/store_files.h"

namespace tamu::tool {
namespace {

using Json = nlohmann::json;

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

void Import(const Program& program, const std::string& name, const std::string& bytes) {
  program.Write(name, bytes);
  const ProgramResult result = program.Run({"import", name});
  ASSERT_EQ(result.exit_code, 0) << result.err;
}

void ImportOneOfEach(const Program& program) {
  Import(program, "a.vcf",
         "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Berg;Anna\r\nFN:Anna Berg\r\nORG:Works\r\nEND:VCARD\r\n");
  Import(program, "b.vcs", Event("20040105T090000", "Run") + Todo("Buy bulbs"));
  Import(program, "c.vnt", Note("List", "milk"));
  Import(program, "d.vmg",
         Mail("Wed, 31 Dec 2003 22:59:59 +0000", "=?UTF-8?Q?Caf=C3=A9?= bar", "Text"));
}

TEST(List, AnEmptyDeviceIsSaidToBeEmpty) {
  Program program;
  program.Set("TAMU_HOME", program.Path("device"));
  const ProgramResult result = program.Run({"list"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "The device in " + program.Path("device") +
                            " is empty. 'tamu import FILE' brings objects to it.\n");
  EXPECT_EQ(program.Run({"list", "--kind", "notes"}).err, "The device has 0 notes.\n");
}

TEST(List, ShowsEveryKindInAlignedColumnsAndCountsThem) {
  const Program program;
  ImportOneOfEach(program);
  const ProgramResult result = program.Run({"list"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.err, "1 contact, 1 event, 1 todo, 1 note, 1 message\n");
  const std::vector<std::string> lines = LinesOf(result.out);
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_TRUE(lines[0].starts_with("contact  00000001  ")) << lines[0];
  EXPECT_TRUE(Contains(lines[1], "  2004-01-05 09:00  Run")) << lines[1];
  EXPECT_TRUE(Contains(lines[2], "  2004-03-01        Buy bulbs")) << lines[2];
  EXPECT_TRUE(lines[3].starts_with("note     -  ")) << lines[3];
  EXPECT_TRUE(Contains(lines[4], "  2003-12-31 23:59  Café bar ")) << lines[4];
  EXPECT_TRUE(lines[4].ends_with("anna@example.org  inbox")) << lines[4];
  const std::size_t title = lines[0].find("Anna Berg");
  EXPECT_EQ(lines[1].find("Run"), title);
  EXPECT_EQ(lines[2].find("Buy bulbs"), title);
  EXPECT_EQ(lines[3].find("List"), title);
  EXPECT_EQ(lines[4].find("Café"), title);
}

TEST(List, KindsLeaveTheOthersOut) {
  const Program program;
  ImportOneOfEach(program);
  EXPECT_EQ(LinesOf(program.Run({"list", "--kind", "calendar"}).out).size(), 2U);
  const ProgramResult both = program.Run({"list", "--kind", "message", "--kind", "Contacts"});
  EXPECT_EQ(both.err, "1 contact, 1 message\n");
  EXPECT_TRUE(both.out.starts_with("contact ")) << both.out;
}

TEST(List, JsonHasEveryMemberOfEveryObject) {
  const Program program;
  ImportOneOfEach(program);
  const ProgramResult result = program.Run({"list", "--json"});
  EXPECT_EQ(result.err, "");
  const std::vector<std::string> lines = LinesOf(result.out);
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(Json::parse(lines[0]),
            Json::parse(R"({"kind":"contact","id":"00000001","date":null,"title":"Anna Berg",
                            "detail":"Works","state":null,"folder":null})"));
  EXPECT_EQ(Json::parse(lines[1])["date"], "2004-01-05T09:00:00");
  EXPECT_EQ(Json::parse(lines[2])["date"], "2004-03-01");
  EXPECT_EQ(Json::parse(lines[3])["id"], "List");
  const Json message = Json::parse(lines[4]);
  EXPECT_EQ(message["title"], "Café bar");
  EXPECT_EQ(message["detail"], "anna@example.org");
  EXPECT_EQ(message["folder"], "inbox");
  EXPECT_EQ(message["state"], nullptr);
}

TEST(List, ControlSequencesOfTitlesDoNotReachTheTerminal) {
  const Program program;
  Import(program, "a.vcf", Card("A\x1b[31m"));
  EXPECT_TRUE(Contains(program.Run({"list"}).out, "A\\x1b[31m"));
  EXPECT_FALSE(Contains(program.Run({"list", "--json"}).out, "\x1b"));
}

TEST(List, ManyObjectsAreAllListed) {
  const Program program;
  Import(program, "a.vcf", Contacts(1200));
  const ProgramResult result = program.Run({"list"});
  EXPECT_EQ(LinesOf(result.out).size(), 1200U);
  EXPECT_EQ(result.err, "1200 contacts\n");
}

TEST(List, UnknownKindIsWrongUseThatNamesTheKinds) {
  const Program program;
  const ProgramResult result = program.Run({"list", "--kind", "card"});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_TRUE(Contains(result.err, "contact, event, todo, calendar, note, message")) << result.err;
}

TEST(List, ADeviceThatCannotBeOpenedIsToldWithItsFolder) {
  Program program;
  program.Write("device", "a file");
  program.Set("TAMU_HOME", program.Path("device"));
  const ProgramResult result = program.Run({"list"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_TRUE(Contains(result.err, program.Path("device") + " cannot be opened: ")) << result.err;
}

TEST(List, HelpHasExamples) {
  const Program program;
  for (const char* const command : {"list", "show", "export", "doctor"}) {
    const ProgramResult result = program.Run({command, "--help"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_TRUE(Contains(result.out, std::string("\n  tamu ") + command)) << result.out;
  }
}

}  // namespace
}  // namespace tamu::tool
