#include "diff/Sha1.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace diff {
namespace {

using TState = std::array<uint32_t, 5>;
constexpr size_t kBlock = 64;  // bytes

uint32_t BigEndian(const char* bytes) {
  uint32_t word = 0;
  for (int i = 0; i < 4; ++i) word = word << 8 | static_cast<unsigned char>(bytes[i]);
  return word;
}

// FIPS 180-4, section 6.1.2.
void AddBlock(TState& state, const char* block) {
  std::array<uint32_t, 80> w;
  for (size_t t = 0; t < 16; ++t) w[t] = BigEndian(block + 4 * t);
  for (size_t t = 16; t < 80; ++t) w[t] = std::rotl(w[t - 3] ^ w[t - 8] ^ w[t - 14] ^ w[t - 16], 1);
  auto [a, b, c, d, e] = state;
  for (size_t t = 0; t < 80; ++t) {
    uint32_t mixed = 0;
    if (t < 20) {
      mixed = ((b & c) | (~b & d)) + 0x5A827999;
    } else if (t < 40) {
      mixed = (b ^ c ^ d) + 0x6ED9EBA1;
    } else if (t < 60) {
      mixed = ((b & c) | (b & d) | (c & d)) + 0x8F1BBCDC;
    } else {
      mixed = (b ^ c ^ d) + 0xCA62C1D6;
    }
    const uint32_t next = std::rotl(a, 5) + mixed + e + w[t];
    e = d;
    d = c;
    c = std::rotl(b, 30);
    b = a;
    a = next;
  }
  const TState sums = {a, b, c, d, e};
  for (size_t i = 0; i < state.size(); ++i) state[i] += sums[i];
}

// The bytes after the last whole block, padded: a 1 bit, zeros, and the length in bits as 64-bit big endian.
std::string PaddedTail(std::string_view bytes) {
  std::string tail(bytes.substr(bytes.size() / kBlock * kBlock));
  tail += '\x80';
  while (tail.size() % kBlock != kBlock - 8) tail += '\0';
  const uint64_t bits = static_cast<uint64_t>(bytes.size()) * 8;
  for (int shift = 56; shift >= 0; shift -= 8) tail += static_cast<char>(bits >> shift & 0xFF);
  return tail;
}

}  // namespace

std::string Sha1Hex(std::string_view bytes) {
  TState state = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};
  for (size_t at = 0; at + kBlock <= bytes.size(); at += kBlock) AddBlock(state, bytes.data() + at);
  const std::string tail = PaddedTail(bytes);
  for (size_t at = 0; at < tail.size(); at += kBlock) AddBlock(state, tail.data() + at);
  constexpr char kHexDigits[] = "0123456789abcdef";
  std::string hex;
  for (const uint32_t word : state) {
    for (int shift = 28; shift >= 0; shift -= 4) hex += kHexDigits[word >> shift & 0xF];
  }
  return hex;
}

}  // namespace diff
