#include "formats/vcalendar_reader.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <utility>

#include "core/log.h"
#include "core/records.h"
#include "formats/line_reader.h"
#include "formats/object_loop.h"
#include "formats/shared_record.h"
#include "formats/vcalendar_properties.h"
#include "text/property.h"
#include "text/version.h"

namespace tamu {
namespace {

constexpr const char* kFormat = "vCalendar";
constexpr std::size_t kCodes = static_cast<std::size_t>(VcalCode::kExdate) + 1;

void WarnOfUnknown(const LineReader& line, TamuResult* result) noexcept {
  LOG_Info("TAMU:  Warning - vCalendar contains unknown property: '%s'", line.name());
  RESULT_Warn(result);
}

// The properties that a reader fills although the component does not have them, and that freeing
// the record leaves. Taken out before the record goes to a callback, which may free it.
class StrayProperties {
 public:
  StrayProperties(const ObjectRecord& record, VcalComponent component) noexcept {
    if (component == VcalComponent::kEvent) {
      chains_ = {record.event.prop_completed, record.event.prop_due};
    } else {
      chains_ = {record.todo.prop_dtend, nullptr};
    }
  }
  ~StrayProperties() {
    for (Property* chain : chains_) PROP_Free(chain);
  }
  StrayProperties(const StrayProperties&) = delete;
  StrayProperties& operator=(const StrayProperties&) = delete;

 private:
  std::array<Property*, 2> chains_;
};

std::uint8_t RecordComponent(VcalComponent component) noexcept {
  return component == VcalComponent::kEvent ? COMPONENT_EVENT : COMPONENT_TODO;
}

class ComponentReader {
 public:
  ComponentReader(LineReader* line, ObjectRecord* record, VcalComponent component) noexcept
      : line_(line), record_(record), component_(component) {}

  TamuResult Read() noexcept {
    while (!ended_ && !line_->file()->AtEnd()) ReadLine();
    if (!HasMandatoryProperties()) {
      LOG_Info("TAMU:  Warning - vCalendar does not contain all mandetory properties");
      RESULT_Warn(&result_);
    }
    if (ended_) return result_;
    LOG_Error("TAMU:  Error - vCalendar missing END tag");
    return TAMU_PARSE_ERROR;
  }

 private:
  void ReadLine() noexcept {
    if (!line_->Next(kFormat, &result_)) return;
    LINE_StripBlanks(line_->name());
    LINE_StripBlanks(line_->params());
    const VcalCode code = VCAL_PropertyCode(line_->name());
    switch (code) {
      case VcalCode::kUnknown:
        WarnOfUnknown(*line_, &result_);
        break;
      case VcalCode::kBegin:
        ++depth_;
        break;
      case VcalCode::kEnd:
        if (depth_ == 1) End();
        --depth_;
        break;
      default:
        if (depth_ == 1) TakeProperty(code);
    }
  }

  void End() noexcept {
    record_->event.component = RecordComponent(component_);
    ended_ = true;
  }

  void TakeProperty(VcalCode code) noexcept {
    seen_[static_cast<std::size_t>(code)] = true;
    if (code == VcalCode::kLuid) {
      STR_CopyBounded(record_->event.luid, line_->value(), sizeof record_->event.luid - 1);
    } else if (code == VcalCode::kAllDayEvent) {
      // Nothing but "TRUE", in capitals, counts.
      if (IsEvent()) record_->event.all_day = std::strcmp(line_->value(), "TRUE") == 0 ? 1 : 0;
    } else if (const VcalRow* const row = VCAL_RowOf(code)) {
      if (Ref<Property>* const field = FieldOf(*row)) {
        PROP_SetFromText(line_->value(), line_->params(), kAnyComponents,
                         chain_ends_[static_cast<std::size_t>(code)].Append(field));
      }
    }
  }

  // Null where a to-do has no such field.
  Ref<Property>* FieldOf(const VcalRow& row) noexcept {
    if (IsEvent()) return &(record_->event.*row.event_field);
    return row.todo_field != nullptr ? &(record_->todo.*row.todo_field) : nullptr;
  }

  bool HasMandatoryProperties() const noexcept {
    for (const VcalRow& row : VCAL_Rows()) {
      const VcalUse& use = IsEvent() ? row.event : row.todo;
      if (use.need == VcalNeed::kMandatory && !seen_[static_cast<std::size_t>(row.code)])
        return false;
    }
    return true;
  }

  [[nodiscard]] bool IsEvent() const noexcept { return component_ == VcalComponent::kEvent; }

  LineReader* line_;
  ObjectRecord* record_;
  VcalComponent component_;
  std::array<PropertyChainEnd, kCodes> chain_ends_{};
  std::array<bool, kCodes> seen_{};
  std::uint64_t depth_ = 1;
  TamuResult result_ = TAMU_PARSE_OK;
  bool ended_ = false;
};

class CalendarReader {
 public:
  CalendarReader(LineReader* line, ObjectRecord* record, ReadCallback callback, void* user) noexcept
      : line_(line), record_(record), callback_(callback), user_(user) {}

  TamuResult Read() noexcept {
    while (!ended_ && !line_->file()->AtEnd()) ReadLine();
    if (result_ == TAMU_OUT_OF_MEMORY) return result_;
    if (component_begun_ && version_seen_ && ended_) return result_;
    // One message for every way to miss this, on purpose.
    LOG_Error("TAMU:  Error - vCalendar does not contain required VERSION property");
    return TAMU_PARSE_ERROR;
  }

 private:
  void ReadLine() noexcept {
    if (!line_->Next(kFormat, &result_)) return;
    LINE_StripBlanks(line_->name());
    LINE_StripBlanks(line_->params());
    LINE_StripBlanks(line_->value());
    switch (VCAL_PropertyCode(line_->name())) {
      case VcalCode::kUnknown:
        WarnOfUnknown(*line_, &result_);
        break;
      case VcalCode::kBegin:
        TakeBegin();
        break;
      case VcalCode::kVersion:
        TakeVersion();
        break;
      case VcalCode::kEnd:
        ended_ = true;
        break;
      case VcalCode::kLuid:
        STR_CopyBounded(record_->event.luid, line_->value(), sizeof record_->event.luid - 1);
        break;
      default:
        break;
    }
  }

  void Fail(TamuResult result) noexcept {
    result_ = result;
    ended_ = true;
  }

  void TakeBegin() noexcept {
    component_begun_ = true;
    if (std::strcmp(line_->value(), "VEVENT") == 0) {
      TakeComponent(VcalComponent::kEvent);
    } else if (std::strcmp(line_->value(), "VTODO") == 0) {
      TakeComponent(VcalComponent::kToDo);
    } else {
      LOG_Error("TAMU:  Error - Unknown BEGIN tag in vCalendar");
      Fail(TAMU_PARSE_ERROR);
    }
  }

  void TakeComponent(VcalComponent component) noexcept {
    SHARED_BeginObject(line_->number());
    const TamuResult result = VCAL_ReadComponent(line_->file(), record_, component);
    const StrayProperties strays(*record_, component);
    if (result == TAMU_PARSE_ERROR || result == TAMU_OUT_OF_MEMORY) {
      // Its END, which would have said what it is, was never read.
      record_->event.component = RecordComponent(component);
      Fail(result);
    } else {
      if (result == TAMU_PARSE_WARNING) result_ = TAMU_PARSE_WARNING;
      if (callback_ != nullptr) callback_(KIND_CALENDAR, record_, result_, user_);
    }
    RECORD_Free(KIND_CALENDAR, record_);
  }

  void TakeVersion() noexcept {
    version_seen_ = true;
    STR_CopyField(record_->event.version, line_->value());
    char kept[TAMU_VERSION_WIDTH + 1];
    STR_CopyBounded(kept, line_->value(), TAMU_VERSION_WIDTH);
    if (VERSION_IsSupported(kept, kVcalendarVersion)) return;
    LOG_Error("TAMU:  Error - vCalendar version '%s' is not supported", kept);
    Fail(TAMU_PARSE_ERROR);
  }

  LineReader* line_;
  ObjectRecord* record_;
  ReadCallback callback_;
  void* user_;
  TamuResult result_ = TAMU_PARSE_OK;
  bool component_begun_ = false;
  bool version_seen_ = false;
  bool ended_ = false;
};

TamuResult ReadBody(File* file, ReadCallback callback, void* user) noexcept {
  return VCAL_ReadCalendar(file, SHARED_Record(), callback, user);
}

}  // namespace

TamuResult VCAL_Read(File* file, ReadCallback callback, void* user) noexcept {
  constexpr ObjectLoop kLoop = {kFormat, "VCALENDAR", &ReadBody, nullptr};
  return OBJECTS_ReadAll(kLoop, file, callback, user);
}

TamuResult VCAL_ReadCalendar(File* file, ObjectRecord* record, ReadCallback callback,
                             void* user) noexcept {
  LineReader line(file);
  if (!line.ok()) return RESULT_NoBuffers();
  return CalendarReader(&line, record, callback, user).Read();
}

TamuResult VCAL_ReadComponent(File* file, ObjectRecord* record, VcalComponent component) noexcept {
  LineReader line(file);
  if (!line.ok()) return RESULT_NoBuffers();
  return ComponentReader(&line, record, component).Read();
}

}  // namespace tamu
