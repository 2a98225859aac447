#include "platform/sockets.h"

#include <errno.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <limits>

#include "platform/linux/errors.h"

namespace tamu::platform {
namespace {

static_assert(kAfInet == AF_INET && kSockDgram == SOCK_DGRAM);
static_assert(sizeof(SocketAddress) == sizeof(sockaddr_in));
static_assert(offsetof(SocketAddress, family) == offsetof(sockaddr_in, sin_family));
static_assert(offsetof(SocketAddress, port) == offsetof(sockaddr_in, sin_port));
static_assert(offsetof(SocketAddress, address) == offsetof(sockaddr_in, sin_addr));

int DescriptorOf(SocketHandle handle) noexcept {
  return handle < 0 || handle > std::numeric_limits<int>::max() ? -1 : static_cast<int>(handle);
}

bool IsAddress(const SocketAddress* address, std::int32_t size) noexcept {
  return address != nullptr && size == std::int32_t{sizeof(SocketAddress)};
}

SocketHandle Open(std::int32_t family, std::int32_t type, std::int32_t protocol) {
  const int descriptor = ::socket(family, type | SOCK_CLOEXEC, protocol);
  return descriptor >= 0 ? descriptor : FailWith(ErrorFromErrno(errno), kInvalidSocket);
}

std::int32_t BindTo(SocketHandle handle, const SocketAddress* address, std::int32_t size) {
  if (!IsAddress(address, size)) return FailWith(kErrorInvalidParameter, -1);
  sockaddr system = {};
  std::memcpy(&system, address, sizeof system);
  return ::bind(DescriptorOf(handle), &system, sizeof system) == 0
             ? 0
             : FailWith(ErrorFromErrno(errno), -1);
}

std::int32_t SendTo(SocketHandle handle, const void* data, std::int32_t size, std::int32_t flags,
                    const SocketAddress* address, std::int32_t address_size) {
  if (size < 0 || (data == nullptr && size > 0) || !IsAddress(address, address_size)) {
    return FailWith(kErrorInvalidParameter, -1);
  }
  sockaddr system = {};
  std::memcpy(&system, address, sizeof system);
  ssize_t sent = 0;
  do {
    sent = ::sendto(DescriptorOf(handle), data, static_cast<std::size_t>(size),
                    flags | MSG_NOSIGNAL, &system, sizeof system);
  } while (sent < 0 && errno == EINTR);
  return sent >= 0 ? static_cast<std::int32_t>(sent) : FailWith(ErrorFromErrno(errno), -1);
}

std::int32_t Close(SocketHandle handle) {
  if (::close(DescriptorOf(handle)) == 0 || errno == EINTR) return 0;
  return FailWith(ErrorFromErrno(errno), -1);
}

}  // namespace

constinit Service<SocketHandle(std::int32_t, std::int32_t, std::int32_t)> socket{"socket", &Open,
                                                                                 kInvalidSocket};
constinit Service<std::int32_t(SocketHandle, const SocketAddress*, std::int32_t)> bind{"bind",
                                                                                       &BindTo, -1};
constinit Service<std::int32_t(SocketHandle, const void*, std::int32_t, std::int32_t,
                               const SocketAddress*, std::int32_t)>
    sendto{"sendto", &SendTo, -1};
constinit Service<std::int32_t(SocketHandle)> closesocket{"closesocket", &Close, -1};

}  // namespace tamu::platform
