// Tests on eight bytes at a time, for scans through strings. Each returns whether any of the eight bytes
// has a property, not which one.
#pragma once

#include <cstdint>
#include <cstring>

namespace rtl {

class TEightBytes {
 public:
  // Eight bytes must be readable at `bytes`.
  explicit TEightBytes(const char* bytes) { std::memcpy(&FWord, bytes, sizeof FWord); }

  // `limit` is at most 128.
  bool AnyBelow(uint8_t limit) const { return Below(FWord, limit) != 0; }
  bool Any(char byte) const { return Below(FWord ^ (kOnes * static_cast<uint8_t>(byte)), 1) != 0; }

 private:
  static constexpr uint64_t kOnes = 0x0101010101010101;
  static constexpr uint64_t kHighBits = 0x8080808080808080;
  // Returns a value other than 0 if a byte is below `limit`. The subtraction borrows from a byte only if
  // the byte before it is below `limit`, so a borrow never makes the result wrong.
  static uint64_t Below(uint64_t word, uint8_t limit) { return (word - kOnes * limit) & ~word & kHighBits; }

  uint64_t FWord;
};

}  // namespace rtl
