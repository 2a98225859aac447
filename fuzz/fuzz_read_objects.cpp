// A file of any bytes: what is read can be shown, written and read again, and nothing is left
// behind, also when memory runs out on the way.
#include <string>
#include <vector>

#include "core/file.h"
#include "core/records.h"
#include "formats/vcard_properties.h"
#include "formats/vcard_writer.h"
#include "fuzz_check.h"
#include "platform/bstr.h"
#include "tamu/tamu.h"
#include "text/property.h"
#include "text/property_text.h"
#include "text/version.h"

namespace tamu::fuzz {
namespace {

const TamuWchar* AsTamuWchar(const char16_t* text) {
  return reinterpret_cast<const TamuWchar*>(text);
}

// What a contact holds, so that two can be compared. Whether a text ends in "=", which joins a
// written line with the next one, is noted beside it.
struct Contact {
  std::string content;
  bool ends_in_equals = false;
};

void AppendItems(const StringItem* item, char mark, Contact* contact) {
  for (; item != nullptr; item = item->next) {
    contact->content += mark;
    contact->content += item->text ? item->text.get() : "";
    contact->content += '\n';
    if (!item->next && contact->content.ends_with("=\n")) contact->ends_in_equals = true;
  }
}

void AppendField(std::string_view name, const char* text, std::size_t size, Contact* contact) {
  const std::string value = UpToNul(std::string(text, size));
  contact->content.append(name).append(value) += '\n';
  if (value.ends_with('=')) contact->ends_in_equals = true;
}

Contact Describe(const ContactShape& shape) {
  Contact contact;
  AppendField("luid ", shape.luid, sizeof shape.luid, &contact);
  AppendField("version ", shape.version, sizeof shape.version, &contact);
  for (const VcardRow& row : VCARD_Rows()) {
    const Property* property = shape.*row.field;
    // A contact without this property is written with an empty one.
    if (property == nullptr && row.always_written) contact.content += "N 0\n=\n";
    for (; property != nullptr; property = property->next) {
      contact.content.append(row.name).append(" ").append(std::to_string(property->flags)) += '\n';
      AppendItems(property->params, ';', &contact);
      AppendItems(property->values, '=', &contact);
    }
  }
  return contact;
}

// Every component as wide text: it must be one whole counted string.
void ShowAll(const ContactShape& shape) {
  for (const VcardRow& row : VCARD_Rows()) {
    for (Property* property = shape.*row.field; property != nullptr; property = property->next) {
      std::uint32_t count = 0;
      for (const StringItem* item = property->values; item != nullptr; item = item->next) ++count;
      FUZZ_CHECK(count >= 1 && count <= row.components);
      for (std::uint32_t i = 0; i <= count; ++i) {
        platform::BStr text;
        PROP_GetWide(property, i, &text);
        FUZZ_CHECK(text.c_str()[text.size()] == u'\0');
      }
    }
  }
}

void NameIt(ObjectKind kind, ObjectRecord* record) {
  const std::uint32_t length = TAMU_GetObjectName(kind, record, nullptr, 0);
  std::vector<TamuWchar> name(std::size_t{length} + 1, TamuWchar{1});
  FUZZ_CHECK(TAMU_GetObjectName(kind, record, name.data(), length + 1) == length);
  FUZZ_CHECK(name.back() == 0);
  std::vector<TamuWchar> cut(3, TamuWchar{1});
  FUZZ_CHECK(TAMU_GetObjectName(kind, record, cut.data(), 3) == length);
  FUZZ_CHECK(length < 2 || (cut[0] == name[0] && cut[1] == name[1] && cut[2] == 0));
}

struct Reading {
  File* rewritten = nullptr;
  const char16_t* others_path = nullptr;  // where objects that are no contacts are written
  bool others = false;
  std::vector<std::string> contacts;   // those that were written
  std::vector<std::string> unwritten;  // those that cannot come back as they are
  bool warned = false;
};

uint32_t OnObject(ObjectKind kind, ObjectRecord* record, TamuResult status, void* user) {
  auto* const reading = static_cast<Reading*>(user);
  FUZZ_CHECK(kind <= KIND_MSG_OUTBOX);
  FUZZ_CHECK(status == TAMU_PARSE_OK || status == TAMU_PARSE_WARNING);
  if (kind != KIND_CONTACT) {
    NameIt(kind, record);
    reading->others = true;
    FUZZ_CHECK(TAMU_WriteObject(kind, record, AsTamuWchar(reading->others_path), 0) == TAMU_OK);
    return 0;
  }
  FUZZ_CHECK(!reading->warned || status == TAMU_PARSE_WARNING);
  reading->warned = status == TAMU_PARSE_WARNING;
  const Contact contact = Describe(record->contact);
  const std::string version =
      UpToNul(std::string(record->contact.version, sizeof record->contact.version));
  // A version that stood in a nested object only is not kept.
  if (contact.ends_in_equals || !VERSION_IsSupported(version.c_str(), kVcardVersion)) {
    reading->unwritten.push_back(contact.content);
  } else if (reading->rewritten != nullptr) {
    FUZZ_CHECK(VCARD_Write(reading->rewritten, *record, true) == TAMU_OK);
    reading->contacts.push_back(contact.content);
  }
  ShowAll(record->contact);
  NameIt(kind, record);
  return 0;
}

uint32_t OnObjectAgain(ObjectKind, ObjectRecord* record, TamuResult status, void* user) {
  FUZZ_CHECK(status == TAMU_PARSE_OK);
  static_cast<std::vector<std::string>*>(user)->push_back(Describe(record->contact).content);
  return 0;
}

// While memory runs out a record may be incomplete, but never damaged.
uint32_t OnObjectInNeed(ObjectKind kind, ObjectRecord* record, TamuResult, void*) {
  (void)TAMU_GetObjectName(kind, record, nullptr, 0);
  if (kind != KIND_CONTACT) return 0;
  for (const VcardRow& row : VCARD_Rows()) {
    for (Property* property = record->contact.*row.field; property; property = property->next) {
      platform::BStr text;
      PROP_GetWide(property, 0, &text);
    }
  }
  return 0;
}

bool IsResultOfReading(TamuResult result) {
  return result == TAMU_OK || result == TAMU_NO_VALID_OBJECT || result == TAMU_PARSE_ERROR ||
         result == TAMU_UNSUPPORTED_TYPE;
}

void ReadAndReadAgain(const MemoryFile& memory) {
  const MemoryFile copy;
  const MemoryFile others;
  Reading reading;
  reading.others_path = others.path();
  {
    File rewritten;
    FUZZ_CHECK(rewritten.Open(copy.path(), u"w"));
    reading.rewritten = &rewritten;
    FUZZ_CHECK(
        IsResultOfReading(TAMU_ReadObjects(AsTamuWchar(memory.path()), &OnObject, &reading)));
    FUZZ_CHECK(rewritten.Close());
  }
  if (reading.others) {
    FUZZ_CHECK(IsResultOfReading(TAMU_ReadObjects(AsTamuWchar(others.path()), nullptr, nullptr)));
  }
  if (reading.contacts.empty()) return;
  std::vector<std::string> again;
  FUZZ_CHECK(TAMU_ReadObjects(AsTamuWchar(copy.path()), &OnObjectAgain, &again) == TAMU_OK);
  FUZZ_CHECK(again == reading.contacts);
}

void ReadInNeed(const MemoryFile& memory, std::uint64_t nth, bool and_after) {
  MEM_FailNth(nth, and_after);
  const TamuResult result = TAMU_ReadObjects(AsTamuWchar(memory.path()), &OnObjectInNeed, nullptr);
  MEM_FailNth(0);
  FUZZ_CHECK(IsResultOfReading(result) || result == TAMU_OUT_OF_MEMORY ||
             result == TAMU_FILE_NOT_OPENED);
}

}  // namespace
}  // namespace tamu::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tamu::fuzz;
  const NothingLeaks leaks;
  const MemoryFile memory({reinterpret_cast<const char*>(data), size});
  ReadAndReadAgain(memory);
  // A different allocation for every input, without a byte of it being set apart for that.
  std::uint64_t sum = size;
  for (std::size_t i = 0; i < size; ++i) sum = sum * 31 + data[i];
  ReadInNeed(memory, sum % 97 + 1, sum / 97 % 2 != 0);
  return 0;
}
