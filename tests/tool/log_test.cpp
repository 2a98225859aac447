// "tamu log".
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "support/collector_port.h"
#include "tool/program.h"

namespace tamu::tool {
namespace {

using tamu::testing::ScopedCollectorPort;

constexpr int kPort = 38182;

// A datagram as the library sends it.
std::string Datagram(std::uint16_t category, const std::string& text) {
  std::string bytes;
  for (const std::size_t number :
       {std::size_t{category}, text.size(), std::size_t{0}, std::size_t{0}}) {
    bytes.push_back(static_cast<char>(number));
    bytes.push_back(static_cast<char>(number >> 8));
  }
  return bytes + text;
}

class Sender {
 public:
  Sender() : socket_(::socket(AF_INET, SOCK_DGRAM, 0)) {}
  ~Sender() { ::close(socket_); }
  Sender(const Sender&) = delete;
  Sender& operator=(const Sender&) = delete;
  void Send(const std::string& datagram) const {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(kPort);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ::sendto(socket_, datagram.data(), datagram.size(), 0,
             reinterpret_cast<const sockaddr*>(&address), sizeof address);
  }

 private:
  int socket_;
};

// Sends the datagrams again and again until the program, which ends by itself, has enough of them.
std::string OutputFor(std::vector<std::string> options, const std::vector<std::string>& datagrams) {
  const ScopedCollectorPort port;
  Program program;
  program.SetOutput(program.Path("out"));
  options.insert(options.begin(), "log");
  int input = -1;
  const pid_t process = program.Start(options, &input);
  const Sender sender;
  int status = 0;
  for (int i = 0; ::waitpid(process, &status, WNOHANG) == 0 && i < 2000; ++i) {
    for (const std::string& datagram : datagrams) sender.Send(datagram);
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  ::close(input);
  return program.Read("out");
}

TEST(Log, RawPrintsTheTextsAlone) {
  EXPECT_EQ(OutputFor({"--raw", "-n", "1"}, {Datagram(0, "TAMU:  POL_Open()")}),
            "TAMU:  POL_Open()\n");
}

TEST(Log, PrintsTimeAndCategory) {
  const std::string out = OutputFor({"-n", "1"}, {Datagram(7, "MAPI:  MAPI_Init() called")});
  // "2026-01-31 23:59:59.123  7  MAPI..."
  ASSERT_GT(out.size(), 23U);
  EXPECT_EQ(out[4], '-');
  EXPECT_EQ(out[19], '.');
  EXPECT_EQ(out.substr(23), "  7  MAPI:  MAPI_Init() called\n");
}

TEST(Log, JsonHasEveryPart) {
  const nlohmann::json json =
      nlohmann::json::parse(OutputFor({"--json", "-n", "1"}, {Datagram(3, "a \x1b[2J b")}));
  EXPECT_EQ(json["category"], 3);
  EXPECT_EQ(json["text"], "a \x1b[2J b");
  EXPECT_EQ(json["sender"], "127.0.0.1");
  EXPECT_EQ(json["whole"], true);
}

TEST(Log, ShortAndDamagedDatagramsAreTold) {
  std::string damaged = Datagram(0, "text");
  damaged[2] = 99;
  const std::string out = OutputFor({"-n", "1"}, {"abc", damaged});
  EXPECT_NE(out.find("text  (damaged: its length is not what it says)\n"), std::string::npos);
}

TEST(Log, EndsWithSuccessWhenInterrupted) {
  const ScopedCollectorPort port;
  Program program;
  program.SetOutput(program.Path("out"));
  int input = -1;
  const pid_t process = program.Start({"log", "--raw"}, &input);
  const Sender sender;
  // Once a line has come through, the program listens and minds signals.
  for (int i = 0; program.Read("out").empty() && i < 2000; ++i) {
    sender.Send(Datagram(0, "line"));
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  ::kill(process, SIGINT);
  int status = 0;
  ASSERT_EQ(::waitpid(process, &status, 0), process);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  ::close(input);
}

TEST(Log, TwoAtATimeAreRefused) {
  const ScopedCollectorPort port;
  Program program;
  program.SetOutput(program.Path("out"));
  int input = -1;
  const pid_t process = program.Start({"log", "--raw"}, &input);
  const Sender sender;
  for (int i = 0; program.Read("out").empty() && i < 2000; ++i) {
    sender.Send(Datagram(0, "line"));
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  const ProgramResult second = Program().Run({"log"});
  EXPECT_EQ(second.exit_code, 1);
  EXPECT_EQ(second.err,
            "tamu: cannot listen on UDP port 38182: Address already in use. Is another 'tamu log' "
            "running?\n");
  ::kill(process, SIGTERM);
  ::waitpid(process, nullptr, 0);
  ::close(input);
}

}  // namespace
}  // namespace tamu::tool
