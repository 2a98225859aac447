#include "formats/vcalendar_writer.h"

#include "formats/property_emitter.h"
#include "formats/vcalendar_properties.h"
#include "text/tokens.h"

namespace tamu {
namespace {

void WriteComponent(File* file, const ObjectRecord& record, std::string_view name,
                    bool write_luid) noexcept {
  const bool is_event = record.event.component == COMPONENT_EVENT;
  VCAL_WriteLine(file, "BEGIN", "", name);
  for (const VcalRow* row : VCAL_WrittenRows(record.event.component)) {
    const VcalUse& use = is_event ? row->event : row->todo;
    const Property* const chain =
        is_event ? record.event.*row->event_field : record.todo.*row->todo_field;
    VOBJ_PutProperty(file, row->name, chain, use.writing == VcalWriting::kAlways);
  }
  if (write_luid && record.event.luid[0] != '\0') {
    VCAL_WriteLine(file, "X-IRMC-LUID", "", STR_FieldText(record.event.luid));
  }
  if (is_event) {
    VCAL_WriteLine(file, "X-BLUETOOTH-ALLDAYEVENT", "",
                   record.event.all_day != 0 ? "TRUE" : "FALSE");
  }
  VCAL_WriteLine(file, "END", "", name);
}

}  // namespace

TamuResult VCAL_Write(File* file, const ObjectRecord& record, bool write_luid) noexcept {
  VCAL_WriteLine(file, "BEGIN", "", "VCALENDAR");
  VCAL_WriteLine(file, "VERSION", "", STR_FieldText(record.event.version));
  if (record.event.component == COMPONENT_EVENT) WriteComponent(file, record, "VEVENT", write_luid);
  if (record.event.component == COMPONENT_TODO) WriteComponent(file, record, "VTODO", write_luid);
  VCAL_WriteLine(file, "END", "", "VCALENDAR");
  return TAMU_OK;
}

std::uint32_t VCAL_WriteLine(File* file, std::string_view name, std::string_view params,
                             std::string_view value) noexcept {
  return VOBJ_PutLine(file, name, params, value, "vCalendar");
}

}  // namespace tamu
