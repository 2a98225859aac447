// mailstore/mail_find.h - looking for a message by its delivery time and subject.
#ifndef TAMU_MAILSTORE_MAIL_FIND_H_
#define TAMU_MAILSTORE_MAIL_FIND_H_

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/cemapi.h"
#include "text/date_value.h"

namespace tamu {

// What a message is found by.
struct MailKey {
  std::optional<DateFields> delivered;  // local time; none matches nothing
  std::u16string_view subject;          // borrowed
};

// True when the row's delivery time and subject (columns 0 and 1 in the order of MAIL_FindInRows)
// are the key's. A cell of another type is a missing time, which never matches, or an empty subject.
[[nodiscard]] bool MAIL_RowMatches(const platform::SRow& row, const MailKey& key) noexcept;

// The UTC file times that are the same local second as the key's: none, one, or two where the
// clocks are put back.
struct FileTimeSeconds {
  std::array<std::uint64_t, 2> first{};
  std::size_t count = 0;
};
[[nodiscard]] FileTimeSeconds MAIL_DeliverySeconds(const DateFields& local) noexcept;

inline constexpr std::uint64_t kFileTimesOfSecond = 10000000;

}  // namespace tamu

#endif  // TAMU_MAILSTORE_MAIL_FIND_H_
