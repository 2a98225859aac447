// Messages that memory, the system or the file itself cuts short: reading ends in order, and
// nothing is left.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/memory.h"
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

const std::string kFileMail =
    Message(kCardLines + "X-BT-FOLDER:SENTBOX\r\n" +
            Envelope(kCardLines + Body("Subject:s\r\nContent-Type:a;name=b\r\n", "x\r\n")));
const std::string kMultipartMail = Message(
    kCardLines + "X-IRMC-LUID:1\r\n" +
    Envelope(kCardLines +
             Body("Subject:s\r\nContent-Type: multipart/mixed; boundary=\"b c\"\r\n",
                  "preamble\r\n--b c\r\nContent-Type:text/plain\r\n\r\nab=\r\nc\r\n--b c\r\n"
                  "Content-Type:image/png; name=\"a\"\r\n\r\nxyz\r\n--b c--\r\nepilogue\r\n")));

using VmsgRead = MessageTest;

TEST_F(VmsgRead, WhenAnyAllocationFailsNothingIsLeftAndReadingEnds) {
  const std::string content =
      kMultipartMail + kFileMail + Mail("X-FOO:1\r\n", std::string(20000, 'x') + "\r\n");
  for (const bool and_after : {false, true}) {
    for (std::uint64_t n = 1;; ++n) {
      ASSERT_LT(n, 400U);
      MEM_FailNth(n, and_after);
      const MessageReading reading = Read(content);
      const bool struck = MEM_FailureStruck();
      MEM_FailNth(0);
      if (!struck) {
        EXPECT_EQ(reading.messages.size(), 3U);
        EXPECT_EQ(reading.result, TAMU_OK);
        break;
      }
      EXPECT_TRUE(reading.result == TAMU_OK || reading.result == TAMU_OUT_OF_MEMORY ||
                  reading.result == TAMU_PARSE_ERROR || reading.result == TAMU_FILE_NOT_OPENED)
          << n;
      // What is delivered without a warning is whole.
      for (const testing::SeenMessage& message : reading.messages) {
        if (message.status == TAMU_PARSE_OK) {
          EXPECT_TRUE(message.parts.at(0).text || message.parts[0].file) << n;
        }
      }
    }
  }
}

TEST_F(VmsgRead, NoMemoryForAnyLevelsWorkBuffersGives11) {
  const std::string content = Mail("", "a\r\n");
  std::vector<TamuResult> results;
  std::size_t said = 0;
  for (std::uint64_t n = 2;; ++n) {  // the first one is the file's window
    const LogCapture log;
    MEM_FailNth(n);
    const TamuResult result = Read(content).result;
    const bool struck = MEM_FailureStruck();
    MEM_FailNth(0);
    if (!struck) break;
    if (!log.Has("TAMU:  Error - Memory allocation error")) continue;
    EXPECT_EQ(result, TAMU_OUT_OF_MEMORY) << n;
    ++said;
  }
  EXPECT_EQ(said, 8U);  // two for the file, the message, the envelope and the body
}

TEST_F(VmsgRead, NoMemoryForTheTextGives11) {
  const std::string content = Mail("", std::string(50000, 'x') + "\r\n" + std::string(50000, 'y'));
  std::size_t refused = 0;
  for (std::uint64_t n = 14;; ++n) {
    const LogCapture log;
    MEM_FailNth(n);
    const MessageReading reading = Read(content + "\r\n");
    const bool struck = MEM_FailureStruck();
    MEM_FailNth(0);
    if (!struck) break;
    if (reading.result == TAMU_OUT_OF_MEMORY && log.lines().empty()) ++refused;
  }
  EXPECT_GE(refused, 3U);
}

TEST_F(VmsgRead, WhenAnyCallOfTheSystemFailsNothingIsLeft) {
  const std::string content = kFileMail + kMultipartMail;
  platform::ServiceBase* const services[] = {&platform::CreateFileW,      &platform::ReadFile,
                                             &platform::WriteFile,        &platform::CloseHandle,
                                             &platform::GetTempFileNameW, &platform::GetTempPathW,
                                             &platform::SetFilePointerEx};
  for (platform::ServiceBase* service : services) {
    for (std::uint64_t n = 1; n <= 4; ++n) {
      const platform::ScopedFailure failure(*service, n);
      const MessageReading reading = Read(content);
      EXPECT_TRUE(reading.messages.size() == 2 || reading.result != TAMU_OK)
          << service->name() << ' ' << n;
    }
  }
}

TEST_F(VmsgRead, TruncationAnywhereIsAnErrorAndLeavesNothing) {
  for (const std::string& message : {kMultipartMail, kFileMail}) {
    for (std::size_t length = 11; length < message.size(); ++length) {
      const MessageReading reading = Read(message.substr(0, length));
      // The last line's own end may be missing.
      const bool whole = length >= message.size() - 2;
      EXPECT_EQ(reading.result, whole ? TamuResult{TAMU_OK} : TamuResult{TAMU_PARSE_ERROR})
          << length;
      EXPECT_EQ(reading.messages.size(), whole ? 1U : 0U) << length;
    }
  }
}

TEST_F(VmsgRead, AByteChangedAnywhereLeavesNothing) {
  for (const char byte : {'\0', '\n', '=', ':'}) {
    for (std::size_t i = 11; i < kMultipartMail.size(); ++i) {
      std::string message = kMultipartMail;
      message[i] = byte;
      const MessageReading reading = Read(message);
      EXPECT_TRUE(reading.result == TAMU_OK || reading.result == TAMU_PARSE_ERROR) << i;
    }
  }
}

TEST_F(VmsgRead, BinaryGarbageLeavesNothing) {
  std::string garbage;
  for (int i = 0; i < 20000; ++i) garbage += static_cast<char>(i * 7919 >> 3);
  for (const std::string& content :
       {Message(garbage), Message(Envelope(garbage)), Mail(garbage), Mail("", garbage),
        Mail("Content-Type:multipart; boundary=b\r\n", "--b\r\n" + garbage),
        Mail("Content-Type:name=\r\n", garbage)}) {
    const MessageReading reading = Read(content);
    EXPECT_TRUE(reading.result == TAMU_OK || reading.result == TAMU_PARSE_ERROR);
  }
}

TEST_F(VmsgRead, AMillionBytesWithoutALineEndAreReadAtEveryLevel) {
  const std::string longest(1000000, 'x');
  for (const std::string& content :
       {Message(longest + "\r\n" + Envelope(Body("", ""))),
        Message(Envelope(longest + "\r\n" + Body("", ""))), Mail("Subject:" + longest + "\r\n"),
        Mail("", longest + "\r\n"),
        Mail("Content-Type:multipart; boundary=b\r\n",
             longest + "\r\n--b\r\n\r\n" + longest + "\r\n--b--\r\n" + longest + "\r\n")}) {
    EXPECT_EQ(Read(content).messages.size(), 1U);
  }
}

// Reading must not cost more for a line the longer a text is before it.
TEST_F(VmsgRead, TheTextsBlocksGrowWithItsLogarithm) {
  std::string content;
  for (int i = 0; i < 100000; ++i) content += "a line\r\n";
  MEM_FailNth(45, true);
  EXPECT_EQ(Read(Mail("", content)).messages.size(), 1U);
  EXPECT_FALSE(MEM_FailureStruck());
  MEM_FailNth(0);
}

}  // namespace
}  // namespace tamu
