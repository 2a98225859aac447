// fuzz/record_text.h - what a record holds as one text, so that what was written and read again can
// be compared with what there was.
//   Errors     std::bad_alloc when memory runs out.
#ifndef TAMU_FUZZ_RECORD_TEXT_H_
#define TAMU_FUZZ_RECORD_TEXT_H_

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

#include "formats/vcalendar_properties.h"
#include "formats/vcard_properties.h"
#include "formats/vmessage_multipart.h"
#include "formats/vnote_properties.h"
#include "fuzz_check.h"
#include "tamu/tamu.h"
#include "text/property.h"
#include "text/tokens.h"
#include "text/version.h"

namespace tamu::fuzz {

// The properties of a record that its writer writes, and whether it does so with an empty line when
// there is none. `visit` gets a name, the chain's head (null for none), that, and how many
// components are kept of a value.
template <typename Visit>
void VisitProperties(ObjectKind kind, const ObjectRecord& record, Visit visit) {
  if (kind == KIND_CONTACT) {
    for (const VcardRow& row : VCARD_Rows()) {
      visit(row.name, record.contact.*row.field, row.always_written, row.components);
    }
  } else if (kind == KIND_NOTE) {
    for (const VnoteRow& row : VNOTE_Rows()) {
      visit(row.name, record.note.*row.field, row.always_written, kAnyComponents);
    }
  } else if (kind == KIND_CALENDAR) {
    const bool is_event = record.event.component == COMPONENT_EVENT;
    for (const VcalRow* const row : VCAL_WrittenRows(record.event.component)) {
      const VcalUse& use = is_event ? row->event : row->todo;
      visit(row->name, is_event ? record.event.*row->event_field : record.todo.*row->todo_field,
            use.writing == VcalWriting::kAlways, kAnyComponents);
    }
  }
}

// The text of a record as it comes back once it was written.
class RecordText {
 public:
  RecordText(ObjectKind kind, const ObjectRecord& record) : text_(std::to_string(kind) + '\n') {
    if (kind > KIND_NOTE) {
      AddMessage(record.message);
      return;
    }
    // At the same place in all three shapes.
    AddField("luid ", record.note.luid);
    AddField("version ", record.note.version);
    if (kind == KIND_CALENDAR) AddCalendarFlags(record.event);
    VisitProperties(kind, record,
                    [this](std::string_view name, const Property* chain, bool always,
                           std::uint32_t) { AddChain(name, chain, always); });
  }

  [[nodiscard]] const std::string& text() const { return text_; }
  // The same once it was written: the writer adds a line end to a mail's content.
  [[nodiscard]] std::string AsWritten() const { return lacks_line_end_ ? text_ + '\n' : text_; }
  // False for what no file of its format can hold, so that it comes back otherwise: a text that
  // ends in "=" is joined with the next line, and some contents of mails cannot be told from what
  // stands around them.
  [[nodiscard]] bool comes_back() const { return comes_back_; }

 private:
  template <std::size_t size>
  void AddField(std::string_view name, const char (&field)[size]) {
    AddValue(name, STR_FieldText(field));
  }

  void AddValue(std::string_view name, std::string_view value) {
    text_.append(name).append(value) += '\n';
    if (value.ends_with('=')) comes_back_ = false;
  }

  void AddItems(const StringItem* item, char mark) {
    for (; item != nullptr; item = item->next) {
      const std::string_view value = item->text != nullptr ? item->text.get() : "";
      text_ += mark;
      text_.append(value) += '\n';
      if (item->next == nullptr && value.ends_with('=')) comes_back_ = false;
    }
  }

  void AddChain(std::string_view name, const Property* property, bool always) {
    if (property == nullptr && always) text_.append(name).append(" 0\n=\n");
    for (; property != nullptr; property = property->next) {
      text_.append(name).append(" ").append(std::to_string(property->flags)) += '\n';
      AddItems(property->params, ';');
      AddItems(property->values, '=');
    }
  }

  void AddCalendarFlags(const EventShape& event) {
    text_ += std::to_string(event.component) + '\n';
    FUZZ_CHECK(event.component == COMPONENT_EVENT || event.component == COMPONENT_TODO);
    if (event.component == COMPONENT_EVENT) text_ += event.all_day != 0 ? "all day\n" : "\n";
  }

  // Further parts, the MIME version and the content of temporary files are not written.
  void AddMessage(const MessageShape& message) {
    AddField("luid ", message.luid);
    AddField("version ", message.version);
    AddField("status ", message.status);
    AddField("type ", message.type);
    AddField("folder ", message.folder);
    AddField("date ", message.date);
    AddField("from ", message.from);
    AddField("to ", message.to);
    AddField("cc ", message.cc);
    AddField("reply to ", message.reply_to);
    AddField("subject ", message.subject);
    AddField("content type ", message.body.content_type);
    AddField("encoding ", message.body.transfer_encoding);
    AddContent(message.body);
  }

  void AddContent(const BodyPart& body) {
    const std::string_view text = body.text != nullptr ? body.text.get() : "";
    // A line that begins with a blank goes on with the headers.
    if (text.starts_with(' ') || text.starts_with('\t')) comes_back_ = false;
    if (text.starts_with("END:VBODY") || text.find("\nEND:VBODY") != std::string_view::npos ||
        text.ends_with('=') || text.find("=\n") != std::string_view::npos) {
      comes_back_ = false;
    }
    if (std::strstr(body.content_type, "name=") != nullptr) {
      text_ += "in a file\n";
      return;
    }
    text_.append(text);
    lacks_line_end_ = body.text != nullptr;
  }

  std::string text_;
  bool comes_back_ = true;
  bool lacks_line_end_ = false;
};

// Mends what could not be read again: a missing version, as of the second component of a calendar,
// and the content type of a multipart mail, of which no parts are written. Returns false when the
// version is one that is not read.
inline bool MakeReadable(ObjectKind kind, ObjectRecord* record) {
  constexpr const char* kVersions[] = {"2.1", "1.0", "1.1"};
  constexpr double kHighest[] = {kVcardVersion, kVcalendarVersion, kVnoteVersion};
  if (kind > KIND_NOTE) {
    VmsgBoundary boundary;
    BodyPart& body = record->message.body;
    if (VMSG_FindBoundary(body.content_type, &boundary)) body.content_type[0] = '\0';
    char(&version)[sizeof record->message.version] = record->message.version;
    if (version[0] == '\0') STR_CopyField(version, "1.1");
    return VERSION_IsSupported(std::string(STR_FieldText(version)).c_str(), kVmessageVersion);
  }
  char(&version)[TAMU_VERSION_WIDTH] = record->note.version;
  if (version[0] == '\0') STR_CopyField(version, kVersions[kind]);
  return VERSION_IsSupported(std::string(STR_FieldText(version)).c_str(), kHighest[kind]);
}

}  // namespace tamu::fuzz

#endif  // TAMU_FUZZ_RECORD_TEXT_H_
