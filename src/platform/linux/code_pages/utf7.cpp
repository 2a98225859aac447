// platform/linux/code_pages/utf7.cpp - code page 65000, UTF-7 (RFC 2152) with the platform's
// habits.
//   Reading never fails: a byte from 80 up stands for the unit of its number, and bits that make up
//   no whole unit are dropped. Writing encodes everything that RFC 2152 leaves optional, and always
//   closes a run with "-". Surrogates are units like any other.
#include <array>
#include <string_view>

#include "platform/linux/code_pages/output.h"
#include "platform/linux/code_pages/page.h"

namespace tamu::platform::code_pages {
namespace {

constexpr std::string_view kDigits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view kDirectCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789'(),-./:? \t\r\n";

constexpr unsigned kDigitBits = 6;
constexpr unsigned kUnitBits = 16;
constexpr std::int8_t kNoDigit = -1;

constexpr std::array<std::int8_t, 256> MakeDigitValues() {
  std::array<std::int8_t, 256> values{};
  values.fill(kNoDigit);
  for (std::size_t i = 0; i < kDigits.size(); ++i) {
    values[static_cast<std::uint8_t>(kDigits[i])] = static_cast<std::int8_t>(i);
  }
  return values;
}

constexpr std::array<bool, 128> MakeDirect() {
  std::array<bool, 128> direct{};
  for (const char c : kDirectCharacters) direct[static_cast<std::uint8_t>(c)] = true;
  direct[0] = true;  // the terminator, when it is converted along
  return direct;
}

constexpr std::array<std::int8_t, 256> kDigitValues = MakeDigitValues();
constexpr std::array<bool, 128> kIsDirect = MakeDirect();

// Bits on their way between digits and units, the oldest on top.
struct BitQueue {
  std::uint32_t value = 0;
  unsigned count = 0;

  void Push(std::uint32_t bits, unsigned size) {
    value = (value << size) | bits;
    count += size;
  }
  std::uint32_t Pop(unsigned size) {
    count -= size;
    return (value >> count) & ((1U << size) - 1);
  }
};

class Reader {
 public:
  explicit Reader(Output<char16_t>& out) : out_(out) {}

  void Read(std::uint8_t byte) {
    switch (state_) {
      case State::kDirect:
        if (byte == '+') {
          state_ = State::kPlus;
        } else {
          out_.Put(byte);
        }
        break;
      case State::kPlus:
      case State::kBase64:
        ReadInRun(byte);
        break;
    }
  }

 private:
  enum class State { kDirect, kPlus, kBase64 };

  void ReadInRun(std::uint8_t byte) {
    if (const std::int8_t digit = kDigitValues[byte]; digit != kNoDigit) {
      state_ = State::kBase64;
      bits_.Push(static_cast<std::uint32_t>(digit), kDigitBits);
      if (bits_.count >= kUnitBits) out_.Put(static_cast<char16_t>(bits_.Pop(kUnitBits)));
      return;
    }
    if (byte != '-') {
      out_.Put(byte);
    } else if (state_ == State::kPlus) {
      out_.Put(u'+');
    }
    // Kept as observed: a byte from 80 up ends the run without dropping its bits, which then lead
    // the next run.
    if (byte < 0x80) bits_ = {};
    state_ = State::kDirect;
  }

  Output<char16_t>& out_;
  State state_ = State::kDirect;
  BitQueue bits_;
};

class Writer {
 public:
  explicit Writer(Output<char>& out) : out_(out) {}

  void Write(char16_t unit) {
    if (unit == u'+') {
      Close();
      out_.Put('+');
      out_.Put('-');
    } else if (unit < kIsDirect.size() && kIsDirect[unit]) {
      Close();
      out_.Put(static_cast<char>(unit));
    } else {
      if (!open_) out_.Put('+');
      open_ = true;
      bits_.Push(unit, kUnitBits);
      while (bits_.count >= kDigitBits) PutDigit();
    }
  }

  void Close() {
    if (!open_) return;
    open_ = false;
    if (bits_.count != 0) {
      if (!out_.Reserve(2)) return;  // the last digit is not written without its "-"
      bits_.Push(0, kDigitBits - bits_.count);
      PutDigit();
    }
    out_.Put('-');
  }

 private:
  void PutDigit() { out_.Put(kDigits[bits_.Pop(kDigitBits)]); }

  Output<char>& out_;
  bool open_ = false;
  BitQueue bits_;
};

}  // namespace

Outcome DecodeUtf7(const DecodeJob& job) {
  Output<char16_t> out(job.units, job.capacity);
  Reader reader(out);
  for (std::size_t i = 0; i < job.byte_count && !out.full(); ++i) reader.Read(job.bytes[i]);
  return out.Result();
}

Outcome EncodeUtf7(EncodeJob& job) {
  Output<char> out(job.bytes, job.capacity);
  Writer writer(out);
  for (std::size_t i = 0; i < job.unit_count && !out.full(); ++i) writer.Write(job.units[i]);
  writer.Close();
  return out.Result();
}

}  // namespace tamu::platform::code_pages
