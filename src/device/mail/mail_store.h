// device/mail/mail_store.h - where mail is kept: what the messaging store's objects ask for.
//   Values and recipients are kept as they come, NULs and lone surrogates included.
//   Errors     results of com.h; nothing is thrown. A message that is not there (any more) is
//              kItemNotFound. Every change is atomic: it happened whole, and is kept over crashes,
//              or not at all.
//   Threads    none.
#ifndef TAMU_DEVICE_MAIL_MAIL_STORE_H_
#define TAMU_DEVICE_MAIL_MAIL_STORE_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "device/mail/mail_record.h"
#include "platform/com.h"

namespace tamu::device {

class MailStore {
 public:
  MailStore() = default;
  MailStore(const MailStore&) = delete;
  MailStore& operator=(const MailStore&) = delete;
  virtual ~MailStore() = default;

  // Whether the store has the folder at all; asked whenever somebody looks for it.
  [[nodiscard]] virtual bool HasFolder(MailFolder) const noexcept { return true; }

  // --- Messages ---

  // A message without properties, the last of its folder.
  [[nodiscard]] virtual platform::HRESULT CreateMessage(MailFolder folder, MailId* id) noexcept = 0;
  // Deletes all of them, or, when one is not in the folder (kItemNotFound), none. No id is twice
  // among them.
  [[nodiscard]] virtual platform::HRESULT DeleteMessages(MailFolder folder,
                                                         std::span<const MailId> ids) noexcept = 0;
  [[nodiscard]] virtual platform::HRESULT FolderOf(MailId id, MailFolder* folder) noexcept = 0;

  // --- What a message has ---

  // Of the tags those that the message has, in any order; a tag of unspecified type gives what has
  // its id. `*found` is replaced.
  [[nodiscard]] virtual platform::HRESULT ReadProperties(
      MailId id, std::span<const std::uint32_t> tags,
      std::vector<MailProperty>* found) noexcept = 0;
  // Sets all; of two with one tag the later counts.
  [[nodiscard]] virtual platform::HRESULT SetProperties(
      MailId id, std::span<const MailProperty> properties) noexcept = 0;
  // Removes all, or, when one is absent (kNotFound), none. No tag is twice among them.
  [[nodiscard]] virtual platform::HRESULT DeleteProperties(
      MailId id, std::span<const std::uint32_t> tags) noexcept = 0;

  // Adds them behind those that are there.
  [[nodiscard]] virtual platform::HRESULT AddRecipients(
      MailId id, std::span<const MailRecipient> recipients) noexcept = 0;
  // In the order in which they were added; `*recipients` is replaced.
  [[nodiscard]] virtual platform::HRESULT ReadRecipients(
      MailId id, std::vector<MailRecipient>* recipients) noexcept = 0;

  // --- Folders ---

  // The messages above `after`, at most `limit`, in order of arrival, with their properties of the
  // tags as ReadProperties gives them. `*rows` is replaced.
  [[nodiscard]] virtual platform::HRESULT ReadRows(MailFolder folder, MailId after,
                                                   std::size_t limit,
                                                   std::span<const std::uint32_t> tags,
                                                   std::vector<MailRow>* rows) noexcept = 0;
  // The number of messages up to `last`; the largest id counts all.
  [[nodiscard]] virtual platform::HRESULT Count(MailFolder folder, MailId last,
                                                std::uint32_t* count) noexcept = 0;
  // The first message in order of arrival that IExactMailFind means; `*id` is 0 when there is none.
  [[nodiscard]] virtual platform::HRESULT FindExact(MailFolder folder, const ExactMail& mail,
                                                    MailId* id) noexcept = 0;
};

inline constexpr MailId kLastMail = 0xFFFFFFFF;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_MAIL_MAIL_STORE_H_
