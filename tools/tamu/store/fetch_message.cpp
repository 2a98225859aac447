// Messages as records: what a message of a folder has, as headers and body of a mail.
#include <array>
#include <cstdio>
#include <cstring>

#include "core/memory.h"
#include "display_text.h"
#include "mailstore/session.h"
#include "platform/cemapi.h"
#include "platform/code_pages.h"
#include "platform/com_ptr.h"
#include "store/fetch.h"
#include "text/tokens.h"

namespace tamu::tool {
namespace {

using namespace platform;

constexpr std::string_view kDayNames[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr std::string_view kMonthNames[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                            "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// Values of one message, freed together.
class MessageValues {
 public:
  MessageValues() = default;
  ~MessageValues() { MAPIFreeBuffer(values_); }
  MessageValues(const MessageValues&) = delete;
  MessageValues& operator=(const MessageValues&) = delete;

  [[nodiscard]] HRESULT Read(IMessage* message) {
    SizedPropTagArray<5> tags{5,
                              {PR_SUBJECT, PR_SENDER_EMAIL_ADDRESS, PR_MESSAGE_FLAGS,
                               PR_MESSAGE_DELIVERY_TIME, PR_PARENT_ENTRYID}};
    return message->GetProps(tags.get(), 0, &count_, &values_);
  }
  // Null when the message lacks it.
  [[nodiscard]] const SPropValue* Find(std::uint32_t tag) const noexcept {
    for (std::uint32_t i = 0; i < count_; ++i) {
      if (values_[i].ulPropTag == tag) return &values_[i];
    }
    return nullptr;
  }

 private:
  std::uint32_t count_ = 0;
  SPropValue* values_ = nullptr;
};

// Headers are read in the ANSI code page, so that is what they are written in.
std::string HeaderBytes(std::u16string_view text, bool* lossy) {
  if (text.empty()) return {};
  const auto units = static_cast<std::int32_t>(text.size());
  const std::int32_t size =
      WideCharToMultiByte(kCpAcp, 0, text.data(), units, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(kCpAcp, 0, text.data(), units, bytes.data(), size, nullptr, nullptr);
  std::u16string back(text.size() + 1, u'\0');
  const std::int32_t read = MultiByteToWideChar(kCpAcp, 0, bytes.data(), size, back.data(),
                                                static_cast<std::int32_t>(back.size()));
  back.resize(static_cast<std::size_t>(read));
  *lossy = back != text;
  return bytes;
}

template <std::size_t size>
void SetHeader(const char* name, std::u16string_view text, char (&field)[size],
               std::vector<std::string>* losses) {
  bool lossy = false;
  const std::string bytes = HeaderBytes(text, &lossy);
  if (lossy) {
    losses->push_back(std::string(name) +
                      " has characters that the device's code page lacks ('tamu config set "
                      "AnsiCodePage 65001' has all)");
  }
  if (bytes.size() >= size) losses->push_back(std::string(name) + " is too long and is cut");
  if (bytes.find_first_of("\r\n") != std::string::npos) {
    losses->push_back(std::string(name) + " has line breaks, which end a header");
  }
  STR_CopyField(field, bytes.substr(0, size - 1).c_str());
}

// "Wed, 31 Dec 2003 23:59:59 GMT", RFC 822; "" for what is no time.
std::string DateHeader(const FILETIME& time) {
  SYSTEMTIME utc{};
  if (FileTimeToSystemTime(&time, &utc) == 0) return {};
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%s, %02d %s %04d %02d:%02d:%02d GMT",
                kDayNames[utc.wDayOfWeek % 7].data(), utc.wDay,
                kMonthNames[(utc.wMonth + 11) % 12].data(), utc.wYear, utc.wHour, utc.wMinute,
                utc.wSecond);
  return text.data();
}

// The recipients of a kind, as one header has them.
std::u16string Recipients(IMessage* message, std::int32_t kind) {
  std::u16string text;
  ComPtr<IMAPITable> table;
  if (Failed(message->GetRecipientTable(0, table.put())) || !table) return text;
  bool first = true;
  for (;;) {
    SRowSet* rows = nullptr;
    const bool read = Succeeded(table->QueryRows(10, 0, &rows)) && rows != nullptr;
    for (std::uint32_t i = 0; read && i < rows->cRows; ++i) {
      const SPropValue* type = nullptr;
      const SPropValue* address = nullptr;
      for (std::uint32_t k = 0; k < rows->aRow[i].cValues; ++k) {
        const SPropValue& cell = rows->aRow[i].lpProps[k];
        if (cell.ulPropTag == PR_RECIPIENT_TYPE) type = &cell;
        if (cell.ulPropTag == PR_EMAIL_ADDRESS) address = &cell;
      }
      if (type == nullptr || type->Value.l != kind) continue;
      if (!first) text += u"; ";
      if (address != nullptr) text += address->Value.lpszW;
      first = false;
    }
    const bool end = !read || rows->cRows == 0;
    FreeProws(rows);
    if (end) return text;
  }
}

// The body without the terminator it is stored with. False when there is none.
bool ReadBody(IMessage* message, std::u16string* text) {
  ComPtr<IUnknown> opened;
  if (Failed(message->OpenProperty(PR_BODY, &IID_IStream, kStorageRead, 0, opened.put())) ||
      !opened) {
    return false;
  }
  auto* const stream = static_cast<IStream*>(opened.get());
  std::array<char16_t, 8192> units{};
  for (;;) {
    std::uint32_t read = 0;
    if (Failed(stream->Read(units.data(), sizeof units, &read)) || read == 0) break;
    text->append(units.data(), read / sizeof(char16_t));
  }
  text->resize(std::u16string_view(text->c_str()).size());
  return true;
}

// The text as lines that end in a line feed each but the last, to which the writer adds its own.
std::string BodyBytes(const std::u16string& text) {
  std::u16string lines;
  lines.reserve(text.size());
  // A text that had line ends of two characters was stored with another one in front of each.
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t next = text.find_first_not_of(u'\r', i);
    if (text[i] == u'\r' && next != std::u16string::npos && text[next] == u'\n') continue;
    lines.push_back(text[i]);
  }
  if (!lines.empty() && lines.back() == u'\n') lines.pop_back();
  return DISPLAY_ToUtf8(lines);
}

// Readers take "=" at the end of a line for a soft line break, and "=0D=0A" for a line break,
// whatever the encoding.
bool ReadsAsQuotedPrintable(const std::string& bytes) {
  return bytes.ends_with('=') || bytes.find("=\n") != std::string::npos ||
         bytes.find("=0D=0A") != std::string::npos;
}

// Only "=" has to be encoded: the other bytes are themselves in quoted-printable, too.
std::string EncodeEquals(const std::string& bytes) {
  std::string encoded;
  for (const char character : bytes) {
    if (character == '=') {
      encoded += "=3D";
    } else {
      encoded += character;
    }
  }
  return encoded;
}

void FillBody(IMessage* message, BodyPart& part) {
  std::u16string text;
  if (!ReadBody(message, &text)) return;
  std::string bytes = BodyBytes(text);
  const bool encode = ReadsAsQuotedPrintable(bytes);
  if (encode) bytes = EncodeEquals(bytes);
  STR_CopyField(part.content_type, "text/plain; charset=UTF-8");
  STR_CopyField(part.transfer_encoding, encode ? "quoted-printable" : "8bit");
  MemPtr<char> copy = MEM_CopyText(bytes);
  if (!copy) throw std::bad_alloc();
  part.text = copy.release();
}

// Where the message lies: the folder whose entry id is its parent's.
MailBox BoxOf(const SPropValue* parent) {
  if (parent == nullptr) return MailBox::kInbox;
  for (const MailBox box : kMailBoxes) {
    IMAPIFolder* const folder = DeviceSession::Folder(box);
    if (folder == nullptr) continue;
    SizedPropTagArray<1> tags{1, {PR_ENTRYID}};
    std::uint32_t count = 0;
    SPropValue* values = nullptr;
    const bool same =
        Succeeded(folder->GetProps(tags.get(), 0, &count, &values)) && count == 1 &&
        values->ulPropTag == PR_ENTRYID && values->Value.bin.cb == parent->Value.bin.cb &&
        std::memcmp(values->Value.bin.lpb, parent->Value.bin.lpb, parent->Value.bin.cb) == 0;
    MAPIFreeBuffer(values);
    if (same) return box;
  }
  return MailBox::kInbox;
}

struct BoxRow {
  const char* folder;  // the text of X-BT-FOLDER
  ObjectKind kind;
};

BoxRow RowOf(MailBox box) noexcept {
  switch (box) {
    case MailBox::kSent:
      return {"SENTBOX", KIND_MSG_SENT};
    case MailBox::kOutbox:
      return {"OUTBOX", KIND_MSG_OUTBOX};
    case MailBox::kInbox:
      break;
  }
  return {"INBOX", KIND_MSG_INBOX};
}

ComPtr<IMessage> OpenMessage(std::vector<std::uint8_t> entry_id, std::string* problem) {
  ComPtr<IMessage> message;
  IMAPIFolder* const folder = DeviceSession::Folder(MailBox::kInbox);
  if (folder == nullptr) {
    *problem = "the device has no mail folders";
    return message;
  }
  // Any folder opens any message.
  std::uint32_t type = 0;
  ComPtr<IUnknown> object;
  const HRESULT result = folder->OpenEntry(
      static_cast<std::uint32_t>(entry_id.size()),
      static_cast<ENTRYID*>(static_cast<void*>(entry_id.data())), nullptr, 0, &type, object.put());
  if (Failed(result) || type != kObjectMessage) {
    *problem = "there is none on the device";
    return message;
  }
  message.reset(static_cast<IMessage*>(object.release()));
  return message;
}

std::u16string_view TextOf(const SPropValue* value) noexcept {
  return value == nullptr || value->Value.lpszW == nullptr
             ? std::u16string_view()
             : std::u16string_view(value->Value.lpszW);
}

}  // namespace

bool FETCH_Message(const std::vector<std::uint8_t>& entry_id, FetchedObject* object,
                   std::string* problem) {
  const ComPtr<IMessage> message = OpenMessage(entry_id, problem);
  if (!message) return false;
  MessageValues values;
  const HRESULT result = values.Read(message.get());
  if (Failed(result)) {
    *problem = "its properties cannot be read";
    return false;
  }
  const BoxRow box = RowOf(BoxOf(values.Find(PR_PARENT_ENTRYID)));
  MessageShape& shape = object->Reset(box.kind)->message;
  ObjectId id;
  id.kind = StoredKind::kMessage;
  id.entry_id = entry_id;
  STR_CopyField(shape.version, "1.1");
  STR_CopyField(shape.luid, id.Text().c_str());
  STR_CopyField(shape.type, "INET");
  STR_CopyField(shape.folder, box.folder);
  const SPropValue* const flags = values.Find(PR_MESSAGE_FLAGS);
  const bool read = flags != nullptr && (flags->Value.l & kMessageRead) != 0;
  STR_CopyField(shape.status, read ? "READ" : "UNREAD");
  if (const SPropValue* const delivered = values.Find(PR_MESSAGE_DELIVERY_TIME)) {
    STR_CopyField(shape.date, DateHeader(delivered->Value.ft).c_str());
  }
  SetHeader("From", TextOf(values.Find(PR_SENDER_EMAIL_ADDRESS)), shape.from, &object->losses);
  SetHeader("To", Recipients(message.get(), kRecipientTo), shape.to, &object->losses);
  SetHeader("Cc", Recipients(message.get(), kRecipientCc), shape.cc, &object->losses);
  SetHeader("Subject", TextOf(values.Find(PR_SUBJECT)), shape.subject, &object->losses);
  FillBody(message.get(), shape.body);
  return true;
}

}  // namespace tamu::tool
