#include "formats/object_loop.h"

#include <cstring>

#include "core/log.h"
#include "core/records.h"
#include "formats/line_reader.h"
#include "formats/shared_record.h"
#include "formats/vcard_properties.h"

namespace tamu {
namespace {

// True when the line begins an object of the format. Its name is looked up among those of a vCard
// in every format.
bool BeginsObject(const ObjectLoop& loop, const LineReader& line) noexcept {
  if (loop.begin_value == nullptr) {
    return VCARD_FindName(LINE_TrimLeadingBlanks(line.name())).line == VcardLine::kBegin;
  }
  return VCARD_FindName(LINE_StripBlanks(line.name())).line == VcardLine::kBegin &&
         std::strcmp(LINE_StripBlanks(line.value()), loop.begin_value) == 0;
}

bool EndsReading(TamuResult result) noexcept {
  return result != TAMU_PARSE_OK && result != TAMU_PARSE_WARNING;
}

}  // namespace

TamuResult OBJECTS_ReadAll(const ObjectLoop& loop, File* file, ReadCallback callback,
                           void* user) noexcept {
  if (file->AtEnd()) return TAMU_PARSE_ERROR;
  LineReader line(file);
  if (!line.ok()) return RESULT_NoBuffers();
  TamuResult kept = TAMU_PARSE_OK;
  for (bool first = true;; first = false) {
    if (!line.Read()) return TAMU_PARSE_ERROR;
    if (!BeginsObject(loop, line)) {
      if (!first) return kept;
      LOG_Error("TAMU:  Error - %s does not have a BEGIN tag", loop.format);
      return TAMU_PARSE_ERROR;
    }
    SHARED_BeginObject(line.number());
    ObjectRecord* const record = SHARED_Record();
    const TamuResult result = loop.read_body(file, callback, user);
    const ObjectKind kind =
        loop.kind_of != nullptr ? loop.kind_of(*record) : ObjectKind{KIND_CALENDAR};
    if (EndsReading(result)) {
      RECORD_Free(kind, record);
      return result;
    }
    if (result == TAMU_PARSE_WARNING) kept = TAMU_PARSE_WARNING;
    if (loop.kind_of != nullptr && callback != nullptr) callback(kind, record, kept, user);
    RECORD_Free(kind, record);  // a calendar's last lines too, which belong to no component
  }
}

}  // namespace tamu
