// platform/sockets.h - datagram sockets, as far as the diagnostic log needs them.
//   Errors     -1, with the reason in GetLastError.
#ifndef TAMU_PLATFORM_SOCKETS_H_
#define TAMU_PLATFORM_SOCKETS_H_

#include <bit>
#include <cstdint>

#include "platform/service.h"

namespace tamu::platform {

using SocketHandle = std::intptr_t;
inline constexpr SocketHandle kInvalidSocket = -1;

inline constexpr std::int32_t kAfInet = 2;
inline constexpr std::int32_t kSockDgram = 2;

// An IPv4 socket address, 16 bytes as every system has it: port and address are in network byte
// order.
struct SocketAddress {
  std::uint16_t family;
  std::uint16_t port;
  std::uint32_t address;
  std::uint8_t zero[8];
};
static_assert(sizeof(SocketAddress) == 16);

extern Service<SocketHandle(std::int32_t family, std::int32_t type, std::int32_t protocol)> socket;
extern Service<std::int32_t(SocketHandle socket, const SocketAddress* address, std::int32_t size)>
    bind;
// Returns the bytes sent.
extern Service<std::int32_t(SocketHandle socket, const void* data, std::int32_t size,
                            std::int32_t flags, const SocketAddress* address,
                            std::int32_t address_size)>
    sendto;
extern Service<std::int32_t(SocketHandle socket)> closesocket;

// A 32-bit number from network byte order (most significant byte first) to the machine's, and the
// other way; the same for 16 bits. (The system's own names are macros on some systems.)
[[nodiscard]] constexpr std::uint32_t NetworkToHost32(std::uint32_t value) noexcept {
  if constexpr (std::endian::native == std::endian::big) return value;
  return value >> 24 | (value >> 8 & 0xFF00U) | (value << 8 & 0xFF0000U) | value << 24;
}
[[nodiscard]] constexpr std::uint16_t HostToNetwork16(std::uint16_t value) noexcept {
  if constexpr (std::endian::native == std::endian::big) return value;
  return static_cast<std::uint16_t>(value >> 8 | value << 8);
}

}  // namespace tamu::platform

#endif  // TAMU_PLATFORM_SOCKETS_H_
