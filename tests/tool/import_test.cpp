// "tamu import" while nothing fails.
#include <gtest/gtest.h>

#include <string>

#include "tool/program.h"
#include "tool/store_files.h"

namespace tamu::tool {
namespace {

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

ProgramResult Import(const Program& program, const std::string& bytes,
                     std::vector<std::string> options = {}) {
  program.Write("in", bytes);
  options.insert(options.begin(), "import");
  options.emplace_back("in");
  return program.Run(options);
}

TEST(Import, CountsWhatItAddsByKind) {
  const Program program;
  program.Write("a.vcf", Card("Berg;Anna") + Card("Berg;Bert"));
  program.Write("b.vcs", Event("20040105T090000", "Run") + Todo("Buy bulbs"));
  program.Write("c.vnt", Note("List", "milk"));
  program.Write("d.vmg", Mail("Wed, 31 Dec 2003 23:59:59 +0000", "Hello", "Text"));

  const ProgramResult result = program.Run({"import", "a.vcf", "b.vcs", "c.vnt", "d.vmg"});

  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out,
            "contacts: 2 added\nevents: 1 added\ntodos: 1 added\nnotes: 1 added\n"
            "messages: 1 added\n");
  EXPECT_EQ(result.err, "");
}

TEST(Import, ASecondImportSkipsEverything) {
  const Program program;
  const std::vector<std::string> files = {Card("Berg;Anna"), Event("20040105T090000", "Run"),
                                          Todo("Buy bulbs"), Note("List", "milk"),
                                          Mail("Wed, 31 Dec 2003 23:59:59 +0000", "Hello", "Text")};
  for (const std::string& file : files) {
    ASSERT_EQ(Import(program, file).exit_code, 0);
    const ProgramResult again = Import(program, file);
    EXPECT_EQ(again.exit_code, 0);
    EXPECT_TRUE(Contains(again.out, ": 1 skipped (already there)\n")) << again.out;
    EXPECT_EQ(again.err, "");
  }
}

TEST(Import, VerboseSaysWhatBecameOfEachObject) {
  const Program program;
  EXPECT_EQ(Import(program, Card("Berg;Anna"), {"-v"}).out,
            "in:1: contact \"Anna Berg\": added\ncontacts: 1 added\n");
  EXPECT_EQ(Import(program, Card("Berg;Anna") + Card("Berg;Bert"), {"--verbose"}).out,
            "in:1: contact \"Anna Berg\": skipped, already there (00000001)\n"
            "in:5: contact \"Bert Berg\": added\n"
            "contacts: 1 added, 1 skipped (already there)\n");
  EXPECT_EQ(Import(program, Card("Berg;Anna"), {"-v", "--on-duplicate", "update"}).out,
            "in:1: contact \"Anna Berg\": updated (00000001)\ncontacts: 1 updated\n");
}

TEST(Import, TheSameObjectTwiceInAFileIsADuplicate) {
  const Program program;
  EXPECT_EQ(Import(program, Card("Berg;Anna") + Card("Berg;Anna")).out,
            "contacts: 1 added, 1 skipped (already there)\n");
}

TEST(Import, OnDuplicateAddAddsOnceMore) {
  const Program program;
  ASSERT_EQ(Import(program, Card("Berg;Anna")).exit_code, 0);
  const ProgramResult result = Import(program, Card("Berg;Anna"), {"--on-duplicate", "add"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out, "contacts: 1 added\n");
  EXPECT_EQ(program.Run({"delete", "contact", "1", "2"}).exit_code, 0);
}

TEST(Import, OnDuplicateUpdateReplacesANoteWithATitleBeyondTheAnsiCodePage) {
  const Program program;
  const std::string title = "\xD0\x98\xD0\xB4\xD0\xB5\xD1\x8F";
  const auto note = [&](const std::string& body) {
    return "BEGIN:VNOTE\r\nVERSION:1.1\r\nSUMMARY;CHARSET=UTF-8:" + title + "\r\nBODY:" + body +
           "\r\nEND:VNOTE\r\n";
  };
  Program western;
  western.Set("LANG", "C");
  // What the title is in that code page, other notes are called.
  ASSERT_EQ(Import(western, Note("?", "kept")).exit_code, 0);
  ASSERT_EQ(Import(western, note("one")).exit_code, 0);
  const std::string before = ReadFileBytes(western.home() + "/Documents/" + title + ".pwi");

  EXPECT_EQ(Import(western, note("two"), {"--on-duplicate", "update"}).out, "notes: 1 updated\n");

  EXPECT_NE(ReadFileBytes(western.home() + "/Documents/" + title + ".pwi"), before);
  EXPECT_NE(ReadFileBytes(western.home() + "/Documents/.pwi"), "");
}

TEST(Import, OnDuplicateAddRefusesANoteThatIsThere) {
  const Program program;
  ASSERT_EQ(Import(program, Note("List", "milk")).exit_code, 0);
  const std::string before = ReadFileBytes(program.home() + "/Documents/List.pwi");

  const ProgramResult result = Import(program, Note("List", "bread"), {"--on-duplicate", "add"});

  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "notes: 1 failed\n");
  EXPECT_EQ(result.err,
            "in:1: note \"List\": the device has a note with this title, and one at most; "
            "'--on-duplicate update' replaces it\n");
  EXPECT_EQ(ReadFileBytes(program.home() + "/Documents/List.pwi"), before);
}

// Each pair would match each other if the device were asked.
TEST(Import, ObjectsThatCannotBeRecognisedAreAddedAndSaidToBeSo) {
  const std::string end = "; another import would add it once more\n";
  const struct {
    std::string object;
    std::string missing;
  } cases[] = {
      {"BEGIN:VCARD\r\nVERSION:2.1\r\nN:;;;;\r\nTEL:1\r\nEND:VCARD\r\n", "it has no name in N"},
      {CalendarItem("VTODO", "DUE:20040301\r\n"), "it has no SUMMARY"},
      {CalendarItem("VEVENT", "SUMMARY:Run\r\n"), "it has no DTSTART"},
      {CalendarItem("VEVENT", "SUMMARY:Run\r\nDTSTART:soon\r\n"), "its DTSTART cannot be read"},
      {CalendarItem("VEVENT", "DTSTART:20040105T090000\r\n"),
       "it has neither SUMMARY nor DESCRIPTION"},
      {Mail("", "Hello", "Text"), "it has no date"},
      {Mail("soon", "Hello", "Text"), "its date cannot be read"}};
  for (const auto& [object, missing] : cases) {
    const Program program;
    for (int i = 0; i < 2; ++i) {
      const ProgramResult result = Import(program, object + object);
      EXPECT_EQ(result.exit_code, 0) << missing;
      EXPECT_TRUE(Contains(result.out, ": 2 added\n")) << missing << ": " << result.out;
      const std::size_t first = result.err.find("cannot be recognised again: " + missing + end);
      EXPECT_NE(first, std::string::npos) << result.err;
      EXPECT_TRUE(Contains(result.err.substr(first + 1), "cannot be recognised again: " + missing))
          << result.err;
    }
  }
}

TEST(Import, ANoteWithoutTitleFailsWithTheReason) {
  const Program program;
  const ProgramResult result = Import(program, Note("", "milk") + Note("List", "bread"));
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "notes: 1 added, 1 failed\n");
  EXPECT_EQ(result.err,
            "in:1: note without a name: it has no title (SUMMARY), and the device keeps notes by "
            "title\n");
}

TEST(Import, NotesWithoutBodyAndWithLineBreaksAreReadBackAsWritten) {
  const Program program;
  const ProgramResult result = Import(
      program, "BEGIN:VNOTE\r\nVERSION:1.1\r\nSUMMARY:Empty\r\nEND:VNOTE\r\n" +
                   Note("Lines", "a=0D=0Ab\\;c") +
                   "BEGIN:VNOTE\r\nVERSION:1.1\r\nSUMMARY:Breaks\r\n"
                   "BODY;ENCODING=QUOTED-PRINTABLE;CHARSET=UTF-8:=E2=82=AC=0Aa=0Db=0D=0A=\r\n"
                   "=F0=9F=8E=BB\r\nEND:VNOTE\r\n");
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out, "notes: 3 added\n");
}

TEST(Import, NothingIsLeftBesideTheNotes) {
  const Program program;
  ASSERT_EQ(Import(program, Note("One", "a") + Note("Two", "b")).exit_code, 0);
  ASSERT_EQ(Import(program, Note("One", "c"), {"--on-duplicate", "update"}).exit_code, 0);
  EXPECT_EQ(FileNames(program.home() + "/Documents"),
            (std::vector<std::string>{"One.pwi", "Two.pwi"}));
}

TEST(Import, ALongTitleKeepsItsName) {
  const Program program;
  std::string title;
  for (int i = 0; i < 130; ++i) title += "\xD0\x96";  // 260 bytes
  const std::string note = "BEGIN:VNOTE\r\nVERSION:1.1\r\nSUMMARY;CHARSET=UTF-8:" + title +
                           "\r\nBODY:a\r\nEND:VNOTE\r\n";
  ASSERT_EQ(Import(program, note).exit_code, 0);
  EXPECT_EQ(Import(program, note).out, "notes: 1 skipped (already there)\n");
  EXPECT_EQ(program.Run({"delete", "note", title}).exit_code, 0);
}

TEST(Import, DryRunSaysWhatTheImportThenDoes) {
  const Program program;
  ASSERT_EQ(Import(program, Card("Berg;Anna")).exit_code, 0);
  const std::string file = Card("Berg;Anna") + Card("Berg;Bert") + Card("Berg;Bert");

  const ProgramResult dry = Import(program, file, {"--dry-run", "-v"});
  EXPECT_EQ(dry.exit_code, 0);
  EXPECT_EQ(dry.out,
            "in:1: contact \"Anna Berg\": would be skipped, already there (00000001)\n"
            "in:5: contact \"Bert Berg\": would be added\n"
            "in:9: contact \"Bert Berg\": would be skipped, already there\n"
            "contacts: 1 would be added, 2 would be skipped (already there)\n");
  EXPECT_EQ(Import(program, file, {"--dry-run", "--on-duplicate", "update"}).out,
            "contacts: 1 would be added, 2 would be updated\n");

  EXPECT_EQ(Import(program, file).out, "contacts: 1 added, 2 skipped (already there)\n");
}

TEST(Import, DryRunSaysWhatWouldFail) {
  const Program program;
  ASSERT_EQ(Import(program, Note("List", "milk")).exit_code, 0);
  const ProgramResult dry = Import(program, Note("", "a") + Note("List", "b") + Note("New", "c"),
                                   {"--dry-run", "--on-duplicate", "add"});
  EXPECT_EQ(dry.exit_code, 1);
  EXPECT_EQ(dry.out, "notes: 1 would be added, 2 would fail\n");
  EXPECT_EQ(FileNames(program.home() + "/Documents"), (std::vector<std::string>{"List.pwi"}));
}

TEST(Import, WarningsOfReadingAreToldBehindObjectsThatTheStoreLoggedAbout) {
  const Program program;
  const ProgramResult result = Import(
      program,
      CalendarItem("VEVENT", "SUMMARY:Run\r\nDTSTART:20040105T090000\r\nRRULE:never\r\n") +
          CalendarItem("VEVENT", "SUMMARY:Walk\r\nDTSTART:20040106T090000\r\nX-PET:dog\r\n"));
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out, "events: 2 added\n");
  EXPECT_TRUE(Contains(result.err,
                       "in:3: warning: event \"Run\": its recurrence rule cannot be read: it is "
                       "stored as happening once\n"))
      << result.err;
  EXPECT_TRUE(Contains(result.err, "in:14: warning: the property 'X-PET' is not known"))
      << result.err;
}

// As a reading error, the store's word would be told instead of what is wrong in the file.
TEST(Import, WhatTheStoreLogsIsNoReasonOfReading) {
  const Program program;
  const ProgramResult result = Import(
      program, CalendarItem("VEVENT", "SUMMARY:Run\r\nDTSTART:20040105T090000\r\nRRULE:never\r\n") +
                   "BEGIN:VCALENDAR\r\nVERSION:1.0\r\nBEGIN:VJOURNAL\r\nEND:VJOURNAL\r\n");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_TRUE(Contains(result.err, "tamu: in:11: this BEGIN is neither VEVENT nor VTODO"))
      << result.err;
}

TEST(Import, WhatABrokenFileLeavesUnreadIsCounted) {
  const Program program;
  const ProgramResult result =
      Import(program, Card("Berg;Anna") + "BEGIN:VCARD\r\nVERSION:2.1\r\nEND:VCARD\r\n" +
                          Card("Berg;Bert") + Card("Berg;Carl"));
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "contacts: 1 added\n");
  EXPECT_TRUE(Contains(result.err, "tamu: in:5: the card that begins here has no N line"))
      << result.err;
  EXPECT_TRUE(Contains(result.err, "in: not imported: 3 objects, from line 5 on\n")) << result.err;
}

TEST(Import, TheNextFileIsImportedAfterABrokenOne) {
  const Program program;
  program.Write("a.vcf", "nonsense");
  program.Write("b.vcf", Card("Berg;Anna"));
  const ProgramResult result = program.Run({"import", "a.vcf", "missing.vcf", "b.vcf"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "contacts: 1 added\n");
  EXPECT_TRUE(Contains(result.err, "tamu: missing.vcf: cannot open it")) << result.err;
}

TEST(Import, StandardInputIsImported) {
  Program program;
  program.SetInput(Card("Berg;Anna"));
  EXPECT_EQ(program.Run({"import", "-v", "-"}).out,
            "standard input:1: contact \"Anna Berg\": added\ncontacts: 1 added\n");
}

TEST(Import, TenThousandContactsAreAddedAndFoundAgain) {
  const Program program;
  const std::string file = Contacts(10000);
  EXPECT_EQ(Import(program, file).out, "contacts: 10000 added\n");
  EXPECT_EQ(Import(program, file).out, "contacts: 10000 skipped (already there)\n");
}

TEST(Import, PartsOfAMessageThatAreNotKeptAreTold) {
  const Program program;
  const ProgramResult result =
      Import(program, ReadFileBytes(TAMU_EXAMPLES "/message_attachment.vmg"));
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out, "messages: 1 added\n");
  EXPECT_TRUE(
      Contains(result.err, "1 part of it was left out: the device keeps the first text alone\n"))
      << result.err;
}

TEST(Import, NamesInMessagesAreSafeAndNotLong) {
  const Program program;
  const ProgramResult result = Import(program, Card(std::string(100, 'x') + ";a\x1B[2J"), {"-v"});
  EXPECT_EQ(result.out.find('\x1B'), std::string::npos);
  EXPECT_TRUE(Contains(result.out, "xxx\xE2\x80\xA6\": added")) << result.out;
}

TEST(Import, WrongUseIsExplained) {
  const Program program;
  const ProgramResult result = program.Run({"import", "--on-duplicate", "replace", "a.vcf"});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_TRUE(Contains(result.err, "'replace' is unknown: skip, update or add")) << result.err;
}

}  // namespace
}  // namespace tamu::tool
