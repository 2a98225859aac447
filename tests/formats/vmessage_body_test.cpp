#include "formats/vmessage_body.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/log_capture.h"
#include "support/message_reading.h"

namespace tamu {
namespace {

using testing::Envelope;
using testing::LogCapture;
using testing::Mail;
using testing::Message;
using testing::MessageTest;
using testing::SeenMessage;
using Lines = std::vector<std::string>;

const std::string kNoEnd = "TAMU:  Error - vBody missing END tag";
const std::string kEofInContent = "TAMU:  Error - reached EOF while parsing CONTENT of vMsg";

using VmsgReadBody = MessageTest;

TEST_F(VmsgReadBody, HeadersAreKeptWithTheirBlanks) {
  const LogCapture log;
  const SeenMessage seen = ReadOne(Mail(
      "Date: Mon, 3 Jan 2005 10:00:00 +0100\r\nFrom: \"A B\" <a@b.c>\r\nSubject:  two blanks \r\n"
      "Mime-Version: 1.0\r\nTo: x;\ty\r\nCc: c\r\nReply-To: r\r\n"
      "Content-Type: text/plain; charset=utf-8\r\nContent-Transfer-Encoding: 8bit\r\n"));
  EXPECT_EQ(seen.date, " Mon, 3 Jan 2005 10:00:00 +0100");
  EXPECT_EQ(seen.from, " \"A B\" <a@b.c>");
  EXPECT_EQ(seen.subject, "  two blanks ");
  EXPECT_EQ(seen.mime_version, " 1.0");
  EXPECT_EQ(seen.to, " x;\ty");
  EXPECT_EQ(seen.cc, " c");
  EXPECT_EQ(seen.reply_to, " r");
  EXPECT_EQ(seen.parts.at(0).content_type, " text/plain; charset=utf-8");
  EXPECT_EQ(seen.parts[0].transfer_encoding, " 8bit");
  EXPECT_EQ(seen.parts[0].text, "Hello\n");
  EXPECT_EQ(seen.status, TAMU_PARSE_OK);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(VmsgReadBody, BlanksInHeaderNamesDoNotCount) {
  EXPECT_EQ(ReadOne(Mail("Sub ject :a b\r\n")).subject, "a b");
}

TEST_F(VmsgReadBody, FoldedHeadersAreOneLine) {
  EXPECT_EQ(ReadOne(Mail("Subject:a\r\n b\r\n\tc\r\n")).subject, "a b c");
}

TEST_F(VmsgReadBody, ASubjectOf1500CharactersIsCutTo1023AndAWarning) {
  const SeenMessage seen = ReadOne(Mail("Subject:" + std::string(1500, 's') + "\r\n"));
  EXPECT_EQ(seen.subject, std::string(1023, 's'));
  EXPECT_EQ(seen.status, TAMU_PARSE_WARNING);
}

TEST_F(VmsgReadBody, EveryHeaderIsCutToItsFieldAndNothingRunsOver) {
  const std::vector<std::pair<std::string, std::size_t>> cases = {
      {"Date", 99},        {"From", 1023},        {"Subject", 1023},
      {"Mime-Version", 9}, {"To", 1023},          {"Cc", 1023},
      {"Reply-To", 99},    {"Content-Type", 127}, {"Content-Transfer-Encoding", 49}};
  for (const auto& [name, kept] : cases) {
    const std::string exact(kept, 'x');
    EXPECT_EQ(ReadOne(Mail(name + ":" + exact + "\r\n")).status, TAMU_PARSE_OK) << name;
    const SeenMessage seen = ReadOne(Mail(name + ":" + exact + "yz\r\n"));
    EXPECT_EQ(seen.status, TAMU_PARSE_WARNING) << name;
    EXPECT_EQ(seen.date + seen.from + seen.subject + seen.mime_version + seen.to + seen.cc +
                  seen.reply_to + seen.parts.at(0).content_type + seen.parts[0].transfer_encoding,
              exact)
        << name;
    EXPECT_EQ(seen.return_path, "");
  }
}

TEST_F(VmsgReadBody, ALaterHeaderReplacesAnEarlierOne) {
  EXPECT_EQ(ReadOne(Mail("Subject:a longer one\r\nSubject:b\r\n")).subject, "b");
}

TEST_F(VmsgReadBody, AnyOtherLineIsAWarning) {
  for (const char* name :
       {"Return-Path", "X-Mailer", "VERSION", "X-IRMC-LUID", "BEGIN", "subject"}) {
    const LogCapture log;
    const SeenMessage seen = ReadOne(Mail(std::string(name) + ":1\r\nTo:t\r\n"));
    EXPECT_EQ(seen.status, TAMU_PARSE_WARNING);
    EXPECT_EQ(seen.to, "t");
    EXPECT_EQ(seen.luid + seen.return_path, "");
    ASSERT_EQ(log.texts(), Lines{"TAMU:  Warning - Parser encountered unknown property: '" +
                                 std::string(name) + "'"});
    EXPECT_EQ(log.lines()[0].severity, LogSeverity::kInformation);
    EXPECT_EQ(log.lines()[0].source_line, 5U);
  }
}

TEST_F(VmsgReadBody, AnyEndAmongTheHeadersEndsIt) {
  for (const char* end : {"END:VBODY\r\n", "END:OTHER\r\n", "END\r\n"}) {
    const SeenMessage seen =
        ReadOne(Message(Envelope(std::string("BEGIN:VBODY\r\nTo:t\r\n") + end)));
    EXPECT_EQ(seen.to, "t");
    EXPECT_EQ(seen.status, TAMU_PARSE_OK);
    EXPECT_EQ(seen.parts.at(0).text, std::nullopt);
  }
  EXPECT_EQ(ReadOne(Message(Envelope("BEGIN:VBODY\r\nEND:VBODYX\r\n"))).status, TAMU_PARSE_WARNING);
}

// The empty line and the indented one are one folded line, which is taken for a header. Kept on
// purpose.
TEST_F(VmsgReadBody, AnEmptyLineBeforeAnIndentedBodyLineFoldsAway) {
  const LogCapture log;
  const SeenMessage seen = ReadOne(Mail("Subject:a\r\n", "  indented\r\n\r\nrest\r\n"));
  EXPECT_EQ(seen.subject, "a");
  EXPECT_EQ(seen.parts.at(0).text, "rest\n");
  EXPECT_EQ(seen.status, TAMU_PARSE_WARNING);
  EXPECT_EQ(log.texts(), Lines{"TAMU:  Warning - Parser encountered unknown property: 'indented'"});
}

TEST_F(VmsgReadBody, AHeaderThatEndsInEqualsTakesTheNextLineAlong) {
  EXPECT_EQ(ReadOne(Mail("Subject:a=\r\nTo:t\r\n")).subject, "aTo:t");
}

TEST_F(VmsgReadBody, WithoutHeadersTheContentFollowsAtOnce) {
  EXPECT_EQ(ReadOne(Mail("", "a\r\n")).parts.at(0).text, "a\n");
}

TEST_F(VmsgReadBody, WhenTheFileEndsAmongTheHeadersTheEndIsMissing) {
  for (const char* headers : {"", "To:t\r\n", "To:t", "X\r\n"}) {
    const LogCapture log;
    EXPECT_EQ(Read(std::string("BEGIN:VMSG\r\nBEGIN:VENV\r\nBEGIN:VBODY\r\n") + headers).result,
              TAMU_PARSE_ERROR);
    EXPECT_EQ(log.texts().back(), kNoEnd) << headers;
  }
}

TEST_F(VmsgReadBody, WhenTheFileEndsInTheContentOnlyThatIsSaid) {
  for (const char* content : {"", "a\r\n", "a", "END:VBODY"}) {
    const LogCapture log;
    EXPECT_EQ(Read(std::string("BEGIN:VMSG\r\nBEGIN:VENV\r\nBEGIN:VBODY\r\nTo:t\r\n\r\n") + content)
                  .result,
              TAMU_PARSE_ERROR);
    ASSERT_EQ(log.texts(), Lines{kEofInContent}) << content;
    EXPECT_EQ(log.lines()[0].source_line, 6U);
    EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
  }
}

TEST_F(VmsgReadBody, AWarningOfTheHeadersOutlivesTheContent) {
  EXPECT_EQ(ReadOne(Mail("X-FOO:1\r\n", "a\r\n")).status, TAMU_PARSE_WARNING);
}

TEST_F(VmsgReadBody, OnlyMultipartWithABoundaryBehindItIsMultipart) {
  for (const char* type : {"text/plain", "multipart/mixed", "boundary=b; multipart",
                           "Multipart/mixed; boundary=b", "multipart/mixed; Boundary=b"}) {
    const SeenMessage seen =
        ReadOne(Mail(std::string("Content-Type:") + type + "\r\n", "--b\r\n\r\na\r\n--b--\r\n"));
    EXPECT_EQ(seen.parts.at(0).text, "--b\n\na\n--b--\n") << type;
  }
}

}  // namespace
}  // namespace tamu
