// "tamu delete".
#include <gtest/gtest.h>

#include <string>

#include "tool/program.h"
#include "tool/store_files.h"

namespace tamu::tool {
namespace {

// A device with one object of each kind: contact 1, event 2, to-do 3.
void Fill(const Program& program) {
  program.Write("a.vcf", Card("Berg;Anna"));
  program.Write("b.vcs", Event("20040105T090000", "Run") + Todo("Buy bulbs"));
  program.Write("c.vnt", Note("List", "milk"));
  program.Write("d.vmg", Mail("Wed, 31 Dec 2003 23:59:59 +0000", "Hello", "Text"));
  ASSERT_EQ(program.Run({"import", "a.vcf", "b.vcs", "c.vnt", "d.vmg"}).exit_code, 0);
}

std::string MessageId(const Program& program) {
  const std::string out = program.Run({"find", "d.vmg"}).out;
  const std::size_t begin = out.rfind(' ') + 1;
  return out.substr(begin, out.size() - begin - 1);
}

TEST(Delete, EveryKindIsDeletedByItsId) {
  const Program program;
  Fill(program);
  const std::string message = MessageId(program);
  EXPECT_EQ(program.Run({"delete", "contact", "00000001"}).out, "contact 00000001: deleted\n");
  EXPECT_EQ(program.Run({"delete", "events", "2"}).out, "event 00000002: deleted\n");
  EXPECT_EQ(program.Run({"delete", "calendar", "3"}).out, "todo 00000003: deleted\n");
  EXPECT_EQ(program.Run({"delete", "note", "List"}).out, "note List: deleted\n");
  EXPECT_EQ(program.Run({"delete", "message", message}).out, "message " + message + ": deleted\n");

  const ProgramResult left = program.Run({"find", "a.vcf", "b.vcs", "c.vnt", "d.vmg"});
  EXPECT_EQ(left.out.find(": 0"), std::string::npos) << left.out;
  EXPECT_EQ(FileNames(program.home() + "/Documents"), std::vector<std::string>());
}

TEST(Delete, WhatIsNotThereIsSaidToBeSoAndTheOthersGo) {
  const Program program;
  Fill(program);
  const ProgramResult result = program.Run({"delete", "contact", "9", "1"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "contact 00000001: deleted\n");
  EXPECT_EQ(result.err, "tamu: contact 00000009: there is none on the device\n");
  EXPECT_EQ(program.Run({"delete", "note", "Other"}).err,
            "tamu: note Other: there is none on the device\n");
  const std::string message = MessageId(program);
  ASSERT_EQ(program.Run({"delete", "message", message}).exit_code, 0);
  EXPECT_EQ(program.Run({"delete", "message", message}).err,
            "tamu: message " + message + ": there is none on the device\n");
}

TEST(Delete, AnotherKindIsNotDeleted) {
  const Program program;
  Fill(program);
  const ProgramResult result = program.Run({"delete", "contact", "2"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err,
            "tamu: contact 00000002: the object with this id is of another kind: event\n");
  EXPECT_EQ(program.Run({"delete", "calendar", "1"}).err,
            "tamu: calendar item 00000001: the object with this id is of another kind: contact\n");
  EXPECT_EQ(program.Run({"find", "a.vcf", "b.vcs"}).exit_code, 0);
}

TEST(Delete, AnIdThatCannotBeOneIsWrongUseAndNothingIsDeleted) {
  const Program program;
  Fill(program);
  const std::vector<std::vector<std::string>> mistakes = {{"delete", "contact", "1", "x"},
                                                          {"delete", "message", "0"},
                                                          {"delete", "note", ""},
                                                          {"delete", "card", "1"},
                                                          {"delete", "contact"}};
  for (const std::vector<std::string>& arguments : mistakes) {
    const ProgramResult result = program.Run(arguments);
    EXPECT_EQ(result.exit_code, 2) << result.err;
    EXPECT_EQ(result.out, "");
  }
  EXPECT_EQ(program.Run({"find", "a.vcf"}).exit_code, 0);
}

TEST(Delete, ATitleIsNoPath) {
  const Program program;
  program.Write("victim.pwi", "x");
  const ProgramResult result =
      program.Run({"delete", "note", "../../" + program.folder().substr(5) + "/victim"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_TRUE(program.Exists("victim.pwi"));
}

}  // namespace
}  // namespace tamu::tool
