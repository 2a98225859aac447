// "tamu show".
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "tool/program.h"
#include "tool/store_files.h"

namespace tamu::tool {
namespace {

using Json = nlohmann::json;

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

void Import(const Program& program, const std::string& name, const std::string& bytes) {
  program.Write(name, bytes);
  const ProgramResult result = program.Run({"import", name});
  ASSERT_EQ(result.exit_code, 0) << result.err;
}

std::string FirstId(const Program& program, const std::string& kind) {
  return Json::parse(program.Run({"list", "--kind", kind, "--json"}).out)["id"];
}

TEST(Show, ContactsAndCalendarItemsAreShownAsFilesAre) {
  const Program program;
  Import(program, "a.vcf", Card("Berg;Anna"));
  Import(program, "b.vcs", Event("20040105T090000", "Run") + Todo("Buy bulbs"));
  const ProgramResult contact = program.Run({"show", "contact", "00000001"});
  EXPECT_EQ(contact.exit_code, 0);
  EXPECT_EQ(contact.err, "");
  EXPECT_TRUE(contact.out.starts_with("Anna Berg\n")) << contact.out;
  EXPECT_TRUE(program.Run({"show", "events", "2"}).out.starts_with("Run\n"));
  EXPECT_TRUE(program.Run({"show", "calendar", "2"}).out.starts_with("Run\n"));
  EXPECT_TRUE(program.Run({"show", "calendar", "3"}).out.starts_with("Buy bulbs\n"));
}

TEST(Show, ANoteIsShownByItsTitle) {
  const Program program;
  Import(program, "c.vnt", Note("Shopping list", "milk"));
  const ProgramResult result = program.Run({"show", "note", "Shopping list"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_TRUE(result.out.starts_with("Shopping list\n")) << result.out;
  EXPECT_TRUE(Contains(result.out, "milk"));
}

TEST(Show, AMessageIsShownByItsId) {
  const Program program;
  Import(program, "d.vmg", Mail("Wed, 31 Dec 2003 22:59:59 +0000", "Hello", "The text"));
  const ProgramResult result = program.Run({"show", "message", FirstId(program, "message")});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_TRUE(result.out.starts_with("Hello\n")) << result.out;
  EXPECT_TRUE(Contains(result.out, "The text\n"));
}

TEST(Show, JsonHasTheIdAndNothingOfAFile) {
  const Program program;
  Import(program, "a.vcf", Card("Berg;Anna"));
  const Json json = Json::parse(program.Run({"show", "contact", "1", "--json"}).out);
  EXPECT_EQ(json["kind"], "contact");
  EXPECT_EQ(json["id"], "00000001");
  EXPECT_EQ(json["luid"], "00000001");
  EXPECT_EQ(json["name"], "Anna Berg");
  EXPECT_EQ(json["losses"], Json::array());
  for (const char* const member : {"status", "file", "line"}) EXPECT_FALSE(json.contains(member));
}

TEST(Show, TypesOfNumbersStandApartAsInAFile) {
  const Program program;
  Import(program, "a.vcf",
         "BEGIN:VCARD\r\nVERSION:2.1\r\nN:A\r\nTEL;HOME;VOICE:1\r\nEND:VCARD\r\n");
  const ProgramResult result = program.Run({"show", "contact", "1"});
  EXPECT_TRUE(Contains(result.out, "1 (home, voice)\n")) << result.out;
  const Json json = Json::parse(program.Run({"show", "contact", "1", "--json"}).out);
  for (const Json& property : json["properties"]) {
    if (property["name"] != "TEL") continue;
    EXPECT_EQ(property["params"], Json({"HOME", "VOICE"}));
  }
}

TEST(Show, WhatTheRecordCannotHoldIsToldAndInTheJson) {
  Program program;
  Import(program, "d.vmg", Mail("Wed, 31 Dec 2003 22:59:59 +0000", "\xE5\xB1\xB1", "Text"));
  program.Set("LANG", "C");
  const std::string id = FirstId(program, "message");
  const ProgramResult result = program.Run({"show", "message", id});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_TRUE(Contains(result.err, "message " + id +
                                       ": Subject has characters that the device's "
                                       "code page lacks"))
      << result.err;
  const Json json = Json::parse(program.Run({"show", "message", id, "--json"}).out);
  EXPECT_EQ(json["losses"].size(), 1U);
}

TEST(Show, WhatIsNotThereIsToldWithWhereToLook) {
  const Program program;
  const ProgramResult contact = program.Run({"show", "contact", "0000001a"});
  EXPECT_EQ(contact.exit_code, 1);
  EXPECT_EQ(contact.out, "");
  EXPECT_EQ(contact.err,
            "tamu: contact 0000001a: there is none on the device. "
            "'tamu list --kind contact' shows what there is\n");
  EXPECT_EQ(program.Run({"show", "note", "Nope"}).err,
            "tamu: note 'Nope': there is none on the device. "
            "'tamu list --kind note' shows what there is\n");
}

TEST(Show, AnIdOfAnotherKindSaysWhatItIs) {
  const Program program;
  Import(program, "b.vcs", Todo("Buy bulbs"));
  const ProgramResult result = program.Run({"show", "event", "1"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_TRUE(Contains(result.err, "that is todo, not event")) << result.err;
}

TEST(Show, ATextThatIsNoIdIsWrongUse) {
  const Program program;
  const ProgramResult contact = program.Run({"show", "contact", "Anna"});
  EXPECT_EQ(contact.exit_code, 2);
  EXPECT_TRUE(Contains(contact.err, "'Anna' is no id")) << contact.err;
  EXPECT_EQ(program.Run({"show", "message", "zz"}).exit_code, 2);
  EXPECT_EQ(program.Run({"show", "card", "1"}).exit_code, 2);
}

}  // namespace
}  // namespace tamu::tool
