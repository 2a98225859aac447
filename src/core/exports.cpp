// The front door: the ten exported functions.
#include <cstring>
#include <new>
#include <string>

#include "core/file.h"
#include "core/log.h"
#include "core/records.h"
#include "core/result_text.h"
#include "core/wide.h"
#include "formats/format_table.h"
#include "formats/object_file.h"
#include "formats/object_name.h"
#include "pimstore/find.h"
#include "pimstore/session.h"
#include "tamu/tamu.h"

namespace tamu {
namespace {

// The statuses of objects are not results of a file.
TamuResult WithoutStatus(TamuResult result) noexcept {
  return result == TAMU_PARSE_OK || result == TAMU_PARSE_WARNING ? TamuResult{TAMU_OK} : result;
}

}  // namespace
}  // namespace tamu

using namespace tamu;

TamuResult TAMU_Open(void) {
  LOG_Open();
  return POL_Open();
}

TamuResult TAMU_Close(void) { return POL_Close(); }

TamuResult TAMU_ModifyObject(ObjectKind kind, const char* id, ObjectRecord* record) {
  return POL_ModifyObject(kind, id, record);
}

TamuResult TAMU_AddObject(ObjectKind kind, ObjectRecord* record, char* id_out) {
  return POL_AddObject(kind, record, id_out);
}

uint32_t TAMU_FindObject(ObjectKind kind, ObjectRecord* record, char* id_out, uint32_t reserved) {
  return POL_FindObject(kind, record, id_out, reserved);
}

TamuResult TAMU_GetObjectById(ObjectKind kind, const char* id, ObjectRecord* record_out) {
  LOG_Info("TAMU:  TAMU_GetObjectById()");
  if (id == nullptr) return TAMU_INVALID_ID;
  if (record_out == nullptr) return TAMU_GENERAL_FAILURE;
  std::memset(record_out->bytes, 0, sizeof record_out->bytes);
  return POL_GetObjectById(kind, id, record_out);
}

TamuResult TAMU_WriteObject(ObjectKind kind, ObjectRecord* record, const TamuWchar* path,
                            uint32_t overwrite) {
  File file;
  if (FILE_Open(AsUtf16(path), (overwrite & 0xFF) != 0 ? u"w" : u"a+", &file) != 0)
    return TAMU_FILE_NOT_OPENED;
  const TamuResult result = FORMAT_Write(kind, &file, *record);
  RECORD_Free(kind, record);
  FILE_Close(&file, AsUtf16(path));
  return WithoutStatus(result);
}

TamuResult TAMU_ReadObjects(const TamuWchar* path, ReadCallback callback, void* user) {
  File file;
  if (FILE_Open(AsUtf16(path), u"rb", &file) != 0) return TAMU_FILE_NOT_OPENED;
  const TamuResult result = OBJECTFILE_Read(&file, callback, user);
  FILE_Close(&file, AsUtf16(path));
  return WithoutStatus(result);
}

const TamuWchar* TAMU_CodeToString(TamuResult code) { return AsTamuWchar(RESULT_Text(code)); }

uint32_t TAMU_GetObjectName(ObjectKind kind, ObjectRecord* record, TamuWchar* name_out,
                            uint32_t capacity) {
  std::u16string name;
  try {
    name = OBJECT_ComposeName(kind, record);
  } catch (const std::bad_alloc&) {
    name.clear();
  }
  const auto length = static_cast<uint32_t>(name.size());
  if (name_out == nullptr || capacity == 0) return length;
  const uint32_t copied = length < capacity - 1 ? length : capacity - 1;
  std::memcpy(name_out, name.data(), copied * sizeof(TamuWchar));
  name_out[copied] = 0;
  if (length != 0) name_out[capacity - 1] = 0;
  return length;
}
