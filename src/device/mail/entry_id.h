// device/mail/entry_id.h - the 16 bytes by which objects of the messaging store are kept and opened
// again, in this session or a later one.
//   Four flag bytes of 0, four that name this provider, then the object's kind and its number, each
//   with the low byte first. To everybody else they are opaque.
#ifndef TAMU_DEVICE_MAIL_ENTRY_ID_H_
#define TAMU_DEVICE_MAIL_ENTRY_ID_H_

#include <array>
#include <cstdint>

#include "device/mail/mail_record.h"
#include "platform/cemapi.h"

namespace tamu::device {

inline constexpr std::uint32_t kEntryIdSize = 16;
using EntryIdBytes = std::array<std::uint8_t, kEntryIdSize>;

struct EntryId {
  std::uint32_t kind = 0;    // kObjectStore, kObjectFolder or kObjectMessage
  std::uint32_t number = 0;  // 1, a MailFolder, or a MailId

  friend bool operator==(const EntryId&, const EntryId&) = default;
};

inline constexpr EntryId kStoreEntryId{platform::kObjectStore, 1};
[[nodiscard]] EntryId FolderEntryId(MailFolder folder) noexcept;
[[nodiscard]] EntryId MessageEntryId(MailId id) noexcept;

[[nodiscard]] EntryIdBytes PackEntryId(const EntryId& id) noexcept;
// kInvalidArgument for null, kUnknownEntryId for bytes that are no entry id of this provider. What
// it names need not exist.
[[nodiscard]] platform::HRESULT ParseEntryId(std::uint32_t size, const void* bytes,
                                             EntryId* id) noexcept;

// The id as the value of a property.
[[nodiscard]] MailProperty EntryIdProperty(std::uint32_t tag, const EntryId& id);

}  // namespace tamu::device

#endif  // TAMU_DEVICE_MAIL_ENTRY_ID_H_
