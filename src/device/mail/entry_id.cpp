#include "device/mail/entry_id.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace tamu::device {
namespace {

constexpr std::array<std::uint8_t, 8> kPrefix{0, 0, 0, 0, 't', 'm', 's', '1'};

void PutNumber(std::uint32_t number, std::uint8_t* out) noexcept {
  for (int i = 0; i < 4; ++i) out[i] = static_cast<std::uint8_t>(number >> 8 * i);
}

std::uint32_t TakeNumber(const std::uint8_t* bytes) noexcept {
  std::uint32_t number = 0;
  for (int i = 0; i < 4; ++i) number |= static_cast<std::uint32_t>(bytes[i]) << 8 * i;
  return number;
}

bool IsKind(std::uint32_t kind) noexcept {
  return kind == platform::kObjectStore || kind == platform::kObjectFolder ||
         kind == platform::kObjectMessage;
}

}  // namespace

EntryId FolderEntryId(MailFolder folder) noexcept {
  return {platform::kObjectFolder, static_cast<std::uint32_t>(folder)};
}

EntryId MessageEntryId(MailId id) noexcept { return {platform::kObjectMessage, id}; }

EntryIdBytes PackEntryId(const EntryId& id) noexcept {
  EntryIdBytes bytes;
  std::copy(kPrefix.begin(), kPrefix.end(), bytes.begin());
  PutNumber(id.kind, &bytes[8]);
  PutNumber(id.number, &bytes[12]);
  return bytes;
}

platform::HRESULT ParseEntryId(std::uint32_t size, const void* bytes, EntryId* id) noexcept {
  if (bytes == nullptr) return platform::hr::kInvalidArgument;
  if (size != kEntryIdSize) return platform::hr::kUnknownEntryId;
  const auto* const octets = static_cast<const std::uint8_t*>(bytes);
  if (!std::equal(kPrefix.begin(), kPrefix.end(), octets)) return platform::hr::kUnknownEntryId;
  const EntryId parsed{TakeNumber(octets + 8), TakeNumber(octets + 12)};
  if (!IsKind(parsed.kind)) return platform::hr::kUnknownEntryId;
  *id = parsed;
  return platform::hr::kOk;
}

MailProperty EntryIdProperty(std::uint32_t tag, const EntryId& id) {
  const EntryIdBytes bytes = PackEntryId(id);
  return {tag, Bytes(bytes.begin(), bytes.end())};
}

}  // namespace tamu::device
