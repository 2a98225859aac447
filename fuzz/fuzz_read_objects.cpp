// A file of any bytes: what is read can be shown, written and read again, and nothing is left
// behind, also when memory runs out on the way.
#include <string>
#include <vector>

#include "core/file.h"
#include "core/records.h"
#include "formats/format_table.h"
#include "fuzz_check.h"
#include "platform/bstr.h"
#include "record_text.h"
#include "tamu/tamu.h"
#include "text/property_text.h"

namespace tamu::fuzz {
namespace {

const TamuWchar* AsTamuWchar(const char16_t* text) {
  return reinterpret_cast<const TamuWchar*>(text);
}

// Every component as wide text: it must be one whole counted string.
void ShowAll(ObjectKind kind, const ObjectRecord& record) {
  VisitProperties(kind, record, [](std::string_view, Property* property, bool, std::uint32_t most) {
    for (; property != nullptr; property = property->next) {
      std::uint32_t count = 0;
      for (const StringItem* item = property->values; item != nullptr; item = item->next) ++count;
      FUZZ_CHECK(count >= 1 && count <= most);
      for (std::uint32_t i = 0; i <= count; ++i) {
        platform::BStr text;
        PROP_GetWide(property, i, &text);
        FUZZ_CHECK(text.c_str()[text.size()] == u'\0');
      }
    }
  });
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
  const char16_t* appended_path = nullptr;  // where the library itself writes them too
  std::vector<std::string> objects;         // those that were written and have to come back
  bool any = false;
  bool warned = false;
};

uint32_t OnObject(ObjectKind kind, ObjectRecord* record, TamuResult status, void* user) {
  auto* const reading = static_cast<Reading*>(user);
  FUZZ_CHECK(kind <= KIND_MSG_OUTBOX);
  FUZZ_CHECK(status == TAMU_PARSE_OK || status == TAMU_PARSE_WARNING);
  // A calendar's status is its own, that of other objects the file's.
  FUZZ_CHECK(kind == KIND_CALENDAR || !reading->warned || status == TAMU_PARSE_WARNING);
  reading->warned = status == TAMU_PARSE_WARNING;
  reading->any = true;
  ShowAll(kind, *record);
  NameIt(kind, record);
  FUZZ_CHECK(MakeReadable(kind, record));
  const RecordText text(kind, *record);
  if (text.comes_back()) {
    FUZZ_CHECK(FORMAT_Write(kind, reading->rewritten, *record) == TAMU_OK);
    reading->objects.push_back(text.AsWritten());
  }
  FUZZ_CHECK(TAMU_WriteObject(kind, record, AsTamuWchar(reading->appended_path), 0) == TAMU_OK);
  return 0;
}

uint32_t OnObjectAgain(ObjectKind kind, ObjectRecord* record, TamuResult status, void* user) {
  FUZZ_CHECK(status == TAMU_PARSE_OK);
  static_cast<std::vector<std::string>*>(user)->push_back(RecordText(kind, *record).text());
  return 0;
}

// While memory runs out a record may be incomplete, but never damaged.
uint32_t OnObjectInNeed(ObjectKind kind, ObjectRecord* record, TamuResult, void*) {
  (void)TAMU_GetObjectName(kind, record, nullptr, 0);
  VisitProperties(kind, *record, [](std::string_view, Property* property, bool, std::uint32_t) {
    for (; property != nullptr; property = property->next) {
      platform::BStr text;
      PROP_GetWide(property, 0, &text);
    }
  });
  return 0;
}

bool IsResultOfReading(TamuResult result) {
  return result == TAMU_OK || result == TAMU_NO_VALID_OBJECT || result == TAMU_PARSE_ERROR ||
         result == TAMU_UNSUPPORTED_TYPE;
}

void ReadAndReadAgain(const MemoryFile& memory) {
  const MemoryFile copy;
  const MemoryFile appended;
  Reading reading;
  reading.appended_path = appended.path();
  {
    File rewritten;
    FUZZ_CHECK(rewritten.Open(copy.path(), u"w"));
    reading.rewritten = &rewritten;
    FUZZ_CHECK(
        IsResultOfReading(TAMU_ReadObjects(AsTamuWchar(memory.path()), &OnObject, &reading)));
    FUZZ_CHECK(rewritten.Close());
  }
  if (reading.any) {
    FUZZ_CHECK(IsResultOfReading(TAMU_ReadObjects(AsTamuWchar(appended.path()), nullptr, nullptr)));
  }
  if (reading.objects.empty()) return;
  std::vector<std::string> again;
  FUZZ_CHECK(TAMU_ReadObjects(AsTamuWchar(copy.path()), &OnObjectAgain, &again) == TAMU_OK);
  FUZZ_CHECK(again == reading.objects);
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
