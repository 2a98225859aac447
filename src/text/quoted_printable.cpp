#include "text/quoted_printable.h"

#include <array>
#include <cstdint>

#include "text/string_tools.h"

namespace tamu {
namespace {

constexpr auto kStaysPlain = [] {
  std::array<bool, 256> plain{};
  for (unsigned byte = 33; byte <= 126; ++byte) plain[byte] = true;
  for (const char special : {'=', ':', ';', '\\'})
    plain[static_cast<unsigned char>(special)] = false;
  plain[' '] = plain['\t'] = true;
  return plain;
}();

// An output buffer with room for its terminator; what does not fit is counted, and ends the
// writing.
class Output {
 public:
  Output(char* out, std::size_t size) noexcept
      : out_(out), room_(out != nullptr && size != 0 ? size - 1 : 0) {}

  void Put(const char* code, std::size_t length) noexcept {
    counted_ += length;
    if (length > room_ - written_) {
      room_ = written_;
      return;
    }
    for (std::size_t i = 0; i < length; ++i) out_[written_++] = code[i];
  }
  std::size_t Finish(std::size_t size) noexcept {
    if (out_ != nullptr && size != 0) out_[written_] = '\0';
    return counted_;
  }

 private:
  char* out_;
  std::size_t room_;
  std::size_t written_ = 0;
  std::size_t counted_ = 0;
};

}  // namespace

std::size_t QP_Encode(std::string_view text, char* out, std::size_t out_size) noexcept {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  Output output(out, out_size);
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (kStaysPlain[byte]) {
      output.Put(&character, 1);
    } else {
      const char code[3] = {'=', kDigits[byte >> 4], kDigits[byte & 0xF]};
      output.Put(code, sizeof code);
    }
  }
  return output.Finish(out_size);
}

std::size_t QP_Decode(std::string_view text, char* out, std::size_t out_size) noexcept {
  Output output(out, out_size);
  while (!text.empty()) {
    if (text.front() == '=' && text.size() > 2) {
      std::uint8_t byte = 0;
      text.remove_prefix(1 + HEX_ToBytes(text.data() + 1, &byte, 1));
      const char character = static_cast<char>(byte);
      output.Put(&character, 1);
    } else {
      output.Put(text.data(), 1);
      text.remove_prefix(1);
    }
  }
  return output.Finish(out_size);
}

}  // namespace tamu
