// formats/vmessage_headers.h - the lines of a vMessage 1.1 and of the mail in it, for its readers.
//   One table serves the message and its mail: what a line is, and how much of its value is kept
//   where. Names are whole and case-sensitive.
//   Units      bytes; kept lengths exclude the terminator.
#ifndef TAMU_FORMATS_VMESSAGE_HEADERS_H_
#define TAMU_FORMATS_VMESSAGE_HEADERS_H_

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "tamu/tamu.h"

namespace tamu {

// What a line is, by its name.
enum class VmsgCode : std::uint8_t {
  kUnknown = 0,
  kDate = 1,
  kFrom = 2,
  kSubject = 3,
  kMimeVersion = 4,
  kTo = 5,
  kCc = 6,
  kReplyTo = 7,
  kContentType = 8,
  kTransferEncoding = 9,
  kVersion = 10,
  kLuid = 11,
  kStatus = 12,
  kType = 13,
  kFolder = 14,
  kBegin = 15,
  kEnd = 16,
};

struct VmsgRow {
  VmsgCode code;
  std::string_view name;
  std::size_t kept;  // characters of the value
  // Where they are kept, one byte more than `kept` at least: in the message or in one of its parts;
  // null for nowhere.
  char* (*field)(MessageShape* message, BodyPart* part) noexcept;
};

// In the order of their codes, from 1.
[[nodiscard]] std::span<const VmsgRow> VMSG_Rows() noexcept;

// The row of a name, or null when there is none.
[[nodiscard]] const VmsgRow* VMSG_FindRow(std::string_view name) noexcept;

// True for the headers of a part: its type and its encoding.
[[nodiscard]] bool VMSG_IsPartHeader(VmsgCode code) noexcept;

// True for the headers of a mail, those of a part among them.
[[nodiscard]] bool VMSG_IsMailHeader(VmsgCode code) noexcept;

// Keeps a value in its field, cut to its kept length. Returns false when it had to be cut.
[[nodiscard]] bool VMSG_KeepValue(const VmsgRow& row, const char* value, MessageShape* message,
                                  BodyPart* part) noexcept;

// True when a value is no longer than what is kept of it.
[[nodiscard]] bool VMSG_ValueFits(const VmsgRow& row, const char* value) noexcept;

}  // namespace tamu

#endif  // TAMU_FORMATS_VMESSAGE_HEADERS_H_
