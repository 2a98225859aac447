#include <cstring>
#include <string>

#include "check/object_walks.h"
#include "check/record_format.h"
#include "check/value_check.h"
#include "formats/vcalendar_properties.h"
#include "text/version.h"

namespace tamu::tool {
namespace {

class CalendarWalk {
 public:
  explicit CalendarWalk(CheckWalk* walk) : walk_(walk), begin_line_(walk->line().number()) {}

  void Run() {
    while (!ended_ && !walk_->AtEnd()) TakeLine();
    if (!version_seen_) {
      walk_->Add(FindingKind::kMissingProperty,
                 {"calendar", std::to_string(begin_line_), "VERSION", "what follows it is"});
    }
    if (!component_begun_) {
      walk_->Add(FindingKind::kEmptyCalendar, {std::to_string(begin_line_)});
    }
    if (!ended_) walk_->AddMissingEnd("calendar", begin_line_, "VCALENDAR");
    if (!version_seen_ || !component_begun_) walk_->Stop();
  }

 private:
  void TakeLine() {
    if (!walk_->NextLine("calendar")) return;
    SourceLine& line = walk_->line();
    LINE_StripBlanks(line.params.data());
    LINE_StripBlanks(line.value);
    switch (VCAL_PropertyCode(LINE_StripBlanks(line.name.data()))) {
      case VcalCode::kUnknown:
        UNKNOWN_Add(walk_);
        break;
      case VcalCode::kBegin:
        TakeBegin();
        break;
      case VcalCode::kVersion:
        HEAD_Check(walk_);
        version_seen_ = true;
        if (!VERSION_Check(walk_, {"calendar", kVcalendarVersion, TAMU_VERSION_WIDTH})) {
          walk_->Stop("VCALENDAR");
        }
        break;
      case VcalCode::kEnd:
        ended_ = true;
        break;
      case VcalCode::kLuid:
        HEAD_Check(walk_);
        LENGTH_Check(walk_, line.value, sizeof(EventShape::luid) - 1);
        break;
      default:
        walk_->Add(FindingKind::kNoPlace,
                   {SHOWN_Text(line.name.data()), "the calendar outside of its events"});
    }
  }

  void TakeBegin() {
    component_begun_ = true;
    for (const RecordFormat* const format : {&kEventFormat, &kToDoFormat}) {
      if (format->begin_value != walk_->line().value) continue;
      walk_->report()->Flush();
      const ObjectScope scope(walk_->report(), walk_->line().number());
      RECORD_Walk(walk_, *format, RecordUse::kDelivered);
      walk_->report()->Flush();
      return;
    }
    walk_->Add(FindingKind::kUnknownPart, {"calendar", SHOWN_Text(walk_->line().value)});
    walk_->Stop("VCALENDAR");
    SKIP_Walk(walk_);
  }

  CheckWalk* walk_;
  std::uint32_t begin_line_;
  bool version_seen_ = false;
  bool component_begun_ = false;
  bool ended_ = false;
};

}  // namespace

void CALENDAR_Walk(CheckWalk* walk) { CalendarWalk(walk).Run(); }

void SKIP_Walk(CheckWalk* walk) {
  for (std::uint64_t depth = 1; depth != 0 && !walk->AtEnd();) {
    walk->ReadLine();
    const std::string_view name = LINE_StripBlanks(walk->line().name.data());
    if (name == "BEGIN") ++depth;
    if (name == "END") --depth;
  }
}

}  // namespace tamu::tool
