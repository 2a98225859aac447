// "tamu find".
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "tool/program.h"
#include "tool/store_files.h"

namespace tamu::tool {
namespace {

using Json = nlohmann::json;

TEST(Find, EachObjectHasItsIdOrIsNotThere) {
  const Program program;
  program.Write("a.vcf", Card("Berg;Anna"));
  ASSERT_EQ(program.Run({"import", "a.vcf"}).exit_code, 0);
  program.Write("b.vcf", Card("Berg;Anna") + Card("berg;Anna"));

  const ProgramResult result = program.Run({"find", "b.vcf"});

  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out,
            "b.vcf:1: contact \"Anna Berg\": 00000001\n"
            "b.vcf:5: contact \"Anna berg\": not on the device\n");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(program.Run({"find", "a.vcf"}).exit_code, 0);
}

TEST(Find, EveryKindIsFoundWhereItWasImported) {
  const Program program;
  program.Write("b.vcs", Event("20040105T090000", "Run") + Todo("Buy bulbs"));
  program.Write("c.vnt", Note("List: food", "milk"));
  program.Write("d.vmg", Mail("Wed, 31 Dec 2003 23:59:59 +0000", "Hello", "Text"));
  ASSERT_EQ(program.Run({"import", "b.vcs", "c.vnt", "d.vmg"}).exit_code, 0);

  const ProgramResult result = program.Run({"find", "b.vcs", "c.vnt", "d.vmg"});

  EXPECT_EQ(result.exit_code, 0);
  EXPECT_TRUE(
      result.out.starts_with("b.vcs:3: event \"Run\": 00000001\n"
                             "b.vcs:12: todo \"Buy bulbs\": 00000002\n"
                             "c.vnt:1: note \"List: food\": List food\n"
                             "d.vmg:1: message \"anna@example.org - Hello\": "))
      << result.out;
}

TEST(Find, WhatCannotBeRecognisedIsNeverFound) {
  const Program program;
  const std::string nameless = "BEGIN:VCARD\r\nVERSION:2.1\r\nN:;;\r\nTEL:1\r\nEND:VCARD\r\n";
  program.Write("a.vcf", nameless);
  ASSERT_EQ(program.Run({"import", "a.vcf"}).exit_code, 0);
  const ProgramResult result = program.Run({"find", "a.vcf"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "a.vcf:1: contact without a name: not to be found: it has no name in N\n");
}

TEST(Find, JsonHasALineForEachObject) {
  const Program program;
  program.Write("a.vcf", Card("Berg;Anna"));
  ASSERT_EQ(program.Run({"import", "a.vcf"}).exit_code, 0);
  program.Write("b.vcf", Card("Berg;Anna") + Card("Berg;Bert") + Card(";"));
  const ProgramResult result = program.Run({"find", "--json", "b.vcf"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out,
            "{\"file\":\"b.vcf\",\"line\":1,\"kind\":\"contact\",\"name\":\"Anna Berg\","
            "\"found\":true,\"id\":\"00000001\"}\n"
            "{\"file\":\"b.vcf\",\"line\":5,\"kind\":\"contact\",\"name\":\"Bert Berg\","
            "\"found\":false}\n"
            "{\"file\":\"b.vcf\",\"line\":9,\"kind\":\"contact\",\"name\":\"\",\"found\":false,"
            "\"missing\":\"it has no name in N\"}\n");
}

TEST(Find, ABrokenFileIsAFailure) {
  const Program program;
  program.Write("a.vcf", Card("Berg;Anna") + "BEGIN:VCARD\r\n");
  ASSERT_EQ(program.Run({"import", "a.vcf"}).exit_code, 1);
  const ProgramResult result = program.Run({"find", "a.vcf", "missing.vcf"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "a.vcf:1: contact \"Anna Berg\": 00000001\n");
  EXPECT_NE(result.err.find("tamu: a.vcf:5: "), std::string::npos) << result.err;
  EXPECT_NE(result.err.find("tamu: missing.vcf: "), std::string::npos) << result.err;
}

}  // namespace
}  // namespace tamu::tool
