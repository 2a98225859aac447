#include "store/progress.h"

#include <algorithm>
#include <cstdio>

#include "system/process.h"

namespace tamu::tool {
namespace {

constexpr std::size_t kColumns = 79;
constexpr std::size_t kNameBytes = 24;
constexpr std::size_t kBarWidth = 20;
constexpr std::chrono::milliseconds kPeriod{100};

bool IsContinuation(char byte) noexcept {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// The end of a long name, which tells more than its folders do.
std::string ShortName(const std::string& name) {
  if (name.size() <= kNameBytes) return name;
  std::size_t begin = name.size() - kNameBytes + 3;
  while (begin < name.size() && IsContinuation(name[begin])) ++begin;
  return "..." + name.substr(begin);
}

}  // namespace

std::string PROGRESS_Line(const ProgressState& state, std::uint64_t all_objects, double seconds) {
  std::string line = ShortName(state.file);
  if (state.size != 0) {
    const double done =
        std::min(1.0, static_cast<double>(state.offset) / static_cast<double>(state.size));
    const auto filled = static_cast<std::size_t>(done * kBarWidth);
    const std::string percent = std::to_string(static_cast<int>(done * 100));
    line += "  " + std::string(3 - percent.size(), ' ') + percent + "% [" +
            std::string(filled, '#') + std::string(kBarWidth - filled, '-') + "]";
  }
  line += " " + std::to_string(state.objects) + (state.objects == 1 ? " object" : " objects");
  if (seconds > 0) {
    const double rate = static_cast<double>(all_objects) / seconds;
    line += ", " + std::to_string(static_cast<std::uint64_t>(rate)) + "/s";
  }
  if (line.size() > kColumns) line.resize(kColumns);
  return line;
}

Progress::Progress(std::chrono::milliseconds silence)
    : terminal_(PROCESS_IsTerminal(stderr)), start_(Clock::now()), next_(start_ + silence) {}

void Progress::Update(const ProgressState& state) {
  if (!terminal_) return;
  ++all_objects_;
  const Clock::time_point now = Clock::now();
  if (now < next_) return;
  const std::chrono::duration<double> passed = now - start_;
  const std::string line = "\r\x1b[K" + PROGRESS_Line(state, all_objects_, passed.count());
  std::fwrite(line.data(), 1, line.size(), stderr);
  std::fflush(stderr);
  shown_ = true;
  next_ = now + kPeriod;
}

void Progress::Hide() noexcept {
  if (!shown_) return;
  std::fputs("\r\x1b[K", stderr);
  std::fflush(stderr);
  shown_ = false;
}

}  // namespace tamu::tool
