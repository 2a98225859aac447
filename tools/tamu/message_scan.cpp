#include "message_scan.h"

#include <string_view>

#include "card_scan.h"
#include "formats/vmessage_content.h"
#include "formats/vmessage_headers.h"
#include "object_scan.h"

namespace tamu::tool {
namespace {

class MessageScan {
 public:
  MessageScan(File* file, Losses* losses) noexcept : file_(file), losses_(losses) {}

  MessageParts Run() {
    if (!line_.Read(file_)) return parts_;
    while (!parts_.end && parts_.stray_line == 0 && ReadLine()) TakeLine();
    return parts_;
  }

 private:
  // The next line that holds something, its name and value without blanks.
  bool ReadLine() {
    do {
      if (!line_.Read(file_)) return false;
    } while (line_.blank());
    LINE_StripBlanks(line_.name());
    LINE_StripBlanks(line_.value());
    return true;
  }

  void CountName() {
    if (losses_ != nullptr) losses_->unknown.Add(line_.name());
  }

  void CountCut(const VmsgRow& row) {
    if (losses_ != nullptr && row.field != nullptr && !VMSG_ValueFits(row, line_.value())) {
      losses_->values.Add(line_.name());
    }
  }

  void SkipCard() {
    if (losses_ != nullptr) ++losses_->cards;
    CARD_ScanBody(file_, nullptr);
  }

  void TakeLine() {
    const VmsgRow* const row = VMSG_FindRow(line_.name());
    if (row == nullptr || VMSG_IsMailHeader(row->code)) return CountName();
    CountCut(*row);
    const std::string_view kept = std::string_view(line_.value()).substr(0, row->kept);
    if (row->code == VmsgCode::kEnd && kept == "VMSG") parts_.end = true;
    if (row->code != VmsgCode::kBegin) return;
    if (kept == "VCARD") {
      SkipCard();
    } else if (kept == "VENV") {
      parts_.envelope = true;
      ScanEnvelope();
    } else {
      parts_.stray = line_.value();
      parts_.stray_line = line_.number();
    }
  }

  void ScanEnvelope() {
    bool body_read = false;
    for (std::uint64_t depth = 1; depth != 0 && ReadLine();) {
      const std::string_view name = line_.name(), value = line_.value();
      if (name == "END") {
        if (value == "VENV") --depth;
      } else if (name != "BEGIN") {
        CountName();
      } else if (value == "VCARD") {
        SkipCard();
      } else if (value == "VENV") {
        ++depth;
      } else if (value == "VBODY") {
        if (body_read && losses_ != nullptr) ++losses_->mails;
        body_read ? SkipContent() : ScanBody();
        body_read = true;
      }
    }
  }

  // The headers of the mail, and its content.
  void ScanBody() {
    while (line_.Read(file_)) {
      if (line_.blank()) return SkipContent();
      LINE_StripBlanks(line_.name());
      const VmsgRow* const row = VMSG_FindRow(line_.name());
      if (row != nullptr && row->code == VmsgCode::kEnd) return;
      if (row == nullptr || !VMSG_IsMailHeader(row->code)) {
        CountName();
      } else {
        CountCut(*row);
      }
    }
  }

  void SkipContent() noexcept {
    std::string_view line;
    while (!file_->AtEnd() && VMSG_ReadRawLine(file_, &line)) {
      if (line.starts_with("END:VBODY")) return;
    }
  }

  File* file_;
  Losses* losses_;
  ScanLine line_;
  MessageParts parts_;
};

}  // namespace

MessageParts MESSAGE_Scan(File* file, Losses* losses) { return MessageScan(file, losses).Run(); }

}  // namespace tamu::tool
