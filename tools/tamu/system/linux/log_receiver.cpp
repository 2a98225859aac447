#include "system/log_receiver.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace tamu::tool {
namespace {

constexpr std::size_t kMostBytes = 65536;

// The signals that end the program, as something that poll waits for. They stay blocked.
int EndingSignals() noexcept {
  sigset_t signals;
  ::sigemptyset(&signals);
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) ::sigaddset(&signals, number);
  ::sigprocmask(SIG_BLOCK, &signals, nullptr);
  return ::signalfd(-1, &signals, SFD_CLOEXEC);
}

int EndingSignalsOnce() noexcept {
  static const int descriptor = EndingSignals();
  return descriptor;
}

}  // namespace

LogReceiver::~LogReceiver() {
  if (socket_ >= 0) ::close(socket_);
}

bool LogReceiver::Open(std::uint16_t port, std::string* problem) {
  socket_ = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_ANY);
  if (socket_ < 0 ||
      ::bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    const int error = errno;
    *problem = std::string("cannot listen on UDP port ") + std::to_string(port) + ": " +
               std::strerror(error);
    if (error == EADDRINUSE) *problem += ". Is another 'tamu log' running?";
    return false;
  }
  static_cast<void>(EndingSignalsOnce());
  return true;
}

Received LogReceiver::Receive(std::string* datagram, std::string* sender, std::string* problem) {
  pollfd waiting[2] = {{socket_, POLLIN, 0}, {EndingSignalsOnce(), POLLIN, 0}};
  for (;;) {
    if (::poll(waiting, 2, -1) < 0) {
      if (errno == EINTR) continue;
      *problem = std::string("waiting failed: ") + std::strerror(errno);
      return Received::kFailed;
    }
    // What has come in is shown before the end.
    if ((waiting[0].revents & POLLIN) != 0) break;
    if (waiting[1].revents != 0) return Received::kEnded;
  }
  std::array<char, kMostBytes> bytes;
  sockaddr_in from{};
  socklen_t from_size = sizeof from;
  const ssize_t size = ::recvfrom(socket_, bytes.data(), bytes.size(), 0,
                                  reinterpret_cast<sockaddr*>(&from), &from_size);
  if (size < 0) {
    *problem = std::string("receiving failed: ") + std::strerror(errno);
    return Received::kFailed;
  }
  datagram->assign(bytes.data(), static_cast<std::size_t>(size));
  std::array<char, INET_ADDRSTRLEN> text{};
  ::inet_ntop(AF_INET, &from.sin_addr, text.data(), text.size());
  *sender = text.data();
  return Received::kDatagram;
}

}  // namespace tamu::tool
