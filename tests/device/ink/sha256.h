// device/ink/sha256.h - SHA-256 (FIPS 180-4), to compare documents with known ones.
#ifndef TAMU_TESTS_DEVICE_INK_SHA256_H_
#define TAMU_TESTS_DEVICE_INK_SHA256_H_

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tamu::testing {

// The first 32 bits of the fraction of a prime's root.
inline std::uint32_t RootFraction(long double root) {
  return static_cast<std::uint32_t>((root - std::floor(root)) * 4294967296.0L);
}

inline std::vector<std::uint32_t> FirstPrimes(std::size_t count) {
  std::vector<std::uint32_t> primes;
  for (std::uint32_t candidate = 2; primes.size() < count; ++candidate) {
    bool prime = true;
    for (const std::uint32_t divisor : primes) prime = prime && candidate % divisor != 0;
    if (prime) primes.push_back(candidate);
  }
  return primes;
}

inline void Sha256Block(const std::uint8_t* block, std::array<std::uint32_t, 8>* hash) {
  static const std::vector<std::uint32_t> primes = FirstPrimes(64);
  std::array<std::uint32_t, 64> w;
  for (std::size_t i = 0; i < 16; ++i) {
    w[i] = static_cast<std::uint32_t>(block[i * 4]) << 24 |
           static_cast<std::uint32_t>(block[i * 4 + 1]) << 16 |
           static_cast<std::uint32_t>(block[i * 4 + 2]) << 8 | block[i * 4 + 3];
  }
  for (std::size_t i = 16; i < 64; ++i) {
    const std::uint32_t s0 = std::rotr(w[i - 15], 7) ^ std::rotr(w[i - 15], 18) ^ w[i - 15] >> 3;
    const std::uint32_t s1 = std::rotr(w[i - 2], 17) ^ std::rotr(w[i - 2], 19) ^ w[i - 2] >> 10;
    w[i] = w[i - 16] + s0 + w[i - 7] + s1;
  }
  auto [a, b, c, d, e, f, g, h] = *hash;
  for (std::size_t i = 0; i < 64; ++i) {
    const std::uint32_t s1 = std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25);
    const std::uint32_t constant = RootFraction(std::cbrt(static_cast<long double>(primes[i])));
    const std::uint32_t t1 = h + s1 + ((e & f) ^ (~e & g)) + constant + w[i];
    const std::uint32_t s0 = std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22);
    const std::uint32_t t2 = s0 + ((a & b) ^ (a & c) ^ (b & c));
    h = g, g = f, f = e, e = d + t1, d = c, c = b, b = a, a = t1 + t2;
  }
  const std::array<std::uint32_t, 8> added = {a, b, c, d, e, f, g, h};
  for (std::size_t i = 0; i < 8; ++i) (*hash)[i] += added[i];
}

// In small hexadecimal letters.
inline std::string Sha256(std::span<const std::uint8_t> bytes) {
  std::array<std::uint32_t, 8> hash;
  const std::vector<std::uint32_t> primes = FirstPrimes(8);
  for (std::size_t i = 0; i < 8; ++i) {
    hash[i] = RootFraction(std::sqrt(static_cast<long double>(primes[i])));
  }
  std::vector<std::uint8_t> padded(bytes.begin(), bytes.end());
  padded.push_back(0x80);
  while (padded.size() % 64 != 56) padded.push_back(0);
  const std::uint64_t bits = std::uint64_t{bytes.size()} * 8;
  for (int shift = 56; shift >= 0; shift -= 8) {
    padded.push_back(static_cast<std::uint8_t>(bits >> shift));
  }
  for (std::size_t at = 0; at < padded.size(); at += 64) Sha256Block(padded.data() + at, &hash);
  std::string text;
  for (const std::uint32_t word : hash) {
    for (int shift = 28; shift >= 0; shift -= 4) text += "0123456789abcdef"[word >> shift & 0xF];
  }
  return text;
}

}  // namespace tamu::testing

#endif  // TAMU_TESTS_DEVICE_INK_SHA256_H_
