#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "device/mail/entry_id.h"
#include "device/mail/mail_objects.h"
#include "device/mail/no_memory.h"
#include "device/mail/prop_object.h"
#include "device/mail/property_values.h"
#include "platform/linux/mapi_buffer.h"

namespace tamu::device {
namespace {

using platform::GUID;
using platform::HRESULT;
using platform::SPropProblemArray;
using platform::SPropTagArray;
using platform::SPropValue;

constexpr std::uint32_t kRecipientColumns[] = {platform::PR_ROWID, platform::PR_DISPLAY_NAME,
                                               platform::PR_EMAIL_ADDRESS, platform::PR_ADDRTYPE,
                                               platform::PR_RECIPIENT_TYPE};

class Message final : public PropObject<Message, platform::IMessage> {
 public:
  static constexpr PropMethodNames kNames = TAMU_PROP_METHOD_NAMES("IMessage");

  Message(const MailStorePtr& store, MailFolder folder, MailId id) noexcept
      : store_(store), folder_(folder), id_(id) {}

  [[nodiscard]] bool Implements(const GUID& iid) const noexcept {
    return iid == platform::IID_IMessage || iid == platform::IID_IMAPIProp;
  }

  // Adds the message to its folder.
  [[nodiscard]] HRESULT Create() noexcept { return store_->CreateMessage(folder_, &id_); }

  HRESULT TAMU_COM_CALL GetProps(SPropTagArray* tags, std::uint32_t flags, std::uint32_t* count,
                                 SPropValue** values) override;
  HRESULT TAMU_COM_CALL OpenProperty(std::uint32_t tag, const GUID* iid, std::uint32_t options,
                                     std::uint32_t flags, platform::IUnknown** stream) override;
  HRESULT TAMU_COM_CALL SetProps(std::uint32_t count, SPropValue* values,
                                 SPropProblemArray** problems) override;
  HRESULT TAMU_COM_CALL DeleteProps(SPropTagArray* tags, SPropProblemArray** problems) override;
  HRESULT TAMU_COM_CALL GetRecipientTable(std::uint32_t flags,
                                          platform::IMAPITable** table) override;
  HRESULT TAMU_COM_CALL ModifyRecipients(std::uint32_t flags,
                                         platform::ADRLIST* recipients) override;

  HRESULT TAMU_COM_CALL GetAttachmentTable(std::uint32_t, platform::IMAPITable** table) override {
    return Unsupported("IMessage::GetAttachmentTable", table);
  }
  HRESULT TAMU_COM_CALL OpenAttach(std::uint32_t, const GUID*, std::uint32_t,
                                   platform::IUnknown** attachment) override {
    return Unsupported("IMessage::OpenAttach", attachment);
  }
  HRESULT TAMU_COM_CALL CreateAttach(const GUID*, std::uint32_t, std::uint32_t* number,
                                     platform::IUnknown** attachment) override {
    return Unsupported("IMessage::CreateAttach", number, attachment);
  }
  HRESULT TAMU_COM_CALL DeleteAttach(std::uint32_t, std::uintptr_t, void*, std::uint32_t) override {
    return Unsupported("IMessage::DeleteAttach");
  }
  HRESULT TAMU_COM_CALL SubmitMessage(std::uint32_t) override {
    return Unsupported("IMessage::SubmitMessage");
  }
  HRESULT TAMU_COM_CALL SetReadFlag(std::uint32_t) override {
    return Unsupported("IMessage::SetReadFlag");
  }

 private:
  // The properties of the tags that the message has, computed ones beside them.
  [[nodiscard]] HRESULT Read(std::span<const std::uint32_t> tags, std::vector<MailProperty>* found);

  const MailStorePtr store_;
  const MailFolder folder_;
  MailId id_;
};

HRESULT Message::Read(std::span<const std::uint32_t> tags, std::vector<MailProperty>* found) {
  const HRESULT result = store_->ReadProperties(id_, tags, found);
  if (platform::Succeeded(result)) AddComputed(folder_, id_, found);
  return OfMessage(result);
}

HRESULT Message::GetProps(SPropTagArray* tags, std::uint32_t, std::uint32_t* count,
                          SPropValue** values) {
  if (count == nullptr || values == nullptr) return platform::hr::kInvalidArgument;
  *count = 0;
  *values = nullptr;
  TAMU_DEVICE_CALL("IMessage::GetProps");
  return CatchNoMemory([&]() -> HRESULT {
    std::span<const std::uint32_t> wanted;
    HRESULT result = TagsOf(tags, &wanted);
    if (platform::Failed(result)) return result;
    std::vector<MailProperty> found;
    result = Read(wanted, &found);
    if (platform::Failed(result)) return result;
    result = MakeValues(wanted, found, values);
    if (platform::Succeeded(result)) *count = static_cast<std::uint32_t>(wanted.size());
    return result;
  });
}

// --- Setting ----------------------------------------------------------------

// The problems of a call, in a block of their own; none is no block.
HRESULT MakeProblems(std::span<const platform::SPropProblem> problems,
                     SPropProblemArray** out) noexcept {
  if (problems.empty() || out == nullptr) return platform::hr::kOk;
  auto* const made = static_cast<SPropProblemArray*>(
      platform::AllocateMapiBuffer(sizeof(SPropProblemArray) + problems.size_bytes()));
  if (made == nullptr) return platform::hr::kOutOfMemory;
  made->cProblem = static_cast<std::uint32_t>(problems.size());
  std::memcpy(&made->aProblem[0], problems.data(), problems.size_bytes());
  *out = made;
  return platform::hr::kOk;
}

HRESULT Message::SetProps(std::uint32_t count, SPropValue* values, SPropProblemArray** problems) {
  if (problems != nullptr) *problems = nullptr;
  TAMU_DEVICE_CALL("IMessage::SetProps");
  if (count == 0 || values == nullptr) return platform::hr::kInvalidArgument;
  return CatchNoMemory([&]() -> HRESULT {
    std::vector<MailProperty> properties;
    std::vector<platform::SPropProblem> refused;
    for (std::uint32_t i = 0; i < count; ++i) {
      MailProperty property;
      const std::uint32_t tag = values[i].ulPropTag;
      const HRESULT copied =
          IsComputed(tag) ? platform::hr::kComputed : CopyValue(values[i], &property);
      if (copied == platform::hr::kOutOfMemory) return copied;
      if (platform::Failed(copied)) {
        refused.push_back({i, tag, copied});
      } else {
        properties.push_back(std::move(property));
      }
    }
    // Before anything changes: a call that fails has changed nothing.
    HRESULT result = MakeProblems(refused, problems);
    if (platform::Failed(result)) return result;
    result = OfMessage(store_->SetProperties(id_, properties));
    if (platform::Failed(result) && problems != nullptr) {
      platform::FreeMapiBuffer(std::exchange(*problems, nullptr));
    }
    return result;
  });
}

// As on the platform a property that is not there fails the call.
HRESULT Message::DeleteProps(SPropTagArray* tags, SPropProblemArray** problems) {
  if (problems != nullptr) *problems = nullptr;
  TAMU_DEVICE_CALL("IMessage::DeleteProps");
  return CatchNoMemory([&]() -> HRESULT {
    std::span<const std::uint32_t> given;
    if (const HRESULT result = TagsOf(tags, &given); platform::Failed(result)) return result;
    if (std::any_of(given.begin(), given.end(), &IsComputed)) return platform::hr::kComputed;
    std::vector<std::uint32_t> unwanted(given.begin(), given.end());
    std::sort(unwanted.begin(), unwanted.end());
    unwanted.erase(std::unique(unwanted.begin(), unwanted.end()), unwanted.end());
    const HRESULT result = OfMessage(store_->DeleteProperties(id_, unwanted));
    return result == platform::hr::kNotFound ? platform::hr::kFail : result;
  });
}

// --- Streams ----------------------------------------------------------------

// The bytes of a text or of bytes; other properties have no stream.
Bytes StreamBytes(const MailValue& value) {
  static_assert(std::endian::native == std::endian::little);
  if (const auto* bytes = std::get_if<Bytes>(&value)) return *bytes;
  const auto* const text = std::get_if<std::u16string>(&value);
  if (text == nullptr) return {};
  Bytes bytes(text->size() * sizeof(char16_t));
  if (!bytes.empty()) std::memcpy(bytes.data(), text->data(), bytes.size());
  return bytes;
}

bool HasStream(std::uint32_t type) noexcept {
  return type == platform::kTypeUnicode || type == platform::kTypeString8 ||
         type == platform::kTypeBinary;
}

// Written without the create flag, a property that is not there starts empty all the same: callers
// on the platform write the bodies of new messages so. With it, what was there is given up.
HRESULT Message::OpenProperty(std::uint32_t tag, const GUID*, std::uint32_t, std::uint32_t flags,
                              platform::IUnknown** stream) {
  if (stream == nullptr) return platform::hr::kInvalidArgument;
  *stream = nullptr;
  TAMU_DEVICE_CALL("IMessage::OpenProperty");
  const std::uint32_t type = platform::PropType(tag);
  if (type == platform::kTypeUnspecified) return platform::hr::kInvalidArgument;
  if (!HasStream(type)) return platform::hr::kNoSupport;
  const bool writable = (flags & platform::kMapiModify) != 0;
  const bool create = writable && (flags & platform::kMapiCreate) != 0;
  if (writable && IsComputed(tag)) return platform::hr::kAccessDenied;
  return CatchNoMemory([&]() -> HRESULT {
    const std::uint32_t wanted[] = {tag};
    std::vector<MailProperty> found;
    const HRESULT result = Read(wanted, &found);
    if (platform::Failed(result)) return result;
    const MailProperty* present = nullptr;
    for (const MailProperty& property : found) {
      if (property.tag == tag) present = &property;
    }
    if (present == nullptr && !writable) return platform::hr::kNotFound;
    Bytes bytes = present == nullptr || create ? Bytes() : StreamBytes(present->value);
    return CreatePropertyStream({store_, id_, tag}, std::move(bytes), writable, create, stream);
  });
}

// --- Recipients -------------------------------------------------------------

void AddText(std::uint32_t tag, const std::optional<std::u16string>& text,
             std::vector<MailProperty>* properties) {
  if (text) properties->push_back({tag, *text});
}

// A recipient's place in the list and what was given of it.
std::vector<MailProperty> RecipientCells(std::size_t place, const MailRecipient& recipient) {
  std::vector<MailProperty> cells{
      NumberProperty(platform::PR_ROWID, static_cast<std::int64_t>(place)),
      NumberProperty(platform::PR_RECIPIENT_TYPE, recipient.type)};
  AddText(platform::PR_DISPLAY_NAME, recipient.name, &cells);
  AddText(platform::PR_EMAIL_ADDRESS, recipient.address, &cells);
  AddText(platform::PR_ADDRTYPE, recipient.address_type, &cells);
  return cells;
}

HRESULT Message::GetRecipientTable(std::uint32_t, platform::IMAPITable** table) {
  if (table == nullptr) return platform::hr::kInvalidArgument;
  *table = nullptr;
  TAMU_DEVICE_CALL("IMessage::GetRecipientTable");
  return CatchNoMemory([&]() -> HRESULT {
    std::vector<MailRecipient> recipients;
    const HRESULT result = OfMessage(store_->ReadRecipients(id_, &recipients));
    if (platform::Failed(result)) return result;
    if (recipients.empty()) return platform::hr::kNoRecipients;
    std::vector<MailRow> rows;
    for (const MailRecipient& recipient : recipients) {
      rows.push_back({0, RecipientCells(rows.size(), recipient)});
    }
    return CreateTable(FixedRows(std::move(rows)), kRecipientColumns, TableColumns::kFixed, table);
  });
}

// What the platform keeps of a recipient; other properties are passed over.
HRESULT CopyRecipient(const platform::ADRENTRY& entry, MailRecipient* recipient) {
  if (entry.rgPropVals == nullptr) return platform::hr::kInvalidArgument;
  for (const SPropValue& value : std::span(entry.rgPropVals, entry.cValues)) {
    std::optional<std::u16string>* text = nullptr;
    switch (value.ulPropTag) {
      case platform::PR_RECIPIENT_TYPE:
        recipient->type = value.Value.l;
        continue;
      case platform::PR_DISPLAY_NAME:
        text = &recipient->name;
        break;
      case platform::PR_EMAIL_ADDRESS:
        text = &recipient->address;
        break;
      case platform::PR_ADDRTYPE:
        text = &recipient->address_type;
        break;
      default:
        continue;
    }
    if (value.Value.lpszW == nullptr) return platform::hr::kInvalidArgument;
    *text = value.Value.lpszW;
  }
  return platform::hr::kOk;
}

// Lists are only added to; an entry without properties is no recipient.
HRESULT Message::ModifyRecipients(std::uint32_t flags, platform::ADRLIST* recipients) {
  TAMU_DEVICE_CALL("IMessage::ModifyRecipients");
  if (recipients == nullptr) return platform::hr::kInvalidArgument;
  if (flags != platform::kRecipientsAdd) return platform::hr::kNoSupport;
  return CatchNoMemory([&]() -> HRESULT {
    std::vector<MailRecipient> added;
    for (const platform::ADRENTRY& entry :
         std::span(&recipients->aEntries[0], recipients->cEntries)) {
      if (entry.cValues == 0) continue;
      const HRESULT copied = CopyRecipient(entry, &added.emplace_back());
      if (platform::Failed(copied)) return copied;
    }
    return OfMessage(store_->AddRecipients(id_, added));
  });
}

}  // namespace

bool IsComputed(std::uint32_t tag) noexcept {
  const std::uint32_t id = platform::PropId(tag);
  return id == platform::PropId(platform::PR_ENTRYID) ||
         id == platform::PropId(platform::PR_PARENT_ENTRYID) ||
         id == platform::PropId(platform::PR_OBJECT_TYPE);
}

void AddComputed(MailFolder folder, MailId id, std::vector<MailProperty>* properties) {
  properties->push_back(EntryIdProperty(platform::PR_ENTRYID, MessageEntryId(id)));
  properties->push_back(EntryIdProperty(platform::PR_PARENT_ENTRYID, FolderEntryId(folder)));
  properties->push_back(NumberProperty(platform::PR_OBJECT_TYPE, platform::kObjectMessage));
}

HRESULT CreateMessageObject(const MailStorePtr& store, MailFolder folder, MailId id,
                            platform::IMessage** out) noexcept {
  *out = NewObject<Message>(store, folder, id);
  return *out == nullptr ? platform::hr::kOutOfMemory : platform::hr::kOk;
}

// The object comes first: a message that is in the folder has always been reported.
HRESULT CreateNewMessage(const MailStorePtr& store, MailFolder folder,
                         platform::IMessage** out) noexcept {
  *out = nullptr;
  auto* const message = NewObject<Message>(store, folder, MailId{0});
  if (message == nullptr) return platform::hr::kOutOfMemory;
  const HRESULT result = message->Create();
  if (platform::Failed(result)) {
    message->Release();
    return result;
  }
  *out = message;
  return result;
}

}  // namespace tamu::device
