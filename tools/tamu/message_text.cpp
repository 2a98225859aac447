#include "message_text.h"

#include <string>
#include <vector>

#include "date_words.h"
#include "display_text.h"
#include "mail_text.h"
#include "property_lines.h"
#include "text/charset.h"
#include "text/string_tools.h"

namespace tamu::tool {
namespace {

using Lines = std::vector<std::string>;

struct FieldLabel {
  std::string_view field;
  std::string_view label;
};
constexpr FieldLabel kAddresses[] = {{"From", "From"},
                                     {"To", "To"},
                                     {"Cc", "Cc"},
                                     {"Reply-To", "Reply to"},
                                     {"Return-Path", "Return path"}};

struct FolderRow {
  ObjectKind kind;
  std::string_view words;
  std::string_view folder;  // as files name it
};
constexpr FolderRow kFolders[] = {{KIND_MSG_INBOX, "inbox", "INBOX"},
                                  {KIND_MSG_SENT, "sent messages", "SENTBOX"},
                                  {KIND_MSG_OUTBOX, "outbox", "OUTBOX"}};

void AddField(const MessageView& message, const FieldLabel& row, TextLines* lines) {
  const std::string text = DISPLAY_Line(message.Text(row.field));
  if (!text.empty()) lines->AddValue(row.label, {text}, {});
}

void AddDate(const MessageView& message, TextLines* lines) {
  const std::string raw = DISPLAY_Line(message.Text("Date"));
  if (raw.empty()) return;
  const std::optional<DateReading> date = DATE_ReadMail(message.Raw("Date"));
  if (date) return lines->AddValue("Date", {DATE_Words(*date)}, {raw});
  lines->AddValue("Date", {raw}, {});
}

void AddFolder(const ObjectView& object, TextLines* lines) {
  const std::string folder = DISPLAY_Line(object.message->Text("X-BT-FOLDER"));
  for (const FolderRow& row : kFolders) {
    if (row.kind != object.kind) continue;
    const bool says_more = !folder.empty() && !STR_EqualNoCase(folder, row.folder);
    lines->AddValue("Folder", {std::string(row.words)}, says_more ? Lines{folder} : Lines{});
  }
}

void AddStatus(const MessageView& message, TextLines* lines) {
  const std::string status = DISPLAY_Line(message.Text("X-IRMC-STATUS"));
  if (status == "READ" || status == "UNREAD") {
    lines->AddValue("Status", {status == "READ" ? "read" : "unread"}, {});
  } else if (!status.empty()) {
    lines->AddValue("Status", {status}, {});
  }
}

std::string Bytes(std::uint64_t count) {
  return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

// "photo.jpg, image/jpeg, 1234 bytes".
std::string PartWords(const PartView& part, const std::string& size) {
  return LINES_Join({DISPLAY_Line(part.file_name), DISPLAY_Bytes(part.MediaType()), size}, ", ");
}

// What has to be said about the decoding.
Lines DoubtsOf(const PartView& part) {
  Lines doubts;
  const std::string charset = MAIL_Parameter(part.content_type, "charset");
  if (!charset.empty() && CHARSET_FromName(charset) == 0) {
    doubts.push_back("character set '" + DISPLAY_Bytes(charset) +
                     "' is unknown, read as code page " + std::to_string(part.code_page));
  }
  if (part.text.find(u'\xFFFD') != std::u16string::npos) {
    doubts.push_back("not all of it is valid in code page " + std::to_string(part.code_page));
  }
  return doubts;
}

void AddStoredPart(const PartView& part, TextLines* lines) {
  const std::string encoding =
      DISPLAY_Line(MAIL_DecodeHeader(part.transfer_encoding, kCodePageUtf8));
  Lines notes;
  if (!encoding.empty()) notes.push_back("as " + encoding);
  lines->AddValue("Attachment", {PartWords(part, Bytes(*part.stored_size))}, notes);
}

void AddPart(const PartView& part, bool first, TextLines* lines) {
  if (part.stored_size) return AddStoredPart(part, lines);
  if (part.raw && part.IsText()) {
    return lines->AddValue("Text", DISPLAY_Lines(part.text), DoubtsOf(part));
  }
  if (part.raw) return lines->AddValue("Content", {PartWords(part, Bytes(part.size))}, {});
  const std::string words = PartWords(part, "");
  if (first && words.empty()) return;
  const std::string_view label = !part.file_name.empty() ? "Attachment"
                                 : first                 ? "Content"
                                                         : "Further part";
  lines->AddValue(label, {words.empty() ? "(no content type)" : words},
                  {"its content was not kept"});
}

}  // namespace

void TEXT_AddMessage(const ObjectView& object, TextLines* lines) {
  const MessageView& message = *object.message;
  const std::string subject = DISPLAY_Line(message.Text("Subject"));
  lines->AddHeading(subject.empty() ? "(no subject)" : subject);
  for (const FieldLabel& row : kAddresses) AddField(message, row, lines);
  AddDate(message, lines);
  AddFolder(object, lines);
  AddStatus(message, lines);
  AddField(message, {"X-IRMC-TYPE", "Type"}, lines);
  for (const PartView& part : message.parts) AddPart(part, &part == &message.parts.front(), lines);
  LINES_AddIdentifier(object, lines);
}

}  // namespace tamu::tool
