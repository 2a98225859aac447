// device/ink/ink_bytes.h - numbers in a rich-ink document, least significant byte first.
#ifndef TAMU_DEVICE_INK_INK_BYTES_H_
#define TAMU_DEVICE_INK_INK_BYTES_H_

#include <cstddef>
#include <cstdint>
#include <span>

namespace tamu::device {

// The number at `at`, which lies inside `bytes`.
[[nodiscard]] inline std::uint16_t ReadU16(std::span<const std::uint8_t> bytes, std::size_t at) {
  return static_cast<std::uint16_t>(bytes[at] | bytes[at + 1] << 8);
}

[[nodiscard]] inline std::uint32_t ReadU32(std::span<const std::uint8_t> bytes, std::size_t at) {
  return ReadU16(bytes, at) | static_cast<std::uint32_t>(ReadU16(bytes, at + 2)) << 16;
}

}  // namespace tamu::device

#endif  // TAMU_DEVICE_INK_INK_BYTES_H_
