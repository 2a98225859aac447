#include "formats/vmessage_content.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <thread>
#include <vector>

#include "core/records.h"
#include "platform/files.h"
#include "support/log_capture.h"
#include "support/message_reading.h"

namespace tamu {
namespace {

using testing::LogCapture;
using testing::Mail;
using testing::MessageReading;
using testing::MessageTest;
using testing::SeenMessage;
using Lines = std::vector<std::string>;

const std::string kFileHeader = "Content-Type:image/jpeg; name=\"a.jpg\"\r\n";

class VmsgReadRawLine : public MessageTest {
 protected:
  // Every line of `content`.
  Lines AllLines(const std::string& content) {
    File file;
    EXPECT_EQ(FILE_Open(files_.Put("lines", content).c_str(), u"rb", &file), 0U);
    Lines lines;
    while (!file.AtEnd()) {
      std::string_view line;
      EXPECT_TRUE(VMSG_ReadRawLine(&file, &line));
      lines.emplace_back(line);
    }
    end_ = file.Tell();
    return lines;
  }
  File::Place end_;
};
using VmsgReadContent = MessageTest;

TEST_F(VmsgReadRawLine, LinesEndAtLineFeedsAndAreNotUnfolded) {
  EXPECT_EQ(AllLines("a\nb\r\n c\n\n\td=\ne"), (Lines{"a", "b", " c", "", "\td=", "e"}));
  EXPECT_EQ(end_.line, 6U);
}

// What a line feed ends is one line: whether there is another is only seen by reading on.
TEST_F(VmsgReadRawLine, ALineFeedAtTheEndIsFollowedByAnEmptyLine) {
  EXPECT_EQ(AllLines("a\n"), (Lines{"a", ""}));
  EXPECT_EQ(AllLines(""), Lines{""});
}

TEST_F(VmsgReadRawLine, ALineIsCutAtItsFirstCarriageReturnOrNul) {
  EXPECT_EQ(AllLines("ab\rcd\nef"), (Lines{"ab", "ef"}));
  EXPECT_EQ(AllLines(std::string("a\0b\rc\n\r\nd", 9)), (Lines{"a", "", "d"}));
}

TEST_F(VmsgReadRawLine, ALineOfAMillionBytesIsOne) {
  const std::string longest(1000000, 'x');
  EXPECT_EQ(AllLines("a\n" + longest + "\r\nb"), (Lines{"a", longest, "b"}));
}

TEST_F(VmsgReadRawLine, ReadingCostsNoSystemCallALine) {
  std::string content;
  for (int i = 0; i < 20000; ++i) content += "line\r\n";  // 120,000 bytes
  const std::uint64_t reads = platform::ReadFile.calls();
  const std::uint64_t seeks = platform::SetFilePointerEx.calls();
  EXPECT_EQ(AllLines(content).size(), 20001U);
  EXPECT_LE(platform::ReadFile.calls() - reads, 6U);
  EXPECT_EQ(platform::SetFilePointerEx.calls(), seeks);
}

TEST_F(VmsgReadRawLine, WithoutMemoryForALongLineThereIsNone) {
  File file;
  ASSERT_EQ(FILE_Open(files_.Put("a", std::string(200000, 'x')).c_str(), u"rb", &file), 0U);
  MEM_FailNth(1);
  std::string_view line;
  EXPECT_FALSE(VMSG_ReadRawLine(&file, &line));
  MEM_FailNth(0);
}

TEST_F(VmsgReadContent, EveryLineHasALineFeedBehindItAlsoTheLast) {
  EXPECT_EQ(ReadOne(Mail("", "a\r\n\r\n b\nc\r\n")).parts.at(0).text, "a\n\n b\nc\n");
}

TEST_F(VmsgReadContent, WithoutLinesTheTextIsThereAndEmpty) {
  EXPECT_EQ(ReadOne(Mail("", "")).parts.at(0).text, "");
}

TEST_F(VmsgReadContent, ALineThatEndsInEqualsIsJoinedToTheNext) {
  EXPECT_EQ(ReadOne(Mail("", "abc=\r\ndef\r\n")).parts.at(0).text, "abcdef\n");
  EXPECT_EQ(ReadOne(Mail("", "a==\r\n=\r\n\r\nb=\r\n")).parts.at(0).text, "a=\nb");
}

TEST_F(VmsgReadContent, LinesAreJoinedWhateverTheEncodingIs) {
  EXPECT_EQ(
      ReadOne(Mail("Content-Transfer-Encoding:base64\r\n", "YQ==\r\nYg==\r\n")).parts.at(0).text,
      "YQ=Yg=");
}

TEST_F(VmsgReadContent, NoEncodingIsUndone) {
  EXPECT_EQ(ReadOne(Mail("Content-Transfer-Encoding:quoted-printable\r\n", "=C3=A4=20\r\n"))
                .parts.at(0)
                .text,
            "=C3=A4=20\n");
}

TEST_F(VmsgReadContent, AnyLineThatBeginsWithTheMarkerEndsIt) {
  EXPECT_EQ(ReadOne(Mail("", "a\r\n END:VBODY\r\nend:vbody\r\nEND:VBODYX\r\n")).parts.at(0).text,
            "a\n END:VBODY\nend:vbody\n");
}

TEST_F(VmsgReadContent, TheMarkerEndsItAlsoBehindASoftLineBreak) {
  EXPECT_EQ(ReadOne(Mail("", "a=\r\n")).parts.at(0).text, "a");
}

TEST_F(VmsgReadContent, ALineIsCutAtANulAndTheTextGoesOn) {
  EXPECT_EQ(ReadOne(Mail("", std::string("a\0b\r\n\0\r\nc\r\n", 11))).parts.at(0).text, "a\n\nc\n");
}

TEST_F(VmsgReadContent, ALineOfAMillionBytesIsKept) {
  const std::string longest(1000000, 'x');
  EXPECT_EQ(ReadOne(Mail("", longest + "\r\nb\r\n")).parts.at(0).text, longest + "\nb\n");
}

TEST_F(VmsgReadContent, AContentBeyondTheWindowIsReadOnce) {
  std::string content, text;
  for (int i = 0; i < 40000; ++i) {
    content += "line " + std::to_string(i) + "\r\n";
    text += "line " + std::to_string(i) + "\n";
  }
  const std::uint64_t seeks = platform::SetFilePointerEx.calls();
  EXPECT_EQ(ReadOne(Mail("", content)).parts.at(0).text, text);
  EXPECT_EQ(platform::SetFilePointerEx.calls(), seeks);
}

TEST_F(VmsgReadContent, TheTextIsInABlockOfItsOwn) {
  File file;
  ASSERT_EQ(FILE_Open(files_.Put("a", "a\nb\nEND:VBODY\nx").c_str(), u"rb", &file), 0U);
  ObjectRecord record{};
  const std::size_t blocks = MEM_LiveBlocks();
  BodyPart* const part = &record.message.body;
  EXPECT_EQ(VMSG_ReadContent(&file, part, "END:VBODY", nullptr, true), TAMU_PARSE_OK);
  EXPECT_EQ(MEM_LiveBlocks(), blocks + 1);
  EXPECT_EQ(file.GetChar(), 'x');
  RECORD_Free(KIND_MSG_INBOX, &record);
  EXPECT_EQ(MEM_LiveBlocks(), blocks);
}

TEST_F(VmsgReadContent, TheLastMarkerIsTheOneWithTwoDashesAndNothingElse) {
  const std::vector<std::pair<std::string, bool>> cases = {{"--b\n", false},
                                                           {"--b--\r\n", true},
                                                           {"--b-- \n", false},
                                                           {"--b---\n", false},
                                                           {"--bb--\n", false}};
  for (const auto& [line, expected] : cases) {
    File file;
    ASSERT_EQ(FILE_Open(files_.Put("a", "x\n" + line + "y").c_str(), u"rb", &file), 0U);
    BodyPart part{};
    bool last = !expected;
    EXPECT_EQ(VMSG_ReadContent(&file, &part, "--b", &last, false), TAMU_PARSE_OK);
    EXPECT_EQ(last, expected) << line;
    EXPECT_EQ(part.text, nullptr);
  }
}

TEST_F(VmsgReadContent, WithoutAMarkerNoneIsTheLast) {
  File file;
  ASSERT_EQ(FILE_Open(files_.Put("a", "x\n").c_str(), u"rb", &file), 0U);
  BodyPart part{};
  bool last = true;
  EXPECT_EQ(VMSG_ReadContent(&file, &part, "--b", &last, false), TAMU_PARSE_ERROR);
  EXPECT_FALSE(last);
}

TEST_F(VmsgReadContent, APipeIsReadToo) {
  std::string content, text;
  for (int i = 0; i < 20000; ++i) content += "a line of text\r\n", text += "a line of text\n";
  const std::filesystem::path path = files_.path() / "pipe";
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  std::thread writer(
      [&] { std::ofstream(path, std::ios::binary) << Mail("Subject:s\r\n", content); });
  MessageReading reading;
  reading.result = TAMU_ReadObjects(reinterpret_cast<const TamuWchar*>(files_.Wide("pipe").c_str()),
                                    &testing::KeepMessage, &reading);
  writer.join();
  EXPECT_EQ(reading.result, TAMU_OK);
  ASSERT_EQ(reading.messages.size(), 1U);
  EXPECT_EQ(reading.messages[0].parts.at(0).text, text);
}

// --- Temporary files ---

TEST_F(VmsgReadContent, ANamedContentGoesToATemporaryFileThatTheRecordOwns) {
  const LogCapture log;
  const SeenMessage seen = ReadOne(Mail(kFileHeader, "one=\r\n\r\n two\n"));
  EXPECT_EQ(seen.parts.at(0).text, std::nullopt);
  EXPECT_EQ(seen.parts[0].file, "one=\r\n\r\n two\r\n");
  EXPECT_EQ(seen.status, TAMU_PARSE_OK);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(VmsgReadContent, AnyNameMakesAFile) {
  for (const char* type : {"a; name=b c", "a; filename=b", "name=;", "name=\"\"", "a; name=\"b"}) {
    EXPECT_EQ(ReadOne(Mail(std::string("Content-Type:") + type + "\r\n", "x\r\n")).parts.at(0).file,
              "x\r\n")
        << type;
  }
  for (const char* type : {"a; Name=b", "a; name =b", "name"}) {
    EXPECT_EQ(ReadOne(Mail(std::string("Content-Type:") + type + "\r\n", "x\r\n")).parts.at(0).text,
              "x\n")
        << type;
  }
}

TEST_F(VmsgReadContent, AnEmptyNamedContentIsAnEmptyFile) {
  EXPECT_EQ(ReadOne(Mail(kFileHeader, "")).parts.at(0).file, "");
}

TEST_F(VmsgReadContent, ALargeFileIsWrittenWhole) {
  std::string content;
  for (int i = 0; i < 30000; ++i) content += std::to_string(i * 7919) + "\r\n";
  EXPECT_EQ(ReadOne(Mail(kFileHeader, content)).parts.at(0).file, content);
}

TEST_F(VmsgReadContent, WhenTheFileEndsTheTemporaryFileGoesWithTheMessage) {
  const LogCapture log;
  std::string mail = Mail(kFileHeader, "x\r\n");
  mail.resize(mail.find("END:VBODY"));
  EXPECT_EQ(Read(mail).result, TAMU_PARSE_ERROR);
  EXPECT_EQ(log.texts(), Lines{"TAMU:  Error - reached EOF while parsing CONTENT of vMsg"});
}

void ExpectLost(const SeenMessage& seen) {
  EXPECT_EQ(seen.status, TAMU_PARSE_WARNING);
  EXPECT_EQ(seen.subject, "s");
  ASSERT_EQ(seen.parts.size(), 1U);
  EXPECT_EQ(seen.parts[0].text, std::nullopt);
  EXPECT_EQ(seen.parts[0].file, std::nullopt);
}

TEST_F(VmsgReadContent, WithoutATemporaryFolderTheContentIsSkippedAndAWarning) {
  const LogCapture log;
  const platform::ScopedFailure failure(platform::GetTempPathW, 1, 3);
  ExpectLost(ReadOne(Mail("Subject:s\r\n" + kFileHeader, "x\r\n")));
  EXPECT_EQ(log.texts(), Lines{"TAMU: FILE_TempFilename; PATH error (3)"});
}

TEST_F(VmsgReadContent, AFileThatCannotBeNamedIsSkippedAndAWarning) {
  const LogCapture log;
  const platform::ScopedFailure failure(platform::GetTempFileNameW, 1, 80);
  ExpectLost(ReadOne(Mail("Subject:s\r\n" + kFileHeader, "x\r\n")));
  EXPECT_EQ(log.texts(), Lines{"TAMU: FILE_TempFilename; FILE error (80)"});
}

TEST_F(VmsgReadContent, AFileThatCannotBeOpenedIsSkippedAndAWarning) {
  const LogCapture log;
  const platform::ScopedFailure failure(platform::CreateFileW, 2);  // the first is the message's
  ExpectLost(ReadOne(Mail("Subject:s\r\n" + kFileHeader, "x\r\n")));
  ASSERT_EQ(log.lines().size(), 1U);
  EXPECT_TRUE(
      log.texts()[0].starts_with("TAMU:  Unable to open file '" + temporary_.path().string()));
  EXPECT_TRUE(log.texts()[0].ends_with("' for writing"));
  EXPECT_EQ(log.lines()[0].source_line, 8U);
}

TEST_F(VmsgReadContent, ALostFileThatEndsWithTheMessageFileIsAnError) {
  const platform::ScopedFailure failure(platform::GetTempPathW);
  std::string mail = Mail(kFileHeader, "x\r\n");
  mail.resize(mail.find("END:VBODY"));
  EXPECT_EQ(Read(mail).result, TAMU_PARSE_ERROR);
}

// A part whose file is cut short says so; what could be written stays.
TEST_F(VmsgReadContent, AFileThatCannotBeWrittenInFullIsAWarning) {
  const std::string content(200000, 'x');
  for (const std::uint64_t n : {1U, 2U}) {
    const platform::ScopedFailure failure(platform::WriteFile, n, 112);
    const SeenMessage seen = ReadOne(Mail("Subject:s\r\n" + kFileHeader, content + "\r\n"));
    EXPECT_EQ(seen.status, TAMU_PARSE_WARNING);
    EXPECT_EQ(seen.subject, "s");
    ASSERT_TRUE(seen.parts.at(0).file.has_value());
    EXPECT_LT(seen.parts[0].file->size(), content.size());
  }
}

TEST_F(VmsgReadContent, AFileThatCannotBeClosedIsAWarning) {
  const LogCapture log;
  const platform::ScopedFailure failure(platform::CloseHandle);
  EXPECT_EQ(ReadOne(Mail(kFileHeader, "x\r\n")).status, TAMU_PARSE_WARNING);
  ASSERT_EQ(log.lines().size(), 1U);
  EXPECT_TRUE(log.texts()[0].starts_with("TAMU:  Unable to close file '"));
}

TEST_F(VmsgReadContent, AFileThatCannotBeDeletedIsLoggedAndTheRecordIsClear) {
  const LogCapture log;
  const std::u16string path = files_.Put("a", Mail(kFileHeader, "x\r\n"));
  {
    const platform::ScopedFailure failure(platform::DeleteFileW);
    EXPECT_EQ(TAMU_ReadObjects(reinterpret_cast<const TamuWchar*>(path.c_str()), nullptr, nullptr),
              TAMU_OK);
  }
  ASSERT_EQ(log.lines().size(), 2U);
  EXPECT_TRUE(log.texts()[0].starts_with("TAMU:  Unable to remove file (file="));
  EXPECT_EQ(log.texts()[1], "TAMU:  Error: 0x00000005");
  ASSERT_EQ(temporary_.FileCount(), 1U);
  std::filesystem::remove(*std::filesystem::directory_iterator(temporary_.path()));
  ExpectNothingLeft();
}

}  // namespace
}  // namespace tamu
