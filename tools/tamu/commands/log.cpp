// The command "log".
#include <chrono>
#include <ctime>
#include <nlohmann/json.hpp>

#include "commands.h"
#include "display_text.h"
#include "platform/code_pages.h"
#include "settings.h"
#include "system/log_receiver.h"

namespace tamu::tool {
namespace {

constexpr std::size_t kHeaderBytes = 8;

// A datagram as the library sends it: category, length, two numbers that say nothing, text.
struct LogDatagram {
  std::uint16_t category = 0;
  std::string_view text;
  bool whole = true;  // false: its length is not what its header says
};

std::uint16_t Number16(std::string_view bytes, std::size_t offset) noexcept {
  const auto byte = [&](std::size_t at) {
    return static_cast<std::uint16_t>(static_cast<unsigned char>(bytes[at]));
  };
  return static_cast<std::uint16_t>(byte(offset) | byte(offset + 1) << 8);
}

std::optional<LogDatagram> Parse(std::string_view datagram) noexcept {
  if (datagram.size() < kHeaderBytes) return std::nullopt;
  const std::size_t length = Number16(datagram, 2);
  LogDatagram result;
  result.category = Number16(datagram, 0);
  result.text = datagram.substr(kHeaderBytes, length);
  result.whole = datagram.size() == kHeaderBytes + length;
  return result;
}

// The text is in the sender's ANSI code page; ours is the best guess.
std::u16string Decode(std::string_view text) {
  const auto size = static_cast<std::int32_t>(text.size());
  std::u16string wide(text.size(), u'\0');
  if (size == 0) return wide;
  const std::int32_t units =
      platform::MultiByteToWideChar(platform::kCpAcp, 0, text.data(), size, wide.data(), size);
  wide.resize(units < 0 ? 0 : static_cast<std::size_t>(units));
  return wide;
}

// "2026-01-31 23:59:59.123", local time.
std::string TimeText() {
  const auto now = std::chrono::system_clock::now();
  const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
  const auto milliseconds =
      std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
  std::tm local{};
  ::localtime_r(&seconds, &local);
  char text[32];
  const std::size_t size = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S.", &local);
  const std::string digits = std::to_string(milliseconds + 1000);
  return std::string(text, size) + digits.substr(1);
}

std::string LineFor(const LogDatagram& line, const std::string& sender, const LogOptions& options) {
  const std::u16string text = Decode(line.text);
  if (options.raw) return DISPLAY_Line(text) + "\n";
  if (!options.json) {
    return TimeText() + "  " + std::to_string(line.category) + "  " + DISPLAY_Line(text) +
           (line.whole ? "" : "  (damaged: its length is not what it says)") + "\n";
  }
  nlohmann::ordered_json json;
  json["time"] = TimeText();
  json["sender"] = sender;
  json["category"] = line.category;
  json["text"] = DISPLAY_ToUtf8(text);
  json["whole"] = line.whole;
  return DISPLAY_Json(json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace)) + "\n";
}

void TellHowToStart(Console* console) {
  const Setting* const setting = SETTING_Find("LogIPAddr");
  console->Tell("Listening on UDP port " + std::to_string(kLogPort) + ". Ctrl-C ends it.");
  if (setting != nullptr && SETTING_Read(*setting).value_or("off") == "off") {
    console->Tell(
        "This device sends nothing yet: 'tamu config set LogIPAddr 127.0.0.1' makes programs that "
        "start afterwards send their lines here.");
  }
}

}  // namespace

int COMMAND_Log(const LogOptions& options, Console* console) {
  LogReceiver receiver;
  std::string problem;
  if (!receiver.Open(kLogPort, &problem)) {
    console->TellError(problem);
    return kExitFailure;
  }
  TellHowToStart(console);
  std::string datagram;
  std::string sender;
  for (std::uint64_t shown = 0; options.count == 0 || shown < options.count;) {
    switch (receiver.Receive(&datagram, &sender, &problem)) {
      case Received::kEnded:
        return kExitSuccess;
      case Received::kFailed:
        console->TellError(problem);
        return kExitFailure;
      case Received::kDatagram:
        break;
    }
    const std::optional<LogDatagram> line = Parse(datagram);
    if (!line) {
      console->Tell("passed over: " + std::to_string(datagram.size()) + " bytes from " + sender +
                    ", too short for a diagnostic line");
      continue;
    }
    console->Print(LineFor(*line, sender, options));
    console->Flush();
    console->ExitIfBroken();
    ++shown;
  }
  return kExitSuccess;
}

}  // namespace tamu::tool
