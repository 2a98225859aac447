// "tamu update".
#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "tool/program.h"
#include "tool/store_files.h"

namespace tamu::tool {
namespace {

ProgramResult Update(const Program& program, const std::string& kind, const std::string& id,
                     const std::string& bytes) {
  program.Write("new", bytes);
  return program.Run({"update", kind, id, "new"});
}

void Import(const Program& program, const std::string& bytes) {
  program.Write("in", bytes);
  ASSERT_EQ(program.Run({"import", "in"}).exit_code, 0);
}

bool Has(const Program& program, const std::string& bytes) {
  program.Write("asked", bytes);
  return program.Run({"find", "asked"}).exit_code == 0;
}

TEST(Update, AContactGetsItsNewName) {
  const Program program;
  Import(program, Card("Berg;Anna"));
  const ProgramResult result = Update(program, "contact", "1", Card("Tal;Anna"));
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out, "contact \"Anna Tal\": updated (00000001)\n");
  EXPECT_EQ(result.err, "");
  EXPECT_TRUE(Has(program, Card("Tal;Anna")));
  EXPECT_FALSE(Has(program, Card("Berg;Anna")));
}

TEST(Update, EventsTodosAndMessagesAreReplaced) {
  const Program program;
  Import(program, Event("20040105T090000", "Run"));
  Import(program, Todo("Buy bulbs"));
  const std::string mail = Mail("Wed, 31 Dec 2003 23:59:59 +0000", "Hello", "Text");
  Import(program, mail);
  program.Write("mail", mail);
  const std::string found = program.Run({"find", "mail"}).out;
  const std::size_t begin = found.rfind(' ') + 1;
  const std::string id = found.substr(begin, found.size() - begin - 1);
  const std::string new_mail = Mail("Wed, 31 Dec 2003 23:59:59 +0000", "Bye", "Text");

  EXPECT_EQ(Update(program, "event", "1", Event("20040106T090000", "Run")).exit_code, 0);
  EXPECT_EQ(Update(program, "todo", "2", Todo("Buy milk")).exit_code, 0);
  const ProgramResult result = Update(program, "message", id, new_mail);

  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.err,
            "new:1: warning: message \"anna@example.org - Bye\": its recipients were added beside "
            "those that it had\n");
  EXPECT_TRUE(Has(program, Event("20040106T090000", "Run") + Todo("Buy milk")));
  EXPECT_TRUE(Has(program, new_mail));
  EXPECT_FALSE(Has(program, mail));
}

TEST(Update, TheFileMustHoldOneObjectOfTheKind) {
  const Program program;
  Import(program, Card("Berg;Anna"));
  EXPECT_EQ(Update(program, "contact", "1", Card("a;b") + Card("c;d")).err,
            "tamu: new: it holds 2 objects, and one is needed: the new form of the contact\n");
  EXPECT_EQ(Update(program, "contact", "1", Todo("a")).err,
            "tamu: new: it holds a different kind of object: todo, not contact\n");
  EXPECT_EQ(Update(program, "event", "1", Todo("a")).err,
            "tamu: new: it holds a different kind of object: todo, not event\n");
  EXPECT_EQ(Update(program, "contact", "1", Card("a;b") + "BEGIN:VCARD\r\n").exit_code, 1);
  EXPECT_EQ(program.Run({"update", "contact", "1", "missing"}).exit_code, 1);
  EXPECT_TRUE(Has(program, Card("Berg;Anna")));
}

TEST(Update, WhatIsNotThereOrOfAnotherKindIsLeftAlone) {
  const Program program;
  Import(program, Event("20040105T090000", "Run"));
  EXPECT_EQ(Update(program, "contact", "9", Card("a;b")).err,
            "tamu: contact 00000009: there is none on the device\n");
  EXPECT_EQ(Update(program, "todo", "1", Todo("a")).err,
            "tamu: todo 00000001: the object with this id is of another kind: event\n");
  EXPECT_EQ(Update(program, "note", "List", Note("List", "a")).err,
            "tamu: note List: there is none on the device\n");
  EXPECT_TRUE(Has(program, Event("20040105T090000", "Run")));
}

TEST(Update, WrongIdsAndKindsAreWrongUse) {
  const Program program;
  EXPECT_EQ(Update(program, "contact", "x", Card("a;b")).exit_code, 2);
  EXPECT_EQ(Update(program, "card", "1", Card("a;b")).exit_code, 2);
  EXPECT_EQ(Update(program, "calendar", "1", Todo("a")).exit_code, 2);
}

TEST(Update, ANoteKeepsItsTitleOrGetsANewOne) {
  const Program program;
  Import(program, Note("List", "milk"));
  const std::string documents = program.home() + "/Documents";
  const std::string before = ReadFileBytes(documents + "/List.pwi");
  EXPECT_EQ(Update(program, "note", "List", Note("List", "bread")).out,
            "note \"List\": updated (List)\n");
  EXPECT_NE(ReadFileBytes(documents + "/List.pwi"), before);
  EXPECT_EQ(Update(program, "note", "List", Note("Food", "milk")).exit_code, 0);
  EXPECT_EQ(FileNames(documents), (std::vector<std::string>{"Food.pwi"}));
  EXPECT_EQ(ReadFileBytes(documents + "/Food.pwi"), before);
}

TEST(Update, ANoteWithATitleBeyondTheAnsiCodePageIsTheOneThatIsMeant) {
  Program program;
  program.Set("LANG", "C");
  const std::string title = "\xE8\xB2\xB7\xE3\x81\x84";
  Import(program, "BEGIN:VNOTE\r\nVERSION:1.1\r\nSUMMARY;CHARSET=UTF-8:" + title +
                      "\r\nBODY:a\r\nEND:VNOTE\r\n");
  Import(program, Note("??", "kept"));
  EXPECT_EQ(Update(program, "note", title, Note("Food", "milk")).exit_code, 0);
  EXPECT_EQ(FileNames(program.home() + "/Documents"),
            (std::vector<std::string>{".pwi", "Food.pwi"}));
}

TEST(Update, ATitleThatAnotherNoteHasIsRefusedAndBothStay) {
  const Program program;
  Import(program, Note("List", "milk") + Note("Food", "bread"));
  const std::string documents = program.home() + "/Documents";
  const std::string food = ReadFileBytes(documents + "/Food.pwi");
  const ProgramResult result = Update(program, "note", "List", Note("Food", "milk"));
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err,
            "tamu: new:1: note \"Food\": the device has a note with this title, which it would "
            "replace\n");
  EXPECT_EQ(FileNames(documents), (std::vector<std::string>{"Food.pwi", "List.pwi"}));
  EXPECT_EQ(ReadFileBytes(documents + "/Food.pwi"), food);
}

TEST(Update, AFullDiskLeavesTheOldObject) {
  Program program;
  Import(program, Note("List", "milk"));
  Import(program, Card("Berg;Anna"));
  const std::string before = ReadFileBytes(program.home() + "/Documents/List.pwi");
  program.SetFileSizeLimit(600000);
  const ProgramResult note =
      Update(program, "note", "List", Note("Food", std::string(700000, 'x')));
  EXPECT_EQ(note.exit_code, 1);
  EXPECT_EQ(FileNames(program.home() + "/Documents"), (std::vector<std::string>{"List.pwi"}));
  EXPECT_EQ(ReadFileBytes(program.home() + "/Documents/List.pwi"), before);

  program.SetFileSizeLimit(0);
  const std::string large =
      "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Tal;Anna\r\nNOTE:" + std::string(700000, 'x') +
      "\r\nEND:VCARD\r\n";
  program.Write("new", large);
  program.SetFileSizeLimit(400000);
  const ProgramResult contact = program.Run({"update", "contact", "1", "new"});
  EXPECT_EQ(contact.exit_code, 1);
  EXPECT_NE(contact.err.find("no space left to write"), std::string::npos) << contact.err;
  program.SetFileSizeLimit(0);
  EXPECT_TRUE(Has(program, Card("Berg;Anna")));
}

}  // namespace
}  // namespace tamu::tool
