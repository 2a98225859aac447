#include "formats/vmessage_multipart.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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
using testing::SeenPart;
using Lines = std::vector<std::string>;

const std::string kMultipart = "Content-Type:multipart/mixed; boundary=b\r\n";
const std::string kParsing = "TAMU:  Parsing Multipart Content (boundary='b')";
const std::string kMissingBody = "TAMU:  Error - vMsg missing BODY section";
const std::string kBlankInEnvelope = "TAMU:  Warning - Parser encounted a blank line in vEnv";
const std::string kTextPart = "--b\r\nContent-Type:text/plain\r\n\r\nHello\r\nyou\r\n";
const std::string kPicturePart =
    "--b\r\nContent-Type:image/jpeg; name=\"a.jpg\"\r\nContent-Transfer-Encoding:base64\r\n\r\n"
    "/9j/\r\n";

std::string Unexpected(const std::string& name) {
  return "TAMU:  Warning - Parser encountered unexpected property: '" + name + "'";
}

class VmsgReadMultipart : public MessageTest {
 protected:
  SeenMessage ReadParts(const std::string& content) { return ReadOne(Mail(kMultipart, content)); }
  // Reads a file that ends in `content`.
  TamuResult ReadCut(const std::string& content) {
    return Read("BEGIN:VMSG\r\nBEGIN:VENV\r\nBEGIN:VBODY\r\n" + kMultipart + "\r\n" + content)
        .result;
  }
};

std::string BoundaryOf(const std::string& type) {
  VmsgBoundary boundary;
  boundary.fill('?');
  return VMSG_FindBoundary(type.c_str(), &boundary) ? boundary.data() : "none";
}

TEST(VmsgFindBoundary, ItIsWhatFollowsTheFirstEqualsSign) {
  EXPECT_EQ(BoundaryOf("multipart/mixed; boundary=abc"), "abc");
  EXPECT_EQ(BoundaryOf("multipart/mixed; boundary=abc; charset=x"), "abc");
  EXPECT_EQ(BoundaryOf("multipart/mixed; boundary=abc def"), "abc");
  EXPECT_EQ(BoundaryOf("multipart/mixed; boundary=abc\tdef"), "abc");
  EXPECT_EQ(BoundaryOf("multipart/mixed; boundary=a\"b"), "a\"b");
  EXPECT_EQ(BoundaryOf("multipart/mixed; boundary=a=b"), "a=b");
  EXPECT_EQ(BoundaryOf("multipart/mixed; boundary; x=a"), "a");
  EXPECT_EQ(BoundaryOf("multipart/mixed; myboundary2=a"), "a");
}

TEST(VmsgFindBoundary, InQuotesItKeepsItsBlanks) {
  EXPECT_EQ(BoundaryOf("multipart/mixed; boundary=\"abc def\"; x"), "abc def");
  EXPECT_EQ(BoundaryOf("multipart/mixed; boundary=\"a;b\""), "a;b");
  EXPECT_EQ(BoundaryOf("multipart/mixed; boundary=\"open; b "), "open; b ");
  EXPECT_EQ(BoundaryOf("multipart/mixed; boundary=\"\"x"), "");
}

TEST(VmsgFindBoundary, WithoutATextItIsEmpty) {
  EXPECT_EQ(BoundaryOf("multipart/mixed; boundary"), "");
  EXPECT_EQ(BoundaryOf("multipart/mixed; boundary="), "");
  EXPECT_EQ(BoundaryOf("multipart/mixed; boundary= abc"), "");
  EXPECT_EQ(BoundaryOf("multipart/mixed; boundary=;abc"), "");
}

TEST(VmsgFindBoundary, ItNeedsMultipartBeforeIt) {
  EXPECT_EQ(BoundaryOf("text/plain; boundary=abc"), "none");
  EXPECT_EQ(BoundaryOf("boundary=abc; multipart/mixed"), "none");
  EXPECT_EQ(BoundaryOf("multipart/mixed"), "none");
  EXPECT_EQ(BoundaryOf(""), "none");
  EXPECT_EQ(BoundaryOf("boundary=x; multipart; boundary=y"), "y");
}

TEST(VmsgFindBoundary, ALongestOneFits) {
  const std::string type = "multipart boundary=";
  EXPECT_EQ(BoundaryOf(type + std::string(127 - type.size(), 'x')),
            std::string(127 - type.size(), 'x'));
}

TEST_F(VmsgReadMultipart, OnlyTheFirstPartsContentIsKeptAndEveryPartsHeaders) {
  const LogCapture log;
  const SeenMessage seen = ReadParts("preamble\r\n" + kTextPart + kPicturePart + "--b--\r\n");
  EXPECT_EQ(seen.parts, (std::vector<SeenPart>{{"text/plain", "", "Hello\nyou\n", {}},
                                               {"image/jpeg; name=\"a.jpg\"", "base64", {}, {}}}));
  EXPECT_EQ(seen.status, TAMU_PARSE_OK);
  ASSERT_EQ(log.texts(), Lines{kParsing});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kInformation);
}

TEST_F(VmsgReadMultipart, AFirstPartWithANameGoesToATemporaryFile) {
  const SeenMessage seen = ReadParts(kPicturePart + kTextPart + "--b--\r\n");
  ASSERT_EQ(seen.parts.size(), 2U);
  EXPECT_EQ(seen.parts[0].file, "/9j/\r\n");
  EXPECT_EQ(seen.parts[0].text, std::nullopt);
  EXPECT_EQ(seen.parts[1], (SeenPart{"text/plain", "", {}, {}}));
}

TEST_F(VmsgReadMultipart, TheFirstPartsHeadersReplaceThoseOfTheMail) {
  const std::string headers = kMultipart + "Content-Transfer-Encoding:7bit\r\n";
  EXPECT_EQ(ReadOne(Mail(headers, kPicturePart + "--b--\r\n")).parts.at(0).transfer_encoding,
            "base64");
  const SeenMessage bare = ReadOne(Mail(headers, "--b\r\n\r\nx\r\n--b--\r\n"));
  EXPECT_EQ(bare.parts.at(0).transfer_encoding, "7bit");
  EXPECT_EQ(bare.parts[0].content_type, "multipart/mixed; boundary=b");
}

TEST_F(VmsgReadMultipart, ABoundaryInQuotesKeepsItsBlank) {
  const LogCapture log;
  const SeenMessage seen = ReadOne(Mail("Content-Type:multipart/mixed; boundary=\"abc def\"\r\n",
                                        "--abc\r\n--abc def\r\n\r\nx\r\n--abc\r\n--abc def--\r\n"));
  EXPECT_EQ(seen.parts.at(0).text, "x\n--abc\n");
  EXPECT_EQ(log.texts(), Lines{"TAMU:  Parsing Multipart Content (boundary='abc def')"});
}

TEST_F(VmsgReadMultipart, AnEmptyBoundaryDividesAtTwoDashes) {
  const SeenMessage seen = ReadOne(Mail("Content-Type:multipart; boundary\r\n",
                                        "-\r\n--\r\n\r\nx\r\n--anything\r\n\r\ny\r\n----\r\n"));
  ASSERT_EQ(seen.parts.size(), 2U);
  EXPECT_EQ(seen.parts[0].text, "x\n");
  EXPECT_EQ(seen.status, TAMU_PARSE_OK);
}

// In the preamble the whole line counts, between parts only what it begins with.
TEST_F(VmsgReadMultipart, TheFirstDividerIsTheMarkerAndNothingElse) {
  const SeenMessage seen = ReadParts(
      "--bc\r\nSubject:no\r\n--b--\r\n--b \r\n--b\r\n\r\nx\r\n--bc\r\n\r\ny\r\n--b--\r\n");
  ASSERT_EQ(seen.parts.size(), 2U);
  EXPECT_EQ(seen.parts[0].text, "x\n");
}

TEST_F(VmsgReadMultipart, EndOfTheBodyInsideAPartIsContent) {
  const SeenMessage seen = ReadParts("--b\r\n\r\nEND:VBODY\r\n--b--\r\n");
  EXPECT_EQ(seen.parts.at(0).text, "END:VBODY\n");
}

TEST_F(VmsgReadMultipart, TheEpilogueEndsAtALineThatIsTheEndOfTheBody) {
  const LogCapture log;
  const SeenMessage seen =
      ReadParts(kTextPart + "--b--\r\nEND:VBODYX\r\n\r\n END:VBODY\r\nBEGIN:VBODY\r\n");
  EXPECT_EQ(seen.status, TAMU_PARSE_OK);
  EXPECT_EQ(log.texts(), Lines{kParsing});
}

TEST_F(VmsgReadMultipart, AnyOtherHeaderEndsItAndTheEnvelopeReadsOn) {
  const LogCapture log;
  const SeenMessage seen =
      ReadParts("--b\r\nContent-ID:1\r\nContent-Type:text/plain\r\n\r\nHello\r\n--b--\r\n");
  EXPECT_EQ(seen.status, TAMU_PARSE_WARNING);
  EXPECT_EQ(seen.parts, (std::vector<SeenPart>{{"multipart/mixed; boundary=b", "", {}, {}}}));
  ASSERT_EQ(log.texts(), (Lines{kParsing, Unexpected("Content-ID"), kBlankInEnvelope}));
  EXPECT_EQ(log.lines()[1].severity, LogSeverity::kInformation);
  EXPECT_EQ(log.lines()[1].source_line, 8U);
}

// The line behind the unexpected one is left to the envelope: here it ends it.
TEST_F(VmsgReadMultipart, TheLineBehindAnUnexpectedOneIsLeftUnread) {
  const std::string message = "BEGIN:VMSG\r\nBEGIN:VENV\r\nBEGIN:VBODY\r\n" + kMultipart +
                              "\r\n--b\r\nX:1\r\nEND:VENV\r\n"
                              "X-BT-FOLDER:OUTBOX\r\nEND:VMSG\r\n";
  EXPECT_EQ(ReadOne(message).kind, KIND_MSG_OUTBOX);
}

TEST_F(VmsgReadMultipart, MailHeadersAreUnexpectedInAPart) {
  const LogCapture log;
  EXPECT_EQ(ReadParts("--b\r\nSubject:no\r\n\r\nx\r\n--b--\r\n").subject, "");
  EXPECT_EQ(log.texts().at(1), Unexpected("Subject"));
}

TEST_F(VmsgReadMultipart, AHeaderThatIsTooLongIsCutAndEndsIt) {
  const SeenMessage seen =
      ReadParts("--b\r\nContent-Type:" + std::string(128, 'x') + "\r\n\r\nHello\r\n--b--\r\n");
  EXPECT_EQ(seen.status, TAMU_PARSE_WARNING);
  EXPECT_EQ(seen.parts, (std::vector<SeenPart>{{std::string(127, 'x'), "", {}, {}}}));
}

TEST_F(VmsgReadMultipart, PartHeadersAreLogicalLines) {
  const SeenMessage seen =
      ReadParts("--b\r\nContent- Type: text/plain;\r\n charset=x\r\n\r\nx\r\n--b--\r\n");
  EXPECT_EQ(seen.parts.at(0).content_type, " text/plain; charset=x");
}

TEST_F(VmsgReadMultipart, AFirstPartThatCannotBeStoredEndsIt) {
  const platform::ScopedFailure failure(platform::GetTempFileNameW);
  const SeenMessage seen = ReadParts(kPicturePart + kTextPart + "--b--\r\n");
  EXPECT_EQ(seen.status, TAMU_PARSE_WARNING);
  ASSERT_EQ(seen.parts.size(), 1U);
  EXPECT_EQ(seen.parts[0].file, std::nullopt);
}

TEST_F(VmsgReadMultipart, WithoutAFirstDividerTheBodyIsMissing) {
  const LogCapture log;
  EXPECT_EQ(Read(Mail(kMultipart, "Hello\r\n")).result, TAMU_PARSE_ERROR);
  EXPECT_EQ(log.texts(), (Lines{kParsing, kMissingBody}));
}

TEST_F(VmsgReadMultipart, WhenTheFileEndsOutsideOfContentTheBodyIsMissing) {
  for (const std::string& content :
       {std::string(), std::string("preamble"), std::string("--b\r\nContent-Type:a\r\n"),
        std::string("--b\r\nContent-Type:a"), kTextPart + "--b--\r\nepilogue\r\n",
        kTextPart + "--b--\r\nEND:VBODY"}) {
    const LogCapture log;
    EXPECT_EQ(ReadCut(content), TAMU_PARSE_ERROR) << content;
    EXPECT_EQ(log.texts(), (Lines{kParsing, kMissingBody})) << content;
  }
}

// Behind a divider the end of the file is no empty line that would begin content.
TEST_F(VmsgReadMultipart, WhenTheFileEndsBehindADividerTheBodyIsMissing) {
  const LogCapture log;
  EXPECT_EQ(ReadCut("--b\r\n"), TAMU_PARSE_ERROR);
  EXPECT_EQ(log.texts(), (Lines{kParsing, kMissingBody}));
}

TEST_F(VmsgReadMultipart, WhenTheFileEndsInContentThatIsSaid) {
  for (const std::string& content :
       {std::string("--b\r\n\r\n"), kTextPart, kTextPart + "--b--", kTextPart + kPicturePart}) {
    const LogCapture log;
    EXPECT_EQ(ReadCut(content), TAMU_PARSE_ERROR) << content;
    EXPECT_EQ(log.texts(),
              (Lines{kParsing, "TAMU:  Error - reached EOF while parsing CONTENT of vMsg"}))
        << content;
  }
}

TEST_F(VmsgReadMultipart, TenThousandPartsAreAChain) {
  std::string content;
  for (int i = 0; i < 10000; ++i) {
    content += "--b\r\nContent-Type:" + std::to_string(i) + "\r\n\r\nx\r\n";
  }
  const SeenMessage seen = ReadParts(content + "--b--\r\n");
  ASSERT_EQ(seen.parts.size(), 10000U);
  EXPECT_EQ(seen.parts[9999].content_type, "9999");
}

TEST_F(VmsgReadMultipart, ALongSkippedPartTakesNoMemoryOfItsOwn) {
  std::string skipped;
  for (int i = 0; i < 100000; ++i) skipped += "a line of text\r\n";
  MEM_FailNth(40, true);  // far more than what one message takes, far less than its lines
  const SeenMessage seen = ReadParts(kTextPart + "--b\r\n\r\n" + skipped + "--b--\r\n");
  EXPECT_FALSE(MEM_FailureStruck());
  MEM_FailNth(0);
  EXPECT_EQ(seen.parts.size(), 2U);
}

}  // namespace
}  // namespace tamu
