#include "mailstore/mail_operations.h"

#include <cstring>
#include <new>
#include <vector>

#include "core/log.h"
#include "mailstore/mail_folder.h"
#include "mailstore/mail_message.h"
#include "platform/com_ptr.h"
#include "text/string_tools.h"

namespace tamu {
namespace {

using namespace platform;

// Writes the id of a message that was just made; false, logged, when the store does not tell it.
bool WriteNewId(IMessage* message, char* id_out) noexcept {
  SizedPropTagArray<1> tags{1, {PR_ENTRYID}};
  std::uint32_t count = 0;
  SPropValue* values = nullptr;
  HRESULT result = message->GetProps(tags.get(), 0, &count, &values);
  const bool has_value = Succeeded(result) && count != 0 && values != nullptr;
  const bool has_id = has_value && values->ulPropTag == PR_ENTRYID;
  if (has_id) {
    MAPI_EntryIdToHex(values->Value.bin.lpb, values->Value.bin.cb, id_out);
  } else {
    if (has_value && PropType(values->ulPropTag) == kTypeError) result = values->Value.err;
    LOG_Error("MAPI:  lpMessage->GetProps(PR_ENTRYID) failed with code: 0x%08x", result);
  }
  if (values != nullptr) MAPIFreeBuffer(values);
  return has_id;
}

}  // namespace

TamuResult MAPI_AddMail(const MessageShape* record, char* id_out) noexcept {
  IMAPIFolder* const folder = MAIL_FolderOf(*record);
  LOG_Info("MAPI:  MAPI_AddMail() Folder:%s", record->folder);
  if (folder == nullptr) return TAMU_GENERAL_PIM_ERROR;
  ComPtr<IMessage> message;
  const HRESULT result = folder->CreateMessage(nullptr, 0, message.put());
  if (Failed(result) || !message) {
    LOG_Error("MAPI:  lpFolder->CreateMessage failed with code: 0x%08x", result);
    return TAMU_GENERAL_PIM_ERROR;
  }
  MAPI_SetMessageProps(message.get(), *record);
  if (id_out != nullptr && !WriteNewId(message.get(), id_out)) return TAMU_GENERAL_PIM_ERROR;
  return TAMU_OK;
}

TamuResult MAPI_ModifyMail(const MessageShape* record, const char* id) noexcept {
  IMAPIFolder* const folder = MAIL_FolderOf(*record);
  LOG_Info("MAPI:  MAPI_ModifyMail() Folder:%s ID:'%s'", record->folder, id);
  if (folder == nullptr) {
    LOG_Error("MAPI:  MAPI_ModifyMail error - lpFolder is NULL");
    return TAMU_GENERAL_PIM_ERROR;
  }
  const std::size_t size = id == nullptr ? 0 : std::strlen(id) / 2;
  std::vector<std::uint8_t> entry_id;
  try {
    entry_id.resize(size);
  } catch (const std::bad_alloc&) {
    return TAMU_GENERAL_PIM_ERROR;
  }
  if (!FBinFromHex(id, entry_id.data())) {
    LOG_Error("MAPI:  FBinFromHex to convert ID");
    return TAMU_INVALID_ID;
  }
  std::uint32_t type = 0;
  ComPtr<IUnknown> object;
  const HRESULT result = folder->OpenEntry(
      static_cast<std::uint32_t>(size), static_cast<ENTRYID*>(static_cast<void*>(entry_id.data())),
      nullptr, kMapiModify | kMapiBestAccess, &type, object.put());
  if (Failed(result) || !object) {
    LOG_Error("MAPI:  lpFolder->OpenEntry for Mailbox failed with code: 0x%08x", result);
    return TAMU_GENERAL_PIM_ERROR;
  }
  if (type == kObjectMessage) {
    MAPI_SetMessageProps(static_cast<IMessage*>(object.get()), *record);
  } else {
    LOG_Info("MAPI:  ulObjType of OpenEntry on Mailbox != MAPI_MESSAGE");
  }
  return TAMU_OK;
}

bool FBinFromHex(const char* text, std::uint8_t* bytes) noexcept {
  if (text == nullptr) return true;
  for (; *text != '\0'; text += 2) {
    const std::uint8_t high = HEX_DigitValue(text[0]);
    if (high >= 16) return false;
    const std::uint8_t low = HEX_DigitValue(text[1]);
    if (low >= 16) return false;
    *bytes++ = static_cast<std::uint8_t>(high << 4 | low);
  }
  return true;
}

void MAPI_EntryIdToHex(const std::uint8_t* bytes, std::size_t count, char* text) noexcept {
  constexpr char kDigits[] = "0123456789ABCDEF";
  *text = '\0';
  for (std::size_t i = 0; i < count; ++i) {
    *text++ = kDigits[bytes[i] >> 4];
    *text++ = kDigits[bytes[i] & 0x0F];
    *text = '\0';
  }
}

}  // namespace tamu
