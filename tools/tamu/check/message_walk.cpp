#include <cstddef>
#include <cstring>
#include <memory>
#include <string>

#include "check/object_walks.h"
#include "check/record_format.h"
#include "check/value_check.h"
#include "formats/vcard_properties.h"
#include "formats/vmessage_headers.h"
#include "text/version.h"

namespace tamu::tool {
namespace {

constexpr std::size_t kVersionKept = sizeof(MessageShape::version) - 1;

// A card of a message: it is dropped, and with it what the message has kept where a contact has its
// fields.
void DropCard(CheckWalk* walk, MessageShape* message) {
  std::string names;
  auto* const bytes = reinterpret_cast<char*>(message);
  for (const VmsgRow& row : VMSG_Rows()) {
    const char* const field = row.field != nullptr ? row.field(message, &message->body) : nullptr;
    if (field == nullptr || *field == '\0' || field >= bytes + sizeof(ContactShape)) continue;
    names += (names.empty() ? "" : ", ") + std::string(row.name);
  }
  if (!names.empty()) walk->Add(FindingKind::kFieldsLost, {names});
  std::memset(static_cast<void*>(message), 0, sizeof(ContactShape));
  RECORD_Walk(walk, kCardFormat, RecordUse::kDropped);
}

// The lines of an envelope.
class EnvelopeWalk {
 public:
  EnvelopeWalk(CheckWalk* walk, MessageShape* message)
      : walk_(walk), message_(message), begin_line_(walk->line().number()) {}

  void Run() {
    while (!ended_ && !walk_->AtEnd()) TakeLine();
    if (!body_read_) {
      walk_->Add(FindingKind::kMissingBody, {std::to_string(begin_line_)});
      walk_->Stop("VMSG");
    }
    // An envelope that ends with the file is as bad as one that does not end.
    if (walk_->AtEnd()) walk_->AddMissingEnd(kWords, begin_line_, "VENV and END:VMSG");
  }

 private:
  static constexpr const char* kWords = "envelope";

  void TakeLine() {
    if (!walk_->NextLine(kWords)) return;
    SourceLine& line = walk_->line();
    const std::string_view value = LINE_StripBlanks(line.value);
    const VcardLine tag = VCARD_FindName(LINE_StripBlanks(line.name.data())).line;
    if (tag == VcardLine::kBegin && TakeBegin(value)) return;
    if (tag == VcardLine::kEnd && value == "VENV") {
      if (--depth_ == 0) ended_ = true;
    } else if (tag == VcardLine::kEnd && value == "VBODY") {
      in_unread_mail_ = false;
    } else if (!in_unread_mail_) {
      walk_->Add(FindingKind::kNoPlace, {SHOWN_Text(line.text.get()), "the envelope"});
    }
  }

  // Returns false for a line that the envelope passes over.
  bool TakeBegin(std::string_view object) {
    if (object == "VCARD") {
      DropCard(walk_, message_);
    } else if (object == "VENV") {
      ++depth_;
    } else if (object != "VBODY") {
      return false;
    } else if (body_read_) {
      walk_->Add(FindingKind::kSecondBody);
      in_unread_mail_ = true;
    } else {
      body_read_ = true;
      in_unread_mail_ = !MAIL_Walk(walk_, message_);
    }
    return true;
  }

  CheckWalk* walk_;
  MessageShape* message_;
  std::uint32_t begin_line_;
  std::uint64_t depth_ = 1;
  bool body_read_ = false;
  bool in_unread_mail_ = false;
  bool ended_ = false;
};

class MessageWalk {
 public:
  explicit MessageWalk(CheckWalk* walk)
      : walk_(walk), begin_line_(walk->line().number()), message_(new MessageShape()) {}

  void Run() {
    while (!ended_ && !walk_->AtEnd()) TakeLine();
    if (!ended_) {
      walk_->AddMissingEnd("message", begin_line_, "VMSG");
    } else if (!envelope_seen_) {
      walk_->Add(FindingKind::kMissingEnvelope, {std::to_string(begin_line_)});
      walk_->Stop();
    } else if (!version_seen_) {
      walk_->Add(FindingKind::kMissingMandatory,
                 {"message", std::to_string(begin_line_), "VERSION"});
    }
  }

 private:
  void TakeLine() {
    if (!walk_->NextLine("message")) return;
    SourceLine& line = walk_->line();
    LINE_StripBlanks(line.value);
    const VmsgRow* const row = VMSG_FindRow(LINE_StripBlanks(line.name.data()));
    if (row == nullptr) return UNKNOWN_Add(walk_);
    const std::string_view kept = std::string_view(line.value).substr(0, row->kept);
    const bool is_field = row->field != nullptr && !VMSG_IsMailHeader(row->code);
    is_field ? HEADER_Check(walk_, *row) : LENGTH_Check(walk_, line.value, row->kept);
    if (row->code == VmsgCode::kBegin) {
      TakeBegin(kept);
    } else if (row->code == VmsgCode::kEnd) {
      if (kept == "VMSG") ended_ = true;
    } else if (VMSG_IsMailHeader(row->code)) {
      walk_->Add(FindingKind::kNoPlace,
                 {SHOWN_Text(line.name.data()), "the message outside of its mail"});
    } else {
      TakeField(*row);
    }
  }

  void TakeField(const VmsgRow& row) {
    HEADER_Keep(walk_, row, message_.get(), &message_->body);
    if (row.code != VmsgCode::kVersion) return;
    version_seen_ = true;
    if (!VERSION_Check(walk_, {"message", kVmessageVersion, kVersionKept})) walk_->Stop("VMSG");
  }

  void TakeBegin(std::string_view object) {
    if (object == "VCARD") {
      DropCard(walk_, message_.get());
    } else if (object == "VENV") {
      if (envelope_seen_) walk_->Add(FindingKind::kSecondEnvelope);
      envelope_seen_ = true;
      EnvelopeWalk(walk_, message_.get()).Run();
    } else {
      walk_->Add(FindingKind::kUnknownPart, {"message", SHOWN_Text(object)});
      walk_->Stop("VMSG");
      SKIP_Walk(walk_);
    }
  }

  CheckWalk* walk_;
  std::uint32_t begin_line_;
  std::unique_ptr<MessageShape> message_;  // what the library would keep
  bool version_seen_ = false;
  bool envelope_seen_ = false;
  bool ended_ = false;
};

}  // namespace

void MESSAGE_Walk(CheckWalk* walk) { MessageWalk(walk).Run(); }

// Nobody looks at the parameters of a header, ENCODING and CHARSET neither.
void HEADER_Check(CheckWalk* walk, const VmsgRow& row) {
  const SourceLine& line = walk->line();
  if (!line.has_colon) {
    walk->Add(FindingKind::kNoColon, {std::string(row.name)});
  } else if (line.params_length != 0) {
    walk->Add(FindingKind::kHeaderParameters, {std::string(row.name)});
  }
  LENGTH_Check(walk, line.value, row.kept);
}

void HEADER_Keep(CheckWalk* walk, const VmsgRow& row, MessageShape* message, BodyPart* part) {
  const char* const field = row.field(message, part);
  if (*field != '\0') walk->Add(FindingKind::kRepeatedValue, {std::string(row.name)});
  // That it is cut is told elsewhere.
  static_cast<void>(VMSG_KeepValue(row, walk->line().value, message, part));
}

}  // namespace tamu::tool
