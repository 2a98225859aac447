// device/mail/mail_record.h - messages as the stores keep them: properties by tag, and recipients.
//   A message has one value of a tag; the same id with another type is another property.
//   Errors     copying throws std::bad_alloc when memory runs out.
#ifndef TAMU_DEVICE_MAIL_MAIL_RECORD_H_
#define TAMU_DEVICE_MAIL_MAIL_RECORD_H_

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "device/bytes.h"

namespace tamu::device {

// Messages are numbered from 1 in order of arrival; a number is never used again.
using MailId = std::uint32_t;

enum class MailFolder : std::uint32_t { kInbox = 1, kOutbox = 2, kSentItems = 3 };
inline constexpr MailFolder kMailFolders[] = {MailFolder::kInbox, MailFolder::kOutbox,
                                              MailFolder::kSentItems};

// The alternative follows from the tag's type: of fixed sizes the bits (signed where the type is,
// floating point as its representation), wide text, and the bytes of anything else.
using MailValue = std::variant<std::int64_t, std::u16string, Bytes>;

enum class MailValueKind : std::uint8_t { kNone, kNumber, kText, kBytes };

// kNone for types that no property can be stored with.
[[nodiscard]] MailValueKind KindOfMailType(std::uint32_t type) noexcept;

struct MailProperty {
  std::uint32_t tag = 0;
  MailValue value;

  friend bool operator==(const MailProperty&, const MailProperty&) = default;
};

struct MailRecipient {
  std::int32_t type = 0;
  std::optional<std::u16string> name;
  std::optional<std::u16string> address_type;
  std::optional<std::u16string> address;

  friend bool operator==(const MailRecipient&, const MailRecipient&) = default;
};

// A line of a table.
struct MailRow {
  MailId id = 0;
  std::vector<MailProperty> properties;
};

// What the exact find compares.
struct ExactMail {
  std::uint64_t first = 0;  // delivery times from here on,
  std::uint64_t count = 0;  // so many file times
  std::u16string_view subject;
};

// True when the tag is asked for by `wanted`: the same, or the same id where `wanted` leaves the
// type open.
[[nodiscard]] bool TagMatches(std::uint32_t wanted, std::uint32_t tag) noexcept;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_MAIL_MAIL_RECORD_H_
