#include "formats/vcard_writer.h"

#include "formats/property_emitter.h"
#include "formats/vcard_properties.h"
#include "text/tokens.h"

namespace tamu {

TamuResult VCARD_Write(File* file, const ObjectRecord& record, bool with_luid) noexcept {
  const ContactShape& contact = record.contact;
  VOBJ_PutLine(file, "BEGIN", "", "VCARD");
  VOBJ_PutLine(file, "VERSION", "", STR_FieldText(contact.version));
  for (const VcardRow& row : VCARD_Rows()) {
    VOBJ_PutProperty(file, row.name, contact.*row.field, row.always_written);
  }
  if (with_luid && contact.luid[0] != '\0') {
    VOBJ_PutLine(file, "X-IRMC-LUID", "", STR_FieldText(contact.luid));
  }
  VOBJ_PutLine(file, "END", "", "VCARD");
  return TAMU_OK;
}

}  // namespace tamu
