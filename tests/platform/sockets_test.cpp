#include "platform/sockets.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>

#include <cstring>

namespace tamu::platform {
namespace {

constexpr SocketAddress AnyAddress() { return {kAfInet, 0, 0, {}}; }
constexpr std::int32_t kAddressSize = sizeof(SocketAddress);

// Where a socket that was bound to any port listens.
SocketAddress LoopbackOf(SocketHandle handle) {
  sockaddr name = {};
  socklen_t size = sizeof name;
  EXPECT_EQ(getsockname(static_cast<int>(handle), &name, &size), 0);
  SocketAddress address = {};
  std::memcpy(&address, &name, sizeof address);
  address.address = NetworkToHost32(0x7F000001);
  return address;
}

TEST(Sockets, ADatagramArrivesAsItWasSent) {
  const SocketHandle receiver = socket(kAfInet, kSockDgram, 0);
  const SocketHandle sender = socket(kAfInet, kSockDgram, 0);
  ASSERT_NE(receiver, kInvalidSocket);
  EXPECT_NE(fcntl(static_cast<int>(receiver), F_GETFD) & FD_CLOEXEC, 0);
  const SocketAddress any = AnyAddress();
  ASSERT_EQ(bind(receiver, &any, kAddressSize), 0);
  ASSERT_EQ(bind(sender, &any, kAddressSize), 0);
  const SocketAddress target = LoopbackOf(receiver);

  EXPECT_EQ(sendto(sender, "line\0two", 8, 0, &target, kAddressSize), 8);
  char buffer[32];
  ASSERT_EQ(recv(static_cast<int>(receiver), buffer, sizeof buffer, 0), 8);
  EXPECT_EQ(std::memcmp(buffer, "line\0two", 8), 0);

  EXPECT_EQ(closesocket(sender), 0);
  EXPECT_EQ(closesocket(receiver), 0);
}

TEST(Sockets, InvalidSocketsAndArgumentsAreRefused) {
  const SocketAddress any = AnyAddress();
  SetLastError(0);
  EXPECT_EQ(sendto(kInvalidSocket, "x", 1, 0, &any, kAddressSize), -1);
  EXPECT_EQ(GetLastError(), kErrorInvalidHandle);
  EXPECT_EQ(closesocket(kInvalidSocket), -1);
  EXPECT_EQ(bind(kInvalidSocket, &any, kAddressSize), -1);
  EXPECT_EQ(bind(kInvalidSocket, nullptr, kAddressSize), -1);
  EXPECT_EQ(GetLastError(), kErrorInvalidParameter);
  EXPECT_EQ(sendto(kInvalidSocket, "x", -1, 0, &any, kAddressSize), -1);
  EXPECT_EQ(GetLastError(), kErrorInvalidParameter);
  EXPECT_EQ(sendto(kInvalidSocket, "x", 1, 0, &any, 8), -1);
  EXPECT_EQ(GetLastError(), kErrorInvalidParameter);
}

TEST(Sockets, AnUnknownFamilyIsSaidSo) {
  EXPECT_EQ(socket(12345, kSockDgram, 0), kInvalidSocket);
  EXPECT_EQ(GetLastError(), 10047U);
}

TEST(Sockets, ByteOrderIsTheNetworks) {
  EXPECT_EQ(NetworkToHost32(htonl(0x7F000001)), 0x7F000001U);
  EXPECT_EQ(HostToNetwork16(38182), htons(38182));
}

}  // namespace
}  // namespace tamu::platform
