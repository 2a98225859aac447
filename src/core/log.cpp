#include "core/log.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <span>

#include "platform/registry.h"
#include "platform/sockets.h"

namespace tamu {
namespace {

constexpr const char16_t* kDebugKey = u"Software\\Velmora\\BTConfig\\Debug";
constexpr const char16_t* kAddressValue = u"LogIPAddr";
constexpr std::uint16_t kCollectorPort = 38182;
constexpr std::size_t kHeaderSize = 8;
constexpr std::size_t kTextSize = 992;  // with the terminator

struct LogState {
  std::int32_t level = 9;
  platform::SocketHandle socket = platform::kInvalidSocket;
  std::uint32_t collector =
      0;  // in network byte order; also what decides whether LOG_Open has to reopen
  LogObserver observer = nullptr;
  void* observer_user = nullptr;
  std::uint32_t source_line = 0;
};
constinit LogState g_log;

// The configured collector as a number with the first octet most significant; 0 when there is none.
// The key is left open, as it has always been: it is opened once per TAMU_Open.
std::uint32_t ConfiguredCollector() noexcept {
  platform::RegistryKey key = 0;
  if (platform::RegOpenKeyExW(platform::kHkeyLocalMachine, kDebugKey, 0, platform::kKeyRead,
                              &key) != 0) {
    return 0;
  }
  std::uint32_t address = 0;
  std::array<std::uint8_t, sizeof address> data{};
  std::uint32_t size = sizeof address;
  if (platform::RegQueryValueExW(key, kAddressValue, nullptr, nullptr, data.data(), &size) != 0)
    return 0;
  std::memcpy(&address, data.data(), sizeof address);
  return address;
}

void CloseSocket() noexcept {
  if (g_log.socket != platform::kInvalidSocket) platform::closesocket(g_log.socket);
  g_log.socket = platform::kInvalidSocket;
}

void PutLittleEndian16(std::uint8_t* out, std::size_t value) noexcept {
  out[0] = static_cast<std::uint8_t>(value & 0xFF);
  out[1] = static_cast<std::uint8_t>(value >> 8 & 0xFF);
}

std::int32_t SendDatagram(std::uint16_t category, std::span<std::uint8_t> datagram) noexcept {
  PutLittleEndian16(datagram.data(), category);
  PutLittleEndian16(datagram.data() + 2, datagram.size() - kHeaderSize);
  std::memset(datagram.data() + 4, 0, 4);
  platform::SocketAddress to{};
  to.family = platform::kAfInet;
  to.port = platform::HostToNetwork16(kCollectorPort);
  to.address = g_log.collector;
  return platform::sendto(g_log.socket, datagram.data(), static_cast<std::int32_t>(datagram.size()),
                          0, &to, sizeof to);
}

}  // namespace

void LOG_SetObserver(LogObserver observer, void* user) noexcept {
  g_log.observer = observer;
  g_log.observer_user = user;
}

std::int32_t LOG_Level() noexcept { return g_log.level; }
void LOG_SetLevel(std::int32_t level) noexcept { g_log.level = level; }
void LOG_SetSourceLine(std::uint32_t line) noexcept { g_log.source_line = line; }

std::int32_t LOG_Open() noexcept {
  const std::uint32_t configured = ConfiguredCollector();
  if (configured == 0) {
    CloseSocket();
    return -1;
  }
  const std::uint32_t collector = platform::NetworkToHost32(configured);
  // Also after the value was 0 for a while and the socket is gone: logging then stays off.
  if (collector == g_log.collector) return 0;
  CloseSocket();
  g_log.collector = collector;
  g_log.socket = platform::socket(platform::kAfInet, platform::kSockDgram, 0);
  if (g_log.socket == platform::kInvalidSocket) return -1;
  platform::SocketAddress any{};
  any.family = platform::kAfInet;
  if (platform::bind(g_log.socket, &any, sizeof any) != 0) {
    g_log.socket = platform::kInvalidSocket;  // not closed, as it has always been
    return -1;
  }
  return 0;
}

void LOG_Reset() noexcept {
  CloseSocket();
  g_log.collector = 0;
  g_log.level = 9;
  g_log.source_line = 0;
}

std::int32_t LOG_Send(LogSeverity severity, std::uint16_t category, const char* format,
                      std::initializer_list<LogArgument> arguments) noexcept {
  if (g_log.socket == platform::kInvalidSocket && g_log.observer == nullptr) return -1;
  std::array<char, kHeaderSize + kTextSize> buffer;
  const std::size_t length = LOG_Format(std::span(buffer).subspan(kHeaderSize), format,
                                        {std::data(arguments), arguments.size()});
  if (g_log.observer != nullptr) {
    g_log.observer({severity, category, {buffer.data() + kHeaderSize, length}, g_log.source_line},
                   g_log.observer_user);
  }
  if (g_log.socket == platform::kInvalidSocket) return -1;
  return SendDatagram(category,
                      {reinterpret_cast<std::uint8_t*>(buffer.data()), kHeaderSize + length});
}

}  // namespace tamu
