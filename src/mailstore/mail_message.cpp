#include "mailstore/mail_message.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <string_view>

#include "core/log.h"
#include "mailstore/html_text.h"
#include "mailstore/mail_folder.h"
#include "mailstore/mail_recipients.h"
#include "platform/com_ptr.h"
#include "text/date.h"
#include "text/property_text.h"
#include "text/string_tools.h"

namespace tamu {
namespace {

using namespace platform;

HRESULT SetText(IMessage* message, std::uint32_t tag, const BStr& text,
                SPropProblemArray** problems = nullptr) noexcept {
  SPropValue value{};
  value.ulPropTag = tag;
  // The store copies what it is given.
  value.Value.lpszW = const_cast<char16_t*>(text.c_str());
  return message->SetProps(1, &value, problems);
}

void SetSubject(IMessage* message, const MessageShape& record) noexcept {
  if (record.subject[0] == '\0') return;
  BStr subject;
  MAIL_HeaderToWide(record.subject, &subject);
  const HRESULT result = SetText(message, PR_SUBJECT, subject);
  if (Failed(result)) {
    LOG_Error("MAPI:  lpMessage->SetProps(PR_SUBJECT) failed with code: 0x%08x", result);
  }
}

void SetDeliveryTime(IMessage* message, const MessageShape& record) noexcept {
  if (record.date[0] == '\0') return;
  SPropValue value{};
  value.ulPropTag = PR_MESSAGE_DELIVERY_TIME;
  value.Value.ft = DATE_MailTextToFileTime(record.date);
  const HRESULT result = message->SetProps(1, &value, nullptr);
  if (Failed(result)) {
    LOG_Error("MAPI:  lpMessage->SetProps(PR_MESSAGE_DELIVERY_TIME) failed with code: 0x%08x",
              result);
  }
}

// The body as it is stored: HTML as plain text, each line feed with a carriage return before it.
// Throws std::bad_alloc.
std::u16string StoredBody(const BStr& text, const char* content_type) {
  std::u16string plain;
  if (STR_FindNoCase(content_type, "HTML") != nullptr) {
    // The conversion says nothing when memory runs out: it must not have to ask for any.
    plain.reserve(text.size());
    HTML_ToText(text.c_str(), &plain);
  } else {
    plain = std::u16string_view(text.c_str());
  }
  std::u16string stored;
  stored.reserve(plain.size() + 1);
  for (const char16_t unit : plain) {
    if (unit == u'\n') stored.push_back(u'\r');
    stored.push_back(unit);
  }
  return stored;
}

// Writes the text with its terminator; text beyond what one call can say takes several.
void WriteBody(IStream* stream, const std::u16string& text) noexcept {
  constexpr std::size_t kMostBytes = 0x40000000;
  const auto* bytes = static_cast<const unsigned char*>(static_cast<const void*>(text.c_str()));
  for (std::size_t left = (text.size() + 1) * sizeof(char16_t); left != 0;) {
    const auto size = static_cast<std::uint32_t>(left < kMostBytes ? left : kMostBytes);
    std::uint32_t written = 0;
    const HRESULT result = stream->Write(bytes, size, &written);
    if (Failed(result)) {
      LOG_Error("MAPI:  lpStream->Write failed with code: 0x%08x", result);
      return;
    }
    bytes += size;
    left -= size;
  }
}

void SetBody(IMessage* message, const BodyPart& part) noexcept {
  const char* const raw = part.text;
  if (raw == nullptr) return;
  BStr text;
  TEXT_ToWide(raw, part.content_type, part.transfer_encoding, &text);
  if (text.empty()) return;
  std::u16string stored;
  try {
    stored = StoredBody(text, part.content_type);
  } catch (const std::bad_alloc&) {
    LOG_Error("MAPI:  Out of memory, the message's body is left as it was");
    return;
  }
  ComPtr<IUnknown> opened;
  const HRESULT result = message->OpenProperty(PR_BODY, &IID_IStream, kStorageWrite,
                                               kMapiCreate | kMapiModify, opened.put());
  if (Failed(result) || !opened) {
    LOG_Error("MAPI:  pMapiMessage->OpenProperty failed with code: 0x%08x", result);
    return;
  }
  WriteBody(static_cast<IStream*>(opened.get()), stored);
}

void SetFlags(IMessage* message, const MessageShape& record) noexcept {
  SPropValue value{};
  value.ulPropTag = PR_MESSAGE_FLAGS;
  value.Value.l =
      std::strcmp(record.status, "READ") == 0 ? kMessageFromMe | kMessageRead : kMessageFromMe;
  const HRESULT result = message->SetProps(1, &value, nullptr);
  if (Failed(result)) {
    LOG_Error("MAPI:  lpMessage->SetProps(PR_MESSAGE_FLAG) failed with code: 0x%08x", result);
  }
}

void SetSender(IMessage* message, const MessageShape& record) noexcept {
  if (record.from[0] == '\0') return;
  BStr sender;
  MAIL_HeaderToWide(record.from, &sender);
  SPropProblemArray* problems = nullptr;
  const HRESULT result = SetText(message, PR_SENDER_EMAIL_ADDRESS, sender, &problems);
  if (Failed(result)) {
    LOG_Error("MAPI:  lpMessage->SetProps(PR_SENDER_*) failed with code: 0x%08x", result);
  }
  if (problems == nullptr) return;
  if (problems->cProblem != 0) {
    LOG_Error("MAPI:  lpProblems->aProblem[0].scode (PR_SENDER_NAME) : 0x%08x",
              problems->aProblem[0].scode);
  }
  MAPIFreeBuffer(problems);
}

HRESULT AddRecipients(IMessage* message, const MessageShape& record) noexcept {
  BStr to;
  BStr cc;
  MAIL_TextToWide(record.to, &to);
  MAIL_TextToWide(record.cc, &cc);
  const MemPtr<ADRLIST> list = MAIL_MakeRecipients(to, cc);
  if (!list) return hr::kOutOfMemory;
  const HRESULT result = message->ModifyRecipients(kRecipientsAdd, list.get());
  if (Failed(result)) {
    LOG_Error("MAPI:  pmsg->ModifyRecipients failed with code: 0x%08x", result);
  }
  return result;
}

}  // namespace

HRESULT MAPI_SetMessageProps(IMessage* message, const MessageShape& record) noexcept {
  SetSubject(message, record);
  SetDeliveryTime(message, record);
  SetBody(message, record.body);
  SetFlags(message, record);
  SetSender(message, record);
  return AddRecipients(message, record);
}

}  // namespace tamu
