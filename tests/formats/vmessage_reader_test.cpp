#include "formats/vmessage_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "formats/vmessage_headers.h"
#include "platform/files.h"
#include "support/log_capture.h"
#include "support/message_reading.h"

namespace tamu {
namespace {

using testing::Body;
using testing::Envelope;
using testing::kCardLines;
using testing::LogCapture;
using testing::Mail;
using testing::Message;
using testing::MessageReading;
using testing::MessageTest;
using testing::SeenMessage;
using Lines = std::vector<std::string>;

const std::string kMail = Envelope(Body("Subject:Hi\r\n", "Hello\r\n"));
const std::string kMissingBody = "TAMU:  Error - vMsg missing BODY section";
const std::string kBlankInMessage = "TAMU:  Warning - Parser encounted a blank line in vMSG";
const std::string kBlankInEnvelope = "TAMU:  Warning - Parser encounted a blank line in vEnv";
const std::string kCardMissing =
    "TAMU:  Error - vCard missing END tago or does not contain required VERSION or N properties";

std::string Unknown(const std::string& name) {
  return "TAMU:  Warning - Parser encountered unknown property: '" + name + "'";
}

using VmsgRead = MessageTest;
using VmsgReadMessage = MessageTest;
using VmsgReadEnvelope = MessageTest;

TEST_F(VmsgRead, EveryMessageIsDeliveredWithItsLine) {
  const LogCapture log;
  const MessageReading reading = Read(Mail("Subject:a\r\n") + Mail("Subject:b\r\n"));
  EXPECT_EQ(reading.result, TAMU_OK);
  ASSERT_EQ(reading.messages.size(), 2U);
  EXPECT_EQ(reading.messages[0].subject, "a");
  EXPECT_EQ(reading.messages[0].status, TAMU_PARSE_OK);
  EXPECT_EQ(reading.messages[0].begin_line, 1U);
  EXPECT_EQ(reading.messages[1].subject, "b");
  EXPECT_EQ(reading.messages[1].begin_line, 11U);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(VmsgRead, TheFolderChoosesTheKind) {
  const std::vector<std::pair<std::string, ObjectKind>> cases = {
      {"X-BT-FOLDER:OUTBOX\r\n", KIND_MSG_OUTBOX},   {"X-BT-FOLDER:SENTBOX\r\n", KIND_MSG_SENT},
      {"X-BT-FOLDER:INBOX\r\n", KIND_MSG_INBOX},     {"X-BT-FOLDER:outbox\r\n", KIND_MSG_INBOX},
      {"X-BT-FOLDER:OUTBOX1\r\n", KIND_MSG_INBOX},   {"X-BT-FOLDER:\r\n", KIND_MSG_INBOX},
      {"X-BT-FOLDER: OUT BOX\r\n", KIND_MSG_OUTBOX}, {"", KIND_MSG_INBOX}};
  for (const auto& [line, kind] : cases)
    EXPECT_EQ(ReadOne(Message(line + kMail)).kind, kind) << line;
}

TEST_F(VmsgRead, ANullCallbackOnlyParses) {
  const std::u16string path = files_.Put("a", Mail("Content-Type:a; name=b\r\n"));
  EXPECT_EQ(TAMU_ReadObjects(reinterpret_cast<const TamuWchar*>(path.c_str()), nullptr, nullptr),
            TAMU_OK);
  ExpectNothingLeft();
}

TEST_F(VmsgRead, AWarningSticksToLaterMessages) {
  const MessageReading reading = Read(Mail("") + Mail("X-FOO:1\r\n") + Mail(""));
  ASSERT_EQ(reading.messages.size(), 3U);
  EXPECT_EQ(reading.messages[0].status, TAMU_PARSE_OK);
  EXPECT_EQ(reading.messages[1].status, TAMU_PARSE_WARNING);
  EXPECT_EQ(reading.messages[2].status, TAMU_PARSE_WARNING);
  EXPECT_EQ(reading.result, TAMU_OK);
}

TEST_F(VmsgRead, WhatFollowsTheLastMessageEndsTheFileQuietly) {
  for (const char* rest : {"\r\n", "text\r\n", "BEGIN:VCARD\r\n", "BEGIN:VMSGX\r\n"}) {
    const LogCapture log;
    const MessageReading reading = Read(Mail("") + rest + Mail(""));
    EXPECT_EQ(reading.result, TAMU_OK) << rest;
    EXPECT_EQ(reading.messages.size(), 1U) << rest;
    EXPECT_TRUE(log.lines().empty()) << rest;
  }
}

TEST_F(VmsgRead, BlanksInTheBeginLineDoNotCount) {
  std::string second = Mail("");
  second.replace(0, 10, "B EGIN\t: V MSG ");
  EXPECT_EQ(Read(Mail("") + second).messages.size(), 2U);
}

TEST_F(VmsgRead, AFirstLineThatIsNotBeginIsAnError) {
  const LogCapture log;
  EXPECT_EQ(Read("X-" + Mail("")).result, TAMU_PARSE_ERROR);
  EXPECT_EQ(log.texts(), Lines{"TAMU:  Error - vMsg does not have a BEGIN tag"});
}

TEST_F(VmsgRead, AnErrorEndsTheFileAndEarlierMessagesStayDelivered) {
  const MessageReading reading = Read(Mail("") + Message("") + Mail(""));
  EXPECT_EQ(reading.result, TAMU_PARSE_ERROR);
  EXPECT_EQ(reading.messages.size(), 1U);
}

TEST_F(VmsgRead, AtTheEndOfTheFileThereIsNothingToRead) {
  File file;
  ASSERT_EQ(FILE_Open(files_.Put("a", "").c_str(), u"rb", &file), 0U);
  EXPECT_EQ(file.GetChar(), -1);
  EXPECT_EQ(VMSG_Read(&file, nullptr, nullptr), TAMU_PARSE_ERROR);
}

TEST_F(VmsgRead, OneMessageLeavesNothingToTheNext) {
  const MessageReading reading =
      Read(Message("X-IRMC-LUID:1\r\nX-IRMC-STATUS:READ\r\nX-BT-FOLDER:OUTBOX\r\n" +
                   Envelope(Body("Cc:c\r\nDate:d\r\nContent-Type:t\r\n", "text\r\n"))) +
           Message(Envelope("BEGIN:VBODY\r\nEND:VBODY\r\n")));
  ASSERT_EQ(reading.messages.size(), 2U);
  const SeenMessage& second = reading.messages[1];
  EXPECT_EQ(second.kind, KIND_MSG_INBOX);
  EXPECT_EQ(second.luid + second.message_status + second.cc + second.date, "");
  EXPECT_EQ(second.parts, std::vector<testing::SeenPart>(1));
}

TEST_F(VmsgReadMessage, ItsFieldsAreKeptWithoutBlanks) {
  const SeenMessage seen = ReadOne(Message(
      "X-IRMC-LUID: 12 34\r\nX-IRMC-STATUS: READ\r\nX-IRMC-TYPE:\tINET\r\nX-BT-FOLDER:a b\r\n" +
      kMail));
  EXPECT_EQ(seen.luid, "1234");
  EXPECT_EQ(seen.version, "1.1");
  EXPECT_EQ(seen.message_status, "READ");
  EXPECT_EQ(seen.type, "INET");
  EXPECT_EQ(seen.folder, "ab");
  EXPECT_EQ(seen.status, TAMU_PARSE_OK);
}

TEST_F(VmsgReadMessage, BlanksInNamesDoNotCount) {
  EXPECT_EQ(ReadOne(Message("X - IRMC - LUID:7\r\n" + kMail)).luid, "7");
}

TEST_F(VmsgReadMessage, AValueThatIsTooLongIsCutAndAWarning) {
  const std::vector<std::pair<std::string, std::size_t>> cases = {
      {"X-IRMC-LUID", 511}, {"X-IRMC-STATUS", 6}, {"X-IRMC-TYPE", 4}, {"X-BT-FOLDER", 49}};
  for (const auto& [name, kept] : cases) {
    const std::string exact(kept, 'x');
    const SeenMessage whole = ReadOne(Message(name + ":" + exact + "\r\n" + kMail));
    EXPECT_EQ(whole.status, TAMU_PARSE_OK) << name;
    const SeenMessage cut = ReadOne(Message(name + ":" + exact + "y\r\n" + kMail));
    EXPECT_EQ(cut.status, TAMU_PARSE_WARNING) << name;
    const std::string all = cut.luid + cut.message_status + cut.type + cut.folder;
    EXPECT_EQ(all, exact) << name;
  }
}

TEST_F(VmsgReadMessage, AnUnknownPropertyIsAWarning) {
  const LogCapture log;
  EXPECT_EQ(ReadOne(Message("X-FOO:1\r\n" + kMail)).status, TAMU_PARSE_WARNING);
  ASSERT_EQ(log.texts(), Lines{Unknown("X-FOO")});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kInformation);
  EXPECT_EQ(log.lines()[0].source_line, 3U);
}

TEST_F(VmsgReadMessage, NamesAreCaseSensitive) {
  EXPECT_EQ(ReadOne(Message("x-irmc-luid:1\r\n" + kMail)).luid, "");
  const LogCapture log;
  EXPECT_EQ(ReadOne(Mail("MIME-Version:1.0\r\n")).mime_version, "");
  EXPECT_EQ(log.texts(), Lines{Unknown("MIME-Version")});
}

TEST_F(VmsgReadMessage, ABlankLineIsAWarning) {
  const LogCapture log;
  const SeenMessage seen = ReadOne(Message("\r\nX-IRMC-LUID:1\r\n" + kMail));
  EXPECT_EQ(seen.status, TAMU_PARSE_WARNING);
  EXPECT_EQ(seen.luid, "1");
  ASSERT_EQ(log.texts(), Lines{kBlankInMessage});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
  EXPECT_EQ(log.lines()[0].source_line, 3U);
}

TEST_F(VmsgReadMessage, VersionsUpTo11AreSupported) {
  const auto with = [](const std::string& version) {
    return "BEGIN:VMSG\r\nVERSION:" + version + "\r\n" + kMail + "END:VMSG\r\n";
  };
  for (const char* version : {"1.1", "1.0", "0.5", " 1.1", "1.1x"}) {
    EXPECT_EQ(Read(with(version)).messages.size(), 1U) << version;
  }
  for (const char* version : {"1.2", "2", "0", "", "x1.1"}) {
    const LogCapture log;
    EXPECT_EQ(Read(with(version)).result, TAMU_PARSE_ERROR) << version;
    EXPECT_EQ(log.texts(),
              Lines{"TAMU:  Error - vMsg version '" + std::string(version) + "' is not supported"});
  }
}

TEST_F(VmsgReadMessage, TheVersionIsTestedAsFarAsItIsKept) {
  const auto with = [](const std::string& version) {
    return "BEGIN:VMSG\r\nVERSION:" + version + "\r\n" + kMail + "END:VMSG\r\n";
  };
  const SeenMessage seen = ReadOne(with("1.10000009"));  // above 1.1 with its last digit
  EXPECT_EQ(seen.version, "1.1000000");
  EXPECT_EQ(seen.status, TAMU_PARSE_WARNING);
  const LogCapture log;
  EXPECT_EQ(Read(with("3.000000000")).result, TAMU_PARSE_ERROR);
  EXPECT_EQ(log.texts(), Lines{"TAMU:  Error - vMsg version '3.0000000' is not supported"});
}

TEST_F(VmsgReadMessage, AVersionNeedNotBeThere) {
  EXPECT_EQ(ReadOne("BEGIN:VMSG\r\n" + kMail + "END:VMSG\r\n").version, "");
}

TEST_F(VmsgReadMessage, WithoutAnEnvelopeItIsAnErrorWithoutALogLine) {
  const LogCapture log;
  const MessageReading reading = Read(Message("X-IRMC-LUID:1\r\n"));
  EXPECT_EQ(reading.result, TAMU_PARSE_ERROR);
  EXPECT_TRUE(reading.messages.empty());
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(VmsgReadMessage, WithoutAnEndItIsAnErrorWithoutALogLine) {
  const LogCapture log;
  EXPECT_EQ(Read("BEGIN:VMSG\r\n" + kMail + "X-IRMC-LUID:1\r\n").result, TAMU_PARSE_ERROR);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(VmsgReadMessage, AnEndThatEndsTheFileIsOne) {
  const std::string message = Message(kMail);
  EXPECT_EQ(Read(message.substr(0, message.size() - 2)).messages.size(), 1U);
}

TEST_F(VmsgReadMessage, AnUnknownBeginIsAnErrorWithoutALogLine) {
  const LogCapture log;
  EXPECT_EQ(Read(Message("BEGIN:VBODY\r\n" + kMail)).result, TAMU_PARSE_ERROR);
  EXPECT_EQ(Read(Message("BEGIN:VEN\r\n" + kMail)).result, TAMU_PARSE_ERROR);
  EXPECT_EQ(Read(Message(kMail + "BEGIN:\r\n")).result, TAMU_PARSE_ERROR);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(VmsgReadMessage, ATagIsComparedByItsFirstFiveCharactersAndALongerOneIsAWarning) {
  std::string card = kCardLines;
  card.insert(11, "SX");
  EXPECT_EQ(ReadOne(Message(card + kMail)).status, TAMU_PARSE_WARNING);
  EXPECT_EQ(ReadOne(Message("END:VMSG X\r\n" + kMail)).status, TAMU_PARSE_OK);
  EXPECT_EQ(ReadOne(Message("END:VMSGXY\r\n" + kMail)).status, TAMU_PARSE_WARNING);
  EXPECT_EQ(Read(Message("BEGIN:VENVX\r\n" + kMail)).result, TAMU_PARSE_ERROR);
}

TEST_F(VmsgReadMessage, AnEndOfSomethingElseIsIgnored) {
  const LogCapture log;
  EXPECT_EQ(ReadOne(Message("END:VENV\r\nEND:\r\n" + kMail)).status, TAMU_PARSE_OK);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(VmsgReadMessage, HeadersOfAMailAreIgnored) {
  const LogCapture log;
  const SeenMessage seen = ReadOne(Message(
      "Date:d\r\nFrom:f\r\nMime-Version:1.0\r\nTo:t\r\nCc:c\r\nReply-To:r\r\nContent-Type:x\r\n"
      "Content-Transfer-Encoding:y\r\n" +
      kMail));
  EXPECT_EQ(seen.date + seen.from + seen.mime_version + seen.to + seen.cc + seen.reply_to, "");
  EXPECT_EQ(seen.parts.at(0).content_type + seen.parts[0].transfer_encoding, "");
  EXPECT_EQ(seen.status, TAMU_PARSE_OK);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(VmsgReadMessage, AnIgnoredHeaderThatIsTooLongIsAWarning) {
  EXPECT_EQ(ReadOne(Message("Mime-Version:123456789\r\n" + kMail)).status, TAMU_PARSE_OK);
  EXPECT_EQ(ReadOne(Message("Mime-Version:1234567890\r\n" + kMail)).status, TAMU_PARSE_WARNING);
}

TEST_F(VmsgReadMessage, AFolderBehindTheOriginatorCounts) {
  EXPECT_EQ(ReadOne(Message(kCardLines + "X-BT-FOLDER:SENTBOX\r\n" + kMail)).kind, KIND_MSG_SENT);
}

// What stands before a card is lost, and the message is one of the inbox. Kept on purpose.
TEST_F(VmsgReadMessage, FieldsBeforeTheOriginatorAreLost) {
  const SeenMessage seen =
      ReadOne(Message("X-IRMC-LUID:1\r\nX-IRMC-STATUS:READ\r\nX-IRMC-TYPE:INET\r\n"
                      "X-BT-FOLDER:SENTBOX\r\n" +
                      kCardLines + kMail));
  EXPECT_EQ(seen.kind, KIND_MSG_INBOX);
  EXPECT_EQ(seen.luid + seen.version + seen.message_status + seen.type + seen.folder, "");
  EXPECT_EQ(seen.status, TAMU_PARSE_OK);
}

TEST_F(VmsgReadMessage, WhatACardHoldsNeverReachesTheMessage) {
  const SeenMessage seen = ReadOne(Message(
      "X-IRMC-LUID:" + std::string(511, 'x') + "\r\nX-BT-FOLDER:" + std::string(49, 'y') +
      "\r\nBEGIN:VCARD\r\nVERSION:2.1\r\nX-IRMC-LUID:9\r\nN:a\r\nTEL:1\r\nTEL:2\r\nX-CAT:1\r\n"
      "END:VCARD\r\n" +
      kMail));
  EXPECT_EQ(seen.luid + seen.version + seen.folder, "");
  EXPECT_EQ(seen.subject, "Hi");
}

TEST_F(VmsgReadMessage, ACardsResultIsIgnoredAndItsLogLinesAreWritten) {
  const LogCapture log;
  EXPECT_EQ(ReadOne(Message("BEGIN:VCARD\r\nX-FOO:1\r\nEND:VCARD\r\n" + kMail)).status,
            TAMU_PARSE_OK);
  EXPECT_EQ(log.texts(), (Lines{Unknown("X-FOO"), kCardMissing}));
}

TEST_F(VmsgReadMessage, ACardBehindTheEnvelopeLeavesTheMailAlone) {
  const SeenMessage seen =
      ReadOne(Message(Envelope(Body("Subject:s\r\nDate:d\r\n", "text\r\n")) + kCardLines));
  EXPECT_EQ(seen.version, "");
  EXPECT_EQ(seen.subject + seen.date, "sd");
  EXPECT_EQ(seen.parts.at(0).text, "text\n");
}

TEST_F(VmsgReadMessage, ASecondEnvelopeReplacesWhatItsMailHas) {
  const std::string parts = "--b\r\n\r\n1\r\n--b\r\n\r\n2\r\n--b\r\n\r\n3\r\n--b--\r\n";
  const std::string multipart = "Content-Type:multipart; boundary=b\r\n";
  SeenMessage seen = ReadOne(Message(Envelope(Body("Subject:a\r\nCc:c\r\n", "one\r\n")) +
                                     Envelope(Body("Subject:b\r\n", "two\r\n"))));
  EXPECT_EQ(seen.subject + seen.cc, "bc");
  EXPECT_EQ(seen.parts.at(0).text, "two\n");
  seen = ReadOne(Message(Envelope(Body(multipart, parts)) + Envelope(Body(multipart, parts))));
  EXPECT_EQ(seen.parts.size(), 3U);
  seen = ReadOne(Message(Envelope(Body("Content-Type:a;name=b\r\n", "one\r\n")) +
                         Envelope(Body("", "two\r\n"))));
  EXPECT_EQ(seen.parts.at(0).file, "two\r\n");
}

TEST_F(VmsgReadEnvelope, RecipientsClearTheFieldsToo) {
  const LogCapture log;
  const SeenMessage seen = ReadOne(Message("X-IRMC-LUID:1\r\nX-BT-FOLDER:OUTBOX\r\n" +
                                           Envelope(kCardLines + Body("To:t\r\n", ""))));
  EXPECT_EQ(seen.luid + seen.folder + seen.version, "");
  EXPECT_EQ(seen.to, "t");
  EXPECT_EQ(seen.status, TAMU_PARSE_OK);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(VmsgReadEnvelope, EnvelopesMayBeNested) {
  const SeenMessage seen = ReadOne(
      Message(Envelope(kCardLines + Envelope(kCardLines + Envelope(Body("To:t\r\n", "x\r\n")))) +
              "X-BT-FOLDER:SENTBOX\r\n"));
  EXPECT_EQ(seen.to, "t");
  EXPECT_EQ(seen.kind, KIND_MSG_SENT);
}

TEST_F(VmsgReadEnvelope, ItEndsWithItsOwnEndOnly) {
  EXPECT_EQ(ReadOne(Message(Envelope(Envelope("") + Body("To:t\r\n", "")))).to, "t");
}

TEST_F(VmsgReadEnvelope, TwentyThousandNestedEnvelopesAreOne) {
  std::string begins, ends;
  for (int i = 0; i < 20000; ++i) begins += "BEGIN:VENV\r\n", ends += "END:VENV\r\n";
  EXPECT_EQ(Read(Message(begins + Body("", "") + ends)).messages.size(), 1U);
  EXPECT_EQ(Read(Message(begins + Body("", ""))).result, TAMU_PARSE_ERROR);
}

TEST_F(VmsgReadEnvelope, OtherLinesAreIgnored) {
  const LogCapture log;
  const SeenMessage seen =
      ReadOne(Message(Envelope("X-FOO:1\r\nBEGIN:OTHER\r\nEND:OTHER\r\nX-IRMC-LUID:1\r\n"
                               "VERSION:9\r\nSubject:no\r\n" +
                               Body("", "") + "more\r\n")));
  EXPECT_EQ(seen.luid + seen.subject, "");
  EXPECT_EQ(seen.version, "1.1");
  EXPECT_EQ(seen.status, TAMU_PARSE_OK);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(VmsgReadEnvelope, ItsTagsAreComparedWhole) {
  EXPECT_EQ(Read(Message(Envelope("BEGIN:VBODYX\r\n"))).result, TAMU_PARSE_ERROR);
  EXPECT_EQ(
      ReadOne(Message(Envelope("END:VENVX\r\nB EGIN:V BODY\r\nTo:t\r\n\r\nEND:VBODY\r\n"))).to,
      "t");
}

TEST_F(VmsgReadEnvelope, ABlankLineIsAWarning) {
  const LogCapture log;
  EXPECT_EQ(ReadOne(Message(Envelope("\r\n" + Body("", "")))).status, TAMU_PARSE_WARNING);
  ASSERT_EQ(log.texts(), Lines{kBlankInEnvelope});
  EXPECT_EQ(log.lines()[0].source_line, 4U);
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
}

TEST_F(VmsgReadEnvelope, WithoutABodyItIsAnError) {
  const LogCapture log;
  EXPECT_EQ(Read(Message(Envelope(kCardLines))).result, TAMU_PARSE_ERROR);
  EXPECT_EQ(log.texts(), Lines{kMissingBody});
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kError);
}

TEST_F(VmsgReadEnvelope, WhereTheFileEndsItIsAnError) {
  const std::string begin = "BEGIN:VMSG\r\nBEGIN:VENV\r\n";
  for (const std::string& rest :
       {std::string(), kCardLines, "BEGIN:VBODY\r\nEND:VBODY\r\n" + kCardLines,
        std::string("BEGIN:VBODY\r\nEND:VBODY\r\nEND:VENV\r\n")}) {
    const LogCapture log;
    EXPECT_EQ(Read(begin + rest).result, TAMU_PARSE_ERROR);
    EXPECT_EQ(log.texts(), Lines{kMissingBody}) << rest;
  }
}

// A raw line does not look behind itself, so the end of the file is read as a line.
TEST_F(VmsgReadEnvelope, BehindAContentTheEndOfTheFileIsABlankLine) {
  const LogCapture log;
  EXPECT_EQ(Read("BEGIN:VMSG\r\nBEGIN:VENV\r\n" + Body("", "a\r\n")).result, TAMU_PARSE_ERROR);
  EXPECT_EQ(log.texts(), (Lines{kBlankInEnvelope, kMissingBody}));
}

TEST_F(VmsgReadEnvelope, ASecondBodyIsNotRead) {
  const LogCapture log;
  const SeenMessage seen = ReadOne(Message(Envelope(
      Body("Subject:a\r\n", "one\r\n") + "BEGIN:VBODY\r\nSubject:b\r\ntwo\r\nEND:VBODY\r\n")));
  EXPECT_EQ(seen.subject, "a");
  EXPECT_EQ(seen.parts.at(0).text, "one\n");
  EXPECT_EQ(seen.status, TAMU_PARSE_OK);
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(VmsgReadEnvelope, AnErrorInTheBodyEndsItWithoutAWordOfItsOwn) {
  const LogCapture log;
  EXPECT_EQ(Read("BEGIN:VMSG\r\nBEGIN:VENV\r\nBEGIN:VBODY\r\nTo:a\r\n").result, TAMU_PARSE_ERROR);
  EXPECT_EQ(log.texts(), Lines{"TAMU:  Error - vBody missing END tag"});
}

TEST(VmsgFindRow, TheTableNamesEveryLineOnceWithItsLength) {
  const std::vector<std::pair<std::string, std::size_t>> expected = {
      {"Date", 99},        {"From", 1023},        {"Subject", 1023},
      {"Mime-Version", 9}, {"To", 1023},          {"Cc", 1023},
      {"Reply-To", 99},    {"Content-Type", 127}, {"Content-Transfer-Encoding", 49},
      {"VERSION", 9},      {"X-IRMC-LUID", 511},  {"X-IRMC-STATUS", 6},
      {"X-IRMC-TYPE", 4},  {"X-BT-FOLDER", 49},   {"BEGIN", 5},
      {"END", 5}};
  ASSERT_EQ(VMSG_Rows().size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(VMSG_Rows()[i].name, expected[i].first);
    EXPECT_EQ(VMSG_Rows()[i].kept, expected[i].second);
    EXPECT_EQ(VMSG_FindRow(expected[i].first), &VMSG_Rows()[i]);
  }
  EXPECT_EQ(VMSG_FindRow("date"), nullptr);
  EXPECT_EQ(VMSG_FindRow("Return-Path"), nullptr);
  EXPECT_EQ(VMSG_FindRow(""), nullptr);
}

}  // namespace
}  // namespace tamu
