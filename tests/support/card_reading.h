// support/card_reading.h - reads object files in tests and keeps what the callback saw.
#ifndef TAMU_TESTS_SUPPORT_CARD_READING_H_
#define TAMU_TESTS_SUPPORT_CARD_READING_H_

#include <string>
#include <vector>

#include "core/records.h"
#include "support/properties.h"
#include "support/scratch_folder.h"
#include "tamu/tamu.h"

namespace tamu::testing {

struct SeenObject {
  ObjectKind kind;
  TamuResult status;
  std::string luid;
  std::string version;
  std::vector<Texts> tel_params;
  std::vector<Texts> tel_values;
  std::vector<Texts> n_values;
  std::vector<Texts> note_values;
};

struct Reading {
  TamuResult result = TAMU_OK;
  std::vector<SeenObject> objects;
};

inline std::vector<Texts> ValuesOf(const Property* node) {
  std::vector<Texts> result;
  for (; node != nullptr; node = node->next) result.push_back(TextsOf(node->values));
  return result;
}

inline uint32_t KeepObject(ObjectKind kind, ObjectRecord* record, TamuResult status, void* user) {
  SeenObject seen{kind, status, record->contact.luid, {}, {}, {}, {}, {}};
  seen.version.assign(record->contact.version,
                      strnlen(record->contact.version, sizeof record->contact.version));
  for (const Property* node = record->contact.prop_tel; node != nullptr; node = node->next) {
    seen.tel_params.push_back(TextsOf(node->params));
  }
  seen.tel_values = ValuesOf(record->contact.prop_tel);
  seen.n_values = ValuesOf(record->contact.prop_n);
  seen.note_values = ValuesOf(record->contact.prop_note);
  static_cast<Reading*>(user)->objects.push_back(std::move(seen));
  return 0;
}

inline const TamuWchar* PathPointer(const std::u16string& path) {
  return reinterpret_cast<const TamuWchar*>(path.c_str());
}

// Reads `content` as a file through the exported function.
inline Reading ReadContent(const std::string& content) {
  const ScratchFolder folder;
  Reading reading;
  reading.result =
      TAMU_ReadObjects(PathPointer(folder.Put("objects.vcf", content)), &KeepObject, &reading);
  return reading;
}

// A card of these lines, which stand between BEGIN and END.
inline std::string Card(const std::string& lines) {
  return "BEGIN:VCARD\r\n" + lines + "END:VCARD\r\n";
}
inline std::string GoodCard(const std::string& more_lines = "") {
  return Card("VERSION:2.1\r\nN:Doe;Jo\r\n" + more_lines);
}

}  // namespace tamu::testing

#endif  // TAMU_TESTS_SUPPORT_CARD_READING_H_
