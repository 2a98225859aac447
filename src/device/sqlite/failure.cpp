#include "device/sqlite/failure.h"

#include <errno.h>
#include <sqlite3.h>

#include "core/log.h"
#include "platform/last_error.h"

namespace tamu::device {
namespace {

using platform::HRESULT;
namespace hr = platform::hr;

constexpr const char* kLockedText = "in use by another program; try again when it is done";
constexpr const char* kReadOnlyText =
    "cannot be written; make the file and its folder writable for this user";
constexpr const char* kDamagedText =
    "damaged; put a good copy in its place, or move it away to start empty";
constexpr const char* kFullText = "no space left to write; free some and try again";
constexpr const char* kAccessText =
    "cannot be opened; let this user read and write the file and its folder";
constexpr const char* kMissingText =
    "there is no such folder; create it, or set TAMU_HOME to another";
constexpr const char* kMemoryText = "not enough memory; close other programs and try again";
constexpr const char* kTooLongText = "a text is too long to be kept; shorten it";
constexpr const char* kOtherText = "the database failed; check the disk and try again";

struct CodeRow {
  int code;  // primary
  HRESULT result;
  const char* text;
};

constexpr CodeRow kCodes[] = {
    {SQLITE_PERM, hr::kAccessDenied, kAccessText},
    {SQLITE_BUSY, hr::kLocked, kLockedText},
    {SQLITE_LOCKED, hr::kLocked, kLockedText},
    {SQLITE_NOMEM, hr::kOutOfMemory, kMemoryText},
    {SQLITE_READONLY, hr::kWriteProtected, kReadOnlyText},
    {SQLITE_CORRUPT, hr::kCorrupt, kDamagedText},
    {SQLITE_FULL, hr::kDiskFull, kFullText},
    {SQLITE_CANTOPEN, hr::kAccessDenied, kAccessText},
    {SQLITE_PROTOCOL, hr::kLocked, kLockedText},
    {SQLITE_TOOBIG, hr::kInvalidArgument, kTooLongText},
    {SQLITE_NOTADB, hr::kCorrupt, kDamagedText},
};

constexpr int kPrimaryMask = 0xFF;

bool MeansNoSpace(int system_error) noexcept {
  return system_error == ENOSPC || system_error == EDQUOT || system_error == EFBIG;
}

}  // namespace

Failure FailureFromCode(int code, int system_error, const char* message) {
  const int primary = code & kPrimaryMask;
  if (code == SQLITE_IOERR_NOMEM) return OutOfMemoryFailure();
  if (primary == SQLITE_IOERR && MeansNoSpace(system_error)) {
    return {hr::kDiskFull, kFullText, {}};
  }
  if (code == SQLITE_IOERR_SHORT_READ || code == SQLITE_IOERR_CORRUPTFS) {
    return {hr::kCorrupt, kDamagedText, {}};
  }
  for (const CodeRow& row : kCodes) {
    if (row.code == primary) return {row.result, row.text, {}};
  }
  return {hr::kFail, kOtherText, message == nullptr ? "" : message};
}

Failure FailureFromFileError(std::uint32_t error) {
  constexpr std::uint32_t kWin32Failure = 0x80070000U;
  const auto result = static_cast<HRESULT>(kWin32Failure | (error & 0xFFFF));
  switch (error) {
    case platform::kErrorNotEnoughMemory:
      return OutOfMemoryFailure();
    case platform::kErrorWriteProtect:
      return {result, kReadOnlyText, {}};
    case platform::kErrorDiskFull:
    case platform::kErrorHandleDiskFull:
      return {hr::kDiskFull, kFullText, {}};
    case platform::kErrorFileNotFound:
    case platform::kErrorPathNotFound:
      return {result, kMissingText, {}};
    case platform::kErrorAccessDenied:
      return {result, kAccessText, {}};
    default:
      return {result, kAccessText, platform::ErrorText(error)};
  }
}

Failure DamagedFailure() noexcept { return {hr::kCorrupt, kDamagedText, {}}; }

Failure OutOfMemoryFailure() noexcept { return {hr::kOutOfMemory, kMemoryText, {}}; }

// The path comes last: a very long one is what the line's end cuts.
HRESULT LogFailure(const Failure& failure, const std::string& file) noexcept {
  const char* const text = failure.text == nullptr ? kOtherText : failure.text;
  if (failure.detail.empty()) {
    LOG_Error("TAMU:  device: %s (%s)", text, file.c_str());
  } else {
    LOG_Error("TAMU:  device: %s: %s (%s)", text, failure.detail.c_str(), file.c_str());
  }
  return failure.result;
}

}  // namespace tamu::device
