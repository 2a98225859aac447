// device/mail/mail_objects.h - makes the objects of the messaging store for one another.
//   Ownership  each gives one reference; the mail store is shared.
//   Errors     kOutOfMemory and what the mail store answers; the out-parameter is null then.
#ifndef TAMU_DEVICE_MAIL_MAIL_OBJECTS_H_
#define TAMU_DEVICE_MAIL_MAIL_OBJECTS_H_

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "device/mail/mail_store.h"
#include "platform/cemapi.h"

namespace tamu::device {

using MailStorePtr = std::shared_ptr<MailStore>;

[[nodiscard]] platform::HRESULT CreateMessageStore(const MailStorePtr& store,
                                                   platform::IMsgStore** out) noexcept;
[[nodiscard]] platform::HRESULT CreateFolder(const MailStorePtr& store, MailFolder folder,
                                             platform::IMAPIFolder** out) noexcept;
// A message that is there.
[[nodiscard]] platform::HRESULT CreateMessageObject(const MailStorePtr& store, MailFolder folder,
                                                    MailId id, platform::IMessage** out) noexcept;
// A message that this call adds to the folder.
[[nodiscard]] platform::HRESULT CreateNewMessage(const MailStorePtr& store, MailFolder folder,
                                                 platform::IMessage** out) noexcept;

// Opens what an entry id names, by session, store or folder alike. `type` may be null.
// kInvalidArgument, kUnknownEntryId for bytes of another form, kNotFound for what is not there.
[[nodiscard]] platform::HRESULT OpenMailEntry(const MailStorePtr& store, std::uint32_t size,
                                              const platform::ENTRYID* entry_id,
                                              std::uint32_t* type,
                                              platform::IUnknown** out) noexcept;

// --- Messages' own properties -----------------------------------------------

// Those that the store computes: the entry ids and the object type, whatever their type says.
[[nodiscard]] bool IsComputed(std::uint32_t tag) noexcept;
void AddComputed(MailFolder folder, MailId id, std::vector<MailProperty>* properties);

// --- Streams ----------------------------------------------------------------

struct StreamTarget {
  MailStorePtr store;
  MailId id = 0;
  std::uint32_t tag = 0;  // of a type that kept texts or bytes have
};

// A stream over a property's bytes, wide text with the low byte first. What was written is stored
// as a whole by Commit and by the last Release; an odd byte at the end of a wide text is filled up
// with a zero byte. `changed` says that `bytes` are not what is stored.
[[nodiscard]] platform::HRESULT CreatePropertyStream(const StreamTarget& target, Bytes bytes,
                                                     bool writable, bool changed,
                                                     platform::IUnknown** out) noexcept;

// --- Tables -----------------------------------------------------------------

// What a table reads. Rows have ascending ids, the position is the id of the last one that was
// read.
class RowSource {
 public:
  RowSource() = default;
  RowSource(const RowSource&) = delete;
  RowSource& operator=(const RowSource&) = delete;
  virtual ~RowSource() = default;

  // At most `limit` rows behind `after`, with their properties of the tags at least.
  [[nodiscard]] virtual platform::HRESULT Read(std::uint32_t after, std::size_t limit,
                                               std::span<const std::uint32_t> tags,
                                               std::vector<MailRow>* rows) noexcept = 0;
  // The number of rows up to `last`.
  [[nodiscard]] virtual platform::HRESULT Count(std::uint32_t last,
                                                std::uint32_t* count) noexcept = 0;
};

// A folder's messages as they are at each call.
[[nodiscard]] std::unique_ptr<RowSource> ContentsRows(const MailStorePtr& store, MailFolder folder);
// Rows that do not change; they are numbered from 1.
[[nodiscard]] std::unique_ptr<RowSource> FixedRows(std::vector<MailRow> rows);

enum class TableColumns : bool { kFixed, kSettable };

[[nodiscard]] platform::HRESULT CreateTable(std::unique_ptr<RowSource> rows,
                                            std::span<const std::uint32_t> columns,
                                            TableColumns settable,
                                            platform::IMAPITable** out) noexcept;

// The result of a call on a message that may have been deleted since it was opened.
[[nodiscard]] constexpr platform::HRESULT OfMessage(platform::HRESULT result) noexcept {
  return result == platform::hr::kItemNotFound ? platform::hr::kObjectDeleted : result;
}

}  // namespace tamu::device

#endif  // TAMU_DEVICE_MAIL_MAIL_OBJECTS_H_
