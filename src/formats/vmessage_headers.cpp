#include "formats/vmessage_headers.h"

#include <cstring>
#include <iterator>

#include "text/tokens.h"

namespace tamu {
namespace {

template <typename>
struct FieldOf;
template <typename Shape, std::size_t size>
struct FieldOf<char (Shape::*)[size]> {
  using Owner = Shape;
  static constexpr std::size_t kSize = size;
};

template <auto field>
char* MessageField(MessageShape* message, BodyPart* /*part*/) noexcept {
  return message->*field;
}
template <auto field>
char* PartField(MessageShape* /*message*/, BodyPart* part) noexcept {
  return part->*field;
}

template <auto field, std::size_t kept>
constexpr VmsgRow InMessage(VmsgCode code, std::string_view name) {
  static_assert(kept < FieldOf<decltype(field)>::kSize);
  return {code, name, kept, &MessageField<field>};
}
template <auto field, std::size_t kept>
constexpr VmsgRow InPart(VmsgCode code, std::string_view name) {
  static_assert(kept < FieldOf<decltype(field)>::kSize);
  return {code, name, kept, &PartField<field>};
}
constexpr VmsgRow Nowhere(VmsgCode code, std::string_view name, std::size_t kept) {
  return {code, name, kept, nullptr};
}

using M = MessageShape;

constexpr VmsgRow kRows[] = {
    InMessage<&M::date, 99>(VmsgCode::kDate, "Date"),
    InMessage<&M::from, 1023>(VmsgCode::kFrom, "From"),
    InMessage<&M::subject, 1023>(VmsgCode::kSubject, "Subject"),
    InMessage<&M::mime_version, 9>(VmsgCode::kMimeVersion, "Mime-Version"),
    InMessage<&M::to, 1023>(VmsgCode::kTo, "To"),
    InMessage<&M::cc, 1023>(VmsgCode::kCc, "Cc"),
    InMessage<&M::reply_to, 99>(VmsgCode::kReplyTo, "Reply-To"),
    InPart<&BodyPart::content_type, 127>(VmsgCode::kContentType, "Content-Type"),
    InPart<&BodyPart::transfer_encoding, 49>(VmsgCode::kTransferEncoding,
                                             "Content-Transfer-Encoding"),
    InMessage<&M::version, 9>(VmsgCode::kVersion, "VERSION"),
    InMessage<&M::luid, 511>(VmsgCode::kLuid, "X-IRMC-LUID"),
    InMessage<&M::status, 6>(VmsgCode::kStatus, "X-IRMC-STATUS"),
    InMessage<&M::type, 4>(VmsgCode::kType, "X-IRMC-TYPE"),
    InMessage<&M::folder, 49>(VmsgCode::kFolder, "X-BT-FOLDER"),
    Nowhere(VmsgCode::kBegin, "BEGIN", 5),
    Nowhere(VmsgCode::kEnd, "END", 5),
};

constexpr bool CodesAreInOrder() {
  std::size_t code = 0;
  for (const VmsgRow& row : kRows) {
    if (static_cast<std::size_t>(row.code) != ++code) return false;
  }
  return code == static_cast<std::size_t>(VmsgCode::kEnd);
}
static_assert(CodesAreInOrder());

}  // namespace

std::span<const VmsgRow> VMSG_Rows() noexcept { return kRows; }

const VmsgRow* VMSG_FindRow(std::string_view name) noexcept {
  for (const VmsgRow& row : kRows) {
    if (row.name == name) return &row;
  }
  return nullptr;
}

bool VMSG_IsPartHeader(VmsgCode code) noexcept {
  return code == VmsgCode::kContentType || code == VmsgCode::kTransferEncoding;
}

bool VMSG_IsMailHeader(VmsgCode code) noexcept {
  return code >= VmsgCode::kDate && code <= VmsgCode::kTransferEncoding;
}

bool VMSG_KeepValue(const VmsgRow& row, const char* value, MessageShape* message,
                    BodyPart* part) noexcept {
  if (row.field != nullptr) STR_CopyBounded(row.field(message, part), value, row.kept);
  return VMSG_ValueFits(row, value);
}

bool VMSG_ValueFits(const VmsgRow& row, const char* value) noexcept {
  return strnlen(value, row.kept + 1) <= row.kept;
}

}  // namespace tamu
