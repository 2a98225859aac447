// support/message_reading.h - reads vMessages in tests, keeps what the callback saw, and sees to it
// that nothing is left: no block, no temporary file, nothing in the shared record.
#ifndef TAMU_TESTS_SUPPORT_MESSAGE_READING_H_
#define TAMU_TESTS_SUPPORT_MESSAGE_READING_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "core/memory.h"
#include "core/wide.h"
#include "formats/shared_record.h"
#include "support/scratch_folder.h"
#include "tamu/tamu.h"

namespace tamu::testing {

struct SeenPart {
  std::string content_type;
  std::string transfer_encoding;
  std::optional<std::string> text;
  std::optional<std::string> file;  // what its temporary file holds
  bool operator==(const SeenPart&) const = default;
};

struct SeenMessage {
  ObjectKind kind;
  TamuResult status;
  std::uint32_t begin_line;
  std::string luid, version, message_status, type, folder;
  std::string mime_version, return_path, date, from, to, cc, reply_to, subject;
  std::vector<SeenPart> parts;
};

struct MessageReading {
  TamuResult result = TAMU_OK;
  std::vector<SeenMessage> messages;
};

inline SeenPart SeePart(const BodyPart& part) {
  SeenPart seen{part.content_type, part.transfer_encoding, {}, {}};
  if (part.text != nullptr) seen.text = part.text.get();
  if (part.temp_file[0] != 0) {
    std::ifstream file(std::filesystem::path(AsUtf16(part.temp_file)), std::ios::binary);
    if (file) seen.file = std::string{std::istreambuf_iterator<char>(file), {}};
  }
  return seen;
}

inline SeenMessage SeeMessage(ObjectKind kind, const MessageShape& m, TamuResult status) {
  SeenMessage seen{kind,   status,   SHARED_BeginLine(), m.luid,        m.version, m.status,
                   m.type, m.folder, m.mime_version,     m.return_path, m.date,    m.from,
                   m.to,   m.cc,     m.reply_to,         m.subject,     {}};
  for (const BodyPart* part = &m.body; part != nullptr; part = part->next) {
    seen.parts.push_back(SeePart(*part));
  }
  return seen;
}

inline uint32_t KeepMessage(ObjectKind kind, ObjectRecord* record, TamuResult status, void* user) {
  static_cast<MessageReading*>(user)->messages.push_back(SeeMessage(kind, record->message, status));
  return 0;
}

// A test with a folder of its own for temporary files.
class MessageTest : public ::testing::Test {
 protected:
  // Reads `content` through the exported function.
  MessageReading Read(const std::string& content) {
    const std::u16string path = files_.Put("objects.vmg", content);
    const std::size_t blocks = MEM_LiveBlocks();
    MessageReading reading;
    reading.result =
        TAMU_ReadObjects(reinterpret_cast<const TamuWchar*>(path.c_str()), &KeepMessage, &reading);
    EXPECT_EQ(MEM_LiveBlocks(), blocks);
    ExpectNothingLeft();
    return reading;
  }

  // Reads a file of one message that has to be delivered.
  SeenMessage ReadOne(const std::string& content) {
    const MessageReading reading = Read(content);
    EXPECT_EQ(reading.result, TAMU_OK);
    EXPECT_EQ(reading.messages.size(), 1U) << content.substr(0, 2000);
    return reading.messages.empty() ? SeenMessage{} : reading.messages[0];
  }

  void ExpectNothingLeft() {
    EXPECT_EQ(temporary_.FileCount(), 0U);
    const auto& bytes = SHARED_Record()->bytes;
    EXPECT_TRUE(std::all_of(std::begin(bytes), std::end(bytes),
                            [](std::uint8_t byte) { return byte == 0; }));
  }

  ScratchFolder files_;
  ScratchFolder temporary_;
  ScopedEnvironment environment_{"TMPDIR", temporary_.path().string()};
};

inline const std::string kCardLines = "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Doe;Jo\r\nEND:VCARD\r\n";

// A body of these header lines and this content.
inline std::string Body(const std::string& headers, const std::string& content) {
  return "BEGIN:VBODY\r\n" + headers + "\r\n" + content + "END:VBODY\r\n";
}
inline std::string Envelope(const std::string& lines) {
  return "BEGIN:VENV\r\n" + lines + "END:VENV\r\n";
}
// A message whose lines stand between VERSION and END.
inline std::string Message(const std::string& lines) {
  return "BEGIN:VMSG\r\nVERSION:1.1\r\n" + lines + "END:VMSG\r\n";
}
inline std::string Mail(const std::string& headers, const std::string& content = "Hello\r\n") {
  return Message(Envelope(Body(headers, content)));
}

}  // namespace tamu::testing

#endif  // TAMU_TESTS_SUPPORT_MESSAGE_READING_H_
