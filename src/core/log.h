// core/log.h - the diagnostic log: formatted lines, each sent as one UDP datagram to a configured
// collector.
//   A line is text without time stamp and line end. Library lines begin "TAMU:  ", the mail store's
//   "MAPI:  ".
//   Datagram   category, text length, 0, 0 (16-bit little-endian each), then the text without
//              terminator; to UDP port 38182. Text is cut at 992 bytes less its terminator.
//   Errors     logging never fails its callers.
//   Threads    none.
#ifndef TAMU_CORE_LOG_H_
#define TAMU_CORE_LOG_H_

#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "core/log_format.h"

namespace tamu {

// What a line is about. Errors are produced when the level is not 0, information when it is 4 or
// more.
enum class LogSeverity : std::uint8_t { kInformation, kError };

// A line as it is produced.
struct LogLine {
  LogSeverity severity;
  std::uint16_t category;
  std::string_view text;
  // The physical line of the file being read where the logical line in question begins, 0 outside
  // of reading.
  std::uint32_t source_line;
};

// Sees every line, whether or not there is a collector. One at a time; null ends it.
using LogObserver = void (*)(const LogLine& line, void* user);
void LOG_SetObserver(LogObserver observer, void* user) noexcept;

// The gate that callers test; 9 at first, and nothing in the library changes it.
[[nodiscard]] std::int32_t LOG_Level() noexcept;
void LOG_SetLevel(std::int32_t level) noexcept;

// Reads "LogIPAddr" under "Software\Velmora\BTConfig\Debug" and brings the socket into line with
// it. Returns 0 with a new socket, or when the address is the one already configured (whatever
// became of its socket); -1 when logging is off or the socket cannot be had.
std::int32_t LOG_Open() noexcept;

// Closes the socket and forgets the address, as after loading. For tests: nothing in the library
// closes the log.
void LOG_Reset() noexcept;

// Where the reader is: stays with the lines that follow until it is set again.
void LOG_SetSourceLine(std::uint32_t line) noexcept;

// Formats and sends one line whatever the level is. Returns the bytes sent, or -1: without a socket
// the system is not asked.
std::int32_t LOG_Send(LogSeverity severity, std::uint16_t category, const char* format,
                      std::initializer_list<LogArgument> arguments) noexcept;

template <typename... Arguments>
std::int32_t LOG_Print(std::uint16_t category, LogFormat<std::type_identity_t<Arguments>...> format,
                       Arguments... arguments) noexcept {
  return LOG_Send(LogSeverity::kError, category, format.text(), {LogArgument(arguments)...});
}

// An error line, when the level asks for any.
template <typename... Arguments>
void LOG_Error(LogFormat<std::type_identity_t<Arguments>...> format,
               Arguments... arguments) noexcept {
  if (LOG_Level() != 0) {
    LOG_Send(LogSeverity::kError, 0, format.text(), {LogArgument(arguments)...});
  }
}

// An information line, when the level asks for it.
template <typename... Arguments>
void LOG_Info(LogFormat<std::type_identity_t<Arguments>...> format,
              Arguments... arguments) noexcept {
  if (LOG_Level() >= 4) {
    LOG_Send(LogSeverity::kInformation, 0, format.text(), {LogArgument(arguments)...});
  }
}

}  // namespace tamu

#endif  // TAMU_CORE_LOG_H_
