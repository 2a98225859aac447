// Notes as records: the title and the text of a rich-ink document.
#include "core/records.h"
#include "device/ink/documents.h"
#include "platform/last_error.h"
#include "store/fetch.h"
#include "text/property_text.h"
#include "text/tokens.h"

namespace tamu::tool {

bool FETCH_Note(const std::u16string& title, FetchedObject* object, std::string* problem) {
  device::InkText text;
  const std::uint32_t error = device::DOCUMENTS_Read(title, &text);
  if (error != 0) {
    *problem = error == platform::kErrorFileNotFound
                   ? "there is none on the device"
                   : std::string("it cannot be read: ") + platform::ErrorText(error);
    return false;
  }
  NoteShape& note = object->Reset(KIND_NOTE)->note;
  STR_CopyField(note.version, "1.1");
  PROP_SetWide(title.c_str(), PROP_Append(&note.prop_summary), kAllowQuotedPrintable, 0);
  PROP_SetWide(text.text.c_str(), PROP_Append(&note.prop_body), kAllowQuotedPrintable, 0);
  if (text.damaged) object->losses.emplace_back("the document is damaged; this is what it holds");
  return true;
}

}  // namespace tamu::tool
