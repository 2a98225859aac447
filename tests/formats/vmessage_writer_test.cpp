#include "formats/vmessage_writer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "core/records.h"
#include "platform/files.h"
#include "support/log_capture.h"
#include "support/message_reading.h"

namespace tamu {
namespace {

using testing::LogCapture;
using testing::Mail;
using testing::Message;
using testing::MessageReading;
using testing::MessageTest;
using testing::SeenMessage;
using Lines = std::vector<std::string>;

class VmsgWrite : public MessageTest {
 protected:
  ~VmsgWrite() override { RECORD_Free(KIND_MSG_INBOX, &record_); }

  MessageShape& message() { return record_.message; }
  void SetText(const char* text) { message().body.text = MEM_CopyText(text).release(); }

  // What is written in binary mode.
  std::string Written(bool write_luid = true) {
    File file;
    EXPECT_EQ(FILE_Open(files_.Wide("out").c_str(), u"wb", &file), 0U);
    EXPECT_EQ(VMSG_Write(&file, record_, write_luid), TAMU_OK);
    FILE_Close(&file, u"out");
    return files_.Get("out");
  }

  // What is read, written by the exported function and read again.
  MessageReading RewrittenOf(const std::string& content) {
    const std::u16string in = files_.Put("in", content);
    const std::u16string out = files_.Put("again", "");
    EXPECT_EQ(TAMU_ReadObjects(reinterpret_cast<const TamuWchar*>(in.c_str()), &WriteToPath,
                               const_cast<char16_t*>(out.c_str())),
              TAMU_OK);
    ExpectNothingLeft();
    return Read(files_.Get("again"));
  }

  ObjectRecord record_{};

 private:
  static uint32_t WriteToPath(ObjectKind kind, ObjectRecord* record, TamuResult, void* user) {
    EXPECT_EQ(TAMU_WriteObject(kind, record, static_cast<const TamuWchar*>(user), 0), TAMU_OK);
    return 0;
  }
};
using VmsgWriteLine = VmsgWrite;

TEST_F(VmsgWrite, EveryLineHasItsPlace) {
  std::strcpy(message().version, "1.1");
  std::strcpy(message().status, "READ");
  std::strcpy(message().type, "INET");
  std::strcpy(message().luid, "0001");
  std::strcpy(message().folder, "OUTBOX");
  std::strcpy(message().mime_version, "1.0");
  std::strcpy(message().return_path, "p");
  std::strcpy(message().date, " d");
  std::strcpy(message().from, "f");
  std::strcpy(message().to, "t");
  std::strcpy(message().cc, "c");
  std::strcpy(message().reply_to, "r");
  std::strcpy(message().subject, "s; \\ : ");
  std::strcpy(message().body.content_type, "text/plain");
  std::strcpy(message().body.transfer_encoding, "8bit");
  SetText("text");
  EXPECT_EQ(Written(),
            "BEGIN:VMSG\nVERSION:1.1\nX-IRMC-STATUS:READ\nX-IRMC-TYPE:INET\nX-IRMC-LUID:0001\n"
            "X-BT-FOLDER:OUTBOX\nBEGIN:VENV\nBEGIN:VBODY\nReturn-Path:p\nDate: d\nFrom:f\nTo:t\n"
            "Cc:c\nReply-To:r\nSubject:s; \\ : \nContent-Type:text/plain\n"
            "Content-Transfer-Encoding:8bit\n\ntext\nEND:VBODY\nEND:VENV\nEND:VMSG\n");
}

TEST_F(VmsgWrite, FromToAndSubjectAloneLeaveOutTheRest) {
  std::strcpy(message().from, "f");
  std::strcpy(message().to, "t");
  std::strcpy(message().subject, "s");
  EXPECT_EQ(Written(),
            "BEGIN:VMSG\nVERSION:\nX-IRMC-STATUS:\nX-IRMC-TYPE:\nX-BT-FOLDER:\nBEGIN:VENV\n"
            "BEGIN:VBODY\nFrom:f\nTo:t\nSubject:s\n\nEND:VBODY\nEND:VENV\nEND:VMSG\n");
}

TEST_F(VmsgWrite, AnEmptyRecordHasItsAlwaysWrittenLines) {
  EXPECT_EQ(Written(),
            "BEGIN:VMSG\nVERSION:\nX-IRMC-STATUS:\nX-IRMC-TYPE:\nX-BT-FOLDER:\nBEGIN:VENV\n"
            "BEGIN:VBODY\nFrom:\nTo:\nSubject:\n\nEND:VBODY\nEND:VENV\nEND:VMSG\n");
}

TEST_F(VmsgWrite, TheIdentifierIsWrittenOnlyWhenAskedFor) {
  std::strcpy(message().luid, "0001");
  EXPECT_NE(Written(true).find("X-IRMC-LUID:0001\n"), std::string::npos);
  EXPECT_EQ(Written(false).find("X-IRMC-LUID"), std::string::npos);
  message().luid[0] = '\0';
  EXPECT_EQ(Written(true).find("X-IRMC-LUID"), std::string::npos);
}

TEST_F(VmsgWrite, ATextOfTwoLinesIsTwoLines) {
  SetText("a\nb");
  EXPECT_NE(Written().find("Subject:\n\na\nb\nEND:VBODY\n"), std::string::npos);
}

TEST_F(VmsgWrite, AnEmptyTextIsAnEmptyLine) {
  SetText("");
  EXPECT_NE(Written().find("Subject:\n\n\nEND:VBODY\n"), std::string::npos);
}

TEST_F(VmsgWrite, FurtherPartsAreNotWritten) {
  SetText("first");
  message().body.next = MEM_New<BodyPart>().release();
  std::strcpy(message().body.next->content_type, "image/jpeg");
  message().body.next->text = MEM_CopyText("second").release();
  const std::string written = Written();
  EXPECT_NE(written.find("first"), std::string::npos);
  EXPECT_EQ(written.find("image"), std::string::npos);
  EXPECT_EQ(written.find("second"), std::string::npos);
}

TEST_F(VmsgWrite, AFieldWithoutATerminatorEndsWithItsField) {
  std::memset(message().version, '1', sizeof message().version);
  std::memset(message().status, '2', sizeof message().status);
  std::memset(message().subject, '3', sizeof message().subject);
  const std::string written = Written();
  EXPECT_NE(written.find("VERSION:" + std::string(10, '1') + "\nX-IRMC-STATUS:2222222\n"),
            std::string::npos);
  EXPECT_NE(written.find("Subject:" + std::string(1024, '3') + "\n"), std::string::npos);
}

TEST_F(VmsgWrite, EveryMessageKindIsWrittenWithCrLfAndTheRecordIsEmptied) {
  for (const ObjectKind kind : {KIND_MSG_INBOX, KIND_MSG_SENT, KIND_MSG_OUTBOX}) {
    SetText("a\nb\n");
    const std::u16string path = files_.Wide("out");
    EXPECT_EQ(TAMU_WriteObject(kind, &record_, reinterpret_cast<const TamuWchar*>(path.c_str()), 1),
              TAMU_OK);
    EXPECT_NE(files_.Get("out").find("\r\n\r\na\r\nb\r\n\r\nEND:VBODY\r\n"), std::string::npos);
    EXPECT_EQ(record_.message.body.text, nullptr);
  }
}

TEST_F(VmsgWrite, ALineThatMemoryRunsOutForIsLeftOut) {
  std::strcpy(message().luid, "1");
  SetText("text");
  const std::string whole = Written();
  for (std::uint64_t n = 1;; ++n) {
    ASSERT_LT(n, 50U);
    const LogCapture log;
    File file;
    ASSERT_EQ(FILE_Open(files_.Wide("out").c_str(), u"wb", &file), 0U);
    MEM_FailNth(n);
    EXPECT_EQ(VMSG_Write(&file, record_, true), TAMU_OK);
    const bool struck = MEM_FailureStruck();
    MEM_FailNth(0);
    FILE_Close(&file, u"out");
    const std::string written = files_.Get("out");
    if (!struck) {
      EXPECT_EQ(written, whole);
      EXPECT_EQ(n, 15U);  // the empty line and the text need none
      break;
    }
    EXPECT_EQ(log.texts(), Lines{"TAMU:  Insufficient memory to generate vMessage string"});
    EXPECT_LT(written.size(), whole.size());
    EXPECT_NE(written.find("\n\ntext\n"), std::string::npos);
  }
}

TEST_F(VmsgWrite, AFailedWriteStaysWithTheFile) {
  const platform::ScopedFailure failure(platform::WriteFile, 1, 112);
  File file;
  ASSERT_EQ(FILE_Open(files_.Wide("out").c_str(), u"w", &file), 0U);
  EXPECT_EQ(VMSG_Write(&file, record_, true), TAMU_OK);
  EXPECT_FALSE(file.Close());
  EXPECT_EQ(file.error(), 112U);
}

TEST_F(VmsgWriteLine, ItIsNameParametersAndValueAsTheyStand) {
  File file;
  ASSERT_EQ(FILE_Open(files_.Wide("out").c_str(), u"wb", &file), 0U);
  EXPECT_EQ(VMSG_WriteLine(&file, "NAME", "", " v;\\ "), 0U);
  EXPECT_EQ(VMSG_WriteLine(&file, "NAME", "a;b", ""), 0U);
  FILE_Close(&file, u"out");
  EXPECT_EQ(files_.Get("out"), "NAME: v;\\ \nNAME;a;b:\n");
}

// --- Reading, writing and reading again ---

void ExpectSame(SeenMessage first, SeenMessage again) {
  const auto describe = [](const SeenMessage& m) {
    return Lines{m.luid,   m.version,     m.message_status, m.type,
                 m.folder, m.return_path, m.date,           m.from,
                 m.to,     m.cc,          m.reply_to,       m.subject};
  };
  EXPECT_EQ(first.kind, again.kind);
  EXPECT_EQ(describe(first), describe(again));
  EXPECT_EQ(first.parts.at(0).content_type, again.parts.at(0).content_type);
  EXPECT_EQ(first.parts[0].transfer_encoding, again.parts[0].transfer_encoding);
  EXPECT_EQ(again.parts.size(), 1U);
}

// The text has a line end of its own and gets the writer's too. Kept on purpose.
TEST_F(VmsgWrite, AMessageRewrittenHasOneMoreLineEnd) {
  const std::string message =
      Message("X-IRMC-LUID:1\r\nX-IRMC-STATUS:READ\r\nX-IRMC-TYPE:INET\r\nX-BT-FOLDER:SENTBOX\r\n" +
              testing::Envelope(testing::Body(
                  "Date: Mon\r\nFrom: f\r\nTo:t\r\nCc:c\r\nReply-To:r\r\nSubject:s\r\n"
                  "Content-Type: text/plain\r\nContent-Transfer-Encoding:8bit\r\n",
                  "one\r\n\r\n two\r\n")));
  const MessageReading again = RewrittenOf(message);
  ASSERT_EQ(again.messages.size(), 1U);
  EXPECT_EQ(again.messages[0].status, TAMU_PARSE_OK);
  const SeenMessage first = ReadOne(message);
  ExpectSame(first, again.messages[0]);
  EXPECT_EQ(first.parts.at(0).text, "one\n\n two\n");
  EXPECT_EQ(again.messages[0].parts.at(0).text, "one\n\n two\n\n");
}

TEST_F(VmsgWrite, AMultipartMessageComesBackWithItsFirstPartAlone) {
  const std::string message =
      Mail("Content-Type:multipart; boundary=b\r\nMime-Version:1.0\r\nSubject:s\r\n",
           "--b\r\nContent-Type:text/plain\r\n\r\nHello\r\n--b\r\n\r\nx\r\n--b--\r\n");
  const MessageReading again = RewrittenOf(message);
  ASSERT_EQ(again.messages.size(), 1U);
  ExpectSame(ReadOne(message), again.messages[0]);
  EXPECT_EQ(again.messages[0].parts.at(0).text, "Hello\n\n");
  EXPECT_EQ(again.messages[0].mime_version, "");
}

TEST_F(VmsgWrite, MessagesAppendedToAFileAreAllReadAgain) {
  const MessageReading again = RewrittenOf(Mail("Subject:a\r\n") + Mail("Subject:b\r\n"));
  ASSERT_EQ(again.messages.size(), 2U);
  EXPECT_EQ(again.messages[1].subject, "b");
}

}  // namespace
}  // namespace tamu
