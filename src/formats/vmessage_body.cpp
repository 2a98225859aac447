#include "formats/vmessage_body.h"

#include "core/log.h"
#include "formats/line_reader.h"
#include "formats/vmessage_content.h"
#include "formats/vmessage_headers.h"
#include "formats/vmessage_multipart.h"

namespace tamu {
namespace {

TamuResult ReadAnyContent(File* file, MessageShape* message) noexcept {
  VmsgBoundary boundary;
  if (VMSG_FindBoundary(message->body.content_type, &boundary)) {
    return VMSG_ReadMultipart(file, message, boundary);
  }
  return VMSG_ReadContent(file, &message->body, "END:VBODY", nullptr, true);
}

class BodyReader {
 public:
  BodyReader(LineReader* line, MessageShape* message) noexcept : line_(line), message_(message) {}

  TamuResult Read() noexcept {
    while (!ended_ && !line_->file()->AtEnd()) ReadLine();
    if (ended_) return result_;
    LOG_Error("TAMU:  Error - vBody missing END tag");
    return TAMU_PARSE_ERROR;
  }

 private:
  void ReadLine() noexcept {
    if (!line_->Read()) return RESULT_Warn(&result_);
    if (line_->blank()) return TakeContent();
    const VmsgRow* const row = VMSG_FindRow(LINE_StripBlanks(line_->name()));
    const VmsgCode code = row != nullptr ? row->code : VmsgCode::kUnknown;
    if (VMSG_IsMailHeader(code)) {
      if (!VMSG_KeepValue(*row, line_->value(), message_, &message_->body)) RESULT_Warn(&result_);
    } else if (code == VmsgCode::kEnd) {
      if (!VMSG_ValueFits(*row, line_->value())) RESULT_Warn(&result_);
      ended_ = true;
    } else {
      LOG_Info("TAMU:  Warning - Parser encountered unknown property: '%s'", line_->name());
      RESULT_Warn(&result_);
    }
  }

  void TakeContent() noexcept {
    const TamuResult content = ReadAnyContent(line_->file(), message_);
    if (content != TAMU_PARSE_OK) result_ = content;
    ended_ = true;
  }

  LineReader* line_;
  MessageShape* message_;
  TamuResult result_ = TAMU_PARSE_OK;
  bool ended_ = false;
};

}  // namespace

TamuResult VMSG_ReadBody(File* file, MessageShape* message) noexcept {
  LineReader line(file);
  if (!line.ok()) return RESULT_NoBuffers();
  return BodyReader(&line, message).Read();
}

}  // namespace tamu
