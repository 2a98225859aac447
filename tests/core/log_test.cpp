#include "core/log.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "core/log_format.h"
#include "platform/registry.h"
#include "platform/sockets.h"
#include "support/collector_port.h"
#include "support/log_capture.h"
#include "support/no_device.h"
#include "support/scratch_folder.h"
#include "tamu/tamu.h"

namespace tamu {
namespace {

using testing::LogCapture;
using testing::ScopedCollectorPort;
using testing::ScopedEnvironment;
using testing::ScratchFolder;

// What the fake socket functions saw.
struct Network {
  int sockets = 0;
  std::vector<platform::SocketHandle> closed;
  std::vector<std::string> datagrams;
  platform::SocketAddress bound{};
  platform::SocketAddress to{};
  platform::SocketHandle next_socket = 40;
  std::int32_t bind_result = 0;
};
Network g_network;

class LogTest : public ::testing::Test {
 protected:
  LogTest() {
    g_network = Network{};
    LOG_Reset();
  }
  ~LogTest() override { LOG_Reset(); }

  // Writes "LogIPAddr", or no value at all.
  void Configure(const std::string& dword) {
    folder_.Put("registry.reg",
                "Windows Registry Editor Version 5.00\r\n\r\n"
                "[HKEY_LOCAL_MACHINE\\Software\\Velmora\\BTConfig\\Debug]\r\n" +
                    (dword.empty() ? "" : "\"LogIPAddr\"=dword:" + dword + "\r\n"));
  }

  ScratchFolder folder_;
  ScopedEnvironment home_{"TAMU_HOME", folder_.path().string()};
  testing::ScopedNoDevice no_device_;

  platform::SocketHandle static Socket(std::int32_t, std::int32_t, std::int32_t) {
    ++g_network.sockets;
    return g_network.next_socket++;
  }
  static std::int32_t Bind(platform::SocketHandle, const platform::SocketAddress* address,
                           std::int32_t) {
    g_network.bound = *address;
    return g_network.bind_result;
  }
  static std::int32_t Send(platform::SocketHandle, const void* data, std::int32_t size,
                           std::int32_t, const platform::SocketAddress* to, std::int32_t) {
    g_network.datagrams.emplace_back(static_cast<const char*>(data),
                                     static_cast<std::size_t>(size));
    g_network.to = *to;
    return size;
  }
  static std::int32_t Close(platform::SocketHandle socket) {
    g_network.closed.push_back(socket);
    return 0;
  }
  platform::ScopedOverride<platform::SocketHandle(std::int32_t, std::int32_t, std::int32_t)>
      socket_{platform::socket, &Socket};
  platform::ScopedOverride<std::int32_t(platform::SocketHandle, const platform::SocketAddress*,
                                        std::int32_t)>
      bind_{platform::bind, &Bind};
  platform::ScopedOverride<std::int32_t(platform::SocketHandle, const void*, std::int32_t,
                                        std::int32_t, const platform::SocketAddress*, std::int32_t)>
      sendto_{platform::sendto, &Send};
  platform::ScopedOverride<std::int32_t(platform::SocketHandle)> closesocket_{platform::closesocket,
                                                                              &Close};
};

TEST_F(LogTest, WithoutAnAddressNothingIsSentAndNothingFails) {
  Configure("");
  EXPECT_EQ(LOG_Open(), -1);
  platform::sendto.ResetCount();
  EXPECT_EQ(LOG_Print(0, "TAMU:  POL_Open()"), -1);
  EXPECT_EQ(platform::sendto.calls(), 0U);
  EXPECT_EQ(g_network.sockets, 0);
}

TEST_F(LogTest, WithoutARegistryNothingFails) { EXPECT_EQ(LOG_Open(), -1); }

TEST_F(LogTest, ALineIsOneDatagramWithItsLengthAndCategory) {
  Configure("7f000001");
  EXPECT_EQ(LOG_Open(), 0);
  EXPECT_EQ(LOG_Print(0x1234, "TAMU:  POL_Open()"), 25);
  ASSERT_EQ(g_network.datagrams.size(), 1U);
  EXPECT_EQ(g_network.datagrams[0], std::string("\x34\x12\x11\0\0\0\0\0TAMU:  POL_Open()", 25));
  EXPECT_EQ(g_network.to.family, 2);
  EXPECT_EQ(ntohs(g_network.to.port), 38182);
  EXPECT_EQ(ntohl(g_network.to.address), 0x7F000001U);
}

TEST_F(LogTest, TheSocketIsBoundToAnyAddressAndPort) {
  Configure("0a000001");
  EXPECT_EQ(LOG_Open(), 0);
  EXPECT_EQ(g_network.bound.family, 2);
  EXPECT_EQ(g_network.bound.port, 0);
  EXPECT_EQ(g_network.bound.address, 0U);
}

TEST_F(LogTest, OpeningTwiceWithTheSameAddressKeepsTheFirstSocket) {
  Configure("7f000001");
  TAMU_Open();
  TAMU_Open();
  EXPECT_EQ(g_network.sockets, 1);
  EXPECT_TRUE(g_network.closed.empty());
}

TEST_F(LogTest, AnotherAddressReplacesTheSocket) {
  Configure("7f000001");
  LOG_Open();
  Configure("7f000002");
  EXPECT_EQ(LOG_Open(), 0);
  EXPECT_EQ(g_network.sockets, 2);
  EXPECT_EQ(g_network.closed, (std::vector<platform::SocketHandle>{40}));
}

TEST_F(LogTest, AddressZeroClosesTheSocket) {
  Configure("7f000001");
  LOG_Open();
  Configure("00000000");
  EXPECT_EQ(LOG_Open(), -1);
  EXPECT_EQ(g_network.closed, (std::vector<platform::SocketHandle>{40}));
  EXPECT_EQ(LOG_Print(0, "line"), -1);
}

// The cached address is not forgotten when logging is switched off: kept on purpose.
TEST_F(LogTest, SetToZeroAndBackToTheSameAddressStaysOff) {
  Configure("7f000001");
  LOG_Open();
  Configure("00000000");
  LOG_Open();
  Configure("7f000001");
  LOG_Open();
  EXPECT_EQ(g_network.sockets, 1);
  EXPECT_EQ(LOG_Print(0, "line"), -1);
}

TEST_F(LogTest, ASocketThatCannotBeMadeIsNotTriedAgainForTheSameAddress) {
  Configure("7f000001");
  {
    const platform::ScopedFailure failure(platform::socket);
    EXPECT_EQ(LOG_Open(), -1);
  }
  LOG_Open();
  EXPECT_EQ(g_network.sockets, 0);
  EXPECT_EQ(LOG_Print(0, "line"), -1);
}

TEST_F(LogTest, AFailedBindLeavesTheSocketUnclosedAndLoggingOff) {
  Configure("7f000001");
  g_network.bind_result = -1;
  EXPECT_EQ(LOG_Open(), -1);
  EXPECT_TRUE(g_network.closed.empty());
  EXPECT_EQ(LOG_Print(0, "line"), -1);
}

TEST_F(LogTest, TheRegistryKeyIsLeftOpen) {
  Configure("7f000001");
  platform::RegCloseKey.ResetCount();
  LOG_Open();
  EXPECT_EQ(platform::RegCloseKey.calls(), 0U);
}

TEST_F(LogTest, LongLinesAreCutAtTheBuffer) {
  Configure("7f000001");
  LOG_Open();
  const std::string text(5000, 'x');
  EXPECT_EQ(LOG_Print(0, "%s", text.c_str()), 8 + 991);
  EXPECT_EQ(g_network.datagrams[0].substr(8), std::string(991, 'x'));
}

TEST_F(LogTest, LevelsGateErrorsAndInformation) {
  const LogCapture log;
  for (const std::int32_t level : {9, 4, 3, 1, 0}) {
    LOG_SetLevel(level);
    LOG_Info("info %d", level);
    LOG_Error("error %d", level);
  }
  EXPECT_EQ(log.texts(), (std::vector<std::string>{"info 9", "error 9", "info 4", "error 4",
                                                   "error 3", "error 1"}));
}

TEST_F(LogTest, OpeningLogsThatTheObjectModelIsNotThere) {
  const LogCapture log;
  EXPECT_EQ(TAMU_Open(), TAMU_GENERAL_PIM_ERROR);
  ASSERT_EQ(log.lines().size(), 2U);
  EXPECT_EQ(log.lines()[0].text, "TAMU:  POL_Open()");
  EXPECT_EQ(log.lines()[0].severity, LogSeverity::kInformation);
  EXPECT_EQ(log.lines()[1].text,
            "TAMU:  Unable to get application object from POOM interface. (code=0x80040154)");
  EXPECT_EQ(log.lines()[1].severity, LogSeverity::kError);
}

// Over the system's own sockets. The port is the same for everyone, so wait for it.
TEST(LogOverLoopback, TheLineArrivesAtTheCollector) {
  const testing::ScopedNoDevice no_device;
  const ScopedCollectorPort port;
  const int collector = ::socket(AF_INET, SOCK_DGRAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(38182);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  for (int attempt = 0; attempt < 600; ++attempt) {
    if (::bind(collector, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0) break;
    ASSERT_LT(attempt, 599) << "port 38182 is taken";
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  const timeval patience{10, 0};
  setsockopt(collector, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
  const ScratchFolder folder;
  const ScopedEnvironment home("TAMU_HOME", folder.path().string());
  folder.Put(
      "registry.reg",
      "Windows Registry Editor Version 5.00\n\n"
      "[HKEY_LOCAL_MACHINE\\Software\\Velmora\\BTConfig\\Debug]\n\"LogIPAddr\"=dword:7f000001\n");
  LOG_Reset();
  TAMU_Open();
  std::array<char, 1100> datagram{};
  const ssize_t size = recv(collector, datagram.data(), datagram.size(), 0);
  LOG_Reset();
  close(collector);
  ASSERT_EQ(size, 8 + 17);
  EXPECT_EQ(datagram[2], 17);
  EXPECT_EQ(datagram[3], 0);
  EXPECT_EQ(std::string(datagram.data() + 8, 17), "TAMU:  POL_Open()");
}

std::string Format(const char* format, std::initializer_list<LogArgument> arguments,
                   std::size_t size = 200) {
  std::string out(size, '#');
  const std::size_t length =
      LOG_Format({out.data(), size}, format, {std::data(arguments), arguments.size()});
  EXPECT_EQ(out[length], '\0');
  return out.substr(0, length);
}

TEST(LogFormat, Conversions) {
  EXPECT_EQ(Format("%d %d", {42, -42}), "42 -42");
  EXPECT_EQ(Format("%d", {INT32_MIN}), "-2147483648");
  EXPECT_EQ(Format("%u %lu", {4294967295U, 7U}), "4294967295 7");
  EXPECT_EQ(Format("%x %08x %02X", {0xBEEFU, 0x80040154U, 0xAU}), "beef 80040154 0A");
  EXPECT_EQ(Format("%08x", {0U}), "00000000");
  EXPECT_EQ(Format("%4d|%04d", {7, -7}), "   7|-007");
  EXPECT_EQ(Format("%c%%", {'x'}), "x%");
  EXPECT_EQ(Format("'%s'", {"text"}), "'text'");
  EXPECT_EQ(Format("'%s'", {static_cast<const char*>(nullptr)}), "'(null)'");
}

TEST(LogFormat, ACodeAbove31BitsIsNegative) {
  EXPECT_EQ(Format("%d", {0xFFFFFFFFU}), "-1");
  EXPECT_EQ(Format("%d", {0x80000000U}), "-2147483648");
}

TEST(LogFormat, WideTextGoesThroughTheAnsiCodePage) {
  const ScopedEnvironment locale("LC_ALL", "C.UTF-8");
  EXPECT_EQ(Format("%S", {u"M\u00FCller"}), "M\xC3\xBCller");
}

TEST(LogFormat, LongWideTextIsNotSplitInsideACharacter) {
  const ScopedEnvironment locale("LC_ALL", "C.UTF-8");
  std::u16string text = u"x";
  std::string expected = "x";
  for (int i = 0; i < 40; ++i) {
    text += u"\U0001F600";
    expected += "\xF0\x9F\x98\x80";
  }
  EXPECT_EQ(Format("%S", {text.c_str()}), expected);
}

TEST(LogFormat, EverythingIsCutAtTheBuffer) {
  EXPECT_EQ(Format("abcdef", {}, 4), "abc");
  EXPECT_EQ(Format("%d%s", {12345, "x"}, 4), "123");
  EXPECT_EQ(Format("%S", {u"abcdef"}, 4), "abc");
  EXPECT_EQ(Format("abc", {}, 1), "");
}

}  // namespace
}  // namespace tamu
