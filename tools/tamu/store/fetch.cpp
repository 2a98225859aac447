#include "store/fetch.h"

#include <array>
#include <charconv>
#include <cstring>

#include "core/records.h"
#include "core/wide.h"
#include "display_text.h"
#include "mailstore/mail_operations.h"
#include "platform/paths.h"

namespace tamu::tool {
namespace {

std::string OidText(std::int32_t oid) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text(8, '0');
  auto number = static_cast<std::uint32_t>(oid);
  for (std::size_t i = text.size(); i-- > 0; number >>= 4) text[i] = kDigits[number & 0xF];
  return text;
}

bool ParseOid(const std::string& text, std::int32_t* oid) {
  std::uint32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number, 16);
  *oid = static_cast<std::int32_t>(number);
  return result.ec == std::errc() && result.ptr == end && !text.empty() && number != 0;
}

// What the library says of a code, for a sentence.
std::string CodeText(TamuResult code) { return DISPLAY_Line(AsUtf16(TAMU_CodeToString(code))); }

bool FetchItem(const ObjectId& id, FetchedObject* object, std::string* problem) {
  const ObjectKind kind = STORED_ObjectKind(id.kind);
  const TamuResult result = TAMU_GetObjectById(kind, OidText(id.oid).c_str(), object->Reset(kind));
  if (result != TAMU_OK) {
    *problem = result == TAMU_OBJECT_NOT_FOUND ? "there is none on the device" : CodeText(result);
    return false;
  }
  if (STORED_KindOf(kind, *object->record()) == id.kind) return true;
  *problem = "that is " + std::string(STORED_Words(STORED_KindOf(kind, *object->record())).one) +
             ", not " + std::string(STORED_Words(id.kind).one);
  return false;
}

}  // namespace

std::string ObjectId::Text() const {
  if (kind == StoredKind::kNote) return DISPLAY_ToUtf8(title);
  if (kind != StoredKind::kMessage) return OidText(oid);
  std::string text(entry_id.size() * 2 + 1, '\0');
  MAPI_EntryIdToHex(entry_id.data(), entry_id.size(), text.data());
  text.pop_back();
  return text;
}

bool ID_Parse(StoredKind kind, const std::string& text, ObjectId* id, std::string* problem) {
  *id = {};
  id->kind = kind;
  switch (kind) {
    case StoredKind::kNote:
      id->title = platform::PathFromNative(text);
      if (!id->title.empty()) return true;
      *problem = "give the note's title";
      return false;
    case StoredKind::kMessage:
      id->entry_id.resize(text.size() / 2);
      if (!text.empty() && FBinFromHex(text.c_str(), id->entry_id.data())) return true;
      *problem = "'" + DISPLAY_Bytes(text) +
                 "' is no message's id: it has pairs of hexadecimal "
                 "digits, as 'tamu list message' shows it";
      return false;
    default:
      if (ParseOid(text, &id->oid)) return true;
      *problem = "'" + DISPLAY_Bytes(text) +
                 "' is no id: it has up to eight hexadecimal digits, "
                 "as 'tamu list' shows it";
      return false;
  }
}

FetchedObject::~FetchedObject() { RECORD_Free(kind_, &record_); }

ObjectRecord* FetchedObject::Reset(ObjectKind kind) noexcept {
  RECORD_Free(kind_, &record_);
  losses.clear();
  kind_ = kind;
  return &record_;
}

void FetchedObject::Forget() noexcept { std::memset(record_.bytes, 0, sizeof record_.bytes); }

bool FETCH_Object(const DeviceSession&, const ObjectId& id, FetchedObject* object,
                  std::string* problem) {
  switch (id.kind) {
    case StoredKind::kNote:
      return FETCH_Note(id.title, object, problem);
    case StoredKind::kMessage:
      return FETCH_Message(id.entry_id, object, problem);
    default:
      return FetchItem(id, object, problem);
  }
}

}  // namespace tamu::tool
