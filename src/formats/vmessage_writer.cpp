#include "formats/vmessage_writer.h"

#include "formats/property_emitter.h"
#include "text/tokens.h"

namespace tamu {
namespace {

void WriteIfThere(File* file, std::string_view name, std::string_view value) noexcept {
  if (!value.empty()) VMSG_WriteLine(file, name, "", value);
}

// The headers of the mail, in their order; those of which a mail has at least an empty one always.
void WriteHeaders(File* file, const MessageShape& message) noexcept {
  WriteIfThere(file, "Return-Path", STR_FieldText(message.return_path));
  WriteIfThere(file, "Date", STR_FieldText(message.date));
  VMSG_WriteLine(file, "From", "", STR_FieldText(message.from));
  VMSG_WriteLine(file, "To", "", STR_FieldText(message.to));
  WriteIfThere(file, "Cc", STR_FieldText(message.cc));
  WriteIfThere(file, "Reply-To", STR_FieldText(message.reply_to));
  VMSG_WriteLine(file, "Subject", "", STR_FieldText(message.subject));
  WriteIfThere(file, "Content-Type", STR_FieldText(message.body.content_type));
  WriteIfThere(file, "Content-Transfer-Encoding", STR_FieldText(message.body.transfer_encoding));
}

}  // namespace

TamuResult VMSG_Write(File* file, const ObjectRecord& record, bool write_luid) noexcept {
  const MessageShape& message = record.message;
  VMSG_WriteLine(file, "BEGIN", "", "VMSG");
  VMSG_WriteLine(file, "VERSION", "", STR_FieldText(message.version));
  VMSG_WriteLine(file, "X-IRMC-STATUS", "", STR_FieldText(message.status));
  VMSG_WriteLine(file, "X-IRMC-TYPE", "", STR_FieldText(message.type));
  if (write_luid) WriteIfThere(file, "X-IRMC-LUID", STR_FieldText(message.luid));
  VMSG_WriteLine(file, "X-BT-FOLDER", "", STR_FieldText(message.folder));
  VMSG_WriteLine(file, "BEGIN", "", "VENV");
  VMSG_WriteLine(file, "BEGIN", "", "VBODY");
  WriteHeaders(file, message);
  // A failed write is not told here: the file remembers it.
  static_cast<void>(FILE_PutLine(file, ""));
  if (message.body.text != nullptr) {
    static_cast<void>(FILE_PutLine(file, message.body.text.get()));
  }
  VMSG_WriteLine(file, "END", "", "VBODY");
  VMSG_WriteLine(file, "END", "", "VENV");
  VMSG_WriteLine(file, "END", "", "VMSG");
  return TAMU_OK;
}

std::uint32_t VMSG_WriteLine(File* file, std::string_view name, std::string_view params,
                             std::string_view value) noexcept {
  return VOBJ_PutLine(file, name, params, value, "vMessage");
}

}  // namespace tamu
