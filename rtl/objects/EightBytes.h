// Questions about eight bytes at once, for the scans through strings that a byte at a time would be slow for.
// Each answers for the whole: whether any of the bytes has the property.
#pragma once

#include <cstdint>
#include <cstring>

namespace rtl {

class TEightBytes {
 public:
  // Eight bytes must be readable at `bytes`.
  explicit TEightBytes(const char* bytes) { std::memcpy(&FWord, bytes, sizeof FWord); }

  // `limit` up to 128.
  bool AnyBelow(uint8_t limit) const { return Below(FWord, limit) != 0; }
  bool Any(char byte) const { return Below(FWord ^ (kOnes * static_cast<uint8_t>(byte)), 1) != 0; }

 private:
  static constexpr uint64_t kOnes = 0x0101010101010101;
  static constexpr uint64_t kHighBits = 0x8080808080808080;
  // Not 0 if a byte is below `limit`. The subtraction borrows from a byte only where the one before it is, so
  // that the answer for the whole is right.
  static uint64_t Below(uint64_t word, uint8_t limit) { return (word - kOnes * limit) & ~word & kHighBits; }

  uint64_t FWord;
};

}  // namespace rtl
