// system/log_receiver.h - receives the library's diagnostic datagrams.
//   Errors     a text for people; std::bad_alloc.
#ifndef TAMU_TOOLS_SYSTEM_LOG_RECEIVER_H_
#define TAMU_TOOLS_SYSTEM_LOG_RECEIVER_H_

#include <cstdint>
#include <string>

namespace tamu::tool {

// The port that the library sends to.
inline constexpr std::uint16_t kLogPort = 38182;

enum class Received : std::uint8_t {
  kDatagram,
  kEnded,  // the user or the system asked for the end (Ctrl-C, SIGTERM)
  kFailed,
};

class LogReceiver {
 public:
  LogReceiver() = default;
  LogReceiver(const LogReceiver&) = delete;
  LogReceiver& operator=(const LogReceiver&) = delete;
  ~LogReceiver();

  // Listens on every address of the machine. From then on Ctrl-C ends `Receive` instead of the
  // program. False when the port cannot be had.
  [[nodiscard]] bool Open(std::uint16_t port, std::string* problem);

  // Waits for the next datagram; `*sender` is its IPv4 address as text.
  [[nodiscard]] Received Receive(std::string* datagram, std::string* sender, std::string* problem);

 private:
  int socket_ = -1;
};

}  // namespace tamu::tool

#endif  // TAMU_TOOLS_SYSTEM_LOG_RECEIVER_H_
