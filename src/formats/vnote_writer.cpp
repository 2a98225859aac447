#include "formats/vnote_writer.h"

#include "formats/property_emitter.h"
#include "formats/vnote_properties.h"
#include "text/tokens.h"

namespace tamu {

TamuResult VNOTE_Write(File* file, const ObjectRecord& record, bool write_luid) noexcept {
  const NoteShape& note = record.note;
  VNOTE_WriteLine(file, "BEGIN", "", "VNOTE");
  VNOTE_WriteLine(file, "VERSION", "", STR_FieldText(note.version));
  for (const VnoteRow& row : VNOTE_Rows()) {
    VOBJ_PutProperty(file, row.name, note.*row.field, row.always_written);
  }
  if (write_luid && note.luid[0] != '\0') {
    VNOTE_WriteLine(file, "X-IRMC-LUID", "", STR_FieldText(note.luid));
  }
  VNOTE_WriteLine(file, "END", "", "VNOTE");
  return TAMU_OK;
}

std::uint32_t VNOTE_WriteLine(File* file, std::string_view name, std::string_view params,
                              std::string_view value) noexcept {
  return VOBJ_PutLine(file, name, params, value, "vNote");
}

}  // namespace tamu
