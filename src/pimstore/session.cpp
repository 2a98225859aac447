#include "pimstore/session.h"

#include <optional>

#include "core/log.h"
#include "text/string_tools.h"

namespace tamu {
namespace {

// What the platform answers where no class is registered for the object store.
constexpr std::uint32_t kClassNotRegistered = 0x80040154U;

// The number that an object id begins with, as "%x" reads it: blanks, a sign and "0x" may stand in
// front.
std::optional<std::uint32_t> ParseObjectId(const char* id) noexcept {
  while (*id == ' ' || (*id >= '\t' && *id <= '\r')) ++id;
  const bool negative = *id == '-';
  if (*id == '-' || *id == '+') ++id;
  if (id[0] == '0' && (id[1] == 'x' || id[1] == 'X') && HEX_DigitValue(id[2]) < 16) id += 2;
  if (HEX_DigitValue(*id) >= 16) return std::nullopt;
  std::uint32_t number = 0;
  for (; HEX_DigitValue(*id) < 16; ++id) number = number << 4 | HEX_DigitValue(*id);
  return negative ? 0U - number : number;
}

// A note's id is its title and is not parsed.
bool IsReadableId(ObjectKind kind, const char* id) noexcept {
  return id != nullptr && (kind == KIND_NOTE || ParseObjectId(id).has_value());
}

}  // namespace

TamuResult POL_Open() noexcept {
  LOG_Info("TAMU:  POL_Open()");
  LOG_Error("TAMU:  Unable to get application object from POOM interface. (code=0x%08x)",
            kClassNotRegistered);
  return TAMU_GENERAL_PIM_ERROR;
}

TamuResult POL_Close() noexcept {
  LOG_Info("TAMU:  POL_Close()");
  return TAMU_OK;
}

TamuResult POL_AddObject(ObjectKind kind, const ObjectRecord*, char* id_out) noexcept {
  LOG_Info("TAMU:  POL_AddObject()");
  if (id_out != nullptr) *id_out = '\0';
  return kind > KIND_MSG_OUTBOX ? TAMU_UNSUPPORTED_TYPE : TAMU_PIM_NOT_OPENED;
}

TamuResult POL_ModifyObject(ObjectKind kind, const char* id, const ObjectRecord*) noexcept {
  LOG_Info("TAMU:  POL_ModifyObject()");
  if (!IsReadableId(kind, id)) return TAMU_INVALID_ID;
  return kind > KIND_MSG_OUTBOX ? TAMU_UNSUPPORTED_TYPE : TAMU_PIM_NOT_OPENED;
}

TamuResult POL_GetObjectById(ObjectKind kind, const char* id, ObjectRecord*) noexcept {
  LOG_Info("TAMU:  POL_GetObjectById('%s')", id);
  if (!IsReadableId(kind, id)) return TAMU_INVALID_ID;
  return kind == KIND_CONTACT || kind == KIND_CALENDAR ? TAMU_PIM_NOT_OPENED
                                                       : TAMU_UNSUPPORTED_TYPE;
}

std::uint32_t POL_FindObject(ObjectKind, const ObjectRecord*, char*, std::uint32_t) noexcept {
  return 0;
}

}  // namespace tamu
