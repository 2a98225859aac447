#include "formats/format_table.h"

#include <iterator>

#include "formats/vcalendar_reader.h"
#include "formats/vcalendar_writer.h"
#include "formats/vcard_reader.h"
#include "formats/vcard_writer.h"
#include "formats/vmessage_reader.h"
#include "formats/vmessage_writer.h"
#include "formats/vnote_reader.h"
#include "formats/vnote_writer.h"

namespace tamu {
namespace {

struct ReaderRow {
  std::string_view object_name;
  TamuResult (*read)(File*, ReadCallback, void*) noexcept;
};
constexpr ReaderRow kReaders[] = {
    {"VCARD", &VCARD_ReadObjects},
    {"VCALENDAR", &VCAL_Read},
    {"VNOTE", &VNOTE_Read},
    {"VMSG", &VMSG_Read},
};

using Writer = TamuResult (*)(File*, const ObjectRecord&, bool with_luid) noexcept;
constexpr Writer kWriters[] = {&VCARD_Write, &VCAL_Write, &VNOTE_Write,
                               &VMSG_Write,  &VMSG_Write, &VMSG_Write};  // by kind
static_assert(std::size(kWriters) == KIND_MSG_OUTBOX + 1);

}  // namespace

TamuResult FORMAT_Read(std::string_view object_name, File* file, ReadCallback callback,
                       void* user) noexcept {
  for (const ReaderRow& row : kReaders) {
    if (row.object_name == object_name) return row.read(file, callback, user);
  }
  return TAMU_NO_VALID_OBJECT;
}

TamuResult FORMAT_Write(ObjectKind kind, File* file, const ObjectRecord& record) noexcept {
  if (kind >= std::size(kWriters)) return TAMU_UNSUPPORTED_TYPE;
  return kWriters[kind](file, record, true);
}

}  // namespace tamu
