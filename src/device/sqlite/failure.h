// device/sqlite/failure.h - what the database's errors mean: a result for the caller, and one line
// of the log for people, which names the file and says what to do and never has data in it.
#ifndef TAMU_DEVICE_SQLITE_FAILURE_H_
#define TAMU_DEVICE_SQLITE_FAILURE_H_

#include <cstdint>
#include <string>

#include "platform/com.h"

namespace tamu::device {

// A failure inside this folder, thrown by what runs under Database::Read and Write. Its line is
// written where it is caught.
struct Failure {
  platform::HRESULT result = platform::hr::kFail;
  const char* text = nullptr;  // what is wrong and what to do; static
  std::string detail;          // "" or more about it, without data
};

// The failure behind a result code of SQLite (extended or not) and, for failed input and output,
// the system's errno value. `message` is used for codes that need it.
[[nodiscard]] Failure FailureFromCode(int code, int system_error, const char* message);

// The failure behind the platform's number of a file error.
[[nodiscard]] Failure FailureFromFileError(std::uint32_t error);

[[nodiscard]] Failure OutOfMemoryFailure() noexcept;
[[nodiscard]] Failure DamagedFailure() noexcept;

// Writes the line and gives back the result.
platform::HRESULT LogFailure(const Failure& failure, const std::string& file) noexcept;

}  // namespace tamu::device

#endif  // TAMU_DEVICE_SQLITE_FAILURE_H_
