// device/bytes.h - the bytes of a stored value.
#ifndef TAMU_DEVICE_BYTES_H_
#define TAMU_DEVICE_BYTES_H_

#include <cstdint>
#include <utility>
#include <vector>

namespace tamu::device {

// A type of its own, because it is an alternative of variants: the C++ library of g++ 12 takes it
// for certain that one of numbers, std::basic_string and std::vector alone is never without a value,
// and destroys what a copy for which memory ran out has not made.
struct Bytes : std::vector<std::uint8_t> {
  using vector::vector;
  Bytes() = default;
  Bytes(std::vector<std::uint8_t> bytes) noexcept : vector(std::move(bytes)) {}
};

}  // namespace tamu::device

#endif  // TAMU_DEVICE_BYTES_H_
