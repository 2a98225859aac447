#include "object_scan.h"

#include <cstring>
#include <string>
#include <string_view>

#include "formats/vcalendar_properties.h"
#include "formats/vnote_properties.h"
#include "text/logical_line.h"

namespace tamu::tool {
namespace {

// The lines of one component, from behind its BEGIN to its END.
class ComponentScan {
 public:
  ComponentScan(bool is_event, Losses* losses) noexcept : is_event_(is_event), losses_(losses) {}

  void Run(File* file) {
    ScanLine line;
    while (depth_ != 0 && line.Read(file)) {
      if (!line.blank()) Take(&line);
    }
  }

 private:
  void Take(ScanLine* line) {
    const VcalCode code = VCAL_PropertyCode(LINE_StripBlanks(line->name()));
    if (code == VcalCode::kEnd) {
      --depth_;
    } else if (code == VcalCode::kBegin) {
      if (depth_++ == 1 && losses_ != nullptr) ++losses_->nested;
    } else if (depth_ == 1 && losses_ != nullptr) {
      Count(code, line);
    }
  }

  void Count(VcalCode code, ScanLine* line) {
    const VcalRow* const row = VCAL_RowOf(code);
    if (code == VcalCode::kUnknown) {
      losses_->unknown.Add(line->name());
    } else if (row != nullptr && line->cut()) {
      losses_->parameters.Add(line->name());
    }
    if (*line->value() == '\0') return;
    const bool todo_only_flag = code == VcalCode::kAllDayEvent && !is_event_;
    const bool never =
        row != nullptr && (is_event_ ? row->event : row->todo).writing == VcalWriting::kNever;
    if (never || todo_only_flag) {
      losses_->misplaced.Add(std::string(line->name()) +
                             (is_event_ ? " of an event" : " of a to-do"));
    }
  }

  bool is_event_;
  Losses* losses_;
  std::uint64_t depth_ = 1;
};

// A line of the calendar itself.
void CountCalendarLine(VcalCode code, ScanLine* line, Losses* losses) {
  if (losses == nullptr) return;
  if (code == VcalCode::kUnknown) {
    losses->unknown.Add(line->name());
  } else if (code != VcalCode::kVersion && code != VcalCode::kLuid) {
    losses->misplaced.Add(std::string(line->name()) + " of a calendar");
  }
}

}  // namespace

bool ScanLine::Read(File* file) noexcept {
  if (file->AtEnd()) return false;
  number_ = file->Tell().line;
  line_ = FileLine(file);
  blank_ = !line_ || *line_ == '\0';
  if (!line_) return true;
  value_ = LINE_Split(name_.data(), params_.data(), line_.get());
  const auto head = static_cast<std::size_t>(value_ - line_.get());
  cut_ = head > std::strlen(name_.data()) + 1 + kParamsSize;
  return true;
}

CalendarParts CALENDAR_Scan(File* file, Losses* losses) {
  CalendarParts parts;
  ScanLine line;
  if (!line.Read(file)) return parts;
  parts.begin_line = line.number();
  while (!parts.end && line.Read(file)) {
    if (line.blank()) continue;
    const VcalCode code = VCAL_PropertyCode(LINE_StripBlanks(line.name()));
    if (code == VcalCode::kBegin) {
      parts.component = true;
      const bool is_event = std::string_view(LINE_StripBlanks(line.value())) == "VEVENT";
      ComponentScan(is_event, losses).Run(file);
    } else if (code == VcalCode::kEnd) {
      parts.end = true;
    } else {
      if (code == VcalCode::kVersion) parts.version = true;
      CountCalendarLine(code, &line, losses);
    }
  }
  return parts;
}

void CALENDAR_SkipEnd(File* file) noexcept {
  ScanLine line;
  while (line.Read(file)) {
    if (!line.blank() && VCAL_PropertyCode(LINE_StripBlanks(line.name())) == VcalCode::kEnd) return;
  }
}

NoteParts NOTE_Scan(File* file, Losses* losses) {
  NoteParts parts;
  ScanLine line;
  std::uint64_t depth = 1;
  if (!line.Read(file)) return parts;
  while (depth != 0 && line.Read(file)) {
    if (line.blank()) continue;
    const VnoteCode code = VNOTE_PropertyCode(LINE_StripBlanks(line.name()));
    if (code == VnoteCode::kEnd) --depth;
    if (code == VnoteCode::kBegin) ++depth;
    if (code == VnoteCode::kVersion) parts.version = true;
    if (losses == nullptr) continue;
    if (code == VnoteCode::kBegin && depth == 2) ++losses->nested;
    if (code == VnoteCode::kUnknown && depth == 1) losses->unknown.Add(line.name());
    if (code > VnoteCode::kVersion && code != VnoteCode::kEnd && depth == 1 && line.cut()) {
      losses->parameters.Add(line.name());
    }
  }
  parts.end = depth == 0;
  return parts;
}

}  // namespace tamu::tool
