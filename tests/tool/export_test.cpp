// "tamu export".
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tool/program.h"
#include "tool/store_files.h"

namespace tamu::tool {
namespace {

namespace fs = std::filesystem;

bool Contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

void Import(const Program& program, const std::string& name, const std::string& bytes) {
  program.Write(name, bytes);
  const ProgramResult result = program.Run({"import", "--on-duplicate", "add", name});
  ASSERT_EQ(result.exit_code, 0) << result.err;
  ::unlink(program.Path(name).c_str());
}

void ImportOneOfEach(const Program& program) {
  Import(program, "a.vcf", Card("Berg;Anna"));
  Import(program, "b.vcs", Event("20040105T090000", "Run") + Todo("Buy bulbs"));
  Import(program, "c.vnt", Note("List", "milk"));
  Import(program, "d.vmg", Mail("Wed, 31 Dec 2003 22:59:59 +0000", "Hello", "Text"));
}

std::vector<std::string> NamesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string CardOf(const std::string& name, const std::string& lines) {
  return "BEGIN:VCARD\r\nVERSION:2.1\r\nN:" + name + "\r\n" + lines + "END:VCARD\r\n";
}

TEST(Export, ContactsGoToAFileThatCanBeRead) {
  const Program program;
  Import(program, "a.vcf", Card("Berg;Anna") + Card("Berg;Bert"));
  const ProgramResult result = program.Run({"export", "-o", "all.vcf"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "all.vcf: 2 contacts written\n");
  EXPECT_EQ(program.Read("all.vcf"),
            "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Berg;Anna\r\nX-CAT:\r\nX-IRMC-LUID:00000001\r\n"
            "END:VCARD\r\nBEGIN:VCARD\r\nVERSION:2.1\r\nN:Berg;Bert\r\nX-CAT:\r\n"
            "X-IRMC-LUID:00000002\r\nEND:VCARD\r\n");
}

TEST(Export, OneKindGoesToStandardOutput) {
  const Program program;
  ImportOneOfEach(program);
  const ProgramResult result = program.Run({"export", "--kind", "note"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.out, "BEGIN:VNOTE\r\nVERSION:1.1\r\nSUMMARY:List\r\nBODY:milk\r\nEND:VNOTE\r\n");
  EXPECT_EQ(result.err, "standard output: 1 note written\n");
}

TEST(Export, WithoutAKindTheOnlyOneThatTheDeviceHasIsMeant) {
  const Program program;
  Import(program, "b.vcs", Event("20040105T090000", "Run") + Todo("Buy bulbs"));
  const ProgramResult result = program.Run({"export"});
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_TRUE(Contains(result.out, "BEGIN:VEVENT"));
  EXPECT_TRUE(Contains(result.out, "BEGIN:VTODO"));
}

TEST(Export, SeveralKindsDoNotGoIntoOneFile) {
  const Program program;
  ImportOneOfEach(program);
  const std::vector<std::vector<std::string>> commands = {
      {"export"},
      {"export", "-o", "all.vcf"},
      {"export", "--kind", "contact", "--kind", "note", "-o", "all.vcf"}};
  for (const auto& command : commands) {
    const ProgramResult result = program.Run(command);
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_TRUE(Contains(result.err,
                         "Name one with --kind (calendar is events and todos), or a "
                         "folder with -o FOLDER/"))
        << result.err;
  }
  EXPECT_FALSE(program.Exists("all.vcf"));
  EXPECT_EQ(program.Run({"export", "--kind", "event", "--kind", "todo"}).exit_code, 0);
}

TEST(Export, NothingToWriteIsAFailureThatLeavesTheFile) {
  const Program program;
  program.Write("all.vcf", "old");
  const ProgramResult result = program.Run({"export", "--kind", "contact", "-o", "all.vcf"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_TRUE(Contains(result.err, "nothing was written: the device in ")) << result.err;
  EXPECT_TRUE(Contains(result.err, " has no contacts\n")) << result.err;
  EXPECT_EQ(program.Read("all.vcf"), "old");
}

TEST(Export, AFolderGetsAFileForEachObjectUnderATellingName) {
  const Program program;
  ImportOneOfEach(program);
  const ProgramResult result = program.Run({"export", "-o", "backup/new/"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.err, "backup/new/: 1 contact, 1 event, 1 todo, 1 note, 1 message written\n");
  const std::vector<std::string> names = NamesIn(program.Path("backup/new"));
  ASSERT_EQ(names.size(), 5U);
  EXPECT_EQ(names[0], "contact-00000001.vcf");
  EXPECT_EQ(names[1], "event-00000002.vcs");
  EXPECT_TRUE(names[2].starts_with("message-")) << names[2];
  EXPECT_TRUE(names[2].ends_with(".vmg")) << names[2];
  EXPECT_EQ(names[3], "note-List.vnt");
  EXPECT_EQ(names[4], "todo-00000003.vcs");
  for (const std::string& name : names) {
    EXPECT_EQ(program.Run({"read", "backup/new/" + name}).exit_code, 0) << name;
  }
}

TEST(Export, AFolderThatIsThereNeedsNoSlashAndIsWrittenAgain) {
  const Program program;
  Import(program, "a.vcf", Card("Berg;Anna"));
  fs::create_directory(program.Path("backup"));
  program.Write("backup/contact-00000001.vcf", "old");
  program.Write("backup/mine", "kept");
  EXPECT_EQ(program.Run({"export", "-o", "backup"}).exit_code, 0);
  EXPECT_TRUE(program.Read("backup/contact-00000001.vcf").starts_with("BEGIN:VCARD"));
  EXPECT_EQ(program.Read("backup/mine"), "kept");
}

TEST(Export, NotesWhoseNamesWouldBeTheSameGetDifferentOnes) {
  Program program;
  program.Set("TAMU_HOME", program.Path("device"));
  Import(program, "c.vnt", Note("List", "one") + Note("LIST", "two"));
  // A title that another program made: without the character that names cannot have, it is "List".
  fs::copy_file(program.Path("device/Documents/List.pwi"),
                program.Path("device/Documents/Li:st.pwi"));
  const ProgramResult result = program.Run({"export", "-o", "out/"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(NamesIn(program.Path("out")),
            (std::vector<std::string>{"note-LIST-2.vnt", "note-List-3.vnt", "note-List.vnt"}));
}

TEST(Export, ALongTitleMakesANameThatFileSystemsTake) {
  const Program program;
  std::string title;
  for (int i = 0; i < 120; ++i) title += "\xE5\xB1\xB1";
  Import(program, "c.vnt",
         "BEGIN:VNOTE\r\nVERSION:1.1\r\nSUMMARY;CHARSET=UTF-8:" + title +
             "\r\nBODY:x\r\nEND:VNOTE\r\n");
  const ProgramResult result = program.Run({"export", "-o", "out/"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(NamesIn(program.Path("out")).size(), 1U);
}

TEST(Export, ARawLineBreakIsReportedWithTheObjectAndTheFileIsKept) {
  const Program program;
  Import(program, "a.vcf",
         CardOf("A", "FN;ENCODING=QUOTED-PRINTABLE:one=0D=0Atwo\r\n") + Card("B"));
  const ProgramResult result = program.Run({"export", "-o", "all.vcf"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err,
            "all.vcf: contact 00000001 \"one\\x0d\\x0atwo\": FN 'one\\x0d\\x0atwo' came back as "
            "'one'\n"
            "all.vcf: 2 contacts written\n"
            "all.vcf: 1 object does not come back from all.vcf as it is on the device (above)\n");
  EXPECT_TRUE(Contains(program.Read("all.vcf"), "N:B"));
}

TEST(Export, ATextThatWouldJoinTheNextLineGetsABlankAndIsReported) {
  const Program program;
  Import(program, "a.vcf", CardOf("A", "FN;ENCODING=QUOTED-PRINTABLE:open=3D\r\n"));
  const ProgramResult result = program.Run({"export", "-o", "out/"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_TRUE(Contains(result.err,
                       "out/contact-00000001.vcf: contact 00000001 \"open=\": FN "
                       "'open=' came back as 'open= '\n"))
      << result.err;
  EXPECT_TRUE(Contains(program.Read("out/contact-00000001.vcf"), "FN:open= \r\nX-CAT:\r\n"));
}

TEST(Export, AnObjectThatEndsTheReadingOfItsFileStandsBehindAllOthers) {
  const Program program;
  Import(program, "a.vcf",
         CardOf("A", "FN;ENCODING=QUOTED-PRINTABLE:x=0D=0AEND:VCARD\r\n") + Card("B") + Card("C"));
  const ProgramResult result = program.Run({"export", "-o", "all.vcf"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_TRUE(Contains(result.err, "a file with it cannot be read beyond it")) << result.err;
  EXPECT_TRUE(Contains(result.err,
                       "all.vcf: 1 object that ends the reading of a file stands at "
                       "its end, behind all others\n"))
      << result.err;
  EXPECT_TRUE(Contains(result.err, "all.vcf: 3 contacts written\n")) << result.err;
  const std::string shown = program.Run({"read", "all.vcf"}).out;
  EXPECT_TRUE(Contains(shown, "B\n"));
  EXPECT_TRUE(Contains(shown, "C\n"));
}

TEST(Export, MessageTextsComeBackWhole) {
  const Program program;
  const std::vector<std::string> bodies = {"one line",       "two\r\nlines",
                                           "ends empty\r\n", "open=3D\r\nline",
                                           "1 =3D0D=3D0A 2", "gr\xC3\xBC\xC3\x9F"};
  std::string file;
  for (std::size_t i = 0; i < bodies.size(); ++i) {
    std::string mail =
        Mail("Wed, 31 Dec 2003 22:59:59 +0000", "Hello" + std::to_string(i), bodies[i]);
    mail.insert(mail.find("Subject:"),
                "Content-Type:text/plain; charset=UTF-8\r\n"
                "Content-Transfer-Encoding:quoted-printable\r\n");
    file += mail;
  }
  Import(program, "d.vmg", file);
  const ProgramResult result = program.Run({"export", "-o", "all.vmg"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  const std::string shown = program.Run({"read", "all.vmg"}).out;
  EXPECT_TRUE(Contains(shown, "open=\n                line\n")) << shown;
  EXPECT_TRUE(Contains(shown, "1 =0D=0A 2\n")) << shown;
  EXPECT_TRUE(Contains(shown, "grüß\n")) << shown;
}

TEST(Export, TheTextOfAPageComesBackLineByLine) {
  const Program program;
  std::string mail = Mail("Wed, 31 Dec 2003 22:59:59 +0000", "Hello",
                          "<html><body><p>one</p><p>two</p></body></html>");
  mail.insert(mail.find("Subject:"), "Content-Type:text/html; charset=UTF-8\r\n");
  Import(program, "d.vmg", mail);
  const ProgramResult result = program.Run({"export", "-o", "all.vmg"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_TRUE(Contains(program.Read("all.vmg"), "\r\none\r\ntwo\r\nEND:VBODY"))
      << program.Read("all.vmg");
}

TEST(Export, AHeaderThatIsTooLongIsReported) {
  const Program program;
  // Recipients stand apart by two characters when they come back, which makes the header longer.
  std::string recipients;
  for (int i = 0; i < 450; ++i) recipients += "a;";
  std::string mail = Mail("Wed, 31 Dec 2003 22:59:59 +0000", "Hello", "Text");
  mail.replace(mail.find("bert@example.org"), 16, recipients);
  Import(program, "d.vmg", mail);
  const ProgramResult result = program.Run({"export", "-o", "all.vmg"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_TRUE(Contains(result.err, " \" Hello\": To is too long and is cut\n")) << result.err;
}

TEST(Export, ADamagedNoteIsToldAndTheOthersAreWritten) {
  Program program;
  program.Set("TAMU_HOME", program.Path("device"));
  Import(program, "c.vnt", Note("Good", "one") + Note("Bad", "two"));
  std::ofstream(program.Path("device/Documents/Bad.pwi"), std::ios::binary) << "{\\pwi";
  const ProgramResult result = program.Run({"export", "-o", "all.vnt"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_TRUE(Contains(result.err, "note \"Bad\": the document is damaged")) << result.err;
  EXPECT_TRUE(Contains(program.Read("all.vnt"), "SUMMARY:Good"));
}

TEST(Export, AFileThatCannotBeWrittenIsToldAndLeftAsItWas) {
  Program program;
  Import(program, "a.vcf", Card("Berg;Anna"));
  const ProgramResult missing = program.Run({"export", "-o", "no/all.vcf"});
  EXPECT_EQ(missing.exit_code, 1);
  EXPECT_TRUE(missing.err.starts_with("tamu: no/all.vcf: ")) << missing.err;
  const ProgramResult full = program.Run({"export", "-o", "/dev/full"});
  EXPECT_EQ(full.exit_code, 1);
  EXPECT_TRUE(Contains(full.err, "/dev/full: writing failed: ")) << full.err;
  program.Write("file", "");
  const ProgramResult folder = program.Run({"export", "-o", "file/"});
  EXPECT_EQ(folder.exit_code, 1);
  EXPECT_TRUE(Contains(folder.err, "file/: the folder cannot be made: ")) << folder.err;
}

TEST(Export, AReaderThatHasSeenEnoughNeedsNoMessage) {
  Program program;
  Import(program, "a.vcf", Card("Berg;Anna"));
  program.SetOutputWithoutReader();
  const ProgramResult result = program.Run({"export"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.err, "");
}

TEST(Export, NoTemporaryFileIsLeft) {
  const Program program;
  Import(program, "a.vcf", Card("Berg;Anna"));
  ASSERT_EQ(program.Run({"export", "-o", "out/"}).exit_code, 0);
  ASSERT_EQ(program.Run({"export", "-o", "all.vcf"}).exit_code, 0);
  EXPECT_EQ(program.Names(), (std::vector<std::string>{"all.vcf", "out"}));
  EXPECT_EQ(NamesIn(program.Path("out")), std::vector<std::string>{"contact-00000001.vcf"});
}

}  // namespace
}  // namespace tamu::tool
