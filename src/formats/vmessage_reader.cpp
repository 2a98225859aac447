#include "formats/vmessage_reader.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "core/log.h"
#include "core/records.h"
#include "formats/line_reader.h"
#include "formats/object_loop.h"
#include "formats/shared_record.h"
#include "formats/vcard_properties.h"
#include "formats/vcard_reader.h"
#include "formats/vmessage_body.h"
#include "formats/vmessage_headers.h"
#include "text/version.h"

namespace tamu {
namespace {

constexpr const char* kFormat = "vMsg";

// Where the cards of a message are read into: a record of its own, so that no text of the message
// is ever taken for a chain. All zero between cards.
constinit ObjectRecord g_dropped_card{};

// Reads a card from behind its BEGIN line and drops it. Whether it is good makes no difference; its
// log lines are all that is seen of it. The message loses what lies where a contact has its fields,
// as if the card had been read over it. Kept on purpose.
void DropCard(File* file, MessageShape* message) noexcept {
  static_cast<void>(VCARD_ReadOne(file, &g_dropped_card.contact));
  RECORD_Free(KIND_CONTACT, &g_dropped_card);
  static_assert(sizeof(ContactShape) > offsetof(MessageShape, folder) + sizeof message->folder);
  std::memset(static_cast<void*>(message), 0, sizeof(ContactShape));
}

bool StopsReading(TamuResult result) noexcept {
  return result != TAMU_PARSE_OK && result != TAMU_PARSE_WARNING;
}

// The lines of one message, from behind its BEGIN.
class MessageReader {
 public:
  MessageReader(LineReader* line, MessageShape* message) noexcept
      : line_(line), message_(message) {}

  TamuResult Read() noexcept {
    while (!ended_ && !line_->file()->AtEnd()) ReadLine();
    return ended_ && envelope_seen_ ? result_ : TamuResult{TAMU_PARSE_ERROR};
  }

 private:
  void ReadLine() noexcept {
    if (!line_->Next("vMSG", &result_)) return;
    LINE_StripBlanks(line_->value());
    const VmsgRow* const row = VMSG_FindRow(LINE_StripBlanks(line_->name()));
    if (row == nullptr) {
      LOG_Info("TAMU:  Warning - Parser encountered unknown property: '%s'", line_->name());
      return RESULT_Warn(&result_);
    }
    // The headers of a mail have no place here: only their length is looked at.
    const bool fits = VMSG_IsMailHeader(row->code)
                          ? VMSG_ValueFits(*row, line_->value())
                          : VMSG_KeepValue(*row, line_->value(), message_, &message_->body);
    if (!fits) RESULT_Warn(&result_);
    TakeLine(*row);
  }

  void TakeLine(const VmsgRow& row) noexcept {
    const std::string_view kept = std::string_view(line_->value()).substr(0, row.kept);
    if (row.code == VmsgCode::kVersion) TestVersion();
    if (row.code == VmsgCode::kBegin) TakeBegin(kept);
    if (row.code == VmsgCode::kEnd && kept == "VMSG") ended_ = true;
  }

  void Fail(TamuResult result) noexcept {
    result_ = result;
    ended_ = true;
  }

  void TestVersion() noexcept {
    if (VERSION_IsSupported(message_->version, kVmessageVersion)) return;
    LOG_Error("TAMU:  Error - vMsg version '%s' is not supported", message_->version);
    Fail(TAMU_PARSE_ERROR);
  }

  void TakeBegin(std::string_view object) noexcept {
    if (object == "VCARD") {
      DropCard(line_->file(), message_);
    } else if (object == "VENV") {
      envelope_seen_ = true;
      const TamuResult envelope = VMSG_ReadEnvelope(line_->file(), message_);
      if (StopsReading(envelope)) return Fail(envelope);
      if (envelope == TAMU_PARSE_WARNING) RESULT_Warn(&result_);
    } else {
      Fail(TAMU_PARSE_ERROR);
    }
  }

  LineReader* line_;
  MessageShape* message_;
  TamuResult result_ = TAMU_PARSE_OK;
  bool envelope_seen_ = false;
  bool ended_ = false;
};

// The lines of one envelope, from behind its BEGIN.
class EnvelopeReader {
 public:
  EnvelopeReader(LineReader* line, MessageShape* message) noexcept
      : line_(line), message_(message) {}

  TamuResult Read() noexcept {
    while (!ended_ && !line_->file()->AtEnd()) ReadLine();
    if (StopsReading(result_)) return result_;
    if (body_read_ && !line_->file()->AtEnd()) return result_;
    LOG_Error("TAMU:  Error - vMsg missing BODY section");
    return TAMU_PARSE_ERROR;
  }

 private:
  void ReadLine() noexcept {
    if (!line_->Next("vEnv", &result_)) return;
    LINE_StripBlanks(line_->value());
    const VcardLine tag = VCARD_FindName(LINE_StripBlanks(line_->name())).line;
    if (tag == VcardLine::kBegin) TakeBegin(line_->value());
    if (tag == VcardLine::kEnd && std::string_view(line_->value()) == "VENV") {
      if (depth_ == 1) ended_ = true;
      --depth_;
    }
  }

  void TakeBegin(std::string_view object) noexcept {
    if (object == "VCARD") {
      DropCard(line_->file(), message_);
    } else if (object == "VENV") {
      ++depth_;
    } else if (object == "VBODY" && !body_read_) {
      body_read_ = true;
      const TamuResult body = VMSG_ReadBody(line_->file(), message_);
      if (StopsReading(body)) {
        result_ = body;
        ended_ = true;
      } else if (body == TAMU_PARSE_WARNING) {
        RESULT_Warn(&result_);
      }
    }
  }

  LineReader* line_;
  MessageShape* message_;
  std::uint64_t depth_ = 1;
  TamuResult result_ = TAMU_PARSE_OK;
  bool body_read_ = false;
  bool ended_ = false;
};

TamuResult ReadMessageObject(File* file, ReadCallback, void*) noexcept {
  return VMSG_ReadMessage(file, &SHARED_Record()->message);
}

ObjectKind KindOf(const ObjectRecord& record) noexcept {
  const std::string_view folder = STR_FieldText(record.message.folder);
  if (folder == "OUTBOX") return KIND_MSG_OUTBOX;
  if (folder == "SENTBOX") return KIND_MSG_SENT;
  return KIND_MSG_INBOX;
}

}  // namespace

TamuResult VMSG_Read(File* file, ReadCallback callback, void* user) noexcept {
  constexpr ObjectLoop kLoop = {kFormat, "VMSG", &ReadMessageObject, &KindOf};
  return OBJECTS_ReadAll(kLoop, file, callback, user);
}

TamuResult VMSG_ReadMessage(File* file, MessageShape* message) noexcept {
  LineReader line(file);
  if (!line.ok()) return RESULT_NoBuffers();
  return MessageReader(&line, message).Read();
}

TamuResult VMSG_ReadEnvelope(File* file, MessageShape* message) noexcept {
  LineReader line(file);
  if (!line.ok()) return RESULT_NoBuffers();
  return EnvelopeReader(&line, message).Read();
}

}  // namespace tamu
